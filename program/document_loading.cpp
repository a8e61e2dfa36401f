// SPDX-License-Identifier: MIT
#include "document_loading.h"

#include "console.h"
#include "file_arguments.h"
#include "orvan/host/memory_files.h"
#include "svg_import.h"

#include <filesystem>

namespace orvan::program
{
namespace
{
/// Keeps what a diagnostic says beyond the call that brings it.
Finding ToFinding(const Diagnostic& diagnostic)
{
	Finding finding{.text = std::string(diagnostic.text)};
	if (const DocumentPosition* position = diagnostic.position)
	{
		finding.line = position->line;
		finding.column = position->column;
		finding.elementName = position->elementName;
		finding.elementId = position->elementId;
	}
	return finding;
}

/// The diagnostic sink while a file is loaded. The first critical one is the reason for a refusal.
void Collect(const Diagnostic& diagnostic, void* context)
{
	auto& outcome = *static_cast<LoadOutcome*>(context);
	Finding finding = ToFinding(diagnostic);
	if (diagnostic.level != DiagnosticLevel::critical)
		outcome.warnings.push_back(std::move(finding));
	else if (!outcome.refusal)
		outcome.refusal = std::move(finding);
}

/// What the host can add to an error that only says that there is no file.
std::string DescribeTarget(const Url& url)
{
	switch (url.IoDetect())
	{
	case IoDetection::nonExistent:
		return " (there is no such file)";
	case IoDetection::directory:
		return " (it is a folder)";
	case IoDetection::error:
		return " (it cannot be reached)";
	case IoDetection::unknown:
		return " (it is not an ordinary file)";
	case IoDetection::outOfMemory:
	case IoDetection::file:
		break;
	}
	return {};
}

/// A file in memory with what standard input has.
class StandardInput
{
public:
	StandardInput() : _bytes(ReadInput())
	{
		Unwrap(MemoryFiles::Publish(kName, _bytes));
	}

	StandardInput(const StandardInput&) = delete;

	~StandardInput()
	{
		MemoryFiles::Withdraw(kName);
	}

	static constexpr const char* kName = "standard-input.svg";

private:
	const std::string _bytes;
};

void Load(const std::string& file, const char* classId, LoadOutcome& outcome)
{
	std::optional<StandardInput> input;
	if (file == "-")
		input.emplace();
	const Url url = ToUrl(input ? std::string("memory:") + StandardInput::kName : file);
	const SVGDocumentRef document = Unwrap(CreateObject<SVGDocumentInterface>(classId));
	// Only this thread is redirected, so that files that are loaded side by side do not mix what is said about them.
	const ThreadDiagnosticSink sink(&Collect, &outcome);
	const Result<void> loaded = document->Init(url);
	if (!loaded.IsOk())
	{
		outcome.refusal = Finding{.text = std::string(loaded.GetError().GetMessage().View()) + DescribeTarget(url)};
		return;
	}
	outcome.document = document;
	const SVGImportReport report = Unwrap(Cast<SVGDocumentImportInterface>(document)->GetImportReport());
	if (report.outcome == SVGImportOutcome::noSvgElement)
	{
		// The warning says the same.
		outcome.warnings.clear();
		outcome.refusal = Finding{.text = "no svg element"};
	}
}
} // namespace

Url ToUrl(const std::string& file)
{
	if (file.starts_with("file:") || file.starts_with("memory:"))
		return Unwrap(Url::Create(file));
	// Absolute, because the text is shown to others who do not stand in the same folder.
	return Unwrap(Url::FromPath(std::filesystem::absolute(file).lexically_normal().native()));
}

LoadOutcome LoadDocument(const std::string& file, const char* classId)
{
	LoadOutcome outcome;
	try
	{
		Load(file, classId, outcome);
	}
	catch (const std::exception& exception)
	{
		// Memory, or no such class: told like a refusal, so that checking many files goes on.
		outcome.document = nullptr;
		outcome.refusal = Finding{.text = exception.what()};
	}
	return outcome;
}

std::string Describe(const std::string& file, const Finding& finding)
{
	std::string line = GetDisplayName(file);
	if (finding.line > 0)
	{
		line += ':' + std::to_string(finding.line);
		if (finding.column > 0)
			line += ':' + std::to_string(finding.column);
	}
	line += ": " + OneLine(finding.text);
	if (!finding.elementName.empty())
	{
		line += " (<" + OneLine(finding.elementName, 80);
		if (!finding.elementId.empty())
			line += " id=\"" + OneLine(finding.elementId, 80) + '"';
		line += ">)";
	}
	return line;
}

void WriteFinding(JsonWriter& json, const Finding& finding)
{
	json.Member("reason", std::string_view(OneLine(finding.text)));
	if (finding.line > 0)
		json.Member("line", finding.line);
	if (finding.column > 0)
		json.Member("column", finding.column);
	if (!finding.elementName.empty())
		json.Member("element", std::string_view(finding.elementName));
	if (!finding.elementId.empty())
		json.Member("id", std::string_view(finding.elementId));
}

void PrintFailureAsJson(JsonWriter& json, const std::string& file, const Finding& finding)
{
	json.BeginObject();
	json.Member("url", ToUrl(file).GetText().View());
	WriteFinding(json, finding);
	json.EndObject();
	json.Finish();
}

int Report(const std::string& file, const LoadOutcome& outcome, Output& output)
{
	for (const Finding& warning : outcome.warnings)
		output.PrintError("WARNING: " + Describe(file, warning));
	if (!outcome.refusal)
		return 0;
	output.PrintError(Describe(file, *outcome.refusal));
	return 1;
}

void PrintDiagnostic(const Diagnostic& diagnostic, void* file)
{
	const char* const level = diagnostic.level == DiagnosticLevel::critical ? "CRITICAL: " : "WARNING: ";
	PrintError(level + Describe(*static_cast<const std::string*>(file), ToFinding(diagnostic)));
}

} // namespace orvan::program
