// SPDX-License-Identifier: MIT
#include "css/variables.h"

#include <gtest/gtest.h>

namespace orvan::css
{
namespace
{
/// The value with single blanks, or what became of it in brackets.
std::string Put(Variables& variables, std::string_view value)
{
	std::string put;
	const Substitution outcome = variables.Substitute(value, put);
	if (outcome != Substitution::done)
		return outcome == Substitution::malformed ? "[malformed]" : "[impossible]";
	std::string joined;
	for (const char c : put)
	{
		if (c != ' ' || !(joined.empty() || joined.back() == ' '))
			joined += c;
	}
	return joined.substr(0, joined.find_last_not_of(' ') + 1);
}

TEST(CssVariables, StandForTheirValues)
{
	VariableBudget budget;
	Variables outer(nullptr, budget), inner(&outer, budget);
	outer.Set("--a", "1 2");
	outer.Set("--A", "3");
	outer.Set("--from-a", "[var(--a)]");
	outer.Set("--empty", "");
	inner.SetCopy(std::string("--a"), std::string("4"));
	inner.Set("--gone", "Initial");
	inner.Set("--A", "unset");
	EXPECT_EQ(Put(outer, "x var(--a)y,VAR( --A )z"), "x 1 2 y, 3 z");
	// What it comes to is settled where it stands.
	EXPECT_EQ(Put(inner, "var(--a) var(--A) var(--from-a)"), "4 3 [ 1 2 ]");
	EXPECT_EQ(Put(inner, "f(var(--x, g(1,2) ';)')) env(e, 5) env(e 1 2, 6)"), "f( g(1,2) ';)' ) 5 6");
	EXPECT_EQ(Put(inner, "var(--empty)a var(--x,)b var(--x, var(--y, c))"), "a b c");
	EXPECT_EQ(Put(inner, "var(--\\61 ) url(var(--a)) 'var(--a)'"), "4 url(var(--a)) 'var(--a)'");
	for (const char* value : {"var(--gone)", "var(--x)", "env(e)", "a var(--x, var(--y))"})
		EXPECT_EQ(Put(inner, value), "[impossible]") << value;
	for (const char* value : {"var()", "var(a)", "var(--a b)", "var(--a 1)", "var(--a", "var(1)", "a var(--x, var())"})
		EXPECT_EQ(Put(inner, value), "[malformed]") << value;
}

TEST(CssVariables, AreTakenFromAroundByTheWordsForAllProperties)
{
	VariableBudget budget;
	Variables outer(nullptr, budget), inner(&outer, budget), innermost(&inner, budget);
	outer.Set("--a", "1");
	for (const char* word : {"inherit", "UNSET", "revert", "Revert-Layer"})
	{
		inner.Set("--a", word);
		EXPECT_EQ(Put(innermost, "var(--a)"), "1") << word;
	}
	// What is set again counts, and is not what it was before.
	inner.Set("--a", "2");
	EXPECT_EQ(Put(innermost, "var(--a)"), "2");
	inner.Set("--a", "3");
	EXPECT_EQ(Put(innermost, "var(--a)"), "3");
	inner.Set("--a", "initial");
	EXPECT_EQ(Put(innermost, "var(--a, 4)"), "4");
	// A longer word is none of them, and a part of one neither.
	inner.Set("--a", "unset 1");
	EXPECT_EQ(Put(innermost, "var(--a)"), "unset 1");
	EXPECT_EQ(Put(innermost, "VAR(--a , 1)env(e,)"), "unset 1");
}

TEST(CssVariables, MayStandWithinEachOtherToADepth)
{
	for (const auto& [count, isRead] : {std::pair{50, true}, std::pair{80, false}})
	{
		VariableBudget budget;
		Variables variables(nullptr, budget);
		std::string nested = "1";
		for (int i = 0; i < count; i++)
		{
			variables.SetCopy("--v" + std::to_string(i), i == 0 ? "2" : "var(--v" + std::to_string(i - 1) + ")");
			nested = "var(--x," + nested + ")";
		}
		EXPECT_EQ(Put(variables, nested), isRead ? "1" : "[impossible]") << count;
		EXPECT_EQ(Put(variables, "var(--v" + std::to_string(count - 1) + ")"), isRead ? "2" : "[impossible]") << count;
	}
	// One value may come to 64 KiB.
	for (const auto& [size, isRead] : {std::pair{60'000, true}, std::pair{70'000, false}})
	{
		VariableBudget budget;
		Variables variables(nullptr, budget);
		variables.SetCopy("--a", std::string(static_cast<std::size_t>(size), 'x'));
		EXPECT_EQ(Put(variables, "var(--a)").size() == static_cast<std::size_t>(size), isRead) << size;
	}
}

TEST(CssVariables, ThatReferToThemselvesHaveNoValue)
{
	VariableBudget budget;
	Variables variables(nullptr, budget);
	variables.Set("--a", "var(--a, 1)");
	variables.Set("--b", "var(--c)");
	variables.Set("--c", "var(--b)");
	EXPECT_EQ(Put(variables, "var(--a)"), "[impossible]");
	EXPECT_EQ(Put(variables, "var(--a, 2) var(--b, 3) var(--c, 4)"), "2 3 4");
}

TEST(CssVariables, AreBounded)
{
	VariableBudget budget;
	Variables variables(nullptr, budget);
	// Each is ten times the one before.
	for (char name = 'b'; name < 'j'; name++)
	{
		std::string value;
		for (int i = 0; i < 10; i++)
			value += std::string("var(--") + static_cast<char>(name - 1) + ")";
		variables.SetCopy(std::string("--") + name, value);
	}
	variables.Set("--a", "x");
	EXPECT_NE(Put(variables, "var(--d)"), "[impossible]");
	EXPECT_EQ(Put(variables, "var(--i)"), "[impossible]");
	std::string nested = "1";
	for (int i = 0; i < 200; i++)
		nested = "var(--x," + nested + ")";
	EXPECT_EQ(Put(variables, nested), "[impossible]");

	budget.bytes = 1000;
	std::string put;
	int count = 0;
	while (variables.Substitute("var(--c)", put) == Substitution::done)
		count++;
	EXPECT_TRUE(count > 2 && count < 20) << count;
	budget = {.bytes = 1000, .steps = 2};
	EXPECT_EQ(Put(variables, "var(--a)var(--a)"), "x x");
	EXPECT_EQ(Put(variables, "var(--a)"), "[impossible]");
}
} // namespace
} // namespace orvan::css
