// SPDX-License-Identifier: MIT
/// The theme of an icon, as it is put over a tree.
#pragma once

#include "svg_elements.h"

#include <optional>

namespace orvan::svg
{

class Document;

/// A colour and a style sheet, and what the attributes were that they have changed. The tree is the document's; when
/// that gets another, the theme is put over it by `Apply`.
class IconTheme
{
public:
	/// What a theme consists of.
	struct Content
	{
		std::optional<Color> currentColor;
		String styleSheet;
	};

	const Content& GetContent() const noexcept
	{
		return _content;
	}

	/// Puts another theme over the document's tree, in the place of the present one. When it fails, all is as before.
	Result<void> Change(Document& document, const Content& content) noexcept;

	/// Puts the theme over a tree that never had it, whose document may become the icon's.
	Result<void> Apply(Document& document) noexcept;

	/// Forgets what there was before the theme, with the tree.
	void ForgetTree() noexcept
	{
		_covered.Reset();
	}

private:
	/// An element that the theme says something about.
	struct Cover
	{
		SVGElementRef element;
		DataDictionary values; ///< What the theme says.
		DataDictionary before; ///< The attributes without it.
	};

	static Result<BaseArray<Cover>> CoversOf(Document& document, const Content& content) noexcept;
	Result<void> Replace(Document& document, const Content& content, BaseArray<Cover> covers) noexcept;

	Content _content;
	BaseArray<Cover> _covered;
};

} // namespace orvan::svg
