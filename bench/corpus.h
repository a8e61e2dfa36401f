// SPDX-License-Identifier: MIT
/// Sets of files that the benchmarks load.
#pragma once

#include <string>
#include <vector>

namespace orvan::bench
{

struct CorpusFile
{
	std::string name; ///< Under which the file is published in memory.
	std::string path;
	std::string bytes;
};

/// All `.svg` files below a folder, in the order of their paths.
struct Corpus
{
	std::string name;
	std::vector<CorpusFile> files;

	std::size_t CountBytes() const;
};

/// Reads a folder; the corpus is named after it. Files that cannot be read are left out.
Corpus ReadCorpus(const std::string& folder);

} // namespace orvan::bench
