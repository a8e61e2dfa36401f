// SPDX-License-Identifier: MIT
/// Handlers of paints, numbers, dashes, gradients and fonts.
#include "importer/attributes/attribute_handlers.h"

namespace orvan::svg
{

Result<void> ImportNumber(const Value& value)
{
	double number = 0.0;
	if (!value.Accept(grammar::ParseNumber(value.text, value.source, number)))
		return {};
	return IgnoreUnlessOutOfMemory(value.Store(number));
}

Result<void> ImportDashArray(const Value& value)
{
	class Sink final : public grammar::LengthSink
	{
	public:
		void Append(const grammar::Length& length) override
		{
			if (Result<void> appended = dashes.Append(ToLength(length)); !appended.IsOk())
				result = std::move(appended);
		}

		BaseArray<SVGLength> dashes;
		Result<void> result;
	};

	Sink sink;
	if (!value.Accept(grammar::ParseDashArray(value.text, value.source, sink)))
		return {};
	ORVAN_TRY(std::move(sink.result));
	return value.OwnElement().SetStrokeDashArray(sink.dashes);
}

Result<void> ImportLength(const Value& value)
{
	grammar::Length length;
	if (!value.Accept(grammar::ParseLength(value.text, value.source, length)))
		return {};
	return value.Store(ToLength(length));
}

/// A local reference with a fallback sets nothing at all, and neither does an external one without; an external
/// reference with a fallback sets the fallback.
Result<void> ImportPaint(const Value& value)
{
	grammar::Paint parsed;
	if (!value.Accept(grammar::ParsePaint(value.text, parsed)))
		return {};
	const bool isReference = parsed.kind == grammar::PaintKind::reference;
	const bool hasFallback = parsed.fallback != grammar::PaintFallback::absent;
	if (isReference && parsed.reference.isLocal == hasFallback)
		return {};

	SVGPaint paint;
	if (isReference && !hasFallback)
	{
		paint.type = SVGPaintType::reference;
		paint.reference = ORVAN_TRY(String::Create(parsed.reference.text));
	}
	else if (parsed.kind == grammar::PaintKind::none || parsed.fallback == grammar::PaintFallback::none)
		paint.type = SVGPaintType::none;
	else if (parsed.kind == grammar::PaintKind::color || parsed.fallback == grammar::PaintFallback::color)
		paint.color = ToColor(parsed.color);
	else
		return {}; // "currentColor" or "inherit", also as a fallback.
	return IgnoreUnlessOutOfMemory(value.Store(std::move(paint)));
}

/// Mask and clip path.
Result<void> ImportReference(const Value& value)
{
	std::string_view id;
	if (!value.Accept(grammar::ParseMaskReference(value.text, id)))
		return {};
	return value.Store(ORVAN_TRY(String::Create(id)));
}

bool IsGradient(const SVGElementRef& element) noexcept
{
	return Borrowed<SVGLinearGradientElementInterface>(element) || Borrowed<SVGRadialGradientElementInterface>(element);
}

Result<void> ImportOffset(const Value& value)
{
	double offset = 0.0;
	if (!value.Accept(grammar::ParseOffset(value.text, offset)) || !Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return value.Store(offset);
}

Result<void> ImportStopColor(const Value& value)
{
	grammar::PackedColor color = 0;
	if (!value.Accept(grammar::ParseColor(value.text, color)) || !Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return value.Store(ToColor(color));
}

Result<void> ImportStopOpacity(const Value& value)
{
	double opacity = 0.0;
	if (!value.Accept(grammar::ParseNumber(value.text, value.source, opacity)) ||
		!Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return IgnoreUnlessOutOfMemory(value.Store(opacity));
}

namespace
{

Result<void> SetFontStyle(const Value& value, SVGFontStyle style)
{
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontStyle(style);
	return Value{value.context, SVGImportAttribute::fontStyle, {}, value.source}.Store(
		static_cast<std::int32_t>(style));
}

Result<void> SetFontWeight(const Value& value, SVGFontWeight weight)
{
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontWeight(weight);
	return Value{value.context, SVGImportAttribute::fontWeight, {}, value.source}.Store(
		static_cast<std::int32_t>(weight));
}

} // namespace

Result<void> ImportFontSize(const Value& value)
{
	grammar::Length length;
	if (!value.Accept(grammar::ParseFontSize(value.text, value.source, length)))
		return {};
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontSize(ToLength(length));
	return value.Store(ToLength(length));
}

/// The family also tells style and weight, for families such as "Helvetica-BoldItalic".
Result<void> ImportFontFamily(const Value& value)
{
	const String family = ORVAN_TRY(String::Create(value.text));
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		ORVAN_TRY(text->SetFont(family));
	else
		ORVAN_TRY(value.Store(family));
	if (value.text.find("Italic") != value.text.npos)
		ORVAN_TRY(SetFontStyle(value, SVGFontStyle::italic));
	if (value.text.find("Bold") != value.text.npos)
		ORVAN_TRY(SetFontWeight(value, SVGFontWeight::bold));
	return {};
}

Result<void> ImportFontStyle(const Value& value)
{
	grammar::FontStyle style;
	if (!value.Accept(grammar::ParseFontStyle(value.text, style)))
		return {};
	return SetFontStyle(value, static_cast<SVGFontStyle>(style));
}

Result<void> ImportFontWeight(const Value& value)
{
	grammar::FontWeight weight;
	if (!value.Accept(grammar::ParseFontWeight(value.text, weight)))
		return {};
	return SetFontWeight(value, static_cast<SVGFontWeight>(weight));
}

} // namespace orvan::svg
