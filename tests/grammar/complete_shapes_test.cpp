// SPDX-License-Identifier: MIT
// What the complete import takes of transforms and the shapes of clip paths, held against what Chromium makes of the
// same texts.
#include "complete_outcomes.h"

namespace orvan::grammar::complete
{
namespace
{

TEST(CompleteTransforms, AttributesNeedNoSeparators)
{
	EXPECT_EQ(AttributeTransform("translate(-1-1)"), "1 0 0 1 -1 -1");
	EXPECT_EQ(AttributeTransform("scale(2)Translate (1.5.5)"), "2 0 0 2 3 1");
	EXPECT_EQ(AttributeTransform(" translate( 1 , 2 ) , scale(2 3) "), "2 0 0 3 1 2");
	EXPECT_EQ(AttributeTransform("rotate(90)"), "0 1 -1 0 0 0");
	EXPECT_EQ(AttributeTransform("rotate(90 10 0)"), "0 1 -1 0 10 -10");
	EXPECT_EQ(AttributeTransform("skewX(45)skewY(0)"), "1 0 1 1 0 0");
	EXPECT_EQ(AttributeTransform("skewy(45)"), "1 1 0 1 0 0");
	EXPECT_EQ(AttributeTransform("matrix(1.-2 3,4 5 6)"), "1 -2 3 4 5 6");
	ExpectAll(AttributeTransform, {"", " ", "none", "translate(0)"}, "1 0 0 1 0 0");
	ExpectAll(AttributeTransform,
			  {"translate(1),,scale(2)", ",scale(2)", "scale(2),", "translate(1 2", "translate(1)x", "rotate(30deg)",
			   "translate(1px)", "rotate(1 2)", "rotate(1 2 3 4)", "scale(1,)", "translate(1,,2)", "matrix(1 0 0 1 5)",
			   "scale()", "foo(1)", "scale(1e400)", "scale(1)/**/", "none scale(1)", "scale(1e200)scale(1e200)"},
			  kRefused);
}

TEST(CompleteTransforms, PropertiesHaveUnitsAndPercentages)
{
	EXPECT_EQ(PropertyTransform("translate(5px, 1in)"), "1 0 0 1 5 96");
	EXPECT_EQ(PropertyTransform("translate(50%,10%)"), "1 0 0 1 100 10");
	EXPECT_EQ(PropertyTransform("translateX(1em) TRANSLATEY(10vh)"), "1 0 0 1 16 60");
	EXPECT_EQ(PropertyTransform("rotate(.25turn) translate(50%, 50%)"), "0 1 -1 0 -50 100");
	EXPECT_EQ(PropertyTransform("scale(2, 50%)translate(10%,10%)"), "2 0 0 0.5 40 5");
	EXPECT_EQ(PropertyTransform("skew(45deg)"), "1 0 1 1 0 0");
	EXPECT_EQ(PropertyTransform("skew(0,45deg)"), "1 1 0 1 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(60deg)"), "1 0 0 0.5 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(60deg) rotateX(60deg)"), "1 0 0 -0.5 0 0");
	EXPECT_EQ(PropertyTransform("rotateY(60deg)"), "0.5 0 0 1 0 0");
	EXPECT_EQ(PropertyTransform("rotate3d(0,0,0,90deg)"), "1 0 0 1 0 0") << "There is no axis.";
	EXPECT_EQ(PropertyTransform("translate(1pc, 1vmin) translate(1vmax)"), "1 0 0 1 24 6");
	EXPECT_EQ(PropertyTransform("rotate3d(0,0,2,-90deg)"), "0 -1 1 0 0 0");
	EXPECT_EQ(PropertyTransform("rotate(810deg)"), "0 1 -1 0 0 0");
	EXPECT_EQ(PropertyTransform("rotate(-720deg)"), "1 0 0 1 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(90deg) translateZ(10px)"), "1 0 0 0 0 -10");
	EXPECT_EQ(PropertyTransform("translate3d(10%,20%,3px) scale3d(2,3,4) rotateZ(0)"), "2 0 0 3 20 20");
	EXPECT_EQ(PropertyTransform("matrix(1,2,3,4,5,6)"), "1 2 3 4 5 6");
	EXPECT_EQ(PropertyTransform("matrix3d(1,2,0,0,3,4,0,0,0,0,1,0,5,6,7,1)"), "1 2 3 4 5 6");
	EXPECT_EQ(PropertyTransform("perspective(5px) translate( 1px , /**/ 2px"), "1 0 0 1 1 2");
	EXPECT_EQ(PropertyTransform("None"), "1 0 0 1 0 0");
	ExpectAll(PropertyTransform,
			  {"", "translate(5)", "translate(5px 6px)", "rotate(30)", "scale(2 3)", "matrix(1 0 0 1 5 6)",
			   "matrix(1,2)", "translate3d(1px)", "matrix(1,0,0,1,5px,6px)", "translate(1px),scale(2)",
			   "translate3d(1px,2px,3%)", "translateX(1px,2px)", "rotate(30deg,1,2)", "none none", "foo(1)",
			   "translate (1px)", "scale()", "translate(1px,)"},
			  kRefused);
}

TEST(CompleteTransforms, OriginsAreLengthsOrKeywords)
{
	const auto origin = [](std::string_view text, Source source = Source::style) -> std::string
	{
		TransformOrigin value;
		if (ParseTransformOrigin(text, source, value) != Parsed::value)
			return kRefused;
		return Text(value.x) + " " + Text(value.y);
	};
	EXPECT_EQ(origin("left"), "0% 50%");
	EXPECT_EQ(origin("top"), "50% 0%");
	EXPECT_EQ(origin("bottom RIGHT"), "100% 100%");
	EXPECT_EQ(origin("center left"), "0% 50%");
	EXPECT_EQ(origin("top center 5px"), "50% 0%");
	EXPECT_EQ(origin("10px"), "10px 50%");
	EXPECT_EQ(origin("10px top"), "10px 0%");
	EXPECT_EQ(origin("1 2", Source::attribute), "1 2");
	for (const char* text : {"top 10px", "10px left", "left left", "top bottom", "1 2", "1px,2px", "1px 2px 5%",
							 "1px 2px 3px 4px", "", "foo"})
		EXPECT_EQ(origin(text), kRefused) << text;
}

TEST(CompleteTransforms, PropertiesOfSingleOnes)
{
	const auto single = [](std::string_view text, SingleTransform property)
	{
		Transform transform;
		return ParseSingleTransform(text, property, {}, transform) == Parsed::value ? Text(transform.For(200, 100))
																					: kRefused;
	};
	const auto translate = SingleTransform::translate;
	const auto rotate = SingleTransform::rotate;
	const auto scale = SingleTransform::scale;
	EXPECT_EQ(single("10px", translate), single("10px 0", translate));
	EXPECT_EQ(single("5% 10% 3px", translate), PropertyTransform("translate(10px, 10px)"));
	EXPECT_EQ(single("2", scale), PropertyTransform("scale(2)"));
	EXPECT_EQ(single("50% 3 4", scale), PropertyTransform("scale(.5, 3)"));
	EXPECT_EQ(single("90deg", rotate), PropertyTransform("rotate(90deg)"));
	EXPECT_EQ(single("x 60deg", rotate), PropertyTransform("rotateX(60deg)"));
	EXPECT_EQ(single("60deg y", rotate), PropertyTransform("rotateY(60deg)"));
	EXPECT_EQ(single("0 0 -1 90deg", rotate), PropertyTransform("rotate(-90deg)"));
	EXPECT_EQ(single("0", rotate), PropertyTransform("none"));
	for (const auto property : {translate, rotate, scale})
	{
		EXPECT_EQ(single("none", property), PropertyTransform("none"));
		for (const char* text : {"", "none 1", "1px,1px", "x", "1px 1px 1%", "1 2 3 4", "60deg 1 1", "x y 60deg"})
			EXPECT_EQ(single(text, property), kRefused) << text;
	}
}

TEST(CompleteShapes, OfClipPathWithTheirBoxes)
{
	const auto shape = [](std::string_view text, Source source = Source::style)
	{
		class Lengths final : public LengthSink
		{
		public:
			void Append(const Length& length) override
			{
				text += ' ' + Text(length);
			}

			std::string text;
		};
		Lengths lengths;
		ClipShape value;
		if (ParseClipShape(text, source, value, lengths) != Parsed::value)
			return kRefused;
		return std::to_string(static_cast<int>(value.kind)) + ' ' + std::to_string(static_cast<int>(value.box)) +
			   (value.isEvenOdd ? " evenodd" : "") + lengths.text + std::string(value.path.data);
	};
	EXPECT_EQ(shape("fill-box"), "0 1");
	EXPECT_EQ(shape(" INSET(1px 2%) View-Box"), "1 2 1px 2% 1px 2%");
	EXPECT_EQ(shape("inset(1px 2px 3px round 4px 5px 6px / 7px)"),
			  "1 0 1px 2px 3px 2px 4px 5px 6px 5px 7px 7px 7px 7px");
	EXPECT_EQ(shape("margin-box circle()"), "2 0 -1 50% 0px 50% 0px");
	EXPECT_EQ(shape("circle(5px at top)"), "2 0 5px 50% 0px 0% 0px");
	EXPECT_EQ(shape("circle(farthest-side at bottom 10px right 20%)"), "2 0 -2 100% -20% 100% -10px");
	EXPECT_EQ(shape("ellipse(5px closest-side at bottom left)"), "3 0 5px -1 0% 0px 100% 0px");
	EXPECT_EQ(shape("ellipse(at 10px 20px)"), "3 0 -1 -1 10px 0px 20px 0px");
	EXPECT_EQ(shape("polygon(evenodd, 0 0, 10% 5px)"), "4 0 evenodd 0 0 10% 5px");
	EXPECT_EQ(shape("path(nonzero, 'M0 0')"), "5 0M0 0");
	EXPECT_EQ(shape("rect(auto auto 5px 1px)"), "6 0 0px 100% 5px 1px");
	EXPECT_EQ(shape("xywh(1px 2px 3px 4px round 5px)"), "7 0 1px 2px 3px 4px 5px 5px 5px 5px 5px 5px 5px 5px");
	EXPECT_EQ(shape("circle(5 at 1 2)", Source::attribute), "2 0 5 1 0px 2 0px");
	// Corners that are missing are those across from them, or the first; the second radii are the first ones.
	EXPECT_EQ(shape("inset(1px Round 2px 3px 4px 5px)"), "1 0 1px 1px 1px 1px 2px 3px 4px 5px 2px 3px 4px 5px");
	EXPECT_EQ(shape("rect(1px 2px 3px 4px round 5px/6px 7px)"), "6 0 1px 2px 3px 4px 5px 5px 5px 5px 6px 7px 6px 7px");
	EXPECT_EQ(shape("xywh(-1px -2% 0px 0px)"), "7 0 -1px -2% 0px 0px");
	EXPECT_EQ(shape("ellipse(farthest-side 3px)"), "3 0 -2 3px 50% 0px 50% 0px");
	// Of a position one part may be missing: it is in the middle.
	EXPECT_EQ(shape("circle(at center)"), "2 0 -1 50% 0px 50% 0px");
	EXPECT_EQ(shape("circle(at RIGHT)"), "2 0 -1 100% 0px 50% 0px");
	EXPECT_EQ(shape("circle(at 1px)"), "2 0 -1 1px 0px 50% 0px");
	EXPECT_EQ(shape("circle(at 1px bottom)"), "2 0 -1 1px 0px 100% 0px");
	EXPECT_EQ(shape("circle(at right 3px)"), "2 0 -1 100% 0px 3px 0px");
	EXPECT_EQ(shape("circle(at center left)"), "2 0 -1 0% 0px 50% 0px");
	EXPECT_EQ(shape("circle(at left 1px bottom 2px)"), "2 0 -1 0% 1px 100% -2px");
	for (const char* text : {"",
							 "none",
							 "url(#a)",
							 "circle(5)",
							 "circle(-5px)",
							 "circle(5px 5px)",
							 "circle(at)",
							 "circle(at left left)",
							 "circle(at 1px left)",
							 "circle(at top 1px bottom 2px)",
							 "circle(at left 1px top)",
							 "ellipse(5px)",
							 "inset()",
							 "inset(1px 1px 1px 1px 1px)",
							 "inset(1px round)",
							 "inset(1px / 2px)",
							 "inset(1px round 1px /)",
							 "inset(1px round 1px 1px 1px 1px 1px)",
							 "ellipse(1px 2px 3px)",
							 "circle(at left 1px left 2px)",
							 "circle(at center 1px top 2px)",
							 "circle(at 1px 2px 3px 4px)",
							 "circle(at left 1px top 2px 3px)",
							 "circle(at 3px left)",
							 "circle(at left top top 1px)",
							 "circle(at left 1px top bottom)",
							 "circle(at top 3px)",
							 "path(evenodd 'M0 0')",
							 "polygon(nonzero)",
							 "polygon(1px 1px,)",
							 "rect(auto)",
							 "inset(1px round -1px)",
							 "polygon()",
							 "polygon(1px)",
							 "polygon(evenodd 1px 1px)",
							 "path(M0 0)",
							 "rect(1px 1px 1px)",
							 "xywh(1px 1px -1px 1px)",
							 "xywh(auto 1px 1px 1px)",
							 "circle() circle()",
							 "fill-box view-box",
							 "fill-box circle() view-box"})
		EXPECT_EQ(shape(text), kRefused) << text;
}

} // namespace
} // namespace orvan::grammar::complete
