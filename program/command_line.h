// SPDX-License-Identifier: MIT
/// The command line: which commands there are, and what each takes.
///
/// The library that reads it stays behind this header: it takes longer to compile than all the rest of the program.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI
{
class App;
}

namespace orvan::program
{

class Modules;

/// The program's version, as in "1.0.0".
std::string_view GetVersion();

/// How an option is called and explained.
struct OptionText
{
	const char* names;          ///< For example "-o,--output".
	const char* help;           ///< What it does, without a full stop.
	const char* value = "TEXT"; ///< The word that stands for its value.
	/// Says what is wrong with a value; the empty text when nothing is. Null when any will do.
	std::string (*check)(const std::string& value) = nullptr;
	bool isRequired = false;
};

/// What one command takes. Values are written to the given variables, which must live until the command has run.
class Command
{
public:
	explicit Command(CLI::App& app) : _app(app)
	{
	}

	/// An argument that has no name of its own, and must not be the empty text.
	void AddArgument(const char* name, const char* help, std::string& value);
	/// One argument or more, likewise.
	void AddArguments(const char* name, const char* help, std::vector<std::string>& values);

	/// Any number of arguments, likewise.
	void AddOptionalArguments(const char* name, const char* help, std::vector<std::string>& values);

	void AddFlag(const char* names, const char* help, bool& value);
	void AddText(const OptionText& text, std::string& value);
	void AddText(const OptionText& text, std::optional<std::string>& value);
	/// An option that may be given several times.
	void AddTexts(const OptionText& text, std::vector<std::string>& values);
	/// A whole number.
	void AddNumber(const OptionText& text, std::optional<std::uint32_t>& value, std::uint32_t least,
				   std::uint32_t greatest);
	/// A number above zero.
	void AddPositiveNumber(const OptionText& text, double& value);

private:
	CLI::App& _app;
};

/// The whole of it.
class CommandLine
{
public:
	CommandLine();
	CommandLine(const CommandLine&) = delete;
	~CommandLine();

	/// Adds a command. `run` is called with the modules, of which the SVG module is open, and returns the exit status.
	Command AddCommand(const char* name, const char* help, std::function<int(Modules& modules)> run);

	/// Reads the arguments and runs the command that they name. Returns the exit status; throws what the command
	/// throws. Help and version go to standard output, what is wrong with the arguments to standard error.
	int Run(int argumentCount, const char* const* arguments);

private:
	std::unique_ptr<CLI::App> _app;
	std::string _moduleFolder;
	std::function<int(Modules&)> _run;
};

} // namespace orvan::program
