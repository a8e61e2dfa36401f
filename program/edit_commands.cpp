// SPDX-License-Identifier: MIT
/// The commands that edit files: `set`, `remove`, `rename-id` and `new`.
#include "commands.h"
#include "console.h"
#include "output.h"
#include "save_arguments.h"
#include "svg_edit.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	FileArguments files;
	std::vector<std::string> selectors;
	std::vector<std::string> values; ///< NAME=VALUE…, or OLD and NEW.
	SaveArguments save;
	bool asJson = false;
};

/// Changes a document; the result tells how many elements were meant.
using Edit = std::size_t (*)(const Options& options, const SVGDocumentRef& document);

/// Tells apart what stands behind the files.
using Split = void (*)(Options& options);

/// Loads the file, lets `edit` change the document, and saves it. What was left out of the file stays in it, so that
/// nothing needs to be said about it. Returns the exit status.
int EditFile(const Options& options, Edit edit, const FileTurn& turn)
{
	LoadOutcome outcome = LoadDocument(turn.file, GetEditingOptions());
	JsonWriter json(turn.output, JsonWriter::Layout::oneLine);
	if (outcome.refusal)
	{
		if (options.asJson)
			PrintFailureAsJson(json, turn.file, *outcome.refusal);
		return Report(turn.file, outcome, turn.output);
	}
	const std::size_t count = edit(options, outcome.document);
	options.save.Save(outcome.document, turn.file, turn.output);
	if (options.asJson)
	{
		json.BeginObject();
		json.Member("url", outcome.document->GetUrl().GetText().View());
		json.Member("elements", count);
		json.EndObject();
		json.Finish();
	}
	return 0;
}

/// The place of the sign in NAME=VALUE; none in anything else, selectors such as "[x=1]" among it.
std::size_t FindSign(const std::string& argument)
{
	constexpr const char* kNameCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_:.-";
	const std::size_t end = argument.find_first_not_of(kNameCharacters);
	return end != 0 && end != std::string::npos && argument[end] == '=' ? end : std::string::npos;
}

/// FILE… SELECTOR NAME=VALUE…, where --select may give the selector.
void SplitSet(Options& options)
{
	std::vector<std::string>& files = options.files.files;
	const bool hasSelector = !options.selectors.empty();
	while (files.size() > 1 && FindSign(files.back()) != std::string::npos)
	{
		options.values.insert(options.values.begin(), files.back());
		files.pop_back();
	}
	if (options.values.empty() && (hasSelector || (files.size() > 1 && !LooksLikeFile(files.back()))))
		throw UsageFailure("'" + WholeLine(files.back()) + "' is not of the form NAME=VALUE.");
	if (options.values.empty() || hasSelector)
		return;
	if (files.size() == 1)
		throw UsageFailure("A selector is missing: which elements are meant?");
	options.selectors.push_back(files.back());
	files.pop_back();
}

/// FILE… SELECTOR…, likewise.
void SplitRemove(Options& options)
{
	std::vector<std::string>& files = options.files.files;
	while (files.size() > 1 && !LooksLikeFile(files.back()))
	{
		options.selectors.insert(options.selectors.begin(), files.back());
		files.pop_back();
	}
	if (options.selectors.empty())
		throw UsageFailure("A selector is missing: which elements are meant?");
}

/// FILE… OLD NEW.
void SplitRename(Options& options)
{
	std::vector<std::string>& files = options.files.files;
	if (files.size() < 3)
		throw UsageFailure("An id is renamed from OLD to NEW.");
	options.values = {files.end()[-2], files.end()[-1]};
	files.resize(files.size() - 2);
}

/// NAME=VALUE on every element that is selected. All of them, or none, are written.
std::size_t SetAttributes(const Options& options, const SVGDocumentRef& document)
{
	std::size_t count = 0;
	const auto source = GetSource(document);
	for (const std::string& selector : options.selectors)
	{
		for (const SVGElementRef& element : SelectElements(document, selector))
		{
			count++;
			for (const std::string& assignment : options.values)
			{
				const std::size_t sign = FindSign(assignment);
				const String name = ToText(std::string_view(assignment).substr(0, sign));
				const String value = ToText(std::string_view(assignment).substr(sign + 1));
				Unwrap(value.IsEmpty() ? source->RemoveAttributeText(element, name)
									   : source->SetAttributeText(element, name, value));
			}
		}
	}
	return count;
}

std::size_t RemoveElements(const Options& options, const SVGDocumentRef& document)
{
	std::size_t count = 0;
	for (const std::string& selector : options.selectors)
	{
		for (const SVGElementRef& element : SelectElements(document, selector))
		{
			count++;
			if (const auto edit = Cast<SVGElementEditInterface>(element))
				Unwrap(edit->Remove());
		}
	}
	return count;
}

std::size_t RenameId(const Options& options, const SVGDocumentRef& document)
{
	const SVGElementRef element = Unwrap(document->GetElementById(ToText(options.values[0])));
	const auto edit = Cast<SVGDocumentEditInterface>(document);
	if (!edit)
		throw Failure("The SVG module that is there cannot rename ids.");
	Unwrap(edit->RenameId(element, ToText(options.values[1])));
	return 1;
}

/// The texts of one command.
struct EditCommand
{
	const char* name;
	const char* help;
	const char* arguments; ///< What they are, the files among them.
	bool takesSelectors;
	Split split;
	Edit edit;
};

constexpr EditCommand kEditCommands[] = {
	{"set", "Set attributes of the elements that a CSS selector finds; all else stays as it is",
	 "FILE… SELECTOR NAME=VALUE…: paths or file: URLs (- is standard input), a CSS selector, and what to set; NAME= "
	 "removes. Without a selector the files are saved as they are",
	 true, &SplitSet, &SetAttributes},
	{"remove", "Remove the elements that CSS selectors find",
	 "FILE… SELECTOR…: paths or file: URLs (- is standard input), and CSS selectors", true, &SplitRemove,
	 &RemoveElements},
	{"rename-id", "Give an element another id; references follow",
	 "FILE… OLD NEW: paths or file: URLs (- is standard input), the id as it is, and as it shall be", false,
	 &SplitRename, &RenameId},
};

int RunEdit(const EditCommand& command, Options& options)
{
	command.split(options);
	options.save.Check(options.files.files, options.asJson);
	const auto edit = [&](const FileTurn& turn)
	{
		return RunWithOutcome(turn, options.asJson, [&] { return EditFile(options, command.edit, turn); });
	};
	return ForEachFile(options.files, edit);
}

void AddEditCommand(CommandLine& commandLine, const EditCommand& edit)
{
	const auto options = std::make_shared<Options>();
	Command command =
		commandLine.AddCommand(edit.name, edit.help, [options, &edit](Modules&) { return RunEdit(edit, *options); });
	options->files.AddTo(command, edit.arguments);
	options->save.AddTo(command, SaveArguments::Default::print);
	if (edit.takesSelectors)
		command.AddTexts({.names = "--select",
						  .help = "A CSS selector: all other arguments in its place are files",
						  .value = "SELECTOR"},
						 options->selectors);
	command.AddFlag("--json", "Print JSON, an object a line for each file", options->asJson);
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
	for (const EditCommand& edit : kEditCommands)
		AddEditCommand(commandLine, edit);

	const auto made = std::make_shared<NewOptions>();
	Command newCommand = commandLine.AddCommand("new", "Write a file with an empty picture",
												[made](Modules&) { return MakeFile(*made); });
	newCommand.AddOptionalArguments("OUT", "The file; - is standard output, as it is without one", made->paths);
	newCommand.AddText({.names = "-o,--output", .help = "The same", .value = "OUT"}, made->output);
	newCommand.AddText({.names = "-W,--width", .help = "Width in pixels", .value = "W"}, made->width);
	newCommand.AddText({.names = "-H,--height", .help = "Height in pixels", .value = "H"}, made->height);
}

} // namespace orvan::program
