// SPDX-License-Identifier: MIT
/// feComponentTransfer.
#pragma once

#include "raster.h"

#include <array>
#include <span>

namespace orvan::filters
{

/// What becomes of each value of a channel.
using TransferTable = std::array<std::uint8_t, 256>;

TransferTable IdentityTransfer() noexcept;
/// Between the values, evenly spread over 0 to 1, along straight lines; the identity without values.
TransferTable TableTransfer(std::span<const double> values) noexcept;
/// Steps of the values; the identity without values.
TransferTable DiscreteTransfer(std::span<const double> values) noexcept;
TransferTable LinearTransfer(double slope, double intercept) noexcept;
TransferTable GammaTransfer(double amplitude, double exponent, double offset) noexcept;

struct TransferTables
{
	TransferTable red = IdentityTransfer();
	TransferTable green = IdentityTransfer();
	TransferTable blue = IdentityTransfer();
	TransferTable alpha = IdentityTransfer();
};

/// The channels of `input`, alpha not multiplied in, put through the tables.
Raster Transfer(const Raster& input, const TransferTables& tables, const Box& area, const Alarm& alarm) noexcept;

} // namespace orvan::filters
