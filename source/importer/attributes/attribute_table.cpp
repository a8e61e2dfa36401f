// SPDX-License-Identifier: MIT
/// The table of attributes, and dispatching by it.
#include "importer/attributes/attribute_handlers.h"

#include <array>
#include <functional>
#include <new>

namespace orvan::svg
{

namespace
{

using Attribute = SVGImportAttribute;

struct AttributeRow
{
	std::string_view name;
	Attribute attribute;
	AttributeImporter importer; ///< Null for an attribute that is known but ignored.
};

/// All attributes, in the order of their numbers.
constexpr std::array kAttributes = {
	AttributeRow{"id", Attribute::id, &ImportId},
	AttributeRow{"class", Attribute::classNames, nullptr},
	AttributeRow{"href", Attribute::href, &ImportLink},
	AttributeRow{"transform", Attribute::transform, &ImportTransform},
	AttributeRow{"display", Attribute::display, &ImportKeyword<&grammar::ParseDisplay>},
	AttributeRow{"visibility", Attribute::visibility, &ImportKeyword<&grammar::ParseVisibility>},
	AttributeRow{"opacity", Attribute::opacity, &ImportNumber},
	AttributeRow{"viewBox", Attribute::viewBox, &ImportViewBox},
	AttributeRow{"preserveAspectRatio", Attribute::preserveAspectRatio, &ImportPreserveAspectRatio},
	AttributeRow{"x", Attribute::x, &ImportPlainLength},
	AttributeRow{"y", Attribute::y, &ImportPlainLength},
	AttributeRow{"width", Attribute::width, &ImportPlainLength},
	AttributeRow{"height", Attribute::height, &ImportPlainLength},
	AttributeRow{"x1", Attribute::x1, &ImportPlainLength},
	AttributeRow{"y1", Attribute::y1, &ImportPlainLength},
	AttributeRow{"x2", Attribute::x2, &ImportPlainLength},
	AttributeRow{"y2", Attribute::y2, &ImportPlainLength},
	AttributeRow{"cx", Attribute::cx, &ImportPlainLength},
	AttributeRow{"cy", Attribute::cy, &ImportPlainLength},
	AttributeRow{"fx", Attribute::fx, &ImportPlainLength},
	AttributeRow{"fy", Attribute::fy, &ImportPlainLength},
	AttributeRow{"r", Attribute::r, &ImportRadius},
	AttributeRow{"rx", Attribute::rx, &ImportPlainLength},
	AttributeRow{"ry", Attribute::ry, &ImportPlainLength},
	AttributeRow{"d", Attribute::d, &ImportPathData},
	AttributeRow{"fill", Attribute::fill, &ImportPaint},
	AttributeRow{"fill-rule", Attribute::fillRule, &ImportKeyword<&grammar::ParseFillRule>},
	AttributeRow{"fill-opacity", Attribute::fillOpacity, &ImportNumber},
	AttributeRow{"stroke", Attribute::stroke, &ImportPaint},
	AttributeRow{"stroke-width", Attribute::strokeWidth, &ImportLength},
	AttributeRow{"stroke-opacity", Attribute::strokeOpacity, &ImportNumber},
	AttributeRow{"stroke-linejoin", Attribute::strokeLineJoin, &ImportKeyword<&grammar::ParseLineJoin>},
	AttributeRow{"stroke-linecap", Attribute::strokeLineCap, &ImportKeyword<&grammar::ParseLineCap>},
	AttributeRow{"stroke-miterlimit", Attribute::strokeMiterLimit, &ImportNumber},
	AttributeRow{"stroke-dasharray", Attribute::strokeDashArray, &ImportDashArray},
	AttributeRow{"stroke-dashoffset", Attribute::strokeDashOffset, &ImportLength},
	AttributeRow{"gradientUnits", Attribute::gradientUnits, &ImportGradientKeyword<&grammar::ParseGradientUnits>},
	AttributeRow{"spreadMethod", Attribute::spreadMethod, &ImportGradientKeyword<&grammar::ParseSpreadMethod>},
	AttributeRow{"offset", Attribute::offset, &ImportOffset},
	AttributeRow{"stop-color", Attribute::stopColor, &ImportStopColor},
	AttributeRow{"stop-opacity", Attribute::stopOpacity, &ImportStopOpacity},
	AttributeRow{"font-size", Attribute::fontSize, &ImportFontSize},
	AttributeRow{"font-family", Attribute::fontFamily, &ImportFontFamily},
	AttributeRow{"font-style", Attribute::fontStyle, &ImportFontStyle},
	AttributeRow{"font-weight", Attribute::fontWeight, &ImportFontWeight},
	AttributeRow{"mask", Attribute::mask, &ImportReference},
	AttributeRow{"clip-path", Attribute::clipPath, &ImportReference},
	AttributeRow{"style", Attribute::style, &ImportStyle},
	AttributeRow{"points", Attribute::points, &ImportPoints},
};

Result<void> NoteFinding(SVGParseContext& context, std::string_view attributeName, std::string_view text) noexcept
{
	const String message = ORVAN_TRY(DescribeRefusedValue(attributeName, text));
	return context.findings->Add(SVGFindingLevel::warning,
								 {context.refusedAt, context.elementName, (*context.element)->GetId(), attributeName},
								 message.View());
}

} // namespace

/// The compiler checks that every number from 1 to 49 is there, with the public name.
constexpr std::array<AttributeImporter, kPlainNumberCount> kAttributeImporters = []
{
	std::array<AttributeImporter, kPlainNumberCount> importers{};
	std::size_t reached = 0;
	for (const AttributeRow& row : kAttributes)
	{
		const auto number = static_cast<std::size_t>(row.attribute);
		if (number != ++reached)
			throw "the numbers have a gap, or one comes twice";
		if (row.name != kSVGAttributeNames[number])
			throw "the name differs from the public one";
		importers[number] = row.importer;
	}
	if (reached + 1 != importers.size())
		throw "the last numbers are missing";
	return importers;
}();

void SVGParseContext::Refuse(const char* attributeName, std::string_view text)
{
	if (!refusal.IsOk())
		return; // The first one counts.
	if (textRelease.HasReleased())
	{
		refusal = IllegalStateError("What was refused is to be told from the text, which was released.");
		return;
	}
	textRelease.Stop();
	// A declaration of a style has a place of its own, unless the style was copied to replace references.
	const char* end = rawValue.data() + rawValue.size();
	const bool isInside = !std::less<>()(text.data(), rawValue.data()) && !std::less<>()(end, text.data());
	refusedAt = isInside ? text.data() : rawValue.data();
	if (findings != nullptr)
	{
		const Result<void> noted = NoteFinding(*this, attributeName, text);
		if (!noted.IsOk())
			throw std::bad_alloc();
		return;
	}
	refusedElementName = elementName;
	refusedElementId = (*element)->GetId();
	refusedAttribute = attributeName;
	refusal = IllegalArgumentError("Invalid value of SVG attribute (or property) \"@\": \"@\"", attributeName, text);
}

} // namespace orvan::svg
