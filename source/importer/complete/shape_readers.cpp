// SPDX-License-Identifier: MIT
/// Readers of shapes that are values: those of "clip-path", and the path of a textPath.
#include "importer/complete/collectors.h"
#include "importer/complete/value_readers.h"
#include "importer/path_element_sink.h"

#include <string>

namespace orvan::svg::complete
{

using grammar::Parsed;

namespace
{

static_assert(grammar::complete::kClosestSide.value == SVGClipShape::kClosestSide &&
			  grammar::complete::kFarthestSide.value == SVGClipShape::kFarthestSide);

/// Path data as commands; empty when it has a fault, or nothing in it.
Result<BaseArray<SVGPathCommand>> ReadCommands(std::string_view data)
{
	PathData path;
	PathElementSink sink(path);
	const bool isWhole = grammar::complete::ParsePath(data, sink).isWhole;
	ORVAN_TRY(sink.Exit());
	return isWhole ? path.GetCommands() : Result<BaseArray<SVGPathCommand>>(BaseArray<SVGPathCommand>());
}

} // namespace

Result<Reading> ReadClipPath(const Application& application)
{
	grammar::complete::Reference reference;
	if (grammar::complete::ParseReference(application.text, reference) != Parsed::refused)
	{
		ORVAN_TRY(application.element.Unset(SVGImportAttribute::clipShape));
		return ReadReference(application);
	}
	LengthCollector collector;
	grammar::complete::ClipShape parsed;
	if (grammar::complete::ParseClipShape(application.text, application.source, parsed, collector) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(std::move(collector.result));
	SVGClipShape shape;
	shape.type = static_cast<SVGClipShapeType>(parsed.kind);
	shape.box = static_cast<SVGReferenceBox>(parsed.box);
	shape.fillRule = parsed.isEvenOdd ? SVGFillRule::evenodd : SVGFillRule::nonzero;
	shape.lengths = std::move(collector.items);
	if (shape.type == SVGClipShapeType::path)
	{
		std::string resolved;
		if (parsed.path.hasEscapes)
			parsed.path.data = resolved = grammar::complete::ResolveEscapes(parsed.path.data);
		shape.path = ORVAN_TRY(ReadCommands(parsed.path.data));
		if (shape.path.IsEmpty())
			return Reading::refused;
	}
	ORVAN_TRY(application.element.Store(SVGImportAttribute::clipPath, String()));
	ORVAN_TRY(application.element.Store(SVGImportAttribute::clipShape, std::move(shape)));
	return Reading::applied;
}

Result<Reading> ReadTextPathData(const Application& application)
{
	BaseArray<SVGPathCommand> commands = ORVAN_TRY(ReadCommands(application.text));
	if (commands.IsEmpty())
		return Reading::refused;
	ORVAN_TRY(application.element.Store(application.rule.number, std::move(commands)));
	return Reading::applied;
}

} // namespace orvan::svg::complete
