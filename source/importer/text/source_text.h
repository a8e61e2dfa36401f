// SPDX-License-Identifier: MIT
/// From the bytes of a file to the text that the complete import parses: unpacked, in UTF-8, with the entities of its
/// document type replaced.
#pragma once

#include "importer/text/position_map.h"
#include "orvan/array.h"
#include "orvan/result.h"

#include <cstddef>
#include <string_view>

namespace orvan::svg
{

/// What a packed file may come to.
inline constexpr std::size_t kMaxUnpackedSize = std::size_t{256} << 20;

/// As many zeros stand behind a text that is parsed, so that readers can look at many characters at once everywhere.
inline constexpr std::size_t kTextPadding = 64;

/// Puts them there.
Result<void> Pad(BaseArray<char>& text) noexcept;

/// The text of one file. The bytes that it is made of are kept only where they are the text.
struct SourceText
{
	/// The text in UTF-8, followed by a zero byte, which the count contains, and by padding, which it does not.
	BaseArray<char> text;
	/// From places in `text` to places in the file's own text (unpacked, in UTF-8).
	PositionMap positions;
	/// The file's own text where that differs from `text`; empty otherwise.
	BaseArray<char> original;

	/// The text that places are told in, without the zero.
	std::string_view ForPlaces() const noexcept
	{
		return original.IsEmpty() ? std::string_view(text.begin(), text.GetCount() - 1)
								  : std::string_view(original.begin(), original.GetCount());
	}
};

/// Makes the text of a file's bytes, which are taken over and end with a zero byte.
///
/// - gzip (`.svgz`) is unpacked, up to `kMaxUnpackedSize`.
/// - UTF-16 is known by its mark; Latin-1, Windows-1252, ASCII and others of one byte by the XML declaration.
/// Everything
///   else is UTF-8, in which broken sequences become U+FFFD.
/// - The general entities that the document type declares are replaced, within bounds.
///
/// Fails for want of memory; throws an `XmlError` for a text that is refused.
///
/// The bytes go to `file`, without the zero, where they are not the text and it is not null.
Result<SourceText> ReadSourceText(BaseArray<char> bytes, BaseArray<char>* file = nullptr);

} // namespace orvan::svg
