// SPDX-License-Identifier: MIT
#include "host.h"

#include "orvan/host/module_loader.h"

#include <array>

namespace orvan::python
{

void LoadModules(const std::string& folder)
{
	static bool isLoaded = false;
	if (isLoaded)
		return;
	// Opening modules must not overlap other use of the host: the lock of the interpreter is kept.
	for (const char* name : {"net.orvan.svg.so", "net.orvan.svg.cairo.so"})
	{
		const Result<Module*> module = Module::Load(folder + '/' + name);
		if (!module.IsOk())
			throw py::import_error(folder + '/' + name + ": " + std::string(module.GetError().GetMessage().View()));
	}
	isLoaded = true;
}

void ThrowError(const Error& error)
{
	const std::string message(error.GetMessage().View());
	PyObject* type = PyExc_RuntimeError;
	switch (error.GetClass())
	{
	case ErrorClass::io:
	{
		const Result<Url> url = Url::Create(error.GetUrlText().View());
		type = url.IsOk() && url.GetValue().IoDetect() == IoDetection::nonExistent ? PyExc_FileNotFoundError
																				   : PyExc_OSError;
		break;
	}
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
