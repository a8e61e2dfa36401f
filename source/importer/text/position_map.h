// SPDX-License-Identifier: MIT
/// Places in a text that was put together from pieces of another one.
#pragma once

#include "orvan/array.h"

#include <algorithm>
#include <cstddef>

namespace orvan::svg
{

/// Leads from an offset in a derived text back to the offset in the text that it was derived from. Both texts are the
/// same but for the pieces that were noted: a piece of the derived text that stands for one place of the other.
///
///     original "a&e;b", derived "aXYZb":  Note(1, 4, 1, 4)  — [1, 4) stands for [1, 4) of the original
class PositionMap
{
public:
	/// Notes that [from, to) of the derived text stands for [originalFrom, originalTo) of the other. Pieces come in the
	/// order of the text.
	Result<void> Note(std::size_t from, std::size_t to, std::size_t originalFrom, std::size_t originalTo) noexcept
	{
		return _pieces.Append({from, to, originalFrom, originalTo});
	}

	/// The place in the original text. Inside of a piece, that is where the piece's original begins.
	std::size_t ToOriginal(std::size_t offset) const noexcept
	{
		const Piece* const after = std::upper_bound(_pieces.begin(), _pieces.end(), offset,
													[](std::size_t at, const Piece& piece) { return at < piece.from; });
		if (after == _pieces.begin())
			return offset;
		const Piece& piece = after[-1];
		return offset < piece.to ? piece.originalFrom : piece.originalTo + (offset - piece.to);
	}

	/// A stretch of the derived text, and what it stands for in the original.
	struct Range
	{
		std::size_t from;
		std::size_t to;
		std::size_t originalFrom;
		std::size_t originalTo;
	};

	/// The piece that a place stands inside of; the place alone where it is in none, or at the start of one.
	Range Around(std::size_t offset) const noexcept
	{
		const Piece* const after = std::upper_bound(_pieces.begin(), _pieces.end(), offset,
													[](std::size_t at, const Piece& piece) { return at < piece.from; });
		if (after != _pieces.begin() && offset < after[-1].to && offset > after[-1].from)
			return after[-1];
		const std::size_t original = ToOriginal(offset);
		return {offset, offset, original, original};
	}

private:
	using Piece = Range;

	BaseArray<Piece> _pieces;
};

} // namespace orvan::svg
