// SPDX-License-Identifier: MIT
#pragma once

#include "bounds.h"
#include "element_view.h"
#include "selector.h"
#include "sibling_memory.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

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
	explicit Matcher(const ElementView& view, std::pmr::memory_resource* memory = std::pmr::get_default_resource())
		: _view(view), _memory(memory), _passed(memory)
	{
	}

	/// True when the element matches one of the list; false when the list is null. Throws std::bad_alloc, and what the
	/// view throws.
	bool MatchesAny(const Selector* list, Element element)
	{
		AddElement();
		return MatchesList(list, {element, _view.GetNames(element)});
	}

	/// As above, for a single selector of a list, for a caller that adds elements by itself. `names` are the element's
	/// own.
	bool Matches(const Selector& selector, Element element, const ElementNames& names)
	{
		return MatchSubject(*selector.subject, {element, names}) == Outcome::matches;
	}

	/// Adds what one more element may cost.
	void AddElement()
	{
		_budget += kWorkPerElement;
	}

	/// Counts work that the matcher does not do by itself; false when the budget is used up by now.
	bool Spend(std::uint64_t steps)
	{
		_work += steps;
		return _work <= _budget;
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
		fails,             ///< Here; another sibling or ancestor may do.
		failsWithSiblings, ///< For every earlier sibling too.
		failsWithAncestors ///< For every ancestor too.
	};

	struct Subject
	{
		Element element;
		const ElementNames& names;
	};

	/// A walk over earlier siblings, and what it is for.
	struct Walk
	{
		const void* question;
		std::string_view type;
		std::size_t firstPassed; ///< Where its own places begin in `_passed`.
	};

	Outcome Match(const Compound& compound, Element element)
	{
		return MatchSubject(compound, {element, _view.GetNames(element)});
	}

	Outcome MatchSubject(const Compound& compound, const Subject& subject);
	Outcome MatchAncestors(const Compound& compound, Element element);
	Outcome MatchLaterSiblings(const Compound& compound, Element element);
	bool MatchesSimple(const Simple& simple, const Subject& subject);
	bool MatchesAttribute(const Simple& simple, Element element);
	bool MatchesLanguage(std::string_view language, Element element);
	bool MatchesNth(const Simple& simple, const Subject& subject);
	bool MatchesList(const Selector* list, const Subject& subject);
	bool MatchesHas(const Simple& simple, Element element);
	bool HasMatch(const Selector& selector, Element anchor);
	bool HasMatchBelow(const Selector& selector, Element element, bool isDeep);
	bool MatchesInside(const Selector& selector, Element element);
	bool HasClass(std::string_view classes, std::string_view name);
	bool CountsForNth(const Simple& simple, std::string_view type, Element sibling);
	const std::uint32_t* Pass(int step, const Walk& walk, Element sibling, std::uint32_t soFar);
	template <typename Answer>
	void Remember(const Walk& walk, bool isLong, const Answer& answer);
	std::uint32_t CountUpTo(const Simple& simple, const Subject& subject);
	std::uint32_t CountFrom(const Simple& simple, const Subject& subject);

	const ElementView& _view;
	SiblingMemory _memory;
	std::pmr::vector<SiblingMemory::Entry> _passed; ///< Places of the walks that are under way.
	Element _anchor = nullptr;                      ///< What the ":has()" at hand asks about.
	std::uint64_t _work = 0;
	std::uint64_t _budget = kFreeWork;
};
} // namespace orvan::css
