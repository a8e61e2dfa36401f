// SPDX-License-Identifier: MIT
#include "style.h"

#include "limits.h"

#include <array>
#include <type_traits>

namespace orvan::drawing
{
namespace
{

/// Font-relative units are made absolute where they are given, all others only where they are used.
SVGLength Fix(const SVGLength& length, double fontSize) noexcept
{
	const bool isFontRelative =
		length.unit == SVGLengthUnit::em || length.unit == SVGLengthUnit::ex || length.unit == SVGLengthUnit::ch;
	if (!isFontRelative)
		return length;
	return {ToUserUnits(length, Axis::other, {}, fontSize), SVGLengthUnit::number};
}

/// What the rows below work on: one entry of an element's attributes, and the style that takes it over.
struct Assignment
{
	const DataDictionary& attributes;
	const DataDictionary::Entry& entry;
	Style& style;
	const Viewport& viewport;
};

using Assign = void (*)(const Assignment&) noexcept;

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
		at.style.*property = Fix(*value, at.style.fontSize);
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

/// Space between letters, words or lines; percentages are of the font's size.
template <auto property>
void Spacing(const Assignment& at) noexcept
{
	const auto* value = at.attributes.GetValue<SVGLength>(at.entry);
	if (value == nullptr)
		return;
	at.style.*property = value->unit == SVGLengthUnit::percent
							 ? value->value * at.style.fontSize
							 : ToUserUnits(*value, Axis::other, at.viewport, at.style.fontSize);
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
	{SVGImportAttribute::dominantBaseline, &Keyword<&Style::dominantBaseline>},
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

void Style::Apply(const DataDictionary& attributes, const Viewport& viewport) noexcept
{
	// The font size comes first: the other lengths may be given in terms of it.
	if (const auto* size = attributes.Find<SVGLength>(static_cast<std::int32_t>(SVGImportAttribute::fontSize)))
	{
		const double parent = fontSize;
		fontSize = size->unit == SVGLengthUnit::percent ? size->value * parent
														: ToUserUnits(*size, Axis::other, viewport, parent);
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
