#include "grammar.h"

#include "grammar_library.h"

namespace orvan::grammar
{
Parsed ParseNumber(std::string_view text, Source source, double& number)
{
	return library::ParseNumber(text, source, number);
}

Parsed ParseLength(std::string_view text, Source source, Length& length)
{
	return library::ParseLength(text, source, length);
}

Parsed ParseFontSize(std::string_view text, Source source, Length& length)
{
	return library::ParseFontSize(text, source, length);
}

Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink)
{
	return library::ParseDashArray(text, source, sink);
}

Parsed ParseOffset(std::string_view text, double& fraction)
{
	return library::ParseOffset(text, fraction);
}

Parsed ParseColor(std::string_view text, PackedColor& color)
{
	return library::ParseColor(text, color);
}

Parsed ParsePaint(std::string_view text, Paint& paint)
{
	return library::ParsePaint(text, paint);
}

Parsed ParseIri(std::string_view text, Reference& reference)
{
	return library::ParseIri(text, reference);
}

Parsed ParseMaskReference(std::string_view text, std::string_view& id)
{
	return library::ParseMaskReference(text, id);
}

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

Parsed ParseViewBox(std::string_view text, ViewBox& box)
{
	return library::ParseViewBox(text, box);
}

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio)
{
	return library::ParsePreserveAspectRatio(text, ratio);
}

Parsed ParseTransform(std::string_view text, Matrix& matrix)
{
	return library::ParseTransform(text, matrix);
}

bool StyleSplitter::Next(std::string_view& name, std::string_view& value)
{
	return library::NextDeclaration(_rest, name, value);
}
} // namespace orvan::grammar
