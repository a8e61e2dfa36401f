// SPDX-License-Identifier: MIT
/// Arrays in a file that NumPy reads.
#pragma once

#include "batch/archive_writer.h"

namespace orvan::batch
{

/// Writes a .npz file: a ZIP archive, not compressed, with a .npy file for each array. The same arrays are the same
/// bytes.
class ArrayArchive
{
public:
	/// Adds an array of `count` rows of `width` numbers. `type` is NumPy's name, such as "<f8" or "|u1", which says how
	/// large a number is; this runs on little-endian machines only.
	void Add(std::string_view name, std::string_view type, const void* numbers, std::size_t count,
			 std::size_t width = 1);

	/// The file, complete.
	std::string Take()
	{
		return _files.Take();
	}

private:
	ArchiveWriter _files{ArchiveFormat::zip};
};

} // namespace orvan::batch
