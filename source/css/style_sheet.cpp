// SPDX-License-Identifier: MIT
#include "style_sheet.h"

#include "bounds.h"
#include "sheet_reader.h"

namespace orvan::css
{
namespace
{
constexpr std::string_view kMark = "\xef\xbb\xbf";
} // namespace

StyleSheet::StyleSheet(std::pmr::memory_resource* memory)
	: _arena(_room.data(), _room.size(), memory), _rules(&_arena), _declarations(&_arena), _layers(&_arena)
{
}

void StyleSheet::Add(std::string_view text, const TextOptions& options)
{
	if (text.size() > kMaxTextSize)
	{
		if (options.report)
			options.report->Report({options.source, 0, "The style sheet is too long."});
		return;
	}
	const std::size_t start = text.starts_with(kMark) ? kMark.size() : 0;
	SheetReader(text, start, options, _arena, _rules, _declarations, _layers).Read();
	_layers.Rank();
}
} // namespace orvan::css
