// SPDX-License-Identifier: MIT
/// The outline of a shape on its way into the drawing library.
#pragma once

#include "geometry.h"
#include "svg_types.h"

#include <cairo.h>

namespace orvan::cairo
{

/// Adds a shape to the current path of a drawing and finds out where it lies. Points are transformed here instead of in
/// the library, whose coordinates wrap around beyond eight million pixels: such points are moved to the limit, far out
/// of every picture.
class Outline
{
public:
	/// `drawing` must have the identity as its transform.
	Outline(cairo_t* drawing, const Matrix2d& transform) noexcept : _drawing(drawing), _transform(transform)
	{
		cairo_new_path(drawing);
	}

	void MoveTo(const Vector2d& point) noexcept;
	void LineTo(const Vector2d& point) noexcept;
	void CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept;
	void Close() noexcept;

	/// Ends the outline. To be called once, before anything is asked or drawn.
	void Finish() noexcept
	{
		EndSubpath();
	}

	void AddPath(const BaseArray<SVGPathCommand>& commands) noexcept;
	void AddEllipse(const Vector2d& center, double radiusX, double radiusY) noexcept;
	/// A rectangle; the radii are limited to half of its sides.
	void AddRectangle(double x, double y, double width, double height, double radiusX, double radiusY) noexcept;

	/// False when there is nothing to draw: no line in it, or a coordinate that is not finite.
	bool IsDrawable() const noexcept
	{
		return _isFinite && !_userBounds.IsEmpty();
	}

	/// The bounding box in the shape's own coordinates, tight around curves.
	const Rectangle& GetUserBounds() const noexcept
	{
		return _userBounds;
	}

	/// Number of lines and curves.
	int GetCommandCount() const noexcept
	{
		return _commandCount;
	}

	/// A box in the drawing's coordinates around everything, control points included.
	const Rectangle& GetDeviceBounds() const noexcept
	{
		return _deviceBounds;
	}

private:
	Vector2d ToDevice(const Vector2d& point) noexcept;
	void EndSubpath() noexcept;
	void AddCurveBounds(const Vector2d& c1, const Vector2d& c2, const Vector2d& end) noexcept;

	cairo_t* _drawing;
	const Matrix2d& _transform;
	Rectangle _userBounds;
	Rectangle _deviceBounds;
	Vector2d _start;
	Vector2d _current;
	int _commandCount = 0;
	bool _isFinite = true;
	bool _hasSegments = false; ///< The subpath has more than its start, ...
	bool _hasLength = false;   ///< ... and leads away from it.
};

} // namespace orvan::cairo
