// SPDX-License-Identifier: MIT
/// The outline of a shape, in the shape's own coordinates.
#pragma once

#include "geometry.h"
#include "svg_types.h"

#include <optional>

namespace orvan::drawing
{

/// Subpaths of lines and cubics, in the tree's own form of them. Whoever draws one transforms its points on the way.
class Outline
{
public:
	Outline() noexcept = default;

	/// The outline of a path element.
	explicit Outline(BaseArray<SVGPathCommand> commands) noexcept : _commands(std::move(commands))
	{
	}

	Result<void> MoveTo(const Vector2d& point) noexcept;
	Result<void> LineTo(const Vector2d& point) noexcept;
	Result<void> CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept;
	Result<void> Close() noexcept;

	/// Appends another outline, transformed.
	Result<void> Append(const Outline& other, const Matrix2d& transform) noexcept;

	/// An ellipse, clockwise from its rightmost point.
	Result<void> AddEllipse(const Vector2d& center, double radiusX, double radiusY) noexcept;
	/// A rectangle, clockwise from its upper left corner; the radii are limited to half of its sides.
	Result<void> AddRectangle(const Rectangle& rectangle, double radiusX, double radiusY) noexcept;

	const BaseArray<SVGPathCommand>& GetCommands() const noexcept
	{
		return _commands;
	}

	/// The bounding box in the shape's own coordinates, tight around curves; empty when nothing leads anywhere.
	/// Found out when it is first asked for.
	const Rectangle& GetBounds() const noexcept;
	/// The bounding box that the outline has once it is transformed, as tight.
	Rectangle GetBounds(const Matrix2d& transform) const noexcept;

	/// The length of all lines and curves together, in the shape's own coordinates.
	double GetLength() const noexcept;

private:
	BaseArray<SVGPathCommand> _commands;
	mutable std::optional<Rectangle> _bounds;
};

} // namespace orvan::drawing
