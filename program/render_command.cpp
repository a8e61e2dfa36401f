// SPDX-License-Identifier: MIT
#include "commands.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "import_arguments.h"
#include "modules.h"
#include "picture.h"
#include "picture_arguments.h"

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
};

int Render(const Options& options, const SVGImportOptions& import, const FileTurn& turn)
{
	// A placeholder is nothing to draw: no picture is better than a wrong one.
	const LoadOutcome outcome = LoadDocument(turn.file, import);
	const int status = Report(turn.file, outcome, turn.output);
	// What a picture goes without is said while it is drawn.
	DiagnosticTarget target{turn.file, turn.output};
	const ThreadDiagnosticSink sink(&PrintDiagnostic, &target);
	if (!outcome.refusal)
		WritePicture(outcome.document, options.pictures.GetOptions(), options.pictures.GetPath(turn.file), turn.output);
	return status;
}

int RenderAll(Options& options, Modules& modules)
{
	options.pictures.Prepare(options.files.files);
	const SVGImportOptions import = options.import.GetOptions();
	modules.LoadOtherModules();
	return ForEachFile(options.files, [&](const FileTurn& turn) { return Render(options, import, turn); });
}
} // namespace

void AddRenderCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("render", "Draw files with the renderer that is there",
											 [options](Modules& modules) { return RenderAll(*options, modules); });
	options->files.AddTo(command);
	options->pictures.AddTo(command, PictureArguments::Need::required);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
}

} // namespace orvan::program
