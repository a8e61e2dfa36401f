// SPDX-License-Identifier: MIT
#include "batch/array_archive.h"

#include <bit>
#include <limits>
#include <stdexcept>
#include <zlib.h>

namespace orvan::batch
{
namespace
{

static_assert(std::endian::native == std::endian::little);

constexpr std::size_t kLargest = std::numeric_limits<std::uint32_t>::max();

/// Adds a whole number, its lowest byte first.
void AddNumber(std::string& bytes, std::uint64_t number, int size)
{
	for (int i = 0; i < size; i++, number >>= 8)
		bytes += static_cast<char>(number & 255);
}

/// What stands in front of the numbers of a .npy file.
std::string MakeHeader(std::string_view type, std::size_t count, std::size_t width)
{
	constexpr std::size_t kAlignment = 64;
	std::string description = "{'descr': '" + std::string(type) + "', 'fortran_order': False, 'shape': (" +
							  std::to_string(count) + ',' + (width > 1 ? ' ' + std::to_string(width) : std::string()) +
							  "), }";
	std::string header("\x93NUMPY\x01\x00", 8);
	const std::size_t length = header.size() + 2 + description.size() + 1;
	description.append((kAlignment - length % kAlignment) % kAlignment, ' ');
	description += '\n';
	AddNumber(header, description.size(), 2);
	return header + description;
}

} // namespace

void ArrayArchive::Add(std::string_view name, std::string_view type, const void* numbers, std::size_t count,
					   std::size_t width)
{
	std::string file = MakeHeader(type, count, width);
	const auto numberSize = static_cast<std::size_t>(type.back() - '0');
	if (count != 0)
		file.append(static_cast<const char*>(numbers), count * width * numberSize);
	if (_bytes.size() + file.size() > kLargest - (1 << 20))
		throw std::length_error("The arrays are larger than their format allows.");
	const Entry entry{
		std::string(name) + ".npy",
		static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const unsigned char*>(file.data()), file.size())),
		static_cast<std::uint32_t>(file.size()), static_cast<std::uint32_t>(_bytes.size())};
	AddNumber(_bytes, 0x04034b50, 4); // A file; version 2.0, no flags, stored, no date.
	AddNumber(_bytes, 20, 2);
	AddNumber(_bytes, 0, 4);
	AddNumber(_bytes, 0x00210000, 4);
	AddNumber(_bytes, entry.checksum, 4);
	AddNumber(_bytes, entry.size, 4);
	AddNumber(_bytes, entry.size, 4);
	AddNumber(_bytes, entry.name.size(), 2);
	AddNumber(_bytes, 0, 2);
	_bytes += entry.name + file;
	_entries.push_back(entry);
}

std::string ArrayArchive::Take()
{
	const std::size_t start = _bytes.size();
	for (const Entry& entry : _entries)
	{
		AddNumber(_bytes, 0x02014b50, 4); // An entry of the directory.
		AddNumber(_bytes, 20, 2);
		AddNumber(_bytes, 20, 2);
		AddNumber(_bytes, 0, 4);
		AddNumber(_bytes, 0x00210000, 4);
		AddNumber(_bytes, entry.checksum, 4);
		AddNumber(_bytes, entry.size, 4);
		AddNumber(_bytes, entry.size, 4);
		AddNumber(_bytes, entry.name.size(), 2);
		AddNumber(_bytes, 0, 12);
		AddNumber(_bytes, entry.offset, 4);
		_bytes += entry.name;
	}
	const std::size_t size = _bytes.size() - start;
	AddNumber(_bytes, 0x06054b50, 4); // The end of the directory.
	AddNumber(_bytes, 0, 4);
	AddNumber(_bytes, _entries.size(), 2);
	AddNumber(_bytes, _entries.size(), 2);
	AddNumber(_bytes, size, 4);
	AddNumber(_bytes, start, 4);
	AddNumber(_bytes, 0, 2);
	return std::move(_bytes);
}

} // namespace orvan::batch
