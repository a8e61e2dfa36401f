// SPDX-License-Identifier: MIT
#pragma once

#include "text.h"
#include "tokenizer.h"

#include <cstdint>

namespace orvan::css
{
/// The places an+b for all n from 0 on.
struct Nth
{
	std::int32_t step = 0;
	std::int32_t start = 0;

	/// True when the place, which counts from 1, is one of them.
	bool Has(std::uint32_t place) const
	{
		const std::int64_t distance = std::int64_t{place} - start;
		return step == 0 ? distance == 0 : distance % step == 0 && distance / step >= 0;
	}
};

/// Reads "2n + 1", "odd", "-n+3" and the like, up to the first token that does not belong to it; blanks around it are
/// passed. False when it is something else.
bool ReadNth(Tokenizer& tokens, Arena& arena, Nth& nth);
} // namespace orvan::css
