// SPDX-License-Identifier: MIT
#pragma once

#include "bounds.h"
#include "element_view.h"
#include "selector.h"
#include "sibling_memory.h"

#include <cstdint>
#include <memory_resource>

namespace orvan::css
{
/// Holds selectors against the elements of one tree.
///
/// Works best when elements are asked about in document order: what was counted among the siblings of one is remembered
/// for the next. Every step is counted, and when the budget is used up nothing matches any more.
class Matcher
{
public:
	/// The view must outlive the matcher. The memory is used only where siblings are many.
	explicit Matcher(const ElementView& view, std::pmr::memory_resource* memory = std::pmr::get_default_resource());

	/// True when the element matches one of the list; false when the list is null.
	bool MatchesAny(const Selector* list, Element element);

	/// As above, for a single selector of a list. `names` are the element's own.
	bool Matches(const Selector& selector, Element element, const ElementNames& names);

	/// Adds what one more element may cost.
	void AddElement()
	{
		_budget += kWorkPerElement;
	}

	/// Takes the budget for something that the matcher does not count by itself.
	void Spend(std::uint64_t steps)
	{
		_work += steps;
	}

	/// Steps taken so far.
	std::uint64_t WorkDone() const
	{
		return _work;
	}

	/// True when there was more to do than the bounds allow; then elements stay unmatched that should have matched.
	bool IsBudgetExceeded() const
	{
		return _work > _budget;
	}

private:
	/// How much of the tree a failure speaks for, so that nobody tries again what cannot succeed.
	enum class Outcome
	{
		matches,
		fails,              ///< Here; another ancestor or sibling may do.
		failsAmongSiblings, ///< For every earlier sibling too.
		failsCompletely     ///< For every ancestor too.
	};

	struct Subject
	{
		Element element;
		const ElementNames* names;
	};

	Outcome MatchFrom(const Compound& compound, Subject subject);
	Outcome MatchLeft(const Compound& compound, Element element);
	Outcome MatchParent(const Compound& left, Element element);
	Outcome MatchAncestors(const Compound& left, Element element);
	Outcome MatchPrevious(const Compound& left, Element element);
	Outcome MatchLaterSiblings(const Compound& left, Element element);
	Outcome MatchOne(const Compound& compound, Element element);
	bool MatchesCompound(const Compound& compound, Subject subject);
	bool MatchesSimple(const Simple& simple, Subject subject);
	bool MatchesAttribute(const Simple& simple, Element element);
	bool MatchesLanguage(std::string_view language, Element element);
	bool MatchesNth(const Simple& simple, Subject subject);
	bool MatchesList(const Selector* list, Subject subject);

	const ElementView& _view;
	SiblingMemory _siblings;
	std::uint64_t _work = 0;
	std::uint64_t _budget = kFreeWork;
};
} // namespace orvan::css
