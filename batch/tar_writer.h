// SPDX-License-Identifier: MIT
/// Writing a tar archive.
#pragma once

#include <string>
#include <string_view>

namespace orvan::batch
{

/// Puts files together in memory. The same files are the same bytes: nothing is said of times and owners.
class TarWriter
{
public:
	/// Adds a file, whose name has at most 100 bytes.
	void Add(std::string_view name, std::string_view content);

	/// The archive, complete.
	std::string Take();

	/// How much there is so far, for `CutOff`.
	std::size_t GetSize() const
	{
		return _bytes.size();
	}

	/// Takes what came after a size back.
	void CutOff(std::size_t size)
	{
		_bytes.resize(size);
	}

private:
	std::string _bytes;
};

} // namespace orvan::batch
