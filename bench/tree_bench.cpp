// SPDX-License-Identifier: MIT
/// What clients do with a tree: making elements, finding them, their attributes, transforms and copies. All through the
/// module's interfaces, as a client reaches them.
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_base.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include <vector>

namespace
{

using namespace orvan;

/// The value of a result that must be there.
template <typename T>
T Must(Result<T> result)
{
	if (!result.IsOk())
	{
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
		std::abort();
	}
	return std::move(result).GetValue();
}

constinit const ObjectFactory kRects("net.orvan.image.class.svgrectelement");
constinit const ObjectFactory kGroups("net.orvan.image.class.svggroupelement");

SVGElementRef MakeGroup()
{
	return Must(kGroups.Create<SVGElementInterface>());
}

void Insert(const SVGElementRef& child, const SVGElementRef& parent)
{
	Must(Cast<HierarchyObjectInterface>(child)->InsertAsLastChildOf(Cast<HierarchyObjectInterface>(parent), {}));
}

/// A rect with the ten attributes that are usual.
SVGElementRef MakeUsualRect()
{
	const SVGElementRef element = Must(kRects.Create<SVGElementInterface>());
	const auto position = Cast<SVGPositionInterface>(element);
	Must(position->SetX({1.0, SVGLengthUnit::px}));
	Must(position->SetY({2.0, SVGLengthUnit::px}));
	const auto size = Cast<SVGSizeInterface>(element);
	Must(size->SetWidth({3.0, SVGLengthUnit::px}));
	Must(size->SetHeight({4.0, SVGLengthUnit::px}));
	Must(element->SetFill({}));
	Must(element->SetFillRule(SVGFillRule::evenodd));
	Must(element->SetStroke({}));
	Must(element->SetStrokeWidth({1.0, SVGLengthUnit::px}));
	Must(element->SetStrokeLineCap(SVGLineCap::round));
	Must(element->SetStrokeLineJoin(SVGLineJoin::bevel));
	return element;
}

// Making --------------------------------------------------------------------------------------------------------------

void CreateByFactory(benchmark::State& state)
{
	for (auto _ : state)
		benchmark::DoNotOptimize(kRects.Create<SVGElementInterface>());
}
BENCHMARK(CreateByFactory);

void CreateById(benchmark::State& state)
{
	for (auto _ : state)
		benchmark::DoNotOptimize(CreateObject<SVGElementInterface>("net.orvan.image.class.svgrectelement"));
}
BENCHMARK(CreateById);

void CastToComponent(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		benchmark::DoNotOptimize(Cast<SVGRadiusInterface>(element));
}
BENCHMARK(CastToComponent);

void Clone(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		benchmark::DoNotOptimize(CloneObject(element));
}
BENCHMARK(Clone);

void InsertAndRemove(benchmark::State& state)
{
	const SVGElementRef parent = MakeGroup();
	const SVGElementRef child = MakeUsualRect();
	for (auto _ : state)
	{
		Insert(child, parent);
		Cast<HierarchyObjectInterface>(parent)->RemoveAllChildren();
	}
}
BENCHMARK(InsertAndRemove);

// Finding -------------------------------------------------------------------------------------------------------------

/// A document with `count` ids, a tenth of which begin with "layer".
SVGDocumentRef MakeDocument(std::int64_t count)
{
	std::string text = "<svg>";
	for (std::int64_t i = 0; i < count; i++)
		text += "<g id='" + std::string(i % 10 == 0 ? "layer" : "shape") + std::to_string(i) + "'/>";
	text += "</svg>";
	Must(MemoryFiles::Publish("tree.svg", text));
	const SVGDocumentRef document = Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	Must(document->Init(Must(Url::Create("memory:tree.svg"))));
	MemoryFiles::Withdraw("tree.svg");
	return document;
}

void FindById(benchmark::State& state)
{
	const SVGDocumentRef document = MakeDocument(state.range(0));
	std::vector<String> ids;
	for (std::int64_t i = 1; i < state.range(0); i += 10)
		ids.push_back(Must(String::Create("shape" + std::to_string(i))));
	std::size_t at = 0;
	for (auto _ : state)
	{
		benchmark::DoNotOptimize(Must(document->GetElementById(ids[at])));
		at = at + 1 < ids.size() ? at + 1 : 0;
	}
}
BENCHMARK(FindById)->Arg(100)->Arg(100'000);

void FindByPrefix(benchmark::State& state)
{
	const SVGDocumentRef document = MakeDocument(state.range(0));
	const String prefix = Must(String::Create("layer"));
	for (auto _ : state)
		benchmark::DoNotOptimize(Must(document->GetElementsByIdWithPrefix(prefix)).begin());
	state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FindByPrefix)->Arg(100)->Arg(100'000);

// Attributes ----------------------------------------------------------------------------------------------------------

void SetNumber(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		Must(element->SetOpacity(0.5));
}
BENCHMARK(SetNumber);

void GetNumber(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	Must(element->SetOpacity(0.5));
	for (auto _ : state)
		benchmark::DoNotOptimize(element->GetOpacity());
}
BENCHMARK(GetNumber);

void SetPaint(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	const SVGPaint paint{SVGPaintType::reference, {}, Must(String::Create("gradient"))};
	for (auto _ : state)
		Must(element->SetFill(paint));
}
BENCHMARK(SetPaint);

void GetPaint(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		benchmark::DoNotOptimize(element->GetFill());
}
BENCHMARK(GetPaint);

void GetAbsent(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		benchmark::DoNotOptimize(element->GetStrokeDashOffset());
}
BENCHMARK(GetAbsent);

void ShareDictionary(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
		benchmark::DoNotOptimize(element->GetAttributeDictionary());
}
BENCHMARK(ShareDictionary);

void WriteToSharedDictionary(benchmark::State& state)
{
	const SVGElementRef element = MakeUsualRect();
	for (auto _ : state)
	{
		DataDictionary copy = element->GetAttributeDictionary();
		Must(copy.Set(static_cast<std::int32_t>(SVGImportAttribute::opacity), 0.5));
		benchmark::DoNotOptimize(copy.begin());
	}
}
BENCHMARK(WriteToSharedDictionary);

// World transforms ----------------------------------------------------------------------------------------------------

/// Groups below one another, or all below one, each with a transform. The first is the root.
std::vector<SVGElementRef> MakeTree(std::int64_t count, bool isDeep)
{
	std::vector<SVGElementRef> elements{MakeGroup()};
	while (static_cast<std::int64_t>(elements.size()) < count)
	{
		const SVGElementRef element = MakeGroup();
		Insert(element, isDeep ? elements.back() : elements.front());
		Must(element->SetTranslation({1.0, 2.0}));
		elements.push_back(element);
	}
	return elements;
}

/// All world transforms after the root has moved.
void AskAllTransforms(benchmark::State& state, bool isDeep)
{
	const std::vector<SVGElementRef> elements = MakeTree(state.range(0), isDeep);
	for (auto _ : state)
	{
		Must(elements.front()->SetTranslation({3.0, 4.0}));
		for (const SVGElementRef& element : elements)
			benchmark::DoNotOptimize(Must(element->GetWorldTransform()));
	}
	state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(AskAllTransforms, wide, false)->Arg(1000)->Arg(100'000);
BENCHMARK_CAPTURE(AskAllTransforms, deep, true)->Arg(1000)->Arg(100'000);

/// The lowest element's world transform after the root has moved.
void AskLowestTransform(benchmark::State& state)
{
	const std::vector<SVGElementRef> elements = MakeTree(state.range(0), true);
	for (auto _ : state)
	{
		Must(elements.front()->SetTranslation({3.0, 4.0}));
		benchmark::DoNotOptimize(Must(elements.back()->GetWorldTransform()));
	}
	state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(AskLowestTransform)->Arg(1000)->Arg(100'000);

void AskCachedTransform(benchmark::State& state)
{
	const std::vector<SVGElementRef> elements = MakeTree(1000, true);
	for (auto _ : state)
		benchmark::DoNotOptimize(Must(elements.back()->GetWorldTransform()));
}
BENCHMARK(AskCachedTransform);

/// An element that moves again and again while nobody asks: nothing below is visited.
void MoveUnasked(benchmark::State& state)
{
	const std::vector<SVGElementRef> elements = MakeTree(state.range(0), false);
	for (auto _ : state)
		Must(elements.front()->SetTranslation({3.0, 4.0}));
}
BENCHMARK(MoveUnasked)->Arg(100'000);

} // namespace

int main(int argc, char** argv)
{
	Must(Module::Load(ORVAN_SVG_MODULE));
	benchmark::Initialize(&argc, argv);
	if (benchmark::ReportUnrecognizedArguments(argc, argv))
		return 1;
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
