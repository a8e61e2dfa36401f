// SPDX-License-Identifier: MIT
/// A text laid out: glyphs in their places, and the lines that decorate them.
#pragma once

#include "text_lines.h"
#include "text_positions.h"

namespace orvan::drawing
{

/// Neighbouring clusters of one span: what is painted in one go.
struct TextFragment
{
	const Frame* frame = nullptr; ///< Of the span's element: what to paint with.
	double opacity = 1.0;         ///< Of all spans around it, for whoever makes no pictures of them.
	std::size_t first = 0;        ///< Its clusters.
	std::size_t end = 0;
};

/// A text element with everything in it, laid out in its own coordinates. Whoever paints or measures goes through its
/// fragments. The scene and the frame that it was made for must outlive it.
class TextLayout
{
public:
	static Result<TextLayout> Create(Scene& scene, const Frame& frame) noexcept;

	/// False when there is nothing to see.
	bool IsDrawable() const noexcept
	{
		return !_fragments.IsEmpty();
	}

	/// The box of all characters, as "bounding box" means it: by the heights and advances of the fonts, hidden
	/// characters left aside.
	const Rectangle& GetBounds() const noexcept
	{
		return _bounds;
	}

	/// A box around all that the glyphs and their decorations may touch, strokes left aside.
	const Rectangle& GetReach() const noexcept
	{
		return _reach;
	}

	/// Number of characters, as a measure of the work.
	int GetLength() const noexcept
	{
		return static_cast<int>(_content.GetCharacters().GetCount());
	}

	const BaseArray<TextFragment>& GetFragments() const noexcept
	{
		return _fragments;
	}

	/// The clusters in visual order, with their glyphs, and where they stand.
	const ShapedText& GetShapedText() const noexcept
	{
		return _text;
	}

	/// The transform from a cluster's coordinates, in which its glyphs' offsets are, to those of the text.
	const Matrix2d& GetPlace(std::size_t cluster) const noexcept
	{
		return _places[cluster];
	}

	/// What a cluster takes up in its own coordinates, by the heights and the advance of its font.
	Rectangle GetCell(std::size_t cluster) const noexcept;

	/// The outlines of a fragment's glyphs in the text's coordinates; to be filled by the nonzero rule.
	Result<Outline> GetOutline(const TextFragment& fragment) const noexcept;
	/// The decorating lines of one kind along a fragment, as the element that asks for them wants them.
	Result<Outline> GetLines(const TextFragment& fragment, TextLineKind kind, const Frame& decorating) const noexcept;

	/// The outermost element around a fragment that is drawn as a picture of its own, inside of `around`; null for
	/// none.
	static const Frame* FindPicture(const TextFragment& fragment, const Frame& around) noexcept;

	/// The element that has a fragment decorated with lines of a kind, the `index`-th from the fragment outwards: its
	/// paints are theirs. Null behind the last.
	static const Frame* FindDecorating(const TextFragment& fragment, TextLineKind kind, int index) noexcept;

private:
	const TextSpan& SpanOf(std::size_t cluster) const noexcept
	{
		return _content.GetSpans()[static_cast<std::size_t>(_text.clusters[cluster].span)];
	}

	Matrix2d MakePlace(std::size_t cluster, const TextPosition& position) const noexcept;
	void Measure(std::size_t cluster) noexcept;
	Result<void> AddFragments(const BaseArray<TextPosition>& positions) noexcept;
	Result<void> MeasureLines() noexcept;

	Fonts* _fonts = nullptr;
	TextContent _content;
	ShapedText _text;
	BaseArray<Matrix2d> _places;
	BaseArray<TextFragment> _fragments;
	Rectangle _bounds;
	Rectangle _reach;
};

} // namespace orvan::drawing
