// SPDX-License-Identifier: MIT
/// The host that lives in the interpreter: modules, results and errors.
#pragma once

#include "orvan/diagnostics.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/result.h"
#include "svg_base.h"
#include "svg_import.h"

#include <mutex>
#include <pybind11/pybind11.h>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::python
{

namespace py = pybind11;

/// Opens the modules from a folder, once. Called when the package is imported; what is open stays open.
void LoadModules(const std::string& folder);

/// Throws what a failed result says as the exception that Python has for it.
[[noreturn]] void ThrowError(const Error& error);

template <typename T>
T Unwrap(Result<T> result)
{
	if (!result.IsOk())
		ThrowError(result.GetError());
	return std::move(result).GetValue();
}

inline void Unwrap(Result<void> result)
{
	if (!result.IsOk())
		ThrowError(result.GetError());
}

inline String ToString(std::string_view text)
{
	return Unwrap(String::Create(text));
}

inline py::str ToPython(const String& text)
{
	return py::str(text.View().data(), text.View().size());
}

/// Collects the diagnostics of this thread instead of printing them.
class CollectedDiagnostics
{
public:
	std::vector<std::string> texts;

private:
	static void Take(const Diagnostic& diagnostic, void* context)
	{
		static_cast<CollectedDiagnostics*>(context)->texts.emplace_back(diagnostic.text);
	}

	ThreadDiagnosticSink _sink{&Take, this};
};

/// A document and the lock that all that Python holds of it shares: calls that take long let other threads of the
/// interpreter run, which must not touch the same tree meanwhile.
struct SharedDocument
{
	SVGDocumentRef document;
	std::mutex mutex;
};

/// Holds a document. The interpreter goes on while another thread is waited for.
class DocumentLock
{
public:
	explicit DocumentLock(SharedDocument& shared) : _lock(shared.mutex, std::try_to_lock)
	{
		if (_lock.owns_lock())
			return;
		const py::gil_scoped_release others;
		_lock.lock();
	}

private:
	std::unique_lock<std::mutex> _lock;
};

} // namespace orvan::python
