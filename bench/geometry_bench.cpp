// SPDX-License-Identifier: MIT
/// What answers about a picture cost, beside loading it: geometry_bench [FILE], or a hundred thousand turned paths.
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_edit.h"
#include "svg_geometry.h"
#include "svg_import.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace orvan;

template <typename T>
T Must(Result<T> result)
{
	if (!result.IsOk())
		throw std::runtime_error(result.GetError().GetMessage().CString());
	return std::move(result).GetValue();
}

void Must(Result<void> result)
{
	if (!result.IsOk())
		throw std::runtime_error(result.GetError().GetMessage().CString());
}

std::string MakeManyPaths()
{
	std::mt19937 random(1);
	std::uniform_real_distribution<double> place(0.0, 990.0);
	std::string text = "<svg xmlns='http://www.w3.org/2000/svg' width='1000' height='1000'>";
	for (int i = 0; i < 100000; i++)
	{
		const std::string x = std::to_string(place(random));
		const std::string y = std::to_string(place(random));
		text += "<g transform='rotate(" + std::to_string(i % 90) + ' ' + x + ' ' + y + ")'><path stroke='red' d='M" +
				x + ' ' + y + "c2 0 3 1 4 2s2 5 0 3z'/></g>";
	}
	return text + "</svg>";
}

std::string text;

SVGDocumentRef Load()
{
	const SVGDocumentRef document = Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	const auto import = Cast<SVGDocumentImportInterface>(document);
	SVGImportOptions options;
	options.isTolerant = options.isComplete = true;
	Must(import->SetImportOptions(options));
	Must(import->InitFromMemory(text.data(), static_cast<std::int64_t>(text.size()), Url()));
	return document;
}

void Collect(const SVGElementRef& element, std::vector<SVGElementRef>& elements)
{
	elements.push_back(element);
	const auto hierarchy = Cast<HierarchyObjectInterface>(element);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		if (const auto inner = Cast<SVGElementInterface>(child))
			Collect(inner, elements);
	}
}

/// A loaded document, all of its elements, and what answers for it.
struct Asked
{
	SVGDocumentRef document = Load();
	std::vector<SVGElementRef> elements;
	SVGGeometryRef geometry = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));

	Asked()
	{
		Collect(document->GetRootElement(), elements);
		Must(geometry->SetDocument(document, {}));
	}
};

void Loading(benchmark::State& state)
{
	for (auto _ : state)
		benchmark::DoNotOptimize(Load());
}

/// Of every element, from nothing but the loaded tree.
void AllBoxes(benchmark::State& state)
{
	const Asked asked;
	for (auto _ : state)
	{
		asked.geometry->Update();
		for (const SVGElementRef& element : asked.elements)
			benchmark::DoNotOptimize(
				Must(asked.geometry->GetBox(element, static_cast<SVGBoxKind>(state.range(0)), SVGCoordinates::view)));
	}
	state.counters["elements"] = static_cast<double>(asked.elements.size());
}

/// Making the record and the index.
void FirstHit(benchmark::State& state)
{
	const Asked asked;
	for (auto _ : state)
	{
		asked.geometry->Update();
		benchmark::DoNotOptimize(Must(asked.geometry->FindAt({1.0, 1.0}, {})));
	}
}

void Hit(benchmark::State& state)
{
	const Asked asked;
	const Vector2d size = Must(asked.geometry->GetViewSize());
	std::mt19937 random(2);
	std::uniform_real_distribution<double> place(0.0, 1.0);
	Must(asked.geometry->FindAt({0.0, 0.0}, {}));
	for (auto _ : state)
		benchmark::DoNotOptimize(Must(asked.geometry->FindAt({place(random) * size.x, place(random) * size.y}, {})));
}

/// Moving one element, and asking what is at a point.
void HitAfterEdit(benchmark::State& state)
{
	const Asked asked;
	SVGElementRef moved;
	for (const SVGElementRef& element : asked.elements)
	{
		if (Cast<SVGPathElementInterface>(element))
			moved = element;
	}
	Must(asked.geometry->FindAt({0.0, 0.0}, {}));
	double x = 0.0;
	for (auto _ : state)
	{
		x = x < 900.0 ? x + 1.0 : 0.0;
		Must(moved->SetLocalTransform({{x, 0.0}, {1.0, 0.0}, {0.0, 1.0}}));
		benchmark::DoNotOptimize(Must(asked.geometry->FindAt({x, 500.0}, {})));
	}
}

/// Taking one element out, and putting it below another group, and asking after each.
void HitAfterMove(benchmark::State& state)
{
	const Asked asked;
	std::vector<Ref<SVGElementEditInterface>> paths;
	std::vector<Ref<SVGElementEditInterface>> groups;
	for (const SVGElementRef& element : asked.elements)
	{
		if (Cast<SVGPathElementInterface>(element))
			paths.push_back(Cast<SVGElementEditInterface>(element));
		else if (Cast<SVGGroupElementInterface>(element))
			groups.push_back(Cast<SVGElementEditInterface>(element));
	}
	Must(asked.geometry->FindAt({0.0, 0.0}, {}));
	std::mt19937 random(3);
	for (auto _ : state)
	{
		const auto& path = paths[random() % paths.size()];
		Must(path->Remove());
		benchmark::DoNotOptimize(Must(asked.geometry->FindAt({500.0, 500.0}, {})));
		Must(groups[random() % groups.size()]->InsertChildBefore(Cast<SVGElementInterface>(path), {}));
		benchmark::DoNotOptimize(Must(asked.geometry->FindAt({500.0, 500.0}, {})));
	}
}

void Normalizing(benchmark::State& state)
{
	const Asked asked;
	SVGNormalizeOptions options;
	options.strokes = static_cast<SVGNormalizedStrokes>(state.range(0));
	Must(asked.geometry->FindAt({0.0, 0.0}, {}));
	for (auto _ : state)
		benchmark::DoNotOptimize(Must(asked.geometry->Normalize(options)).points.begin());
}

BENCHMARK(Loading)->Unit(benchmark::kMillisecond);
BENCHMARK(AllBoxes)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstHit)->Unit(benchmark::kMillisecond);
BENCHMARK(Hit)->Unit(benchmark::kMicrosecond);
BENCHMARK(HitAfterEdit)->Unit(benchmark::kMicrosecond);
BENCHMARK(HitAfterMove)->Unit(benchmark::kMicrosecond);
BENCHMARK(Normalizing)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argumentCount, char** arguments)
{
	benchmark::Initialize(&argumentCount, arguments);
	Must(Module::Load(ORVAN_SVG_MODULE));
	Must(Module::Load(ORVAN_GEOMETRY_MODULE));
	if (argumentCount > 1)
	{
		std::ifstream file(arguments[1], std::ios::binary);
		text.assign(std::istreambuf_iterator<char>(file), {});
	}
	else
		text = MakeManyPaths();
	benchmark::RunSpecifiedBenchmarks();
}
