// SPDX-License-Identifier: MIT
#include "complete/color_reader.h"
#include "complete/filters.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvan::grammar::complete
{
namespace
{
Reference ToReference(std::string_view iri, bool hasEscapes) noexcept
{
	const bool isLocal = iri.starts_with('#');
	return {isLocal ? iri.substr(1) : iri, isLocal, hasEscapes};
}

struct PaintRow
{
	std::string_view name;
	PaintKind value;
};

constexpr PaintRow kPaints[]{
	{"none", PaintKind::none},
	{"currentcolor", PaintKind::currentColor},
	{"context-fill", PaintKind::contextFill},
	{"context-stroke", PaintKind::contextStroke},
};

/// Takes a colour as a paint or a fallback.
template <typename Kind>
bool TakePaintColor(ValueCursor& cursor, Kind& kind, Color& color) noexcept
{
	if (!TakeColor(cursor, color))
		return false;
	kind = color.kind == ColorKind::currentColor ? Kind::currentColor : Kind::color;
	return true;
}

struct LayerRow
{
	std::string_view name;
	PaintLayer value;
};

constexpr LayerRow kLayers[]{
	{"fill", PaintLayer::fill}, {"stroke", PaintLayer::stroke}, {"markers", PaintLayer::markers}};

/// Words of a layer of "mask" that say what of it counts, and how it joins those below it.
struct MaskModeRow
{
	std::string_view name;
	MaskMode value;
};

constexpr MaskModeRow kMaskModes[]{
	{"match-source", MaskMode::matchSource}, {"luminance", MaskMode::luminance}, {"alpha", MaskMode::alpha}};

struct MaskCompositeRow
{
	std::string_view name;
	MaskComposite value;
};

constexpr MaskCompositeRow kMaskComposites[]{{"add", MaskComposite::add},
											 {"subtract", MaskComposite::subtract},
											 {"intersect", MaskComposite::intersect},
											 {"exclude", MaskComposite::exclude}};

/// Words that make no difference.
constexpr std::string_view kMaskWords[]{
	"repeat",     "repeat-x",    "repeat-y",    "no-repeat", "space",      "round",    "left",
	"right",      "top",         "bottom",      "center",    "auto",       "cover",    "contain",
	"border-box", "padding-box", "content-box", "fill-box",  "stroke-box", "view-box", "no-clip",
};

/// Takes one layer of a mask; false when it says something that is no mask, or nothing.
bool TakeMaskLayer(ValueCursor& cursor, Mask& mask, Reference& reference, bool& hasReference) noexcept
{
	const char* const start = cursor.At();
	bool hasImage = false;
	while (!cursor.IsAtEnd() && cursor.Peek() != ',')
	{
		Length length;
		if (cursor.TakeWord("none") || TakeReference(cursor, reference))
		{
			if (std::exchange(hasImage, true))
				return false;
			hasReference = reference.text.data() != nullptr;
			continue;
		}
		const auto isTaken = [&](std::string_view word)
		{
			return cursor.TakeWord(word);
		};
		if (!cursor.TakeKeyword(kMaskModes, mask.mode) && !cursor.TakeKeyword(kMaskComposites, mask.composite) &&
			std::none_of(std::begin(kMaskWords), std::end(kMaskWords), isTaken) && !cursor.TakeMark('/') &&
			!cursor.TakeLength(Range::any, false, length))
			return false;
		cursor.SkipSpaces();
	}
	return cursor.At() != start;
}
} // namespace

bool TakeReference(ValueCursor& cursor, Reference& reference) noexcept
{
	const char first = cursor.Peek();
	std::string_view url;
	bool hasEscapes;
	if ((first != 'u' && first != 'U') || !cursor.TakeUrl(url, hasEscapes))
		return false;
	reference = ToReference(url, hasEscapes);
	return true;
}

Parsed ParsePaint(std::string_view text, Paint& paint) noexcept
{
	Paint result;
	if (IsUsualColor(text, result.color))
	{
		result.kind = PaintKind::color;
		paint = result;
		return Parsed::value;
	}
	ValueCursor cursor(text);
	// Looking a word up takes longest, and a colour in hexadecimal digits is the most frequent of all.
	const bool isWord = cursor.Peek() != '#';
	if (isWord && TakeReference(cursor, result.reference))
	{
		result.kind = PaintKind::reference;
		if (cursor.TakeWord("none"))
			result.fallback = PaintFallback::none;
		else if (!cursor.IsAtEnd() && !TakePaintColor(cursor, result.fallback, result.color))
			return Parsed::refused;
	}
	else if (!(isWord && cursor.TakeKeyword(kPaints, result.kind)) &&
			 !TakePaintColor(cursor, result.kind, result.color))
		return Parsed::refused;
	if (!cursor.IsAtEnd())
		return Parsed::refused;
	paint = result;
	return Parsed::value;
}

Parsed ParseReference(std::string_view text, Reference& reference) noexcept
{
	ValueCursor cursor(text);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() ? Parsed::nothing : Parsed::refused;
	Reference result;
	if (!TakeReference(cursor, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	reference = result;
	return Parsed::value;
}

Parsed ParseMask(std::string_view text, Mask& mask) noexcept
{
	ValueCursor cursor(text);
	Mask result;
	do
	{
		Reference layer;
		bool hasReference = false;
		if (!TakeMaskLayer(cursor, result, layer, hasReference))
			return Parsed::refused;
		if (hasReference && result.count < Mask::kMostLayers)
			result.layers[result.count++] = layer;
	} while (cursor.TakeComma());
	if (result.count == 0)
		return Parsed::nothing;
	mask = result;
	return Parsed::value;
}

Parsed ParseIri(std::string_view text, Reference& reference) noexcept
{
	while (!text.empty() && IsSpace(text.front()))
		text.remove_prefix(1);
	while (!text.empty() && IsSpace(text.back()))
		text.remove_suffix(1);
	if (text.empty())
		return Parsed::nothing;
	reference = ToReference(text, false);
	return Parsed::value;
}

Parsed ParsePaintOrder(std::string_view text, PaintOrder& order) noexcept
{
	ValueCursor cursor(text);
	PaintOrder result{PaintLayer::fill, PaintLayer::stroke, PaintLayer::markers};
	if (!cursor.TakeWord("normal"))
	{
		unsigned taken = 0;
		std::size_t count = 0;
		PaintLayer layer;
		while (count != result.size() && cursor.TakeKeyword(kLayers, layer))
		{
			const unsigned bit = 1U << static_cast<unsigned>(layer);
			if ((taken & bit) != 0)
				return Parsed::refused;
			taken |= bit;
			result[count++] = layer;
		}
		if (count == 0)
			return Parsed::refused;
		for (const LayerRow& row : kLayers)
		{
			if ((taken & 1U << static_cast<unsigned>(row.value)) == 0)
				result[count++] = row.value;
		}
	}
	if (!cursor.IsAtEnd())
		return Parsed::refused;
	order = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
