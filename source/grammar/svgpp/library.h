// SPDX-License-Identifier: MIT
#pragma once

/// The authority: values as the grammar library itself reads them, slowly. The functions of grammar.h answer plain
/// values by themselves and turn to the functions of the same name here for everything else; the two always agree.
/// Keywords and aspect ratios have no fast form and stand in grammar.h alone.

#include "grammar.h"

namespace orvan::grammar::library
{
// Each has the signature of its namesake.

decltype(grammar::ParseNumber) ParseNumber;
decltype(grammar::ParseLength) ParseLength;
decltype(grammar::ParseFontSize) ParseFontSize;
decltype(grammar::ParseDashArray) ParseDashArray;
decltype(grammar::ParseOffset) ParseOffset;
decltype(grammar::ParseColor) ParseColor;
decltype(grammar::ParsePaint) ParsePaint;
decltype(grammar::ParseIri) ParseIri;
decltype(grammar::ParseMaskReference) ParseMaskReference;
decltype(grammar::ParseViewBox) ParseViewBox;
decltype(grammar::ParseTransform) ParseTransform;
decltype(grammar::ParsePath) ParsePath;
decltype(grammar::ParsePoints) ParsePoints;

/// Takes the next declaration off the front of `rest`.
bool NextDeclaration(std::string_view& rest, std::string_view& name, std::string_view& value);

/// One number of path data at `at`, which moves behind it; false when there is none. May yield an infinity.
bool ReadPathNumber(const char*& at, const char* end, double& number);
/// One number of "points" at `at`: as in path data, and with nothing after the point if you like.
bool ReadPointsNumber(const char*& at, const char* end, double& number);
} // namespace orvan::grammar::library
