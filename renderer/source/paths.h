// SPDX-License-Identifier: MIT
/// Outlines on their way into the drawing library.
#pragma once

#include "drawing/outline.h"
#include "handles.h"

namespace orvan::cairo
{

/// What became of an outline in the picture.
struct PathExtent
{
	drawing::Rectangle bounds; ///< A box around everything in the picture's coordinates, control points included.
	int segmentCount = 0;      ///< Number of lines and curves.
	double rows = 0.0;         ///< How many rows of pixels all lines together cross: what filling costs.
	bool isFinite = true;

	/// False when there is nothing to draw: no line in it, or a coordinate that is not finite.
	bool IsDrawable() const noexcept
	{
		return isFinite && segmentCount != 0;
	}
};

/// Makes an outline the current path of a drawing. Points are transformed here instead of in the library, whose
/// coordinates wrap around beyond eight million pixels: such points are moved to the limit, far out of every picture.
class PathWriter
{
public:
	/// `drawing` must have the identity as its transform.
	PathWriter(cairo_t* drawing, const Matrix2d& transform) noexcept : _drawing(drawing), _transform(transform)
	{
		cairo_new_path(drawing);
	}

	void MoveTo(const Vector2d& point) noexcept;
	void LineTo(const Vector2d& point) noexcept;
	void CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept;
	void Close() noexcept;
	/// Ends the path. To be called once.
	const PathExtent& Finish() noexcept;

private:
	Vector2d ToDevice(const Vector2d& point) noexcept;
	Vector2d Follow(const Vector2d& point) noexcept;
	void EndSubpath() noexcept;

	cairo_t* _drawing;
	const Matrix2d& _transform;
	PathExtent _extent;
	double _row = 0.0; ///< Where the last line ended.
	Vector2d _start;
	Vector2d _current;
	bool _hasSegments = false; ///< The subpath has more than its start, ...
	bool _hasLength = false;   ///< ... and leads away from it.
};

/// What would become of an outline in the picture.
PathExtent MeasurePath(const drawing::Outline& outline, const Matrix2d& transform) noexcept;

/// Makes `outline` the current path of a drawing whose transform is the identity.
PathExtent SetPath(cairo_t* drawing, const drawing::Outline& outline, const Matrix2d& transform) noexcept;

} // namespace orvan::cairo
