// SPDX-License-Identifier: MIT
#pragma once

#include "css/element_view.h"

#include <algorithm>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvan::css
{
/// A tree for selectors to be held against.
class Tree final : public ElementView
{
public:
	struct Node
	{
		std::string type;
		std::string id;
		std::string classes;
		std::vector<std::pair<std::string, std::string>> attributes;
		Node* parent = nullptr;
		Node* previous = nullptr;
		Node* next = nullptr;
		Node* firstChild = nullptr;
		Node* lastChild = nullptr;
		bool hasText = false;
	};

	/// Makes an element at the end of a parent; the first one is the root.
	Node& Add(Node* parent, std::string_view type)
	{
		Node& node = nodes.emplace_back();
		node.type = type;
		node.parent = parent;
		if (parent)
		{
			node.previous = parent->lastChild;
			(node.previous ? node.previous->next : parent->firstChild) = &node;
			parent->lastChild = &node;
		}
		return node;
	}

	/// Reads "svg#a( g.x.y[k=v]( rect circle ) text! )": types with ids, classes and attributes, and in parentheses the
	/// children; "!" is text. "[xml|lang=en]" is an attribute in a namespace.
	void Read(std::string_view notation)
	{
		Node* parent = nullptr;
		Node* node = nullptr;
		for (std::size_t at = 0; at < notation.size();)
		{
			const char mark = notation[at];
			const std::size_t begin = std::string_view(" #.[]()!").find(mark) == std::string_view::npos ? at : at + 1;
			at = std::min(notation.find_first_of(mark == '[' ? "]" : " #.[]()!", begin), notation.size());
			const std::string word(notation.substr(begin, at - begin));
			if (mark == '#')
				node->id = word;
			else if (mark == '.')
				node->classes += (node->classes.empty() ? "" : " ") + word;
			else if (mark == '[')
				node->attributes.emplace_back(word.substr(0, word.find('=')), word.substr(word.find('=') + 1));
			else if (mark == '!')
				node->hasText = true;
			else if (mark == '(')
				parent = node;
			else if (mark == ')')
				parent = std::exchange(node, parent)->parent ? node->parent : nullptr;
			if (!word.empty() && std::string_view("#.[").find(mark) == std::string_view::npos)
				node = &Add(parent, word);
		}
	}

	ElementNames GetNames(Element element) const override
	{
		return {At(element).type, At(element).id, At(element).classes};
	}

	bool GetAttribute(Element element, std::string_view name, std::string_view& value) const override
	{
		const Node& node = At(element);
		const std::string* found = name == "id" ? &node.id : name == "class" ? &node.classes : nullptr;
		if (found && found->empty())
			return false;
		for (const auto& [key, text] : node.attributes)
			found = found || key != name ? found : &text;
		if (found)
			value = *found;
		return found;
	}

	bool GetPrefixedAttribute(Element element, std::string_view localName, std::size_t index,
							  std::string_view& value) const override
	{
		for (const auto& [key, text] : At(element).attributes)
		{
			const std::size_t bar = key.find('|');
			if (bar != key.npos && std::string_view(key).substr(bar + 1) == localName && index-- == 0)
			{
				value = text;
				return true;
			}
		}
		return false;
	}

	Element GetParent(Element element) const override
	{
		return At(element).parent;
	}

	Element GetPrevious(Element element) const override
	{
		return At(element).previous;
	}

	Element GetNext(Element element) const override
	{
		return At(element).next;
	}

	Element GetFirstChild(Element element) const override
	{
		return At(element).firstChild;
	}

	bool IsEmpty(Element element) const override
	{
		return !At(element).lastChild && !At(element).hasText;
	}

	bool IsLink(Element element) const override
	{
		std::string_view value;
		return At(element).type == "a" && GetAttribute(element, "href", value);
	}

	std::deque<Node> nodes; ///< In document order when `Read` made them.

private:
	static const Node& At(Element element)
	{
		return *static_cast<const Node*>(element);
	}
};
} // namespace orvan::css
