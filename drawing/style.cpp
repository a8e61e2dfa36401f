// SPDX-License-Identifier: MIT
#include "style.h"

#include "fonts.h"
#include "limits.h"

#include <array>
#include <type_traits>

namespace orvan::drawing
{
namespace
{

/// What the rows below work on: one entry of an element's attributes, and the style that takes it over.
struct Assignment
{
	const DataDictionary& attributes;
	const DataDictionary::Entry& entry;
	Style& style;
	const Viewport& viewport;
};

using Assign = void (*)(const Assignment&) noexcept;

/// How many user units one of a unit is that needs a font to be known; negative for the units that need none.
double GetFontUnit(SVGLengthUnit unit, const Viewport& viewport, const FontMetrics& metrics, double fontSize) noexcept
{
	// Lines are as high as whole pixels.
	const auto lineHeight = [&](double size)
	{
		return std::round(metrics.ascent * size) + std::round(-metrics.descent * size) +
			   std::round(metrics.lineGap * size);
	};
	switch (unit)
	{
	case SVGLengthUnit::ex:
		return metrics.xHeight * fontSize;
	case SVGLengthUnit::ch:
		return metrics.zeroAdvance * fontSize;
	case SVGLengthUnit::cap:
		return metrics.capHeight * fontSize;
	case SVGLengthUnit::ic:
		return metrics.ideographAdvance * fontSize;
	case SVGLengthUnit::lh:
		return lineHeight(fontSize);
	case SVGLengthUnit::rlh:
		return lineHeight(viewport.outermost.fontSize);
	default:
		return -1.0;
	}
}

/// A length where it is given. The family may come later among the attributes than what is measured by it.
double ToUserUnits(const Assignment& at, const SVGLength& length) noexcept
{
	Style style = at.style;
	if (const auto* family = at.attributes.Find<String>(static_cast<std::int32_t>(SVGImportAttribute::fontFamily)))
		style.fontFamily = family;
	return drawing::ToUserUnits(length, Axis::other, at.viewport, style);
}

/// Font-relative units are made absolute where they are given, all others only where they are used.
SVGLength Fix(const Assignment& at, const SVGLength& length) noexcept
{
	const bool isFontRelative =
		length.unit == SVGLengthUnit::em || GetFontUnit(length.unit, at.viewport, {}, at.style.fontSize) >= 0.0;
	return isFontRelative ? SVGLength{ToUserUnits(at, length), SVGLengthUnit::number} : length;
}

template <auto property>
void Number(const Assignment& at) noexcept
{
	if (const auto* value = at.attributes.GetValue<Float>(at.entry))
		at.style.*property = *value;
}

template <auto property>
void Keyword(const Assignment& at) noexcept
{
	using Enumeration = std::remove_reference_t<decltype(at.style.*property)>;
	if (const auto* value = at.attributes.GetValue<std::int32_t>(at.entry))
		at.style.*property = static_cast<Enumeration>(*value);
}

/// A value that stays where it is: the style points to it.
template <auto property>
void Pointer(const Assignment& at) noexcept
{
	using Value = std::remove_cvref_t<decltype(*(at.style.*property))>;
	if (const auto* value = at.attributes.GetValue<Value>(at.entry))
		at.style.*property = value;
}

template <auto property>
void Length(const Assignment& at) noexcept
{
	if (const auto* value = at.attributes.GetValue<SVGLength>(at.entry))
		at.style.*property = Fix(at, *value);
}

void Dashes(const Assignment& at) noexcept
{
	Pointer<&Style::dashes>(at);
	at.style.dashFontSize = at.style.fontSize;
}

/// "color: currentColor" is what is inherited.
void CurrentColor(const Assignment& at) noexcept
{
	const auto* paint = at.attributes.GetValue<SVGPaint>(at.entry);
	if (paint == nullptr || paint->type != SVGPaintType::color)
		return;
	at.style.color = paint->color;
	at.style.colorAlpha = paint->alpha;
}

/// The weight, which the complete import has as a number as well: a negative one is relative to the inherited weight.
void Weight(const Assignment& at) noexcept
{
	constexpr double kBold = 700.0;
	constexpr double kNormal = 400.0;
	constexpr double kBolder = -2.0;
	const auto* number = at.attributes.Find<Float>(static_cast<std::int32_t>(SVGImportAttribute::fontWeightNumber));
	const double inherited = at.style.fontWeight;
	if (number != nullptr && *number > 0.0)
		at.style.fontWeight = *number;
	else if (number != nullptr && *number == kBolder)
		at.style.fontWeight = inherited < 350.0 ? kNormal : inherited < 550.0 ? kBold : std::max(inherited, 900.0);
	else if (number != nullptr)
		at.style.fontWeight = inherited < 550.0 ? std::min(inherited, 100.0) : inherited < 750.0 ? kNormal : kBold;
	else if (const auto* keyword = at.attributes.GetValue<std::int32_t>(at.entry))
		at.style.fontWeight = *keyword == static_cast<std::int32_t>(SVGFontWeight::bold) ? kBold : kNormal;
}

/// Two of its keywords leave everything as it is.
void DominantBaseline(const Assignment& at) noexcept
{
	const SVGBaseline before = at.style.dominantBaseline;
	Keyword<&Style::dominantBaseline>(at);
	if (at.style.dominantBaseline == SVGBaseline::noChange || at.style.dominantBaseline == SVGBaseline::resetSize)
		at.style.dominantBaseline = before;
}

/// Space between letters, words or lines; percentages are of the font's size.
template <auto property>
void Spacing(const Assignment& at) noexcept
{
	const auto* value = at.attributes.GetValue<SVGLength>(at.entry);
	if (value == nullptr)
		return;
	at.style.*property =
		value->unit == SVGLengthUnit::percent ? value->value * at.style.fontSize : ToUserUnits(at, *value);
}

struct Row
{
	SVGImportAttribute key;
	Assign assign;
};

/// The inherited properties, but for the font size, which comes before all others.
constexpr Row kRows[] = {
	{SVGImportAttribute::visibility, &Keyword<&Style::visibility>},
	{SVGImportAttribute::fill, &Pointer<&Style::fill>},
	{SVGImportAttribute::fillRule, &Keyword<&Style::fillRule>},
	{SVGImportAttribute::fillOpacity, &Number<&Style::fillOpacity>},
	{SVGImportAttribute::stroke, &Pointer<&Style::stroke>},
	{SVGImportAttribute::strokeWidth, &Length<&Style::strokeWidth>},
	{SVGImportAttribute::strokeOpacity, &Number<&Style::strokeOpacity>},
	{SVGImportAttribute::strokeLineJoin, &Keyword<&Style::lineJoin>},
	{SVGImportAttribute::strokeLineCap, &Keyword<&Style::lineCap>},
	{SVGImportAttribute::strokeMiterLimit, &Number<&Style::miterLimit>},
	{SVGImportAttribute::strokeDashArray, &Dashes},
	{SVGImportAttribute::strokeDashOffset, &Length<&Style::dashOffset>},
	{SVGImportAttribute::fontFamily, &Pointer<&Style::fontFamily>},
	{SVGImportAttribute::fontStyle, &Keyword<&Style::fontStyle>},
	{SVGImportAttribute::fontWeight, &Weight},
	{SVGImportAttribute::fontStretch, &Number<&Style::fontStretch>},
	{SVGImportAttribute::fontVariant, &Keyword<&Style::fontVariant>},
	{SVGImportAttribute::textTransform, &Keyword<&Style::textTransform>},
	{SVGImportAttribute::textUnderlineOffset, &Spacing<&Style::underlineOffset>},
	{SVGImportAttribute::fontSizeAdjust, &Number<&Style::fontSizeAdjust>},
	{SVGImportAttribute::language, &Pointer<&Style::language>},
	{SVGImportAttribute::textAnchor, &Keyword<&Style::textAnchor>},
	{SVGImportAttribute::dominantBaseline, &DominantBaseline},
	{SVGImportAttribute::writingMode, &Keyword<&Style::writingMode>},
	{SVGImportAttribute::textOrientation, &Keyword<&Style::textOrientation>},
	{SVGImportAttribute::fontKerning, &Keyword<&Style::fontKerning>},
	{SVGImportAttribute::direction, &Keyword<&Style::direction>},
	{SVGImportAttribute::letterSpacing, &Spacing<&Style::letterSpacing>},
	{SVGImportAttribute::wordSpacing, &Spacing<&Style::wordSpacing>},
	{SVGImportAttribute::clipRule, &Keyword<&Style::clipRule>},
	{SVGImportAttribute::markerStart, &Pointer<&Style::markerStart>},
	{SVGImportAttribute::markerMid, &Pointer<&Style::markerMid>},
	{SVGImportAttribute::markerEnd, &Pointer<&Style::markerEnd>},
	{SVGImportAttribute::pointerEvents, &Keyword<&Style::pointerEvents>},
	{SVGImportAttribute::paintOrder, &Keyword<&Style::paintOrder>},
	{SVGImportAttribute::shapeRendering, &Keyword<&Style::shapeRendering>},
	{SVGImportAttribute::imageRendering, &Keyword<&Style::imageRendering>},
	{SVGImportAttribute::colorInterpolation, &Keyword<&Style::colorInterpolation>},
	{SVGImportAttribute::colorInterpolationFilters, &Keyword<&Style::colorInterpolationFilters>},
	{SVGImportAttribute::color, &CurrentColor},
};

constexpr int kKeyCount = static_cast<int>(kSVGAttributeNames.size());

/// The rows by key.
constexpr auto kAssignments = []
{
	std::array<Assign, kKeyCount> assignments{};
	for (const Row& row : kRows)
		assignments[static_cast<std::size_t>(row.key)] = row.assign;
	return assignments;
}();

} // namespace

double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, const Style& style,
				   double fontSize) noexcept
{
	Fonts* const fonts = viewport.outermost.fonts;
	if (fonts != nullptr && GetFontUnit(length.unit, viewport, {}, fontSize) >= 0.0)
	{
		Style outermost;
		outermost.fontFamily = viewport.outermost.fontFamily;
		// Without memory or any font, the unit is what it is in most.
		auto font = fonts->Find(length.unit == SVGLengthUnit::rlh ? outermost : style);
		if (font.IsOk() && font.GetValue()->face != nullptr)
			return length.value * GetFontUnit(length.unit, viewport, font.GetValue()->metrics, fontSize);
	}
	return ToUserUnits(length, axis, viewport, fontSize);
}

void Style::Apply(const DataDictionary& attributes, const Viewport& viewport) noexcept
{
	// The font size comes first: the other lengths may be given in terms of it.
	if (const auto* size = attributes.Find<SVGLength>(static_cast<std::int32_t>(SVGImportAttribute::fontSize)))
	{
		const double parent = fontSize;
		fontSize = size->unit == SVGLengthUnit::percent ? size->value * parent
														: ToUserUnits(*size, Axis::other, viewport, *this, parent);
	}
	for (const DataDictionary::Entry& entry : attributes)
	{
		if (entry.key < 0 || entry.key >= kKeyCount)
			continue;
		if (const Assign assign = kAssignments[static_cast<std::size_t>(entry.key)])
			assign({attributes, entry, *this, viewport});
	}
}

Result<Style> GetInheritedStyle(const SVGElementRef& element, const Viewport& viewport, const Style& initial) noexcept
{
	BaseArray<SVGElementRef> ancestors;
	auto at = Cast<HierarchyObjectInterface>(element);
	while (at && ancestors.GetCount() < kMaxDepth)
	{
		at = ORVAN_TRY(at->GetParent());
		if (const auto ancestor = Cast<SVGElementInterface>(at))
			ORVAN_TRY(ancestors.Append(ancestor));
	}
	Style style = initial;
	for (std::size_t i = ancestors.GetCount(); i-- > 0;)
		style.Apply(ancestors[i]->GetAttributeDictionary(), viewport);
	return style;
}

} // namespace orvan::drawing
