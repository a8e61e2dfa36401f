// SPDX-License-Identifier: MIT
#include "errors.h"

#include "orvan/array.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/url.h"

#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <unistd.h>

namespace orvan
{
namespace
{

/// Handed out for every failed allocation, so that reporting one needs no memory. Its count of 0 is never changed, and
/// it is never destroyed: errors may be around until the very end of the process.
union Immortal
{
	ErrorBlock block;

	constexpr Immortal() noexcept : block{{0}, ErrorClass::outOfMemory, 0, {}, {}, {}}
	{
	}

	~Immortal()
	{
		// The error is never released.
	}
};
constinit Immortal g_outOfMemory;

/// The message is made while the program starts. Later its memory may be refused, which would ask for this very error.
[[maybe_unused]] const bool g_hasOutOfMemoryMessage = []
{
	Result<String> text = String::Create("There is not enough memory.");
	if (!text.IsOk())
		return false;
	g_outOfMemory.block.message = std::move(text).GetValue();
	return true;
}();

/// A message that is put together piece by piece. What does not fit into memory is left out; `IsComplete` tells.
class MessageBuilder
{
public:
	void Add(std::string_view text) noexcept
	{
		_isComplete = _text.AppendAll(text.data(), text.size()).IsOk() && _isComplete;
	}

	void Add(const FormatArgument& argument) noexcept
	{
		char digits[32];
		switch (argument.kind)
		{
		case FormatArgument::Kind::text:
			return Add(argument.text);
		case FormatArgument::Kind::integer:
			return Add({digits, std::to_chars(digits, digits + sizeof digits, argument.integer).ptr});
		case FormatArgument::Kind::number:
			return Add({digits, std::to_chars(digits, digits + sizeof digits, argument.number).ptr});
		}
	}

	void AddFormatted(std::string_view pattern, const FormatArgument* arguments, std::size_t count) noexcept
	{
		for (std::size_t i = 0; i < count; i++)
		{
			const std::size_t at = pattern.find('@');
			Add(pattern.substr(0, at));
			Add(arguments[i]);
			pattern.remove_prefix(at == pattern.npos ? pattern.size() : at + 1);
		}
		Add(pattern);
	}

	bool IsComplete() const noexcept
	{
		return _isComplete;
	}

	std::string_view View() const noexcept
	{
		return {_text.begin(), _text.GetCount()};
	}

private:
	BaseArray<char> _text;
	bool _isComplete = true;
};

std::string_view BaseName(std::string_view path) noexcept
{
	return path.substr(path.rfind('/') + 1);
}

struct Sink
{
	DiagnosticSink function = nullptr;
	void* context = nullptr;
};

std::mutex g_sinkMutex;
constinit Sink g_sink;
constinit thread_local Sink t_sink;

void WriteToConsole(const Diagnostic& diagnostic, void*)
{
	std::string line = FormatDiagnostic(diagnostic);
	line += '\n';
	std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace

ErrorBlock* runtime::OutOfMemory() noexcept
{
	return &g_outOfMemory.block;
}

ErrorBlock* runtime::MakeError(ErrorClass errorClass, const char* pattern, const FormatArgument* arguments,
							   std::size_t argumentCount, const Url* url, const char* file, int line) noexcept
{
	MessageBuilder text;
	text.AddFormatted(pattern, arguments, argumentCount);
	Result<String> message = String::Create(text.View());
	Result<String> fileName = String::Create(BaseName(file));
	void* memory = Host().allocate(sizeof(ErrorBlock));
	if (!text.IsComplete() || !message.IsOk() || !fileName.IsOk() || memory == nullptr)
	{
		Host().free(memory);
		return OutOfMemory();
	}
	return new (memory) ErrorBlock{{1},
								   errorClass,
								   line,
								   std::move(message).GetValue(),
								   url != nullptr ? url->GetText() : String(),
								   std::move(fileName).GetValue()};
}

void runtime::ReleaseError(ErrorBlock* error) noexcept
{
	if (error->count.load(std::memory_order_relaxed) == 0)
		return;
	if (error->count.fetch_sub(1, std::memory_order_acq_rel) == 1)
	{
		std::destroy_at(error);
		Host().free(error);
	}
}

void runtime::Diagnose(DiagnosticLevel level, const char* pattern, const FormatArgument* arguments,
					   std::size_t argumentCount, const DocumentPosition* position, const char* file, int line) noexcept
{
	MessageBuilder text;
	text.AddFormatted(pattern, arguments, argumentCount);
	Sink sink = t_sink;
	if (sink.function == nullptr)
	{
		const std::lock_guard lock(g_sinkMutex);
		sink = g_sink;
	}
	if (sink.function == nullptr)
		sink.function = &WriteToConsole;
	try
	{
		sink.function({level, text.View(), BaseName(file), line, position}, sink.context);
	}
	catch (const std::bad_alloc&)
	{
		// A message that there is no memory for is lost; whoever wrote it also reports in another way.
	}
}

void runtime::DebugStop(const char* text, const char* file, int line) noexcept
{
	std::fprintf(stderr, "%s: %.*s(%d)\n", text, static_cast<int>(BaseName(file).size()), BaseName(file).data(), line);
	bool isTraced = false;
	if (std::FILE* status = std::fopen("/proc/self/status", "re"))
	{
		char buffer[256];
		while (std::fgets(buffer, sizeof buffer, status) != nullptr)
		{
			if (std::strncmp(buffer, "TracerPid:", 10) == 0)
				isTraced = std::atoi(buffer + 10) != 0;
		}
		std::fclose(status);
	}
	if (isTraced)
		std::raise(SIGTRAP);
}

void SetDiagnosticSink(DiagnosticSink sink, void* context) noexcept
{
	const std::lock_guard lock(g_sinkMutex);
	g_sink = {sink, context};
}

std::string FormatDiagnostic(const Diagnostic& diagnostic)
{
	std::string line = diagnostic.level == DiagnosticLevel::critical ? "CRITICAL: " : "WARNING: ";
	line += diagnostic.file;
	line += '(';
	line += std::to_string(diagnostic.line);
	line += "): ";
	line += diagnostic.text;
	return line;
}

ThreadDiagnosticSink::ThreadDiagnosticSink(DiagnosticSink sink, void* context) noexcept
	: _previousSink(t_sink.function), _previousContext(t_sink.context)
{
	t_sink = {sink, context};
}

ThreadDiagnosticSink::~ThreadDiagnosticSink()
{
	t_sink = {_previousSink, _previousContext};
}

} // namespace orvan
