// SPDX-License-Identifier: MIT
#include "layers.h"

#include "bounds.h"

namespace orvan::css
{
Layers::Layers(std::pmr::memory_resource* memory) : _layers(1, memory), _names(memory)
{
}

LayerNumber Layers::Enter(LayerNumber outer, std::string_view name)
{
	const auto number = static_cast<LayerNumber>(_layers.size());
	if (!name.empty())
	{
		if (const auto known = _names.find({outer, name}); known != _names.end())
			return known->second;
	}
	if (number == kMaxLayers)
		return outer;
	if (!name.empty())
		_names.emplace(std::pair(outer, name), number);
	_layers.emplace_back();
	Layer& around = _layers[outer];
	(around.lastInner != 0 ? _layers[around.lastInner].next : around.firstInner) = number;
	around.lastInner = number;
	return number;
}

void Layers::Rank()
{
	// From the last to the first: a layer, and then those in it from the last one on.
	auto rank = static_cast<std::uint32_t>(_layers.size());
	std::pmr::vector<LayerNumber> open(1, 0, _layers.get_allocator());
	while (!open.empty())
	{
		Layer& layer = _layers[open.back()];
		open.pop_back();
		layer.rank = --rank;
		for (LayerNumber inner = layer.firstInner; inner != 0; inner = _layers[inner].next)
			open.push_back(inner);
	}
}
} // namespace orvan::css
