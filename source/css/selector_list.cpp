// SPDX-License-Identifier: MIT
#include "selector_list.h"

#include "bounds.h"
#include "selector_parser.h"
#include "tokenizer.h"

namespace orvan::css
{
SelectorList::SelectorList(std::string_view text, ReportSink* report, std::pmr::memory_resource* memory)
	: _arena(memory)
{
	const auto fail = [report](std::size_t offset, std::string_view message)
	{
		if (report)
			report->Report({0, offset, message});
	};
	if (text.size() > kMaxTextSize)
	{
		fail(0, "The selector is too long.");
		return;
	}
	Tokenizer tokens(text);
	SelectorParser parser(tokens, _arena);
	_first = parser.ParseList(TokenType::end);
	if (!_first)
		fail(parser.ErrorOffset(), parser.Error());
}
} // namespace orvan::css
