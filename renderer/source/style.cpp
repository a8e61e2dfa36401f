// SPDX-License-Identifier: MIT
#include "style.h"

#include <algorithm>
#include <cmath>

namespace orvan::cairo
{
namespace
{

constexpr double kPixelsPerInch = 96.0;

/// Font-relative units are made absolute where they are given, percentages only where they are used.
SVGLength Fix(const SVGLength& length, double fontSize) noexcept
{
	if (length.unit == SVGLengthUnit::percent)
		return length;
	return {ToUserUnits(length, Axis::other, {}, fontSize), SVGLengthUnit::number};
}

} // namespace

double Viewport::GetDiagonal() const noexcept
{
	return std::hypot(width, height) / std::sqrt(2.0);
}

double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, double fontSize) noexcept
{
	switch (length.unit)
	{
	case SVGLengthUnit::em:
		return length.value * fontSize;
	case SVGLengthUnit::ex:
		return length.value * fontSize / 2.0;
	case SVGLengthUnit::in:
		return length.value * kPixelsPerInch;
	case SVGLengthUnit::cm:
		return length.value * kPixelsPerInch / 2.54;
	case SVGLengthUnit::mm:
		return length.value * kPixelsPerInch / 25.4;
	case SVGLengthUnit::pt:
		return length.value * kPixelsPerInch / 72.0;
	case SVGLengthUnit::pc:
		return length.value * kPixelsPerInch / 6.0;
	case SVGLengthUnit::percent:
		return length.value * (axis == Axis::horizontal ? viewport.width
							   : axis == Axis::vertical ? viewport.height
														: viewport.GetDiagonal());
	case SVGLengthUnit::q:
		return length.value * kPixelsPerInch / 101.6;
	case SVGLengthUnit::rem:
		return length.value * 16.0;
	case SVGLengthUnit::ch:
		return length.value * fontSize / 2.0;
	case SVGLengthUnit::vw:
		return length.value * viewport.width / 100.0;
	case SVGLengthUnit::vh:
		return length.value * viewport.height / 100.0;
	case SVGLengthUnit::vmin:
		return length.value * std::min(viewport.width, viewport.height) / 100.0;
	case SVGLengthUnit::vmax:
		return length.value * std::max(viewport.width, viewport.height) / 100.0;
	case SVGLengthUnit::px:
	case SVGLengthUnit::number:
		break;
	}
	return length.value;
}

double ClampToUnit(double value) noexcept
{
	return std::isnan(value) ? 1.0 : std::clamp(value, 0.0, 1.0);
}

void Style::Apply(const DataDictionary& attributes) noexcept
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
		fontSize = size->unit == SVGLengthUnit::percent ? size->value * parent : Fix(*size, parent).value;
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

Effects::Effects(const DataDictionary& attributes) noexcept
{
	const auto find = [&](SVGImportAttribute key) -> const String*
	{
		const auto* id = attributes.Find<String>(static_cast<std::int32_t>(key));
		return id != nullptr && !id->IsEmpty() ? id : nullptr;
	};
	opacity = ClampToUnit(attributes.GetOr(static_cast<std::int32_t>(SVGImportAttribute::opacity), 1.0));
	mask = find(SVGImportAttribute::mask);
	clipPath = find(SVGImportAttribute::clipPath);
}

} // namespace orvan::cairo
