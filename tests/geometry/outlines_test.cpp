// SPDX-License-Identifier: MIT
#include "geometry_module.h"

#include <limits>
#include <numbers>
#include <tuple>

namespace orvan
{
namespace
{

using In = SVGCoordinates;

class Outlines : public GeometryTest
{
protected:
	/// The outline of a path.
	static SVGOutlineRef Make(const std::string& data)
	{
		const AskedPicture picture("<path id='p' d='" + data + "'/>");
		return Must(picture.geometry->GetOutline(picture["p"], In::element));
	}

	static std::string PlaceText(const Result<SVGOutlinePlace>& place)
	{
		if (!place.IsOk())
			return MessageOf(place);
		const auto& [point, direction, length, distance] = place.GetValue();
		std::string text;
		for (const double number : {point.x, point.y, direction.x, direction.y, length, distance})
			text += AskedPicture::Round(number) + ' ';
		text.pop_back();
		return text;
	}
};

TEST_F(Outlines, AreMeasuredAlongLinesAndCurves)
{
	const SVGOutlineRef lines = Make("M0 0h10v5M20 20h10z");
	EXPECT_EQ(35.0, Must(lines->GetLength()));
	EXPECT_EQ("0 0 1 0 0 0", PlaceText(lines->GetPlace(-3)));
	EXPECT_EQ("10 2 0 1 12 0", PlaceText(lines->GetPlace(12)));
	EXPECT_EQ("10 5 0 1 15 0", PlaceText(lines->GetPlace(15)));
	EXPECT_EQ("22 20 1 0 17 0", PlaceText(lines->GetPlace(17)));
	EXPECT_EQ("20 20 -1 0 35 0", PlaceText(lines->GetPlace(99)));
	EXPECT_FALSE(lines->GetPlace(NAN).IsOk());
	Must(lines->SetPath(Must(Make("M0 0h7")->GetPath())));
	EXPECT_EQ(7.0, Must(lines->GetLength()));
	// A parabola, whose length is known: (2t, t²) from 0 to 1.
	const SVGOutlineRef parabola = Make("M0 0Q1 0 2 1");
	const double length = std::sqrt(2.0) + std::asinh(1.0);
	EXPECT_NEAR(length, Must(parabola->GetLength()), 1e-10);
	const double upToHalf = (std::sqrt(1.25) * 0.5 + std::asinh(0.5));
	const SVGOutlinePlace half = Must(parabola->GetPlace(upToHalf));
	EXPECT_NEAR(1.0, half.point.x, 1e-9);
	EXPECT_NEAR(0.25, half.point.y, 1e-9);
	EXPECT_NEAR(0.5, half.direction.y / half.direction.x, 1e-9);
	// A cusp, and control points in the ends.
	EXPECT_NEAR(10.0, Must(Make("M0 0C0 0 10 0 10 0")->GetLength()), 1e-9);
	EXPECT_EQ("0 0 1 0 0 0", PlaceText(Make("M0 0C0 0 10 0 10 0")->GetPlace(0)));
	EXPECT_EQ("3 4 0 0 0 0", PlaceText(Make("M3 4M5 6")->GetPlace(5)));
	const auto directionAt = [](const char* data, double at)
	{
		const SVGOutlinePlace place = Must(Make(data)->GetPlace(at));
		return AskedPicture::Round(place.direction.x) + ' ' + AskedPicture::Round(place.direction.y);
	};
	EXPECT_EQ("1 0", directionAt("M0 0C0 10 10 10 10 10", 99));
	EXPECT_EQ("0 1", directionAt("M0 0C0 10 10 10 10 10", 0));
	EXPECT_EQ("0 1", directionAt("M0 0C0 0 0 10 10 10", 0));
	EXPECT_EQ("1 0", directionAt("M0 0C0 0 0 10 10 10", 99));
	EXPECT_EQ("The outline has no points.",
			  PlaceText(Must(CreateObject<SVGOutlineInterface>(kSVGOutlineClass))->GetPlace(0)));
}

TEST_F(Outlines, FindTheNearestPlaceAndWhatIsInside)
{
	const SVGOutlineRef square = Make("M0 0h10v10h-10z");
	EXPECT_EQ("10 4 0 1 14 2", PlaceText(square->FindNearest({12, 4})));
	EXPECT_EQ("0 4 0 -1 36 1", PlaceText(square->FindNearest({1, 4})));
	EXPECT_EQ("0 0 1 0 0 5", PlaceText(square->FindNearest({-3, -4})));
	EXPECT_EQ("6 5 0 1 15 2", PlaceText(Make("M0 0v10M6 0v10")->FindNearest({4, 5})));
	const SVGOutlineRef arch = Make("M0 0C0 20 20 20 20 0");
	const SVGOutlinePlace top = Must(arch->FindNearest({10, 40}));
	EXPECT_NEAR(15.0, top.point.y, 1e-9);
	EXPECT_NEAR(25.0, top.distance, 1e-9);
	EXPECT_TRUE(square->Contains({10, 10}, SVGFillRule::nonzero));
	EXPECT_FALSE(square->Contains({10.001, 10}, SVGFillRule::nonzero));
	EXPECT_TRUE(arch->Contains({10, 14.99}, SVGFillRule::nonzero));
	EXPECT_FALSE(arch->Contains({10, 15.01}, SVGFillRule::nonzero));
	// Beside a corner of a line and a curve.
	EXPECT_TRUE(Make("M0 0L10 5C10 8 5 10 0 10z")->Contains({5, 5}, SVGFillRule::evenodd));
	const SVGOutlineRef twice = Make("M0 0h9v9h-9zM2 2h5v5h-5z");
	EXPECT_TRUE(twice->Contains({4, 4}, SVGFillRule::nonzero));
	EXPECT_FALSE(twice->Contains({4, 4}, SVGFillRule::evenodd));
	EXPECT_FALSE(Make("M0 0h9v9h-9zM2 2v5h5v-5z")->Contains({4, 4}, SVGFillRule::nonzero));
}

TEST_F(Outlines, RefuseWhatMakesNoSenseAsAllQuestionsDo)
{
	const AskedPicture picture("<path id='p' d='M0 0h9v9z'/>", "width='60' height='30'");
	const SVGGeometryRef& geometry = picture.geometry;
	const SVGOutlineRef outline = Make("M0 0h9v9z");
	constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
	constexpr double kEndless = std::numeric_limits<double>::infinity();
	const auto isRefused = [](const auto& result)
	{
		return !result.IsOk() && result.GetError().GetClass() == ErrorClass::illegalArgument;
	};
	constexpr SVGFillRule kRule = SVGFillRule::evenodd;
	constexpr auto kUnite = SVGOutlineOperation::unite;
	for (const double number : {-1.0, kNone, kEndless, 1e101, 0.0, 2.0})
	{
		SCOPED_TRACE(number);
		const bool isSide = number >= 0.0 && number < kEndless;
		const bool isUsable = isSide && number < 1e100;
		EXPECT_EQ(!isSide, isRefused(geometry->SetDocument(picture.GetDocument(), {.viewWidth = number})));
		EXPECT_EQ(!isSide, isRefused(geometry->SetDocument(picture.GetDocument(), {.viewHeight = number})));
		EXPECT_EQ(!(number > 0.0), isRefused(geometry->SetDocument(picture.GetDocument(), {.deadline = number})));
		EXPECT_EQ(!isSide, isRefused(geometry->FindAt({1, 1}, {.tolerance = number})));
		EXPECT_EQ(!isUsable, isRefused(geometry->Normalize({.flattening = number})));
		EXPECT_EQ(!isUsable || number == 0.0, isRefused(geometry->Normalize({.strokeTolerance = number})));
		EXPECT_EQ(!isUsable, isRefused(geometry->Normalize({.grid = number})));
		EXPECT_EQ(!isUsable, isRefused(geometry->Normalize({.precision = number})));
		EXPECT_EQ(!isUsable || number == 0.0, isRefused(outline->Flatten(number)));
		EXPECT_EQ(!isUsable || number == 0.0, isRefused(outline->GetStroke({}, number)));
		EXPECT_EQ(!isUsable, isRefused(outline->Combine(nullptr, kUnite, kRule, kRule, number)));
		EXPECT_EQ(!isUsable && number != -1.0, isRefused(outline->FindNearest({number, 0.0})));
		EXPECT_EQ(!isUsable && number != -1.0, isRefused(outline->FindNearest({0.0, number})));
	}
	EXPECT_TRUE(isRefused(outline->GetPlace(kNone)));
	EXPECT_EQ("9 9 0 1 18 0", PlaceText(Make("M0 0h9v9")->GetPlace(kEndless)));
	for (const int number : {-1, 0, 1, 2, 3, 4})
	{
		SCOPED_TRACE(number);
		const auto rule = static_cast<SVGFillRule>(number);
		const bool isRule = rule == kRule || rule == SVGFillRule::nonzero;
		EXPECT_EQ(number < 0 || number > 2,
				  isRefused(geometry->GetBox(picture["p"], static_cast<SVGBoxKind>(number), In::view)));
		EXPECT_EQ(number < 0 || number > 2,
				  isRefused(geometry->NormalizeWith({}, static_cast<SVGNormalizedClips>(number))));
		EXPECT_EQ(number < 0 || number > 3,
				  isRefused(outline->Combine(outline, static_cast<SVGOutlineOperation>(number), kRule, kRule, 0.0)));
		EXPECT_EQ(!isRule, isRefused(outline->Combine(outline, kUnite, rule, kRule, 0.0)));
		EXPECT_EQ(!isRule, isRefused(outline->Combine(outline, kUnite, kRule, rule, 0.0)));
		EXPECT_EQ(!isRule, isRefused(outline->GetArea(rule)));
	}
	// The view keeps the proportions; nothing is in a rectangle that says it is empty.
	for (const auto& [options, size] : {std::pair{SVGGeometryOptions{.viewWidth = 20}, Vector2d{20, 10}},
										std::pair{SVGGeometryOptions{.viewHeight = 20}, Vector2d{40, 20}},
										std::pair{SVGGeometryOptions{.viewWidth = 7, .viewHeight = 9}, Vector2d{7, 9}}})
	{
		Must(geometry->SetDocument(picture.GetDocument(), options));
		EXPECT_EQ(size, Must(geometry->GetViewSize()));
	}
	EXPECT_EQ(1u, Must(geometry->FindIn({0, 0, 9, 9, false}, false)).hits.GetCount());
	EXPECT_EQ(0u, Must(geometry->FindIn({0, 0, 9, 9, true}, false)).hits.GetCount());
}

TEST_F(Outlines, BecomeLinesWithinATolerance)
{
	const SVGOutlineRef arch = Make("M0 0C0 20 20 20 20 0zm1 1h1");
	for (const double tolerance : {1.0, 0.01})
	{
		const BaseArray<SVGPathCommand> commands = Must(Must(arch->Flatten(tolerance))->GetPath());
		std::size_t lines = 0;
		Vector2d last;
		for (const SVGPathCommand& command : commands)
		{
			EXPECT_NE(SVGPathCommandType::cubic, command.type);
			if (command.type == SVGPathCommandType::line && ++lines > 0)
			{
				const Vector2d middle{(last.x + command.points[2].x) / 2, (last.y + command.points[2].y) / 2};
				EXPECT_LE(Must(arch->FindNearest(middle)).distance, tolerance);
			}
			last = command.points[2];
		}
		EXPECT_GT(lines, 3u);
		EXPECT_LT(lines, 100u);
	}
	EXPECT_FALSE(arch->Flatten(0.0).IsOk());
}

TEST_F(Outlines, OfStrokesCoverWhatAStrokeCovers)
{
	// The same picture stroked by one way, and outlined by the other: hits agree wherever no edge is near.
	const char* const paths[] = {"M20 20h40v30",
								 "M20 20h40v30z",
								 "M20 60C20 0 80 0 80 60",
								 "M20 50Q50 -60 22 60",
								 "M20 20L60 22L20 24",
								 "M20 20h40h-40M80 30v40v-40",
								 "M30 30h0",
								 "M20 80C60 20 20 20 60 80M70 70l9 9"};
	int checked = 0;
	for (const char* data : paths)
	{
		for (const SVGLineJoin join : {SVGLineJoin::miter, SVGLineJoin::round, SVGLineJoin::bevel})
		{
			for (const SVGLineCap cap : {SVGLineCap::butt, SVGLineCap::round, SVGLineCap::square})
			{
				const char* const joins[] = {"", "miter", "round", "bevel"};
				const char* const caps[] = {"", "butt", "round", "square"};
				const AskedPicture picture(std::string("<path id='p' fill='none' stroke='red' stroke-width='9' d='") +
										   data + "' stroke-linejoin='" + joins[static_cast<int>(join)] +
										   "' stroke-linecap='" + caps[static_cast<int>(cap)] + "'/>");
				const SVGOutlineRef edges = Must(Make(data)->GetStroke({9.0, cap, join, 4.0}, 0.001));
				for (double y = 0.3; y < 100.0; y += 3.7)
				{
					for (double x = 0.1; x < 100.0; x += 3.7)
					{
						const Result<SVGOutlinePlace> edge = edges->FindNearest({x, y});
						if (edge.IsOk() && edge.GetValue().distance < 0.05)
							continue;
						checked++;
						EXPECT_EQ(picture.At(x, y) == "p", edges->Contains({x, y}, SVGFillRule::nonzero))
							<< data << " join " << static_cast<int>(join) << " cap " << static_cast<int>(cap) << " at "
							<< x << ' ' << y;
					}
				}
				const SVGBox box = edges->GetBounds({});
				const SVGBox wanted = Must(picture.geometry->GetBox(picture["p"], SVGBoxKind::stroke, In::view));
				if (!box.isEmpty)
				{
					EXPECT_NEAR(wanted.x, box.x, 0.02) << data;
					// Where the last of them turns on the spot nothing is exact.
					EXPECT_NEAR(wanted.height, box.height, 0.06) << data;
				}
			}
		}
	}
	EXPECT_GT(checked, 10000);
}

TEST_F(Outlines, OfStrokesHaveTheAreasOfTheirPartsTogether)
{
	constexpr double kPi = std::numbers::pi;
	struct Case
	{
		const char* data;
		SVGStroke stroke;
		double area;
	};
	using Cap = SVGLineCap;
	using Join = SVGLineJoin;
	for (const auto& [data, stroke, area] : {
			 Case{"M0 0h10", {4.0, Cap::butt, Join::miter, 4.0}, 40.0},
			 Case{"M0 0h10", {4.0, Cap::square, Join::miter, 4.0}, 56.0},
			 Case{"M0 0h10", {4.0, Cap::round, Join::miter, 4.0}, 40.0 + 4.0 * kPi},
			 // Two strips that have a quarter of a square in common, and another one to fill in.
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::miter, 4.0}, 80.0},
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::miter, 1.5}, 80.0},
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::miter, 1.4}, 78.0},
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::miter, 0.0}, 78.0},
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::bevel, 4.0}, 78.0},
			 Case{"M0 0h10v10", {4.0, Cap::butt, Join::round, 4.0}, 76.0 + kPi},
			 Case{"M0 0h10v-10", {4.0, Cap::butt, Join::bevel, 4.0}, 78.0},
			 Case{"M0 0h10v10h-10z", {2.0, Cap::round, Join::miter, 4.0}, 80.0},
			 Case{"M0 0h10v10h-10z", {2.0, Cap::round, Join::bevel, 4.0}, 78.0},
			 Case{"M0 0h10v10h-10z", {2.0, Cap::round, Join::round, 4.0}, 76.0 + kPi},
			 Case{"M0 0v10h10v-10z", {2.0, Cap::round, Join::round, 4.0}, 76.0 + kPi},
			 Case{"M5 5h0", {4.0, Cap::butt, Join::miter, 4.0}, 0.0},
			 Case{"M5 5h0", {4.0, Cap::square, Join::miter, 4.0}, 16.0},
			 Case{"M5 5z", {4.0, Cap::round, Join::miter, 4.0}, 4.0 * kPi},
			 Case{"M0 0h10M0 20h10", {4.0, Cap::butt, Join::miter, 4.0}, 80.0},
			 Case{"M10 0A10 10 0 0 1 -10 0", {2.0, Cap::butt, Join::miter, 4.0}, 20.0 * kPi},
			 Case{"M10 0A10 10 0 1 1 -10 0A10 10 0 1 1 10 0z", {2.0, Cap::butt, Join::miter, 4.0}, 40.0 * kPi},
			 Case{"M0 0h10h-10", {2.0, Cap::butt, Join::round, 4.0}, 20.0 + kPi / 2.0},
			 Case{"M0 0h10h-10", {2.0, Cap::butt, Join::miter, 4.0}, 20.0},
			 Case{"M0 0h10h10", {2.0, Cap::butt, Join::miter, 4.0}, 40.0},
		 })
		EXPECT_NEAR(area, Must(Must(Make(data)->GetStroke(stroke, 0.001))->GetArea(SVGFillRule::nonzero)), area * 5e-4)
			<< data;
	EXPECT_FALSE(Make("M0 0h1")->GetStroke({1.0, Cap::butt, Join::miter, 4.0}, 0.0).IsOk());
}

TEST_F(Outlines, OfStrokesTurnRoundWhereACurveTurnsRightBack)
{
	// At 66.335 this one does.
	const AskedPicture picture("<path id='p' fill='none' stroke='red' stroke-width='20' d='M20 50C80 50 80 50 30 50'/>"
							   "<path id='q' fill='none' stroke='red' stroke-width='6' d='M10 10C40 40 10 40 40 10'/>");
	EXPECT_EQ("20 40 56.335 20", picture.BoxOf("p", SVGBoxKind::stroke));
	for (const auto& [x, y, id] : {std::tuple{75.0, 50.0, "p"}, {72.5, 57.0, "p"}, {76.5, 50.0, ""}, {74.0, 57.0, ""}})
		EXPECT_EQ(id, picture.At(x, y)) << x;
	const auto along = Must(picture.geometry->GetOutline(picture["p"], SVGCoordinates::view));
	const auto edges = Must(along->GetStroke({20.0}, 0.001));
	EXPECT_TRUE(edges->Contains({75.0, 50.0}, SVGFillRule::nonzero));
	EXPECT_TRUE(edges->Contains({60.0, 50.0}, SVGFillRule::nonzero));
	EXPECT_FALSE(edges->Contains({76.5, 50.0}, SVGFillRule::nonzero));
	EXPECT_NEAR(46.335 * 20.0 + 50.0 * std::numbers::pi, Must(edges->GetArea(SVGFillRule::nonzero)), 0.1);
	// And one that comes to a point: its tip is as round.
	EXPECT_EQ("q", picture.At(25, 34.9));
	EXPECT_EQ("", picture.At(25, 35.7));
}

TEST_F(Outlines, OfElementsComeInAnyCoordinates)
{
	const AskedPicture picture("<g id='g' transform='translate(10 0)'><rect id='r' width='4' height='2' "
							   "transform='scale(2)'/><circle cx='50' cy='50' r='5'/></g>");
	EXPECT_EQ("0 0 4 2",
			  AskedPicture::Describe(Must(picture.geometry->GetOutline(picture["r"], In::element))->GetBounds({})));
	EXPECT_EQ("10 0 8 4",
			  AskedPicture::Describe(Must(picture.geometry->GetOutline(picture["r"], In::view))->GetBounds({})));
	EXPECT_EQ("0 0 55 55",
			  AskedPicture::Describe(Must(picture.geometry->GetOutline(picture["g"], In::element))->GetBounds({})));
	// With all that stands in an element, and without markers.
	const AskedPicture marked(
		"<marker id='m' markerWidth='9' markerHeight='9'><rect id='k' width='9' height='9'/></marker><g "
		"id='g'><path d='M10 10h5v5' marker-end='url(#m)'/><rect x='20' y='20' width='3' "
		"height='4'/></g>");
	EXPECT_EQ("10 10 13 14",
			  AskedPicture::Describe(Must(marked.geometry->GetOutline(marked["g"], In::element))->GetBounds({})));
	const SVGOutlineRef moved = Must(Make("M0 0h5v5z")->Transform({{1, 2}, {2, 0}, {0, 2}}));
	EXPECT_EQ("1 2 10 10", AskedPicture::Describe(moved->GetBounds({})));
}

} // namespace
} // namespace orvan
