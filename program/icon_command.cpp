// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "icon_watch.h"
#include "picture.h"
#include "vector_icon.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::string file;
	std::uint32_t state = 0;
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
		Print((isShown ? "shown   " : "hidden  ") + OneLine(id.View()) + '\n');
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

int ShowIcon(Options& options, bool hasState)
{
	const LoadOutcome outcome = LoadDocument(options.file, kVectorIconClass);
	int status = Report(options.file, outcome);
	if (!outcome.document)
		return status;
	const auto icon = Cast<VectorIconInterface>(outcome.document);
	if (!icon)
		throw Failure("Icons do not implement the icon interface.");

	// From here on, switching layers and reloading have things to say about the file.
	const ThreadDiagnosticSink sink(&PrintDiagnostic, &options.file);
	// The state first: it switches the state layers, which --enable and --disable may then overrule.
	if (hasState)
		icon->SetState(static_cast<SVGIconState>(options.state));
	status |= SwitchLayers(icon, options.enabled, true);
	status |= SwitchLayers(icon, options.disabled, false);
	const auto show = [&]
	{
		PrintLayers(outcome.document->GetRootElement());
		if (!options.picture.empty())
			WritePicture(outcome.document, {}, options.picture);
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
	const auto stateOption = std::make_shared<CLI::Option*>();
	CLI::App* const command = commandLine.AddCommand("icon", "Load a file as an icon and print its layers",
													 [=] { return ShowIcon(*options, (*stateOption)->count() != 0); });
	command->add_option("FILE", options->file, "Path or file: URL")->required();
	*stateOption = command->add_option("--state", options->state, "State to show: 0 to 3 have layers");
	command->add_option("--enable", options->enabled, "Show the layer with this id")
		->type_name("ID")
		->expected(1)
		->take_all();
	command->add_option("--disable", options->disabled, "Hide the layer with this id")
		->type_name("ID")
		->expected(1)
		->take_all();
	command->add_option("-o,--output", options->picture, "Also draw the icon into this .png or .pdf file")
		->type_name("OUT")
		->check(&CheckPictureName);
	command->add_flag("--watch", options->watches,
					  "Follow the file and print again at every reload, until interrupted");
}

} // namespace orvan::program
