// SPDX-License-Identifier: MIT
#include "grammar.h"
#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvan::grammar
{
namespace
{
constexpr const char* kRefused = "refused";

std::string Path(std::string_view text)
{
	RecordingPathSink sink;
	return ParsePath(text, sink) == Parsed::value ? sink.text : kRefused;
}

std::string Points(std::string_view text)
{
	RecordingPathSink sink;
	return ParsePoints(text, sink) != Parsed::refused ? sink.text : kRefused;
}

TEST(Path, ReducesLinesToAbsoluteOnes)
{
	EXPECT_EQ(Path("M 10 10 h 5 v 5 z"), "M10,10 L15,10 L15,15 Z");
	EXPECT_EQ(Path("M10 10 H 1,2 V3"), "M10,10 L1,10 L2,10 L2,3");
	EXPECT_EQ(Path("m1 1 2 2L.5.5-1-1"), "M1,1 L3,3 L0.5,0.5 L-1,-1");
	EXPECT_EQ(Path("M1 1l1 1zl1 1m1 1"), "M1,1 L2,2 Z L2,2 M3,3");
}

TEST(Path, RaisesQuadraticsToCubics)
{
	EXPECT_EQ(Path("M0 0 Q 3 3 6 0"), "M0,0 C2,2 4,2 6,0");
	EXPECT_EQ(Path("M0 0 Q 3 3 6 0 T 12 0 18 0"), "M0,0 C2,2 4,2 6,0 C8,-2 10,-2 12,0 C14,2 16,2 18,0");
	EXPECT_EQ(Path("M1 1q3 3 6 0"), "M1,1 C3,3 5,3 7,1");
}

TEST(Path, SmoothCurvesReflectOnlyTheirOwnKind)
{
	EXPECT_EQ(Path("M0 0c1 1 2 2 3 3s1 1 2 2"), "M0,0 C1,1 2,2 3,3 C4,4 4,4 5,5");
	EXPECT_EQ(Path("M0 0C1 1 2 2 3 3L4 4S5 5 6 6"), "M0,0 C1,1 2,2 3,3 L4,4 C4,4 5,5 6,6");
	EXPECT_EQ(Path("M0 0Q3 3 6 0S7 7 8 8"), "M0,0 C2,2 4,2 6,0 C6,0 7,7 8,8");
	const std::string afterArc = Path("M0 0C1 1 2 2 3 3A1 1 0 0 1 5 5S6 6 7 7");
	EXPECT_TRUE(afterArc.ends_with(" C5,5 6,6 7,7")) << afterArc;
}

TEST(Path, ArcsEndExactlyWhereTheySay)
{
	for (const char* text : {"M0 0A10 10 0 0 1 20 0", "M0 0A1e6 1e6 0 0 1 20 0", "M0 0a1 2 30 1 0 20 0",
							 "M0 0A1e12 1e12 0 1 1 20 0", "M0 0a1 1 0 0120 0", "M10 0a11 12 0 1 0 10 0"})
	{
		const std::string events = Path(text);
		EXPECT_TRUE(events.find(" C") != std::string::npos && events.ends_with(" 20,0")) << text << ": " << events;
	}
	EXPECT_TRUE(Path("M0 0A10 10 0 0 1 20 0l1 1").ends_with(" 20,0 L21,1"));
}

TEST(Path, DegenerateArcsAreLinesOrNothing)
{
	EXPECT_EQ(Path("M5 5A1 1 0 0 1 5 5"), "M5,5");
	EXPECT_EQ(Path("M1 1L5 5za1 1 0 0 0 0 0"), "M1,1 L5,5 Z");
	EXPECT_EQ(Path("M0 0A0 1 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(Path("M0 0A1 0 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(Path("M0 0A1e-300 1e-300 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(Path("M0 0A1e100 1e100 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(Path("M0 0A1e300 1e300 0 0 1 1 1"), "M0,0 L1,1");
	EXPECT_EQ(Path("M0 0A1 1 0 0 1 1e200 1"), "M0,0 L1e+200,1");
}

// A quarter of the unit circle, seen from outside: every point of it is one away from the centre.
TEST(Path, ArcsFollowTheEllipse)
{
	struct Checker final : PathSink
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
			const double midX = (fromX + 3 * x1 + 3 * x2 + x) / 8;
			const double midY = (fromY + 3 * y1 + 3 * y2 + y) / 8;
			EXPECT_NEAR(std::hypot(midX, midY), 1, 5e-4);
			EXPECT_NEAR(std::hypot(x, y), 1, 1e-9);
			fromX = x;
			fromY = y;
			++count;
		}

		void Close() override
		{
		}

		double fromX = 1;
		double fromY = 0;
		int count = 0;
	};
	Checker checker;
	EXPECT_EQ(ParsePath("M1 0A1 1 0 0 1 0 1A1 1 0 1 1 1 0", checker), Parsed::value);
	EXPECT_GE(checker.count, 4);
	EXPECT_EQ(checker.fromX, 1);
}

TEST(Path, TheEmptyTextIsAnEmptyPath)
{
	EXPECT_EQ(Path(""), "");
	EXPECT_EQ(Path(" \n\t"), "");
	EXPECT_EQ(Path(" M1\f1\v"), "M1,1");
}

TEST(Path, MalformedDataIsRefused)
{
	for (const char* text :
		 {"M", "M10", "L1 1", "z", "M1 1,", "M,1 1", "M1,,1", "M1 1,L2 2", "M1 1L,2 2", "M1 1L2 2 3", "M0 0X", "M1. 1",
		  "M--1 1", "M 1 - 1", "M1e 1", "Minf 1", "M1px 1", "M0 0z5 5", "M0 0A-1 1 0 0 1 1 1", "M0 0A1 1 0 2 1 1 1",
		  "none", "M0 0C1 1 2 2 3 3 4 4",
		  // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): two literals, for the digit.
		  "M\xc2\xa0"
		  "1 1",
		  "M0 0T", "M0 0a+1 1 0 0 1 1 1", "M0 0a1 -1 0 1 0 2 2", "M0 0a1 1 0 -1 0 2 2", "M0 0a1 1 0 1 -0 2 2"})
		EXPECT_EQ(Path(text), kRefused) << text;
	EXPECT_EQ(Path(std::string_view("M1 1\0L2 2", 9)), kRefused);
}

TEST(Path, WhatIsNotFiniteIsRefused)
{
	for (const char* text : {"M1e999 1", "M1.8e308 1", "M1e308 1l1e308 0", "M0 0C1 1-1e308 0 1e308 0S1 1 2 2",
							 "M0 0A1.8e308 1 0 0 1 1 1", "M0 0Q1e308 0 0 0T1.7e308 0t1e308 0"})
		EXPECT_EQ(Path(text), kRefused) << text;
}

TEST(Path, LongNumbersAreReadAsTheLibraryReadsThem)
{
	EXPECT_EQ(Path("M0.1234567890123456789012345 0000000001"), "M0.12345678901234568,1");
	EXPECT_EQ(Path("M1e0000000000000002 12345678901234567890123"), "M100,1.2345678901234568e+22");
	EXPECT_EQ(Path("M1e99999999999 1"), kRefused);
	EXPECT_EQ(Path("M12345678901234567890123e2147483647 1"), kRefused);
	EXPECT_EQ(Points("1,12345678901234567890123e2147483647"), kRefused);
}

TEST(Points, TheFirstPairMovesTheOthersDraw)
{
	EXPECT_EQ(Points("1,2"), "M1,2");
	EXPECT_EQ(Points("\n1,2 3,4\t5 , 6 "), "M1,2 L3,4 L5,6");
	EXPECT_EQ(Points("1-2 -3-4"), "M1,-2 L-3,-4");
	EXPECT_EQ(Points("1.,2."), "M1,2");
	EXPECT_EQ(Points("1e1,1e-1"), "M10,0.1");
	EXPECT_EQ(Points(" "), "");
}

TEST(Points, MalformedListsAreRefused)
{
	for (const char* text : {"1", "1,2,3", "1,2,", "1,,2", "1-2-3-4", "1.5.5", "x", "+1+2", "1,2px", "nan,1", "1e999,2",
							 "1,2 1e999,3", "1,2 3,1e999", ",1,2", "1.8e308,1", "1,2;3,4", "none"})
		EXPECT_EQ(Points(text), kRefused) << text;
}
} // namespace
} // namespace orvan::grammar
