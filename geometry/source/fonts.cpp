// SPDX-License-Identifier: MIT
#include "fonts.h"

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>
#include <pango/pangoft2.h>

namespace orvan::geometry
{
namespace
{

/// Letters of the size that was asked for, whatever the screen is.
void AvoidHinting(FcPattern* pattern, gpointer) noexcept
{
	FcPatternDel(pattern, FC_HINTING);
	FcPatternAddBool(pattern, FC_HINTING, FcFalse);
	FcPatternDel(pattern, FC_HINT_STYLE);
	FcPatternAddInteger(pattern, FC_HINT_STYLE, FC_HINT_NONE);
}

} // namespace

drawing::PangoContextPtr MakeFontContext() noexcept
{
	PangoFontMap* const map = pango_ft2_font_map_new();
	pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(map), 72.0, 72.0);
	pango_fc_font_map_set_default_substitute(PANGO_FC_FONT_MAP(map), &AvoidHinting, nullptr, nullptr);
	drawing::PangoContextPtr context(pango_font_map_create_context(map));
	g_object_unref(map);
	pango_context_set_round_glyph_positions(context.get(), FALSE);
	pango_context_set_base_dir(context.get(), PANGO_DIRECTION_LTR);
	return context;
}

void KeepFontLibraries() noexcept
{
	[[maybe_unused]] static void* const kept = dlopen("libpangoft2-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

} // namespace orvan::geometry
