// SPDX-License-Identifier: MIT
#include "css/cascade.h"

#include "css/bounds.h"
#include "css_tree.h"

#include <gtest/gtest.h>
#include <memory_resource>
#include <new>
#include <string>

namespace orvan::css
{
namespace
{
/// The values that apply to an element, in ascending order of precedence.
std::string Collect(Cascade& cascade, Element element, std::span<const Declaration> inlineStyle = {})
{
	std::string values;
	for (const Declaration* declaration : cascade.Collect(element, inlineStyle))
		values += (values.empty() ? "" : " ") + std::string(declaration->value);
	return values;
}

Tree MakeTree(std::string_view notation)
{
	Tree tree;
	tree.Read(notation);
	return tree;
}

TEST(CssCascade, OrdersByImportanceWeightAndOrder)
{
	const Tree tree = MakeTree("svg(rect#a.b.c)");
	StyleSheet sheet;
	sheet.Add(".b{x:1}rect{x:2}#a{x:3}.b,.c,#z{x:4;x:5!important}", {.source = 0});
	sheet.Add(".c{x:6}*{x:7!important}circle,.d{x:8}", {.source = 1});
	sheet.Add("rect{x:9;x:10!important}", {.source = 2});
	Arena arena;
	std::pmr::vector<Declaration> inlineStyle;
	ReadDeclarations("x:11!important;x:12", {.arena = arena}, inlineStyle);
	Cascade cascade(sheet, tree);
	EXPECT_EQ(Collect(cascade, &tree.nodes[1], inlineStyle), "2 9 1 4 6 3 12 7 10 5 11");
	EXPECT_EQ(Collect(cascade, &tree.nodes[0]), "7");
	StyleSheet empty;
	Cascade none(empty, tree);
	EXPECT_EQ(Collect(none, &tree.nodes[1], inlineStyle), "12 11");
}

TEST(CssCascade, OrdersByLayers)
{
	const Tree tree = MakeTree("svg(g.g(rect#a.b))");
	const auto collect = [&tree](std::string_view text, std::string_view second = {})
	{
		StyleSheet sheet;
		sheet.Add(text, {});
		sheet.Add(second, {});
		Cascade cascade(sheet, tree);
		return Collect(cascade, &tree.nodes[2]);
	};
	EXPECT_EQ(collect("rect{x:0}@layer a{#a{x:1}}@layer b{rect{x:2}}"), "1 2 0");
	EXPECT_EQ(collect("@layer b , a;@layer a{rect{x:1}}@layer b{#a{x:2}}"), "2 1");
	EXPECT_EQ(collect("@layer a{rect{x:1}@layer c{#a{x:2}}}@layer a.d{.b{x:3}}@layer b{.b{x:4}}@layer a.c{*{x:5}}"),
			  "5 2 3 1 4");
	EXPECT_EQ(
		collect("@layer{#a{x:1}}@layer{rect{x:2}}@layer \\62{.b{x:3}}", "@layer a,b;@layer b{*{x:4}}@layer a{*{x:5}}"),
		"1 2 4 3 5");
	EXPECT_EQ(collect("@media print{@layer z;}@layer b{rect{x:1}}@layer z{*{x:2}}"), "1 2");
	EXPECT_EQ(
		collect("rect{x:0!important}@layer a{rect{x:1!important;x:2}.b{x:3!important}}@layer b{#a{x:4!important}}"),
		"2 0 4 1 3");
	EXPECT_EQ(collect("@layer a{rect{@layer c{x:1}x:2}}@layer a.c{*{x:3}}"), "3 1 2");
	// Further ones count to what is around them.
	std::string many;
	for (std::size_t i = 1; i < kMaxLayers; i++)
		many += (i == 1 ? "@layer a" : ",a") + std::to_string(i);
	EXPECT_EQ(collect(many + ";@layer a2{#a{x:1}}@layer b{#a{x:2}}rect{x:4}@layer a1{*{x:3}}"), "3 1 4 2");
}

TEST(CssCascade, PutsNestedRulesInPlace)
{
	const Tree tree = MakeTree("svg(g#g.x(rect#a.b rect#c) g.y)");
	const auto collect = [&tree](std::string_view text)
	{
		StyleSheet sheet;
		sheet.Add(text, {});
		Cascade cascade(sheet, tree);
		return Collect(cascade, &tree.nodes[2]);
	};
	EXPECT_EQ(collect("rect{x:1;&{x:2}x:3}"), "1 2 3");
	EXPECT_EQ(collect("g{rect{x:1}>rect{x:2}& > rect{x:3}~ rect{x:4}&rect{x:5}}"), "1 2 3");
	EXPECT_EQ(collect("rect{.x &{x:1}&.b{x:2}.b&{x:3}:not(&){x:4}g:has(&){x:5}&&{x:6}}"), "6 1 2 3");
	EXPECT_EQ(collect("rect{.y &{x:1}svg>.x &{x:2}}"), "2");
	EXPECT_EQ(collect("g,#q{rect{x:1}}.x rect{x:2}"), "2 1");
	EXPECT_EQ(collect("#q,g{&>rect{x:1}}.x,.z{rect{x:2}}"), "2 1");
	EXPECT_EQ(collect("svg{g{rect{x:1}:is(&) rect{x:2}+ g{x:3}}}.x{.b{x:4}}"), "1 2 4");
	EXPECT_EQ(collect("svg{& g, .y{rect{x:1}}}.x .b{x:2}g{}"), "1 2");
	EXPECT_EQ(collect("&{x:1}& rect{x:2}svg&{x:3}"), "2");
	EXPECT_EQ(collect("g::before{rect{x:1}}rect::after{&{x:2}}g{rect{x:3}}"), "3");
	EXPECT_EQ(collect("g{@media all{rect{x:1}@supports(--a:b){rect&{x:2}rect{x:3}}}}"), "1 3");
}

TEST(CssCascade, TakesTheWeightiestSelectorOfAList)
{
	const Tree tree = MakeTree("svg(rect#a.b)");
	StyleSheet sheet;
	sheet.Add("#a,rect{x:1}.b{x:2}rect,.b{x:3}", {});
	Cascade cascade(sheet, tree);
	EXPECT_EQ(Collect(cascade, &tree.nodes[1]), "2 3 1");
}

TEST(CssCascade, WeighsWhatElementsHaveAndWhatStandsForTheRuleAround)
{
	const Tree tree = MakeTree("svg(g.g(rect#a.b))");
	StyleSheet sheet;
	sheet.Add("g:has(#a) rect{x:1}.g .b{x:2}svg{x:3}&{x:4}", {});
	Cascade cascade(sheet, tree);
	EXPECT_EQ(Collect(cascade, &tree.nodes[2]), "2 1");
	EXPECT_EQ(Collect(cascade, &tree.nodes[0]), "4 3");
}

TEST(CssCascade, TakesPrefixesForWhatTheyWereDeclaredAs)
{
	const Tree tree = MakeTree("svg(rect#a)");
	const auto collect = [&tree](std::string_view text)
	{
		StyleSheet sheet;
		sheet.Add(text, {});
		Cascade cascade(sheet, tree);
		return Collect(cascade, &tree.nodes[1]);
	};
	const std::string both = "@namespace s 'http://www.w3.org/2000/svg';@namespace o 'u';";
	EXPECT_EQ(collect(both + "s|rect{x:1}o|rect{x:2}*|rect{x:3}|rect{x:4}rect{x:5}"), "1 3 5");
	EXPECT_EQ(collect(both + "[s|id]{x:1}[*|id]{x:2}[|id]{x:3}"), "2 3");
	EXPECT_EQ(collect("@namespace 'u';rect{x:1}*|rect{x:2}"), "2");
	EXPECT_EQ(collect("@namespace 'http://www.w3.org/2000/svg';rect{x:1}"), "1");
	EXPECT_EQ(collect("@namespace s 'u';@namespace s 'http://www.w3.org/2000/svg';s|rect{x:1}"), "1");
}

TEST(CssCascade, FindsRulesByIdClassAndType)
{
	const Tree tree = MakeTree("svg(rect#id7.c3.c5.c3 c3#c5.id7 rect)");
	StyleSheet sheet;
	std::string text = "*{x:all}:is(.c3){x:is}rect.c5{x:both}svg rect#id7.c9{x:no}";
	for (int i = 0; i < 10; i++)
	{
		const std::string number = std::to_string(i);
		text += "#id" + number + "{x:i" + number + "}.c" + number + "{x:c" + number + "}";
	}
	text += "c3{x:t}rect{x:r}";
	sheet.Add(text, {});
	Cascade cascade(sheet, tree);
	EXPECT_EQ(Collect(cascade, &tree.nodes[1]), "all r is c3 c5 both i7");
	EXPECT_EQ(Collect(cascade, &tree.nodes[2]), "all t");
	EXPECT_EQ(Collect(cascade, &tree.nodes[3]), "all r");
}

/// Steps for an element, of all elements of a tree under a sheet.
std::uint64_t FindWork(const Tree& tree, std::string_view text, std::size_t& matched)
{
	StyleSheet sheet;
	sheet.Add(text, {});
	EXPECT_FALSE(sheet.IsEmpty());
	Cascade cascade(sheet, tree);
	matched = 0;
	for (const Tree::Node& node : tree.nodes)
		matched += cascade.Collect(&node).size();
	EXPECT_FALSE(cascade.IsBudgetExceeded());
	return cascade.WorkDone() / tree.nodes.size();
}

TEST(CssCascade, CostsAFewStepsForEachElement)
{
	constexpr std::size_t kCount = 10'000;
	Tree flat;
	Tree::Node& root = flat.Add(nullptr, "svg");
	std::string manyRules;
	for (std::size_t i = 0; i < kCount; i++)
	{
		Tree::Node& node = flat.Add(&root, i % 2 ? "rect" : "g");
		node.classes = "c" + std::to_string(i);
		if (i % 3 == 0)
			flat.Add(&node, "a"), flat.Add(&node, "b");
		manyRules += node.type + ".c" + std::to_string(i) + "{x:1}";
	}
	std::size_t matched;
	EXPECT_LE(FindWork(flat, manyRules, matched), 2U);
	EXPECT_EQ(matched, kCount);

	// Nothing is counted or looked for from the first sibling on, again and again, also when children come in between.
	const struct
	{
		const char* selector;
		std::size_t matched;
	} cases[]{
		{"g:nth-child(2n+1)", kCount / 2},
		{":nth-last-child(2n)", kCount / 2 + (kCount + 2) / 3},
		{"rect:nth-of-type(2n)", kCount / 4},
		{":nth-of-type(2n)", kCount / 2},
		{":nth-last-of-type(2n)", kCount / 2},
		{"svg>g:nth-last-of-type(2n)", kCount / 4},
		{":nth-child(2n of rect)", kCount / 4},
		{"circle ~ g", 0},
		{".c0 ~ g", kCount / 2 - 1},
		{".c0 ~ g ~ rect", kCount / 2 - 1},
		{".c9999 ~ *", 0},
		{"circle ~ g > a", 0},
		{"rect:first-of-type ~ *", kCount - 2},
		{"rect:not(:nth-child(n+3)), rect:not(:is(.c0 ~ *))", 1},
		{"svg:has(circle) > g", 0},
		{"g:has(> a):not(:has(c))", kCount / 2 - kCount / 3},
	};
	for (const auto& each : cases)
	{
		EXPECT_LE(FindWork(flat, std::string(each.selector) + "{x:1}", matched), 60U) << each.selector;
		EXPECT_EQ(matched, each.matched) << each.selector;
	}
}

TEST(CssCascade, TriesNoAncestorTwice)
{
	constexpr std::size_t kDepth = 1000;
	Tree deep;
	Tree::Node* node = nullptr;
	for (std::size_t i = 0; i < kDepth; i++)
		node = &deep.Add(node, "g");
	std::string selector = "a ";
	for (int i = 0; i < 60; i++)
		selector += i % 2 ? "g > " : "g ";
	const std::string text = selector + "g{x:1}"; // The sheet copies nothing.
	StyleSheet sheet;
	sheet.Add(text, {});
	Cascade cascade(sheet, deep);
	EXPECT_EQ(cascade.Collect(node).size(), 0U);
	EXPECT_LE(cascade.WorkDone(), kDepth * 61);
}

TEST(CssCascade, GivesUpOnHostileSheets)
{
	Tree deep;
	Tree::Node* node = nullptr;
	for (std::size_t i = 0; i < 1000; i++)
		(node = &deep.Add(node, "g"))->attributes.emplace_back("k", std::string(10'000, 'a'));
	const std::string part = std::string(5'000, 'a') + "b";
	for (const std::string& selector :
		 {std::string(":is(:is(:is(a g) g) g) g"), std::string("g:has(rect g)"), "[k*='" + part + "']"})
	{
		const std::string text = "g{x:2}" + selector + "{x:1}";
		StyleSheet sheet;
		sheet.Add(text, {});
		Cascade cascade(sheet, deep);
		std::size_t matched = 0;
		for (int i = 0; i < 20; i++)
		{
			for (const Tree::Node& each : deep.nodes)
			{
				const std::size_t count = cascade.Collect(&each).size();
				EXPECT_TRUE(count == 0 || !cascade.IsBudgetExceeded());
				matched += count;
			}
		}
		EXPECT_TRUE(cascade.IsBudgetExceeded());
		EXPECT_LE(cascade.WorkDone(), kFreeWork + 20'000 * kWorkPerElement + 1'000'000);
		EXPECT_LT(matched, 20'000U);
		Arena arena;
		std::pmr::vector<Declaration> inlineStyle;
		ReadDeclarations("x:3", {.arena = arena}, inlineStyle);
		EXPECT_EQ(Collect(cascade, node, inlineStyle), "3");
	}
}
/// Refuses the n-th block and all behind it, and counts what is out.
class FailingMemory final : public std::pmr::memory_resource
{
public:
	explicit FailingMemory(int count) : _left(count)
	{
	}

	std::size_t blocksOut = 0;

private:
	void* do_allocate(std::size_t bytes, std::size_t alignment) override
	{
		if (_left-- <= 0)
			throw std::bad_alloc();
		blocksOut++;
		return std::pmr::new_delete_resource()->allocate(bytes, alignment);
	}

	void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override
	{
		blocksOut--;
		std::pmr::new_delete_resource()->deallocate(block, bytes, alignment);
	}

	bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override
	{
		return this == &other;
	}

	int _left;
};

TEST(CssCascade, FailsCleanlyWithoutMemory)
{
	Tree tree;
	Tree::Node& root = tree.Add(nullptr, "svg");
	for (int i = 0; i < 40; i++)
		tree.Add(&root, "rect").classes = "a";
	std::string text;
	for (int i = 0; i < 60; i++)
		text += "\\61 ~ .a:nth-child(2n),.a:nth-last-child(n){FILL:re/**/d}";
	int failures = 0;
	for (bool hasFailed = true; hasFailed; failures += hasFailed)
	{
		FailingMemory memory(failures);
		hasFailed = false;
		try
		{
			StyleSheet sheet(&memory);
			sheet.Add(text, {});
			Cascade cascade(sheet, tree, &memory);
			for (const Tree::Node& node : tree.nodes)
				EXPECT_EQ(cascade.Collect(&node).size(), node.parent ? 60U : 0U);
		}
		catch (const std::bad_alloc&)
		{
			hasFailed = true;
		}
		EXPECT_EQ(memory.blocksOut, 0U);
	}
	EXPECT_GT(failures, 10);
}
} // namespace
} // namespace orvan::css
