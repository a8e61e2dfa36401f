// SPDX-License-Identifier: MIT
#pragma once

/// Numbers as texts, for whoever writes values that this grammar reads.

#include <string>

namespace orvan::grammar
{
/// Appends a finite number in the fewest digits that the grammar reads back as the same double, without a zero before
/// the point: "-.5". With more than fifteen digits what is read is not always the nearest double (see decimal.h), so
/// that the text may be that of a neighbour; and three in a thousand of such numbers are never read, whatever is
/// written: then it is the nearest text. Where exponents may be, they stand below 10⁻⁶ and from 10²¹ on. May throw
/// std::bad_alloc.
void AppendDecimal(std::string& text, double number, bool mayHaveExponent);
} // namespace orvan::grammar
