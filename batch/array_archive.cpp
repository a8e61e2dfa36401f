// SPDX-License-Identifier: MIT
#include "batch/array_archive.h"

#include <bit>

namespace orvan::batch
{
namespace
{

static_assert(std::endian::native == std::endian::little);

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
	header += static_cast<char>(description.size() & 255); // Its length in two bytes, the lower first.
	header += static_cast<char>(description.size() >> 8);
	return header + description;
}

} // namespace

void ArrayArchive::Add(std::string_view name, std::string_view type, const void* numbers, std::size_t count,
					   std::size_t width)
{
	const auto numberSize = static_cast<std::size_t>(type.back() - '0');
	_files.Add(std::string(name) + ".npy",
			   {MakeHeader(type, count, width), {static_cast<const char*>(numbers), count * width * numberSize}});
}

} // namespace orvan::batch
