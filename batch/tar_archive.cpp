// SPDX-License-Identifier: MIT
#include "batch/tar_archive.h"

#include "batch/inflating.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <zlib.h>

namespace orvan::batch
{
namespace
{

constexpr std::uint64_t kReadAhead = 1 << 16;

// Where things stand in a header.
constexpr std::size_t kName = 0;
constexpr std::size_t kNameLength = 100;
constexpr std::size_t kSize = 124;
constexpr std::size_t kSizeLength = 12;
constexpr std::size_t kChecksum = 148;
constexpr std::size_t kChecksumLength = 8;
constexpr std::size_t kType = 156;
constexpr std::size_t kMagic = 257;
constexpr std::size_t kPrefix = 345;
constexpr std::size_t kPrefixLength = 155;

std::string_view GetText(const char* at, std::size_t length)
{
	return {at, strnlen(at, length)};
}

/// A number in octal digits, or, where the first bit is set, in bytes.
std::uint64_t GetNumber(const char* at, std::size_t length)
{
	std::uint64_t number = 0;
	if ((static_cast<unsigned char>(*at) & 0x80) != 0)
	{
		for (std::size_t i = 1; i < length; i++)
			number = number << 8 | static_cast<unsigned char>(at[i]);
		return number;
	}
	for (std::size_t i = 0; i < length; i++)
	{
		if (at[i] >= '0' && at[i] <= '7')
			number = number * 8 + static_cast<std::uint64_t>(at[i] - '0');
	}
	return number;
}

std::uint64_t ToNumber(std::string_view text)
{
	std::uint64_t number = 0;
	const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
	if (error != std::errc())
		throw std::runtime_error("The archive is damaged.");
	return number;
}

} // namespace

TarArchive::TarArchive(const std::string& path) : _file(gzopen(path.c_str(), "rbe"))
{
	if (_file == nullptr)
		throw std::runtime_error(std::strerror(errno != 0 ? errno : ENOMEM));
	gzbuffer(_file, kReadAhead);
}

TarArchive::~TarArchive()
{
	gzclose(_file);
}

void TarArchive::Seek(std::uint64_t offset)
{
	// A seek throws away what has been read ahead; a short way is read instead, since members are small.
	std::array<char, 1 << 12> passed;
	const auto at = static_cast<std::uint64_t>(gztell(_file));
	std::uint64_t left = offset >= at ? offset - at : kReadAhead + 1;
	if (left > kReadAhead)
	{
		if (gzseek(_file, static_cast<z_off_t>(offset), SEEK_SET) < 0)
			throw std::runtime_error("The archive cannot be read.");
		return;
	}
	while (left > 0)
	{
		const int count =
			gzread(_file, passed.data(), static_cast<unsigned>(std::min<std::uint64_t>(left, passed.size())));
		if (count <= 0)
			throw std::runtime_error("The archive is cut off.");
		left -= static_cast<std::uint64_t>(count);
	}
}

std::string TarArchive::ReadBytes(std::uint64_t count)
{
	if (count > kMostBytes)
		throw std::runtime_error("It is too large.");
	std::string bytes(count, '\0');
	if (gzread(_file, bytes.data(), static_cast<unsigned>(count)) != static_cast<int>(count))
		throw std::runtime_error("The archive is cut off.");
	return bytes;
}

bool TarArchive::ReadBlock(Block& block)
{
	// Two blocks of zeros are the end; one is enough, but without any the archive may have had more members.
	if (gzread(_file, block.data(), kBlock) != static_cast<int>(kBlock))
		throw std::runtime_error("The archive is cut off.");
	if (std::ranges::all_of(block, [](char byte) { return byte == 0; }))
		return false;
	// The checksum counts itself as blanks.
	std::uint64_t sum = kChecksumLength * ' ';
	for (std::size_t i = 0; i < kBlock; i++)
	{
		if (i < kChecksum || i >= kChecksum + kChecksumLength)
			sum += static_cast<unsigned char>(block[i]);
	}
	if (sum != GetNumber(block.data() + kChecksum, kChecksumLength))
		throw std::runtime_error("The archive is damaged.");
	return true;
}

/// Records "LENGTH KEY=VALUE\n", of which the path and the size matter.
void TarArchive::TakeExtension(const std::string& records)
{
	std::string_view rest = records;
	while (!rest.empty() && rest[0] != '\0')
	{
		const std::size_t length = ToNumber(rest);
		const std::size_t blank = rest.find(' ');
		const std::size_t equals = rest.find('=');
		if (length > rest.size() || blank >= equals || equals >= length)
			throw std::runtime_error("The archive is damaged.");
		const std::string_view key = rest.substr(blank + 1, equals - blank - 1);
		const std::string_view value = rest.substr(equals + 1, length - equals - 2);
		if (key == "path")
			_longName = value;
		else if (key == "size")
			_nextSize = ToNumber(value);
		rest.remove_prefix(length);
	}
}

std::optional<ArchiveMember> TarArchive::Next()
{
	Block block;
	while (true)
	{
		Seek(_next);
		if (!ReadBlock(block))
			return std::nullopt;
		const char type = block[kType];
		const bool isExtension = type == 'x' || type == 'g' || type == 'L' || type == 'K';
		std::uint64_t size = GetNumber(block.data() + kSize, kSizeLength);
		if (!isExtension && _nextSize)
			size = *_nextSize;
		const std::uint64_t content = _next + kBlock;
		if (size > std::uint64_t(1) << 60)
			throw std::runtime_error("The archive is damaged.");
		_next = content + (size + kBlock - 1) / kBlock * kBlock;
		if (type == 'x')
			TakeExtension(ReadBytes(size));
		else if (type == 'L')
			_longName = GetText(ReadBytes(size).c_str(), size);
		if (isExtension)
			continue;
		std::string name = std::move(_longName);
		_longName.clear();
		_nextSize.reset();
		if (name.empty())
		{
			const std::string_view prefix = GetText(block.data() + kPrefix, kPrefixLength);
			// The old GNU format keeps times there.
			if (std::string_view(block.data() + kMagic, 6) == std::string_view("ustar\0", 6) && !prefix.empty())
				name.append(prefix) += '/';
			name += GetText(block.data() + kName, kNameLength);
		}
		if (type == '0' || type == '\0' || type == '7')
			return ArchiveMember{std::move(name), std::to_string(content) + ':' + std::to_string(size)};
	}
}

std::string TarArchive::Read(const std::string& place)
{
	const std::size_t colon = place.find(':');
	if (colon == std::string::npos)
		throw std::runtime_error("There is no such place.");
	Seek(ToNumber(place));
	return ReadBytes(ToNumber(std::string_view(place).substr(colon + 1)));
}

} // namespace orvan::batch
