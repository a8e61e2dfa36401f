// SPDX-License-Identifier: MIT
#pragma once

#include "report.h"
#include "selector.h"
#include "text.h"

#include <memory_resource>
#include <string_view>

namespace orvan::css
{
/// Selectors by themselves, as a client writes them to find elements.
///
///     const SelectorList selectors("g > rect.wall, #door");
///     if (selectors.IsValid())
///     {
///         Matcher matcher(view);
///         for (Element element : …)
///             if (matcher.MatchesAny(selectors.First(), element)) …
///     }
class SelectorList
{
public:
	/// Compiles the text, which must outlive the list. Problems go to the report. Throws std::bad_alloc.
	explicit SelectorList(std::string_view text, ReportSink* report = nullptr,
						  std::pmr::memory_resource* memory = std::pmr::get_default_resource());

	/// False when the text is no list of selectors, or uses something unknown, or is over a bound.
	bool IsValid() const
	{
		return _first != nullptr;
	}

	/// The first selector; null when the list is not valid.
	const Selector* First() const
	{
		return _first;
	}

private:
	Arena _arena;
	const Selector* _first = nullptr;
};
} // namespace orvan::css
