// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace orvan::css
{
/// An element of whatever tree is looked at: an address that only the view understands. Null is no element.
using Element = const void*;

/// What selectors most often ask of an element, in one call.
struct ElementNames
{
	std::string_view type;    ///< The local name, without a prefix.
	std::string_view id;      ///< Empty when it has none.
	std::string_view classes; ///< The class attribute: names parted by blanks.
};

/// How selectors see a tree. The tree must not change while a `Cascade` or `Matcher` looks at it, because they remember
/// what they have seen. What methods throw passes through.
class ElementView
{
public:
	/// The views must be good as long as the tree is looked at.
	virtual ElementNames GetNames(Element element) const = 0;

	/// The value of the attribute that has this name and no namespace; false when there is none. The value need only be
	/// good until the next call.
	virtual bool GetAttribute(Element element, std::string_view name, std::string_view& value) const = 0;

	/// The attribute with this local name in any namespace, the `index`-th of them; false behind the last. It is asked
	/// for by [*|name] and :lang() only.
	virtual bool GetPrefixedAttribute(Element, std::string_view /*localName*/, std::size_t /*index*/,
									  std::string_view& /*value*/) const
	{
		return false;
	}

	/// The parent element; null for the root, which thereby is :root.
	virtual Element GetParent(Element element) const = 0;

	/// The nearest sibling before the element that is an element; null for the first.
	virtual Element GetPrevious(Element element) const = 0;

	/// The nearest sibling behind the element that is an element; null for the last.
	virtual Element GetNext(Element element) const = 0;

	/// The first child that is an element; null when there is none. It is asked for by :has() only.
	virtual Element GetFirstChild(Element element) const = 0;

	/// True when neither elements nor characters stand between its tags.
	virtual bool IsEmpty(Element element) const = 0;

	/// True for what :link and :any-link match: an anchor with a reference.
	virtual bool IsLink(Element) const
	{
		return false;
	}

protected:
	~ElementView() = default;
};
} // namespace orvan::css
