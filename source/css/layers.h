// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory_resource>
#include <string_view>
#include <utility>
#include <vector>

namespace orvan::css
{
/// The number of a layer; 0 for what stands in none.
using LayerNumber = std::uint32_t;

/// The cascade layers of a sheet, and which of them win.
///
/// Layers stand in each other and win in the order in which they were named first; what stands in a layer itself wins
/// over the layers in it, and what stands in none over all.
class Layers
{
public:
	explicit Layers(std::pmr::memory_resource* memory);

	/// The layer of this name in another one, made when there is none yet. Without a name it is a new one. When there
	/// are as many as a sheet may have, it is the outer one. Throws std::bad_alloc.
	LayerNumber Enter(LayerNumber outer, std::string_view name);

	/// Whether there is any layer.
	bool IsEmpty() const
	{
		return _layers.size() == 1;
	}

	/// Brings the ranks up to date with what was entered. Throws std::bad_alloc.
	void Rank();

	/// The rank of a layer: normal declarations of higher ones win, important ones of lower ones.
	std::uint32_t RankOf(LayerNumber layer) const
	{
		return _layers[layer].rank;
	}

private:
	struct Layer
	{
		LayerNumber firstInner = 0;
		LayerNumber lastInner = 0;
		LayerNumber next = 0; ///< In the same outer one.
		std::uint32_t rank = 0;
	};

	std::pmr::vector<Layer> _layers; ///< The first stands for what is in none.
	std::pmr::map<std::pair<LayerNumber, std::string_view>, LayerNumber> _names;
};
} // namespace orvan::css
