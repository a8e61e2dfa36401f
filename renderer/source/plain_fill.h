// SPDX-License-Identifier: MIT
/// Filling outlines without the drawing library, where there is nothing but pixels to fill.
#pragma once

#include "canvas.h"
#include "drawing/outline.h"
#include "rasterizer.h"

namespace orvan::cairo
{

/// What is left for the drawing library to paint: everything unless something else is said.
class Remainder
{
public:
	/// Nothing, or these rows of an area that begins at these columns.
	void Set(BaseArray<Rows>&& rows, double left, double right, double top) noexcept
	{
		_isEverything = false;
		_rows = std::move(rows);
		_left = left;
		_right = right;
		_top = top;
	}

	bool IsNothing() const noexcept
	{
		return !_isEverything && _rows.IsEmpty();
	}

	bool IsEverything() const noexcept
	{
		return _isEverything;
	}

	/// Clips to it, and uses up the current path.
	void ClipTo(const Canvas& canvas) const noexcept;

private:
	BaseArray<Rows> _rows;
	double _left = 0.0;
	double _right = 0.0;
	double _top = 0.0; ///< Of the area that the rows are counted in.
	bool _isEverything = true;
};

/// Fills an outline with the canvas's source, and tells what is left to do. It works where the canvas is a surface of
/// pixels without a transform of its own, nothing is clipped but at whole pixels, and the area is not too large; all
/// else is the drawing library's, and so are rows in which several areas end in the same pixels. The result is the same
/// but for the last bits of soft edges.
///
/// `bounds` is a box around the outline once it is transformed, all of whose coordinates are finite.
Remainder FillPlainly(const Canvas& canvas, const drawing::Outline& outline, const Matrix2d& transform,
					  const drawing::Rectangle& bounds, SVGFillRule rule) noexcept;

/// The same for the solid stroke of a shape; `bounds` is a box around what it paints.
Remainder StrokePlainly(const Canvas& canvas, const drawing::Frame& frame, const drawing::Outline& outline,
						const drawing::Rectangle& bounds) noexcept;

} // namespace orvan::cairo
