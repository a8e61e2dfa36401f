// SPDX-License-Identifier: MIT
#include "path_walk.h"

#include <algorithm>
#include <climits>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orvan::runtime
{
namespace
{

/// The system's own limit for links on the way to a file.
constexpr int kMostLinks = 40;

std::string Join(const std::string& folder, const std::string& name)
{
	return folder == "/" ? folder + name : folder + "/" + name;
}

/// Puts the names of a path on top of the stack, the first one uppermost.
void PushNames(std::vector<std::string>& names, std::string_view path)
{
	const auto bottom = static_cast<std::ptrdiff_t>(names.size());
	while (!path.empty())
	{
		const std::string_view name = path.substr(0, path.find('/'));
		path.remove_prefix(std::min(path.size(), name.size() + 1));
		if (!name.empty() && name != ".")
			names.emplace_back(name);
	}
	std::reverse(names.begin() + bottom, names.end());
}

} // namespace

void WalkPath(const std::string& path, PathVisitor& visitor)
{
	std::vector<std::string> names;
	PushNames(names, path);
	std::string folder = "/";
	int links = 0;
	while (!names.empty())
	{
		const std::string name = std::move(names.back());
		names.pop_back();
		if (name == "..")
		{
			folder.resize(std::max<std::size_t>(1, folder.rfind('/')));
			continue;
		}
		if (!visitor.Visit(folder, name, names.empty()))
			return;
		std::string entry = Join(folder, name);
		struct stat status;
		if (lstat(entry.c_str(), &status) != 0)
			return;
		if (S_ISLNK(status.st_mode))
		{
			char target[PATH_MAX];
			const ssize_t size = readlink(entry.c_str(), target, sizeof target);
			if (size <= 0 || ++links > kMostLinks)
				return;
			if (target[0] == '/')
				folder = "/";
			PushNames(names, {target, static_cast<std::size_t>(size)});
		}
		else if (S_ISDIR(status.st_mode))
			folder = std::move(entry);
		else
			return;
	}
}

} // namespace orvan::runtime
