// SPDX-License-Identifier: MIT
#include "fast/number_tape.h"

#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <string_view>

namespace orvan::grammar
{
namespace
{
class NumberTapeTest : public testing::Test
{
protected:
	void SetUp() override
	{
		if (!NumberTape::IsAvailable())
			GTEST_SKIP() << "this processor records no tapes";
	}

	/// Values with their places, and marks in brackets, in the order of places.
	std::string Show(std::string_view text, bool isBehindNumber = false, bool takesLongNumbers = true)
	{
		tape.Record(text.data(), text.data() + text.size(), isBehindNumber, takesLongNumbers);
		std::string shown;
		std::size_t mark = 0;
		const auto addMarks = [&](std::uint16_t before)
		{
			for (; tape.marks[mark] < before; ++mark)
				shown += std::string("[") + text[tape.marks[mark]] + "]";
		};
		for (std::size_t i = 0; i != tape.numberCount; ++i)
		{
			addMarks(tape.starts[i]);
			AppendNumber(shown, tape.values[i]);
			shown += '@' + std::to_string(tape.starts[i]) + ' ';
		}
		addMarks(NumberTape::kNoMark);
		EXPECT_EQ(mark, tape.markCount);
		EXPECT_EQ(tape.starts[tape.numberCount], NumberTape::kNone);
		return shown;
	}

	NumberTape tape;
};

TEST_F(NumberTapeTest, HoldsValuesPlacesAndMarks)
{
	EXPECT_EQ(Show("M1.5-20 30,40z"), "[M]1.5@1 -20@5 30@8 40@11 [z]");
	EXPECT_TRUE(tape.isWhole);
	EXPECT_EQ(Show("1.25.5.75-.5 0 -0 007"), "1.25@0 0.5@4 0.75@6 -0.5@10 0@13 -0@16 7@18 ");
	EXPECT_EQ(Show(" , 3+4", true), "3@3 [+]4@5 ");
	EXPECT_EQ(Show(""), "");
	EXPECT_TRUE(tape.isWhole);
}

TEST_F(NumberTapeTest, EndsBeforeWhatIsUnusual)
{
	for (const char* text : {"M1 2, L3", "M1 2 3e4", "M1 2 3. 4", "M1 2,,3", "M1 2--3"})
	{
		EXPECT_EQ(Show(text).substr(0, 11), "[M]1@1 2@3 ") << text;
		EXPECT_TRUE(tape.isAtEnd && !tape.isWhole) << text;
		EXPECT_EQ(tape.numberCount, 2U) << text;
	}
	EXPECT_EQ(Show(",1"), "");
	EXPECT_EQ(Show("1z" + std::string(70, '7')), "1@0 [z]") << "a number without end";
}

TEST_F(NumberTapeTest, TakesNumbersOfManyDigitsWhenAsked)
{
	EXPECT_EQ(Show("123456789 1234567.89012345 .123456789012345"),
			  "123456789@0 1234567.89012345@10 0.123456789012345@27 ");
	constexpr std::string_view kLong = "1M2 -1.234567890123456 3L4";
	EXPECT_EQ(Show(kLong), "1@0 [M]2@2 -1.234567890123456@5 3@23 [L]4@25 ");
	EXPECT_EQ(Show(kLong, false, false), "1@0 [M]2@2 ") << "and else ends before them";
	EXPECT_EQ(Show("1L2 12345678901234567890M3"), "1@0 [L]2@2 ") << "more than any can take";
}

// Numbers are cut by the ends of looks at the text, and the tape by its own end.
TEST_F(NumberTapeTest, GoesOnWhereALookEnds)
{
	for (std::size_t shift = 0; shift != 64; ++shift)
	{
		const std::string blanks(shift, ' ');
		const std::string text = blanks + "M12.75,-8" + std::string(150, '\n') + "7 z" + blanks;
		const auto at = [shift](std::size_t place)
		{
			return std::to_string(shift + place);
		};
		EXPECT_EQ(Show(text), "[M]12.75@" + at(1) + " -8@" + at(8) + " 7@" + at(159) + " [z]");
		EXPECT_TRUE(tape.isWhole);
	}

	std::string many;
	for (int i = 0; i != 1000; ++i)
		many += 'h' + std::to_string(i);
	Show(many);
	EXPECT_FALSE(tape.isAtEnd);
	EXPECT_GE(tape.numberCount, NumberTape::kMostNumbers - 1);
	for (std::size_t i = 0; i != tape.numberCount; ++i)
		ASSERT_EQ(tape.values[i], static_cast<double>(i));

	Show(std::string(1000, 'z'));
	EXPECT_FALSE(tape.isAtEnd);
	EXPECT_EQ(tape.markCount, NumberTape::kMostMarks);
	for (std::size_t i = 0; i != tape.markCount; ++i)
		ASSERT_EQ(tape.marks[i], i);
}
} // namespace
} // namespace orvan::grammar
