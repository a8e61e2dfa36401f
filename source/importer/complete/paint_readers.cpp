// SPDX-License-Identifier: MIT
/// Readers of paints, colours and filters.
#include "importer/complete/importer.h"
#include "importer/complete/value_readers.h"

#include <algorithm>
#include <string>

namespace orvan::svg::complete
{

using grammar::Parsed;
using grammar::complete::ColorKind;
using grammar::complete::PaintFallback;
using grammar::complete::PaintKind;

namespace
{

Result<String> TextOf(const grammar::complete::Reference& reference)
{
	return reference.hasEscapes ? String::Create(grammar::complete::ResolveEscapes(reference.text))
								: String::Create(reference.text);
}

void SetColor(SVGPaint& paint, const grammar::complete::Color& color) noexcept
{
	paint.color = {color.red, color.green, color.blue};
	paint.alpha = color.alpha;
}

SVGPaint ToPaint(const grammar::complete::Color& color) noexcept
{
	SVGPaint paint;
	if (color.kind == ColorKind::currentColor)
		paint.type = SVGPaintType::currentColor;
	else
		SetColor(paint, color);
	return paint;
}

Result<void> ToPaint(const grammar::complete::Paint& parsed, SVGPaint& paint)
{
	switch (parsed.kind)
	{
	case PaintKind::none:
		paint.type = SVGPaintType::none;
		break;
	case PaintKind::color:
		SetColor(paint, parsed.color);
		break;
	case PaintKind::currentColor:
		paint.type = SVGPaintType::currentColor;
		break;
	case PaintKind::contextFill:
		paint.type = SVGPaintType::contextFill;
		break;
	case PaintKind::contextStroke:
		paint.type = SVGPaintType::contextStroke;
		break;
	case PaintKind::reference:
		paint.type = SVGPaintType::reference;
		paint.reference = ORVAN_TRY(TextOf(parsed.reference));
		break;
	}
	switch (parsed.fallback)
	{
	case PaintFallback::absent:
		break;
	case PaintFallback::none:
		paint.fallback = SVGPaintFallback::none;
		break;
	case PaintFallback::color:
		paint.fallback = SVGPaintFallback::color;
		SetColor(paint, parsed.color);
		break;
	case PaintFallback::currentColor:
		paint.fallback = SVGPaintFallback::currentColor;
		break;
	}
	return {};
}

} // namespace

Result<Reading> ReadPaint(const Application& application)
{
	grammar::complete::Paint parsed;
	if (grammar::complete::ParsePaint(application.text, parsed) != Parsed::value)
		return Reading::refused;
	SVGPaint paint;
	ORVAN_TRY(ToPaint(parsed, paint));
	ORVAN_TRY(application.element.Store(application.rule.number, std::move(paint)));
	return Reading::applied;
}

/// On "color" itself, currentColor is the parent's.
Result<Reading> ReadColor(const Application& application)
{
	grammar::complete::Color color;
	if (grammar::complete::ParseColor(application.text, color) != Parsed::value)
		return Reading::refused;
	if (application.rule.number == SVGImportAttribute::color && color.kind == ColorKind::currentColor)
		ORVAN_TRY(application.element.Unset(SVGImportAttribute::color));
	else
		ORVAN_TRY(application.element.Store(application.rule.number, ToPaint(color)));
	return Reading::applied;
}

Result<Reading> ReadBackground(const Application& application)
{
	// What of the shorthand is no colour lies between blanks, and lays nothing on the page that can be drawn.
	std::string_view rest = application.text;
	const auto isBlank = [](char c)
	{
		return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
	};
	while (!rest.empty())
	{
		std::size_t length = 0;
		for (int depth = 0; length < rest.size() && (depth > 0 || !isBlank(rest[length])); length++)
			depth += rest[length] == '(' ? 1 : rest[length] == ')' ? -1 : 0;
		grammar::complete::Color color;
		if (grammar::complete::ParseColor(rest.substr(0, length), color) == Parsed::value)
		{
			ORVAN_TRY(application.element.Store(application.rule.number, ToPaint(color)));
			return Reading::applied;
		}
		rest.remove_prefix(std::min(length + 1, rest.size()));
	}
	if (application.rule.name == "background-color")
		return Reading::refused;
	ORVAN_TRY(application.element.Unset(application.rule.number));
	return Reading::applied;
}

/// A colour as the plain import stores it, or a paint for what that cannot hold.
Result<Reading> ReadStopColor(const Application& application)
{
	grammar::complete::Color color;
	if (grammar::complete::ParseColor(application.text, color) != Parsed::value)
		return Reading::refused;
	if (color.kind == ColorKind::color && color.alpha == 1.0)
		ORVAN_TRY(application.element.Store(application.rule.number, Color{color.red, color.green, color.blue}));
	else
		ORVAN_TRY(application.element.Store(application.rule.number, ToPaint(color)));
	return Reading::applied;
}

Result<Reading> ReadPaintOrder(const Application& application)
{
	using grammar::complete::PaintLayer;
	grammar::complete::PaintOrder order;
	if (grammar::complete::ParsePaintOrder(application.text, order) != Parsed::value)
		return Reading::refused;
	// The orders are numbered by their first layer and then by whether the other two stand as usual.
	const auto first = static_cast<std::int32_t>(order[0]);
	const bool isUsual = order[1] < order[2];
	ORVAN_TRY(application.element.Store(application.rule.number, 2 * first + (isUsual ? 0 : 1)));
	return Reading::applied;
}

Result<Reading> ReadFilter(const Application& application)
{
	class Sink final : public grammar::complete::FilterSink
	{
	public:
		void Append(const grammar::complete::FilterFunction& parsed) override
		{
			if (Result<void> appended = TryAppend(parsed); !appended.IsOk())
				result = std::move(appended);
		}

		BaseArray<SVGFilterFunction> functions;
		Result<void> result;

	private:
		Result<void> TryAppend(const grammar::complete::FilterFunction& parsed)
		{
			const auto toLength = [](const grammar::Length& length)
			{
				return SVGLength{length.value, length.unit};
			};
			SVGFilterFunction function;
			function.type = static_cast<SVGFilterFunctionType>(parsed.kind);
			function.amount = parsed.amount;
			function.x = toLength(parsed.offsetX);
			function.y = toLength(parsed.offsetY);
			function.deviation = toLength(parsed.deviation);
			if (parsed.hasColor)
				function.color = ToPaint(parsed.color);
			if (parsed.kind == grammar::complete::FilterKind::reference)
				function.reference = ORVAN_TRY(TextOf(parsed.reference));
			return functions.Append(std::move(function));
		}
	};

	Sink sink;
	if (grammar::complete::ParseFilter(application.text, application.source, sink) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(std::move(sink.result));
	ORVAN_TRY(application.element.Store(application.rule.number, std::move(sink.functions)));
	return Reading::applied;
}

} // namespace orvan::svg::complete
