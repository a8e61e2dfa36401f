// SPDX-License-Identifier: MIT
#include "complete/paths.h"
#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace orvan::grammar::complete
{
namespace
{
/// The segments, and "!" with the place of the fault behind them.
std::string PathOf(std::string_view text)
{
	RecordingPathSink sink;
	const Progress progress = complete::ParsePath(text, sink);
	return progress.isWhole ? sink.text : sink.text + " !" + std::to_string(progress.offset);
}

std::string PointsOf(std::string_view text)
{
	RecordingPathSink sink;
	const Progress progress = complete::ParsePoints(text, sink);
	return progress.isWhole ? sink.text : sink.text + " !" + std::to_string(progress.offset);
}

TEST(CompletePath, DrawsUpToTheFirstFault)
{
	EXPECT_EQ(PathOf("M1 1L5 5 6"), "M1,1 L5,5 !10");
	EXPECT_EQ(PathOf("M1 1 L2 2 X 5 5"), "M1,1 L2,2 !10");
	EXPECT_EQ(PathOf("M0 0C1 1 2 2 3 3 4 4Z"), "M0,0 C1,1 2,2 3,3 !20");
	EXPECT_EQ(PathOf("M0 0z5 5"), "M0,0 Z !5");
	EXPECT_EQ(PathOf("M0 0H10L3 +-4"), "M0,0 L10,0 !10");
	EXPECT_EQ(PathOf("M0 0L1e308 0l1e308 0L1 1"), "M0,0 L1e+308,0 !20");
	EXPECT_EQ(PathOf("M0 0L1e400 5"), "M0,0 !5");
	EXPECT_EQ(PathOf("M0 0A5 5 0 2 1 10 0"), "M0,0 !11");
	EXPECT_EQ(PathOf("L5 5"), " !0");
	EXPECT_EQ(PathOf("M0 0L5 5em"), "M0,0 L5,5 !8");
	// The fault stands where it stands in texts that are longer than any buffer.
	std::string text = "M0 0";
	for (int i = 0; i != 100; ++i)
		text += "L1 1";
	const std::size_t place = text.size();
	const std::string outcome = PathOf(text + "?" + std::string(300, ' '));
	EXPECT_TRUE(outcome.ends_with(" !" + std::to_string(place))) << outcome;
	for (const char* empty : {"", " \n", "none"})
		EXPECT_EQ(PathOf(empty), "");
}

TEST(CompletePath, TakesWhatBrowsersTake)
{
	EXPECT_EQ(PathOf("M13. 5.L-.5.5-1-1"), "M13,5 L-0.5,0.5 L-1,-1");
	EXPECT_EQ(PathOf("M0,0,L5 5,Z"), "M0,0 L5,5 Z");
	EXPECT_EQ(PathOf("M0 0L5 5 , "), "M0,0 L5,5");
	EXPECT_EQ(PathOf("M0 0L5 5,,L6 6"), "M0,0 L5,5 !9");
	EXPECT_EQ(PathOf("M,1 1"), " !1");
	EXPECT_EQ(PathOf("M1 1,2 2,3 3"), "M1,1 L2,2 L3,3");
	EXPECT_EQ(PathOf("M0.1234567890123456789012345 1e-400"), "M0.12345678901234568,0");
}

TEST(CompletePath, FlagsRunTogetherAndRadiiHaveNoSign)
{
	const std::string arc = PathOf("M0 0A5 5 0 0 1 10 0");
	EXPECT_TRUE(arc.ends_with(" 10,0")) << arc;
	for (const char* text : {"M0 0A5 5 0 0110 0", "M0 0A5 5 0 01 10 0", "M0 0A5 5 0 0 110 0", "M0 0A5 5 0 0,1,10,0",
							 "M0 0A-5 -5 0 0110 0", "M0 0A5-5 0 0110 0", "M0 0A+5 5. 0 0110 0", "M0 0a5,5,0,0,1,10,0",
							 "M0 0a5 5 0 0 110. 0", "M0 0a5 5 0 0110-0a0 0 0 1 0 0 0"})
	{
		EXPECT_EQ(PathOf(text), arc) << text;
	}
	EXPECT_EQ(PathOf("M0 0a5 5 0 01.5.5 5 5 0 10-.5.5"), PathOf("M0 0a5 5 0 0 1 .5 .5a5 5 0 1 0 -.5 .5"));
	for (const char* text :
		 {"M0 0a5 5 0 +1 1 10 0", "M0 0a5 5 0 1.1 1 10 0", "M0 0a5 5 0 0,,1 10 0", "M0 0a5 5 0 11 10"})
		EXPECT_TRUE(PathOf(text).starts_with("M0,0 !")) << text;
}

// Arcs of many lengths, so that what is seen ahead ends at every place of one.
TEST(CompletePath, ArcsAreTheSameWhereverTheyStand)
{
	std::string dense = "M0 0";
	std::string wide = "M0 0";
	for (int i = 0; i != 300; ++i)
	{
		const std::string radius =
			"5" + std::string(i % 7 == 0 ? 0 : 1, '.') + std::string(static_cast<std::size_t>(i % 7), '2');
		const std::string flags = i % 3 == 0 ? "01" : "10";
		const std::string gap(static_cast<std::size_t>(i % 2), ' ');
		const std::string end = i % 5 == 0 ? ".5" : std::to_string(i % 11 + 1);
		dense += "a" + radius + " 4 0 " + flags[0] + gap + flags[1] + (i % 4 == 0 ? " " : "") + end + "-3";
		// Three blanks are more than is seen ahead.
		wide += "a   " + radius + "   4   0   " + flags[0] + "   " + flags[1] + "   " + end + "   -3";
	}
	EXPECT_EQ(PathOf(dense), PathOf(wide));
	EXPECT_EQ(PathOf(dense).find('!'), std::string::npos);
}

/// Checks the cubics of arcs on the unit circle around `centerX`, `centerY`, stretched and turned.
struct ArcChecker final : PathSink
{
	void MoveTo(double, double) override
	{
	}

	void LineTo(double, double) override
	{
		ADD_FAILURE();
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		for (int i = 0; i <= 100; ++i)
		{
			const double t = i / 100.0;
			const double s = 1 - t;
			const double pointX = s * s * s * fromX + 3 * s * s * t * x1 + 3 * s * t * t * x2 + t * t * t * x;
			const double pointY = s * s * s * fromY + 3 * s * s * t * y1 + 3 * s * t * t * y2 + t * t * t * y;
			farthest = std::max(farthest, std::fabs(std::hypot(pointX, pointY) - 1));
		}
		turned += std::atan2(fromX * y - fromY * x, fromX * x + fromY * y);
		firstX = x1;
		firstY = y1;
		fromX = x;
		fromY = y;
		++count;
	}

	void Close() override
	{
	}

	double fromX = 1;
	double fromY = 0;
	double firstX = 0; ///< Control point of the last cubic.
	double firstY = 0;
	double turned = 0;
	double farthest = 0;
	int count = 0;
};

TEST(CompletePath, ArcsStayOnTheEllipse)
{
	for (int degrees = 5; degrees != 360; degrees += 5)
	{
		for (bool isSweep : {true, false})
		{
			const double angle = (isSweep ? degrees : -degrees) * 3.141592653589793 / 180;
			ArcChecker checker;
			std::string text = "M1 0A1 1 0 ";
			text += degrees > 180 ? "1 " : "0 ";
			text += isSweep ? "1 " : "0 ";
			AppendNumber(text, std::cos(angle));
			text += ' ';
			AppendNumber(text, std::sin(angle));
			ASSERT_TRUE(complete::ParsePath(text, checker).isWhole) << text;
			EXPECT_EQ(checker.count, (degrees + 89) / 90) << text;
			EXPECT_LT(checker.farthest, 2.8e-4) << text;
			EXPECT_NEAR(checker.turned, angle, 1e-6) << text;
		}
	}
}

TEST(CompletePath, ArcsAreStretchedTurnedAndGrown)
{
	// The control points of a quarter stand 4/3·tan(22.5°) of the radii away from the ends.
	for (const char* text :
		 {"M0 0A100 200 0 0 1-100 200", "M0 0A200 100 90 0 1-100 200", "M0 0A200 100-270 0 1-100 200"})
	{
		ArcChecker checker;
		ASSERT_TRUE(complete::ParsePath(text, checker).isWhole);
		EXPECT_NEAR(checker.firstX, 0, 1e-9) << text;
		EXPECT_NEAR(checker.firstY, 110.45694996615869, 1e-9) << text;
	}
	RecordingPathSink sink;
	ASSERT_TRUE(complete::ParsePath("M0 0A1 1 0 0 1 20 0", sink).isWhole);
	EXPECT_TRUE(sink.text.find(" 10,-10 C") != std::string::npos) << sink.text;
	EXPECT_EQ(PathOf("M5 5A1 1 0 0 1 5 5"), "M5,5");
	EXPECT_EQ(PathOf("M0 0A0 1 0 0 1 1 1A1 0 0 0 1 2 2"), "M0,0 L1,1 L2,2");
	EXPECT_EQ(PathOf("M0 0A1e300 1e300 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(PathOf("M0 0A1e-300 1e-300 0 0 1 1 1"), "M0,0 L1,1");
}

TEST(CompletePoints, KeepWhatStandsBeforeAFault)
{
	EXPECT_EQ(PointsOf(" 1-2-3.5.5 ,6 7 "), "M1,-2 L-3.5,0.5 L6,7");
	EXPECT_EQ(PointsOf("1.,2.,5,6"), "M1,2 L5,6");
	EXPECT_EQ(PointsOf("1,2,3"), "M1,2 !5");
	EXPECT_EQ(PointsOf("1 2;5 6"), "M1,2 !3");
	EXPECT_EQ(PointsOf("1 2,"), "M1,2 !4");
	EXPECT_EQ(PointsOf(",1 2"), " !0");
	EXPECT_EQ(PointsOf(" "), "");
}

TEST(CompletePath, TheFunctionHoldsData)
{
	PathFunction path;
	EXPECT_EQ(ParsePathFunction(" PATH( 'M0 0\\4c 5 5' )", path), Parsed::value);
	EXPECT_TRUE(path.hasEscapes);
	EXPECT_EQ(ResolveEscapes(path.data), "M0 0L5 5");
	EXPECT_EQ(ParsePathFunction("path(\"M0 0\"", path), Parsed::value);
	EXPECT_EQ(path.data, "M0 0");
	EXPECT_EQ(ParsePathFunction("None", path), Parsed::nothing);
	for (const char* text : {"path(M0 0)", "path('a' 'b')", "path('a') x", "'a'", "path(evenodd, 'a')", ""})
		EXPECT_EQ(ParsePathFunction(text, path), Parsed::refused) << text;
}
} // namespace
} // namespace orvan::grammar::complete
