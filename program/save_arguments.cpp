// SPDX-License-Identifier: MIT
#include "save_arguments.h"

#include "console.h"

#include <filesystem>

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

void SaveArguments::AddTo(Command& command, Default usual)
{
	_usual = usual;
	command.AddFlag("-i,--in-place", "Replace the file", _inPlace);
	command.AddText({.names = "-o,--output",
					 .help = "Write to this file, or into this folder; - is standard output",
					 .value = "OUT"},
					_target);
}

void SaveArguments::Check(const std::vector<std::string>& files) const
{
	if (_inPlace && _target)
		throw UsageFailure("A file is either replaced (-i) or written elsewhere (-o).");
	for (const std::string& file : files)
	{
		if (_inPlace && file == kStandard)
			throw UsageFailure("Standard input cannot be replaced.");
	}
	if (_target && files.size() > 1 && !IsFolder(*_target))
		throw UsageFailure("Several files need a folder to be written into (-o DIR/).");
}

bool SaveArguments::Prints() const
{
	return !_inPlace && (_target ? *_target == kStandard : _usual == Default::print);
}

void SaveArguments::Save(const SVGDocumentRef& document, const std::string& file, Output& output) const
{
	const auto source = GetSource(document);
	if (_inPlace)
		return Unwrap(source->Save(ToUrl(file), {}));
	if (_target && *_target != kStandard)
	{
		std::string path = *_target;
		if (IsFolder(path))
		{
			std::error_code error;
			std::filesystem::create_directories(path, error);
			path = std::filesystem::path(path) /
				   (file == kStandard ? std::filesystem::path("stdin.svg") : std::filesystem::path(file).filename());
		}
		return Unwrap(source->Save(ToUrl(path), {}));
	}
	if (!Prints())
		return;
	const BaseArray<char> bytes = Unwrap(source->SaveToMemory({}));
	output.Print({bytes.begin(), bytes.GetCount()});
}

} // namespace orvan::program
