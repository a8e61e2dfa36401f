// SPDX-License-Identifier: MIT
/// Loading a document, and finding out how that went.
///
/// A file whose content is refused does not make `Init` fail: the document holds a placeholder then, and its import
/// report says why. Here both come together again.
#pragma once

#include "json_writer.h"
#include "orvan/host/diagnostic_sink.h"
#include "output.h"
#include "svg_base.h"
#include "svg_import.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvan::program
{

/// What kind of thing is found; each has an id for programs.
enum class Rule
{
	unreadableFile, ///< There is no such file, or it cannot be read.
	refusedFile,    ///< The content was refused.
	noSvgElement,   ///< There is nothing of SVG in the file.
	ignoredValue,   ///< The value of an attribute or property was left out.
	ignoredContent, ///< Something else was left out.
};

/// Something that there is to say about a file, with the place in it where one is known (line 0 where none is).
struct Finding
{
	Rule rule = Rule::ignoredContent;
	std::string text;
	std::int64_t line = 0;
	std::int64_t column = 0;
	std::string elementName = {};
	std::string elementId = {};
	std::string attribute = {};
};

/// What came of loading one file.
struct LoadOutcome
{
	SVGDocumentRef document;        ///< Null when there is nothing to look at, not even a placeholder.
	std::optional<Finding> refusal; ///< Why the file was not loaded; none when it was.
	std::vector<Finding> findings;  ///< What was left out; the first hundred.
	std::int64_t findingCount = 0;  ///< How much was left out in all.
};

/// How an argument is named in what people read: "<stdin>" for "-".
std::string GetDisplayName(const std::string& file);

/// The URL that a command line argument means: a `file:` or `memory:` URL as it stands, or that of a path, made
/// absolute.
Url ToUrl(const std::string& file);

/// Loads a file, or standard input for "-", into a new object of class `classId`, which must implement the document
/// interface. Never throws for anything that a file can bring about. Several threads may load at once.
LoadOutcome LoadDocument(const std::string& file, const SVGImportOptions& options,
						 const char* classId = kSVGDocumentClass);

/// The line that tells people about a finding: `file:line:column: text (<element id="…">)`, as far as known.
std::string Describe(const std::string& file, const Finding& finding);

/// Writes what is known of a finding as members of the object that has been begun, the text as `textName`.
void WriteFinding(JsonWriter& json, const Finding& finding, std::string_view textName = "reason");

/// Prints one object for a file that there is nothing to show of: its URL, and why.
void PrintFailureAsJson(JsonWriter& json, const std::string& file, const Finding& finding);

/// Says what there is to say about a file. Returns the exit status that it calls for.
int Report(const std::string& file, const LoadOutcome& outcome, Output& output);

/// Where `PrintDiagnostic` tells what is said about a file.
struct DiagnosticTarget
{
	const std::string& file;
	Output& output;
};

/// A diagnostic sink for what is said about a file after it was loaded. `target` points to a `DiagnosticTarget`.
void PrintDiagnostic(const Diagnostic& diagnostic, void* target);

} // namespace orvan::program
