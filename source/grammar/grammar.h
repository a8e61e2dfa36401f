// SPDX-License-Identifier: MIT
#pragma once

/// Attribute values: text in, value out.
///
/// Every function here reads one whole attribute value and answers with a Parsed. None of them keeps a pointer to the
/// text after it returned, except that views in its result (references, style declarations) point into the text. None
/// of them depends on the C or C++ locale, none throws (std::bad_alloc and whatever a sink throws may pass), and all of
/// them may run side by side in any number of threads.
///
///     double opacity = 1;
///     switch (grammar::ParseNumber("0.5", grammar::Source::attribute, opacity))
///     {
///     case grammar::Parsed::value: element.SetOpacity(opacity); break;
///     case grammar::Parsed::nothing: break;
///     case grammar::Parsed::refused: grammar::RaiseInvalidValue("opacity", "0.5");
///     }
///
/// No number that is not finite is ever delivered: a value that overflows is refused.

#include "svg_length_unit.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvan::grammar
{
/// Where a value was written. A declaration inside "style" takes numbers without exponents and units in any case;
/// everything else is matched as in an attribute.
enum class Source
{
	attribute,
	style,
	sheet ///< A declaration of a style sheet, which only the complete import reads.
};

/// The outcome of reading a value. The result argument is written only when this is `value`.
enum class Parsed
{
	refused, ///< Not a value of this attribute; the caller raises the invalid-value error.
	nothing, ///< An accepted form that sets nothing ("inherit", an external mask, …).
	value    ///< The result argument holds the value.
};

using LengthUnit = SVGLengthUnit;

/// A length with the unit it was written in. Negative lengths are accepted everywhere.
struct Length
{
	double value = 0;
	LengthUnit unit = LengthUnit::number;
};

/// A colour as 0xRRGGBB, eight bits a channel.
using PackedColor = std::uint32_t;

/// A reference to an element or a resource. `text` points into the parsed value.
struct Reference
{
	std::string_view text; ///< The id after "#" when local (may be empty), else the whole IRI (never empty).
	bool isLocal = false;
};

enum class PaintKind
{
	none,
	currentColor,
	inherit,
	color,
	reference
};

/// What follows the reference of a paint.
enum class PaintFallback
{
	absent,
	none,
	currentColor,
	color
};

/// A value of "fill" or "stroke", as written. Which of these forms take effect is the importer's business.
struct Paint
{
	PaintKind kind = PaintKind::none;
	PaintFallback fallback = PaintFallback::absent; ///< Other than absent only for references.
	PackedColor color = 0;                          ///< Of the paint, or of its fallback; 0 when neither is a colour.
	Reference reference;
};

/// Left, top and size of a "viewBox", in user units. The sizes may be zero or negative.
struct ViewBox
{
	double x = 0;
	double y = 0;
	double width = 0;
	double height = 0;
};

// Keywords; their numbers are those that elements carry.

enum class Display : std::int32_t
{
	inherit = 0,
	none = 2
};

enum class Visibility : std::int32_t
{
	visible = 1,
	hidden = 2,
	collapse = 3
};

enum class FillRule : std::int32_t
{
	nonzero = 1,
	evenodd = 2
};

enum class LineCap : std::int32_t
{
	butt = 1,
	round = 2,
	square = 3
};

enum class LineJoin : std::int32_t
{
	miter = 1,
	round = 2,
	bevel = 3
};

enum class GradientUnits : std::int32_t
{
	userSpaceOnUse = 0,
	objectBoundingBox = 1
};

enum class SpreadMethod : std::int32_t
{
	pad = 0,
	reflect = 1,
	repeat = 2
};

enum class FontStyle : std::int32_t
{
	normal = 0,
	italic = 1,
	oblique = 2
};

enum class FontWeight : std::int32_t
{
	normal = 0,
	bold = 1
};

enum class Align : std::int32_t
{
	xMidYMid = 0, ///< The initial value.
	none = 1,
	xMinYMin = 2,
	xMidYMin = 3,
	xMaxYMin = 4,
	xMinYMid = 5,
	xMaxYMid = 6,
	xMinYMax = 7,
	xMidYMax = 8,
	xMaxYMax = 9
};

enum class MeetOrSlice : std::int32_t
{
	meet = 0,
	slice = 1
};

/// A value of "preserveAspectRatio"; a leading "defer" is accepted and dropped.
struct AspectRatio
{
	Align align = Align::xMidYMid;
	MeetOrSlice meetOrSlice = MeetOrSlice::meet; ///< Always meet with the alignment "none".
};

/// The matrix of a transform list: x' = a x + c y + e, y' = b x + d y + f.
struct Matrix
{
	double a = 1;
	double b = 0;
	double c = 0;
	double d = 1;
	double e = 0;
	double f = 0;
};

/// Receives the lengths of a list in order. What was appended before a refusal is to be thrown away.
class LengthSink
{
public:
	virtual void Append(const Length& length) = 0;

protected:
	~LengthSink() = default;
};

/// A segment of a path, for sinks that take many at once.
struct alignas(64) PathSegment
{
	enum class Kind : std::uint8_t
	{
		move,
		line,
		cubic,
		close,
		none, ///< Nothing stands here.
	};

	std::array<double, 6> coordinates; ///< As many as the kind has.
	Kind kind;
};

/// Receives the segments of a path in order, in absolute coordinates, all finite. What was delivered before a refusal
/// is to be thrown away.
class PathSink
{
public:
	virtual void MoveTo(double x, double y) = 0;
	virtual void LineTo(double x, double y) = 0;
	virtual void CubicTo(double x1, double y1, double x2, double y2, double x, double y) = 0;
	virtual void Close() = 0;

	/// Takes segments as if one by one.
	virtual void AddSegments(std::span<const PathSegment> segments)
	{
		for (const auto& [c, kind] : segments)
		{
			switch (kind)
			{
			case PathSegment::Kind::move:
				MoveTo(c[0], c[1]);
				break;
			case PathSegment::Kind::line:
				LineTo(c[0], c[1]);
				break;
			case PathSegment::Kind::cubic:
				CubicTo(c[0], c[1], c[2], c[3], c[4], c[5]);
				break;
			case PathSegment::Kind::close:
				Close();
				break;
			case PathSegment::Kind::none:
				break;
			}
		}
	}

	/// Told now and then, while a long text is read: nothing before this place in it is looked at any more.
	virtual void Reach(const char* place)
	{
		static_cast<void>(place);
	}

protected:
	~PathSink() = default;
};

/// Where nothing is made of path data, because there is no path to hold it or because it is only looked at.
class NoPathSink final : public PathSink
{
public:
	void MoveTo(double, double) override
	{
	}

	void LineTo(double, double) override
	{
	}

	void CubicTo(double, double, double, double, double, double) override
	{
	}

	void Close() override
	{
	}
};

/// The opacities and the miter limit: a number, or "inherit" (nothing). No range is enforced.
Parsed ParseNumber(std::string_view text, Source source, double& number);

/// "stroke-width" and "stroke-dashoffset": a length or a percentage, or "inherit" (nothing).
Parsed ParseLength(std::string_view text, Source source, Length& length);

/// "font-size": as a length, and the keywords "xx-small" to "xx-large", "larger" and "smaller" (nothing).
Parsed ParseFontSize(std::string_view text, Source source, Length& length);

/// "stroke-dasharray": a list of lengths and percentages; "none" and the empty text are the empty list; "inherit" is
/// nothing. The time is linear in the text.
Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink);

/// A gradient stop's "offset": a number, or a percentage as its fraction. Not clamped.
Parsed ParseOffset(std::string_view text, double& fraction);

/// "stop-color": a colour, with or without an ICC colour, which is dropped; "currentColor" and "inherit" are nothing.
Parsed ParseColor(std::string_view text, PackedColor& color);

/// "fill" and "stroke". Never `nothing`: the kind tells the forms apart.
Parsed ParsePaint(std::string_view text, Paint& paint);

/// "href" and "xlink:href": any IRI. Never `nothing`.
Parsed ParseIri(std::string_view text, Reference& reference);

/// "mask" and "clip-path": the id of a local reference, empty for "none". "inherit" and an external reference are
/// nothing. The id points into the text.
Parsed ParseMaskReference(std::string_view text, std::string_view& id);

/// "display": "inherit" and "none"; the other keywords are nothing.
Parsed ParseDisplay(std::string_view text, Display& display);
/// "visibility"; "inherit" is nothing, here and in the next three.
Parsed ParseVisibility(std::string_view text, Visibility& visibility);
/// "fill-rule".
Parsed ParseFillRule(std::string_view text, FillRule& rule);
/// "stroke-linecap".
Parsed ParseLineCap(std::string_view text, LineCap& cap);
/// "stroke-linejoin".
Parsed ParseLineJoin(std::string_view text, LineJoin& join);
/// "gradientUnits".
Parsed ParseGradientUnits(std::string_view text, GradientUnits& units);
/// "spreadMethod".
Parsed ParseSpreadMethod(std::string_view text, SpreadMethod& method);
/// "font-style"; "inherit" is nothing.
Parsed ParseFontStyle(std::string_view text, FontStyle& style);
/// "font-weight": 100 to 500 are normal, 600 to 900 are bold; "bolder", "lighter" and "inherit" are nothing.
Parsed ParseFontWeight(std::string_view text, FontWeight& weight);

/// "viewBox": four numbers.
Parsed ParseViewBox(std::string_view text, ViewBox& box);

/// "preserveAspectRatio".
Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio);

/// "transform": the whole list as one matrix; the empty list is the identity. Blanks around the list are skipped.
Parsed ParseTransform(std::string_view text, Matrix& matrix);

/// "d": path data. Relative coordinates, horizontal and vertical lines, smooth and quadratic curves and arcs arrive as
/// absolute lines and cubics. An arc ends exactly on its end point; one that ends where it starts is left out, and one
/// without a radius, or whose conversion is not finite, is a straight line. The empty text is an empty path.
Parsed ParsePath(std::string_view text, PathSink& sink);

/// "points": pairs of numbers; the first is a move, the others are lines. Nothing is closed. No pairs are nothing.
Parsed ParsePoints(std::string_view text, PathSink& sink);

/// Walks the declarations of a "style" attribute.
///
///     grammar::StyleSplitter splitter("fill:red; stroke-width: 2");
///     for (std::string_view name, value; splitter.Next(name, value);)
///         Dispatch(name, value);
///
/// Names and values come without surrounding blanks and point into the text. A declaration without a name or a value,
/// or with a colon inside the value, is skipped without a word.
class StyleSplitter
{
public:
	explicit StyleSplitter(std::string_view text) : _rest(text)
	{
	}

	/// Finds the next declaration; false when there is none, and the arguments are then left alone.
	bool Next(std::string_view& name, std::string_view& value);

private:
	std::string_view _rest;
};

/// Throws the grammar library's invalid-value error, derived from std::exception, whose message names the attribute and
/// holds the whole value: `Invalid value of SVG attribute (or property) "fill": "reddish"`.
///
/// The value is not shortened, so the error of a 10 MB path takes some 30 MB while it is in flight; an allocation that
/// fails on the way throws std::bad_alloc instead. A zero byte in the value ends what the exception's what() shows, but
/// not the exception's own copy of the value.
[[noreturn]] void RaiseInvalidValue(const char* name, std::string_view value);
} // namespace orvan::grammar
