// SPDX-License-Identifier: MIT
#include "fast/path_plan.h"

#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace orvan::grammar
{
namespace
{
class PathPlanTest : public testing::Test
{
protected:
	void SetUp() override
	{
		if (!NumberTape::IsAvailable())
			GTEST_SKIP() << "this processor records no tapes";
	}

	/// The letter and the first number of each step, and what is left of the text, behind the letter that goes on.
	std::string Show(std::string_view text, Step going = Step::none, PathDialect dialect = PathDialect::plain)
	{
		tape->Record(text.data(), text.data() + text.size(), going != Step::none, dialect);
		plan->Make(*tape, text.data(), text.data() + text.size(), dialect, going);
		std::string shown;
		for (std::size_t i = 0; i != plan->GetCount(); ++i)
		{
			shown += PathPlan::GetLetter(plan->GetStep(i));
			if (plan->GetStep(i) != Step::close)
				AppendNumber(shown, tape->values[plan->GetFirstNumber(i)]);
			shown += ' ';
		}
		shown += '|';
		if (plan->GetGoing() != Step::none)
			shown += PathPlan::GetLetter(plan->GetGoing());
		return shown += text.substr(static_cast<std::size_t>(plan->GetPlace() - text.data()));
	}

	std::unique_ptr<NumberTape> tape = std::make_unique<NumberTape>();
	std::unique_ptr<PathPlan> plan = std::make_unique<PathPlan>();
};

TEST_F(PathPlanTest, MakesStepsOfRunsOfNumbers)
{
	EXPECT_EQ(Show("M1 2 3 4h5"), "M1 L3 h5 |h");
	EXPECT_EQ(Show("m1 2 3 4 5 6zZ"), "m1 l3 l5 Z Z |");
	EXPECT_EQ(Show("7,8 9 10L1 2", Step::lineBy), "l7 l9 L1 |L") << "of a run that began before";
	EXPECT_EQ(Show("H1 2V3v4C1 2 3 4 5 6 7 8 9 10 11 12"), "H1 H2 V3 v4 C1 C7 |C");
	EXPECT_EQ(Show("s1 2 3 4S5 6 7 8q1 2 3 4Q5 6 7 8t1 2 3 4T5 6"), "s1 S5 q1 Q5 t1 t3 T5 |T");
	std::string many = "h", steps;
	for (int i = 0; i != 100; ++i)
	{
		many += std::to_string(i) + ' ';
		steps += 'h' + std::to_string(i) + ' ';
	}
	EXPECT_EQ(Show(many + "v7"), steps + "v7 |v");
}

TEST_F(PathPlanTest, TakesArcsApart)
{
	EXPECT_EQ(Show("a5 6 30 0 1 7 8 5 6 0 10-9 8"), "a7 a-9 |a");
	EXPECT_TRUE(plan->GetArc(0).isSweep && !plan->GetArc(0).isLarge);
	EXPECT_TRUE(!plan->GetArc(1).isSweep && plan->GetArc(1).isLarge);
	EXPECT_EQ(plan->GetArc(0).radiusY, 6);
	EXPECT_EQ(plan->GetArc(0).rotation, 30);
	EXPECT_EQ(Show("A5 6 0 01.5.5 5 6 0 117 8z"), "A0.5 A7 Z |");
	EXPECT_EQ(plan->GetArcCount(), 2U);
	for (const char* text : {"a5 5 0 2 0 1 1", "a5 5 0 0 1e0 1 1", "a5 5 0 011e0 1", "a5 5 0 0.1 1 1",
							 "a-5 5 0 0 1 1 1", "a5,+5 0 0 1 1 1", "a5 5 0 01e0 1 7"})
	{
		EXPECT_EQ(Show(text), std::string("|") + text) << "not for a tape";
		EXPECT_TRUE(plan->IsStuck()) << text;
	}
	// More digits than the complete dialect has this read.
	EXPECT_EQ(Show("a5 5 0 01.23456789012345678 2"), "a0.2345678901234568 |a");
	EXPECT_EQ(Show("a5 5 0 01.23456789012345678 2", Step::none, PathDialect::complete).front(), '|');
	EXPECT_EQ(Show("a-5 5 0 0 1 1 1", Step::none, PathDialect::complete), "a1 |a");
}

TEST_F(PathPlanTest, StopsInFrontOfWhatIsNoCommandsOwn)
{
	EXPECT_EQ(Show("M1 2L3 4 -5M6 7"), "M1 L3 |L-5M6 7");
	EXPECT_EQ(Show("-5M6 7", Step::line), "|L-5M6 7");
	EXPECT_TRUE(plan->IsStuck()) << "nothing came of it";
	EXPECT_EQ(Show("M1 2z3 4"), "M1 Z |3 4");
	EXPECT_EQ(Show("M1 2+3"), "M1 |L+3");
	EXPECT_EQ(Show("M1 2 ,,3"), "M1 |L ,,3");
	EXPECT_EQ(Show("3M1 2"), "|3M1 2");
	EXPECT_EQ(Show("3M1 2", Step::lineBy), "|l3M1 2");
	EXPECT_EQ(Show("M1 2L3 4-5e1z"), "M1 L3 |L-5e1z");
	EXPECT_EQ(Show("7,8 -9L1 2", Step::lineBy), "l7 |l-9L1 2");
	EXPECT_EQ(Show("M1 2c3"), "M1 |Lc3");
	EXPECT_TRUE(plan->IsStuck()) << "the text is at its end";
}

// A tape that is full ends anywhere; what is left of a command is planned with the next one.
TEST_F(PathPlanTest, GoesOnWhereATapeIsFull)
{
	std::string text = "M0 0";
	while (text.size() < 8 * NumberTape::kMostNumbers)
		text += "c-1 -2 -3 -4 -5 -6";
	std::size_t planned = 0;
	Step going = Step::none;
	std::string_view rest = text;
	do
	{
		const std::string shown = Show(rest, going);
		planned += plan->GetCount();
		going = plan->GetGoing();
		rest.remove_prefix(static_cast<std::size_t>(plan->GetPlace() - rest.data()));
		ASSERT_TRUE(rest.empty() || rest.front() == '-' || rest.front() == 'c') << rest.substr(0, 20);
	} while (!plan->IsStuck());
	EXPECT_EQ(planned, 1 + (text.size() - 4) / 18);
	EXPECT_TRUE(rest.empty());
}
} // namespace
} // namespace orvan::grammar
