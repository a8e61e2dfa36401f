// SPDX-License-Identifier: MIT
/// The host that lives in the interpreter: modules, results and errors.
#pragma once

#include "orvan/diagnostics.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/result.h"
#include "svg_base.h"
#include "svg_geometry.h"
#include "svg_import.h"

#include <mutex>
#include <pybind11/pybind11.h>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::python
{

namespace py = pybind11;

/// Opens the SVG module from a folder, once, and remembers the folder. Called when the package is imported; what is
/// open stays open.
void LoadModules(const std::string& folder);

/// Opens another module of that folder when it is needed first: each brings libraries along whose loading takes longer
/// than most files. Waits for the long calls of other threads.
void RequireModule(const char* name);

/// Held by long calls; opening a module, which must not overlap other use of the host, has it alone.
extern std::shared_mutex g_hostUse;

/// Lets the interpreter's other threads go on while the host works. Nothing of Python may be touched meanwhile.
class LongCall
{
	// In this order: whoever opens a module holds the interpreter's lock and waits for the other.
	py::gil_scoped_release _others;
	std::shared_lock<std::shared_mutex> _use{g_hostUse};
};

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
	SVGGeometryRef geometry; ///< Answers for the document; null until somebody asks.
	std::mutex mutex;
};

/// Holds a document, or whatever else has a lock. The interpreter goes on while another thread is waited for.
class DocumentLock
{
public:
	explicit DocumentLock(SharedDocument& shared) : DocumentLock(shared.mutex)
	{
	}

	explicit DocumentLock(std::mutex& mutex) : _lock(mutex, std::try_to_lock)
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
