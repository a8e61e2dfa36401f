// SPDX-License-Identifier: MIT
/// How a command that changes files writes them.
#pragma once

#include "command_line.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "svg_source.h"

namespace orvan::program
{

/// What commands load files with that they change: everything that a browser reads, and the text.
SVGImportOptions GetEditingOptions();

/// The interface that documents of the SVG module have.
Ref<SVGDocumentSourceInterface> GetSource(const SVGDocumentRef& document);

/// The elements that a selector finds. Throws `Failure` when there are none.
std::vector<SVGElementRef> SelectElements(const SVGDocumentRef& document, const std::string& selector);

/// A text of the host's. Throws `Failure` for want of memory.
String ToText(std::string_view text);

/// Runs what is to be done with one file. With `asJson`, a failure is printed as the file's outcome, too. Throws what
/// `run` throws.
int RunWithOutcome(const FileTurn& turn, bool asJson, const std::function<int()>& run);

/// -i and -o.
class SaveArguments
{
public:
	/// What a command does with neither.
	enum class Default
	{
		print,   ///< Standard output.
		nothing, ///< Nothing is written.
	};

	void AddTo(Command& command, Default usual);

	/// Throws `UsageFailure` when the options make no sense for these files, or leave no room for JSON.
	void Check(const std::vector<std::string>& files, bool asJson) const;

	/// Whether what is saved goes to standard output.
	bool Prints() const;

	/// Saves a document that was loaded from `file`. Throws `Failure`.
	void Save(const SVGDocumentRef& document, const std::string& file, Output& output) const;

private:
	std::string GetPath(const std::string& file) const;

	Default _usual = Default::print;
	bool _inPlace = false;
	std::optional<std::string> _target;
};

} // namespace orvan::program
