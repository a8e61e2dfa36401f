// SPDX-License-Identifier: MIT
#include "canvas.h"

#include "paths.h"

namespace orvan::cairo
{

using namespace drawing;

Rectangle Canvas::GetClipExtents() const noexcept
{
	Rectangle extents;
	cairo_clip_extents(drawing, &extents.left, &extents.top, &extents.right, &extents.bottom);
	return extents;
}

void Canvas::ClipTo(const Rectangle& rectangle, const Matrix2d& transform) const noexcept
{
	PathWriter writer(drawing, transform);
	writer.MoveTo({rectangle.left, rectangle.top});
	writer.LineTo({rectangle.right, rectangle.top});
	writer.LineTo({rectangle.right, rectangle.bottom});
	writer.LineTo({rectangle.left, rectangle.bottom});
	writer.Close();
	if (!writer.Finish().IsDrawable())
		cairo_new_path(drawing);
	cairo_set_fill_rule(drawing, CAIRO_FILL_RULE_WINDING);
	cairo_clip(drawing);
}

} // namespace orvan::cairo
