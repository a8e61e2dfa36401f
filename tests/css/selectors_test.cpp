// SPDX-License-Identifier: MIT
#include "css/matcher.h"
#include "css/selector_list.h"
#include "css_tree.h"

#include <gtest/gtest.h>
#include <string>

namespace orvan::css
{
namespace
{
constexpr const char* kTree = "svg#r[xml|lang=de-CH]("
							  " g#a.x.y[k=one two](rect#b[k=one-two] circle#c.x[k=] rect#d.X)"
							  " g#e[lang=en](g#f(rect#g.y[k=ONE][xlink|href=u]) text#h!)"
							  " a#i[href=u] g#j )";

/// The ids of the elements that match, or "invalid".
std::string Find(std::string_view selector)
{
	static const Tree tree = []
	{
		Tree made;
		made.Read(kTree);
		return made;
	}();
	const SelectorList list(selector);
	if (!list.IsValid())
		return "invalid";
	Matcher matcher(tree);
	std::string found;
	for (const Tree::Node& node : tree.nodes)
	{
		if (matcher.MatchesAny(list.First(), &node))
			found += node.id;
	}
	return found;
}

struct Case
{
	const char* selector;
	const char* found;
};

void ExpectAll(std::initializer_list<Case> cases)
{
	for (const Case& each : cases)
		EXPECT_EQ(Find(each.selector), each.found) << each.selector;
}

TEST(CssSelectors, AskForTypesClassesAndIds)
{
	ExpectAll({
		{"rect", "bdg"},
		{"RECT", ""},
		{"*", "rabcdefghij"},
		{"*|rect", "bdg"},
		{"|rect", ""},
		{"*|*.X", "d"},
		{".x", "ac"},
		{".x.y", "a"},
		{"#c", "c"},
		{"#C", ""},
		{"rect#b", "b"},
		{"g , #c,.y", "acefgj"},
		{"\\72 ect#\\000062", "b"},
		{"/**/g/**/#a/**/", "a"},
	});
}

TEST(CssSelectors, AskForAttributes)
{
	ExpectAll({
		{"[k]", "abcg"},       {"[k=one-two]", "b"}, {"[ k = 'one two' ]", "a"},
		{"[k='']", "c"},       {"[k~=two]", "a"},    {"[k~='one two']", ""},
		{"[k~='']", ""},       {"[k|=one]", "b"},    {"[k^=one]", "ab"},
		{"[k$=two]", "ab"},    {"[k*='e-t']", "b"},  {"[k^='']", ""},
		{"[k$='']", ""},       {"[k*='']", ""},      {"[k=one i]", "g"},
		{"[k=\"one\"I]", "g"}, {"[k*=NE i]", "abg"}, {"[k=ONE s]", "g"},
		{"[K]", ""},           {"[href]", "i"},      {"[|href]", "i"},
		{"[*|href]", "gi"},    {"[k=one", ""},       {"[k='ONE", "g"},
		{"[k|=ONE]", "g"},     {"[k$=ONE]", "g"},    {"[k~=TWO i]", "a"},
	});
}

TEST(CssSelectors, FollowCombinators)
{
	ExpectAll({
		{"g rect", "bdg"},
		{"g>rect", "bdg"},
		{"#e > rect", ""},
		{"#e rect", "g"},
		{"svg g g rect", "g"},
		{"svg > g > g > rect", "g"},
		{"rect + circle", "c"},
		{"rect ~ rect", "d"},
		{"g+g", "e"},
		{"g ~ g", "ej"},
		{"#a ~ g rect", "g"},
		{"#a + a", ""},
		{"g ~ a + g", "j"},
		{"svg > #e > g ~ text", "h"},
		// The nearest ancestor is the wrong one, and one further out is right.
		{"#r > g rect", "bdg"},
		{"#a + g g > rect", "g"},
	});
}

TEST(CssSelectors, AskForPlacesAmongSiblings)
{
	ExpectAll({
		{":first-child", "rabfg"},
		{":last-child", "rdghj"},
		{":only-child", "rg"},
		{"svg > :nth-child(odd)", "ai"},
		{"svg > :nth-child(EVEN)", "ej"},
		{"svg > :nth-child(n-4294967290)", "aeij"},
		{"svg > :nth-child(2n)", "ej"},
		{"svg > :nth-child(-n+2)", "ae"},
		{"svg > :nth-child( +3 )", "i"},
		{"svg > :nth-child(n + 3)", "ij"},
		{"svg > :nth-child(3n - 1)", "e"},
		{"svg > :nth-child(-n)", ""},
		{"svg > :nth-last-child(-N+1)", "j"},
		{"svg > :nth-last-child(2n+1)", "ej"},
		{"svg > :nth-child(2 of g)", "e"},
		{"svg > :nth-last-child(1 of a, .x)", "i"},
		{"svg > :first-of-type", "ai"},
		{"svg > :last-of-type", "ij"},
		{"svg > :only-of-type", "i"},
		{"svg > :nth-of-type(2n+1)", "aij"},
		{"svg > :nth-last-of-type(2)", "e"},
	});
	for (const char* place :
		 {"n", "+n", "1n", "-0n + 1", "2N+1", "2n-1", "n-0", "-n- 5", "-5n-1", "+5", "2n + 3", "n- 1", "even"})
		EXPECT_NE(Find(":nth-child(" + std::string(place) + ")"), "invalid") << place;
	for (const char* place : {"", "2 n", "+ 2n", "+ n", "2n + -1", "2n 1", "n1", "1.0", "2.0n", "2n+", "- 1", "2n-",
							  "+odd", "3n + - 6", "2n of", "n of :x", "--n", "+-n", "+/**/5"})
		EXPECT_EQ(Find(":nth-child(" + std::string(place) + ")"), "invalid") << place;
	EXPECT_EQ(Find(":nth-of-type(2 of g)"), "invalid");
}

TEST(CssSelectors, CountAmongManySiblingsOfSeveralTypes)
{
	Tree tree;
	Tree::Node& root = tree.Add(nullptr, "svg");
	std::vector<const Tree::Node*> siblings;
	for (int i = 0; i < 60; i++)
		siblings.push_back(&tree.Add(&root, i % 7 < 4 ? "a" : i % 5 < 3 ? "b" : "c"));
	for (const bool isOfType : {false, true})
	{
		for (const bool isLast : {false, true})
		{
			const std::string selector =
				std::string(":nth-") + (isLast ? "last-" : "") + (isOfType ? "of-type" : "child") + "(3n+1)";
			const SelectorList list(selector);
			Matcher matcher(tree);
			for (std::size_t i = 0; i < siblings.size(); i++)
			{
				// Backwards and forwards in turn, as what was counted before is remembered.
				const std::size_t at = i % 2 == 0 ? i : siblings.size() - i;
				const auto begin = siblings.begin() + static_cast<std::ptrdiff_t>(isLast ? at : 0);
				const auto end = isLast ? siblings.end() : siblings.begin() + static_cast<std::ptrdiff_t>(at) + 1;
				const auto place = std::count_if(
					begin, end, [&](const Tree::Node* node) { return !isOfType || node->type == siblings[at]->type; });
				EXPECT_EQ(place % 3 == 1, matcher.MatchesAny(list.First(), siblings[at])) << selector << ' ' << at;
			}
		}
	}
}

TEST(CssSelectors, KnowPseudoClasses)
{
	ExpectAll({
		{":ROOT", "r"},
		{":empty", "bcdgij"},
		{":link", "i"},
		{":any-link", "i"},
		{":not(g)", "rbcdghi"},
		{":not(g, :not(.y))", "g"},
		{"g:is(.x, #j)", "aj"},
		{":is(#a, #f) > rect:not(.X)", "bg"},
		{"rect:not(#a rect)", "g"},
		{":is(svg > g > g) rect", "g"},
		{":where()", ""},
		{":is(:foo, #c, a|b, ::before)", "c"},
		{":not(:is(:foo(]), *))", ""},
		{":is(:not(:foo, g), #c)", "c"},
		{"rect:hover", ""},
		{"rect:not(:hover):not(:checked)", "bdg"},
		{"rect::before", ""},
		{"rect:before, #c", "c"},
		{"rect::part(a), #c", "c"},
		{":lang(en)", "efgh"},
		{":lang( fr , en )", "efgh"},
		{":lang(de)", "rabcdij"},
		{":lang(fr, 'de-ch')", "rabcdij"},
		{":lang(d)", ""},
		{":dir(rtl), #c:dir(ltr)", "c"},
		{":host(a), :host-context(a), #c", "c"},
		{":-webkit-any(circle):scope, #c", "c"},
		{"&:is(svg)", "r"},
	});
}

TEST(CssSelectors, AskForWhatElementsHave)
{
	ExpectAll({
		{":has(rect)", "raef"},
		{":has(> rect)", "af"},
		{":has(text, .X)", "rae"},
		{"g:has(g rect)", "e"},
		{"g:has(> g > rect):not(:has(circle))", "e"},
		{":has(+ a)", "e"},
		{":has(+ #d)", "c"},
		{"g:has(~ g)", "ae"},
		{":has(+ g > g)", "a"},
		{":has(~ g rect)", "a"},
		{":has(~ a + g)", "ae"},
		{":has(+ circle ~ rect)", "b"},
		{":has(:not(rect))", "rae"},
		{":not(:has(*))", "bcdghij"},
		{"g:has(> :first-child:last-child) rect", "g"},
		{":is(:has(a), #c)", "rc"},
		{":root:HAS(#g) #a", "a"},
		{":has(:nth-child(3 of rect))", ""},
		{":has(:nth-child(2 of rect))", "ra"},
		{"#c:has(rect)", ""},
		{":has(> #b) > :has(~ #d)", "bc"},
	});
	for (const char* selector : {":has()", ":has(:foo)", ":has(g,)", ":has(> > g)", ":has(:has(g))", ":has(> )", "> g"})
		EXPECT_EQ(Find(selector), "invalid") << selector;
	EXPECT_EQ(Find(":has(:is(:has(g), #b))"), "ra");
	// Of an earlier sibling that many stand behind, for each element anew.
	Tree tree;
	Tree::Node& root = tree.Add(nullptr, "svg");
	for (int i = 0; i < 40; i++)
		tree.Add(&tree.Add(&root, i % 20 == 0 ? "a" : "g"), "b");
	const SelectorList list("g:has(~ a ~ g)");
	Matcher matcher(tree);
	int count = 0;
	for (const Tree::Node& node : tree.nodes)
		count += matcher.MatchesAny(list.First(), &node);
	EXPECT_EQ(count, 19);
}

TEST(CssSelectors, AreRefusedAsAWhole)
{
	for (const char* selector : {"",
								 ",",
								 "g,",
								 "g,,g",
								 ">g",
								 "g>",
								 "g>>g",
								 "g > + g",
								 ".",
								 ".1",
								 "#1",
								 "#",
								 "g*",
								 "g|",
								 "ns|g",
								 "ns|*",
								 "|",
								 "[",
								 "[]",
								 "[=a]",
								 "[k=1]",
								 "[k= ]",
								 "[k=a b]",
								 "[k~/**/=a]",
								 "[k!=a]",
								 "[ns|k]",
								 "[*]",
								 "[k=a i s]",
								 ":",
								 ":foo",
								 ":foo(a)",
								 ":not()",
								 ":not(:foo)",
								 ":not(g,)",
								 ":is",
								 ":nth-child",
								 "::foo",
								 ":selection",
								 "::before g",
								 "::before:hover",
								 "::before.a",
								 "::before::after",
								 "::before:not(g)",
								 ":not(::before)",
								 ":hover()",
								 "g{}",
								 "g)",
								 "g]",
								 "!g",
								 "g g !",
								 "1",
								 "'g'",
								 ":lang()",
								 ":lang(1)",
								 "\ng;"})
	{
		EXPECT_EQ(Find(selector), "invalid") << selector;
	}
	// The end of the text closes what is open.
	EXPECT_EQ(Find(":not(g"), "rbcdghi");
}

TEST(CssSelectors, Weigh)
{
	const auto weigh = [](std::string_view text)
	{
		const SelectorList list(text);
		EXPECT_TRUE(list.IsValid()) << text;
		const Specificity weight = list.IsValid() ? list.First()->specificity : 0;
		return std::to_string(weight >> 20) + "," + std::to_string(weight >> 10 & 1023) + "," +
			   std::to_string(weight & 1023);
	};
	EXPECT_EQ(weigh("*"), "0,0,0");
	EXPECT_EQ(weigh("g > g + rect"), "0,0,3");
	EXPECT_EQ(weigh("rect#a.b[c]:hover::before"), "1,3,2");
	EXPECT_EQ(weigh("#a :is(g, #b.c, :foo)"), "2,1,0");
	EXPECT_EQ(weigh(":not(g g, .a)"), "0,1,0");
	EXPECT_EQ(weigh(":where(#a) g"), "0,0,1");
	EXPECT_EQ(weigh(":nth-child(2n of .a, #b)"), "1,1,0");
	EXPECT_EQ(weigh(":only-child:only-of-type:lang(de, en):root"), "0,4,0");
	std::string many;
	for (int i = 0; i < 1100; i++)
		many += ".a";
	EXPECT_EQ(weigh(many), "0,1023,0");
}
} // namespace
} // namespace orvan::css
