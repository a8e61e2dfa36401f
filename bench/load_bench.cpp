// SPDX-License-Identifier: MIT
/// Whole loads: every file of a corpus, from bytes in memory (or on disk) to a finished tree and its release, beside
/// the lower bounds and other libraries. `load_bench FOLDER… [--benchmark_…]`; each folder is a corpus.
#include "corpus.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_import.h"
#include "vector_icon.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <rapidxml_ns/rapidxml_ns.hpp>

#ifdef ORVAN_BENCH_LIBRSVG
#include <librsvg/rsvg.h>
#endif
#ifdef ORVAN_BENCH_QTSVG
#include <QByteArray>
#include <QSvgRenderer>
#endif

namespace
{

using namespace orvan;
using bench::Corpus;
using bench::CorpusFile;

/// Runs `load` over all files again and again.
template <typename Load>
void OverCorpus(benchmark::State& state, const Corpus& corpus, Load load)
{
	for (auto _ : state)
	{
		for (const CorpusFile& file : corpus.files)
			load(file);
	}
	state.SetBytesProcessed(static_cast<std::int64_t>(corpus.CountBytes()) * state.iterations());
	state.counters["files"] = static_cast<double>(corpus.files.size());
}

std::vector<char>& Scratch(const std::string& bytes)
{
	static std::vector<char> scratch;
	scratch.resize(std::max(scratch.size(), bytes.size() + 1));
	std::memcpy(scratch.data(), bytes.data(), bytes.size());
	scratch[bytes.size()] = '\0';
	return scratch;
}

void CopyOnly(const CorpusFile& file)
{
	benchmark::DoNotOptimize(Scratch(file.bytes).data());
	benchmark::ClobberMemory();
}

/// A plain parse, with the library's own settings.
void ParseXml(const CorpusFile& file)
{
	rapidxml_ns::xml_document<> document;
	try
	{
		document.parse<rapidxml_ns::parse_default>(Scratch(file.bytes).data());
	}
	catch (const rapidxml_ns::parse_error&)
	{
		// Some files of a corpus may be broken; they cost what they cost.
	}
	benchmark::DoNotOptimize(document.first_node());
}

/// Every number in every attribute value, through the standard library.
void ConvertNumbers(const rapidxml_ns::xml_node<>& node)
{
	for (auto* attribute = node.first_attribute(); attribute != nullptr; attribute = attribute->next_attribute())
	{
		const char* end = attribute->value() + attribute->value_size();
		for (const char* at = attribute->value(); at < end;)
		{
			if ((*at < '0' || *at > '9') && *at != '.' && *at != '-')
			{
				at++;
				continue;
			}
			double number = 0.0;
			const auto [stop, error] = std::from_chars(at, end, number);
			benchmark::DoNotOptimize(number);
			at = error == std::errc() ? stop : at + 1;
		}
	}
	for (auto* child = node.first_node(); child != nullptr; child = child->next_sibling())
		ConvertNumbers(*child);
}

void ParseXmlAndNumbers(const CorpusFile& file)
{
	rapidxml_ns::xml_document<> document;
	try
	{
		document.parse<rapidxml_ns::parse_default>(Scratch(file.bytes).data());
		ConvertNumbers(document);
	}
	catch (const rapidxml_ns::parse_error&)
	{
		// See above.
	}
}

void LoadDocument(const Url& url)
{
	Result<SVGDocumentRef> document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass);
	if (!document.IsOk() || !document.GetValue()->Init(url).IsOk())
		std::abort();
	benchmark::DoNotOptimize(document.GetValue()->GetRootElement().GetObject());
}

/// All that a browser reads, from the bytes as they are.
void LoadCompletely(const CorpusFile& file)
{
	Result<SVGDocumentRef> document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass);
	if (!document.IsOk())
		std::abort();
	const auto import = Cast<SVGDocumentImportInterface>(document.GetValue());
	SVGImportOptions options;
	options.isComplete = true;
	options.isTolerant = true;
	if (!import->SetImportOptions(options).IsOk() ||
		!import->InitFromMemory(file.bytes.data(), static_cast<std::int64_t>(file.bytes.size()), Url()).IsOk())
		std::abort();
	benchmark::DoNotOptimize(document.GetValue()->GetRootElement().GetObject());
}

#ifdef ORVAN_BENCH_LIBRSVG
void LoadWithLibrsvg(const CorpusFile& file)
{
	RsvgHandle* handle =
		rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(file.bytes.data()), file.bytes.size(), nullptr);
	benchmark::DoNotOptimize(handle);
	if (handle != nullptr)
		g_object_unref(handle);
}
#endif

#ifdef ORVAN_BENCH_QTSVG
void LoadWithQt(const CorpusFile& file)
{
	QSvgRenderer renderer;
	renderer.load(QByteArray::fromRawData(file.bytes.data(), static_cast<int>(file.bytes.size())));
	benchmark::DoNotOptimize(renderer.isValid());
}
#endif

void Register(const Corpus& corpus)
{
	const auto add = [&](const char* name, auto load)
	{
		benchmark::RegisterBenchmark((corpus.name + "/" + name).c_str(),
									 [&corpus, load](benchmark::State& state) { OverCorpus(state, corpus, load); })
			->Unit(benchmark::kMillisecond);
	};
	add("memcpy", &CopyOnly);
	add("xml", &ParseXml);
	add("xml_and_numbers", &ParseXmlAndNumbers);
	auto memoryUrls = std::make_shared<std::vector<Url>>();
	auto diskUrls = std::make_shared<std::vector<Url>>();
	for (const CorpusFile& file : corpus.files)
	{
		IgnoreResult(MemoryFiles::Publish(file.name, file.bytes));
		memoryUrls->push_back(Url::Create("memory:" + file.name).GetValue());
		diskUrls->push_back(Url::FromPath(std::filesystem::absolute(file.path).string()).GetValue());
	}
	const CorpusFile* first = corpus.files.data();
	add("document",
		[=](const CorpusFile& file) { LoadDocument((*memoryUrls)[static_cast<std::size_t>(&file - first)]); });
	add("complete", &LoadCompletely);
	add("document_from_disk",
		[=](const CorpusFile& file) { LoadDocument((*diskUrls)[static_cast<std::size_t>(&file - first)]); });
#ifdef ORVAN_BENCH_LIBRSVG
	add("librsvg", &LoadWithLibrsvg);
#endif
#ifdef ORVAN_BENCH_QTSVG
	add("qtsvg", &LoadWithQt);
#endif
}

} // namespace

int main(int argumentCount, char** arguments)
{
	benchmark::Initialize(&argumentCount, arguments);
	if (argumentCount < 2)
	{
		std::fprintf(stderr, "usage: load_bench FOLDER… [--benchmark_…]\n");
		return 2;
	}
	if (const Result<Module*> module = Module::Load(ORVAN_SVG_MODULE); !module.IsOk())
	{
		std::fprintf(stderr, "%s\n", module.GetError().GetMessage().CString());
		return 1;
	}
	// Refused files are part of the corpora; what they are refused for is not measured.
	SetDiagnosticSink([](const Diagnostic&, void*) {}, nullptr);
	std::vector<Corpus> corpora;
	for (int i = 1; i < argumentCount; i++)
		corpora.push_back(bench::ReadCorpus(arguments[i]));
	for (const Corpus& corpus : corpora)
		Register(corpus);
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
