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
NumberMasks MasksOf(std::string text, Separation separation = Separation::loose)
{
	text.resize(NumberMasks::kCount, '\0');
	return NumberMasks(text.data(), separation);
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

TEST(NumberMasks, KnowNumbersUpToTheFirstUnusualOne)
{
	const auto ends = [](std::string text, Separation separation = Separation::loose)
	{
		const std::size_t count = text.size() + 1;
		return Show(MasksOf(std::move(text), separation).ends, count);
	};
	EXPECT_EQ(ends("1 -2, 3\t 4"), ".1..1..1..1");
	EXPECT_EQ(ends("1 ,2"), ".1...") << "a comma behind a blank";
	EXPECT_EQ(ends("1 , 2"), ".1....") << "three characters between";
	EXPECT_EQ(ends("1,,2 3"), ".1.....");
	EXPECT_EQ(ends("1--2"), ".1...");
	EXPECT_EQ(ends("1?-2"), ".1..1") << "what stands between is among the others";
	EXPECT_EQ(ends("1 2e3 4"), ".1......");
	EXPECT_EQ(ends("1 2. 3"), ".1.....");
	EXPECT_EQ(ends("1.2.3.4"), "...1.1.1");
	EXPECT_EQ(ends("1..2"), ".....") << "a number that ends with its decimal point";
	EXPECT_EQ(ends("1 2-3", Separation::strictStart), ".1.1..");
	EXPECT_EQ(ends("1.2.3", Separation::strictStart), "......") << "not even the one before is certain";
	EXPECT_EQ(ends("1 2", Separation::strict), "....") << "nothing separates it from what stands before";
	EXPECT_EQ(ends(" 1 2", Separation::strict), "..1.1");

	const NumberMasks full = MasksOf(std::string(NumberMasks::kCount, '7'));
	EXPECT_EQ(full.starts, 1U);
	EXPECT_EQ(full.ends, 0U) << "a number that goes on behind the sixty-four characters";
}
} // namespace
} // namespace orvan::grammar
