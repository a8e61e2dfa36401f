// SPDX-License-Identifier: MIT
#include "batch/zip_archive.h"

#include "batch/inflating.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

namespace orvan::batch
{
namespace
{

// Signatures and sizes of what a ZIP archive is made of.
constexpr std::uint64_t kLocalHeader = 0x04034b50;
constexpr std::uint64_t kEntry = 0x02014b50;
constexpr std::uint64_t kLargeEnd = 0x06064b50;
constexpr std::uint64_t kLargeLocator = 0x07064b50;
constexpr std::size_t kLocalHeaderSize = 30;
constexpr std::size_t kEntrySize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kLargeEndSize = 56;
constexpr std::size_t kLocatorSize = 20;
constexpr std::uint64_t kInExtra = 0xffffffff; ///< The number stands among the extra fields.
constexpr std::uint64_t kStored = 0;
constexpr std::uint64_t kDeflated = 8;

[[noreturn]] void FailDamaged()
{
	throw std::runtime_error("The archive is damaged.");
}

/// A number, its lowest byte first.
std::uint64_t GetNumber(std::string_view bytes, std::size_t at, std::size_t size)
{
	if (bytes.size() < at + size)
		FailDamaged();
	std::uint64_t number = 0;
	for (std::size_t i = size; i-- > 0;)
		number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
	return number;
}

/// The next number of a place, which is taken away.
std::uint64_t TakeNumber(std::string_view& place)
{
	std::uint64_t number = 0;
	const auto [end, error] = std::from_chars(place.data(), place.data() + place.size(), number);
	if (error != std::errc())
		throw std::runtime_error("There is no such place.");
	place.remove_prefix(std::min(place.size(), static_cast<std::size_t>(end - place.data()) + 1));
	return number;
}

/// Reads the 64-bit numbers of an entry's extra field into those that stand there.
void TakeLargeNumbers(std::string_view extra, std::initializer_list<std::uint64_t*> numbers)
{
	constexpr std::uint64_t kLargeNumbers = 1;
	while (extra.size() >= 4)
	{
		const std::uint64_t id = GetNumber(extra, 0, 2);
		const std::size_t size = GetNumber(extra, 2, 2);
		std::string_view field = extra.substr(4, size);
		extra.remove_prefix(std::min(extra.size(), 4 + size));
		if (id != kLargeNumbers)
			continue;
		for (std::uint64_t* number : numbers)
		{
			if (*number != kInExtra)
				continue;
			*number = GetNumber(field, 0, 8);
			field.remove_prefix(8);
		}
	}
}

} // namespace

ZipArchive::ZipArchive(const std::string& path) : _file(path)
{
}

/// Looks for the end of the directory, behind which there may be a comment.
void ZipArchive::FindDirectory()
{
	constexpr std::uint64_t kLongestComment = 0xffff;
	const std::uint64_t size = _file.GetSize();
	const std::uint64_t from = size - std::min(size, kEndSize + kLongestComment);
	const std::string tail = _file.ReadAt(from, size - from);
	const std::size_t at = tail.rfind(std::string_view("PK\5\6", 4));
	if (at == std::string::npos || tail.size() - at < kEndSize)
		FailDamaged();
	_left = GetNumber(tail, at + 10, 2);
	_next = GetNumber(tail, at + 16, 4);
	if (at >= kLocatorSize && GetNumber(tail, at - kLocatorSize, 4) == kLargeLocator)
	{
		const std::string end = _file.ReadAt(GetNumber(tail, at - kLocatorSize + 8, 8), kLargeEndSize);
		if (GetNumber(end, 0, 4) != kLargeEnd)
			FailDamaged();
		_left = GetNumber(end, 32, 8);
		_next = GetNumber(end, 48, 8);
	}
	_isFound = true;
}

std::optional<ArchiveMember> ZipArchive::Next()
{
	if (!_isFound)
		FindDirectory();
	while (_left > 0)
	{
		_left--;
		const std::string entry = _file.ReadAt(_next, kEntrySize);
		if (GetNumber(entry, 0, 4) != kEntry)
			FailDamaged();
		const std::uint64_t method = GetNumber(entry, 10, 2);
		std::uint64_t packed = GetNumber(entry, 20, 4);
		std::uint64_t size = GetNumber(entry, 24, 4);
		const std::size_t nameLength = GetNumber(entry, 28, 2);
		const std::size_t extraLength = GetNumber(entry, 30, 2);
		std::uint64_t offset = GetNumber(entry, 42, 4);
		std::string rest = _file.ReadAt(_next + kEntrySize, nameLength + extraLength);
		TakeLargeNumbers(std::string_view(rest).substr(nameLength), {&size, &packed, &offset});
		_next += kEntrySize + nameLength + extraLength + GetNumber(entry, 32, 2);
		rest.resize(nameLength);
		if (!rest.ends_with('/'))
		{
			return ArchiveMember{std::move(rest),
								 std::to_string(offset) + ':' + std::to_string(packed) + ':' + std::to_string(method)};
		}
	}
	return std::nullopt;
}

std::string ZipArchive::Read(const std::string& place)
{
	std::string_view rest = place;
	const std::uint64_t offset = TakeNumber(rest);
	const std::uint64_t packed = TakeNumber(rest);
	const std::uint64_t method = TakeNumber(rest);
	const std::string header = _file.ReadAt(offset, kLocalHeaderSize);
	if (GetNumber(header, 0, 4) != kLocalHeader)
		FailDamaged();
	if ((GetNumber(header, 6, 2) & 1) != 0)
		throw std::runtime_error("It is encrypted.");
	if (method != kStored && method != kDeflated)
		throw std::runtime_error("It is packed in a way that is not known.");
	std::string bytes =
		_file.ReadAt(offset + kLocalHeaderSize + GetNumber(header, 26, 2) + GetNumber(header, 28, 2), packed);
	return method == kDeflated ? Inflate(bytes, Packing::raw) : bytes;
}

} // namespace orvan::batch
