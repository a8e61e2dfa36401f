// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <cstdlib>
#include <fstream>
#include <sys/wait.h>

namespace orvan::test
{
namespace
{
std::string Quote(const std::string& text)
{
	std::string quoted = "'";
	for (const char c : text)
		quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
	return quoted + "'";
}
} // namespace

ProgramRun RunProgram(const std::vector<std::string>& arguments, const ProgramStreams& streams)
{
	std::string command = streams.setup + Quote(ORVAN_PROGRAM);
	for (const std::string& argument : arguments)
		command += ' ' + Quote(argument);
	return RunShell(command, streams);
}

ProgramRun RunShell(const std::string& command, const ProgramStreams& streams)
{
	const TemporaryFolder folder;
	const std::string redirected =
		command + " <" + Quote(folder.Write("input", streams.input)) + " >" +
		Quote(streams.output.empty() ? (folder.GetPath() / "output").native() : streams.output) + " 2>" +
		Quote(folder.GetPath() / "errors");
	const int result = std::system(redirected.c_str());
	return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, ReadFile(folder.GetPath() / "output"),
			ReadFile(folder.GetPath() / "errors")};
}

TemporaryFolder::TemporaryFolder()
{
	std::string pattern = std::filesystem::temp_directory_path() / "orvan-program-XXXXXX";
	if (mkdtemp(pattern.data()) == nullptr)
		std::abort();
	_path = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
	std::error_code ignored;
	std::filesystem::remove_all(_path, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, std::string_view content) const
{
	const std::filesystem::path path = _path / name;
	std::filesystem::create_directories(path.parent_path());
	std::ofstream(path, std::ios::binary) << content;
	return path;
}

} // namespace orvan::test
