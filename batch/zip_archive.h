// SPDX-License-Identifier: MIT
/// ZIP archives, with members that are stored or deflated.
#pragma once

#include "batch/archive.h"
#include "batch/open_file.h"

namespace orvan::batch
{

class ZipArchive final : public Archive
{
public:
	explicit ZipArchive(const std::string& path);

	std::optional<ArchiveMember> Next() override;
	std::string Read(const std::string& place) override;

private:
	void FindDirectory();

	OpenFile _file;
	bool _isFound = false;
	std::uint64_t _next = 0; ///< Of the directory: its next entry, and how many are left.
	std::uint64_t _left = 0;
};

} // namespace orvan::batch
