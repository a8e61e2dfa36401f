// SPDX-License-Identifier: MIT
#include "text_line.h"

#include "limits.h"

namespace orvan::drawing
{
namespace
{

constexpr double kLayoutSize = 64.0;

bool IsBlank(char c) noexcept
{
	return c == ' ' || c == '\t';
}

/// Drops line breaks, and makes one blank of several and none of those at the ends.
Result<BaseArray<char>> CollapseSpace(std::string_view text) noexcept
{
	BaseArray<char> result;
	ORVAN_TRY(result.Reserve(text.size() + 1));
	bool isSpacePending = false;
	for (const char c : text)
	{
		if (c == '\n' || c == '\r')
			continue;
		if (IsBlank(c))
		{
			isSpacePending = !result.IsEmpty();
			continue;
		}
		if (isSpacePending)
			ORVAN_TRY(result.Append(' '));
		isSpacePending = false;
		ORVAN_TRY(result.Append(c));
	}
	return result;
}

/// The start of a text in whole characters.
std::string_view Shorten(std::string_view text, bool& isShortened) noexcept
{
	isShortened = text.size() > kMaxTextBytes;
	if (!isShortened)
		return text;
	std::size_t end = kMaxTextBytes;
	while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
		end--;
	return text.substr(0, end);
}

PangoStyle ToPango(SVGFontStyle style) noexcept
{
	switch (style)
	{
	case SVGFontStyle::italic:
		return PANGO_STYLE_ITALIC;
	case SVGFontStyle::oblique:
		return PANGO_STYLE_OBLIQUE;
	case SVGFontStyle::normal:
		break;
	}
	return PANGO_STYLE_NORMAL;
}

/// The font library wants families without the quotation marks around names.
Result<BaseArray<char>> Unquote(std::string_view families) noexcept
{
	BaseArray<char> result;
	ORVAN_TRY(result.Reserve(families.size() + 1));
	for (const char c : families)
	{
		if (c != '\'' && c != '"')
			ORVAN_TRY(result.Append(c));
	}
	ORVAN_TRY(result.Append('\0'));
	return result;
}

} // namespace

Result<TextLine> TextLine::Create(Fonts& fonts, const String& text, const Style& style, double x, double y,
								  bool& isShortened) noexcept
{
	TextLine line;
	const BaseArray<char> characters = ORVAN_TRY(CollapseSpace(Shorten(text, isShortened)));
	const double scale = style.fontSize / kLayoutSize;
	if (characters.IsEmpty() || !(scale > 0.0) || !std::isfinite(scale + x + y))
		return line;

	const FontDescriptionPtr font(pango_font_description_new());
	const BaseArray<char> families = ORVAN_TRY(Unquote(style.fontFamily != nullptr ? *style.fontFamily : String()));
	if (families.GetCount() > 1)
		pango_font_description_set_family(font.get(), families.begin());
	pango_font_description_set_style(font.get(), ToPango(style.fontStyle));
	pango_font_description_set_weight(font.get(), style.fontWeight == SVGFontWeight::bold ? PANGO_WEIGHT_BOLD
																						  : PANGO_WEIGHT_NORMAL);
	pango_font_description_set_absolute_size(font.get(), kLayoutSize * PANGO_SCALE);

	line._layout.reset(pango_layout_new(fonts.GetContext()));
	pango_layout_set_font_description(line._layout.get(), font.get());
	pango_layout_set_auto_dir(line._layout.get(), FALSE);
	pango_layout_set_single_paragraph_mode(line._layout.get(), TRUE);
	const auto length = static_cast<int>(characters.GetCount());
	line._length = length;
	// Bytes that are no characters would be reported on the console by the library.
	char* const repaired = g_utf8_make_valid(characters.begin(), length);
	pango_layout_set_text(line._layout.get(), repaired, -1);
	g_free(repaired);

	PangoRectangle box;
	pango_layout_get_extents(line._layout.get(), nullptr, &box);
	const double baseline = pango_layout_get_baseline(line._layout.get());
	line._place = Translation(x, y) * Scaling(scale, scale) * Translation(0.0, -baseline / PANGO_SCALE);
	const Rectangle layoutBox{pango_units_to_double(box.x), pango_units_to_double(box.y),
							  pango_units_to_double(box.x + box.width), pango_units_to_double(box.y + box.height)};
	line._bounds = Transform(line._place, layoutBox);
	line._reach = line._bounds.Grow(style.fontSize / 2.0);
	return line;
}

} // namespace orvan::drawing
