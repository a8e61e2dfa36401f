// SPDX-License-Identifier: MIT
#include "svg_files.h"

#include <algorithm>
#include <filesystem>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

void CollectFolder(const fs::path& folder, bool withCompressed, SVGFiles& found)
{
	std::vector<fs::path> entries;
	std::error_code error;
	for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
		entries.push_back(at->path());
	if (error)
		found.troubles.emplace_back(folder.native(), error.message());
	const auto isWanted = [withCompressed](const fs::path& entry)
	{
		const fs::path extension = entry.extension();
		return extension == ".svg" || (withCompressed && extension == ".svgz");
	};
	// The system gives them in any order; people and tests want the same one each time.
	std::ranges::sort(entries);
	for (const fs::path& entry : entries)
	{
		// Folders behind symbolic links are not entered: they may lead in circles.
		const fs::file_status status = fs::symlink_status(entry, error);
		// What cannot be looked at may be a folder full of files. What has gone since the folder was read is no more.
		if (error && status.type() != fs::file_type::not_found)
			found.troubles.emplace_back(entry.native(), error.message());
		else if (fs::is_directory(status))
			CollectFolder(entry, withCompressed, found);
		else if (isWanted(entry) && !(fs::is_symlink(status) && fs::is_directory(entry, error)))
			found.files.push_back(entry.native());
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
