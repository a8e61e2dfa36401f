// SPDX-License-Identifier: MIT
#include "import_arguments.h"

#include "console.h"
#include "document_loading.h"

namespace orvan::program
{
namespace
{
/// All of a file. Throws `Failure`.
std::string ReadFile(const std::string& file)
{
	if (file == "-")
		return ReadInput();
	const auto read = [&]() -> Result<std::string>
	{
		InputStream stream = ORVAN_TRY(ToUrl(file).OpenInputStream());
		std::string bytes(static_cast<std::size_t>(ORVAN_TRY(stream.GetStreamLength())), '\0');
		ORVAN_TRY(stream.ReadBytes(bytes.data(), static_cast<std::int64_t>(bytes.size())));
		return bytes;
	};
	Result<std::string> bytes = read();
	if (!bytes.IsOk())
		throw Failure(GetDisplayName(file) + ": " + std::string(bytes.GetError().GetMessage().View()));
	return std::move(bytes).GetValue();
}
} // namespace

void ImportArguments::AddTo(Command& command, Default usual)
{
	_usual = usual;
	command.AddText({.names = "--style-sheet",
					 .help = "A CSS file that cascades after the style sheets of the files; - is standard input",
					 .value = "FILE"},
					_styleSheet);
	if (usual == Default::asDrawn)
	{
		command.AddFlag("--plain", "Read no more than the plain import does, and refuse what it refuses", _isPlain);
		return;
	}
	command.AddFlag("--complete", "Read all that a browser reads: style sheets, entities, further elements",
					_isComplete);
	command.AddFlag("--tolerant", "Leave out values that are not valid instead of refusing the file", _isTolerant);
}

SVGImportOptions ImportArguments::GetOptions() const
{
	SVGImportOptions options;
	options.isComplete = _isComplete || (_usual == Default::asDrawn && !_isPlain);
	options.isTolerant = _isTolerant || (_usual == Default::asDrawn && !_isPlain);
	if (_styleSheet.empty())
		return options;
	if (!options.isComplete)
		throw UsageFailure("Style sheets are read by the complete import only.");
	options.styleSheet = Unwrap(String::Create(ReadFile(_styleSheet)));
	return options;
}

} // namespace orvan::program
