// SPDX-License-Identifier: MIT
/// Finding SVG files.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace orvan::program
{

/// What was found under some paths.
struct SVGFiles
{
	std::vector<std::string> files;
	/// Places that could not be looked into, each with the reason.
	std::vector<std::pair<std::string, std::string>> troubles;
};

/// Every ".svg" file, and ".svgz" file when `withCompressed`, in the folders among `paths`, with all folders below, in
/// the order of their names; and those of the paths that are no folders, whatever they are called. Symbolic links to
/// files count as files, those to folders are not followed.
SVGFiles FindSVGFiles(const std::vector<std::string>& paths, bool withCompressed);

} // namespace orvan::program
