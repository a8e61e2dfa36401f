// SPDX-License-Identifier: MIT
/// Tar archives: POSIX and GNU, plain or packed with gzip.
#pragma once

#include "batch/archive.h"

#include <array>

struct gzFile_s;

namespace orvan::batch
{

class TarArchive final : public Archive
{
public:
	explicit TarArchive(const std::string& path);
	~TarArchive() override;

	std::optional<ArchiveMember> Next() override;
	std::string Read(const std::string& place) override;

private:
	static constexpr std::size_t kBlock = 512;
	using Block = std::array<char, kBlock>;

	/// Goes to a place, counted in bytes unpacked.
	void Seek(std::uint64_t offset);
	std::string ReadBytes(std::uint64_t count);
	bool ReadBlock(Block& block);
	void TakeExtension(const std::string& records);

	gzFile_s* _file; ///< Reads plain files as they are.
	std::uint64_t _next = 0;
	std::string _longName;                  ///< For the next member; empty for its own.
	std::optional<std::uint64_t> _nextSize; ///< Likewise.
};

} // namespace orvan::batch
