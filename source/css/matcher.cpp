// SPDX-License-Identifier: MIT
#include "matcher.h"

#include "attribute_tests.h"
#include "text.h"

#include <utility>

namespace orvan::css
{
namespace
{
/// Bytes of names that are compared in about the time of a step.
constexpr std::size_t kBytesPerStep = 64;
} // namespace

// A compound is matched first, and then what is at its left. What fails says how far: when no ancestor can do, none of
// the loops further right goes on. So each loop runs once over the ancestors or siblings of the place where it begins,
// and a selector takes no more steps than there are compounds times elements in reach.
Matcher::Outcome Matcher::MatchSubject(const Compound& compound, const Subject& subject)
{
	if (!Spend(1))
		return Outcome::failsWithAncestors;
	for (const Simple* simple = compound.first; simple; simple = simple->next)
	{
		if (!MatchesSimple(*simple, subject))
			return Outcome::fails;
	}
	switch (compound.combinator)
	{
	case Combinator::none:
		return Outcome::matches;
	case Combinator::descendant:
		return MatchAncestors(*compound.left, subject.element);
	case Combinator::child:
	{
		const Element parent = _view.GetParent(subject.element);
		if (!parent)
			return Outcome::failsWithAncestors;
		// Siblings have the same parent.
		const Outcome outcome = Match(*compound.left, parent);
		return outcome == Outcome::fails ? Outcome::failsWithSiblings : outcome;
	}
	case Combinator::nextSibling:
	{
		const Element previous = _view.GetPrevious(subject.element);
		return previous ? Match(*compound.left, previous) : Outcome::failsWithSiblings;
	}
	case Combinator::laterSibling:
		return MatchLaterSiblings(*compound.left, subject.element);
	}
	return Outcome::fails;
}

Matcher::Outcome Matcher::MatchAncestors(const Compound& compound, Element element)
{
	while ((element = _view.GetParent(element)))
	{
		const Outcome outcome = Match(compound, element);
		if (outcome == Outcome::matches || outcome == Outcome::failsWithAncestors)
			return outcome;
	}
	return Outcome::failsWithAncestors;
}

bool Matcher::MatchesSimple(const Simple& simple, const Subject& subject)
{
	switch (simple.kind)
	{
	case SimpleKind::never:
		return false;
	case SimpleKind::always:
		return true;
	case SimpleKind::type:
		return subject.names.type == simple.name;
	case SimpleKind::id:
		return subject.names.id == simple.name && !simple.name.empty();
	case SimpleKind::className:
		return HasClass(subject.names.classes, simple.name);
	case SimpleKind::attribute:
		return MatchesAttribute(simple, subject.element);
	case SimpleKind::root:
		return !_view.GetParent(subject.element);
	case SimpleKind::empty:
		return _view.IsEmpty(subject.element);
	case SimpleKind::link:
		return _view.IsLink(subject.element);
	case SimpleKind::firstChild:
		return !_view.GetPrevious(subject.element);
	case SimpleKind::lastChild:
		return !_view.GetNext(subject.element);
	case SimpleKind::nthChild:
	case SimpleKind::nthLastChild:
	case SimpleKind::nthOfType:
	case SimpleKind::nthLastOfType:
		return MatchesNth(simple, subject);
	case SimpleKind::language:
		return MatchesLanguage(simple.name, subject.element);
	case SimpleKind::isAnyOf:
		return MatchesList(simple.list, subject);
	case SimpleKind::isNoneOf:
		return !MatchesList(simple.list, subject);
	case SimpleKind::has:
		return MatchesHas(simple, subject.element);
	case SimpleKind::anchor:
		return subject.element == _anchor;
	}
	return false;
}

bool Matcher::MatchesList(const Selector* list, const Subject& subject)
{
	for (; list; list = list->next)
	{
		if (MatchSubject(*list->subject, subject) == Outcome::matches)
			return true;
	}
	return false;
}

/// What is found is remembered: selectors that ask the same of an ancestor ask often.
bool Matcher::MatchesHas(const Simple& simple, Element element)
{
	if (const std::uint32_t* const answer = _memory.Find(element, &simple, {}))
		return *answer != 0;
	const Element outer = std::exchange(_anchor, element);
	bool isFound = false;
	for (const Selector* selector = simple.list; selector && !isFound; selector = selector->next)
		isFound = HasMatch(*selector, element);
	_anchor = outer;
	if (!IsBudgetExceeded())
		_memory.Put({element, &simple, {}, isFound ? 1U : 0U});
	return isFound;
}

/// Whether an element matches that stands where the selector's first combinator says.
bool Matcher::HasMatch(const Selector& selector, Element anchor)
{
	const Compound* first = selector.subject;
	while (first->left->combinator != Combinator::none)
		first = first->left;
	const bool isSingle = first == selector.subject;
	switch (first->combinator)
	{
	case Combinator::none:
		return false;
	case Combinator::descendant:
		return HasMatchBelow(selector, anchor, true);
	case Combinator::child:
		return HasMatchBelow(selector, anchor, !isSingle);
	case Combinator::nextSibling:
	case Combinator::laterSibling:
		break;
	}
	for (Element at = _view.GetNext(anchor); at && !IsBudgetExceeded(); at = _view.GetNext(at))
	{
		if (MatchesInside(selector, at) || (!isSingle && HasMatchBelow(selector, at, true)))
			return true;
		if (isSingle && first->combinator == Combinator::nextSibling)
			return false;
	}
	return false;
}

/// Whether one of the children matches, or of all descendants.
bool Matcher::HasMatchBelow(const Selector& selector, Element element, bool isDeep)
{
	for (Element at = _view.GetFirstChild(element); at && !IsBudgetExceeded();)
	{
		if (MatchesInside(selector, at))
			return true;
		Element next = isDeep ? _view.GetFirstChild(at) : nullptr;
		while (!next && at != element)
		{
			next = _view.GetNext(at);
			if (!next)
				at = _view.GetParent(at);
		}
		at = next;
	}
	return false;
}

bool Matcher::MatchesInside(const Selector& selector, Element element)
{
	return Match(*selector.subject, element) == Outcome::matches;
}

bool Matcher::HasClass(std::string_view classes, std::string_view name)
{
	Spend(classes.size() / kBytesPerStep);
	return classes.size() >= name.size() && HasWord(classes, name);
}

bool Matcher::MatchesAttribute(const Simple& simple, Element element)
{
	const auto matches = [&](std::string_view value)
	{
		return Spend(FindCost(simple, value)) && MatchesValue(simple, value);
	};
	std::string_view value;
	if (_view.GetAttribute(element, simple.name, value) && matches(value))
		return true;
	if (!simple.isAnyNamespace)
		return false;
	for (std::size_t i = 0; _view.GetPrefixedAttribute(element, simple.name, i, value); i++)
	{
		if (matches(value))
			return true;
	}
	return false;
}

bool Matcher::MatchesLanguage(std::string_view language, Element element)
{
	for (; element; element = _view.GetParent(element))
	{
		Spend(1);
		std::string_view value;
		if (!_view.GetPrefixedAttribute(element, "lang", 0, value) && !_view.GetAttribute(element, "lang", value))
			continue;
		return !language.empty() && EqualsIgnoringCase(value.substr(0, language.size()), language) &&
			   (value.size() == language.size() || value[language.size()] == '-');
	}
	return false;
}
} // namespace orvan::css
