// SPDX-License-Identifier: MIT
#include "batch/archive_library.h"

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace orvan::batch
{
namespace
{

/// It stays for the life of the process.
ArchiveLibrary Load()
{
	void* const library = dlopen(ORVAN_ARCHIVE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
	if (library == nullptr)
		throw std::runtime_error(std::string("Archives cannot be read or written: ") + dlerror());
	const auto find = [library](const char* name)
	{
		void* const function = dlsym(library, name);
		if (function == nullptr)
			throw std::runtime_error(std::string("Archives cannot be read or written: there is no ") + name);
		return function;
	};
	ArchiveLibrary functions{};
#define ORVAN_FIND(name) functions.name = reinterpret_cast<decltype(functions.name)>(find(#name));
	ORVAN_ARCHIVE_FUNCTIONS(ORVAN_FIND)
#undef ORVAN_FIND
	return functions;
}

} // namespace

const ArchiveLibrary& LibArchive()
{
	static const ArchiveLibrary library = Load();
	return library;
}

} // namespace orvan::batch
