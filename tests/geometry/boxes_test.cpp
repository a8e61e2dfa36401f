// SPDX-License-Identifier: MIT
#include "geometry_module.h"

namespace orvan
{
namespace
{

using Boxes = GeometryTest;
using Box = SVGBoxKind;
using In = SVGCoordinates;

TEST_F(Boxes, AreTightAroundCurvesAlsoWhenTheyAreTurned)
{
	const AskedPicture picture(
		"<g id='g' transform='rotate(45 50 50)'>"
		"<path id='p' d='M10 50 C10 0 90 0 90 50' transform='translate(0 1)'/></g>"
		"<circle id='c' cx='5' cy='5' r='2' transform='matrix(2 1 0 3 0 0)'/><path id='m' d='M3 4'/>"
		"<path id='l' d='M3 4h5'/><g id='k' transform='skewX(45)'><circle r='1'/></g>");
	// The curve rises to three quarters of the height of its control points.
	EXPECT_EQ("10 12.5 80 37.5", picture.BoxOf("p", Box::fill, In::element));
	EXPECT_EQ("10 13.5 80 37.5", picture.BoxOf("p", Box::fill, In::parent));
	EXPECT_EQ("10 13.5 80 37.5", picture.BoxOf("g", Box::fill, In::element));
	EXPECT_EQ(picture.BoxOf("p"), picture.BoxOf("g"));
	// Looked for along the curve in steps. The box of the box would begin at (13.99, 11.23).
	Vector2d least{1e9, 1e9};
	Vector2d most{-1e9, -1e9};
	for (int i = 0; i <= 100000; i++)
	{
		const double t = i / 100000.0;
		const double s = 1.0 - t;
		const double x = 10 * s * s * s + 30 * s * s * t + 270 * s * t * t + 90 * t * t * t - 50.0;
		const double y = 50 * s * s * s + 50 * t * t * t + 1.0 - 50.0;
		const Vector2d point{50.0 + (x - y) * std::sqrt(0.5), 50.0 + (x + y) * std::sqrt(0.5)};
		least = {std::min(least.x, point.x), std::min(least.y, point.y)};
		most = {std::max(most.x, point.x), std::max(most.y, point.y)};
	}
	EXPECT_EQ(AskedPicture::Describe({least.x, least.y, most.x - least.x, most.y - least.y, false}),
			  picture.BoxOf("g"));
	EXPECT_EQ("6 13.675 8 12.649", picture.BoxOf("c"));
	EXPECT_EQ("-1.414 -1 2.828 2", picture.BoxOf("k"));
	EXPECT_EQ("empty", picture.BoxOf("m"));
	EXPECT_EQ("3 4 5 0", picture.BoxOf("l"));
}

TEST_F(Boxes, OfGroupsUnitePicturesAndNothingElse)
{
	const AskedPicture picture(
		"<defs id='d'><rect id='r' x='1' y='2' width='3' height='4'/><clipPath id='k'><circle id='kc' "
		"r='5'/></clipPath></defs>"
		"<g id='g'><rect width='9' height='9' style='display:none'/><rect id='h' x='20' y='20' width='5' height='5' "
		"visibility='hidden' fill='none'/><g/><use id='u' href='#r' x='10' transform='scale(2)'/><title>t</title></g>"
		"<svg id='s' x='50' y='50' width='20' height='20' viewBox='0 0 10 10'><rect id='i' x='2' width='30' "
		"height='3'/></svg>"
		"<linearGradient id='lg'/><rect id='n' width='0' height='9'/>",
		"width='200' height='200' viewBox='0 0 100 100'");
	EXPECT_EQ("20 4 8 21", picture.BoxOf("g", Box::fill, In::document));
	EXPECT_EQ("40 8 16 42", picture.BoxOf("g", Box::fill, In::view));
	// A use's own coordinates are in front of its position.
	EXPECT_EQ("11 2 3 4", picture.BoxOf("u", Box::fill, In::element));
	EXPECT_EQ("22 4 6 8", picture.BoxOf("u", Box::fill, In::parent));
	// An svg element's are those of its content, and its edges cut nothing off but what is seen.
	EXPECT_EQ("2 0 30 3", picture.BoxOf("s", Box::fill, In::element));
	EXPECT_EQ("54 50 60 6", picture.BoxOf("s", Box::fill, In::parent));
	EXPECT_EQ("54 50 16 6", picture.BoxOf("s", Box::visual, In::parent));
	EXPECT_EQ("1 2 3 4", picture.BoxOf("r", Box::fill, In::element));
	EXPECT_EQ("-5 -5 10 10", picture.BoxOf("kc", Box::fill, In::parent));
	EXPECT_EQ("1 2 3 4", picture.BoxOf("d", Box::fill, In::document));
	for (const char* id : {"lg", "n"})
		EXPECT_EQ("empty", picture.BoxOf(id)) << id;
	EXPECT_EQ("empty", picture.BoxOf("h", Box::visual));
	const AskedPicture other("<rect id='r'/>");
	EXPECT_EQ("The element is not in the document's tree.",
			  MessageOf(picture.geometry->GetBox(other["r"], Box::fill, In::view)));
	const Matrix2d transform = Must(picture.geometry->GetTransform(picture["u"], In::view));
	EXPECT_EQ((Vector2d{44.0, 8.0}), transform.Apply({11.0, 2.0}));
}

TEST_F(Boxes, OfStrokesKnowJoinsCapsCuspsAndPens)
{
	const auto box = [](const std::string& path, const std::string& attributes)
	{
		return AskedPicture("<path id='p' stroke='red' stroke-width='4' fill='none' d='" + path + "' " + attributes +
							"/>")
			.BoxOf("p", Box::stroke);
	};
	EXPECT_EQ("10 8 20 4", box("M10 10h20", ""));
	EXPECT_EQ("8 8 24 4", box("M10 10h20", "stroke-linecap='square' stroke-dasharray='1 100'"));
	EXPECT_EQ("8 8 24 4", box("M10 10h20", "stroke-linecap='round'"));
	// The tip of a right angle is as far out as the corner of a square; bevels and too sharp ones are cut off.
	EXPECT_EQ("10 8 12 22", box("M10 10h10v20", ""));
	EXPECT_EQ("10 8 12 22", box("M10 10h10v20", "stroke-linejoin='bevel'"));
	EXPECT_EQ("8.586 8.586 22.828 14.243", box("M10 10 20 20 30 10", ""));
	EXPECT_EQ("8.586 8.586 22.828 12.828", box("M10 10 20 20 30 10", "stroke-miterlimit='1'"));
	EXPECT_EQ("8.586 8.586 22.828 13.414", box("M10 10 20 20 30 10", "stroke-linejoin='round'"));
	EXPECT_EQ("8 8 24 14", box("M10 10h20v10h-20z", ""));
	EXPECT_EQ("8 8 4 4", box("M10 10z", "stroke-linecap='round'"));
	EXPECT_EQ("10 10 0 0", box("M10 10h0", ""));
	// The edges of a stroke run as its curve does …
	EXPECT_EQ("8 20.5 24 9.5", box("M10 30C10 20 30 20 30 30", ""));
	// … a pen that is not scaled stays as wide as it is.
	EXPECT_EQ("20 18 40 4", box("M10 10h20", "transform='scale(2)' vector-effect='non-scaling-stroke'"));
	EXPECT_EQ("20 16 40 8", box("M10 10h20", "transform='scale(2)'"));
	EXPECT_EQ("10 10 20 0", box("M10 10h20", "style='stroke:none'"));
	// Where a curve is bent more sharply than the pen is wide, the inner edge turns back and sticks out behind. All
	// that the pen sweeps over, step by step:
	const AskedPicture cusp("<path id='p' stroke='red' stroke-width='40' fill='none' d='M20 40C26 50 26 50 20 60'/>");
	double least = 1e9;
	for (int i = 0; i <= 100000; i++)
	{
		const double t = i / 100000.0;
		const double x = 20.0 + 18.0 * t * (1.0 - t);
		const Vector2d speed{18.0 - 36.0 * t, 30.0 - 60.0 * t + 60.0 * t * t};
		const double side = 20.0 * speed.y / std::hypot(speed.x, speed.y);
		least = std::min(least, x - std::abs(side));
	}
	const SVGBox around = Must(cusp.geometry->GetBox(cusp["p"], Box::stroke, In::view));
	EXPECT_NEAR(24.5 + 20.0, around.x + around.width, 1e-9);
	EXPECT_NEAR(least, around.x, 1e-6);
}

TEST_F(Boxes, OfWhatIsSeenEndAtClipsMasksAndMarkers)
{
	const AskedPicture picture(
		"<clipPath id='c'><rect x='10' y='10' width='20' height='20'/><rect x='60' y='0' width='5' height='5' "
		"clip-path='url(#n)'/></clipPath><clipPath id='n'><rect x='62' width='1' height='1'/></clipPath>"
		"<clipPath id='b' clipPathUnits='objectBoundingBox'><rect width='0.5' height='0.25'/></clipPath>"
		"<mask id='m' x='0' y='0' width='0.5' height='0.5'/>"
		"<marker id='a' markerWidth='2' markerHeight='2' refX='1' refY='1'><rect width='2' height='9'/></marker>"
		"<rect id='r' width='80' height='25' clip-path='url(#c)'/>"
		"<g id='g' clip-path='url(#b)'><rect x='20' y='40' width='40' height='40'/></g>"
		"<rect id='k' x='20' y='40' width='40' height='40' mask='url(#m)'/>"
		"<rect id='l' x='20' y='40' width='40' height='40' style='mask:url(#m),url(#m)'/>"
		"<path id='p' d='M50 50h10' stroke='red' stroke-width='2' marker-end='url(#a)'/>"
		"<g id='o'><rect width='9' height='9' fill='none'/><rect x='3' width='4' height='5' opacity='0'/></g>");
	EXPECT_EQ("10 0 53 25", picture.BoxOf("r", Box::visual));
	EXPECT_EQ("20 40 20 10", picture.BoxOf("g", Box::visual));
	EXPECT_EQ("20 40 20 20", picture.BoxOf("k", Box::visual));
	EXPECT_EQ("20 40 40 40", picture.BoxOf("l", Box::visual));
	EXPECT_EQ("50 49 10 2", picture.BoxOf("p", Box::stroke));
	EXPECT_EQ("50 48 12 4", picture.BoxOf("p", Box::visual));
	EXPECT_EQ("3 0 4 5", picture.BoxOf("o", Box::visual));
	EXPECT_EQ("0 0 80 25", picture.BoxOf("r", Box::stroke));
	const AskedPicture both("<clipPath id='a'><rect width='2vmin' height='2vmax'/></clipPath><clipPath id='b' "
							"clip-path='url(#a)'><rect x='1' width='99' height='3'/></clipPath>"
							"<rect id='r' width='50' height='50' clip-path='url(#b)'/>",
							"width='200' height='100'");
	EXPECT_EQ("1 0 1 3", both.BoxOf("r", Box::visual));
	const AskedPicture scaled("<defs><rect id='d' x='1' width='4' height='8'/></defs>",
							  "width='20' height='20' viewBox='0 0 10 10'");
	EXPECT_EQ("2 0 8 16", scaled.BoxOf("d"));
	// At the basic shapes of CSS as well, which hits respect too.
	const AskedPicture shapes(
		"<rect id='i' width='40' height='40' style='clip-path:inset(10px 5px)'/><rect id='c' x='50' "
		"width='40' height='40' style='clip-path:circle(10px at 20px 20px) fill-box'/>");
	EXPECT_EQ("5 10 30 20", shapes.BoxOf("i", Box::visual));
	EXPECT_EQ("60 10 20 20", shapes.BoxOf("c", Box::visual));
	EXPECT_EQ("0 0 40 40", shapes.BoxOf("i"));
	EXPECT_EQ("i", shapes.At(6, 11));
	EXPECT_EQ("", shapes.At(4, 20));
	EXPECT_EQ("c", shapes.At(76, 26));
	EXPECT_EQ("", shapes.At(78, 28));
}

TEST_F(Boxes, OfTheRootHaveItsBackgroundWhereItIsSeen)
{
	const AskedPicture picture("<rect id='r' x='10' y='10' width='30' height='20'/>",
							   "id='s' width='100' height='100' style='background-color:red'");
	EXPECT_EQ("10 10 30 20", picture.BoxOf("s"));
	EXPECT_EQ("0 0 100 100", picture.BoxOf("s", Box::visual));
	EXPECT_EQ("", picture.At(60, 60));
}

TEST_F(Boxes, OfTextsAreThoseOfTheirCells)
{
	const AskedPicture picture("<text id='t' x='10' y='50' font-size='10' font-family='DejaVu Sans'>ab<tspan id='s' "
							   "dx='5'><tspan id='i'>c</tspan></tspan></text><text id='e' x='1' y='1'/>");
	EXPECT_EQ(picture.BoxOf("i"), picture.BoxOf("s"));
	const SVGBox text = Must(picture.geometry->GetBox(picture["t"], Box::fill, In::view));
	const SVGBox span = Must(picture.geometry->GetBox(picture["s"], Box::fill, In::view));
	const SVGBox seen = Must(picture.geometry->GetBox(picture["s"], Box::visual, In::view));
	EXPECT_NEAR(10.0, text.x, 1e-9);
	EXPECT_NEAR(text.x + text.width, span.x + span.width, 1e-9);
	EXPECT_NEAR(text.height, span.height, 1e-9);
	EXPECT_GT(span.x, text.x + 5.0);
	// Letters are smaller than their cells.
	EXPECT_FALSE(seen.isEmpty);
	EXPECT_LT(seen.height, span.height * 0.8);
	EXPECT_EQ("empty", picture.BoxOf("e"));
}

TEST_F(Boxes, FollowTheDocumentAndRefuseWhatMakesNoSense)
{
	const AskedPicture picture("<rect id='r' width='5' height='5'/>");
	EXPECT_EQ("0 0 5 5", picture.BoxOf("r"));
	Must(Cast<SVGSizeInterface>(picture["r"])->SetWidth({7.0, SVGLengthUnit::number}));
	EXPECT_EQ("0 0 7 5", picture.BoxOf("r"));
	SVGGeometryOptions wide;
	wide.viewWidth = 50.0;
	Must(picture.geometry->SetDocument(picture.GetDocument(), wide));
	EXPECT_EQ("0 0 3.5 2.5", picture.BoxOf("r"));
	EXPECT_EQ(50.0, Must(picture.geometry->GetViewSize()).y);
	// One side of a size is in proportion to the other.
	for (const auto& [attributes, size] : {
			 std::pair{"height='50' viewBox='0 0 40 20'", Vector2d{100, 50}},
			 std::pair{"width='50' viewBox='0 0 40 20'", Vector2d{50, 25}},
			 std::pair{"viewBox='7 7 40 20'", Vector2d{40, 20}},
			 std::pair{"width='50' height='70' viewBox='0 0 40 20'", Vector2d{50, 70}},
			 std::pair{"width='1in' height='1pc'", Vector2d{96, 16}},
		 })
		EXPECT_EQ(size, Must(AskedPicture("", attributes).geometry->GetViewSize())) << attributes;
	wide.viewWidth = -1.0;
	EXPECT_EQ("A view of -1 by 0 pixels makes no sense.",
			  MessageOf(picture.geometry->SetDocument(picture.GetDocument(), wide)));
	// A new load is noticed, and elements of the old tree are strangers then.
	const SVGElementRef old = picture["r"];
	const TextFile file("<svg xmlns='http://www.w3.org/2000/svg'><rect id='r' width='1' height='1'/></svg>");
	Must(picture.GetDocument()->Init(file.GetUrl()));
	EXPECT_EQ("0 0 1 1", picture.BoxOf("r", Box::fill, In::document));
	EXPECT_FALSE(picture.geometry->GetBox(old, Box::fill, In::view).IsOk());
	Must(picture.geometry->SetDocument(nullptr, {}));
	EXPECT_EQ("There is no document to ask about.", MessageOf(picture.geometry->GetViewSize()));
	EXPECT_FALSE(picture.geometry->GetBox(old, Box::fill, In::view).IsOk());
}

TEST_F(Boxes, FailForWantOfMemoryAndForNothingElse)
{
	const AskedPicture picture("<clipPath id='c'><circle r='9'/></clipPath><linearGradient "
							   "id='l'><stop/></linearGradient><marker id='m'><path "
							   "d='M1 1h1'/></marker><g id='g' clip-path='url(#c)'><path id='p' d='M1 2C3 4 5 6 7 8z' "
							   "fill='url(#l)' stroke='red' "
							   "stroke-dasharray='1 2' marker-start='url(#m)'/><use href='#p'/></g>");
	const SVGElementRef group = picture["g"];
	const SVGElementRef clip = picture["c"];
	const SVGElementRef path = picture["p"];
	const int count = FailEachAllocation(
		[&]() -> Result<void>
		{
			const auto geometry = ORVAN_TRY(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
			ORVAN_TRY(geometry->SetDocument(picture.GetDocument(), {}));
			ORVAN_TRY(geometry->GetBox(group, Box::visual, In::view));
			ORVAN_TRY(geometry->GetBox(clip, Box::fill, In::view));
			ORVAN_TRY(geometry->FindAt({2.0, 3.0}, {.tolerance = 1.0, .findsAll = true}));
			ORVAN_TRY(geometry->Normalize({.strokes = SVGNormalizedStrokes::outlined}));
			const SVGOutlineRef outline = ORVAN_TRY(geometry->GetOutline(path, In::view));
			ORVAN_TRY(ORVAN_TRY(outline->Flatten(0.1))->GetPlace(1.0));
			return {};
		});
	EXPECT_GT(count, 30);
}

TEST_F(Boxes, EndInAnAnswerWhateverTheNumbersAre)
{
	const AskedPicture picture(
		"<path id='p' d='M0 0L1e300 5L1e300 1e300zM10 10h5v5z' stroke='red' "
		"stroke-width='1e300'/><g id='g' transform='scale(1e200)'><rect id='r' width='1e200' height='1'/></g>");
	for (const Box kind : {Box::fill, Box::stroke, Box::visual})
	{
		for (const In in : {In::element, In::parent, In::document, In::view})
		{
			for (const char* id : {"p", "g", "r"})
			{
				const SVGBox box = Must(picture.geometry->GetBox(picture[id], kind, in));
				EXPECT_TRUE(std::isfinite(box.x + box.y + box.width + box.height)) << id;
			}
		}
	}
	const auto path = Cast<SVGPathElementInterface>(picture["p"]);
	Must(path->LineTo({NAN, 3.0}));
	EXPECT_TRUE(picture.geometry->GetBox(picture["p"], Box::stroke, In::view).IsOk());
	EXPECT_EQ("", picture.At(NAN, INFINITY));
}

TEST_F(Boxes, OfTextsAreWhereTheirPathsAndLinesAre)
{
	const AskedPicture picture("<path id='w' d='M0 50h100' fill='none'/><text id='p'><textPath href='#w'>ab</textPath>"
							   "</text><text id='t' y='20'>xx</text><text id='u' y='20' text-decoration='underline'>xx"
							   "</text>");
	const auto box = [&](std::string_view id, SVGBoxKind kind)
	{
		return Must(picture.geometry->GetBox(picture[id], kind, In::view));
	};
	EXPECT_NEAR(50.0, box("p", SVGBoxKind::visual).y + box("p", SVGBoxKind::visual).height, 1.0);
	// An underline is seen, and no part of the cells.
	EXPECT_EQ(picture.BoxOf("t"), picture.BoxOf("u"));
	EXPECT_GT(box("u", SVGBoxKind::visual).height, box("t", SVGBoxKind::visual).height + 0.5);
	EXPECT_EQ("u", picture.At(3, 18, {}));
}

} // namespace
} // namespace orvan
