// SPDX-License-Identifier: MIT
#include "filter_graph.h"

#include "filters/arrange.h"
#include "svg_complete.h"

#include <algorithm>

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using filters::Alarm;
using filters::Box;
using filters::ColorSpace;
using filters::Raster;
using Key = SVGImportAttribute;

/// A box that holds whatever there is.
constexpr Box kEverywhere{-(1 << 28), -(1 << 28), 1 << 28, 1 << 28};

constexpr std::size_t kFewInputs = 16;

ColorSpace GetColorSpace(const Style& style) noexcept
{
	return style.colorInterpolationFilters == SVGColorInterpolation::linearRGB ? ColorSpace::linear : ColorSpace::sRGB;
}

bool SaysRegion(const DataDictionary& attributes) noexcept
{
	for (const Key key : {Key::x, Key::y, Key::width, Key::height})
	{
		if (attributes.Has(static_cast<std::int32_t>(key)))
			return true;
	}
	return false;
}

bool HasSecondInput(SVGImportElementKind kind) noexcept
{
	return kind == SVGImportElementKind::feBlend || kind == SVGImportElementKind::feComposite ||
		   kind == SVGImportElementKind::feDisplacementMap;
}

bool HasInput(SVGImportElementKind kind) noexcept
{
	return kind != SVGImportElementKind::feFlood && kind != SVGImportElementKind::feImage &&
		   kind != SVGImportElementKind::feTurbulence;
}

} // namespace

// Building -----------------------------------------------------------------------------------------------------------

Result<FilterGraph> FilterGraph::Build(const Canvas& canvas, const Frame& user, const BaseArray<FilterStage>& stages,
									   const FilterSpace& space, const Box& source) noexcept
{
	FilterGraph graph;
	Node first;
	first.subregion = source;
	graph._result = ORVAN_TRY(graph.Append(std::move(first)));
	for (const FilterStage& stage : stages)
		ORVAN_TRY(graph.AppendStage(canvas, user, stage, space));
	return graph;
}

Result<std::size_t> FilterGraph::Append(Node node) noexcept
{
	ORVAN_TRY(_nodes.Append(std::move(node)));
	return _nodes.GetCount() - 1;
}

Result<std::size_t> FilterGraph::AppendUnary(FilterOperationPtr operation, std::size_t input,
											 const Box& subregion) noexcept
{
	Node node;
	node.operation = std::move(operation);
	ORVAN_TRY(node.inputs.Append(input));
	node.subregion = subregion;
	return Append(std::move(node));
}

Result<void> FilterGraph::AppendStage(const Canvas& canvas, const Frame& user, const FilterStage& stage,
									  const FilterSpace& space) noexcept
{
	if (stage.function->type != SVGFilterFunctionType::reference)
	{
		FilterOperationPtr operation = ORVAN_TRY(MakeOperation(*stage.function, user, space));
		_result = ORVAN_TRY(AppendUnary(std::move(operation), _result, kEverywhere));
		return {};
	}
	Names names;
	names.region = space.RoundOut(stage.region);
	names.source = names.previous = ORVAN_TRY(AppendUnary(ORVAN_TRY(MakeCrop()), _result, names.region));
	_nodes[names.source].region = stage.region;
	bool isEmpty = true;
	Limits& limits = canvas.job.scene.limits;
	const auto hierarchy = Cast<HierarchyObjectInterface>(stage.filter);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		if (!Borrowed<SVGFilterPrimitiveInterface>(child))
			continue;
		if (limits.IsOver() || !limits.Pay(kElementWork))
			break;
		isEmpty = false;
		ORVAN_TRY(AppendPrimitive(canvas, user, stage, space, child.GetObject(), names));
	}
	// A filter without primitives leaves nothing.
	_result = isEmpty ? ORVAN_TRY(Append(Node())) : names.previous;
	return {};
}

Result<void> FilterGraph::AppendPrimitive(const Canvas& canvas, const Frame& user, const FilterStage& stage,
										  const FilterSpace& space, ObjectBase* element, Names& names) noexcept
{
	const Borrowed<SVGElementInterface> svgElement(element);
	const Borrowed<SVGFilterPrimitiveInterface> primitive(element);
	const SVGImportElementKind kind = svgElement->GetElementType();
	const DataDictionary attributes = svgElement->GetAttributeDictionary();
	Style style = stage.place.style;
	style.Apply(attributes, stage.place.viewport);
	Node node;
	node.colorSpace = GetColorSpace(style);
	if (kind == SVGImportElementKind::feMerge)
	{
		const Borrowed<HierarchyObjectInterface> hierarchy(element);
		for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
		{
			const Borrowed<SVGElementInterface> part(child);
			if (!part || part->GetElementType() != SVGImportElementKind::feMergeNode)
				continue;
			const DataDictionary said = part->GetAttributeDictionary();
			const auto* name = said.Find<String>(static_cast<std::int32_t>(Key::in));
			ORVAN_TRY(node.inputs.Append(ORVAN_TRY(FindInput(name != nullptr ? *name : String(), names))));
		}
	}
	else
	{
		if (HasInput(kind))
			ORVAN_TRY(node.inputs.Append(ORVAN_TRY(FindInput(primitive->GetInput(), names))));
		if (HasSecondInput(kind))
			ORVAN_TRY(node.inputs.Append(ORVAN_TRY(FindInput(primitive->GetSecondInput(), names))));
	}
	// What a primitive does not say about its subregion is that of its inputs, or the whole region where there are
	// none.
	Rectangle inherited;
	for (const std::size_t input : node.inputs)
	{
		inherited.Include(_nodes[input].region);
		node.subregion = node.subregion.Unite(_nodes[input].subregion);
	}
	if (node.inputs.IsEmpty() || kind == SVGImportElementKind::feTile)
	{
		inherited = stage.region;
		node.subregion = names.region;
	}
	node.region = inherited;
	if (SaysRegion(attributes))
	{
		node.region = ResolveRegion(attributes, stage.primitiveUnits, stage.place, stage.box, inherited);
		node.subregion = space.Round(node.region).Intersect(names.region);
	}
	MadeOperation made = ORVAN_TRY(MakeOperation(
		{canvas, user, stage, space, element, attributes, style, node.region, node.subregion, node.colorSpace}));
	if (made.isPassing)
		made.operation = ORVAN_TRY(MakeCrop());
	node.operation = std::move(made.operation);
	names.previous = ORVAN_TRY(Append(std::move(node)));
	if (const String result = primitive->GetResult(); !result.IsEmpty())
		ORVAN_TRY(names.results.Append({result, names.previous}));
	return {};
}

/// The node that a name stands for. A name that stands for nothing counts as none, which is the primitive before. What
/// lies below the element, and the paints of it, have names that stand for nothing here, as in browsers.
Result<std::size_t> FilterGraph::FindInput(const String& name, Names& names) noexcept
{
	if (name.View() == "SourceGraphic")
		return names.source;
	if (name.View() == "SourceAlpha")
	{
		if (names.alpha == 0)
		{
			names.alpha = ORVAN_TRY(AppendUnary(ORVAN_TRY(MakeAlpha()), names.source, names.region));
			_nodes[names.alpha].region = _nodes[names.source].region;
		}
		return names.alpha;
	}
	for (std::size_t i = names.results.GetCount(); i-- > 0 && !name.IsEmpty();)
	{
		if (names.results[i].name.View() == name.View())
			return names.results[i].node;
	}
	return names.previous;
}

// Planning -----------------------------------------------------------------------------------------------------------

void FilterGraph::Plan(const Box& shown) noexcept
{
	for (Node& node : _nodes)
	{
		node.needed = {};
		node.lastUse = 0;
	}
	_nodes[_result].needed = shown.Intersect(_nodes[_result].subregion);
	_nodes[_result].lastUse = _nodes.GetCount();
	for (std::size_t i = _nodes.GetCount(); i-- > 0;)
	{
		const Node& node = _nodes[i];
		if (node.operation == nullptr || node.needed.IsEmpty())
			continue;
		for (std::size_t input = 0; input < node.inputs.GetCount(); input++)
		{
			Node& from = _nodes[node.inputs[input]];
			const Box needed = node.operation->GetNeeded(input, node.needed, from.subregion).Intersect(from.subregion);
			if (!needed.IsEmpty())
				from.needed = from.needed.Unite(needed);
			from.lastUse = std::max(from.lastUse, i);
		}
	}
	for (Node& node : _nodes)
	{
		if (node.needed.IsEmpty())
			node.needed = {};
	}
}

FilterGraph::Cost FilterGraph::GetCost() const noexcept
{
	Cost cost;
	double alive = 0.0;
	for (std::size_t i = 0; i < _nodes.GetCount(); i++)
	{
		const BaseArray<std::size_t>& inputs = _nodes[i].inputs;
		const double area = _nodes[i].needed.GetArea();
		alive += area;
		cost.pixels += area;
		// Working something out takes as much again, for what is converted and for what lies between two steps.
		cost.pixelsAtOnce = std::max(cost.pixelsAtOnce, alive + 2.0 * area);
		for (std::size_t input = 0; input < inputs.GetCount(); input++)
		{
			// One that comes several times counts once; only with many inputs that is not looked for.
			const bool isAgain = inputs.GetCount() <= kFewInputs && std::find(inputs.begin(), inputs.begin() + input,
																			  inputs[input]) != inputs.begin() + input;
			if (_nodes[inputs[input]].lastUse == i && !isAgain)
				alive -= _nodes[inputs[input]].needed.GetArea();
		}
		alive = std::max(alive, 0.0);
	}
	return cost;
}

// Running ------------------------------------------------------------------------------------------------------------

Result<Raster> FilterGraph::Run(Raster source, const Alarm& alarm) noexcept
{
	_nodes[0].raster = std::move(source);
	for (std::size_t i = 1; i <= _result; i++)
	{
		if (_nodes[i].operation != nullptr && !_nodes[i].needed.IsEmpty() && !alarm.IsOver())
			ORVAN_TRY(RunNode(i, alarm));
		for (const std::size_t input : _nodes[i].inputs)
		{
			if (_nodes[input].lastUse > i)
				continue;
			_nodes[input].raster = Raster();
			_nodes[input].converted = Raster();
		}
	}
	Node& result = _nodes[_result];
	filters::Convert(result.raster, result.rasterSpace, ColorSpace::sRGB);
	return std::move(result.raster);
}

Result<void> FilterGraph::RunNode(std::size_t index, const Alarm& alarm) noexcept
{
	Node& node = _nodes[index];
	const bool worksOnColors = node.operation->WorksOnColors();
	BaseArray<FilterInput> inputs;
	node.rasterSpace = node.colorSpace;
	for (const std::size_t number : node.inputs)
	{
		Node& from = _nodes[number];
		if (!worksOnColors)
			node.rasterSpace = from.rasterSpace;
		const bool isInOtherSpace = from.rasterSpace != node.rasterSpace;
		// Dark colours suffer from being converted there and back.
		if (isInOtherSpace && from.converted.GetBox().IsEmpty())
		{
			from.converted = ORVAN_TRY(Check(filters::Crop(from.raster, from.raster.GetBox())));
			filters::Convert(from.converted, from.rasterSpace, node.rasterSpace);
		}
		ORVAN_TRY(inputs.Append({isInOtherSpace ? &from.converted : &from.raster, from.subregion}));
	}
	node.raster = ORVAN_TRY(node.operation->Apply({inputs.begin(), inputs.GetCount()}, node.needed, alarm));
	return {};
}

} // namespace orvan::cairo
