// SPDX-License-Identifier: MIT
#include "corpus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orvan::bench
{

std::size_t Corpus::CountBytes() const
{
	std::size_t bytes = 0;
	for (const CorpusFile& file : files)
		bytes += file.bytes.size();
	return bytes;
}

Corpus ReadCorpus(const std::string& folder)
{
	namespace fs = std::filesystem;
	Corpus corpus;
	corpus.name = fs::path(folder).filename();
	for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
	{
		if (!entry.is_regular_file() || entry.path().extension() != ".svg")
			continue;
		std::ifstream stream(entry.path(), std::ios::binary);
		std::string bytes(std::istreambuf_iterator<char>(stream), {});
		if (stream && !bytes.empty())
			corpus.files.push_back({{}, entry.path(), std::move(bytes)});
	}
	std::sort(corpus.files.begin(), corpus.files.end(),
			  [](const CorpusFile& a, const CorpusFile& b) { return a.path < b.path; });
	for (std::size_t i = 0; i < corpus.files.size(); i++)
		corpus.files[i].name = corpus.name + "/" + std::to_string(i) + ".svg";
	return corpus;
}

} // namespace orvan::bench
