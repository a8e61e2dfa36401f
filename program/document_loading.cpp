// SPDX-License-Identifier: MIT
#include "document_loading.h"

#include "console.h"
#include "unpacking.h"

#include <filesystem>

namespace orvan::program
{
namespace
{
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

Finding ToFinding(const SVGImportFinding& finding, Rule rule)
{
	return {.rule = rule,
			.text = std::string(finding.message.View()),
			.line = finding.line,
			.column = finding.column,
			.elementName = std::string(finding.elementTag.View()),
			.elementId = std::string(finding.elementId.View()),
			.attribute = std::string(finding.attribute.View())};
}

/// Sorts what the report has to say into the reason for a refusal and the rest.
void TakeReport(const SVGImportReport& report, LoadOutcome& outcome)
{
	outcome.findingCount = report.findingCount;
	for (const SVGImportFinding& finding : report.findings)
	{
		const bool isReason =
			finding.level == SVGFindingLevel::critical || report.outcome == SVGImportOutcome::noSvgElement;
		if (!isReason)
			outcome.findings.push_back(
				ToFinding(finding, finding.attribute.IsEmpty() ? Rule::ignoredContent : Rule::ignoredValue));
		else if (!outcome.refusal)
		{
			outcome.refusal = ToFinding(finding, Rule::refusedFile);
			// In the words of the diagnostics.
			outcome.refusal->text.insert(0, "Exception parsing svg file. ");
		}
		outcome.findingCount -= isReason ? 1 : 0;
	}
	if (report.outcome == SVGImportOutcome::noSvgElement)
		outcome.refusal = Finding{.rule = Rule::noSvgElement, .text = "no svg element"};
	else if (report.outcome == SVGImportOutcome::refused && !outcome.refusal)
		outcome.refusal = Finding{.rule = Rule::refusedFile, .text = "The content was refused."};
}

void Load(const std::string& file, const SVGImportOptions& options, const char* classId, LoadOutcome& outcome)
{
	const SVGDocumentRef document = Unwrap(CreateObject<SVGDocumentInterface>(classId));
	const auto import = Cast<SVGDocumentImportInterface>(document);
	if (!import)
		throw Failure("The class " + std::string(classId) + " cannot tell what became of a load.");
	Unwrap(import->SetImportOptions(options));
	// The report says all that the diagnostics do. Only this thread is silenced.
	const ThreadDiagnosticSink silence([](const Diagnostic&, void*) {}, nullptr);
	const Url url = ToUrl(file);
	const auto load = [&](const std::string& bytes)
	{
		return import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), url);
	};
	// The complete import unpacks files by itself.
	const bool isPacked = IsPacked(file) && !options.isComplete && url.IoDetect() == IoDetection::file;
	const Result<void> loaded = file == "-" ? load(ReadInput())
								: isPacked  ? load(ReadPacked(url))
											: document->Init(url);
	if (!loaded.IsOk())
	{
		outcome.refusal = Finding{.rule = Rule::unreadableFile,
								  .text = std::string(loaded.GetError().GetMessage().View()) + DescribeTarget(url)};
		return;
	}
	TakeReport(Unwrap(import->GetImportReport()), outcome);
	outcome.document = document;
}
} // namespace

std::string GetDisplayName(const std::string& file)
{
	return file == "-" ? "<stdin>" : WholeLine(file);
}

Url ToUrl(const std::string& file)
{
	if (file.starts_with("file:") || file.starts_with("memory:"))
		return Unwrap(Url::Create(file));
	// Absolute, because the text is shown to others who do not stand in the same folder.
	return Unwrap(Url::FromPath(std::filesystem::absolute(file).lexically_normal().native()));
}

LoadOutcome LoadDocument(const std::string& file, const SVGImportOptions& options, const char* classId)
{
	LoadOutcome outcome;
	try
	{
		Load(file, options, classId, outcome);
	}
	catch (const std::exception& exception)
	{
		// Memory, or no such class: told like a refusal, so that checking many files goes on.
		outcome.document = nullptr;
		outcome.refusal = Finding{.rule = Rule::unreadableFile, .text = exception.what()};
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

void WriteFinding(JsonWriter& json, const Finding& finding, std::string_view textName)
{
	json.Member(textName, std::string_view(OneLine(finding.text)));
	if (finding.line > 0)
		json.Member("line", finding.line);
	if (finding.column > 0)
		json.Member("column", finding.column);
	if (!finding.elementName.empty())
		json.Member("element", std::string_view(finding.elementName));
	if (!finding.elementId.empty())
		json.Member("id", std::string_view(finding.elementId));
	if (!finding.attribute.empty() && finding.rule != Rule::refusedFile)
		json.Member("attribute", std::string_view(finding.attribute));
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
	for (const Finding& finding : outcome.findings)
		output.PrintError("WARNING: " + Describe(file, finding));
	const auto told = static_cast<std::int64_t>(outcome.findings.size());
	if (outcome.findingCount > told)
		output.PrintError("WARNING: " + GetDisplayName(file) + ": " + std::to_string(outcome.findingCount - told) +
						  " more findings");
	if (!outcome.refusal)
		return 0;
	output.PrintError(Describe(file, *outcome.refusal));
	return 1;
}

void PrintDiagnostic(const Diagnostic& diagnostic, void* target)
{
	const auto& [file, output] = *static_cast<const DiagnosticTarget*>(target);
	Finding finding{.text = std::string(diagnostic.text)};
	if (const DocumentPosition* position = diagnostic.position)
	{
		finding.line = position->line;
		finding.column = position->column;
		finding.elementName = position->elementName;
		finding.elementId = position->elementId;
	}
	const char* const level = diagnostic.level == DiagnosticLevel::critical ? "CRITICAL: " : "WARNING: ";
	output.PrintError(level + Describe(file, finding));
}

} // namespace orvan::program
