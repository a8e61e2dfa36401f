// SPDX-License-Identifier: MIT
#include "host.h"

#include "orvan/host/module_loader.h"

#include <cerrno>
#include <cstring>
#include <set>
#include <string_view>

namespace orvan::python
{

std::shared_mutex g_hostUse;

namespace
{

std::string g_folder; ///< Of the modules. Used under the interpreter's lock, as is what follows.

} // namespace

void LoadModules(const std::string& folder)
{
	if (!g_folder.empty())
		return;
	g_folder = folder;
	RequireModule("net.orvan.svg.so");
}

void RequireModule(const char* name)
{
	static std::set<std::string> opened;
	if (opened.contains(name))
		return;
	// Whoever is in a long call ends it without the interpreter's lock, and nobody begins one without it.
	const std::unique_lock alone(g_hostUse);
	const Result<Module*> module = Module::Load(g_folder + '/' + name);
	if (!module.IsOk())
		throw py::import_error(g_folder + '/' + name + ": " + std::string(module.GetError().GetMessage().View()));
	opened.insert(name);
}

namespace
{

/// As Python's own functions tell of files: with the file's name, also in the exception's `filename`.
[[noreturn]] void ThrowFileError(const std::string& message, const std::string& urlText)
{
	const Result<Url> url = Url::Create(urlText);
	const bool isMissing = url.IsOk() && url.GetValue().IoDetect() == IoDetection::nonExistent;
	constexpr std::string_view kScheme = "file://";
	const bool isOnDisk = urlText.starts_with(kScheme);
	const py::object path =
		py::module_::import("urllib.parse").attr("unquote")(urlText.substr(isOnDisk ? kScheme.size() : 0));
	const py::tuple arguments =
		py::make_tuple(isMissing ? ENOENT : EIO, isMissing ? std::strerror(ENOENT) : message, path);
	PyErr_SetObject(PyExc_OSError, arguments.ptr());
	throw py::error_already_set();
}

} // namespace

void ThrowError(const Error& error)
{
	const std::string message(error.GetMessage().View());
	PyObject* type = PyExc_RuntimeError;
	switch (error.GetClass())
	{
	case ErrorClass::io:
		ThrowFileError(message, std::string(error.GetUrlText().View()));
	case ErrorClass::outOfMemory:
		type = PyExc_MemoryError;
		break;
	case ErrorClass::notFound:
		type = PyExc_KeyError;
		break;
	case ErrorClass::illegalArgument:
	case ErrorClass::nullReference:
		type = PyExc_ValueError;
		break;
	case ErrorClass::illegalState:
	case ErrorClass::unknown:
		break;
	}
	PyErr_SetString(type, message.c_str());
	throw py::error_already_set();
}

} // namespace orvan::python
