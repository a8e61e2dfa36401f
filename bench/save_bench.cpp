// SPDX-License-Identifier: MIT
// What saving costs beside loading: save_bench FOLDER…
#include "corpus.h"
#include "svg_source.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/module_loader.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace orvan;

namespace
{
double SecondsSince(std::chrono::steady_clock::time_point start)
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Times of one walk over all files, in seconds.
struct Times
{
	double load = 0;
	double unedited = 0;
	double edited = 0;
	double extended = 0; ///< With a new element, too.
	std::size_t saved = 0;
};

Times Walk(const bench::Corpus& corpus)
{
	Times times;
	SVGImportOptions options;
	options.isComplete = options.isTolerant = options.keepsSource = true;
	const SVGDocumentRef document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
	const auto import = Cast<SVGDocumentImportInterface>(document);
	IgnoreResult(import->SetImportOptions(options));
	const auto source = Cast<SVGDocumentSourceInterface>(document);
	for (const bench::CorpusFile& file : corpus.files)
	{
		auto start = std::chrono::steady_clock::now();
		IgnoreResult(import->InitFromMemory(file.bytes.data(), static_cast<std::int64_t>(file.bytes.size()), Url()));
		times.load += SecondsSince(start);
		start = std::chrono::steady_clock::now();
		bool isSaved = source->SaveToMemory({}).IsOk();
		times.unedited += SecondsSince(start);
		IgnoreResult(document->GetRootElement()->SetFill({SVGPaintType::color, {1, 0, 0}, {}}));
		start = std::chrono::steady_clock::now();
		isSaved &= source->SaveToMemory({}).IsOk();
		times.edited += SecondsSince(start);
		const SVGElementRef added = CreateObject<SVGElementInterface>(kSVGRectElementClass).GetValue();
		const auto root = Cast<HierarchyObjectInterface>(document->GetRootElement());
		IgnoreResult(Cast<HierarchyObjectInterface>(added)->InsertAsLastChildOf(root, {}));
		start = std::chrono::steady_clock::now();
		isSaved &= source->SaveToMemory({}).IsOk();
		times.extended += SecondsSince(start);
		times.saved += isSaved ? 1 : 0;
	}
	return times;
}
} // namespace

int main(int count, char** arguments)
{
	if (!Module::Load(ORVAN_SVG_MODULE).IsOk())
		return 1;
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	for (int i = 1; i < count; i++)
	{
		const bench::Corpus corpus = bench::ReadCorpus(arguments[i]);
		// The best of some walks is the least disturbed.
		constexpr int kWalks = 5;
		Times best = Walk(corpus);
		for (int walk = 1; walk < kWalks; walk++)
		{
			const Times times = Walk(corpus);
			best = {std::min(best.load, times.load), std::min(best.unedited, times.unedited),
					std::min(best.edited, times.edited), std::min(best.extended, times.extended), times.saved};
		}
		std::printf(
			"%s: %zu files, %zu saved; load %.1f ms, save unedited %.1f ms (%.0f %%), an edit %.1f ms (%.0f %%), "
			"a new element %.1f ms (%.0f %%)\n",
			corpus.name.c_str(), corpus.files.size(), best.saved, best.load * 1e3, best.unedited * 1e3,
			best.unedited / best.load * 100, best.edited * 1e3, best.edited / best.load * 100, best.extended * 1e3,
			best.extended / best.load * 100);
	}
	return 0;
}
