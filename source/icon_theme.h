// SPDX-License-Identifier: MIT
/// The theme of an icon, as it is put over a tree.
#pragma once

#include "writer/attribute_cover.h"

#include <optional>
#include <span>

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

	/// The elements that the theme says something about, and what.
	std::span<const AttributeCover> GetCovers() const noexcept
	{
		return {_covered.begin(), _covered.GetCount()};
	}

	/// Forgets what there was before the theme, with the tree.
	void ForgetTree() noexcept
	{
		_covered.Reset();
	}

private:
	static Result<BaseArray<AttributeCover>> CoversOf(Document& document, const Content& content) noexcept;
	Result<void> Replace(Document& document, const Content& content, BaseArray<AttributeCover> covers) noexcept;

	Content _content;
	BaseArray<AttributeCover> _covered;
};

} // namespace orvan::svg
