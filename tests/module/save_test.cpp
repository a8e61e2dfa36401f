// SPDX-License-Identifier: MIT
/// Saving: what stays as it was, what changes where, and what is refused.
#include "saving.h"
#include "svg_edit.h"

#include <functional>

namespace orvan
{
namespace
{

using namespace std::string_view_literals;

TEST_F(Saving, LeavesWhatNobodyChangedByteForByte)
{
	const std::string_view texts[] = {
		"<svg/>",
		// NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one text in three literals.
		"\xef\xbb\xbf<?xml version='1.0'?>\r\n<!-- c --><!DOCTYPE svg [ <!ENTITY e 'red'> ]>\r\n<svg  fill = '&e;' "
		"xmlns=\"http://www.w3.org/2000/svg\" ><g\n/><![CDATA[ x ]]><?pi?> <text> a<tspan>b</tspan > </text></svg "
		">\n\n",
		"<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><svg><text>\xe9\x80</text></svg>",
		"\xff\xfe<\0s\0v\0g\0/\0>\0"sv,
		"<svg><text>\xff broken</text></svg>",
	};
	for (const std::string_view text : texts)
	{
		for (const bool isComplete : {true, false})
		{
			const SVGDocumentRef document = Open(text, isComplete);
			if (SourceOf(document)->HasSource())
				EXPECT_EQ(text, SavedText(document)) << isComplete;
			else
				EXPECT_FALSE(isComplete) << text;
		}
	}
}

TEST_F(Saving, ChangesAnAttributeWhereItStands)
{
	// In place, with the quotes that are there; in a style where it stood there; new ones behind the others or on lines
	// of their own; removed ones with the blank before them.
	EXPECT_EQ("<svg><rect  fill='blue'\n x=\"1\"/></svg>",
			  After("<svg><rect  fill='#f00'\n x=\"1\"/></svg>", "rect", "fill", "blue"));
	EXPECT_EQ("<svg><rect style=\"a:b; fill: blue !important ;x:1\" fill='red'/></svg>",
			  After("<svg><rect style=\"a:b; fill: red !important ;x:1\" fill='red'/></svg>", "rect", "fill", "blue"));
	EXPECT_EQ("<svg><rect x='1' fill=\"blue\" /></svg>", After("<svg><rect x='1' /></svg>", "rect", "fill", "blue"));
	EXPECT_EQ("<svg><rect\n  x='1'\n  fill=\"blue\"\n  y='2' /></svg>",
			  After("<svg><rect\n  x='1'\n  y='2' /></svg>", "rect", "fill", "blue"));
	EXPECT_EQ("<svg><rect y='2'/></svg>", After("<svg><rect \n x='1' y='2'/></svg>", "rect", "x", ""));
	EXPECT_EQ("<svg><rect style='fill:red; r:2'/></svg>",
			  After("<svg><rect style='fill:red; stroke:blue ;r:2'/></svg>", "rect", "stroke", ""));
	EXPECT_EQ("<svg><rect/></svg>", After("<svg><rect style='fill:red'/></svg>", "rect", "fill", ""));
	// A property that only a style can say, a shorthand that says it, and the one of two links that counts.
	EXPECT_EQ("<svg><g style=\"mix-blend-mode:multiply\"/></svg>",
			  After("<svg><g/></svg>", "g", "mix-blend-mode", "multiply"));
	EXPECT_EQ("<svg><text style='font: 12px a;font-size: 3px;'/></svg>",
			  After("<svg><text style='font: 12px a;'/></svg>", "text", "font-size", "3px"));
	EXPECT_EQ(
		"<svg xmlns:l='http://www.w3.org/1999/xlink'><use l:href='#a' href='#c'/></svg>",
		After("<svg xmlns:l='http://www.w3.org/1999/xlink'><use l:href='#a' href='#b'/></svg>", "use", "href", "#c"));
	EXPECT_EQ("<svg xmlns:l='http://www.w3.org/1999/xlink'><use l:href=\"#a\"/></svg>",
			  After("<svg xmlns:l='http://www.w3.org/1999/xlink'><use/></svg>", "use", "href", "#a"));
	// Of two of the same name, which the XML library lets pass, the last one counts, and one is left.
	EXPECT_EQ("<svg><path d=\"M2 2\"/></svg>",
			  After("<svg><path d=\"M0 0h1\" d=\"M1 1\"/></svg>", "path", "d", "M2 2"));
	EXPECT_EQ("<svg><path/></svg>", After("<svg><path fill='red' fill='blue'/></svg>", "path", "fill", ""));
	// Nor does it miss blanks between attributes.
	EXPECT_EQ("<svg><path fill='red'/></svg>", After("<svg><path d='M0 0'fill='red'/></svg>", "path", "d", ""));
	// To the plain import the later one counts, so that both change.
	EXPECT_EQ("<svg><rect fill=\"blue\" style=\"fill:blue\"/></svg>",
			  After("<svg><rect fill=\"red\" style=\"fill:red\"/></svg>", "rect", "fill", "blue", false));
}

TEST_F(Saving, WritesWhatTheTreeSaysInTheShortestForm)
{
	const SVGDocumentRef document =
		Open("<svg><rect x='1' width='10'/><path d='M0 0'/><polygon points='0,0 1,1 2,0'/><circle r='1'/>"
			 "<g transform='rotate(45)'/><use href='#a'/><text x='1 2' y='3 4' font-weight='900'/></svg>");
	// What only a complete import knows besides gives way to what is set.
	const SVGElementRef text = First(document, "text");
	Must(Cast<SVGPositionInterface>(text)->SetX({5, SVGLengthUnit::number}));
	Must(Cast<SVGTextElementInterface>(text)->SetFontWeight(SVGFontWeight::normal));
	const SVGElementRef rect = First(document, "rect");
	Must(Cast<SVGPositionInterface>(rect)->SetX({0.5, SVGLengthUnit::mm}));
	Must(Cast<SVGSizeInterface>(rect)->SetWidth({0.125, SVGLengthUnit::percent}));
	Must(rect->SetFill(Paint(1, 0, 0)));
	Must(rect->SetOpacity(0.1));
	Must(rect->SetClipPath(Text("a b")));
	const auto path = Cast<SVGPathElementInterface>(First(document, "path"));
	Must(path->LineTo({-0.5, 1e-9}));
	Must(path->CloseSubpath());
	// What is no polygon any more becomes a path, and a circle with two radii an ellipse.
	Must(Cast<SVGPathElementInterface>(First(document, "polygon"))->CubicBezierTo({1, 2}, {3, 4}, {5, 6}));
	Must(Cast<SVGRadiusInterface>(First(document, "circle"))->SetRadiusX({2.0, SVGLengthUnit::number}));
	Must(First(document, "g")->SetLocalTransform(Matrix2d{{3, -4}}));
	Must(Cast<SVGUseElementInterface>(First(document, "use"))->SetLink(Text("b")));
	EXPECT_EQ("error: The attribute \"r\" cannot be written: it does not count on <ellipse>.",
			  [&]
			  {
				  const SVGDocumentRef other = Open("<svg><ellipse rx='1'/></svg>");
				  Must(Cast<SVGRadiusInterface>(First(other, "ellipse"))->SetRadius({}));
				  return SavedText(other);
			  }());
	Must(SourceOf(document)->RemoveAttributeText(First(document, "circle"), Text("r")));
	EXPECT_EQ("<svg><rect x='.5mm' width='12.5%' opacity=\".1\" fill=\"red\" clip-path=\"url('#a b')\"/><path d='M0 "
			  "0L-.5 1e-9Z'/><path "
			  "d=\"M0 0L1 1 2 0ZC1 2 3 4 5 6\"/><ellipse rx=\"2\"/><g transform='translate(3,-4)'/>"
			  "<use href='#b'/><text x='5' y='3 4' font-weight='400'/></svg>",
			  SavedText(document));
	Must(Cast<SVGPositionInterface>(text)->SetPosition({{6, SVGLengthUnit::number}, {7, SVGLengthUnit::number}}));
	EXPECT_TRUE(SavedText(document).ends_with("<text x='6' y='7' font-weight='400'/></svg>"));
}

TEST_F(Saving, TellsValuesApartThatDifferInOnePart)
{
	const SVGDocumentRef loaded =
		Open("<svg viewBox='1 2 3 4'><rect width='5' fill='url(#a) red' stroke='#f00'/></svg>");
	const SVGPaint fill = First(loaded, "rect")->GetFill();
	const SVGPaint stroke = First(loaded, "rect")->GetStroke();
	const auto expect = [](const std::string& written, SVGImportAttribute key, const Data& value)
	{
		const SVGDocumentRef document =
			Open("<svg viewBox='1 2 3 4'><rect width='5' fill='url(#a) red' stroke='#f00'/></svg>");
		Must(First(document, key == SVGImportAttribute::viewBox ? "svg" : "rect")->SetAttribute(key, value));
		const std::string saved = SavedText(document);
		EXPECT_NE(std::string::npos, saved.find(written)) << saved;
	};
	constexpr SVGLength kLengths[] = {{1, SVGLengthUnit::number},
									  {2, SVGLengthUnit::number},
									  {3, SVGLengthUnit::number},
									  {4, SVGLengthUnit::number},
									  {9, SVGLengthUnit::number}};
	const auto& [one, two, three, four, nine] = kLengths;
	expect("viewBox='9 2 3 4'", SVGImportAttribute::viewBox, Must(Data::Create(SVGViewbox{nine, two, three, four})));
	expect("viewBox='1 9 3 4'", SVGImportAttribute::viewBox, Must(Data::Create(SVGViewbox{one, nine, three, four})));
	expect("viewBox='1 2 9 4'", SVGImportAttribute::viewBox, Must(Data::Create(SVGViewbox{one, two, nine, four})));
	expect("viewBox='1 2 3 9'", SVGImportAttribute::viewBox, Must(Data::Create(SVGViewbox{one, two, three, nine})));
	expect("width='5mm'", SVGImportAttribute::width, Must(Data::Create(SVGLength{5, SVGLengthUnit::mm})));
	const auto paint =
		[&](const std::string& written, const SVGPaint& from, const std::function<void(SVGPaint&)>& change)
	{
		SVGPaint changed = from;
		change(changed);
		expect(written, &from == &fill ? SVGImportAttribute::fill : SVGImportAttribute::stroke,
			   Must(Data::Create(changed)));
	};
	paint("fill='url(#b) red'", fill, [](SVGPaint& p) { p.reference = Text("b"); });
	paint("fill='url(#a) #0f0'", fill, [](SVGPaint& p) { p.color = {0, 1, 0}; });
	paint("fill='url(#a) none'", fill, [](SVGPaint& p) { p.fallback = SVGPaintFallback::none; });
	paint("fill='url(#a) #ff000080'", fill, [](SVGPaint& p) { p.alpha = 128 / 255.0; });
	paint("stroke='#00f'", stroke, [](SVGPaint& p) { p.color = {0, 0, 1}; });
	paint("stroke='#ff000080'", stroke, [](SVGPaint& p) { p.alpha = 128 / 255.0; });
	paint("stroke='none'", stroke, [](SVGPaint& p) { p.type = SVGPaintType::none; });
	paint("stroke='currentColor'", stroke, [](SVGPaint& p) { p.type = SVGPaintType::currentColor; });
}

TEST_F(Saving, RefusesWhatWouldNotLoadAgain)
{
	const auto afterEdit = [](const std::function<void(const SVGElementRef&)>& edit)
	{
		const SVGDocumentRef document = Open("<svg><rect id='r'/></svg>");
		edit(First(document, "rect"));
		return SavedText(document).substr(0, 7);
	};
	const auto set = [](Attribute key, auto value)
	{
		return [key, value](const SVGElementRef& element)
		{
			Must(element->SetAttribute(key, Must(Data::Create(value))));
		};
	};
	constexpr Float kNan = std::numeric_limits<Float>::quiet_NaN();
	EXPECT_EQ("error: ", afterEdit(set(Attribute::strokeMiterLimit, kNan)));
	EXPECT_EQ("error: ", afterEdit(set(Attribute::strokeWidth, SVGLength{-1.0, SVGLengthUnit::px})));
	EXPECT_EQ("error: ", afterEdit(set(Attribute::fillRule, std::int32_t{7})));
	EXPECT_EQ("error: ", afterEdit(set(Attribute::fill, Text("no paint"))));
	EXPECT_EQ("error: ", afterEdit(set(Attribute::target, Text("not on rect"))));
	EXPECT_EQ("error: ", afterEdit(set(static_cast<Attribute>(1000), 1.0)));
	EXPECT_EQ("error: ", afterEdit([](const SVGElementRef& element) { Must(element->SetId(Text("\x01"))); }));
	EXPECT_EQ("<svg><r", afterEdit(set(Attribute::fillRule, std::int32_t{2})));
	for (const SVGSaveOptions& options : {SVGSaveOptions{.precision = 16}, SVGSaveOptions{.precision = -2},
										  SVGSaveOptions{.indentation = 65}, SVGSaveOptions{.indentation = -2}})
		EXPECT_EQ("error: A precision of", SavedText(Open("<svg/>"), options).substr(0, 21));
	EXPECT_EQ("<svg/>", SavedText(Open("<svg/>"), {.indentation = 64, .precision = 15}));
	EXPECT_EQ("<svg><rect x=\"0\"/></svg>",
			  [&]
			  {
				  const SVGDocumentRef small = Open("<svg><rect/></svg>");
				  Must(Cast<SVGPositionInterface>(First(small, "rect"))->SetX({1e-9, SVGLengthUnit::number}));
				  return SavedText(small, {.precision = 3});
			  }());
	const SVGDocumentRef group = Open("<svg/>");
	Must(Cast<SVGDocumentEditInterface>(group)->SetRootElement(Make("svggroupelement")));
	EXPECT_EQ("error: Only a document whose root is an svg element can be saved.", SavedText(group));
	// A placeholder is not what the file says.
	const CollectedFindings ignored;
	EXPECT_EQ("error: ", SavedText(Open("<svg><rect>")).substr(0, 7));
}

TEST_F(Saving, KeepsElementsInTheirLines)
{
	const std::string_view text = "<svg>\n  <a1/>\n  <g>\n    <rect id='a'/>\n    <rect id='b'/> <!-- b -->\n  </g>\n"
								  "  <g id='e'/>\n</svg>\n";
	const SVGDocumentRef document = Open(text);
	const auto made = [](std::string_view id)
	{
		const SVGElementRef element = Make("svgrectelement");
		Must(element->SetId(Text(id)));
		return element;
	};
	const SVGElementRef group = First(document, "g");
	const SVGElementRef inner = Make("svggroupelement");
	Insert(made("in"), inner);
	Insert(made("n"), group);
	Insert(inner, group);
	Insert(made("m"), First(document, "#e"));
	Insert(First(document, "#a"), document->GetRootElement());
	EXPECT_EQ("<svg>\n  <a1/>\n  <g>\n    <rect id='b'/>\n    <rect id=\"n\"/>\n    <g>\n      <rect id=\"in\"/>\n"
			  "    </g> <!-- b -->\n  </g>\n  <g id='e'>\n    <rect id=\"m\"/>\n  </g>\n  <rect id='a'/>\n</svg>\n",
			  SavedText(document));
	Cast<HierarchyObjectInterface>(group)->RemoveAllChildren();
	EXPECT_EQ("<svg>\n  <a1/>\n  <g> <!-- b -->\n  </g>\n", SavedText(document).substr(0, 38));
}

TEST_F(Saving, LetsSheetsAndEntitiesStand)
{
	// The attribute would lose against the sheet, so that it stands in the style; with "!important" where it must.
	const std::string_view sheet =
		"<svg><style>rect{fill:red} #b{fill:red!important} g>:first-child{stroke:red}</style>"
		"<rect/><rect id='b'/><g><path id='p'/><path id='q'/></g></svg>";
	const SVGDocumentRef document = Open(sheet);
	Set(document, "rect", "fill", "blue");
	Set(document, "#b", "fill", "blue");
	Set(document, "rect", "opacity", ".5");
	EXPECT_EQ("<rect opacity=\".5\" style=\"fill:blue\"/>"
			  "<rect id='b' style=\"fill:blue!important\"/>",
			  [&]
			  {
				  const std::string saved = SavedText(document);
				  const std::size_t begin = saved.find("<rect");
				  return saved.substr(begin, saved.find("<g>") - begin);
			  }());
	// What comes first by a removal does not become red, and what is removed does not come back.
	const SVGDocumentRef other = Open(sheet);
	const SVGElementRef path = First(other, "#p");
	Insert(path, First(other, "g"));
	Set(other, "rect", "fill", "");
	const std::string saved = SavedText(other);
	EXPECT_NE(saved.npos, saved.find("<path id='q' style=\"stroke:unset\"/><path id='p' style=\"stroke:red\"/></g>"))
		<< saved;
	EXPECT_NE(saved.npos, saved.find("</style><rect style=\"fill:unset\"/>")) << saved;
	// A change inside of what an entity made takes its place; the entity stays.
	EXPECT_EQ(
		"<!DOCTYPE svg [<!ENTITY c 'red'><!ENTITY r '<rect x=\"1\"/>'>]><svg fill='blue'><rect x=\"2\"/>&r;</svg>",
		[&]
		{
			const SVGDocumentRef entities = Open("<!DOCTYPE svg [<!ENTITY c 'red'><!ENTITY r '<rect x=\"1\"/>'>]>"
												 "<svg fill='&c;'>&r;&r;</svg>");
			Set(entities, "svg", "fill", "blue");
			Set(entities, "rect", "x", "2");
			return SavedText(entities);
		}());
}

TEST_F(Saving, WeighsEditsAgainstSheets)
{
	const auto edit = [](std::string_view sheet, std::string_view content, std::string_view selector,
						 std::string_view name, std::string_view value, std::string_view clientSheet = {})
	{
		const std::string head = "<svg><style>" + std::string(sheet) + "</style>";
		const SVGDocumentRef document = Open(head + std::string(content) + "</svg>", true, clientSheet);
		Set(document, selector, name, value);
		const std::string saved = SavedText(document);
		return saved.starts_with(head) ? saved.substr(head.size(), saved.size() - head.size() - 6) : saved;
	};
	// What the sheets say about other elements or properties, or cannot say at all, takes nothing.
	EXPECT_EQ("<rect fill='lime'/>",
			  edit("path,.a{fill:red} rect{stroke:red;fill:7}", "<rect fill='blue'/>", "rect", "fill", "lime"));
	// Shorthands, siblings, and the client's sheet.
	EXPECT_EQ("<text style=\"font-size:3px\"/>", edit("text{font:1px a}", "<text/>", "text", "font-size", "3px"));
	EXPECT_EQ("<g/><!-- --><rect style=\"fill:lime\"/><rect/>",
			  edit("g+rect{fill:red}", "<g/><!-- --><rect/><rect/>", "rect", "fill", "lime"));
	EXPECT_EQ("<rect/><rect fill=\"lime\"/>",
			  edit("rect:first-child,rect:nth-child(2){fill:red}", "<rect/><rect/>", "rect~rect", "fill", "lime"));
	EXPECT_EQ("<rect style=\"fill:lime!important\"/>",
			  edit("rect{fill:red}", "<rect/>", "rect", "fill", "lime", "rect{fill:blue!important}"));
	// Selectors that look at what is edited: what they found is kept, on other elements, too.
	EXPECT_EQ("<rect id='b' style=\"fill:red\"/><g style=\"fill:red\"/>",
			  edit("#a,#a+g{fill:red}", "<rect id='a'/><g/>", "rect", "id", "b"));
	EXPECT_EQ("<rect class='b' style=\"fill:red\"/>", edit(".a{fill:red}", "<rect class='a'/>", "rect", "class", "b"));
	EXPECT_EQ("<rect x='2' style=\"fill:red\"/>", edit("[x='1']{fill:red}", "<rect x='1'/>", "rect", "x", "2"));
	EXPECT_EQ("<a href=\"b\" style=\"fill:unset\"/>", edit(":link{fill:red}", "<a/>", "a", "href", "b"));
	// Children that take the value, and foreign elements, whose attributes are not SVG's.
	EXPECT_EQ("<g opacity='.3'><path opacity='inherit' style=\"opacity:.2\"/></g>",
			  edit("", "<g opacity='.2'><path opacity='inherit'/></g>", "g", "opacity", ".3"));
	EXPECT_EQ("<a:g xmlns:a='b' class=\"c\"/>", edit("", "<a:g xmlns:a='b'/>", "g", "class", "c"));
	// What stands around, and a sheet within a sheet, which is none.
	const SVGDocumentRef siblings = Open("<svg><style>g+rect{fill:red}</style><g/><rect/></svg>");
	Must(Cast<SVGElementEditInterface>(First(siblings, "g"))->Remove());
	EXPECT_EQ("<svg><style>g+rect{fill:red}</style><rect style=\"fill:red\"/></svg>", SavedText(siblings));
	EXPECT_EQ("<style><style>rect{fill:red}</style></style><rect fill=\"lime\"/>",
			  edit("g{x:1}", "<style><style>rect{fill:red}</style></style><rect/>", "rect", "fill", "lime"));
	// New elements say against the sheets what they say, and that they say nothing.
	const SVGDocumentRef document =
		Open("<svg><style>rect{fill:red;stroke:red!important;opacity:.5}</style><g/><rect/></svg>");
	Must(Cast<SVGElementEditInterface>(First(document, "rect:last-child"))->Remove());
	const SVGElementRef rect = Make("svgrectelement");
	Must(rect->SetFill(Paint(0, 0, 1)));
	Must(rect->SetOpacity(0.5));
	Insert(rect, First(document, "g"));
	EXPECT_EQ("<g><rect opacity=\".5\" style=\"fill:#00f;stroke:unset!important\"/></g></svg>",
			  SavedText(document).substr(66));
	// Without its sheet the drawing stays the same.
	Must(Cast<SVGElementEditInterface>(First(document, "style"))->Remove());
	EXPECT_EQ("<svg><g><rect opacity=\".5\" fill=\"#00f\"/></g></svg>", SavedText(document));
}

TEST_F(Saving, FindsElementsWithSelectors)
{
	const SVGDocumentRef document = Open("<svg><g class='a b'><rect fill='#F00'/><rect/></g><p:rect xmlns:p='x'/>"
										 "<text>a<tspan>b</tspan></text></svg>");
	const auto count = [&](std::string_view selectors)
	{
		return Must(SourceOf(document)->Select(Text(selectors))).GetCount();
	};
	EXPECT_EQ(2u, count("g.b > rect"));
	EXPECT_EQ(1u, count("rect[fill='#F00']"));
	EXPECT_EQ(1u, count("rect + rect, :root:empty"));
	EXPECT_EQ(1u, count("tspan:only-child"));
	EXPECT_EQ(0u, count("[stroke]"));
	Set(document, "rect", "fill", "blue");
	EXPECT_EQ(0u, count("rect[fill='#F00']"));
	EXPECT_EQ(1u, count("rect[fill=blue]"));
	EXPECT_EQ("'<' is no list of selectors.", MessageOf(SourceOf(document)->Select(Text("<"))));
	// They see what the tree says, however it came there.
	const SVGDocumentRef changed =
		Open("<svg><title>t</title><g id='g' transform='scale(2)'/><path d='M0 0'/><use href='#g'/><a/></svg>");
	const auto found = [&](std::string_view selectors)
	{
		return Must(SourceOf(changed)->Select(Text(selectors))).GetCount();
	};
	constexpr std::string_view kAsLoaded = "[id=g], [transform='scale(2)'], [d='M0 0'], [href='#g']";
	EXPECT_EQ(3u, found(kAsLoaded));
	EXPECT_EQ(0u, found("title:empty, a:link"));
	Must(First(changed, "g")->SetLocalTransform(Matrix2d{{3, 4}}));
	Must(First(changed, "g")->SetId(Text("h")));
	Must(Cast<SVGPathElementInterface>(First(changed, "path"))->LineTo({1, 2}));
	Must(Cast<SVGUseElementInterface>(First(changed, "use"))->SetLink(Text("h")));
	EXPECT_EQ(0u, found(kAsLoaded));
	EXPECT_EQ(3u, found("#h, [d='M0 0L1 2'], [href='#h']"));
	EXPECT_EQ(1u, Must(SourceOf(Open("<svg><g class='a b'/></svg>", false))->Select(Text(".b"))).GetCount());
}

} // namespace
} // namespace orvan
