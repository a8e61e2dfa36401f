// SPDX-License-Identifier: MIT
#pragma once

/// Selectors matched in the plainest way, by the definition of each form, for the matcher to be held against.

#include "css/selector.h"
#include "css_tree.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orvan::fuzz
{
class CssReference
{
public:
	using Node = css::Tree::Node;

	explicit CssReference(const css::Tree& tree) : _tree(tree)
	{
	}

	bool Matches(const css::Compound* compound, const Node* node)
	{
		if (_anchor)
			return MatchesHere(*compound, node) && MatchesLeft(*compound, node);
		const auto [place, isNew] = _known.try_emplace({compound, node}, false);
		if (!isNew)
			return place->second;
		// Nothing that is asked on the way asks for the same again: it is at the left, or within, or further up the
		// tree.
		const bool matches = MatchesHere(*compound, node) && MatchesLeft(*compound, node);
		return _known[{compound, node}] = matches;
	}

private:
	bool MatchesLeft(const css::Compound& compound, const Node* node)
	{
		using css::Combinator;
		const Node* parent = node->parent;
		const Node* previous = node->previous;
		switch (compound.combinator)
		{
		case Combinator::none:
			return true;
		case Combinator::child:
			return parent && Matches(compound.left, parent);
		case Combinator::nextSibling:
			return previous && Matches(compound.left, previous);
		case Combinator::descendant:
			while (parent && !Matches(compound.left, parent))
				parent = parent->parent;
			return parent;
		case Combinator::laterSibling:
			while (previous && !Matches(compound.left, previous))
				previous = previous->previous;
			return previous;
		}
		return false;
	}

	bool MatchesHere(const css::Compound& compound, const Node* node)
	{
		for (const css::Simple* simple = compound.first; simple; simple = simple->next)
		{
			if (!MatchesSimple(*simple, node))
				return false;
		}
		return true;
	}

	bool MatchesList(const css::Selector* list, const Node* node)
	{
		for (; list; list = list->next)
		{
			if (Matches(list->subject, node))
				return true;
		}
		return false;
	}

	bool MatchesSimple(const css::Simple& simple, const Node* node)
	{
		using css::SimpleKind;
		switch (simple.kind)
		{
		case SimpleKind::never:
			return false;
		case SimpleKind::always:
			return true;
		case SimpleKind::type:
			return node->type == simple.name;
		case SimpleKind::id:
			return !node->id.empty() && node->id == simple.name;
		case SimpleKind::className:
			return HasWord(node->classes, std::string(simple.name));
		case SimpleKind::attribute:
			return std::any_of(node->attributes.begin(), node->attributes.end(),
							   [&](const auto& attribute)
							   {
								   const std::string name(simple.name);
								   const bool isNamed = attribute.first == name ||
														(simple.isAnyNamespace && attribute.first == "x|" + name);
								   return isNamed && MatchesValue(simple, attribute.second);
							   });
		case SimpleKind::root:
			return !node->parent;
		case SimpleKind::empty:
			return !node->lastChild && !node->hasText;
		case SimpleKind::link:
			return false; // No element of these trees has a reference.
		case SimpleKind::firstChild:
			return !node->previous;
		case SimpleKind::lastChild:
			return !node->next;
		case SimpleKind::nthChild:
		case SimpleKind::nthOfType:
			return MatchesNth(simple, node, simple.kind == SimpleKind::nthOfType, &Node::previous);
		case SimpleKind::nthLastChild:
		case SimpleKind::nthLastOfType:
			return MatchesNth(simple, node, simple.kind == SimpleKind::nthLastOfType, &Node::next);
		case SimpleKind::language:
			return false; // Nor a language.
		case SimpleKind::isAnyOf:
			return MatchesList(simple.list, node);
		case SimpleKind::isNoneOf:
			return !MatchesList(simple.list, node);
		case SimpleKind::anchor:
			return node == _anchor;
		case SimpleKind::has:
			return MatchesHas(simple, node);
		}
		return false;
	}

	/// Whether any element at all matches, in whichever place.
	bool MatchesHas(const css::Simple& simple, const Node* anchor)
	{
		if (const auto known = _has.find({&simple, anchor}); known != _has.end())
			return known->second;
		_anchor = anchor;
		const bool hasMatch = std::any_of(_tree.nodes.begin(), _tree.nodes.end(),
										  [&](const Node& node) { return MatchesList(simple.list, &node); });
		_anchor = nullptr;
		return _has[{&simple, anchor}] = hasMatch;
	}

	bool MatchesNth(const css::Simple& simple, const Node* node, bool isOfType, Node* Node::*towards)
	{
		if (simple.list && !MatchesList(simple.list, node))
			return false;
		std::int64_t place = 1;
		for (const Node* sibling = node->*towards; sibling; sibling = sibling->*towards)
			place += (!isOfType || sibling->type == node->type) && (!simple.list || MatchesList(simple.list, sibling));
		// No tree has so many children that a larger n could be asked for.
		for (std::int64_t n = 0; n <= 1000; n++)
		{
			if (simple.step * n + simple.start == place)
				return true;
		}
		// A step that is small and a start that is far below zero takes longer.
		return simple.start < 0 && simple.step > 0 && (place - simple.start) % simple.step == 0;
	}

	static bool HasWord(const std::string& words, const std::string& word)
	{
		return !word.empty() && word.find(' ') == word.npos &&
			   (" " + words + " ").find(" " + word + " ") != std::string::npos;
	}

	static std::string Fold(std::string_view text, bool ignoresCase)
	{
		std::string folded(text);
		for (char& c : folded)
			c = ignoresCase && c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
		return folded;
	}

	static bool MatchesValue(const css::Simple& simple, std::string_view text)
	{
		using css::AttributeTest;
		const std::string value = Fold(text, simple.ignoresCase);
		const std::string wanted = Fold(simple.value, simple.ignoresCase);
		switch (simple.test)
		{
		case AttributeTest::isPresent:
			return true;
		case AttributeTest::equals:
			return value == wanted;
		case AttributeTest::hasWord:
			return HasWord(value, wanted);
		case AttributeTest::hasDashed:
			return (value + "-").starts_with(wanted + "-");
		case AttributeTest::startsWith:
			return !wanted.empty() && value.starts_with(wanted);
		case AttributeTest::endsWith:
			return !wanted.empty() && value.ends_with(wanted);
		case AttributeTest::contains:
			return !wanted.empty() && value.find(wanted) != value.npos;
		}
		return false;
	}

	const css::Tree& _tree;
	const Node* _anchor = nullptr; ///< What the ":has()" at hand asks about.
	std::map<std::pair<const css::Compound*, const Node*>, bool> _known;
	std::map<std::pair<const css::Simple*, const Node*>, bool> _has;
};
} // namespace orvan::fuzz
