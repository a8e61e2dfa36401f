// SPDX-License-Identifier: MIT
/// What the host's tests share.
#pragma once

#include "orvan/host/allocation_failure.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/result.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvan
{

/// The value of a result that must not be an error; a test that meets one ends there.
template <typename T>
T Must(Result<T> result)
{
	if (!result.IsOk())
		throw std::runtime_error(result.GetError().GetMessage().CString());
	return std::move(result).GetValue();
}

inline String Text(std::string_view text)
{
	return Must(String::Create(text));
}

template <typename T>
std::string MessageOf(const Result<T>& result)
{
	return result.IsOk() ? "no error" : result.GetError().GetMessage().CString();
}

/// Repeats `operation` with its first, second, third … allocation failing until it gets by without a failure. Each
/// failure must come back as the out-of-memory error. The result is the number of allocations.
template <typename Operation>
int FailEachAllocation(Operation operation)
{
	for (int number = 1;; number++)
	{
		const AllocationFailure failure(number, AllocationFailure::Extent::one);
		const auto result = operation();
		if (!failure.HasFailed())
		{
			EXPECT_TRUE(result.IsOk()) << MessageOf(result);
			return number - 1;
		}
		EXPECT_FALSE(result.IsOk()) << "allocation " << number;
		if (!result.IsOk())
		{
			EXPECT_EQ(ErrorClass::outOfMemory, result.GetError().GetClass()) << "allocation " << number;
		}
	}
}

/// A folder for one test.
class TemporaryFolder
{
public:
	TemporaryFolder()
	{
		std::string name = (std::filesystem::temp_directory_path() / "orvan-test-XXXXXX").string();
		if (mkdtemp(name.data()) == nullptr)
			throw std::runtime_error("no temporary folder");
		_path = std::filesystem::canonical(name);
	}
	TemporaryFolder(const TemporaryFolder&) = delete;
	~TemporaryFolder()
	{
		std::filesystem::remove_all(_path);
	}

	std::filesystem::path operator/(std::string_view name) const
	{
		return _path / name;
	}

	const std::filesystem::path& GetPath() const
	{
		return _path;
	}

private:
	std::filesystem::path _path;
};

inline void WriteFile(const std::filesystem::path& path, std::string_view content)
{
	std::ofstream(path, std::ios::binary) << content;
}

/// Collects this thread's diagnostics as the console would show them, without the place in the code.
class CollectedDiagnostics
{
public:
	std::vector<std::string> lines;

private:
	static void Take(const Diagnostic& diagnostic, void* context)
	{
		static_cast<CollectedDiagnostics*>(context)->lines.emplace_back(diagnostic.text);
	}

	ThreadDiagnosticSink _sink{&Take, this};
};

} // namespace orvan
