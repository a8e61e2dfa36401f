// SPDX-License-Identifier: MIT
#include "save_arguments.h"

#include "console.h"

#include <filesystem>
#include <map>

namespace orvan::program
{
namespace
{
constexpr std::string_view kStandard = "-";

bool IsFolder(const std::string& target)
{
	std::error_code ignored;
	return target.ends_with('/') || std::filesystem::is_directory(target, ignored);
}
} // namespace

SVGImportOptions GetEditingOptions()
{
	SVGImportOptions options;
	options.isComplete = true;
	options.isTolerant = true;
	options.keepsSource = true;
	return options;
}

Ref<SVGDocumentSourceInterface> GetSource(const SVGDocumentRef& document)
{
	auto source = Cast<SVGDocumentSourceInterface>(document);
	if (!source)
		throw Failure("The SVG module that is there cannot save.");
	return source;
}

std::vector<SVGElementRef> SelectElements(const SVGDocumentRef& document, const std::string& selector)
{
	const BaseArray<SVGElementRef> found = Unwrap(GetSource(document)->Select(ToText(selector)));
	if (found.IsEmpty())
		throw Failure("No element matches '" + WholeLine(selector) + "'.");
	return {found.begin(), found.end()};
}

String ToText(std::string_view text)
{
	return Unwrap(String::Create(text));
}

int RunWithOutcome(const FileTurn& turn, bool asJson, const std::function<int()>& run)
{
	try
	{
		return run();
	}
	catch (const Failure& failure)
	{
		if (asJson)
		{
			JsonWriter json(turn.output, JsonWriter::Layout::oneLine);
			PrintFailureAsJson(json, turn.file, {.text = failure.what()});
		}
		throw;
	}
}

void SaveArguments::AddTo(Command& command, Default usual)
{
	_usual = usual;
	command.AddFlag("-i,--in-place", "Replace the file", _inPlace);
	command.AddText({.names = "-o,--output",
					 .help = "Write to this file, or into this folder; - is standard output",
					 .value = "OUT"},
					_target);
}

void SaveArguments::Check(const std::vector<std::string>& files, bool asJson) const
{
	if (_inPlace && _target)
		throw UsageFailure("A file is either replaced (-i) or written elsewhere (-o).");
	for (const std::string& file : files)
	{
		if (_inPlace && file == kStandard)
			throw UsageFailure("Standard input cannot be replaced.");
	}
	if (asJson && Prints())
		throw UsageFailure("Standard output takes either the file or --json.");
	if (files.size() > 1 && (Prints() || (_target && !IsFolder(*_target))))
		throw UsageFailure("Several files are replaced (-i), or need a folder to be written into (-o DIR/).");
	if (!_target || !IsFolder(*_target))
		return;
	std::map<std::string, const std::string*> taken;
	for (const std::string& file : files)
	{
		const auto [other, isNew] = taken.try_emplace(GetPath(file), &file);
		if (!isNew)
			throw UsageFailure(*other->second + " and " + file + " would both be written to " + other->first);
	}
}

bool SaveArguments::Prints() const
{
	return !_inPlace && (_target ? *_target == kStandard : _usual == Default::print);
}

/// Where -o has a file written to.
std::string SaveArguments::GetPath(const std::string& file) const
{
	if (!IsFolder(*_target))
		return *_target;
	return std::filesystem::path(*_target) /
		   (file == kStandard ? std::filesystem::path("stdin.svg") : std::filesystem::path(file).filename());
}

void SaveArguments::Save(const SVGDocumentRef& document, const std::string& file, Output& output) const
{
	const auto source = GetSource(document);
	if (_inPlace)
		return Unwrap(source->Save(ToUrl(file), {}));
	if (_target && *_target != kStandard)
	{
		std::error_code ignored; // Saving says what is wrong with a folder.
		if (IsFolder(*_target))
			std::filesystem::create_directories(*_target, ignored);
		return Unwrap(source->Save(ToUrl(GetPath(file)), {}));
	}
	if (!Prints())
		return;
	const BaseArray<char> bytes = Unwrap(source->SaveToMemory({}));
	output.Print({bytes.begin(), bytes.GetCount()});
}

} // namespace orvan::program
