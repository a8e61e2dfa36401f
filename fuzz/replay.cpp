// SPDX-License-Identifier: MIT
// Runs a fuzz target over files without the fuzzer: NAME_replay [--values] PATH…
// Folders are searched for files. With --values the inputs are the attribute values of the files, one by one.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{
namespace fs = std::filesystem;

std::vector<fs::path> ListFiles(const fs::path& path)
{
	if (!fs::is_directory(path))
		return {path};
	std::vector<fs::path> files;
	for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
	{
		if (entry.is_regular_file() && entry.path().filename() != "README.md")
			files.push_back(entry.path());
	}
	std::sort(files.begin(), files.end());
	return files;
}

std::vector<std::string> SplitValues(const std::string& document)
{
	std::vector<std::string> values;
	for (std::size_t quote = document.find("=\""); quote != document.npos; quote = document.find("=\"", quote))
	{
		const std::size_t end = std::min(document.find('"', quote + 2), document.size());
		values.push_back(document.substr(quote + 2, end - quote - 2));
		quote = end;
	}
	return values;
}
} // namespace

int main(int argc, char** argv)
{
	bool takesValues = false;
	std::size_t count = 0;
	for (int i = 1; i < argc; i++)
	{
		if (std::strcmp(argv[i], "--values") == 0)
		{
			takesValues = true;
			continue;
		}
		for (const fs::path& path : ListFiles(argv[i]))
		{
			std::ifstream stream(path, std::ios::binary);
			std::string file(std::istreambuf_iterator<char>(stream), {});
			if (!stream)
			{
				std::fprintf(stderr, "%s cannot be read\n", path.c_str());
				return 1;
			}
			const bool isDocument = takesValues && path.extension() == ".svg";
			for (const std::string& input : isDocument ? SplitValues(file) : std::vector{std::move(file)})
			{
				LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
				count++;
			}
		}
	}
	std::printf("%zu inputs\n", count);
	return count != 0 ? 0 : 1; // A run over nothing shows nothing.
}
