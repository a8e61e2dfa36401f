// SPDX-License-Identifier: MIT
#include "batch/tar_writer.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace orvan::batch
{

void TarWriter::Add(std::string_view name, std::string_view content)
{
	constexpr std::size_t kBlock = 512;
	std::array<char, kBlock> header = {};
	const auto put = [&](std::size_t at, std::string_view text)
	{
		std::memcpy(header.data() + at, text.data(), text.size());
	};
	put(0, name.substr(0, 100));
	put(100, "0000644"); // Mode, owner, group.
	put(108, "0000000");
	put(116, "0000000");
	char number[16];
	std::snprintf(number, sizeof(number), "%011zo", content.size());
	put(124, {number, 11});
	put(136, "00000000000"); // The time.
	put(148, "        ");    // What the checksum counts as.
	put(156, "0");
	put(257, "ustar");
	put(263, "00");
	unsigned sum = 0;
	for (const char byte : header)
		sum += static_cast<unsigned char>(byte);
	std::snprintf(number, sizeof(number), "%06o", sum);
	put(148, std::string_view(number, 7));
	_bytes.append(header.data(), header.size()).append(content);
	_bytes.append((kBlock - content.size() % kBlock) % kBlock, '\0');
}

std::string TarWriter::Take()
{
	constexpr std::size_t kRecord = std::size_t{20} * 512;
	constexpr std::size_t kEnd = std::size_t{2} * 512;
	_bytes.append(kEnd, '\0');
	_bytes.append((kRecord - _bytes.size() % kRecord) % kRecord, '\0');
	return std::move(_bytes);
}

} // namespace orvan::batch
