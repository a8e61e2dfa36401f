// SPDX-License-Identifier: MIT
// What the matcher asks of siblings, of which there may be many.
//
// Each walk starts at an element and goes to its earlier siblings. What it finds out about the whole of them is
// remembered for some that it passes, and the next walk that meets one of these needs to go no further. So in whichever
// order elements are asked about, a walk takes a dozen steps or two, but for the first.
#include "matcher.h"

#include "nth.h"

namespace orvan::css
{
namespace
{
/// A walk that is shorter remembers nothing, and what is remembered is so far apart.
constexpr int kShortWalk = 8;

/// Their addresses stand for questions that are the same whichever selector asks; the second place is for the total.
constexpr char kAllSiblings[2]{};
constexpr char kSameType[2]{};

bool IsOfType(const Simple& simple)
{
	return simple.kind == SimpleKind::nthOfType || simple.kind == SimpleKind::nthLastOfType;
}

const void* FindQuestion(const Simple& simple)
{
	return simple.list ? static_cast<const void*>(&simple) : IsOfType(simple) ? kSameType : kAllSiblings;
}

const void* AskForTotal(const void* question)
{
	return static_cast<const char*>(question) + 1;
}
} // namespace

/// Passes a sibling on a walk: the answer about it when it is remembered, else null.
const std::uint32_t* Matcher::Pass(int step, const Walk& walk, Element sibling, std::uint32_t soFar)
{
	if (step < kShortWalk)
		return nullptr;
	if (const std::uint32_t* const answer = _memory.Find(sibling, walk.question, walk.type))
		return answer;
	if (step % kShortWalk == 0)
		_passed.push_back({sibling, walk.question, walk.type, soFar});
	return nullptr;
}

/// Ends a walk: `answer` tells what to remember of each place that was passed, from what was found up to there.
template <typename Answer>
void Matcher::Remember(const Walk& walk, bool isLong, const Answer& answer)
{
	for (; _passed.size() > walk.firstPassed; _passed.pop_back())
	{
		SiblingMemory::Entry entry = _passed.back();
		entry.answer = answer(entry.answer);
		if (isLong)
			_memory.Put(entry);
	}
}

Matcher::Outcome Matcher::MatchLaterSiblings(const Compound& compound, Element element)
{
	const Walk walk{&compound, {}, _passed.size()};
	Outcome outcome = Outcome::failsWithSiblings;
	int step = 0;
	for (Element sibling = element;; step++)
	{
		// Within ":has()" it depends on the element that this asks about.
		if (const std::uint32_t* const matches = _anchor ? nullptr : Pass(step, walk, sibling, 0))
		{
			outcome = *matches != 0 ? Outcome::matches : Outcome::failsWithSiblings;
			break;
		}
		sibling = _view.GetPrevious(sibling);
		if (!sibling)
			break;
		const Outcome found = Match(compound, sibling);
		if (found == Outcome::fails)
			continue;
		outcome = found;
		break;
	}
	Remember(walk, step >= 2 * kShortWalk, [outcome](std::uint32_t) { return outcome == Outcome::matches ? 1U : 0U; });
	return outcome;
}

bool Matcher::MatchesNth(const Simple& simple, const Subject& subject)
{
	if (simple.list && !MatchesList(simple.list, subject))
		return false;
	const bool countsFromEnd = simple.kind == SimpleKind::nthLastChild || simple.kind == SimpleKind::nthLastOfType;
	const std::uint32_t place = countsFromEnd ? CountFrom(simple, subject) : CountUpTo(simple, subject);
	return Nth{simple.step, simple.start}.Has(place);
}

bool Matcher::CountsForNth(const Simple& simple, std::string_view type, Element sibling)
{
	Spend(1);
	if (IsOfType(simple))
		return _view.GetNames(sibling).type == type;
	return !simple.list || MatchesList(simple.list, {sibling, _view.GetNames(sibling)});
}

/// How many siblings count from the first one up to the subject, which counts.
std::uint32_t Matcher::CountUpTo(const Simple& simple, const Subject& subject)
{
	const Walk walk{FindQuestion(simple), IsOfType(simple) ? subject.names.type : std::string_view(), _passed.size()};
	std::uint32_t count = 1;
	int step = 0;
	for (Element sibling = subject.element; sibling && !IsBudgetExceeded(); step++)
	{
		// What is remembered is how many stand before.
		if (const std::uint32_t* const before = Pass(step, walk, sibling, count))
		{
			count += *before;
			break;
		}
		sibling = _view.GetPrevious(sibling);
		if (sibling && CountsForNth(simple, subject.names.type, sibling))
			count++;
	}
	Remember(walk, step >= 2 * kShortWalk, [count](std::uint32_t passed) { return count - passed; });
	return count;
}

/// How many siblings count from the subject, which counts, to the last one.
std::uint32_t Matcher::CountFrom(const Simple& simple, const Subject& subject)
{
	const void* const question = AskForTotal(FindQuestion(simple));
	const std::string_view type = IsOfType(simple) ? subject.names.type : std::string_view();
	const Element parent = _view.GetParent(subject.element);
	std::uint32_t count = 1;
	int step = 0;
	Element sibling = subject.element;
	while ((sibling = _view.GetNext(sibling)) && !IsBudgetExceeded())
	{
		if (step++ == kShortWalk)
		{
			if (const std::uint32_t* const total = _memory.Find(parent, question, type))
				return *total - CountUpTo(simple, subject) + 1;
		}
		if (CountsForNth(simple, subject.names.type, sibling))
			count++;
	}
	if (step > kShortWalk)
		_memory.Put({parent, question, type, CountUpTo(simple, subject) - 1 + count});
	return count;
}
} // namespace orvan::css
