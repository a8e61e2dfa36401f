// SPDX-License-Identifier: MIT
#include "glyphs.h"

#include <pango/pangocairo.h>

namespace orvan::cairo
{
namespace
{

/// Sets the transform in which the layout's baseline starts at the origin of the layout.
void EnterLayout(cairo_t* drawing, const drawing::TextLine& line, const Matrix2d& transform) noexcept
{
	const cairo_matrix_t matrix = ToCairo(transform * line.GetPlace());
	cairo_set_matrix(drawing, &matrix);
	cairo_move_to(drawing, 0.0, 0.0);
}

} // namespace

drawing::PangoContextPtr MakeFontContext() noexcept
{
	drawing::PangoContextPtr context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
	const FontOptionsPtr options(cairo_font_options_create());
	cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
	cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
	cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
	pango_cairo_context_set_font_options(context.get(), options.get());
	pango_context_set_round_glyph_positions(context.get(), FALSE);
	pango_cairo_context_set_resolution(context.get(), 72.0);
	// What a text contains does not turn it around: the document says so, or nothing.
	pango_context_set_base_dir(context.get(), PANGO_DIRECTION_LTR);
	return context;
}

void FillGlyphs(cairo_t* drawing, const drawing::TextLine& line, const Matrix2d& transform) noexcept
{
	EnterLayout(drawing, line, transform);
	pango_cairo_show_layout(drawing, line.GetLayout());
	cairo_identity_matrix(drawing);
}

void SetGlyphPath(cairo_t* drawing, const drawing::TextLine& line, const Matrix2d& transform) noexcept
{
	cairo_new_path(drawing);
	EnterLayout(drawing, line, transform);
	pango_cairo_layout_path(drawing, line.GetLayout());
	cairo_identity_matrix(drawing);
}

} // namespace orvan::cairo
