// SPDX-License-Identifier: MIT
#include "style.h"

#include "limits.h"

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

} // namespace

void Style::Apply(const DataDictionary& attributes, const Viewport& viewport) noexcept
{
	const auto read = [&]<typename T>(const DataDictionary::Entry& entry, T& property)
	{
		if (const T* value = attributes.GetValue<T>(entry))
			property = *value;
	};
	const auto readKeyword = [&]<typename T>(const DataDictionary::Entry& entry, T& property)
	{
		if (const auto* value = attributes.GetValue<std::int32_t>(entry))
			property = static_cast<T>(*value);
	};
	const auto point = [&]<typename T>(const DataDictionary::Entry& entry, const T*& property)
	{
		if (const T* value = attributes.GetValue<T>(entry))
			property = value;
	};

	// The font size comes first: the other lengths may be given in terms of it.
	if (const auto* size = attributes.Find<SVGLength>(static_cast<std::int32_t>(SVGImportAttribute::fontSize)))
	{
		const double parent = fontSize;
		fontSize = size->unit == SVGLengthUnit::percent ? size->value * parent
														: ToUserUnits(*size, Axis::other, viewport, parent);
	}
	for (const DataDictionary::Entry& entry : attributes)
	{
		switch (static_cast<SVGImportAttribute>(entry.key))
		{
		case SVGImportAttribute::visibility:
			readKeyword(entry, visibility);
			break;
		case SVGImportAttribute::fill:
			point(entry, fill);
			break;
		case SVGImportAttribute::fillRule:
			readKeyword(entry, fillRule);
			break;
		case SVGImportAttribute::fillOpacity:
			read(entry, fillOpacity);
			break;
		case SVGImportAttribute::stroke:
			point(entry, stroke);
			break;
		case SVGImportAttribute::strokeWidth:
			read(entry, strokeWidth);
			strokeWidth = Fix(strokeWidth, fontSize);
			break;
		case SVGImportAttribute::strokeOpacity:
			read(entry, strokeOpacity);
			break;
		case SVGImportAttribute::strokeLineJoin:
			readKeyword(entry, lineJoin);
			break;
		case SVGImportAttribute::strokeLineCap:
			readKeyword(entry, lineCap);
			break;
		case SVGImportAttribute::strokeMiterLimit:
			read(entry, miterLimit);
			break;
		case SVGImportAttribute::strokeDashArray:
			point(entry, dashes);
			dashFontSize = fontSize;
			break;
		case SVGImportAttribute::strokeDashOffset:
			read(entry, dashOffset);
			dashOffset = Fix(dashOffset, fontSize);
			break;
		case SVGImportAttribute::fontFamily:
			point(entry, fontFamily);
			break;
		case SVGImportAttribute::fontStyle:
			readKeyword(entry, fontStyle);
			break;
		case SVGImportAttribute::fontWeight:
			readKeyword(entry, fontWeight);
			break;
		default:
			break;
		}
	}
}

Result<Style> GetInheritedStyle(const SVGElementRef& element, const Viewport& viewport) noexcept
{
	BaseArray<SVGElementRef> ancestors;
	auto at = Cast<HierarchyObjectInterface>(element);
	while (at && ancestors.GetCount() < kMaxDepth)
	{
		at = ORVAN_TRY(at->GetParent());
		if (const auto ancestor = Cast<SVGElementInterface>(at))
			ORVAN_TRY(ancestors.Append(ancestor));
	}
	Style style;
	for (std::size_t i = ancestors.GetCount(); i-- > 0;)
		style.Apply(ancestors[i]->GetAttributeDictionary(), viewport);
	return style;
}

} // namespace orvan::drawing
