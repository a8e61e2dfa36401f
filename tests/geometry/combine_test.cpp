// SPDX-License-Identifier: MIT
#include "geometry_module.h"

#include <numbers>
#include <random>

namespace orvan
{
namespace
{

using Operation = SVGOutlineOperation;
constexpr SVGFillRule kNonzero = SVGFillRule::nonzero;
constexpr SVGFillRule kEvenodd = SVGFillRule::evenodd;

class Combining : public GeometryTest
{
protected:
	static SVGOutlineRef Make(const std::string& data, const std::string& transform = "")
	{
		const AskedPicture picture("<g transform='" + transform + "'><path id='p' d='" + data + "'/></g>");
		return Must(picture.geometry->GetOutline(picture["p"], SVGCoordinates::view));
	}

	static SVGOutlineRef Combine(const SVGOutlineRef& a, Operation operation, const SVGOutlineRef& b)
	{
		return Must(a->Combine(b, operation, kNonzero, kNonzero, 0.0));
	}

	static std::string Describe(const SVGOutlineRef& outline)
	{
		std::string text;
		for (const SVGPathCommand& command : Must(outline->GetPath()))
		{
			text += "MLCZ"[static_cast<int>(command.type)];
			if (command.type != SVGPathCommandType::close)
				text += AskedPicture::Round(command.points[2].x) + ',' + AskedPicture::Round(command.points[2].y) + ' ';
		}
		return text;
	}

	/// The result of each operation on two paths, one a line.
	static std::string All(const SVGOutlineRef& a, const SVGOutlineRef& b)
	{
		std::string text;
		for (const Operation operation :
			 {Operation::unite, Operation::intersect, Operation::subtract, Operation::exclude})
			text += Describe(Combine(a, operation, b)) + '\n';
		return text;
	}

	static Float AreaOf(const SVGOutlineRef& outline)
	{
		return Must(outline->GetArea(kNonzero));
	}
};

TEST_F(Combining, PutsSquaresTogether)
{
	const SVGOutlineRef square = Make("M0 0h10v10h-10z");
	const struct
	{
		const char* other;
		const char* results;
	} cases[] = {
		{"M5 5h10v10h-10z", "M0,10 L0,0 L10,0 L10,5 L15,5 L15,15 L5,15 L5,10 Z\nM5,10 L5,5 L10,5 L10,10 Z\n"
							"M0,10 L0,0 L10,0 L10,5 L5,5 L5,10 Z\n"
							"M0,10 L0,0 L10,0 L10,5 L5,5 L5,10 ZM5,15 L5,10 L10,10 L10,5 L15,5 L15,15 Z\n"},
		// Side by side.
		{"M10 0h10v10h-10z", "M0,10 L0,0 L20,0 L20,10 Z\n\nM0,10 L0,0 L10,0 L10,10 Z\nM0,10 L0,0 L20,0 L20,10 Z\n"},
		// Corner to corner.
		{"M10 10h10v10h-10z", "M0,10 L0,0 L10,0 L10,10 ZM10,20 L10,10 L20,10 L20,20 Z\n\nM0,10 L0,0 L10,0 L10,10 Z\n"
							  "M0,10 L0,0 L10,0 L10,10 ZM10,20 L10,10 L20,10 L20,20 Z\n"},
		// The same, the other way round.
		{"M10 0v10h-10v-10z", "M0,10 L0,0 L10,0 L10,10 Z\nM0,10 L0,0 L10,0 L10,10 Z\n\n\n"},
		// One in the other.
		{"M2 2h5v5h-5z", "M0,10 L0,0 L10,0 L10,10 Z\nM2,7 L2,2 L7,2 L7,7 Z\n"
						 "M0,10 L0,0 L10,0 L10,10 ZM2,2 L2,7 L7,7 L7,2 Z\n"
						 "M0,10 L0,0 L10,0 L10,10 ZM2,2 L2,7 L7,7 L7,2 Z\n"},
		// A side in common in part, from outside and from inside.
		{"M10 2h5v5h-5z", "M0,10 L0,0 L10,0 L10,2 L15,2 L15,7 L10,7 L10,10 Z\n\nM0,10 L0,0 L10,0 L10,10 Z\n"
						  "M0,10 L0,0 L10,0 L10,2 L15,2 L15,7 L10,7 L10,10 Z\n"},
		{"M5 2h5v5h-5z", "M0,10 L0,0 L10,0 L10,10 Z\nM5,7 L5,2 L10,2 L10,7 Z\n"
						 "M0,10 L0,0 L10,0 L10,2 L5,2 L5,7 L10,7 L10,10 Z\n"
						 "M0,10 L0,0 L10,0 L10,2 L5,2 L5,7 L10,7 L10,10 Z\n"},
	};
	for (const auto& [other, results] : cases)
		EXPECT_EQ(results, All(square, Make(other))) << other;
	// Open subpaths count as closed, a winding of two and one of minus one as inside, crossings are taken out.
	EXPECT_EQ("M0,10 L0,0 L10,0 L10,10 Z", Describe(Combine(Make("M10 10v-10h-10v10"), Operation::unite, {})));
	EXPECT_EQ("M0,10 L0,0 L10,10 ZM20,10 L20,0 L30,10 Z",
			  Describe(Combine(Make("M10 10L0 0V10M20 10V0L30 10"), Operation::unite, {})));
	EXPECT_EQ("M0,10 L0,0 L5,5 ZM5,5 L10,0 L10,10 Z",
			  Describe(Combine(Make("M0 0L10 10V0L0 10z"), Operation::unite, {})));
	const SVGOutlineRef twice = Make("M0 0h10v10h-10zM2 2h4v4h-4z");
	EXPECT_EQ(100.0, Must(twice->GetArea(kNonzero)));
	EXPECT_EQ(84.0, Must(twice->GetArea(kEvenodd)));
	EXPECT_EQ(16.0, AreaOf(Must(square->Combine(twice, Operation::subtract, kNonzero, kEvenodd, 0.0))));
}

TEST_F(Combining, HasTheAreasThatAreKnown)
{
	const char* const frame = "M0 0h20v20h-20zM5 5v10h10v-10z";
	const char* const parabola = "M0 0Q5 10 10 0z"; // 5 high, and so two thirds of 50.
	const double cap = 2.0 / 3.0 * std::sqrt(50.0) * 2.5;
	// Above the crossing, and the two legs below.
	const double loop = 240.0 * (std::sqrt(3.0) * (30.0 / 32.0 - 9.0 / 16.0) - 0.25);
	const double lens = 2.0 / 3.0 * std::sqrt(50.0) * 5.0;
	const struct
	{
		const char* a;
		const char* b;
		double first, second, common;
	} cases[] = {
		{"M0 0h10l-10 10z", "M10 10h-10l10-10z", 50.0, 50.0, 0.0},
		{"M0 0h10v10h-10z", "M4-2h2v14h-2z", 100.0, 28.0, 20.0},
		{"M0 0L10 10L0 20z", "M10 0L0 10L10 20z", 100.0, 100.0, 50.0},
		{frame, "M8 8h4v4h-4z", 300.0, 16.0, 0.0},
		{frame, "M5 5h10v10h-10z", 300.0, 100.0, 0.0},
		{frame, "M4 4h12v12h-12z", 300.0, 144.0, 44.0},
		{frame, "M5 5h10l-10 10z", 300.0, 50.0, 0.0},
		{frame, "M0 0L20 20H0z", 300.0, 200.0, 150.0},
		// Several lines upon each other, in parts and in both directions.
		{"M0 0h10v10h-10zM0 0h5v10h-5z", "M2 0h6v10h-6zM0 0v5h10v-5z", 100.0, 50.0, 50.0},
		{"M0 0h10v10h-10zM10 0h10v10h-10z", "M5 0h10v10h-10z", 200.0, 100.0, 100.0},
		{"M0 0h10v.001h-10z", "M0 0h10v10h-10z", 0.01, 100.0, 0.01},
		{"M0 0h10M20 0h10", "M0 0h10v10h-10z", 0.0, 100.0, 0.0},
		{"M10 10h10v10h-10", "M15 25v-10h10v10", 100.0, 100.0, 25.0},
		// Curves that touch a line from below, that lines cut, that cut each other, and that are the same.
		{parabola, "M0 0h10v5h-10z", 100.0 / 3.0, 50.0, 100.0 / 3.0},
		{parabola, "M0 5h10v5h-10z", 100.0 / 3.0, 50.0, 0.0},
		{parabola, "M0 0h10v2.5h-10z", 100.0 / 3.0, 25.0, 100.0 / 3.0 - cap},
		{parabola, "M0 5Q5-5 10 5z", 100.0 / 3.0, 100.0 / 3.0, lens},
		{parabola, "M10 0Q5 10 0 0z", 100.0 / 3.0, 100.0 / 3.0, 100.0 / 3.0},
		{parabola, "M0 0Q2.5 5 5 5L5 0z", 100.0 / 3.0, 50.0 / 3.0, 50.0 / 3.0},
		// A loop that turns the other way is inside as well.
		{"M0 0C30 20-20 20 10 0z", "M-9-9h1v1h-1z", loop, 1.0, 0.0},
	};
	for (const auto& [a, b, first, second, common] : cases)
	{
		const SVGOutlineRef one = Make(a);
		const SVGOutlineRef other = Make(b);
		const double tolerance = 1e-4 * (first + second);
		EXPECT_NEAR(first, AreaOf(one), tolerance) << a;
		EXPECT_NEAR(second, AreaOf(other), tolerance) << b;
		EXPECT_NEAR(common, AreaOf(Combine(one, Operation::intersect, other)), tolerance) << a << ' ' << b;
		EXPECT_NEAR(first + second - common, AreaOf(Combine(one, Operation::unite, other)), tolerance) << a << ' ' << b;
		EXPECT_NEAR(first - common, AreaOf(Combine(one, Operation::subtract, other)), tolerance) << a << ' ' << b;
		EXPECT_NEAR(second - common, AreaOf(Combine(other, Operation::subtract, one)), tolerance) << a << ' ' << b;
		EXPECT_NEAR(first + second - 2.0 * common, AreaOf(Combine(one, Operation::exclude, other)), tolerance)
			<< a << ' ' << b;
	}
}

TEST_F(Combining, KeepsCurvesAndFindsWhereTheyMeet)
{
	const char* const left = "M10 0A10 10 0 1 1 -10 0A10 10 0 1 1 10 0z";
	const char* const right = "M20 0A10 10 0 1 1 0 0A10 10 0 1 1 20 0z";
	const SVGOutlineRef both = Combine(Make(left), Operation::intersect, Make(right));
	const BaseArray<SVGPathCommand> commands = Must(both->GetPath());
	EXPECT_LE(commands.GetCount(), 8u); // Parts of the curves that there were, no more.
	const double circle = AreaOf(Make(left));
	EXPECT_NEAR(100.0 * (2.0 * std::numbers::pi / 3.0 - std::sqrt(3.0) / 2.0), AreaOf(both), 0.1);
	EXPECT_NEAR(2.0 * circle - AreaOf(both), AreaOf(Combine(Make(left), Operation::unite, Make(right))), 1e-9);
	const SVGBox box = both->GetBounds({});
	EXPECT_NEAR(10.0, box.width, 1e-9);
	EXPECT_NEAR(2.0 * std::sqrt(75.0), box.height, 0.01);
	for (const SVGPathCommand& command : commands)
	{
		if (command.type == SVGPathCommandType::close)
			continue;
		// Each end is on the circles.
		EXPECT_LE(Must(Make(left)->FindNearest(command.points[2])).distance, 10.001);
		EXPECT_LE(std::min(Must(Make(left)->FindNearest(command.points[2])).distance,
						   Must(Make(right)->FindNearest(command.points[2])).distance),
				  1e-9);
	}
	// Touching from inside and from outside, and a curve that is the same as another in parts.
	EXPECT_NEAR(circle - circle / 4.0,
				AreaOf(Combine(Make(left), Operation::subtract, Make(left, "translate(5) scale(.5)"))), 1e-4);
	EXPECT_EQ("", Describe(Combine(Make(left), Operation::intersect, Make(left, "translate(20)"))));
	EXPECT_EQ("", Describe(Combine(Make("M0 0C0 8 8 8 8 0"), Operation::exclude, Make("M0 0C0 4 2 6 4 6S8 4 8 0"))));
}

/// The same, turned by angles that no grid knows, far away, small and large.
TEST_F(Combining, HoldsWhereverOutlinesLie)
{
	for (const char* place : {"rotate(17)", "translate(123456 -98765) rotate(-33)", "scale(1e-7) rotate(1)",
							  "scale(1e30) rotate(71)", "translate(1e5) scale(.01)"})
	{
		const SVGOutlineRef square = Make("M0 0h10v10h-10z", place);
		const double area = AreaOf(square);
		// A part of a side that ends where no vertex of the other is.
		const SVGOutlineRef beside = Make("M10 3.3h3v3.4h-3z", place);
		const SVGOutlineRef united = Combine(square, Operation::unite, beside);
		EXPECT_EQ(9u, Must(united->GetPath()).GetCount()) << place << ' ' << Describe(united);
		EXPECT_NEAR(1.102, AreaOf(united) / area, 1e-5) << place;
		EXPECT_EQ("", Describe(Combine(square, Operation::intersect, beside))) << place;
		EXPECT_EQ("", Describe(Combine(square, Operation::exclude, Make("M0 0h3h7v4v6h-10z", place)))) << place;
		EXPECT_NEAR(0.25, AreaOf(Combine(square, Operation::intersect, Make("M5 5H99V99H5z", place))) / area, 1e-5);
	}
	const SVGOutlineRef nothing = Make("M5 5h0z");
	EXPECT_EQ("", Describe(Combine(nothing, Operation::unite, nothing)));
	EXPECT_EQ("There is no operation 4 on outlines.",
			  MessageOf(nothing->Combine(nothing, static_cast<Operation>(4), kNonzero, kNonzero, 0.0)));
	EXPECT_FALSE(nothing->Combine(nothing, Operation::unite, kNonzero, kNonzero, -1.0).IsOk());
	EXPECT_FALSE(nothing->GetArea(static_cast<SVGFillRule>(0)).IsOk());
}

/// What is in the result at random points is what the operation says of both, and areas add up.
TEST_F(Combining, AgreesWithPointsAndAreasOfTangledOutlines)
{
	std::mt19937 random(1);
	std::uniform_int_distribution<int> place(0, 100);
	int checked = 0;
	for (int run = 0; run < 8; run++)
	{
		SVGOutlineRef shapes[2];
		for (SVGOutlineRef& shape : shapes)
		{
			// On a coarse grid points and lines coincide.
			const int step = run % 3 == 0 ? 25 : 1;
			std::string data = "M";
			const auto addPoint = [&]
			{
				data += std::to_string(place(random) / step * step) + ' ' +
						std::to_string(place(random) / step * step) + ' ';
			};
			addPoint();
			for (int i = 0; i < 6; i++)
			{
				const bool isCurve = run % 2 == 1 || i % 3 == 0;
				data += isCurve ? 'C' : 'L';
				for (int count = isCurve ? 3 : 1; count > 0; count--)
					addPoint();
			}
			shape = Make(data);
		}
		const SVGFillRule rule = run % 4 < 2 ? kNonzero : kEvenodd;
		double areas[4];
		for (int operation = 0; operation < 4; operation++)
		{
			const SVGOutlineRef result =
				Must(shapes[0]->Combine(shapes[1], static_cast<Operation>(operation), rule, kNonzero, 0.0));
			areas[operation] = AreaOf(result);
			for (int i = 0; i < 30; i++)
			{
				const Vector2d point{place(random) + 0.123, place(random) + 0.456};
				if (std::min(Must(shapes[0]->FindNearest(point)).distance,
							 Must(shapes[1]->FindNearest(point)).distance) < 0.01)
					continue;
				const bool isIn = shapes[0]->Contains(point, rule);
				const bool isInOther = shapes[1]->Contains(point, kNonzero);
				const bool wanted[] = {isIn || isInOther, isIn && isInOther, isIn && !isInOther, isIn != isInOther};
				EXPECT_EQ(wanted[operation], result->Contains(point, kNonzero)) << run << ' ' << operation;
				EXPECT_EQ(wanted[operation], result->Contains(point, kEvenodd)) << run << ' ' << operation;
				checked++;
			}
		}
		const double first = Must(shapes[0]->GetArea(rule));
		const double second = AreaOf(shapes[1]);
		EXPECT_NEAR(first + second, areas[0] + areas[1], 1e-3) << run;
		EXPECT_NEAR(areas[0] - areas[1], areas[3], 1e-3) << run;
		EXPECT_NEAR(first - areas[1], areas[2], 1e-3) << run;
	}
	EXPECT_GT(checked, 800);
}

} // namespace
} // namespace orvan
