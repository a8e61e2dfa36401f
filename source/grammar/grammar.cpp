#include "grammar.h"

#include "grammar_library.h"

// What has no fast form: the library's reading of these is a comparison with a few words, or happens once a document,
// or is a walk over the text that leaves little to gain.

namespace orvan::grammar
{
Parsed ParseDisplay(std::string_view text, std::int32_t& display)
{
	return library::ParseDisplay(text, display);
}

Parsed ParseVisibility(std::string_view text, std::int32_t& visibility)
{
	return library::ParseVisibility(text, visibility);
}

Parsed ParseFillRule(std::string_view text, std::int32_t& rule)
{
	return library::ParseFillRule(text, rule);
}

Parsed ParseLineCap(std::string_view text, std::int32_t& cap)
{
	return library::ParseLineCap(text, cap);
}

Parsed ParseLineJoin(std::string_view text, std::int32_t& join)
{
	return library::ParseLineJoin(text, join);
}

Parsed ParseGradientUnits(std::string_view text, std::int32_t& units)
{
	return library::ParseGradientUnits(text, units);
}

Parsed ParseSpreadMethod(std::string_view text, std::int32_t& method)
{
	return library::ParseSpreadMethod(text, method);
}

Parsed ParseFontStyle(std::string_view text, std::int32_t& style)
{
	return library::ParseFontStyle(text, style);
}

Parsed ParseFontWeight(std::string_view text, std::int32_t& weight)
{
	return library::ParseFontWeight(text, weight);
}

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio)
{
	return library::ParsePreserveAspectRatio(text, ratio);
}

bool StyleSplitter::Next(std::string_view& name, std::string_view& value)
{
	return library::NextDeclaration(_rest, name, value);
}
} // namespace orvan::grammar
