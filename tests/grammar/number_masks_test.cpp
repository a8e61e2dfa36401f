// SPDX-License-Identifier: MIT
#include "fast/number_masks.h"

#include <gtest/gtest.h>

#include <string>

namespace orvan::grammar
{
namespace
{
std::string Show(std::uint64_t mask, std::size_t count)
{
	std::string text;
	for (std::size_t i = 0; i != count; ++i)
		text += (mask >> i & 1) != 0 ? '1' : '.';
	return text;
}

/// The masks of a text that zeros follow.
NumberMasks MasksOf(std::string text, Separation separation = Separation::loose, bool isBehindNumber = false)
{
	text.resize(NumberMasks::kCount, '\0');
	return NumberMasks(CharacterMasks(text.data()), separation, isBehindNumber);
}

TEST(NumberMasks, TellWhereNumbersStand)
{
	const NumberMasks masks = MasksOf("L1.5-20,.5.5z");
	EXPECT_EQ(Show(masks.starts, 13), ".1...1..1.1..");
	EXPECT_EQ(Show(masks.points, 13), "..1.....1.1..");
	EXPECT_EQ(Show(masks.ends, 13), "....1..1..1.1");
	EXPECT_EQ(Show(masks.signs, 13), ".....1.......");
	EXPECT_EQ(Show(masks.others, 13), "1...........1");
}

TEST(NumberMasks, KnowNumbersUpToTheFirstUnusualPlace)
{
	const auto ends = [](std::string text, Separation separation = Separation::loose, bool isBehindNumber = false)
	{
		const std::size_t count = text.size() + 1;
		return Show(MasksOf(std::move(text), separation, isBehindNumber).ends, count);
	};
	EXPECT_EQ(ends("1 -2, 3\t 4"), ".1..1..1..1");
	EXPECT_EQ(ends("1   ,\n  -2"), ".1........1") << "any number of blanks, and one comma";
	EXPECT_EQ(ends("1,,2 3"), ".1.....");
	EXPECT_EQ(ends("1, ,2"), ".1....");
	EXPECT_EQ(ends("1--2"), ".1...");
	EXPECT_EQ(ends("1?-2"), ".1..1") << "what stands between is among the others";
	EXPECT_EQ(ends("1 2e3 4"), ".1......");
	EXPECT_EQ(ends("1 2. 3"), ".1.....");
	EXPECT_EQ(ends("1.2.3.4"), "...1.1.1");
	EXPECT_EQ(ends("1..2"), ".....") << "a number that ends with its decimal point";
	EXPECT_EQ(ends(",1"), "...") << "a comma with no number in front";
	EXPECT_EQ(ends(",1", Separation::loose, true), "..1");
	EXPECT_EQ(ends("1L ,2"), ".1....");
	EXPECT_EQ(ends("1 2-3", Separation::strict), ".1.1..");
	EXPECT_EQ(ends("1.2.3", Separation::strict), "......") << "not even the one before is certain";
	EXPECT_EQ(ends("1 2", Separation::strict, true), "....") << "nothing separates it from what stands before";
	EXPECT_EQ(ends("-1 2", Separation::strict, true), ".....");
	EXPECT_EQ(ends(" -1 2", Separation::strict, true), "...1.1");

	// What follows tells of nothing.
	const NumberMasks masks = MasksOf("1,L2z");
	EXPECT_EQ(Show(masks.ends, 5), ".1...");
	EXPECT_EQ(Show(masks.others, 5), ".....");
	EXPECT_FALSE(masks.isWhole);
	EXPECT_FALSE(MasksOf("M1-z").isWhole);
	EXPECT_TRUE(MasksOf("M1,2 z").isWhole);

	const NumberMasks full = MasksOf(std::string(NumberMasks::kCount, '7'));
	EXPECT_EQ(full.starts, 1U);
	EXPECT_EQ(full.ends, 0U) << "a number that goes on behind the sixty-four characters";
}
} // namespace
} // namespace orvan::grammar
