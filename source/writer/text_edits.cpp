// SPDX-License-Identifier: MIT
#include "writer/text_edits.h"

#include "importer/text/encoding.h"
#include "importer/text/gzip.h"
#include "orvan/services.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include <zlib.h>

namespace orvan::svg
{
namespace
{

using Edit = TextEdits::Edit;

/// From edits of the text that was parsed to those of the file's own text. Entities come apart where an edit falls
/// inside of what they were replaced by.
std::vector<Edit> ToOriginal(const DocumentSource& source, TextEdits& edits)
{
	const std::string_view text = source.Text();
	const PositionMap& positions = source.text.positions;
	std::vector<Edit> mapped;
	const std::vector<Edit>& sorted = edits.Sort();
	for (std::size_t i = 0; i < sorted.size();)
	{
		// Everything up to the end of the piece that the last edit ends in goes together.
		const PositionMap::Range first = positions.Around(sorted[i].begin);
		Edit whole{first.originalFrom, first.originalFrom, {}};
		std::size_t reached = first.from;
		PositionMap::Range last = first;
		do
		{
			whole.text += text.substr(reached, sorted[i].begin - reached);
			whole.text += sorted[i].text;
			reached = sorted[i].end;
			last = positions.Around(reached);
			i++;
		} while (i < sorted.size() && last.from < reached && sorted[i].begin < last.to);
		// At the start of a piece nothing of it is touched.
		if (last.from < reached)
		{
			whole.text += text.substr(reached, last.to - reached);
			whole.end = last.originalTo;
		}
		else
			whole.end = last.originalFrom;
		mapped.push_back(std::move(whole));
	}
	return mapped;
}

/// Appends a text, of which the characters that do not pass become references.
template <typename Append>
void Encode(std::string_view text, Append append)
{
	while (!text.empty())
	{
		const EncodedCharacter character = ReadCharacter(text, Encoding::utf8);
		append(character.character, text.substr(0, character.size));
		text.remove_prefix(character.size);
	}
}

void AppendReferenceTo(std::string& bytes, char32_t character)
{
	char digits[16];
	const auto written = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint32_t>(character), 16);
	bytes += "&#x";
	bytes.append(digits, written.ptr);
	bytes += ';';
}

void AppendUtf16(std::string& bytes, char32_t character, bool isBigEndian)
{
	const auto unit = [&](char32_t value)
	{
		const char low = static_cast<char>(value & 0xff);
		const char high = static_cast<char>(value >> 8 & 0xff);
		bytes += isBigEndian ? high : low;
		bytes += isBigEndian ? low : high;
	};
	if (character < 0x10000)
		unit(character);
	else
	{
		unit(0xd800 + ((character - 0x10000) >> 10));
		unit(0xdc00 + ((character - 0x10000) & 0x3ff));
	}
}

/// Appends a text in the encoding of a file.
void AppendEncoded(std::string& bytes, std::string_view text, Encoding encoding)
{
	switch (encoding)
	{
	case Encoding::utf8:
		bytes += text;
		break;
	case Encoding::utf16LittleEndian:
	case Encoding::utf16BigEndian:
		Encode(text, [&](char32_t character, std::string_view)
			   { AppendUtf16(bytes, character, encoding == Encoding::utf16BigEndian); });
		break;
	case Encoding::windows1252:
		// Latin-1 and Windows-1252 agree about these; what calls itself ASCII has none of them.
		Encode(text,
			   [&](char32_t character, std::string_view)
			   {
				   if (character < 0x80 || (character >= 0xa0 && character <= 0xff))
					   bytes += static_cast<char>(character);
				   else
					   AppendReferenceTo(bytes, character);
			   });
		break;
	default: // All of these have ASCII's characters.
		Encode(text,
			   [&](char32_t character, std::string_view written)
			   {
				   if (character < 0x80)
					   bytes += written;
				   else
					   AppendReferenceTo(bytes, character);
			   });
		break;
	}
}

/// Finds places of a text in UTF-8 among the bytes that it was made of; in ascending order.
class ByteFinder
{
public:
	ByteFinder(std::string_view bytes, Encoding encoding) noexcept : _bytes(bytes), _encoding(encoding)
	{
		if ((encoding == Encoding::utf16LittleEndian || encoding == Encoding::utf16BigEndian) &&
			(bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff")))
			_at = 2;
	}

	std::size_t Find(std::size_t place) noexcept
	{
		while (_reached < place && _at < _bytes.size())
		{
			const EncodedCharacter character = ReadCharacter(_bytes.substr(_at), _encoding);
			_at += character.size;
			_reached += character.utf8Size;
		}
		return _at;
	}

private:
	std::string_view _bytes;
	Encoding _encoding;
	std::size_t _at = 0;
	std::size_t _reached = 0; ///< In the text.
};

/// The edits made in bytes of an encoding.
std::string ApplyTo(std::string_view bytes, const std::vector<Edit>& edits, Encoding read, Encoding written)
{
	std::string result;
	ByteFinder finder(bytes, read);
	const bool isSame = read == Encoding::utf8 && IsUtf8(bytes);
	std::size_t reached = 0;
	for (const Edit& edit : edits)
	{
		const std::size_t begin = isSame ? edit.begin : finder.Find(edit.begin);
		const std::size_t end = isSame ? edit.end : finder.Find(edit.end);
		result += bytes.substr(reached, begin - reached);
		AppendEncoded(result, edit.text, written);
		reached = end;
	}
	result += bytes.substr(reached);
	return result;
}

} // namespace

const std::vector<Edit>& TextEdits::Sort()
{
	const auto isInsertion = [](const Edit& edit)
	{
		return edit.begin == edit.end;
	};
	std::stable_sort(_edits.begin(), _edits.end(),
					 [&](const Edit& a, const Edit& b)
					 { return a.begin != b.begin ? a.begin < b.begin : isInsertion(a) && !isInsertion(b); });
	for (std::size_t i = 1; i < _edits.size(); i++)
	{
		if (_edits[i].begin < _edits[i - 1].end)
			throw SaveError("Two changes fall on the same place of the text.");
	}
	return _edits;
}

std::string TextEdits::Apply(std::string_view text, std::size_t begin, std::size_t end)
{
	std::string result;
	for (const Edit& edit : Sort())
	{
		result += text.substr(begin, edit.begin - begin);
		result += edit.text;
		begin = edit.end;
	}
	result += text.substr(begin, end - begin);
	return result;
}

Result<std::string> MakeFileBytes(const DocumentSource& source, TextEdits& edits)
{
	const std::vector<Edit> mapped = ToOriginal(source, edits);
	std::string_view bytes = source.FileBytes();
	BaseArray<char> unpacked;
	if (IsGzip(bytes))
	{
		unpacked = ORVAN_TRY(Gunzip(bytes, kMaxUnpackedSize));
		bytes = {unpacked.begin(), unpacked.GetCount()};
	}
	const Encoding encoding = FindEncoding(bytes);
	// The plain import takes bytes as they are, and what names an unknown encoding was read as UTF-8.
	if (!source.isComplete || (encoding == Encoding::unknown && IsUtf8(bytes)))
		return ApplyTo(bytes, mapped, Encoding::utf8, encoding == Encoding::utf8 ? encoding : Encoding::unknown);
	const bool isAscii = encoding == Encoding::windows1252 && NamesAscii(bytes);
	return ApplyTo(bytes, mapped, encoding, isAscii ? Encoding::unknown : encoding);
}

Result<BaseArray<char>> Gzip(std::string_view bytes) noexcept
{
	constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
	if (bytes.size() > kMost)
		return IllegalArgumentError("@ bytes are too many to be packed.", bytes.size());
	z_stream stream{};
	stream.zalloc = [](void*, uInt count, uInt size) -> void*
	{
		return Host().allocate(static_cast<std::size_t>(count) * size);
	};
	stream.zfree = [](void*, void* memory)
	{
		Host().free(memory);
	};
	constexpr int kGzipOnly = 16;
	constexpr int kUsualMemory = 8;
	if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, MAX_WBITS + kGzipOnly, kUsualMemory,
					 Z_DEFAULT_STRATEGY) != Z_OK)
		return OutOfMemoryError();
	BaseArray<char> packed;
	Result<void> hasRoom = packed.ResizeUninitialized(deflateBound(&stream, static_cast<uLong>(bytes.size())));
	if (hasRoom.IsOk())
	{
		stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
		stream.avail_in = static_cast<uInt>(bytes.size());
		stream.next_out = reinterpret_cast<Bytef*>(packed.begin());
		stream.avail_out = static_cast<uInt>(packed.GetCount());
		deflate(&stream, Z_FINISH); // The bound makes it end in one call.
	}
	const std::size_t count = stream.total_out;
	deflateEnd(&stream);
	ORVAN_TRY(std::move(hasRoom));
	ORVAN_TRY(packed.ResizeUninitialized(count));
	return packed;
}

} // namespace orvan::svg
