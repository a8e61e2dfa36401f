// SPDX-License-Identifier: MIT
#include "geometry_module.h"
#include "orvan/host/allocation_failure.h"
#include "svg_edit.h"
#include "svg_source.h"

#include <random>
#include <vector>

namespace orvan
{
namespace
{

using EditedHits = GeometryTest;

/// Every answer about the boxes of a picture's elements and what is at points of it.
std::string AskAll(const AskedPicture& picture, const SVGGeometryRef& geometry, const std::vector<const char*>& ids)
{
	std::string answers;
	for (const char* const id : ids)
	{
		answers += id;
		for (const auto kind : {SVGBoxKind::fill, SVGBoxKind::stroke, SVGBoxKind::visual})
		{
			for (const auto in : {SVGCoordinates::element, SVGCoordinates::document, SVGCoordinates::view})
				answers += ' ' + AskedPicture::Describe(Must(geometry->GetBox(picture[id], kind, in)));
		}
		answers += '\n';
	}
	for (int row = 0; row < 20; row++)
	{
		for (int column = 0; column < 20; column++)
		{
			const Vector2d at{column * 5.0 + 0.3, row * 5.0 + 0.7};
			answers += AskedPicture::Describe(Must(geometry->FindAt(at, {.findsAll = true}))) + ';';
		}
	}
	return answers + std::to_string(Must(geometry->Normalize({})).points.GetCount());
}

TEST_F(EditedHits, AreTrueAfterEachEdit)
{
	const std::vector<const char*> ids{"root", "g", "p",  "r", "c", "t", "s",  "k", "u", "used", "w",
									   "w1",   "b", "b1", "m", "d", "q", "cp", "v", "i", "o",    "o1"};
	const AskedPicture picture(
		"<clipPath id='cp'><circle cx='50' cy='50' r='45'/></clipPath><clipPath id='bb' clipPathUnits="
		"'objectBoundingBox'><rect width='.5' height='1'/></clipPath><linearGradient id='lg'><stop/><stop offset='1'/>"
		"</linearGradient><marker id='mk' markerWidth='4' markerHeight='4'><path d='M0 0h2v2z'/></marker>"
		"<g id='g' transform='rotate(20 50 50)' clip-path='url(#cp)' fill='url(#lg)'><path id='p' d='M10 10C20 0 30 30 "
		"40 10z'/><rect id='r' x='50' y='20' width='10' height='30' stroke='red'/><g id='k' transform='skewX(10)'>"
		"<circle id='c' cx='30' cy='60' r='9'/></g></g><text id='t' x='10' y='90' font-size='12' font-family="
		"'DejaVu Sans'>ab<tspan id='s' dy='2'>cd</tspan></text><rect id='used' x='80' width='9' height='9'/><use id="
		"'u' href='#used' y='60'/><switch id='w'><rect id='w1' x='70' y='70' width='9' height='5'/><rect width='3' "
		"height='3'/></switch><g id='b' clip-path='url(#bb)'><rect id='b1' x='2' y='60' width='8' height='8'/></g>"
		"<path id='m' d='M60 90h10v5h9' fill='none' stroke='red' marker-mid='url(#mk)'/><defs><rect id='d' width='7' "
		"height='3'/></defs><svg id='q' x='40' y='80' width='10' height='10' viewBox='0 0 5 5'><rect id='v' width='9' "
		"height='3'/></svg><image id='i' x='90' y='90' width='8' height='8' href='none.png'/><g id='o' style="
		"'transform-box:fill-box;transform-origin:50% 50%;transform:rotate(45deg)'><rect id='o1' x='20' y='80' "
		"width='6' height='6'/></g>",
		"id='root' width='100' height='100'");
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto edit = [&](const char* id, const char* name, const char* value)
	{
		Must(source->SetAttributeText(picture[id], Text(name), Text(value)));
	};
	struct Edit
	{
		const char* id;
		const char* name;
		const char* value;
	};
	constexpr Edit kEdits[] = {
		{"p", "transform", "translate(5 40)"},
		{"p", "d", "M0 0h30v20z"},
		{"p", "stroke", "red"},
		{"r", "x", "30"},
		{"r", "fill", "none"},
		{"r", "visibility", "hidden"},
		{"r", "display", "none"},
		{"r", "display", "inline"},
		{"r", "visibility", "visible"},
		{"r", "stroke-dasharray", "3 2"},
		{"c", "r", "15"},
		{"k", "transform", "translate(20 -20)"},
		{"g", "transform", "scale(.5)"},
		{"g", "stroke", "blue"},
		{"g", "clip-path", "none"},
		{"t", "x", "30"},
		{"s", "dy", "-20"},
		{"s", "stroke", "red"},
		{"used", "width", "15"},
		{"u", "y", "40"},
		{"u", "href", "#c"},
		{"w1", "systemLanguage", "xx"},
		{"w1", "width", "20"},
		{"b1", "width", "20"},
		{"m", "d", "M60 90h10v5h9v3"},
		{"m", "stroke-width", "3"},
		{"d", "width", "20"},
		{"q", "viewBox", "0 0 10 10"},
		{"v", "height", "9"},
		{"i", "x", "80"},
		{"o1", "width", "20"},
		{"o", "opacity", ".5"},
		{"cp", "transform", "translate(-20)"},
		{"root", "viewBox", "0 0 200 200"},
	};
	for (const auto& [id, name, value] : kEdits)
	{
		SCOPED_TRACE(std::string(id) + ' ' + name + '=' + value);
		edit(id, name, value);
		const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(fresh->SetDocument(picture.GetDocument(), {}));
		EXPECT_EQ(AskAll(picture, fresh, ids), AskAll(picture, picture.geometry, ids));
	}
	// Several at once, one of them inside of another.
	edit("k", "transform", "rotate(5)");
	edit("c", "r", "4");
	edit("p", "d", "M0 0h9v9z");
	const auto expectSame = [&]
	{
		const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(fresh->SetDocument(picture.GetDocument(), {}));
		EXPECT_EQ(AskAll(picture, fresh, ids), AskAll(picture, picture.geometry, ids));
	};
	expectSame();
	// What an edit names may come later.
	edit("used", "fill", "url(#late)");
	expectSame();
	const SVGElementRef late = Must(CreateObject<SVGElementInterface>(kSVGLinearGradientElementClass));
	Must(source->SetAttributeText(late, Text("id"), Text("late")));
	Must(Cast<SVGElementEditInterface>(late)->InsertChildBefore(
		Must(CreateObject<SVGElementInterface>(kSVGStopElementClass)), {}));
	Must(Cast<SVGElementEditInterface>(picture["g"])->InsertChildBefore(late, {}));
	expectSame();
}

/// Elements that are taken out, put elsewhere, made, and taken back, at random.
TEST_F(EditedHits, AreTrueWhenElementsComeAndGo)
{
	std::string elements = "<linearGradient id='lg'><stop/>"
						   "</linearGradient><rect id='used' width='9' height='9'/>";
	const char* const groups[] = {
		"<g>",
		"<g style='clip-path:circle(40px at 50px 50px)' stroke='red'>",
		"<svg x='9' width='60' height='50'>",
		"<g transform='rotate(9)' opacity='.5'>",
		"<switch>",
		"<g><use href='#used' x='30' y='30'/><text y='40' font-size='9'>a<tspan>b</tspan></text>"};
	int number = 0;
	for (const char* const group : groups)
	{
		elements += group;
		for (int i = 0; i < 30; i++, number++)
		{
			elements += (i % 10 == 0 ? "<g>" : "") + std::string("<rect fill='url(#lg)' width='9' height='7' x='") +
						std::to_string(number * 37 % 90) + "' y='" + std::to_string(number * 53 % 90) + "'/>" +
						(i % 10 == 9 ? "</g>" : "");
		}
		elements += group[1] == 's' ? (group[2] == 'v' ? "</svg>" : "</switch>") : "</g>";
	}
	const AskedPicture picture(elements);
	const auto edit = Cast<SVGDocumentEditInterface>(picture.GetDocument());
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto select = [&](const char* selector)
	{
		return Must(source->Select(Text(selector)));
	};
	const auto ask = [&](const SVGGeometryRef& geometry)
	{
		std::string answers;
		for (const SVGElementRef& element : select("g, rect, svg, text, tspan, use"))
		{
			for (const auto kind : {SVGBoxKind::fill, SVGBoxKind::visual})
				answers += AskedPicture::Describe(Must(geometry->GetBox(element, kind, SVGCoordinates::view))) + ' ';
		}
		for (int i = 0; i < 100; i++)
		{
			const int row = i / 10;
			for (const SVGHit& hit : Must(geometry->FindAt({i % 10 * 10.3, row * 10.7}, {.findsAll = true})).hits)
				answers += std::to_string(reinterpret_cast<std::uintptr_t>(hit.element.GetObject())) + ' ';
		}
		return answers + std::to_string(Must(geometry->Normalize({})).points.GetCount());
	};
	std::mt19937 random(5);
	for (int step = 0; step < 200; step++)
	{
		SCOPED_TRACE(step);
		const auto pick = [&](const char* selector)
		{
			const BaseArray<SVGElementRef> found = select(selector);
			return found[random() % found.GetCount()];
		};
		Must(edit->BeginTransaction());
		for (auto count = random() % 3 + 1; count > 0; count--)
		{
			SVGElementRef element = pick(random() % 8 == 0 ? "g, text, tspan, use" : "rect");
			if (random() % 3 == 0)
			{
				const SVGElementRef made = Must(CreateObject<SVGElementInterface>(kSVGRectElementClass));
				Must(Cast<SVGElementEditInterface>(made)->CopyAttributes(pick("rect")));
				element = made;
			}
			const auto parent = Cast<SVGElementEditInterface>(pick("g, svg, switch, text"));
			const SVGElementRef next = parent->GetChildAt(static_cast<std::int64_t>(random() % 5));
			if (random() % 4 == 0)
				IgnoreResult(Cast<SVGElementEditInterface>(element)->Remove());
			else // Some would stand in themselves.
				IgnoreResult(parent->InsertChildBefore(element, next));
		}
		Must(edit->CommitTransaction());
		if (random() % 4 == 0)
			Must(edit->Undo());
		const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(fresh->SetDocument(picture.GetDocument(), {}));
		ASSERT_EQ(ask(fresh), ask(picture.geometry));
	}
}

TEST_F(EditedHits, OfOneEditedElementDoNotCostAWalkOverAll)
{
	std::string elements;
	for (int i = 0; i < 2000; i++)
		elements += "<g><path id='p" + std::to_string(i) + "' d='M0 0h1v1z'/></g>";
	const AskedPicture picture(elements);
	EXPECT_EQ("", picture.At(50, 50));
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto path = Cast<SVGPathEditInterface>(picture["p1234"]);
	for (int i = 0; i < 3000; i++) // The index is made anew now and then.
	{
		Must(path->SetPathData(Text("M" + std::to_string(i % 80) + " 50h1v1z")));
		EXPECT_EQ("p1234", picture.At(i % 80 + 0.5, 50.2));
	}
	Must(path->SetPathData(Text("M20 20h9v9z")));
	const auto group =
		Cast<SVGElementEditInterface>(Must(Cast<HierarchyObjectInterface>(picture["p1234"])->GetParent()));
	const auto root = Cast<SVGElementEditInterface>(picture.GetDocument()->GetRootElement());
	const auto expectCheap = [&](const char* found)
	{
		// A walk over all allocates for each element; this one must not come to the hundredth.
		const AllocationFailure failure(100, AllocationFailure::Extent::one);
		EXPECT_EQ(found, picture.At(25, 22));
		EXPECT_FALSE(failure.HasFailed());
	};
	expectCheap("p1234");
	const SVGElementRef child = group->GetChildAt(0);
	Must(Cast<SVGElementEditInterface>(child)->Remove());
	expectCheap("");
	Must(root->InsertChildBefore(child, {}));
	expectCheap("p1234");
	Must(root->InsertChildBefore(child, root->GetChildAt(1000)));
	expectCheap("p1234");
	const SVGElementRef made = Must(CreateObject<SVGElementInterface>(kSVGRectElementClass));
	Must(source->SetAttributeText(made, Text("width"), Text("30")));
	Must(source->SetAttributeText(made, Text("height"), Text("30")));
	Must(source->SetAttributeText(made, Text("id"), Text("made")));
	Must(group->InsertChildBefore(made, {}));
	expectCheap("made p1234");
}

} // namespace
} // namespace orvan
