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
namespace fs = std::filesystem;

constexpr const char* kSVGModuleFile = "net.orvan.svg.so";

/// Why a module could not be opened; empty when it was.
std::string Load(const fs::path& file)
{
	const Result<Module*> module = Module::Load(file.string());
	return module.IsOk() ? std::string() : file.string() + ": " + std::string(module.GetError().GetMessage().View());
}
} // namespace

Modules::Modules(const std::string& folder) : _folder(folder)
{
	std::error_code ignored;
	if (!_folder.empty())
		return;
	const fs::path prefix = fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
	_folder = prefix / ORVAN_INSTALLED_MODULES;
	// Where the program was built, and where libraries of all architectures share a folder.
	if (!fs::exists(_folder, ignored))
		_folder = prefix / "lib" / "orvan";
}

void Modules::LoadSVGModule()
{
	LoadModule(kSVGModuleFile);
}

void Modules::LoadModule(const char* name)
{
	const fs::path file = fs::path(_folder) / name;
	std::error_code error;
	if (const fs::file_status status = fs::status(file, error); fs::exists(status))
	{
		if (const std::string reason = Load(file); !reason.empty())
			throw Failure(reason);
	}
	else if (fs::directory_iterator(_folder, error); error)
		throw Failure("The modules' folder " + _folder + " cannot be read: " + error.message());
	else
		throw Failure("There is no " + std::string(name) + " in " + _folder + ".");
}

void Modules::LoadOtherModules()
{
	std::vector<fs::path> files;
	std::error_code error;
	for (fs::directory_iterator at(_folder, error), end; !error && at != end; at.increment(error))
	{
		if (at->path().extension() == ".so" && at->path().filename() != kSVGModuleFile)
			files.push_back(at->path());
	}
	if (error)
		throw Failure("The modules' folder " + _folder + " cannot be read: " + error.message());
	std::ranges::sort(files);
	for (const fs::path& file : files)
	{
		if (const std::string reason = Load(file); !reason.empty())
			PrintError("WARNING: " + reason);
	}
}

} // namespace orvan::program
