// SPDX-License-Identifier: MIT
#include "fonts.h"

#include "embolden.h"

#include <hb-ot.h>
#include <pango/pangofc-font.h>

#include <new>

namespace orvan::drawing
{
namespace
{

/// The widths of fonts that the library tells apart, by the largest stretch that they stand for.
struct StretchRow
{
	double limit;
	PangoStretch stretch;
};

constexpr StretchRow kStretches[] = {
	{0.5625, PANGO_STRETCH_ULTRA_CONDENSED}, {0.6875, PANGO_STRETCH_EXTRA_CONDENSED},
	{0.8125, PANGO_STRETCH_CONDENSED},       {0.9375, PANGO_STRETCH_SEMI_CONDENSED},
	{1.0625, PANGO_STRETCH_NORMAL},          {1.1875, PANGO_STRETCH_SEMI_EXPANDED},
	{1.375, PANGO_STRETCH_EXPANDED},         {1.75, PANGO_STRETCH_EXTRA_EXPANDED},
};

PangoStretch ToPangoStretch(double stretch) noexcept
{
	for (const StretchRow& row : kStretches)
	{
		if (stretch < row.limit)
			return row.stretch;
	}
	return PANGO_STRETCH_ULTRA_EXPANDED;
}

PangoStyle ToPangoStyle(SVGFontStyle style) noexcept
{
	constexpr PangoStyle kStyles[] = {PANGO_STYLE_NORMAL, PANGO_STYLE_ITALIC, PANGO_STYLE_OBLIQUE};
	const auto number = static_cast<std::size_t>(style);
	return kStyles[number < std::size(kStyles) ? number : 0];
}

/// True when one of several families, separated by commas, is a kind of fonts and no name.
bool NamesKind(std::string_view families) noexcept
{
	constexpr std::string_view kKinds[] = {"serif", "sans-serif", "sans", "monospace", "mono", "system-ui", "emoji"};
	while (!families.empty())
	{
		const std::string_view family = families.substr(0, families.find(','));
		if (std::find(std::begin(kKinds), std::end(kKinds), family) != std::end(kKinds))
			return true;
		families.remove_prefix(std::min(family.size() + 1, families.size()));
	}
	return false;
}

/// The font library wants families without the quotation marks around names, and without blanks beside commas. With
/// many of them it takes as long as for their square, so that a list ends somewhere.
Result<BaseArray<char>> NormalizeFamilies(std::string_view families) noexcept
{
	constexpr std::size_t kMostBytes = 8192;
	if (families.size() > kMostBytes)
		families = families.substr(0, families.substr(0, kMostBytes).rfind(','));
	BaseArray<char> result;
	ORVAN_TRY(result.Reserve(families.size() + 1));
	char quote = '\0';
	for (const char c : families)
	{
		const bool isQuote = c == '\'' || c == '"';
		if (isQuote && (quote == '\0' || quote == c))
			quote = quote == '\0' ? c : '\0';
		else if (c != ' ' || quote != '\0' || (!result.IsEmpty() && *(result.end() - 1) != ','))
			ORVAN_TRY(result.Append(c));
	}
	// What is not there is replaced by what browsers take, unless the list names a kind of fonts.
	if (!NamesKind({result.begin(), result.GetCount()}))
	{
		constexpr std::string_view kStandard = ",Times New Roman,sans-serif";
		const std::string_view last = kStandard.substr(result.IsEmpty() ? 1 : 0);
		ORVAN_TRY(result.AppendAll(last.data(), last.size()));
	}
	ORVAN_TRY(result.Append('\0'));
	return result;
}

/// Whether a face has a feature, for whatever script.
bool HasFeature(hb_font_t* font, hb_tag_t feature) noexcept
{
	hb_face_t* const face = hb_font_get_face(font);
	hb_tag_t tags[32];
	unsigned int start = 0;
	for (;;)
	{
		unsigned int count = std::size(tags);
		const unsigned int total = hb_ot_layout_table_get_feature_tags(face, HB_OT_TAG_GSUB, start, &count, tags);
		if (std::find(tags, tags + count, feature) != tags + count)
			return true;
		start += count;
		if (count == 0 || start >= total)
			return false;
	}
}

/// How high a letter stands above the baseline, for the size of the font; 0 when there is none.
double MeasureHeight(const FontFace& face, char32_t letter) noexcept
{
	hb_codepoint_t glyph = 0;
	hb_glyph_extents_t extents{};
	const bool isThere = hb_font_get_nominal_glyph(face.shaper, letter, &glyph) != 0 &&
						 hb_font_get_glyph_extents(face.shaper, glyph, &extents) != 0;
	return isThere ? extents.y_bearing / face.unit : 0.0;
}

/// The advance of a character, for the size of the font; `absent` when there is none.
double GetAdvance(const FontFace& face, char32_t character, double absent) noexcept
{
	hb_codepoint_t glyph = 0;
	const bool isThere = hb_font_get_nominal_glyph(face.shaper, character, &glyph) != 0;
	return isThere ? hb_font_get_glyph_h_advance(face.shaper, glyph) / face.unit : absent;
}

bool HasTable(const hb_face_t* face, hb_tag_t tag) noexcept
{
	hb_blob_t* const table = hb_face_reference_table(face, tag);
	const bool isThere = hb_blob_get_length(table) != 0;
	hb_blob_destroy(table);
	return isThere;
}

FontMetrics GetMetrics(const FontFace& face) noexcept
{
	FontMetrics metrics;
	const auto read = [&](hb_ot_metrics_tag_t tag, double& value)
	{
		hb_position_t position = 0;
		if (hb_ot_metrics_get_position(face.shaper, tag, &position) != 0)
			value = position / face.unit;
	};
	hb_font_extents_t extents{};
	if (hb_font_get_h_extents(face.shaper, &extents) != 0 && extents.ascender > extents.descender)
	{
		metrics.ascent = extents.ascender / face.unit;
		metrics.descent = extents.descender / face.unit;
		metrics.lineGap = extents.line_gap / face.unit;
	}
	metrics.xHeight = 0.0;
	read(HB_OT_METRICS_TAG_X_HEIGHT, metrics.xHeight);
	// Older fonts do not say it, and some have no such letter.
	if (!(metrics.xHeight > 0.0))
		metrics.xHeight = MeasureHeight(face, 'x');
	if (!(metrics.xHeight > 0.0))
		metrics.xHeight = metrics.ascent * 0.5;
	metrics.capHeight = 0.0;
	read(HB_OT_METRICS_TAG_CAP_HEIGHT, metrics.capHeight);
	if (!(metrics.capHeight > 0.0))
		metrics.capHeight = MeasureHeight(face, 'H');
	if (!(metrics.capHeight > 0.0))
		metrics.capHeight = metrics.ascent;
	double lowered = 0.0;
	read(HB_OT_METRICS_TAG_SUBSCRIPT_EM_Y_OFFSET, lowered);
	if (lowered > 0.0)
		metrics.subscript = -lowered;
	double raised = 0.0;
	read(HB_OT_METRICS_TAG_SUPERSCRIPT_EM_Y_OFFSET, raised);
	if (raised > 0.0)
		metrics.superscript = raised;
	metrics.zeroAdvance = GetAdvance(face, U'0', 0.5);
	metrics.ideographAdvance = GetAdvance(face, U'\u6C34', 1.0);
	return metrics;
}

// Outlines on their way out of the font -------------------------------------------------------------------------------

struct OutlinePen
{
	Outline& outline;
	Matrix2d place;
	Vector2d current; ///< In the font's coordinates.
	Result<void> result;

	/// Keeps the first failure.
	void Note(Result<void> done) noexcept
	{
		if (!done.IsOk() && result.IsOk())
			result = std::move(done);
	}

	Vector2d Take(float x, float y) noexcept
	{
		current = {static_cast<double>(x), static_cast<double>(y)};
		return place.Apply(current);
	}
};

void MoveTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) noexcept
{
	auto& pen = *static_cast<OutlinePen*>(data);
	pen.Note(pen.outline.MoveTo(pen.Take(x, y)));
}

void LineTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) noexcept
{
	auto& pen = *static_cast<OutlinePen*>(data);
	pen.Note(pen.outline.LineTo(pen.Take(x, y)));
}

void QuadraticTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float controlX, float controlY, float x, float y,
				 void*) noexcept
{
	auto& pen = *static_cast<OutlinePen*>(data);
	const Vector2d start = pen.current;
	const Vector2d control{static_cast<double>(controlX), static_cast<double>(controlY)};
	const Vector2d point = pen.Take(x, y);
	const auto toward = [&](const Vector2d& from)
	{
		return pen.place.Apply({from.x + (control.x - from.x) * 2.0 / 3.0, from.y + (control.y - from.y) * 2.0 / 3.0});
	};
	pen.Note(pen.outline.CurveTo(toward(start), toward(pen.current), point));
}

void CubicTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x1, float y1, float x2, float y2, float x, float y,
			 void*) noexcept
{
	auto& pen = *static_cast<OutlinePen*>(data);
	const Vector2d control1 = pen.Take(x1, y1);
	const Vector2d control2 = pen.Take(x2, y2);
	pen.Note(pen.outline.CurveTo(control1, control2, pen.Take(x, y)));
}

void Close(hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) noexcept
{
	auto& pen = *static_cast<OutlinePen*>(data);
	pen.Note(pen.outline.Close());
}

DrawFunctionsPtr MakeDrawFunctions() noexcept
{
	DrawFunctionsPtr functions(hb_draw_funcs_create());
	hb_draw_funcs_set_move_to_func(functions.get(), &MoveTo, nullptr, nullptr);
	hb_draw_funcs_set_line_to_func(functions.get(), &LineTo, nullptr, nullptr);
	hb_draw_funcs_set_quadratic_to_func(functions.get(), &QuadraticTo, nullptr, nullptr);
	hb_draw_funcs_set_cubic_to_func(functions.get(), &CubicTo, nullptr, nullptr);
	hb_draw_funcs_set_close_path_func(functions.get(), &Close, nullptr, nullptr);
	return functions;
}

} // namespace

PangoContext* Fonts::GetContext() noexcept
{
	if (_context == nullptr)
		_context = _make();
	return _context.get();
}

Result<const Font*> Fonts::Find(const Style& style) noexcept
{
	const String family = style.fontFamily != nullptr ? *style.fontFamily : String();
	for (const auto& font : _fonts)
	{
		if (font->weight == style.fontWeight && font->style == style.fontStyle && font->stretch == style.fontStretch &&
			font->family.View() == family.View())
			return font.get();
	}
	PangoContext* const context = GetContext();
	std::unique_ptr<Font> made(new (std::nothrow) Font{});
	if (context == nullptr || made == nullptr)
		return OutOfMemoryError();
	made->family = family;
	made->weight = style.fontWeight;
	made->stretch = style.fontStretch;
	made->style = style.fontStyle;
	made->description.reset(pango_font_description_new());
	PangoFontDescription* const description = made->description.get();
	const BaseArray<char> families = ORVAN_TRY(NormalizeFamilies(family.View()));
	pango_font_description_set_family(description, families.begin());
	pango_font_description_set_style(description, ToPangoStyle(style.fontStyle));
	pango_font_description_set_weight(description,
									  static_cast<PangoWeight>(std::clamp(style.fontWeight, 100.0, 1000.0)));
	pango_font_description_set_stretch(description, ToPangoStretch(style.fontStretch));
	pango_font_description_set_absolute_size(description, kFontSize * PANGO_SCALE);
	if (const PangoFontPtr first(pango_context_load_font(context, description)); first != nullptr)
	{
		made->face = ORVAN_TRY(GetFace(first.get()));
		made->metrics = GetMetrics(*made->face);
		made->hasSmallCapitals = HasFeature(made->face->shaper, HB_TAG('s', 'm', 'c', 'p'));
		made->hasSmallCapitalsOfAll =
			made->hasSmallCapitals && HasFeature(made->face->shaper, HB_TAG('c', '2', 's', 'c'));
	}
	ORVAN_TRY(_fonts.Append(std::move(made)));
	return (_fonts.end() - 1)->get();
}

Result<const FontFace*> Fonts::GetFace(PangoFont* font) noexcept
{
	for (const auto& face : _faces)
	{
		if (face->font.get() == font)
			return face.get();
	}
	std::unique_ptr<FontFace> made(new (std::nothrow) FontFace{});
	if (made == nullptr)
		return OutOfMemoryError();
	made->font.reset(PANGO_FONT(g_object_ref(font)));
	made->shaper = pango_font_get_hb_font(font);
	int scaleX = 0;
	int scaleY = 0;
	hb_font_get_scale(made->shaper, &scaleX, &scaleY);
	made->unit = scaleY > 0 ? scaleY : kFontSize * PANGO_SCALE;
	hb_face_t* const tables = hb_font_get_face(made->shaper);
	made->hasColors =
		hb_ot_color_has_layers(tables) != 0 || hb_ot_color_has_png(tables) != 0 || hb_ot_color_has_svg(tables) != 0;
	made->hasUprightPlaces =
		HasTable(tables, HB_TAG('v', 'm', 't', 'x')) || HasTable(tables, HB_TAG('V', 'O', 'R', 'G'));
	if (PANGO_IS_FC_FONT(font))
	{
		const FcPattern* const pattern = pango_fc_font_get_pattern(PANGO_FC_FONT(font));
		FcMatrix* matrix = nullptr;
		if (FcPatternGetMatrix(pattern, FC_MATRIX, 0, &matrix) == FcResultMatch)
			// Newer versions of the font library have the shaper lean the outlines over itself.
			made->slant = hb_font_get_synthetic_slant(made->shaper) == 0.0F ? matrix->xy : 0.0;
		constexpr double kEmboldening = 1.0 / 34.0;
		FcBool isEmboldened = FcFalse;
		if (FcPatternGetBool(pattern, FC_EMBOLDEN, 0, &isEmboldened) == FcResultMatch && isEmboldened != FcFalse)
			made->emboldening = kEmboldening;
	}
	ORVAN_TRY(_faces.Append(std::move(made)));
	return (_faces.end() - 1)->get();
}

Result<void> Fonts::AddOutline(const FontFace& face, hb_codepoint_t glyph, const Matrix2d& place,
							   Outline& outline) noexcept
{
	if (_drawFunctions == nullptr)
		_drawFunctions = MakeDrawFunctions();
	const double scale = 1.0 / face.unit;
	const Matrix2d fromFont{{0.0, 0.0}, {scale, 0.0}, {face.slant * scale, -scale}};
	if (face.emboldening == 0.0)
		return Draw(face, glyph, place * fromFont, outline);
	Outline regular;
	ORVAN_TRY(Draw(face, glyph, {}, regular));
	return outline.Append(ORVAN_TRY(Embolden(regular, face.emboldening * face.unit)), place * fromFont);
}

Result<void> Fonts::Draw(const FontFace& face, hb_codepoint_t glyph, const Matrix2d& place, Outline& outline) noexcept
{
	OutlinePen pen{outline, place, {}, {}};
	hb_font_get_glyph_shape(face.shaper, glyph, _drawFunctions.get(), &pen);
	return std::move(pen.result);
}

} // namespace orvan::drawing
