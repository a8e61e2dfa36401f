// SPDX-License-Identifier: MIT
/// What the plain import needs of a document's XML, in the order in which it needs it.
#pragma once

#include "svg_attributes.h"
#include "svg_element_kinds.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvan::svg
{

/// What an entry of a tape stands for.
enum class TapeMark : std::uint8_t
{
	attribute, ///< The value as it stands in the text, and the attribute's number. Others than known ones may be left
			   ///< out.
	element,   ///< A start tag: its name as written, and the element's kind. The attributes follow, then what is in it.
	text,      ///< Behind the attributes of a text element: its characters. What else is in it means nothing.
	rawText,   ///< Likewise, where references are no references.
	end,       ///< Of an element.
	link       ///< The tape goes on in the next block.
};

class TapeEntry
{
public:
	TapeEntry() = default; // Anything.

	explicit TapeEntry(TapeMark mark, std::string_view text = {}, std::uint8_t number = 0) noexcept
		: _text(text.data()), _what(text.size() | std::uint64_t{number} << kNumberShift | Bits(mark))
	{
	}

	TapeMark Mark() const noexcept
	{
		return static_cast<TapeMark>(_what >> kMarkShift);
	}

	std::string_view Text() const noexcept
	{
		return {_text, _what & kSizeMask};
	}

	/// Of a kind or an attribute; 0 for unknown ones.
	std::uint8_t Number() const noexcept
	{
		return static_cast<std::uint8_t>(_what >> kNumberShift);
	}

	void SetNumber(std::uint8_t number) noexcept
	{
		*this = TapeEntry(Mark(), Text(), number);
	}

	SVGImportElementKind Kind() const noexcept
	{
		return static_cast<SVGImportElementKind>(Number());
	}

	SVGImportAttribute Attribute() const noexcept
	{
		return static_cast<SVGImportAttribute>(Number());
	}

private:
	static constexpr int kNumberShift = 48;
	static constexpr int kMarkShift = 56;
	static constexpr std::uint64_t kSizeMask = (std::uint64_t{1} << kNumberShift) - 1;

	static constexpr std::uint64_t Bits(TapeMark mark) noexcept
	{
		return static_cast<std::uint64_t>(mark) << kMarkShift;
	}

	const char* _text;
	std::uint64_t _what; ///< The text's size, the number and the mark.
};

/// The elements and attributes of a document in one row, as a reader of XML comes across them (simdjson calls that a
/// tape), to be walked once. They point into the text.
///
///     <svg><g id="a"/></svg>     element svg, element g, attribute id, end, end
///
/// The tape lies in blocks, which are given back while it is walked, so that what is made of it can grow into them. The
/// first one is part of the tape, and enough for most files.
class ElementTape
{
public:
	ElementTape() noexcept
	{
		Clear();
	}

	ElementTape(const ElementTape&) = delete;

	~ElementTape()
	{
		Clear();
	}

	/// Puts an entry at the end; it stays where it is. Throws `std::bad_alloc` when memory runs out.
	TapeEntry& Append(const TapeEntry& entry)
	{
		if (_put == _last) [[unlikely]]
			AddBlock();
		*_put = entry;
		return *_put++;
	}

	/// Takes all entries off.
	void Clear() noexcept;

	/// The first entry, when there is any.
	const TapeEntry* First() const noexcept
	{
		return _first.data();
	}

	/// The entry behind another one, which must not be the last. Blocks that the walk leaves behind are given back.
	const TapeEntry* Next(const TapeEntry* entry) noexcept
	{
		entry++;
		return entry->Mark() != TapeMark::link ? entry : EnterNextBlock();
	}

private:
	struct Block;

	void AddBlock();
	const TapeEntry* EnterNextBlock() noexcept;

	TapeEntry* _put;
	const TapeEntry* _last;  ///< The place for a link.
	Block* _front = nullptr; ///< The first of the blocks, of which each knows the next one.
	Block* _back = nullptr;
	bool _isInFront = false; ///< The walk has entered the first of them.
	std::array<TapeEntry, 512> _first;
};

} // namespace orvan::svg
