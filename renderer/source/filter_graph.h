// SPDX-License-Identifier: MIT
/// The graph of an element's filters: which pictures go into which, where their edges are, and in which colour space
/// they are worked out.
#pragma once

#include "filter_operation.h"

namespace orvan::cairo
{

/// Nodes in an order in which each comes after those that it takes pictures from. The first one is the element as it is
/// drawn; all filters of the element, one after the other, make up one graph, so that of each picture no more is worked
/// out than its successors need.
class FilterGraph
{
public:
	/// The graph of all stages. `source` is what the element touches, in pixels.
	static Result<FilterGraph> Build(const Canvas& canvas, const drawing::Frame& user,
									 const BaseArray<drawing::FilterStage>& stages, const FilterSpace& space,
									 const filters::Box& source) noexcept;

	/// Finds out which part of each picture is needed so that `shown` can be shown.
	void Plan(const filters::Box& shown) noexcept;

	/// The part of the element that is needed; empty when nothing is.
	const filters::Box& GetSourceBox() const noexcept
	{
		return _nodes[0].needed;
	}

	/// The part of the result that there can be.
	const filters::Box& GetResultBox() const noexcept
	{
		return _nodes[_result].needed;
	}

	/// How many pixels there are at the same time at most, and how many are worked out in all.
	struct Cost
	{
		double pixelsAtOnce = 0.0;
		double pixels = 0.0;
	};

	Cost GetCost() const noexcept;

	/// Works the result out, in sRGB. `source` has the pixels of the source box.
	Result<filters::Raster> Run(filters::Raster source, const filters::Alarm& alarm) noexcept;

private:
	struct Node
	{
		FilterOperationPtr operation; ///< Null for the first node, and for those that give nothing.
		BaseArray<std::size_t> inputs;
		drawing::Rectangle region; ///< The subregion in user units.
		filters::Box subregion;
		filters::ColorSpace colorSpace = filters::ColorSpace::sRGB;
		filters::Box needed;
		std::size_t lastUse = 0; ///< The last node that takes the picture.
		filters::Raster raster;
		filters::Raster converted; ///< The same in the other colour space, where that was asked for.
		filters::ColorSpace rasterSpace = filters::ColorSpace::sRGB;
	};

	/// A name of a result.
	struct Name
	{
		String name;
		std::size_t node;
	};

	/// What names stand for within one filter element.
	struct Names
	{
		BaseArray<Name> results;
		std::size_t source = 0;
		std::size_t previous = 0;
		std::size_t alpha = 0; ///< 0 until it is made.
		filters::Box region;
	};

	Result<std::size_t> Append(Node node) noexcept;
	Result<std::size_t> AppendUnary(FilterOperationPtr operation, std::size_t input,
									const filters::Box& subregion) noexcept;
	Result<void> AppendStage(const Canvas& canvas, const drawing::Frame& user, const drawing::FilterStage& stage,
							 const FilterSpace& space) noexcept;
	Result<void> AppendPrimitive(const Canvas& canvas, const drawing::Frame& user, const drawing::FilterStage& stage,
								 const FilterSpace& space, ObjectBase* element, Names& names) noexcept;
	Result<std::size_t> FindInput(const String& name, Names& names) noexcept;
	Result<void> RunNode(std::size_t index, const filters::Alarm& alarm) noexcept;

	BaseArray<Node> _nodes;
	std::size_t _result = 0;
};

} // namespace orvan::cairo
