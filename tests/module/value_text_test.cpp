// SPDX-License-Identifier: MIT
/// Values by themselves: what a text of an attribute stands for, written in its shortest form.
#include "saving.h"

namespace orvan
{
namespace
{

class ValueTexts : public Saving
{
protected:
	/// The shortest text of what a text stands for; what is said when it stands for nothing.
	std::string Shortest(Kind kind, Attribute attribute, std::string_view text) const
	{
		const Result<Data> read = _formatter->ParseValue(kind, attribute, Text(text));
		if (!read.IsOk())
			return "refused";
		if (read.GetValue().GetType() == nullptr)
			return "nothing";
		const Result<String> written = _formatter->FormatValue(kind, attribute, read.GetValue());
		return written.IsOk() ? std::string(written.GetValue().View()) : "error: " + MessageOf(written);
	}

	/// A text, and its shortest form; the same when there is none.
	struct Row
	{
		const char* text;
		const char* shortest = nullptr;
	};

	void ExpectAll(Kind kind, Attribute attribute, std::initializer_list<Row> rows) const
	{
		for (const auto& [text, shortest] : rows)
			EXPECT_EQ(shortest != nullptr ? shortest : text, Shortest(kind, attribute, text)) << text;
	}

	const Ref<SVGDocumentSourceInterface> _formatter = SourceOf(Open("<svg/>"));
};

TEST_F(ValueTexts, OfPaintsAreNamesOrDigits)
{
	ExpectAll(Kind::rect, Attribute::fill,
			  {
				  {"#FF0000", "red"},
				  {"yellow", "#ff0"},
				  {"#0000ff", "#00f"},
				  {"rgb(210, 180, 140)", "tan"},
				  {"AliceBlue", "#f0f8ff"},
				  {"#aabbcd"},
				  {"#11223344", "#1234"},
				  {"#11223345"},
				  {"rgba(255, 0, 0, 1)", "red"},
				  {"transparent", "#0000"},
				  {"rgb(0 0 0/10%)", "color(srgb 0 0 0/.1)"},
				  {"color(srgb .25 0 1e-1)", "color(srgb .25 0 .1)"},
				  {"none"},
				  {"CURRENTCOLOR", "currentColor"},
				  {"context-fill"},
				  {"context-stroke"},
				  {"url('#a')", "url(#a)"},
				  {"url(#a)none", "url(#a) none"},
				  {"url(#a) currentcolor", "url(#a) currentColor"},
				  {"url(#a) #0000FF80", "url(#a) #0000ff80"},
				  {"url(#a b)", "refused"},
				  {"reddish", "refused"},
			  });
	ExpectAll(Kind::stop, Attribute::stopColor, {{"#008000", "green"}, {"currentColor"}, {"none", "refused"}});
}

TEST_F(ValueTexts, OfNumbersAndLengthsHaveNoMoreDigitsThanTheyNeed)
{
	ExpectAll(Kind::rect, Attribute::opacity, {{"50%", ".5"}, {"-1e-1", "-.1"}, {"1.0", "1"}, {"1px", "refused"}});
	ExpectAll(
		Kind::rect, Attribute::strokeMiterLimit,
		{{"5000.0", "5000"}, {"0.00001", ".00001"}, {"1e-8", "1e-8"}, {"2e21", "2e21"}, {"120"}, {"+4.50", "4.5"}});
	ExpectAll(Kind::rect, Attribute::strokeWidth,
			  {{"5e3", "5000"},
			   {"5000px"},
			   {"0.50em", ".5em"},
			   {"12.50%", "12.5%"},
			   {"1PT", "1pt"},
			   {"3ex"},
			   {"1in"},
			   {"2cm"},
			   {"2pc"},
			   {"-1", "refused"}});
	// A circle has radii of both axes, whatever they are called in a file.
	ExpectAll(Kind::circle, Attribute::rx, {{"3.0", "3"}});
	ExpectAll(Kind::circle, Attribute::ry, {{"5%"}});
	ExpectAll(Kind::rect, Attribute::strokeDashArray,
			  {{"none"}, {"1,2 , 3%", "1 2 3%"}, {"0.5 0.25", ".5 .25"}, {"1 -1", "refused"}});
	ExpectAll(Kind::feGaussianBlur, Attribute::stdDeviation,
			  {{"2 2", "2"}, {"2, 3", "2 3"}, {"0.5", ".5"}, {"1 2 3", "refused"}});
	ExpectAll(Kind::feColorMatrix, Attribute::values, {{"1,0 .50", "1 0 .5"}});
	ExpectAll(Kind::svg, Attribute::viewBox, {{"0,0 10 20.0", "0 0 10 20"}, {"0 0 1", "refused"}});
	ExpectAll(Kind::marker, Attribute::orient,
			  {{"auto"}, {"auto-start-reverse"}, {"45.0", "45"}, {"100grad", "90"}, {"0.25turn", "90"}});
	ExpectAll(Kind::text, Attribute::baselineShift,
			  {{"baseline"}, {"sub"}, {"super"}, {"25.0%", "25%"}, {"-2px"}, {"middle", "refused"}});
	ExpectAll(Kind::text, Attribute::fontStretch,
			  {{"normal"}, {"condensed", "75%"}, {"ultra-expanded", "200%"}, {"100%", "normal"}});
	ExpectAll(Kind::text, Attribute::fontWeight, {{"normal", "400"}, {"bold", "700"}});
	ExpectAll(Kind::text, Attribute::fontWeightNumber, {{"350"}, {"lighter"}, {"bolder"}, {"bold", "700"}});
	ExpectAll(Kind::rect, Attribute::transformOrigin,
			  {{"10px 20.0%", "10px 20%"}, {"right top", "100% 0%"}, {"bottom", "50% 100%"}, {"top left", "0% 0%"}});
}

TEST_F(ValueTexts, OfKeywordsAreAsTheStandardWritesThem)
{
	const auto expectKept = [this](Kind kind, Attribute attribute, std::initializer_list<const char*> words)
	{
		for (const char* word : words)
			EXPECT_EQ(word, Shortest(kind, attribute, word));
	};
	expectKept(Kind::rect, Attribute::textRendering,
			   {"auto", "optimizeSpeed", "optimizeLegibility", "geometricPrecision"});
	expectKept(Kind::rect, Attribute::shapeRendering, {"auto", "optimizeSpeed", "crispEdges", "geometricPrecision"});
	expectKept(Kind::rect, Attribute::imageRendering, {"auto", "optimizeSpeed", "optimizeQuality", "pixelated"});
	expectKept(Kind::rect, Attribute::colorInterpolation, {"auto", "sRGB", "linearRGB"});
	expectKept(Kind::rect, Attribute::pointerEvents,
			   {"auto", "none", "visiblePainted", "visibleFill", "visibleStroke", "visible", "painted", "fill",
				"stroke", "all", "bounding-box"});
	expectKept(Kind::rect, Attribute::fillRule, {"nonzero", "evenodd"});
	expectKept(Kind::rect, Attribute::strokeLineCap, {"butt", "round", "square"});
	expectKept(Kind::rect, Attribute::visibility, {"visible", "hidden", "collapse"});
	expectKept(Kind::text, Attribute::fontStyle, {"normal", "italic", "oblique"});
	expectKept(Kind::text, Attribute::textAnchor, {"start", "middle", "end"});
	expectKept(Kind::text, Attribute::textDecoration, {"none", "underline", "overline", "line-through"});
	expectKept(Kind::feColorMatrix, Attribute::type, {"matrix", "saturate", "hueRotate", "luminanceToAlpha"});
	expectKept(Kind::feFuncR, Attribute::type, {"identity", "table", "discrete", "linear", "gamma"});
	expectKept(Kind::feTurbulence, Attribute::type, {"turbulence", "fractalNoise"});
	expectKept(Kind::feComposite, Attribute::operation, {"over", "in", "out", "atop", "xor", "arithmetic", "lighter"});
	expectKept(Kind::feMorphology, Attribute::operation, {"erode", "dilate"});
	expectKept(Kind::svg, Attribute::preserveAspectRatio,
			   {"none", "xMinYMin", "xMidYMin", "xMaxYMin", "xMinYMid", "xMidYMid", "xMaxYMid", "xMinYMax", "xMidYMax",
				"xMaxYMax", "xMaxYMid slice"});
	ExpectAll(Kind::svg, Attribute::preserveAspectRatio, {{"xMidYMid meet", "xMidYMid"}, {"xmidymid", "refused"}});
	ExpectAll(Kind::rect, Attribute::display, {{"none"}, {"inline", "nothing"}, {"BLOCK", "nothing"}});
	ExpectAll(Kind::text, Attribute::textDecoration,
			  {{"line-through underline", "underline line-through"}, {"underline underline", "refused"}});
	ExpectAll(Kind::rect, Attribute::paintOrder,
			  {{"normal"},
			   {"fill", "normal"},
			   {"fill stroke markers", "normal"},
			   {"fill markers stroke", "fill markers"},
			   {"stroke fill", "stroke"},
			   {"stroke markers"},
			   {"markers fill", "markers"},
			   {"markers stroke fill", "markers stroke"},
			   {"stroke stroke", "refused"}});
}

TEST_F(ValueTexts, OfFiltersTransformsPathsAndLinks)
{
	ExpectAll(Kind::rect, Attribute::filter,
			  {{"none"},
			   {"blur()", "blur(0px)"},
			   {"blur(2.0px)", "blur(2px)"},
			   {"brightness(50%)", "brightness(.5)"},
			   {"contrast()", "contrast(1)"},
			   {"grayscale(1) sepia(.5)"},
			   {"hue-rotate(.5turn)", "hue-rotate(180deg)"},
			   {"invert(20%)opacity(3)saturate(2)", "invert(.2) opacity(1) saturate(2)"},
			   {"drop-shadow(#F00 1px 2px 3px)", "drop-shadow(1px 2px 3px red)"},
			   {"drop-shadow(1px -2px)", "drop-shadow(1px -2px 0px currentColor)"},
			   {"url('#f')", "url(#f)"},
			   {"blur(-1px)", "refused"}});
	ExpectAll(Kind::group, Attribute::transform,
			  {{"translate(3 0)", "translate(3)"},
			   {"translate(3, 4)", "translate(3,4)"},
			   {"scale(2 2)", "scale(2)"},
			   {"scale(2,3.0)", "scale(2,3)"},
			   {"matrix(1,2,3,4,5,6)", "matrix(1,2,3,4,5,6)"},
			   {"scale(2)translate(1)", "matrix(2,0,0,2,2,0)"},
			   {"scale(1", "refused"}});
	ExpectAll(Kind::path, Attribute::d,
			  {{"m 1 2 l 3 4", "M1 2L4 6"},
			   {"M0 0H5V6z", "M0 0L5 0 5 6Z"},
			   {"M0.5.5-1-2", "M.5 .5L-1-2"},
			   {"M0 0Q3 3 6 0", "M0 0C2 2 4 2 6 0"},
			   {"M0 0C1 1 2 2 3 3S5 5 6 6", "M0 0C1 1 2 2 3 3 4 4 5 5 6 6"},
			   {"L1 1", "refused"}});
	ExpectAll(Kind::use, Attribute::href, {{"#a"}, {"other.svg#a"}, {"http://a/b"}});
	ExpectAll(Kind::rect, Attribute::mask, {{"none"}, {"url( #m )", "url(#m)"}, {"url(#a\\)b)", "url('#a)b')"}});
	// Layers that can be no mask count for nothing.
	ExpectAll(Kind::rect, Attribute::maskLayers,
			  {{"url(#a),url(#b)", "url(#a), url(#b)"},
			   {"url(),url(#a),url('#b c'),none,url(#d)", "url(#a), url(#d)"},
			   {"url(#a),url()", "nothing"}});
	ExpectAll(Kind::rect, Attribute::mask,
			  {{"url(),url(#a)", "url(#a)"}, {"url()", "none"}, {"url('#b c'),url()", "none"}});
}

TEST_F(ValueTexts, OfShapesLeaveOutWhatHoldsAnyway)
{
	ExpectAll(Kind::rect, Attribute::clipShape,
			  {{"view-box"},
			   {"border-box", "stroke-box"},
			   {"inset(1px)", "inset(1px 1px 1px 1px)"},
			   {"inset(1px 2px 3px) fill-box", "inset(1px 2px 3px 2px) fill-box"},
			   {"inset(0% round 1px 2px/3px)", "inset(0% 0% 0% 0% round 1px 2px 1px 2px / 3px 3px 3px 3px)"},
			   {"rect(auto 5px 6px auto)", "rect(0px 5px 6px 0px)"},
			   {"xywh(1px 2px 3px 4px)"},
			   {"circle()", "circle(closest-side at 50% 50%)"},
			   {"circle(5.0px at top right)", "circle(5px at 100% 0%)"},
			   {"circle(farthest-side at bottom 10px right 0px)", "circle(farthest-side at right 0px bottom 10px)"},
			   {"circle(1px at left 2px top 3px)", "circle(1px at left 2px top 3px)"},
			   {"ellipse(1px 2% at 3px 4px)"},
			   {"ellipse(closest-side farthest-side)", "ellipse(closest-side farthest-side at 50% 50%)"},
			   {"polygon(nonzero, 0px 0px, 1px 2%)", "polygon(0px 0px, 1px 2%)"},
			   {"polygon(evenodd, 0px 0px, 1px 2%, 3px 4px) view-box"},
			   {"path(evenodd, 'm1 2h3')", "path(evenodd, \"M1 2L4 2\")"},
			   {"path('M1')", "refused"},
			   {"circle() circle()", "refused"}});
	// Those that no text makes have none.
	for (const int count : {0, 1, 3})
	{
		SVGClipShape shape;
		shape.type = SVGClipShapeType::polygon;
		for (int i = 0; i < count; i++)
			Must(shape.lengths.Append({1.0, SVGLengthUnit::px}));
		const Data value = Must(Data::Create(std::move(shape)));
		EXPECT_FALSE(_formatter->FormatValue(Kind::rect, Attribute::clipShape, value).IsOk()) << count;
	}
}

TEST_F(ValueTexts, OfKindsAndEnumeratorsLeadBothWays)
{
	for (auto kind = static_cast<int>(Kind::svg); kind < static_cast<int>(Kind::textRun); kind++)
	{
		const String name = Must(_formatter->GetKindName(static_cast<Kind>(kind)));
		EXPECT_EQ(kind, static_cast<int>(Must(_formatter->FindKind(name)))) << name.CString();
	}
	EXPECT_EQ("linearGradient", Must(_formatter->GetKindName(Kind::linearGradient)).View());
	EXPECT_EQ("g", Must(_formatter->GetKindName(Kind::group)).View());
	EXPECT_EQ(Kind::path, Must(_formatter->FindKind(Text("polygon"))));
	EXPECT_EQ(Kind::circle, Must(_formatter->FindKind(Text("ellipse"))));
	for (const Kind kind : {Kind::unknown, Kind::textRun, static_cast<Kind>(-1), static_cast<Kind>(200)})
		EXPECT_FALSE(_formatter->GetKindName(kind).IsOk());
	EXPECT_FALSE(_formatter->FindKind(Text("Path")).IsOk());

	const auto list = [&](Kind kind, Attribute attribute)
	{
		std::string all;
		for (const auto& [number, name] : Must(_formatter->GetEnumerators(kind, attribute)))
			all += std::to_string(number) + name.CString() + ' ';
		return all;
	};
	EXPECT_EQ("1butt 2round 3square ", list(Kind::path, Attribute::strokeLineCap));
	EXPECT_EQ("0erode 1dilate ", list(Kind::feMorphology, Attribute::operation));
	EXPECT_EQ("0over 1in 2out 3atop 4xor 5arithmetic 6lighter ", list(Kind::feComposite, Attribute::operation));
	EXPECT_EQ("", list(Kind::path, Attribute::d));
	EXPECT_EQ("", list(Kind::path, Attribute::strokeWidth));
	// Every name of every attribute is read as its number again.
	int count = 0;
	for (std::int32_t attribute = 1; attribute < static_cast<std::int32_t>(kSVGAttributeNames.size()); attribute++)
	{
		for (const Kind kind : {Kind::svg, Kind::text, Kind::rect, Kind::linearGradient, Kind::feBlend})
		{
			const auto key = static_cast<Attribute>(attribute);
			for (const auto& [number, name] : Must(_formatter->GetEnumerators(kind, key)))
			{
				const Result<Data> read = _formatter->ParseValue(kind, key, name);
				if (!read.IsOk() || read.GetValue().GetType() == nullptr)
					continue; // It does not count there, or is what holds without it.
				const auto* again = read.GetValue().Get<std::int32_t>();
				ASSERT_NE(nullptr, again) << kSVGAttributeNames[static_cast<std::size_t>(attribute)];
				const String name2 = Must(_formatter->FormatValue(kind, key, read.GetValue()));
				EXPECT_EQ(name.View(), name2.View()) << kSVGAttributeNames[static_cast<std::size_t>(attribute)];
				count += *again == number ? 1 : 0;
			}
		}
	}
	EXPECT_GT(count, 300);
}

} // namespace
} // namespace orvan
