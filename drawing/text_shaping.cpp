// SPDX-License-Identifier: MIT
#include "text_shaping.h"

#include "text_bidi.h"
#include "text_capitals.h"
#include "text_orientation.h"

namespace orvan::drawing
{
namespace
{

constexpr double kSmallCapitalSize = 0.7;

/// Letters of scripts in which they are joined: they take no space between each other.
bool IsCursive(char32_t code) noexcept
{
	switch (g_unichar_get_script(static_cast<gunichar>(code)))
	{
	case G_UNICODE_SCRIPT_ARABIC:
	case G_UNICODE_SCRIPT_SYRIAC:
	case G_UNICODE_SCRIPT_NKO:
	case G_UNICODE_SCRIPT_MANDAIC:
	case G_UNICODE_SCRIPT_MONGOLIAN:
	case G_UNICODE_SCRIPT_PHAGS_PA:
	case G_UNICODE_SCRIPT_HANIFI_ROHINGYA:
		return true;
	default:
		return false;
	}
}

using ItemsPtr =
	std::unique_ptr<GList, Releaser<[](GList* items)
									{
										g_list_free_full(items, [](gpointer item)
														 { pango_item_free(static_cast<PangoItem*>(item)); });
									}>>;

/// Turns one text into glyphs.
class Shaper
{
public:
	Shaper(Fonts& fonts, const TextContent& content, const BidiText& text) noexcept
		: _fonts(fonts), _content(content), _text(text), _buffer(hb_buffer_create())
	{
	}

	Result<ShapedText> Shape() noexcept
	{
		const AttributesPtr attributes = MakeAttributes();
		GList* const logical = pango_itemize_with_base_dir(
			_fonts.GetContext(), _text.isRightToLeft ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR, _text.bytes.begin(),
			0, static_cast<int>(_text.bytes.GetCount()), attributes.get(), nullptr);
		const ItemsPtr owner(logical);
		// The reordered list shares the items.
		const std::unique_ptr<GList, Releaser<&g_list_free>> visual(pango_reorder_items(logical));
		for (const GList* at = visual.get(); at != nullptr; at = at->next)
			ORVAN_TRY(ShapeItem(*static_cast<const PangoItem*>(at->data)));
		return std::move(_shaped);
	}

private:
	/// What runs of characters must share to be shaped together.
	struct Kind
	{
		const Font* font;
		double size;
		bool isSpaced;
		bool isSmallCapital;
		bool isUpright;
		SVGFontVariant variant; ///< As far as the font has letters for it.
		bool isKerned;

		bool operator==(const Kind&) const noexcept = default;
	};

	const TextSpan& SpanOf(const TextCharacter& character) const noexcept
	{
		return _content.GetSpans()[static_cast<std::size_t>(character.span)];
	}

	AttributesPtr MakeAttributes() const noexcept
	{
		AttributesPtr attributes(pango_attr_list_new());
		const BaseArray<TextCharacter>& characters = _content.GetCharacters();
		const auto add = [&](PangoAttribute* attribute, std::size_t first, std::size_t end)
		{
			attribute->start_index = _text.places[first];
			attribute->end_index =
				end < characters.GetCount() ? _text.places[end] : static_cast<guint>(_text.bytes.GetCount());
			pango_attr_list_insert(attributes.get(), attribute);
		};
		for (std::size_t first = 0; first < characters.GetCount();)
		{
			const TextSpan& span = SpanOf(characters[first]);
			const String* const language = span.frame->place.style.language;
			std::size_t end = first + 1;
			while (end < characters.GetCount() && SpanOf(characters[end]).font == span.font &&
				   SpanOf(characters[end]).frame->place.style.language == language)
				end++;
			if (span.font != nullptr)
				add(pango_attr_font_desc_new(span.font->description.get()), first, end);
			if (language != nullptr && !language->IsEmpty())
				add(pango_attr_language_new(ToLanguage(*language)), first, end);
			first = end;
		}
		return attributes;
	}

	static PangoLanguage* ToLanguage(const String& language) noexcept
	{
		char name[16] = {};
		language.View().copy(name, sizeof name - 1);
		return pango_language_from_string(name);
	}

	Kind KindOf(const TextCharacter& character) const noexcept
	{
		const TextSpan& span = SpanOf(character);
		const Style& style = span.frame->place.style;
		return {span.font,
				span.size,
				style.letterSpacing != 0.0,
				character.isSmallCapital,
				IsUpright(character.code, _content.GetWritingMode(), style),
				span.font != nullptr && HasCapitals(*span.font, style.fontVariant) ? style.fontVariant
																				   : SVGFontVariant::normal,
				style.fontKerning != SVGFontKerning::none};
	}

	/// Shapes an item in runs of one kind; in visual order as the items are.
	Result<void> ShapeItem(const PangoItem& item) noexcept
	{
		const auto begin = static_cast<std::uint32_t>(item.offset);
		const std::uint32_t end = begin + static_cast<std::uint32_t>(item.length);
		const auto& places = _text.places;
		const auto first =
			static_cast<std::size_t>(std::lower_bound(places.begin(), places.end(), begin) - places.begin());
		const auto last =
			static_cast<std::size_t>(std::lower_bound(places.begin(), places.end(), end) - places.begin());
		const BaseArray<TextCharacter>& characters = _content.GetCharacters();
		BaseArray<std::size_t> starts;
		for (std::size_t at = first; at < last; at++)
		{
			// Marks go with their letters, whatever stands in between.
			const bool isBreak = at == first || characters[at].startsChunk || PathOf(at) != PathOf(at - 1) ||
								 places[at] != places[at - 1] + GetLength(characters[at - 1].code) ||
								 !(KindOf(characters[at]) == KindOf(characters[at - 1]));
			if (isBreak)
				ORVAN_TRY(starts.Append(at));
		}
		ORVAN_TRY(starts.Append(last));
		const bool isReversed = item.analysis.level % 2 != 0;
		const std::size_t count = starts.GetCount() - 1;
		for (std::size_t i = 0; i < count; i++)
		{
			const std::size_t run = isReversed ? count - 1 - i : i;
			ORVAN_TRY(ShapeRun(item, starts[run], starts[run + 1]));
		}
		return {};
	}

	static std::uint32_t GetLength(char32_t code) noexcept
	{
		return static_cast<std::uint32_t>(g_unichar_to_utf8(static_cast<gunichar>(code), nullptr));
	}

	Result<void> ShapeRun(const PangoItem& item, std::size_t first, std::size_t end) noexcept
	{
		const BaseArray<TextCharacter>& characters = _content.GetCharacters();
		const Kind kind = KindOf(characters[first]);
		if (kind.font == nullptr || item.analysis.font == nullptr)
			return {};
		const FontFace* const face = ORVAN_TRY(_fonts.GetFace(item.analysis.font));
		const bool isReversed = item.analysis.level % 2 != 0;
		const std::uint32_t from = _text.places[first];
		const std::uint32_t to = _text.places[end - 1] + GetLength(characters[end - 1].code);
		hb_buffer_t* const buffer = _buffer.get();
		hb_buffer_clear_contents(buffer);
		hb_buffer_add_utf8(buffer, _text.bytes.begin(), static_cast<int>(_text.bytes.GetCount()), from,
						   static_cast<int>(to - from));
		const hb_script_t script = hb_script_from_iso15924_tag(
			g_unicode_script_to_iso15924(static_cast<GUnicodeScript>(item.analysis.script)));
		hb_buffer_set_script(buffer, script);
		hb_buffer_set_language(buffer, hb_language_from_string(pango_language_to_string(item.analysis.language), -1));
		hb_buffer_set_direction(buffer, kind.isUpright ? HB_DIRECTION_TTB
										: isReversed   ? HB_DIRECTION_RTL
													   : HB_DIRECTION_LTR);
		hb_feature_t features[5];
		unsigned int count = 0;
		const auto set = [&](hb_tag_t tag, std::uint32_t value)
		{
			features[count++] = {tag, value, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END};
		};
		if (kind.isSpaced)
		{
			set(HB_TAG('l', 'i', 'g', 'a'), 0);
			set(HB_TAG('c', 'l', 'i', 'g'), 0);
		}
		if (kind.variant == SVGFontVariant::titlingCaps)
			set(HB_TAG('t', 'i', 't', 'l'), 1);
		else if (kind.variant != SVGFontVariant::normal && kind.variant != SVGFontVariant::unicase)
			set(HB_TAG('s', 'm', 'c', 'p'), 1);
		if (TakesCapitals(kind.variant))
			set(HB_TAG('c', '2', 's', 'c'), 1);
		if (!kind.isKerned)
			set(HB_TAG('k', 'e', 'r', 'n'), 0);
		hb_shape(face->shaper, buffer, features, count);
		const double size = kind.size * (kind.isSmallCapital ? kSmallCapitalSize : 1.0);
		return TakeGlyphs({*face, kind, size, isReversed && !kind.isUpright, first, end});
	}

	int PathOf(std::size_t character) const noexcept
	{
		return SpanOf(_content.GetCharacters()[character]).path;
	}

	/// A run whose glyphs are in the buffer.
	struct Run
	{
		const FontFace& face;
		Kind kind;
		double size;
		bool isReversed;
		std::size_t first;
		std::size_t end;
	};

	std::size_t FindCharacter(std::uint32_t place) const noexcept
	{
		return static_cast<std::size_t>(std::lower_bound(_text.places.begin(), _text.places.end(), place) -
										_text.places.begin());
	}

	Result<void> TakeGlyphs(const Run& run) noexcept
	{
		unsigned int count = 0;
		const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(_buffer.get(), &count);
		const hb_glyph_position_t* const positions = hb_buffer_get_glyph_positions(_buffer.get(), &count);
		const bool isDownwards = run.kind.isUpright;
		// Upright glyphs come from above, and so does their text.
		std::size_t after = run.end;
		for (unsigned int i = 0; i < count;)
		{
			unsigned int end = i + 1;
			while (end < count && infos[end].cluster == infos[i].cluster)
				end++;
			const std::size_t first = FindCharacter(infos[i].cluster);
			if (!run.isReversed)
				after = end < count ? FindCharacter(infos[end].cluster) : run.end;
			ORVAN_TRY(TakeCluster(run, {infos + i, end - i}, positions + i, first, after, isDownwards));
			after = first;
			i = end;
		}
		return {};
	}

	Result<void> TakeCluster(const Run& run, std::span<const hb_glyph_info_t> infos,
							 const hb_glyph_position_t* positions, std::size_t first, std::size_t end,
							 bool isDownwards) noexcept
	{
		const TextCharacter& character = _content.GetCharacters()[first];
		TextCluster cluster;
		cluster.first = static_cast<std::uint32_t>(first);
		cluster.count = static_cast<std::uint32_t>(std::max(end, first + 1) - first);
		cluster.firstGlyph = static_cast<std::uint32_t>(_shaped.glyphs.GetCount());
		cluster.glyphCount = static_cast<std::uint32_t>(infos.size());
		cluster.face = &run.face;
		cluster.span = character.span;
		cluster.size = run.size;
		cluster.isUpright = isDownwards;
		const double scale = run.size / run.face.unit;
		const double spacing = GetSpacing(character);
		Vector2d pen;
		for (std::size_t i = 0; i < infos.size(); i++)
		{
			const hb_glyph_position_t& at = positions[i];
			const double raised = isDownwards ? RaiseUpright(run.face, infos[i].codepoint) : 0.0;
			ORVAN_TRY(_shaped.glyphs.Append(
				{infos[i].codepoint, {pen.x + at.x_offset * scale, pen.y - (at.y_offset + raised) * scale}}));
			pen.x += at.x_advance * scale;
			pen.y -= at.y_advance * scale;
		}
		// Space stands right of a character, whichever way it is read, as browsers have it.
		cluster.advance = (isDownwards ? pen.y : pen.x) + spacing;
		return _shaped.clusters.Append(cluster);
	}

	/// Where a font says nothing about lines that run down, the shaper centers each glyph in its cell. Letters of such
	/// lines shall stand on baselines as far apart as in lines that run across.
	static double RaiseUpright(const FontFace& face, hb_codepoint_t glyph) noexcept
	{
		if (face.hasUprightPlaces)
			return 0.0;
		hb_position_t x = 0, y = 0;
		hb_font_extents_t extents{};
		hb_font_get_glyph_v_origin(face.shaper, glyph, &x, &y);
		hb_font_get_h_extents(face.shaper, &extents);
		return y - extents.ascender;
	}

	double GetSpacing(const TextCharacter& character) const noexcept
	{
		constexpr char32_t kUnbreakableSpace = 0xa0;
		const Style& style = SpanOf(character).frame->place.style;
		const bool isSpace = character.code == ' ' || character.code == kUnbreakableSpace;
		const double between = IsCursive(character.code) ? 0.0 : style.letterSpacing;
		const double spacing = between + (isSpace ? style.wordSpacing : 0.0);
		return std::isfinite(spacing) ? spacing : 0.0;
	}

	Fonts& _fonts;
	const TextContent& _content;
	const BidiText& _text;
	ShapingBufferPtr _buffer;
	ShapedText _shaped;
};

} // namespace

Result<ShapedText> ShapeText(Fonts& fonts, const TextContent& content) noexcept
{
	if (content.GetCharacters().IsEmpty() || fonts.GetContext() == nullptr)
		return ShapedText();
	const BidiText text = ORVAN_TRY(BidiText::Create(content));
	return Shaper(fonts, content, text).Shape();
}

} // namespace orvan::drawing
