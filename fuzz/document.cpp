// SPDX-License-Identifier: MIT
#include "document.h"

#include "require.h"
#include "svg_import.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"

#include <algorithm>

namespace orvan::fuzz
{
namespace
{
/// Receives the messages of one load.
struct Findings
{
	std::string_view text;
	int count = 0;

	static void Take(const Diagnostic& diagnostic, void* context)
	{
		auto& findings = *static_cast<Findings*>(context);
		findings.count++;
		// Whatever else a load says is why it failed.
		const bool isWithoutSvg = diagnostic.level == DiagnosticLevel::warning &&
								  diagnostic.text == std::string_view("The file holds no svg element.");
		Require(isWithoutSvg || diagnostic.level == DiagnosticLevel::critical,
				"a load only ever has a critical message", diagnostic.text);
		if (const DocumentPosition* at = diagnostic.position)
		{
			const auto lines = std::count(findings.text.begin(), findings.text.end(), '\n') + 1;
			Require(at->line >= 0 && at->line <= lines, "the line of a message is in the text", diagnostic.text);
			Require(at->column >= 0 && static_cast<std::size_t>(at->column) <= findings.text.size() + 1,
					"the column of a message is in the text", diagnostic.text);
		}
	}
};
} // namespace

TextFile::TextFile(std::string_view text) : _bytes(text.begin(), text.end())
{
	_bytes.shrink_to_fit();
	Require(MemoryFiles::Publish("fuzz.svg", {_bytes.data(), _bytes.size()}).IsOk(), "the file is published");
}

TextFile::~TextFile()
{
	MemoryFiles::Withdraw("fuzz.svg");
}

const Url& TextFile::GetUrl() const
{
	static const Url url = Url::Create("memory:fuzz.svg").GetValue();
	return url;
}

LoadedDocument LoadDocument(std::string_view text)
{
	static const bool isLoaded = Module::Load(ORVAN_SVG_MODULE).IsOk();
	Require(isLoaded, "the module is loaded", ORVAN_SVG_MODULE);

	const TextFile file(text);
	Findings findings{text};
	LoadedDocument loaded{CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue()};
	{
		const ThreadDiagnosticSink sink(&Findings::Take, &findings);
		Require(loaded.document->Init(file.GetUrl()).IsOk(), "a file that can be read is loaded", text);
	}
	Require(findings.count <= 1, "a load has at most one message", text);
	loaded.isRefused = findings.count != 0;
	return loaded;
}

SVGDocumentRef LoadCompletely(std::string_view bytes)
{
	const auto document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
	const auto import = Cast<SVGDocumentImportInterface>(document);
	SVGImportOptions options;
	options.isComplete = options.isTolerant = true;
	Require(import->SetImportOptions(options).IsOk(), "options are taken");
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	Require(import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), Url()).IsOk(),
			"bytes are loaded");
	return document;
}
} // namespace orvan::fuzz
