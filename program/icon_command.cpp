// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "icon_watch.h"
#include "import_arguments.h"
#include "modules.h"
#include "picture.h"
#include "picture_arguments.h"
#include "vector_icon.h"

#include <limits>
#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	FileArguments files;
	ImportArguments import;
	PictureArguments pictures;
	std::optional<std::uint32_t> state;
	std::vector<std::string> enabled;
	std::vector<std::string> disabled;
	bool watches = false;
};

/// Prints the layers, which are the elements with an id, in document order: what each says itself, whatever it stands
/// in.
void PrintLayers(const SVGElementRef& element, Output& output)
{
	if (const String id = element->GetId(); !id.IsEmpty())
	{
		const bool isShown = element->GetDisplay() != SVGDisplay::none;
		output.Print((isShown ? "shown   " : "hidden  ") + WholeLine(id.View()) + '\n');
	}
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		PrintLayers(Cast<SVGElementInterface>(child), output);
}

/// Switches layers; returns the exit status.
int SwitchLayers(const VectorIconRef& icon, const std::vector<std::string>& ids, bool enabled, Output& output)
{
	int status = 0;
	for (const std::string& id : ids)
	{
		const Result<void> switched = icon->SetLayerEnabled(Unwrap(String::Create(id)), enabled);
		if (switched.IsOk())
			continue;
		// The other layers are switched all the same.
		output.PrintError(OneLine(switched.GetError().GetMessage().View()));
		status = 1;
	}
	return status;
}

int ShowIcon(const Options& options, const SVGImportOptions& import, const FileTurn& turn)
{
	const LoadOutcome outcome = LoadDocument(turn.file, import, kVectorIconClass);
	int status = Report(turn.file, outcome, turn.output);
	if (!outcome.document)
		return status;
	const auto icon = Cast<VectorIconInterface>(outcome.document);
	if (!icon)
		throw Failure("Icons do not implement the icon interface.");

	// From here on, switching layers and reloading have things to say about the file.
	DiagnosticTarget target{turn.file, turn.output};
	const ThreadDiagnosticSink sink(&PrintDiagnostic, &target);
	// The state first: it switches the state layers, which --enable and --disable may then overrule.
	if (options.state)
		icon->SetState(static_cast<SVGIconState>(*options.state));
	status |= SwitchLayers(icon, options.enabled, true, turn.output);
	status |= SwitchLayers(icon, options.disabled, false, turn.output);
	const auto show = [&]
	{
		if (!options.pictures.WritesToOutput())
			PrintLayers(outcome.document->GetRootElement(), turn.output);
		if (options.pictures.IsGiven())
			WritePicture(outcome.document, options.pictures.GetOptions(), options.pictures.GetPath(turn.file),
						 turn.output);
	};
	if (!options.pictures.WritesToOutput())
		PrintHeading(turn);
	show();
	if (options.watches)
	{
		WatchIcon(icon,
				  [&]
				  {
					  turn.output.Print("\n");
					  show();
				  });
	}
	return status;
}

int ShowIcons(Options& options, Modules& modules)
{
	const std::vector<std::string>& files = options.files.files;
	if (options.watches && (files.size() > 1 || files.front() == "-" || options.pictures.WritesToOutput()))
		throw UsageFailure("--watch follows one file, and prints its layers to standard output.");
	options.pictures.Prepare(files);
	const SVGImportOptions import = options.import.GetOptions();
	if (options.pictures.IsGiven())
		modules.LoadOtherModules();
	return ForEachFile(options.files, [&](const FileTurn& turn) { return ShowIcon(options, import, turn); });
}
} // namespace

void AddIconCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command =
		commandLine.AddCommand("icon", "Load files as icons, print their layers, and draw them on request",
							   [options](Modules& modules) { return ShowIcons(*options, modules); });
	options->files.AddTo(command);
	options->pictures.AddTo(command, PictureArguments::Need::optional);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
	command.AddNumber({.names = "--state", .help = "State to show: 0 to 3 have layers", .value = "N"}, options->state,
					  0, std::numeric_limits<std::uint32_t>::max());
	command.AddTexts({.names = "--enable", .help = "Show the layer with this id", .value = "ID"}, options->enabled);
	command.AddTexts({.names = "--disable", .help = "Hide the layer with this id", .value = "ID"}, options->disabled);
	command.AddFlag("--watch", "Follow the file and print again at every reload, until interrupted", options->watches);
}

} // namespace orvan::program
