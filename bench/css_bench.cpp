// SPDX-License-Identifier: MIT
// Style sheets by themselves: what a sheet of the size that icon themes have costs a load, and how it grows.

#include "css/cascade.h"
#include "css_tree.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{
using namespace orvan::css;

/// As Breeze has it in most of its icons.
constexpr std::string_view kTheme = "\n      .ColorScheme-Text {\n        color:#232629;\n      }\n      ";
constexpr std::string_view kThemeOfFive =
	"\n.ColorScheme-Text { color:#232629; }\n.ColorScheme-Background { color:#eff0f1; }\n"
	".ColorScheme-Highlight { color:#3daee9; }\n.ColorScheme-ViewText { color:#31363b; }\n"
	".ColorScheme-ViewBackground { color:#fcfcfc; }\n";

void MakeIcon(Tree& tree)
{
	tree.Read("svg( defs( style#current-color-scheme! ) path.ColorScheme-Text g( path.ColorScheme-Text rect ) )");
}

/// All that a load does with the sheet.
void LoadTheme(benchmark::State& state, std::string_view text)
{
	Tree tree;
	MakeIcon(tree);
	for (auto _ : state)
	{
		StyleSheet sheet;
		sheet.Add(text, {});
		Cascade cascade(sheet, tree);
		std::size_t count = 0;
		for (const Tree::Node& node : tree.nodes)
			count += cascade.Collect(&node).size();
		benchmark::DoNotOptimize(count);
	}
}
BENCHMARK_CAPTURE(LoadTheme, one_rule, kTheme);
BENCHMARK_CAPTURE(LoadTheme, five_rules, kThemeOfFive);

void ReadStyle(benchmark::State& state)
{
	constexpr std::string_view kStyle =
		"fill:#3daee9;fill-opacity:1;stroke:none;stroke-width:1.5;stroke-linejoin:round";
	for (auto _ : state)
	{
		std::array<std::byte, 1024> room;
		Arena arena(room.data(), room.size());
		std::pmr::vector<Declaration> declarations(&arena);
		ReadDeclarations(kStyle, {.arena = arena}, declarations);
		benchmark::DoNotOptimize(declarations.data());
	}
	state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kStyle.size()));
}
BENCHMARK(ReadStyle);

/// As many rules as elements, and each element has its own.
void ManyRules(benchmark::State& state)
{
	const auto count = static_cast<std::size_t>(state.range(0));
	Tree tree;
	Tree::Node& root = tree.Add(nullptr, "svg");
	std::string text;
	for (std::size_t i = 0; i < count; i++)
	{
		tree.Add(&root, "path").classes = "cls-" + std::to_string(i);
		text += "svg .cls-" + std::to_string(i) + "{fill:#123456;stroke:none}path:nth-child(" + std::to_string(i) +
				"n)#x{}";
	}
	for (auto _ : state)
	{
		StyleSheet sheet;
		sheet.Add(text, {});
		Cascade cascade(sheet, tree);
		std::size_t collected = 0;
		for (const Tree::Node& node : tree.nodes)
			collected += cascade.Collect(&node).size();
		benchmark::DoNotOptimize(collected);
	}
	state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(ManyRules)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
