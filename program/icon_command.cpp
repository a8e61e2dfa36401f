// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "icon_watch.h"
#include "modules.h"
#include "picture.h"
#include "vector_icon.h"

#include <limits>
#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::string file;
	std::optional<std::uint32_t> state;
	std::vector<std::string> enabled;
	std::vector<std::string> disabled;
	std::string picture;
	bool watches = false;
};

/// Prints the layers, which are the elements with an id, in document order: what each says itself, whatever it stands
/// in.
void PrintLayers(const SVGElementRef& element)
{
	if (const String id = element->GetId(); !id.IsEmpty())
	{
		const bool isShown = element->GetDisplay() != SVGDisplay::none;
		Print((isShown ? "shown   " : "hidden  ") + WholeLine(id.View()) + '\n');
	}
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		PrintLayers(Cast<SVGElementInterface>(child));
}

/// Switches layers; returns the exit status.
int SwitchLayers(const VectorIconRef& icon, const std::vector<std::string>& ids, bool enabled)
{
	int status = 0;
	for (const std::string& id : ids)
	{
		const Result<void> switched = icon->SetLayerEnabled(Unwrap(String::Create(id)), enabled);
		if (switched.IsOk())
			continue;
		// The other layers are switched all the same.
		PrintError(std::string(switched.GetError().GetMessage().View()));
		status = 1;
	}
	return status;
}

int ShowIcon(Options& options)
{
	const LoadOutcome outcome = LoadDocument(options.file, kVectorIconClass);
	ConsoleOutput console;
	int status = Report(options.file, outcome, console);
	if (!outcome.document)
		return status;
	const auto icon = Cast<VectorIconInterface>(outcome.document);
	if (!icon)
		throw Failure("Icons do not implement the icon interface.");

	// From here on, switching layers and reloading have things to say about the file.
	const ThreadDiagnosticSink sink(&PrintDiagnostic, &options.file);
	// The state first: it switches the state layers, which --enable and --disable may then overrule.
	if (options.state)
		icon->SetState(static_cast<SVGIconState>(*options.state));
	status |= SwitchLayers(icon, options.enabled, true);
	status |= SwitchLayers(icon, options.disabled, false);
	const auto show = [&]
	{
		PrintLayers(outcome.document->GetRootElement());
		if (const auto kind = GetPictureKind(options.picture))
			WritePicture(outcome.document, {.output = *kind}, options.picture, console);
	};
	show();
	if (options.watches)
	{
		WatchIcon(icon,
				  [&show]
				  {
					  Print("\n");
					  show();
				  });
	}
	return status;
}
} // namespace

void AddIconCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("icon", "Load a file as an icon and print its layers",
											 [options](Modules& modules)
											 {
												 if (!options->picture.empty())
													 modules.LoadOtherModules();
												 return ShowIcon(*options);
											 });
	command.AddArgument("FILE", "Path or file: URL", options->file);
	command.AddNumber({.names = "--state", .help = "State to show: 0 to 3 have layers", .value = "N"}, options->state,
					  0, std::numeric_limits<std::uint32_t>::max());
	command.AddTexts({.names = "--enable", .help = "Show the layer with this id", .value = "ID"}, options->enabled);
	command.AddTexts({.names = "--disable", .help = "Hide the layer with this id", .value = "ID"}, options->disabled);
	command.AddText({.names = "-o,--output",
					 .help = "Also draw the icon into this .png or .pdf file",
					 .value = "OUT",
					 .check = &CheckPictureName},
					options->picture);
	command.AddFlag("--watch", "Follow the file and print again at every reload, until interrupted", options->watches);
}

} // namespace orvan::program
