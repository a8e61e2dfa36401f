// SPDX-License-Identifier: MIT
#pragma once

/// The authority: every value as the grammar library itself reads it, slowly. The functions of grammar.h answer plain
/// values by themselves and turn to the functions of the same name here for everything else; the two always agree.

#include "grammar.h"

namespace orvan::grammar::library
{
Parsed ParseNumber(std::string_view text, Source source, double& number);
Parsed ParseLength(std::string_view text, Source source, Length& length);
Parsed ParseFontSize(std::string_view text, Source source, Length& length);
Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink);
Parsed ParseOffset(std::string_view text, double& fraction);
Parsed ParseColor(std::string_view text, PackedColor& color);
Parsed ParsePaint(std::string_view text, Paint& paint);
Parsed ParseIri(std::string_view text, Reference& reference);
Parsed ParseMaskReference(std::string_view text, std::string_view& id);

Parsed ParseDisplay(std::string_view text, std::int32_t& display);
Parsed ParseVisibility(std::string_view text, std::int32_t& visibility);
Parsed ParseFillRule(std::string_view text, std::int32_t& rule);
Parsed ParseLineCap(std::string_view text, std::int32_t& cap);
Parsed ParseLineJoin(std::string_view text, std::int32_t& join);
Parsed ParseGradientUnits(std::string_view text, std::int32_t& units);
Parsed ParseSpreadMethod(std::string_view text, std::int32_t& method);
Parsed ParseFontStyle(std::string_view text, std::int32_t& style);
Parsed ParseFontWeight(std::string_view text, std::int32_t& weight);

Parsed ParseViewBox(std::string_view text, ViewBox& box);
Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio);
Parsed ParseTransform(std::string_view text, Matrix& matrix);
Parsed ParsePath(std::string_view text, PathSink& sink);
Parsed ParsePoints(std::string_view text, PathSink& sink);

/// Takes the next declaration off the front of `rest`.
bool NextDeclaration(std::string_view& rest, std::string_view& name, std::string_view& value);

/// One number of path data at `at`, which moves behind it; false when there is none. May yield an infinity.
bool ReadPathNumber(const char*& at, const char* end, double& number);
/// One number of "points" at `at`: as in path data, and with nothing after the point if you like.
bool ReadPointsNumber(const char*& at, const char* end, double& number);
} // namespace orvan::grammar::library
