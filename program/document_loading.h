// SPDX-License-Identifier: MIT
/// Loading a document, and finding out how that went.
///
/// A file whose content is refused does not make `Init` fail: the reason goes to the diagnostics, and the document
/// holds a placeholder. Here both come together again.
#pragma once

#include "json_writer.h"
#include "orvan/host/diagnostic_sink.h"
#include "output.h"
#include "svg_base.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvan::program
{

/// Something that was said about a file, with the place in it where one is known (line 0 where none is).
struct Finding
{
	std::string text;
	std::int64_t line = 0;
	std::int64_t column = 0;
	std::string elementName = {};
	std::string elementId = {};
};

/// What came of loading one file.
struct LoadOutcome
{
	SVGDocumentRef document;        ///< Null when there is nothing to look at, not even a placeholder.
	std::optional<Finding> refusal; ///< Why the file was not loaded; none when it was.
	std::vector<Finding> warnings;
};

/// The URL that a command line argument means: a `file:` or `memory:` URL as it stands, or that of a path, made
/// absolute.
Url ToUrl(const std::string& file);

/// Loads a file, or standard input for "-", into a new object of class `classId`, which must implement the document
/// interface. Never throws for anything that a file can bring about. Several threads may load at once.
LoadOutcome LoadDocument(const std::string& file, const char* classId = kSVGDocumentClass);

/// The line that tells people about a finding: `file:line:column: text (<element id="…">)`, as far as known.
std::string Describe(const std::string& file, const Finding& finding);

/// Writes what is known of a finding as members of the object that has been begun.
void WriteFinding(JsonWriter& json, const Finding& finding);

/// Prints one object for a file that there is nothing to show of: its URL, and why.
void PrintFailureAsJson(JsonWriter& json, const std::string& file, const Finding& finding);

/// Says what was said about a file. Returns the exit status that it calls for.
int Report(const std::string& file, const LoadOutcome& outcome, Output& output);

/// A diagnostic sink for what is said about a file after it was loaded: prints it to standard error. `file` points to
/// the file's name, a std::string.
void PrintDiagnostic(const Diagnostic& diagnostic, void* file);

} // namespace orvan::program
