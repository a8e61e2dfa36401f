// SPDX-License-Identifier: MIT
// A style sheet over a small tree. The matcher and the cascade agree with the plainest reading of the selectors, and
// declarations say the same when they are read again.

#include "css/cascade.h"
#include "css/tokenizer.h"
#include "css_reference.h"
#include "require.h"

#include <random>
#include <tuple>

using namespace orvan;
using namespace orvan::css;
using fuzz::Require;

namespace
{
class Sink final : public ReportSink
{
public:
	explicit Sink(std::string_view text) : _text(text)
	{
	}

	void Report(const Problem& problem) override
	{
		Require(problem.offset <= _text.size(), "a problem is behind the text", _text);
		Require(!problem.message.empty(), "a problem says nothing", _text);
		Require(++_count <= _text.size() + 1, "there are more problems than bytes", _text);
	}

private:
	std::string_view _text;
	std::size_t _count = 0;
};

/// Understands some declarations.
class Features final : public FeatureTest
{
public:
	bool Understands(const Declaration& declaration) override
	{
		return declaration.name.size() % 2 == 0;
	}
};

/// A tree with few different names, and enough children for what is remembered of siblings.
void Grow(Tree& tree, std::uint32_t seed)
{
	std::minstd_rand random(seed);
	const auto below = [&random](unsigned bound)
	{
		return static_cast<std::size_t>(random() >> 8) % bound;
	};
	constexpr const char* kTypes[]{"g", "a", "rect", "b"};
	constexpr const char* kClasses[]{"", "a", "b", "a b", "b  c a"};
	constexpr const char* kValues[]{"", "a", "A", "a b", "a-b", "b-a", "ab a"};
	Tree::Node* parent = &tree.Add(nullptr, "svg");
	const std::size_t count = 5 + below(35);
	const unsigned turn = 2 + static_cast<unsigned>(below(30));
	for (std::size_t i = 0; i < count; i++)
	{
		Tree::Node& node = tree.Add(parent, kTypes[below(4)]);
		node.id = below(8) == 0 ? "a" : "";
		node.classes = kClasses[below(5)];
		node.hasText = below(4) == 0;
		if (below(2) == 0)
			node.attributes.emplace_back(below(4) == 0 ? "x|a" : below(4) == 0 ? "b" : "a", kValues[below(7)]);
		if (below(turn) == 0)
			parent = &node;
		else if (below(turn) == 0 && parent->parent)
			parent = parent->parent;
	}
}

void CheckTokens(std::string_view text)
{
	std::size_t end = 0;
	for (Tokenizer tokens(text); tokens.Current().type != TokenType::end; tokens.Advance())
	{
		Require(!tokens.Current().text.empty() && tokens.Offset() >= end, "tokens overlap", text);
		const std::string_view gap = text.substr(end, tokens.Offset() - end);
		Require(gap.empty() || (gap.starts_with("/*") && gap.ends_with("*/")), "a gap is no comment", text);
		end = tokens.Offset() + tokens.Current().text.size();
		tokens.Current().Name();
	}
	Require(end == text.size() || text.substr(end).starts_with("/*"), "the text is not read to its end", text);
}

void CheckDeclarations(std::span<const Declaration> declarations)
{
	for (const Declaration& declaration : declarations)
	{
		Require(!declaration.name.empty(), "a declaration has no name");
		Require(declaration.isCustom || !declaration.value.empty(), "a declaration has no value", declaration.name);
		// Other names may have lost the escapes that they need.
		if (declaration.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz") != std::string_view::npos)
			continue;
		const std::string again = std::string(declaration.name) + ":" + std::string(declaration.value);
		Arena arena;
		std::pmr::vector<Declaration> read;
		ReadDeclarations(again, {.arena = arena}, read);
		Require(read.size() == 1 && read[0].name == declaration.name && read[0].value == declaration.value,
				"a declaration reads differently", again);
		std::string_view content;
		ReadStringOrUrl(declaration.value, arena, content);
	}
}

std::vector<std::uint32_t> FindRules(const StyleSheet& sheet, fuzz::CssReference& reference, const Tree::Node& node)
{
	std::vector<std::uint32_t> rules;
	for (std::uint32_t i = 0; i < sheet.Rules().size(); i++)
	{
		if (reference.Matches(sheet.Rules()[i].selector->subject, &node))
			rules.push_back(i);
	}
	const auto weigh = [&sheet](std::uint32_t number)
	{
		const Rule& rule = sheet.Rules()[number];
		return std::tuple(sheet.AllLayers().RankOf(rule.layer), rule.selector->specificity, number);
	};
	std::sort(rules.begin(), rules.end(),
			  [&](std::uint32_t left, std::uint32_t right) { return weigh(left) < weigh(right); });
	// Of a list the weightiest selector counts, which is the last one here.
	std::vector<std::uint32_t> last;
	for (auto rule = rules.rbegin(); rule != rules.rend(); ++rule)
	{
		const bool isNew =
			std::none_of(last.begin(), last.end(),
						 [&](std::uint32_t other)
						 { return sheet.Rules()[other].firstDeclaration == sheet.Rules()[*rule].firstDeclaration; });
		if (isNew)
			last.insert(last.begin(), *rule);
	}
	return last;
}

void CheckElement(const StyleSheet& sheet, Cascade& cascade, fuzz::CssReference& reference, const Tree::Node& node,
				  std::string_view text)
{
	std::vector<const Declaration*> expected;
	std::vector<std::uint32_t> rules = FindRules(sheet, reference, node);
	for (const bool isImportant : {false, true})
	{
		if (isImportant)
			std::stable_sort(rules.begin(), rules.end(),
							 [&sheet](std::uint32_t left, std::uint32_t right) {
								 return sheet.AllLayers().RankOf(sheet.Rules()[left].layer) >
										sheet.AllLayers().RankOf(sheet.Rules()[right].layer);
							 });
		for (const std::uint32_t number : rules)
		{
			const Rule& rule = sheet.Rules()[number];
			for (const Declaration& declaration :
				 sheet.Declarations().subspan(rule.firstDeclaration, rule.declarationCount))
			{
				if (declaration.isImportant == isImportant)
					expected.push_back(&declaration);
			}
		}
	}
	const auto collected = cascade.Collect(&node);
	Require(cascade.IsBudgetExceeded() ||
				std::equal(collected.begin(), collected.end(), expected.begin(), expected.end()),
			"the cascade and the reference disagree", text);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string text(reinterpret_cast<const char*>(data), size);
	CheckTokens(text);
	Sink sink(text);
	Arena arena;
	std::pmr::vector<Declaration> inlineStyle;
	ReadDeclarations(text, {.arena = arena, .report = &sink}, inlineStyle);
	CheckDeclarations(inlineStyle);

	Sink sheetSink(text);
	StyleSheet sheet;
	Features features;
	sheet.Add(text, {.report = &sheetSink, .features = &features});
	CheckDeclarations(sheet.Declarations());
	if (sheet.IsEmpty())
		return 0;
	Tree tree;
	Grow(tree, static_cast<std::uint32_t>(size) * 7919 + data[size - 1]);
	Cascade cascade(sheet, tree);
	fuzz::CssReference reference(tree);
	for (const Tree::Node& node : tree.nodes)
		CheckElement(sheet, cascade, reference, node, text);
	// In the other order, and what is remembered by now has to serve as well.
	Cascade backwards(sheet, tree);
	for (auto node = tree.nodes.rbegin(); node != tree.nodes.rend(); ++node)
		CheckElement(sheet, backwards, reference, *node, text);
	return 0;
}
