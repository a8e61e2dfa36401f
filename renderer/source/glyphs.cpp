// SPDX-License-Identifier: MIT
#include "glyphs.h"

#include "canvas.h"

#include <pango/pangocairo.h>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// Draws a cluster's pictures at the size at which fonts are loaded, scaled.
void DrawCluster(cairo_t* drawing, const TextLayout& text, std::size_t number, const Matrix2d& transform) noexcept
{
	const ShapedText& shaped = text.GetShapedText();
	const TextCluster& cluster = shaped.clusters[number];
	cairo_scaled_font_t* const font = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(cluster.face->font.get()));
	if (font == nullptr)
		return;
	cairo_set_font_face(drawing, cairo_scaled_font_get_font_face(font));
	cairo_matrix_t size;
	cairo_scaled_font_get_font_matrix(font, &size);
	cairo_set_font_matrix(drawing, &size);
	const double scale = cluster.size / kFontSize;
	for (std::size_t i = cluster.firstGlyph; i < cluster.firstGlyph + cluster.glyphCount; i++)
	{
		const auto& [id, offset] = shaped.glyphs[i];
		const Matrix2d place =
			transform * text.GetPlace(number) * Translation(offset.x, offset.y) * Scaling(scale, scale);
		if (!IsInvertible(place))
			continue;
		const TransformedDrawing inPlace(drawing, place);
		const cairo_glyph_t glyph{id, 0.0, 0.0};
		cairo_show_glyphs(drawing, &glyph, 1);
	}
}

} // namespace

PangoContextPtr MakeFontContext() noexcept
{
	PangoContextPtr context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
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

void DrawColorGlyphs(cairo_t* drawing, const TextLayout& text, const TextFragment& fragment, const Matrix2d& transform,
					 double opacity) noexcept
{
	const bool isTransparent = opacity < 1.0;
	bool hasAny = false;
	for (std::size_t i = fragment.first; i < fragment.end; i++)
	{
		if (!text.GetShapedText().clusters[i].face->hasColors)
			continue;
		if (!hasAny && isTransparent)
			cairo_push_group(drawing);
		hasAny = true;
		cairo_set_source_rgba(drawing, 0.0, 0.0, 0.0, 1.0);
		DrawCluster(drawing, text, i, transform);
	}
	if (!hasAny || !isTransparent)
		return;
	cairo_pop_group_to_source(drawing);
	cairo_paint_with_alpha(drawing, opacity);
}

} // namespace orvan::cairo
