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

	/// Values with their places, and marks in brackets, each behind the numbers that stand before it.
	std::string Show(std::string_view text, bool isBehindNumber = false, PathDialect dialect = PathDialect::plain)
	{
		tape.Record(text.data(), text.data() + text.size(), isBehindNumber, dialect);
		std::string shown;
		std::size_t number = 0;
		for (std::size_t mark = 0; mark <= tape.markCount; ++mark)
		{
			for (; number != tape.numbersBefore[mark]; ++number)
			{
				AppendNumber(shown, tape.values[number]);
				shown += '@' + std::to_string(tape.starts[number]) + ' ';
			}
			if (mark != tape.markCount)
			{
				EXPECT_EQ(text[tape.marks[mark]], tape.letters[mark]);
				shown += std::string("[") + tape.letters[mark] + "]";
			}
		}
		EXPECT_EQ(number, tape.numberCount);
		rest = text.substr(static_cast<std::size_t>(tape.behind - text.data()));
		return shown;
	}

	std::string_view rest; ///< Of what was shown.
	NumberTape tape;
};

TEST_F(NumberTapeTest, HoldsValuesPlacesAndMarks)
{
	EXPECT_EQ(Show("M1.5-20 30,40z"), "[M]1.5@1 -20@5 30@8 40@11 [z]");
	EXPECT_TRUE(tape.isWhole);
	EXPECT_EQ(Show("1.25.5.75-.5 0 -0 007"), "1.25@0 0.5@4 0.75@6 -0.5@10 0@13 -0@16 7@18 ");
	EXPECT_EQ(Show(" , 3+4", true), "3@3 [+]4@5 ");
	EXPECT_EQ(Show("1\t2\n3\v4\f5\r6 7"), "1@0 2@2 3@4 4@6 5@8 6@10 7@12 ");
	EXPECT_EQ(Show("1/2:3\b4\x0e 5"), "1@0 [/]2@2 [:]3@4 [\b]4@6 [\x0e]5@9 ") << "neighbours of digits and of blanks";
	EXPECT_EQ(Show(""), "");
	EXPECT_TRUE(tape.isWhole);
}

TEST_F(NumberTapeTest, ReadsUnusualNumbers)
{
	EXPECT_EQ(Show("M-1e2,2E-1L , "), "[M]-100@1 0.2@6 [L]");
	EXPECT_EQ(rest, " , ");
	EXPECT_EQ(Show("1e99-1e1L1e101"), "1e+99@0 -10@4 [L]") << "larger ones are left";
	EXPECT_EQ(Show("M1 2 3. 4", false, PathDialect::complete), "[M]1@1 2@3 3@5 4@8 ");
	EXPECT_TRUE(tape.isWhole);
	EXPECT_EQ(Show("123456789 1234567.89012345 .123456789012345"),
			  "123456789@0 1234567.89012345@10 0.123456789012345@27 ");
	constexpr std::string_view kLong = "1M2 -1.234567890123456 3L4";
	EXPECT_EQ(Show(kLong), "1@0 [M]2@2 -1.234567890123456@5 3@23 [L]4@25 ");
	EXPECT_EQ(Show(kLong, false, PathDialect::complete), "1@0 [M]2@2 -1.234567890123456@5 3@23 [L]4@25 ");
	EXPECT_EQ(Show("1L2 12345678901234567890M3"), "1@0 [L]2@2 12345678901234567168@4 [M]3@25 ");
	EXPECT_EQ(Show("1z" + std::string(70, '7') + " 8"), "1@0 [z]7.777777777777778e+69@2 8@73 ");
	const std::string large = "1L-" + std::string(40, '7') + std::string(62, '0') + "M8";
	EXPECT_EQ(Show(large), "1@0 [L]") << "as they are without exponents";
	EXPECT_EQ(rest, large.substr(2));
}

TEST_F(NumberTapeTest, EndsBeforeWhatIsNoNumber)
{
	for (const char* text : {"M1 2, L3", "M1 2 3. 4", "M1 2,,3", "M1 2--3"})
	{
		EXPECT_EQ(Show(text).substr(0, 11), "[M]1@1 2@3 ") << text;
		EXPECT_TRUE(tape.isAtEnd && !tape.isWhole) << text;
	}
	EXPECT_EQ(Show(",1"), "");
	EXPECT_EQ(rest, ",1");
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
	for (int i = 0; i != 1000; i += 4)
		many += 'h' + std::to_string(i) + ' ' + std::to_string(i + 1) + ' ' + std::to_string(i + 2) + ' ' +
				std::to_string(i + 3);
	Show(many);
	EXPECT_FALSE(tape.isAtEnd);
	EXPECT_GE(tape.numberCount, NumberTape::kMostNumbers - 1);
	for (std::size_t i = 0; i != tape.numberCount; ++i)
		ASSERT_EQ(tape.values[i], static_cast<double>(i));

	std::string some, half;
	for (int i = 0; i != 400; ++i)
	{
		some += "1e1 2 3 4 ";
		half += "1e1 2 ";
	}
	Show(some);
	EXPECT_FALSE(tape.isAtEnd) << "of unusual numbers every fourth is not too many";
	Show(half);
	EXPECT_TRUE(tape.isAtEnd && !tape.isWhole) << "but every other one is";

	const std::string far(80000, ' ');
	EXPECT_EQ(Show("M1" + far + "2"), "[M]1@1 ") << "places are small numbers";
	EXPECT_FALSE(tape.isAtEnd);
	EXPECT_EQ(Show("M1," + far + "2"), "[M]1@1 ");

	Show(std::string(1000, 'z'));
	EXPECT_FALSE(tape.isAtEnd);
	EXPECT_EQ(tape.markCount, NumberTape::kMostMarks);
	for (std::size_t i = 0; i != tape.markCount; ++i)
		ASSERT_EQ(tape.marks[i], i);
}
} // namespace
} // namespace orvan::grammar
