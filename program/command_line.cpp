// SPDX-License-Identifier: MIT
#include "command_line.h"

#include "console.h"
#include "modules.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <sstream>

namespace orvan::program
{
namespace
{
/// No file, id or folder is called nothing; a script whose variable is empty hears of it here.
std::string CheckNotEmpty(const std::string& value)
{
	return value.empty() ? "The empty text is no name" : "";
}

void Describe(CLI::Option& option, const OptionText& text)
{
	option.type_name(text.value)->required(text.isRequired);
	if (text.check != nullptr)
		option.check(text.check);
}
} // namespace

std::string_view GetVersion()
{
	return ORVAN_SVG_VERSION;
}

void Command::AddArgument(const char* name, const char* help, std::string& value)
{
	_app.add_option(name, value, help)->required()->type_name("")->check(&CheckNotEmpty);
}

void Command::AddArguments(const char* name, const char* help, std::vector<std::string>& values)
{
	_app.add_option(name, values, help)->required()->type_name("")->check(&CheckNotEmpty);
}

void Command::AddOptionalArguments(const char* name, const char* help, std::vector<std::string>& values)
{
	_app.add_option(name, values, help)->type_name("")->check(&CheckNotEmpty);
}

void Command::AddFlag(const char* names, const char* help, bool& value)
{
	_app.add_flag(names, value, help);
}

void Command::AddText(const OptionText& text, std::string& value)
{
	Describe(*_app.add_option(text.names, value, text.help), text);
}

void Command::AddText(const OptionText& text, std::optional<std::string>& value)
{
	Describe(*_app.add_option(text.names, value, text.help), text);
}

void Command::AddTexts(const OptionText& text, std::vector<std::string>& values)
{
	// One value each time, so that what follows is an argument again.
	Describe(*_app.add_option(text.names, values, text.help)->expected(1)->take_all()->allow_extra_args(false), text);
}

void Command::AddNumber(const OptionText& text, std::optional<std::uint32_t>& value, std::uint32_t least,
						std::uint32_t greatest)
{
	CLI::Option* const option = _app.add_option(text.names, value, text.help)->check(CLI::Range(least, greatest, ""));
	Describe(*option, text);
}

void Command::AddPositiveNumber(const OptionText& text, double& value)
{
	Describe(*_app.add_option(text.names, value, text.help)->check(CLI::PositiveNumber.description("")), text);
}

CommandLine::CommandLine() : _app(std::make_unique<CLI::App>("Looks at SVG files through the SVG module.", "orvan-svg"))
{
	_app->require_subcommand(1);
	_app->footer("Exit status:\n"
				 "  0 when all went well; 1 when a file could not be loaded or was refused, or a result could not be\n"
				 "  written; 2 when the command line made no sense.");
	_app->set_version_flag("--version", "orvan-svg " + std::string(GetVersion()), "Print the version and exit");
	_app->add_option("--modules", _moduleFolder, "Folder with the modules to load")->type_name("DIR");
}

CommandLine::~CommandLine() = default;

Command CommandLine::AddCommand(const char* name, const char* help, std::function<int(Modules& modules)> run)
{
	CLI::App* const command = _app->add_subcommand(name, help);
	command->footer("");
	// Lets --modules stand behind the command as well.
	command->fallthrough();
	command->callback([this, run = std::move(run)] { _run = run; });
	return Command(*command);
}

int CommandLine::Run(int argumentCount, const char* const* arguments)
{
	constexpr int kStatusWrongUsage = 2;
	try
	{
		_app->parse(argumentCount, arguments);
	}
	catch (const CLI::ParseError& error)
	{
		std::ostringstream results;
		std::ostringstream complaints;
		const int status = _app->exit(error, results, complaints);
		Print(results.view());
		if (const std::string_view text = complaints.view(); !text.empty())
			PrintError(text.substr(0, text.find_last_not_of('\n') + 1));
		return status == 0 ? 0 : kStatusWrongUsage;
	}
	Modules modules(_moduleFolder);
	modules.LoadSVGModule();
	return _run(modules);
}

} // namespace orvan::program
