// SPDX-License-Identifier: MIT
/// Handlers of lengths, paths and viewports.
#include "elements/element_classes.h"
#include "importer/attributes/attribute_handlers.h"
#include "importer/attributes/length_scanner.h"
#include "importer/path_element_sink.h"

#include <cmath>

namespace orvan::svg
{

using grammar::Parsed;

Result<void> ImportPlainLength(const Value& value)
{
	const SVGLength length = ScanLength(value.text);
	if (!value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused))
		return {};
	return value.Store(length);
}

Result<void> ImportRadius(const Value& value)
{
	if (value.Element()->GetElementType() != SVGImportElementKind::circle)
		return ImportPlainLength(value);
	const SVGLength length = ScanLength(value.text);
	if (!value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused))
		return {};
	if (const Borrowed<SVGRadiusInterface> radius(value.Element()); radius)
		return radius->SetRadius(length);
	return {};
}

namespace
{

/// Calls `read` with the sink for the element at hand.
template <typename Read>
Result<void> ReadPath(const Value& value, Read read)
{
	ElementBase& element = value.OwnElement();
	if (element.GetElementType() == SVGImportElementKind::path)
	{
		PathElementSink sink(static_cast<PathElement&>(element), &value.context.textRelease);
		read(sink);
		return sink.Exit(value.text.data() + value.text.size());
	}
	grammar::NoPathSink sink;
	read(sink);
	return {};
}

} // namespace

Result<void> ImportPathData(const Value& value)
{
	return ReadPath(value,
					[&value](grammar::PathSink& sink)
					{
						if (grammar::ParsePath(value.text, sink) == Parsed::refused)
							value.context.Refuse("path", value.text);
					});
}

Result<void> ImportPoints(const Value& value)
{
	return ReadPath(value,
					[&value](grammar::PathSink& sink)
					{
						// Without points there is nothing to close: every path begins with a move. Of a value with a
						// fault a tolerant import keeps what stands before it, open.
						if (value.Accept(grammar::ParsePoints(value.text, sink)) && value.context.isPolygon)
							sink.Close();
					});
}

Result<void> ImportViewBox(const Value& value)
{
	grammar::ViewBox box;
	if (!value.Accept(grammar::ParseViewBox(value.text, box)))
		return {};
	const Borrowed<SVGFitToViewboxInterface> fitted(value.Element());
	if (!fitted)
		return {};
	const auto length = [](double number)
	{
		return SVGLength{number, SVGLengthUnit::number};
	};
	return fitted->SetViewbox({length(box.x), length(box.y), length(box.width), length(box.height), false});
}

Result<void> ImportPreserveAspectRatio(const Value& value)
{
	grammar::AspectRatio ratio;
	if (!value.Accept(grammar::ParsePreserveAspectRatio(value.text, ratio)) ||
		!Borrowed<SVGFitToViewboxInterface>(value.Element()))
		return {};
	return value.Store(
		SVGPreserveAspectRatio{static_cast<SVGAlign>(ratio.align), static_cast<SVGMeetOrSlice>(ratio.meetOrSlice)});
}

} // namespace orvan::svg
