// SPDX-License-Identifier: MIT
/// Drawing: every file of a folder from bytes in memory to pixels, and from a finished tree to pixels, beside librsvg.
/// `render_bench FOLDER… [--width=N] [--benchmark_…]`. Only files that both draw are measured; all pictures are 128
/// pixels wide unless another width is given. Files are read completely, as the program reads them for pictures.
#include "corpus.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_import.h"
#include "svg_render_target.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <librsvg/rsvg.h>
#include <memory>
#include <string_view>

namespace
{

using namespace orvan;
using bench::Corpus;
using bench::CorpusFile;

double g_width = 128.0;

struct Release
{
	void operator()(RsvgHandle* handle) const
	{
		g_object_unref(handle);
	}

	void operator()(cairo_surface_t* surface) const
	{
		cairo_surface_destroy(surface);
	}

	void operator()(cairo_t* drawing) const
	{
		cairo_destroy(drawing);
	}
};

using Handle = std::unique_ptr<RsvgHandle, Release>;

Handle LoadWithLibrsvg(const CorpusFile& file)
{
	return Handle(
		rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(file.bytes.data()), file.bytes.size(), nullptr));
}

bool DrawWithLibrsvg(const Handle& handle, double height)
{
	if (!handle)
		return false;
	const RsvgRectangle viewport{0.0, 0.0, g_width, height};
	const std::unique_ptr<cairo_surface_t, Release> surface(
		cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(g_width), static_cast<int>(viewport.height)));
	const std::unique_ptr<cairo_t, Release> drawing(cairo_create(surface.get()));
	const bool isDrawn = rsvg_handle_render_document(handle.get(), drawing.get(), &viewport, nullptr);
	cairo_surface_flush(surface.get());
	benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
	return isDrawn;
}

SVGDocumentRef LoadDocument(const Url& url)
{
	auto document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass);
	if (!document.IsOk())
		return nullptr;
	SVGImportOptions import;
	import.isComplete = import.isTolerant = true;
	const bool isSet = Cast<SVGDocumentImportInterface>(document.GetValue())->SetImportOptions(import).IsOk();
	if (!isSet || !document.GetValue()->Init(url).IsOk())
		return nullptr;
	return document.GetValue();
}

bool DrawDocument(const SVGContextRef& context, const SVGDocumentRef& document)
{
	const auto target = Cast<SVGRenderTargetInterface>(context);
	SVGRenderOptions options;
	options.width = g_width;
	if (!document || !target->Begin(document, options).IsOk() ||
		!DrawSVGElement(context, document->GetRootElement()).IsOk())
		return false;
	const auto pixels = target->GetPixels();
	benchmark::DoNotOptimize(pixels.IsOk() ? pixels.GetValue().data : nullptr);
	return pixels.IsOk();
}

/// A file that both libraries draw, loaded by both.
struct Drawable
{
	const CorpusFile* file;
	Url url;
	SVGDocumentRef document;
	Handle handle;
	double height; ///< Of the picture, for both.
};

template <typename Draw>
void Add(const Corpus& corpus, const std::vector<Drawable>& drawables, const char* name, Draw draw)
{
	benchmark::RegisterBenchmark((corpus.name + "/" + name).c_str(),
								 [&drawables, draw](benchmark::State& state)
								 {
									 for (auto _ : state)
									 {
										 for (const Drawable& drawable : drawables)
											 draw(drawable);
									 }
									 state.counters["files"] = static_cast<double>(drawables.size());
									 state.SetItemsProcessed(static_cast<std::int64_t>(drawables.size()) *
															 state.iterations());
								 })
		->Unit(benchmark::kMillisecond);
}

void Register(const Corpus& corpus, std::vector<Drawable>& drawables, const SVGContextRef& context)
{
	// A refused file becomes a placeholder, which is drawn fast: its diagnostic tells it from a good one.
	bool isRefused = false;
	const ThreadDiagnosticSink sink([](const Diagnostic& diagnostic, void* refused)
									{ *static_cast<bool*>(refused) |= diagnostic.level == DiagnosticLevel::critical; },
									&isRefused);
	for (const CorpusFile& file : corpus.files)
	{
		IgnoreResult(MemoryFiles::Publish(file.name, file.bytes));
		Drawable drawable{&file, Url::Create("memory:" + file.name).GetValue(), nullptr, LoadWithLibrsvg(file), 0.0};
		isRefused = false;
		drawable.document = LoadDocument(drawable.url);
		if (isRefused || !DrawDocument(context, drawable.document))
			continue;
		drawable.height = Cast<SVGRenderTargetInterface>(context)->GetSize().y;
		if (DrawWithLibrsvg(drawable.handle, drawable.height))
			drawables.push_back(std::move(drawable));
	}
	Add(corpus, drawables, "draw", [=](const Drawable& d) { DrawDocument(context, d.document); });
	Add(corpus, drawables, "draw_librsvg", [](const Drawable& d) { DrawWithLibrsvg(d.handle, d.height); });
	Add(corpus, drawables, "load_and_draw", [=](const Drawable& d) { DrawDocument(context, LoadDocument(d.url)); });
	Add(corpus, drawables, "load_and_draw_librsvg",
		[](const Drawable& d) { DrawWithLibrsvg(LoadWithLibrsvg(*d.file), d.height); });
}

} // namespace

int main(int argumentCount, char** arguments)
{
	benchmark::Initialize(&argumentCount, arguments);
	if (argumentCount < 2)
	{
		std::fprintf(stderr, "usage: render_bench FOLDER… [--width=N] [--benchmark_…]\n");
		return 2;
	}
	for (const char* file : {ORVAN_SVG_MODULE, ORVAN_CAIRO_MODULE})
	{
		if (const Result<Module*> module = Module::Load(file); !module.IsOk())
		{
			std::fprintf(stderr, "%s\n", module.GetError().GetMessage().CString());
			return 1;
		}
	}
	SetDiagnosticSink([](const Diagnostic&, void*) {}, nullptr);
	const auto context = CreateObject<SVGContextInterface>(kSVGContextClass);
	if (!context.IsOk())
		return 1;
	std::vector<Corpus> corpora;
	constexpr std::string_view kWidthOption = "--width=";
	for (int i = 1; i < argumentCount; i++)
	{
		const std::string argument = arguments[i];
		if (argument.starts_with(kWidthOption))
			g_width = std::stod(argument.substr(kWidthOption.size()));
		else
			corpora.push_back(bench::ReadCorpus(argument));
	}
	std::vector<std::vector<Drawable>> drawables(corpora.size());
	for (std::size_t i = 0; i < corpora.size(); i++)
		Register(corpora[i], drawables[i], context.GetValue());
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
