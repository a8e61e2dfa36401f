// SPDX-License-Identifier: MIT
#include "transfer.h"

#include "pixel.h"

#include <cmath>

namespace orvan::filters
{
namespace
{

/// A table of a function of 0 to 1; what it gives is limited to that.
template <typename Function>
TransferTable MakeTable(Function function) noexcept
{
	TransferTable table{};
	for (std::size_t i = 0; i < table.size(); i++)
		table[i] =
			static_cast<std::uint8_t>(ToByte(static_cast<float>(255.0 * function(static_cast<double>(i) / 255.0))));
	return table;
}

} // namespace

TransferTable IdentityTransfer() noexcept
{
	return LinearTransfer(1.0, 0.0);
}

TransferTable TableTransfer(std::span<const double> values) noexcept
{
	if (values.empty())
		return IdentityTransfer();
	const auto last = static_cast<double>(values.size() - 1);
	return MakeTable(
		[&](double value)
		{
			const double at = value * last;
			const auto before = static_cast<std::size_t>(at);
			if (before + 1 >= values.size())
				return values.back();
			return values[before] + (at - static_cast<double>(before)) * (values[before + 1] - values[before]);
		});
}

TransferTable DiscreteTransfer(std::span<const double> values) noexcept
{
	if (values.empty())
		return IdentityTransfer();
	return MakeTable(
		[&](double value)
		{
			const auto at = static_cast<std::size_t>(value * static_cast<double>(values.size()));
			return values[std::min(at, values.size() - 1)];
		});
}

TransferTable LinearTransfer(double slope, double intercept) noexcept
{
	return MakeTable([&](double value) { return slope * value + intercept; });
}

TransferTable GammaTransfer(double amplitude, double exponent, double offset) noexcept
{
	return MakeTable([&](double value) { return amplitude * std::pow(value, exponent) + offset; });
}

Raster Transfer(const Raster& input, const TransferTables& tables, const Box& area, const Alarm& alarm) noexcept
{
	const auto map = [](const TransferTable& table, int value)
	{
		return static_cast<int>(table[static_cast<std::size_t>(value)]);
	};
	const auto apply = [&](std::uint32_t pixel)
	{
		const Channels c = Unmultiply(pixel);
		return MultiplyByAlpha(
			{map(tables.blue, c.blue), map(tables.green, c.green), map(tables.red, c.red), map(tables.alpha, c.alpha)});
	};
	const std::uint32_t outside = apply(0);
	Raster result(outside != 0 ? area : area.Intersect(input.GetBox()));
	const Box& box = result.GetBox();
	for (int y = box.top; y < box.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = box.left; x < box.right; x++)
			row[x - box.left] = apply(input.At(x, y));
	}
	return result;
}

} // namespace orvan::filters
