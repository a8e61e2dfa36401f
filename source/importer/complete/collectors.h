// SPDX-License-Identifier: MIT
/// What the readers of lists and paths share.
#pragma once

#include "importer/complete/importer.h"
#include "importer/grammar_values.h"
#include "orvan/array.h"

#include <type_traits>
#include <utility>

namespace orvan::svg::complete
{

/// Collects numbers or lengths into an array of the host's.
template <typename Sink, typename Item, typename Read>
class Collector final : public Sink
{
public:
	void Append(Read item) override
	{
		Result<void> appended = items.Append(Convert(item));
		if (!appended.IsOk()) [[unlikely]]
			result = std::move(appended);
	}

	BaseArray<Item> items;
	Result<void> result; ///< The last error, after which the items are not all.

private:
	static Item Convert(Read item) noexcept
	{
		if constexpr (std::is_same_v<Item, SVGLength>)
			return ToLength(item);
		else
			return item;
	}
};

using LengthCollector = Collector<grammar::LengthSink, SVGLength, const grammar::Length&>;
using NumberCollector = Collector<grammar::complete::NumberSink, Float, double>;

/// What became of a list or a path of which the part before its fault counts, with the place of the fault.
inline Reading ReadingOf(const Application& application, const grammar::complete::Progress& progress) noexcept
{
	if (progress.isWhole)
		return Reading::applied;
	application.importer.faultOffset = progress.offset;
	return Reading::partial;
}

} // namespace orvan::svg::complete
