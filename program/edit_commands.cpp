// SPDX-License-Identifier: MIT
/// The commands that edit one file: `set`, `remove`, `rename-id` and `new`.
#include "commands.h"
#include "console.h"
#include "output.h"
#include "save_arguments.h"
#include "svg_edit.h"

#include <functional>
#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::string file;
	std::vector<std::string> arguments;
	SaveArguments save;
};

/// Loads the file, lets `edit` change the document, and saves it. What was left out of the file stays in it, so that
/// nothing needs to be said about it. Returns the exit status.
int EditFile(const Options& options, const std::function<void(const SVGDocumentRef&)>& edit)
{
	options.save.Check({options.file});
	ConsoleOutput output;
	LoadOutcome outcome = LoadDocument(options.file, GetEditingOptions());
	if (outcome.refusal)
		return Report(options.file, outcome, output);
	edit(outcome.document);
	options.save.Save(outcome.document, options.file, output);
	return 0;
}

/// NAME=VALUE on every element that is selected. All of them, or none, are written.
void SetAttributes(const Options& options, const SVGDocumentRef& document)
{
	const std::vector<std::string>& arguments = options.arguments;
	if (arguments.empty())
		return;
	if (arguments.size() == 1)
		throw UsageFailure("What to set is missing: NAME=VALUE.");
	const auto source = GetSource(document);
	for (const SVGElementRef& element : SelectElements(document, arguments[0]))
	{
		for (std::size_t i = 1; i < arguments.size(); i++)
		{
			const std::size_t sign = arguments[i].find('=');
			if (sign == 0 || sign == std::string::npos)
				throw UsageFailure("'" + WholeLine(arguments[i]) + "' is not of the form NAME=VALUE.");
			const String name = ToText(std::string_view(arguments[i]).substr(0, sign));
			const String value = ToText(std::string_view(arguments[i]).substr(sign + 1));
			Unwrap(value.IsEmpty() ? source->RemoveAttributeText(element, name)
								   : source->SetAttributeText(element, name, value));
		}
	}
}

void RemoveElements(const Options& options, const SVGDocumentRef& document)
{
	for (const std::string& selector : options.arguments)
	{
		for (const SVGElementRef& element : SelectElements(document, selector))
		{
			if (const auto edit = Cast<SVGElementEditInterface>(element))
				Unwrap(edit->Remove());
		}
	}
}

void RenameId(const Options& options, const SVGDocumentRef& document)
{
	if (options.arguments.size() != 2)
		throw UsageFailure("An id is renamed from OLD to NEW.");
	const SVGElementRef element = Unwrap(document->GetElementById(ToText(options.arguments[0])));
	const auto edit = Cast<SVGDocumentEditInterface>(document);
	if (!edit)
		throw Failure("The SVG module that is there cannot rename ids.");
	Unwrap(edit->RenameId(element, ToText(options.arguments[1])));
}

using Edit = void (*)(const Options& options, const SVGDocumentRef& document);

Command AddEditCommand(CommandLine& commandLine, const char* name, const char* help, Edit edit,
					   const std::shared_ptr<Options>& options)
{
	Command command = commandLine.AddCommand(
		name, help,
		[options, edit](Modules&)
		{ return EditFile(*options, [&](const SVGDocumentRef& document) { edit(*options, document); }); });
	command.AddArgument("FILE", "Path or file: URL; - is standard input", options->file);
	return command;
}

struct NewOptions
{
	std::vector<std::string> paths; ///< The first form; `output` is the one that other commands have.
	std::string output = "-";
	std::string width = "100";
	std::string height = "100";
};

int MakeFile(const NewOptions& options)
{
	const SVGDocumentRef document = Unwrap(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	const SVGElementRef root = Unwrap(CreateObject<SVGElementInterface>(kSVGSVGElementClass));
	const auto source = GetSource(document);
	const auto set = [&](std::string_view name, const std::string& value)
	{
		Unwrap(source->SetAttributeText(root, ToText(name), ToText(value)));
	};
	set("viewBox", "0 0 " + options.width + ' ' + options.height);
	set("width", options.width);
	set("height", options.height);
	Unwrap(Cast<SVGDocumentEditInterface>(document)->SetRootElement(root));
	const std::string& path = options.paths.empty() ? options.output : options.paths.front();
	if (path != "-")
	{
		Unwrap(source->Save(ToUrl(path), {}));
		return 0;
	}
	const BaseArray<char> bytes = Unwrap(source->SaveToMemory({}));
	Print({bytes.begin(), bytes.GetCount()});
	return 0;
}
} // namespace

void AddEditCommands(CommandLine& commandLine)
{
	const auto set = std::make_shared<Options>();
	Command setCommand = AddEditCommand(
		commandLine, "set", "Set attributes of the elements that a CSS selector finds; all else stays as it is",
		&SetAttributes, set);
	setCommand.AddOptionalArguments(
		"EDIT",
		"SELECTOR NAME=VALUE…: a CSS selector, and what to set; NAME= removes. Without them the file is saved as it is",
		set->arguments);
	set->save.AddTo(setCommand, SaveArguments::Default::print);

	const auto remove = std::make_shared<Options>();
	Command removeCommand =
		AddEditCommand(commandLine, "remove", "Remove the elements that a CSS selector finds", &RemoveElements, remove);
	removeCommand.AddArguments("SELECTOR", "CSS selectors", remove->arguments);
	remove->save.AddTo(removeCommand, SaveArguments::Default::print);

	const auto rename = std::make_shared<Options>();
	Command renameCommand =
		AddEditCommand(commandLine, "rename-id", "Give an element another id; references follow", &RenameId, rename);
	renameCommand.AddArguments("IDS", "OLD NEW: the id as it is, and as it shall be", rename->arguments);
	rename->save.AddTo(renameCommand, SaveArguments::Default::print);

	const auto made = std::make_shared<NewOptions>();
	Command newCommand = commandLine.AddCommand("new", "Write a file with an empty picture",
												[made](Modules&) { return MakeFile(*made); });
	newCommand.AddOptionalArguments("OUT", "The file; - is standard output, as it is without one", made->paths);
	newCommand.AddText({.names = "-o,--output", .help = "The same", .value = "OUT"}, made->output);
	newCommand.AddText({.names = "-W,--width", .help = "Width in pixels", .value = "W"}, made->width);
	newCommand.AddText({.names = "-H,--height", .help = "Height in pixels", .value = "H"}, made->height);
}

} // namespace orvan::program
