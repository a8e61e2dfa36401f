// SPDX-License-Identifier: MIT
/// A path by itself.
#pragma once

#include "drawing/outline.h"
#include "lengths_along.h"

#include <optional>

namespace orvan::geometry
{

/// The implementation of `SVGOutlineInterface`.
class OutlineObject : public ObjectBase
{
public:
	/// An object with this outline.
	static Result<SVGOutlineRef> Make(drawing::Outline outline) noexcept;

	Result<void> SetPath(const BaseArray<SVGPathCommand>& commands) noexcept;
	Result<BaseArray<SVGPathCommand>> GetPath() const noexcept;
	SVGBox GetBounds(const Matrix2d& transform) const noexcept;
	Result<Float> GetLength() noexcept;
	Result<SVGOutlinePlace> GetPlace(Float length) noexcept;
	Result<SVGOutlinePlace> FindNearest(const Vector2d& point) noexcept;
	bool Contains(const Vector2d& point, SVGFillRule rule) const noexcept;
	Result<SVGOutlineRef> Transform(const Matrix2d& transform) const noexcept;
	Result<SVGOutlineRef> Flatten(Float tolerance) const noexcept;
	Result<SVGOutlineRef> GetStroke(const SVGStroke& stroke, Float tolerance) const noexcept;
	Result<SVGOutlineRef> Combine(const SVGOutlineRef& other, SVGOutlineOperation operation, SVGFillRule rule,
								  SVGFillRule otherRule, Float tolerance) const noexcept;
	Result<Float> GetArea(SVGFillRule rule) const noexcept;

private:
	/// Makes the table of lengths where there is none.
	Result<void> Measure() noexcept;

	drawing::Outline _outline;
	std::optional<LengthTable> _lengths;
};

} // namespace orvan::geometry
