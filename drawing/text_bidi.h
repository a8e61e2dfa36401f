// SPDX-License-Identifier: MIT
/// The order of characters in which languages of both directions meet.
#pragma once

#include "text_content.h"

namespace orvan::drawing
{

/// A text as the bidirectional algorithm reads it: what attributes say about directions stands in it as marks.
struct BidiText
{
	static Result<BidiText> Create(const TextContent& content) noexcept;

	BaseArray<char> bytes;           ///< UTF-8.
	BaseArray<std::uint32_t> places; ///< Where each character of the content starts.
	bool isRightToLeft = false;      ///< The direction of the text as a whole.
};

} // namespace orvan::drawing
