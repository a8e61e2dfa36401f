// SPDX-License-Identifier: MIT
#include "svg_files.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

/// True for names of drawings; a name that is nothing but the suffix is a hidden file without one.
bool IsWanted(const std::string& path, bool withCompressed)
{
	const auto hasSuffix = [&path](std::string_view suffix)
	{
		return path.ends_with(suffix) && path[path.size() - suffix.size() - 1] != '/';
	};
	return hasSuffix(".svg") || (withCompressed && hasSuffix(".svgz"));
}

void CollectFolder(const std::string& folder, bool withCompressed, SVGFiles& found)
{
	struct Entry
	{
		std::string path;
		bool isFolder;
	};
	std::vector<Entry> entries;
	std::error_code error;
	for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
	{
		// What an entry is stands in the folder, nearly always, so that nobody has to look for each. Folders behind
		// symbolic links are not entered: they may lead in circles.
		std::error_code hidden;
		const bool isLink = at->is_symlink(hidden);
		const bool isFolder = at->is_directory(hidden);
		// What cannot be looked at may be a folder full of files. What has gone since the folder was read is no more,
		// and where a link leads shows when it is read.
		if (hidden && !isLink && hidden != std::errc::no_such_file_or_directory)
			found.troubles.emplace_back(at->path().native(), hidden.message());
		else if (isFolder ? !isLink : IsWanted(at->path().native(), withCompressed))
			entries.push_back({at->path().native(), isFolder});
	}
	if (error)
		found.troubles.emplace_back(folder, error.message());
	// The system gives them in any order; people and tests want the same one each time.
	std::ranges::sort(entries, {}, &Entry::path);
	for (Entry& entry : entries)
	{
		if (entry.isFolder)
			CollectFolder(entry.path, withCompressed, found);
		else
			found.files.push_back(std::move(entry.path));
	}
}
} // namespace

SVGFiles FindSVGFiles(const std::vector<std::string>& paths, bool withCompressed)
{
	SVGFiles found;
	for (const std::string& path : paths)
	{
		std::error_code error;
		if (fs::is_directory(path, error))
			CollectFolder(path, withCompressed, found);
		else
			found.files.push_back(path); // What does not exist fails when it is loaded, with its reason.
	}
	return found;
}

} // namespace orvan::program
