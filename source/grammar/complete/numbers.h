// SPDX-License-Identifier: MIT
#pragma once

/// Keywords, numbers, lengths, angles and lists of them, as browsers read them. See values.h for what holds for all.

#include "grammar.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvan::grammar::complete
{
/// The keywords that every property takes.
enum class CssWideKeyword
{
	none, ///< The text is no such keyword.
	inherit,
	initial,
	unset ///< Also "revert" and "revert-layer": no sheet of a browser stands below ours.
};

/// Tells whether a value is just one of the CSS-wide keywords.
CssWideKeyword ParseCssWide(std::string_view text) noexcept;

namespace detail
{
bool AreEqualIgnoringCase(const char* text, const char* lowerCase, std::size_t size) noexcept;
}

/// Whether two texts are the same but for the case of ASCII letters. `lowerCase` must be in lower case.
inline bool EqualsIgnoreCase(std::string_view text, std::string_view lowerCase) noexcept
{
	return text.size() == lowerCase.size() && detail::AreEqualIgnoringCase(text.data(), lowerCase.data(), text.size());
}

/// A text without the blanks and CSS comments around it.
std::string_view TrimCss(std::string_view text) noexcept;

/// A text with each CSS comment replaced by nothing, or by a blank where the comment alone parts two words.
std::string RemoveComments(std::string_view text);

/// A CSS identifier, string or URL with its escapes resolved, as UTF-8. An escaped zero, surrogate or value out of
/// Unicode becomes U+FFFD.
std::string ResolveEscapes(std::string_view text);

/// A keyword in lower case and what it stands for.
struct Keyword
{
	std::string_view name;
	std::int32_t value;
};

/// A property that is one of some keywords, in any case.
Parsed ParseKeyword(std::string_view text, std::span<const Keyword> keywords, std::int32_t& value) noexcept;

/// An attribute that is no property and one of some keywords ("gradientUnits", "edgeMode"): browsers want these as they
/// are written in the table, without blanks around them.
Parsed ParseExactKeyword(std::string_view text, std::span<const Keyword> keywords, std::int32_t& value) noexcept;

/// What numbers a value may be.
enum class Range
{
	any,
	notNegative ///< Negative numbers are refused ("stroke-width", "r", "stroke-miterlimit").
};

/// A number: "stroke-miterlimit" (not negative), "font-size-adjust", and the numbers of attributes.
Parsed ParseNumber(std::string_view text, Source source, Range range, double& number) noexcept;

/// The opacities: a number, or a percentage as its fraction. Not clamped.
Parsed ParseAlpha(std::string_view text, Source source, double& alpha) noexcept;

/// A gradient stop's "offset": as an opacity, but an attribute and no property, so without comments. Not clamped.
Parsed ParseOffset(std::string_view text, double& fraction) noexcept;

/// A whole number: "numOctaves", "targetX". A fraction is refused.
Parsed ParseInteger(std::string_view text, std::int32_t& number) noexcept;

/// "true" or "false", as written: "preserveAlpha", "externalResourcesRequired".
Parsed ParseBoolean(std::string_view text, bool& isTrue) noexcept;

/// The lengths of SVG: "stroke-width", "stroke-dashoffset", "x", "cx", "r", "x1", "refX", "textLength" … A number, a
/// number with a unit, or a percentage (as its fraction). Plain numbers are lengths in declarations, too.
/// "calc()" and other functions are refused.
Parsed ParseLength(std::string_view text, Source source, Range range, Length& length) noexcept;

/// As ParseLength, or "auto" (`nothing`): "width", "height", "rx", "ry".
Parsed ParseLengthOrAuto(std::string_view text, Source source, Range range, Length& length) noexcept;

/// "letter-spacing" and "word-spacing": "normal", which is a length of 0 with unit none, or a length; a plain number
/// other than 0 is a length but in sheets. Percentages are taken.
Parsed ParseSpacing(std::string_view text, Source source, Length& length) noexcept;

/// "stroke-dasharray": lengths and percentages of which none is negative, parted by blanks, a comma, or both. "none" is
/// the empty list. What was appended before a refusal is to be thrown away.
Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink);

/// How far a list was read. What stands before a fault was delivered.
struct Progress
{
	bool isWhole = true;    ///< Whether the list holds no fault.
	std::size_t offset = 0; ///< Where the fault is; the size of the text when there is none.
};

/// Receives the numbers of a list in order.
class NumberSink
{
public:
	virtual void Append(double number) = 0;

protected:
	~NumberSink() = default;
};

/// "rotate" of text, "tableValues", "kernelMatrix", "values": numbers parted by blanks, a comma, both, or nothing where
/// none is needed ("1-2.5.5"), and perhaps a comma at the end. The empty list is whole.
Progress ParseNumberList(std::string_view text, NumberSink& sink);

/// "x", "y", "dx" and "dy" of text: lengths parted by blanks, a comma, or both, which may stand at the end, too.
Progress ParseLengthList(std::string_view text, LengthSink& sink);

/// "stdDeviation", "baseFrequency", "order", "radius", "kernelUnitLength": one number, which then stands for both, or
/// two. Ranges are the client's business.
Parsed ParseNumberPair(std::string_view text, double& first, double& second) noexcept;

/// "viewBox": four numbers, parted by blanks, a comma, or both. A negative size is refused; one of zero is not.
Parsed ParseViewBox(std::string_view text, ViewBox& box) noexcept;

/// "preserveAspectRatio": browsers want the keywords as they are written.
Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio) noexcept;

/// An angle in degrees, with a unit (deg, grad, rad, turn) or without one: "rotate" on markers, "azimuth".
Parsed ParseAngle(std::string_view text, double& degrees) noexcept;

/// How a marker is turned.
enum class OrientKind
{
	angle,
	automatic,            ///< "auto"
	automaticStartReverse ///< "auto-start-reverse"
};

/// A value of "orient".
struct Orient
{
	OrientKind kind = OrientKind::angle;
	double degrees = 0; ///< Of an angle.
};

/// "orient" of a marker: "auto", "auto-start-reverse" or an angle.
Parsed ParseOrient(std::string_view text, Orient& orient) noexcept;
} // namespace orvan::grammar::complete
