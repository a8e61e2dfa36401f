// SPDX-License-Identifier: MIT
/// Changes to a text, collected before they are made, and made in the bytes of the file.
#pragma once

#include "orvan/array.h"
#include "writer/document_source.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::svg
{

/// Pieces of a text that are replaced. They come in any order, and must not overlap.
class TextEdits
{
public:
	struct Edit
	{
		std::size_t begin;
		std::size_t end;
		std::string text;
	};

	/// Puts a text in the place of [begin, end).
	void Replace(std::size_t begin, std::size_t end, std::string text)
	{
		_edits.push_back({begin, end, std::move(text)});
	}

	/// Puts a text before the character at `at`, behind what was put there before.
	void Insert(std::size_t at, std::string text)
	{
		Replace(at, at, std::move(text));
	}

	bool IsEmpty() const noexcept
	{
		return _edits.empty();
	}

	/// The edits in the order of the text. Throws a `SaveError` when two overlap.
	const std::vector<Edit>& Sort();

	/// What has become of [begin, end), outside of which there are no edits.
	std::string Apply(std::string_view text, std::size_t begin, std::size_t end);

private:
	std::vector<Edit> _edits;
};

/// The bytes of a source's file with edits that were made to the text that was parsed, unpacked. What an entity was
/// replaced by is written in its place where an edit falls inside of it; characters that the file's encoding does not
/// have become references. Throws a `SaveError` and std::bad_alloc.
Result<std::string> MakeFileBytes(const DocumentSource& source, TextEdits& edits);

/// Packs bytes as gzip does it.
Result<BaseArray<char>> Gzip(std::string_view bytes) noexcept;

} // namespace orvan::svg
