// SPDX-License-Identifier: MIT
#pragma once

/// Tests whose cases are files: what all of these corpora need.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::test
{
inline std::string ReadFile(const std::filesystem::path& path)
{
	std::ifstream file(path, std::ios::binary);
	return {std::istreambuf_iterator<char>(file), {}};
}

/// The names, without the ending, of a folder's files that have it, in order.
inline std::vector<std::string> NamesIn(const std::filesystem::path& folder, std::string_view ending)
{
	std::vector<std::string> names;
	for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder))
	{
		if (entry.path().extension() == ending)
			names.push_back(entry.path().stem());
	}
	std::sort(names.begin(), names.end());
	return names;
}

/// A file's name as that of a test, which has no "-".
inline std::string TestNameOf(const testing::TestParamInfo<std::string>& test)
{
	std::string name = test.param;
	std::replace(name.begin(), name.end(), '-', '_');
	return name;
}
} // namespace orvan::test
