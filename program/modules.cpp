// SPDX-License-Identifier: MIT
#include "modules.h"

#include "console.h"
#include "orvan/host/module_loader.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace orvan::program
{
namespace
{
constexpr const char* kSVGModuleFile = "net.orvan.svg.so";
} // namespace

void LoadModules(const std::string& folder)
{
	namespace fs = std::filesystem;
	std::error_code error;
	fs::path place = folder;
	if (folder.empty())
		place = fs::read_symlink("/proc/self/exe", error).parent_path().parent_path() / "lib" / "orvan";

	std::vector<fs::path> files;
	for (fs::directory_iterator at(place, error), end; !error && at != end; at.increment(error))
	{
		if (at->path().extension() == ".so")
			files.push_back(at->path());
	}
	if (error)
		throw Failure("The modules' folder " + place.string() + " cannot be read: " + error.message());
	// Others build on the classes and interfaces that the SVG module publishes.
	std::ranges::sort(files, {},
					  [](const fs::path& file) { return std::pair(file.filename() != kSVGModuleFile, file.native()); });
	if (files.empty() || files.front().filename() != kSVGModuleFile)
		throw Failure("There is no " + std::string(kSVGModuleFile) + " in " + place.string() + ".");

	for (const fs::path& file : files)
	{
		const Result<Module*> module = Module::Load(file.string());
		if (module.IsOk())
			continue;
		const std::string reason = file.string() + ": " + std::string(module.GetError().GetMessage().View());
		// Without the SVG module there is nothing to do; without a renderer there is.
		if (file == files.front())
			throw Failure(reason);
		PrintError("WARNING: " + reason);
	}
}

} // namespace orvan::program
