// SPDX-License-Identifier: MIT
/// Sharing of attribute dictionaries between elements with the same "style".
#pragma once

#include "orvan/array.h"
#include "orvan/data_dictionary.h"
#include "orvan/hash.h"
#include "svg_types.h"

#include <array>
#include <string_view>

namespace orvan::svg
{

/// Remembers what recent "style" attributes came to. Drawing programs give hundreds of elements the same style; reading
/// it once saves time, and the elements then share one dictionary until one of them changes.
///
/// A style is shared from its third appearance on: the first is only noted, because an element that shares its
/// dictionary has to copy it when its next attribute comes.
class StyleCache
{
public:
	enum class Finding
	{
		unknown, ///< Seen for the first time, or crowded out by others.
		noted,   ///< Seen before: worth keeping, see `Keep`.
		kept,    ///< `Get` has what the style comes to.
	};

	/// Looks a style up for elements of a kind, and notes it. The text must stay in place as long as the cache lives.
	Finding Find(std::string_view text, SVGImportElementKind kind) noexcept
	{
		std::uint8_t& number = _numbers[(HashBytes(text) ^ static_cast<std::uint64_t>(kind)) % kSize];
		if (number == 0)
		{
			// Without memory, styles are read as often as they come.
			if (_entries.Append({text, kind, false, {}}).IsOk())
				number = static_cast<std::uint8_t>(_entries.GetCount());
			return Finding::unknown;
		}
		_current = &_entries[number - 1u];
		if (_current->text == text && _current->kind == kind)
			return _current->isKept ? Finding::kept : Finding::noted;
		*_current = {text, kind, false, {}};
		return Finding::unknown;
	}

	/// What the style that was last found, and is kept, comes to.
	const DataDictionary& Get() const noexcept
	{
		return _current->attributes;
	}

	/// Keeps what the style that was last found, and is noted, comes to.
	void Keep(const DataDictionary& attributes) noexcept
	{
		_current->attributes = attributes;
		_current->isKept = true;
	}

private:
	static constexpr std::size_t kSize = 64;

	struct Entry
	{
		std::string_view text;
		SVGImportElementKind kind = SVGImportElementKind::unknown;
		bool isKept = false;
		DataDictionary attributes;
	};

	BaseArray<Entry> _entries;                  ///< Only those in use: most files have few styles.
	std::array<std::uint8_t, kSize> _numbers{}; ///< Numbers of the entries by hash, from 1.
	Entry* _current = nullptr;
};

} // namespace orvan::svg
