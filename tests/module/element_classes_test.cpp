// SPDX-License-Identifier: MIT
/// The element classes and their components, on elements that a client makes and edits itself.
#include "support/svg_module.h"

#include <map>
#include <random>

namespace orvan
{
namespace
{

constexpr SVGLength Px(Float value)
{
	return {value, SVGLengthUnit::px};
}

class ElementClasses : public SvgModuleTest
{
protected:
	static SVGLength Stored(const SVGElementRef& element, Attribute key)
	{
		return element->GetAttributeDictionary().GetOr(static_cast<int>(key), Px(-1.0));
	}

	static SVGElementRef MakeStop(Float offset, const Color& color)
	{
		const SVGElementRef stop = Make("svgstopelement");
		Must(stop->SetAttribute(Attribute::offset, Must(Data::Create(offset))));
		Must(stop->SetAttribute(Attribute::stopColor, Must(Data::Create(color))));
		return stop;
	}

	static void SetLength(const SVGElementRef& element, Attribute key, const SVGLength& length)
	{
		Must(element->SetAttribute(key, Must(Data::Create(length))));
	}
};

TEST_F(ElementClasses, HaveTheirKindsAndComponents)
{
	// Fit to view box, position, size, radius.
	const std::map<std::string, std::pair<Kind, std::string>> expected = {
		{"svgelement", {Kind::unknown, "----"}},
		{"svgsvgelement", {Kind::svg, "vps-"}},
		{"svguseelement", {Kind::use, "-ps-"}},
		{"svgdefselement", {Kind::defs, "----"}},
		{"svgsymbolelement", {Kind::symbol, "v---"}},
		{"svggroupelement", {Kind::group, "----"}},
		{"svglineargradientelement", {Kind::linearGradient, "----"}},
		{"svgradialgradientelement", {Kind::radialGradient, "----"}},
		{"svgstopelement", {Kind::stop, "----"}},
		{"svgpathelement", {Kind::path, "----"}},
		{"svgrectelement", {Kind::rect, "-psr"}},
		{"svgcircleelement", {Kind::circle, "-p-r"}},
		{"svglineelement", {Kind::line, "----"}},
		{"svgtextelement", {Kind::text, "-p--"}},
		{"svgmaskelement", {Kind::mask, "-ps-"}},
		{"svgclippathelement", {Kind::clipPath, "----"}},
	};
	for (const auto& [name, kindAndComponents] : expected)
	{
		const SVGElementRef element = Make(name);
		std::string components;
		components += Cast<SVGFitToViewboxInterface>(element) ? 'v' : '-';
		components += Cast<SVGPositionInterface>(element) ? 'p' : '-';
		components += Cast<SVGSizeInterface>(element) ? 's' : '-';
		components += Cast<SVGRadiusInterface>(element) ? 'r' : '-';
		EXPECT_EQ(kindAndComponents.first, element->GetElementType()) << name;
		EXPECT_EQ(kindAndComponents.second, components) << name;
	}
}

TEST_F(ElementClasses, ComponentsAndAttributesAreTheSameValues)
{
	const SVGElementRef rect = Make("svgrectelement");
	const auto position = Cast<SVGPositionInterface>(rect);
	const auto size = Cast<SVGSizeInterface>(rect);
	EXPECT_EQ((SVGLength2d{Px(0.0), Px(0.0)}), position->GetPosition());
	Must(position->SetPosition({Px(1.0), Px(2.0)}));
	Must(position->SetY({3.0, SVGLengthUnit::mm}));
	Must(size->SetSize({Px(4.0), Px(5.0)}));
	Must(size->SetWidth({0.5, SVGLengthUnit::percent}));
	EXPECT_EQ(Px(1.0), Stored(rect, Attribute::x));
	EXPECT_EQ((SVGLength{3.0, SVGLengthUnit::mm}), Stored(rect, Attribute::y));
	EXPECT_EQ((SVGLength{0.5, SVGLengthUnit::percent}), Stored(rect, Attribute::width));
	EXPECT_EQ(Px(5.0), Stored(rect, Attribute::height));
	SetLength(rect, Attribute::height, Px(6.0));
	EXPECT_EQ(Px(6.0), size->GetHeight());
	EXPECT_EQ(Px(6.0), size->GetSize().y);

	const SVGElementRef circle = Make("svgcircleelement");
	Must(Cast<SVGPositionInterface>(circle)->SetPosition({Px(7.0), Px(8.0)}));
	EXPECT_EQ(Px(7.0), Stored(circle, Attribute::cx)) << "a circle stands where its centre is";
	EXPECT_EQ(Px(8.0), Stored(circle, Attribute::cy));
}

TEST_F(ElementClasses, RadiiOfCirclesFollowTheRadiusAndThoseOfRectsEachOther)
{
	const SVGElementRef circle = Make("svgcircleelement");
	const auto radius = Cast<SVGRadiusInterface>(circle);
	EXPECT_EQ(Px(0.0), radius->GetRadiusX());
	Must(radius->SetRadius(Px(3.0)));
	EXPECT_EQ(Px(3.0), Stored(circle, Attribute::r));
	Must(radius->SetRadiusY(Px(4.0)));
	EXPECT_EQ(Px(3.0), radius->GetRadiusX());
	EXPECT_EQ(Px(4.0), radius->GetRadiusY());
	EXPECT_EQ(Px(3.0), radius->GetRadius());

	const SVGElementRef rect = Make("svgrectelement");
	const auto corners = Cast<SVGRadiusInterface>(rect);
	Must(corners->SetRadiusX(Px(5.0)));
	EXPECT_EQ(Px(5.0), corners->GetRadiusY());
	EXPECT_FALSE(rect->HasAttribute(Attribute::ry));
	Must(corners->SetRadiusY(Px(6.0)));
	EXPECT_EQ(Px(5.0), corners->GetRadiusX());
	EXPECT_EQ(Px(6.0), corners->GetRadiusY());
	Must(corners->SetRadius(Px(7.0)));
	for (const Attribute key : {Attribute::r, Attribute::rx, Attribute::ry})
		EXPECT_EQ(Px(7.0), Stored(rect, key));

	// What the class is decides, not the kind that a client may set.
	const SVGElementRef other = Make("svgcircleelement");
	Must(other->SetElementType(Kind::rect));
	Must(Cast<SVGRadiusInterface>(other)->SetRadiusY(Px(8.0)));
	EXPECT_EQ(Px(0.0), Cast<SVGRadiusInterface>(other)->GetRadiusX());
	Must(Cast<SVGRadiusInterface>(other)->SetRadius(Px(9.0)));
	EXPECT_EQ(Px(9.0), Cast<SVGRadiusInterface>(other)->GetRadiusX());
	EXPECT_EQ(Px(8.0), Cast<SVGRadiusInterface>(other)->GetRadiusY());
}

TEST_F(ElementClasses, ViewportIsPutTogetherFromItsParts)
{
	const SVGElementRef svg = Make("svgsvgelement");
	const auto viewport = Cast<SVGSVGElementInterface>(svg);
	Must(Cast<SVGSizeInterface>(svg)->SetHeight(Px(20.0)));
	EXPECT_EQ((SVGLength{1.0, SVGLengthUnit::percent}), viewport->GetViewport().width);
	EXPECT_EQ(Px(20.0), viewport->GetViewport().height);
	Must(viewport->SetViewport({Px(1.0), Px(2.0), Px(3.0), Px(4.0)}));
	const SVGViewport whole = viewport->GetViewport();
	EXPECT_EQ((SVGLength2d{Px(1.0), Px(2.0)}), (SVGLength2d{whole.x, whole.y}));
	EXPECT_EQ((SVGLength2d{Px(3.0), Px(4.0)}), (SVGLength2d{whole.width, whole.height}));
	EXPECT_EQ(Px(2.0), Stored(svg, Attribute::y));
	EXPECT_EQ(Px(4.0), Cast<SVGSizeInterface>(svg)->GetHeight());

	const auto fitted = Cast<SVGFitToViewboxInterface>(svg);
	EXPECT_TRUE(fitted->GetViewbox().isDefault);
	EXPECT_EQ(SVGAlign::xMidYMid, fitted->GetPreserveAspectRatio().align);
	Must(fitted->SetViewbox({Px(1.0), Px(2.0), Px(3.0), Px(4.0), false}));
	EXPECT_EQ(Px(3.0), fitted->GetViewbox().width);
	EXPECT_FALSE(fitted->GetViewbox().isDefault);
}

TEST_F(ElementClasses, LinesAreTwoPoints)
{
	const SVGElementRef element = Make("svglineelement");
	const auto line = Cast<SVGLineElementInterface>(element);
	Must(line->SetPt1({Px(1.0), Px(2.0)}));
	Must(line->SetPt2({Px(3.0), Px(4.0)}));
	const auto expect = [&](Float x1, Float y1, Float x2, Float y2)
	{
		EXPECT_EQ((SVGLength2d{Px(x1), Px(y1)}), line->GetPt1());
		EXPECT_EQ((SVGLength2d{Px(x2), Px(y2)}), line->GetPt2());
		EXPECT_EQ((SVGLength2d{Px(x1), Px(y1)}), (SVGLength2d{line->GetX1(), line->GetY1()}));
		EXPECT_EQ((SVGLength2d{Px(x2), Px(y2)}), (SVGLength2d{line->GetX2(), line->GetY2()}));
		const Attribute keys[] = {Attribute::x1, Attribute::y1, Attribute::x2, Attribute::y2};
		const Float values[] = {x1, y1, x2, y2};
		for (int i = 0; i < 4; i++)
			EXPECT_EQ(Px(values[i]), Stored(element, keys[i]));
	};
	expect(1.0, 2.0, 3.0, 4.0);
	Must(line->SetX1(Px(5.0)));
	expect(5.0, 2.0, 3.0, 4.0);
	Must(line->SetX2(Px(6.0)));
	expect(5.0, 2.0, 6.0, 4.0);
	Must(line->SetY1(Px(7.0)));
	expect(5.0, 7.0, 6.0, 4.0);
	Must(line->SetY2(Px(8.0)));
	expect(5.0, 7.0, 6.0, 8.0);
}

TEST_F(ElementClasses, LinearGradientsAreAsTheirStopsAreAtTheMoment)
{
	const SVGElementRef element = Make("svglineargradientelement");
	const auto gradient = Cast<SVGLinearGradientElementInterface>(element);
	EXPECT_EQ(1.0, Must(gradient->GetLinearGradient()).x2);
	SetLength(element, Attribute::y2, {0.25, SVGLengthUnit::percent});
	Must(element->SetAttribute(Attribute::gradientUnits, Must(Data::Create<std::int32_t>(0))));
	Must(element->SetAttribute(Attribute::spreadMethod, Must(Data::Create<std::int32_t>(2))));
	Insert(MakeStop(-1.0, {1.0, 0.0, 0.0}), element);
	Insert(MakeStop(0.6, {0.0, 1.0, 0.0}), element);
	Insert(Make("svggroupelement"), element);
	const SVGElementRef third = MakeStop(0.4, {0.0, 0.0, 1.0});
	Must(third->SetAttribute(Attribute::stopOpacity, Must(Data::Create(0.5))));
	Insert(third, element);
	Insert(MakeStop(3.0, {}), element);

	const SVGLinearGradient linear = Must(gradient->GetLinearGradient());
	EXPECT_EQ(SVGGradientUnits::userSpaceOnUse, linear.units);
	EXPECT_EQ(SVGSpreadMethod::repeat, linear.spread);
	EXPECT_EQ(0.25, linear.y2);
	ASSERT_EQ(4u, linear.stops.GetCount());
	EXPECT_EQ(0.0, linear.stops[0].offset) << "clamped";
	EXPECT_EQ(0.6, linear.stops[2].offset) << "raised to the one before";
	EXPECT_EQ(0.5, linear.stops[2].opacity);
	EXPECT_EQ((Color{0.0, 0.0, 1.0}), linear.stops[2].color);
	EXPECT_EQ(1.0, linear.stops[3].offset);
	EXPECT_EQ(1.0, linear.stops[3].opacity);

	Cast<HierarchyObjectInterface>(element)->RemoveAllChildren();
	EXPECT_TRUE(Must(gradient->GetLinearGradient()).stops.IsEmpty());
}

TEST_F(ElementClasses, FocusOfARadialGradientFollowsTheCentreWhereItIsAbsent)
{
	const SVGElementRef element = Make("svgradialgradientelement");
	const auto gradient = Cast<SVGRadialGradientElementInterface>(element);
	SetLength(element, Attribute::cx, Px(3.0));
	SetLength(element, Attribute::fy, Px(4.0));
	SetLength(element, Attribute::r, Px(5.0));
	const SVGRadialGradient radial = Must(gradient->GetRadialGradient());
	EXPECT_EQ((std::array{3.0, 0.5, 5.0, 3.0, 4.0}),
			  (std::array{radial.cx, radial.cy, radial.r, radial.fx, radial.fy}));
}

TEST_F(ElementClasses, StopsHaveAnOpacityBesideThatOfTheElement)
{
	const SVGElementRef element = Make("svgstopelement");
	const auto stop = Cast<SVGStopElementInterface>(element);
	EXPECT_EQ(0.0, stop->GetOffset());
	EXPECT_EQ(Color(), stop->GetColor());
	Must(element->SetOpacity(0.25));
	EXPECT_EQ(1.0, stop->GetOpacity());
	Must(element->SetAttribute(Attribute::stopOpacity, Must(Data::Create(0.75))));
	EXPECT_EQ(0.75, stop->GetOpacity());
	EXPECT_EQ(0.25, element->GetOpacity());
}

TEST_F(ElementClasses, PathsKeepTheirCommandsInOrderWithTheEndInTheLastPoint)
{
	// A command, its kind and its points follow from its number. There are enough of them, and of each kind in each
	// place, for any way of storing them in parts.
	const auto kindOf = [](int i)
	{
		return i == 0 ? SVGPathCommandType::move : static_cast<SVGPathCommandType>((i * i / 3 + i) % 4);
	};
	const auto pointOf = [](int i, int j)
	{
		return Vector2d{i + 0.25 * j, -i - 0.5 * j};
	};
	const auto append = [&](const SVGPathElementRef& path, int begin, int end)
	{
		for (int i = begin; i < end; i++)
		{
			switch (kindOf(i))
			{
			case SVGPathCommandType::move:
				Must(path->MoveTo(pointOf(i, 2)));
				break;
			case SVGPathCommandType::line:
				Must(path->LineTo(pointOf(i, 2)));
				break;
			case SVGPathCommandType::cubic:
				Must(path->CubicBezierTo(pointOf(i, 0), pointOf(i, 1), pointOf(i, 2)));
				break;
			case SVGPathCommandType::close:
				Must(path->CloseSubpath());
			}
		}
	};
	const auto expect = [&](const SVGPathElementRef& path, int count)
	{
		const BaseArray<SVGPathCommand> commands = Must(path->GetPath());
		ASSERT_EQ(static_cast<std::size_t>(count), commands.GetCount());
		for (int i = 0; i < count; i++)
		{
			const SVGPathCommand& command = commands[static_cast<std::size_t>(i)];
			ASSERT_EQ(kindOf(i), command.type) << i;
			for (int j = 0; j < 3; j++)
			{
				const bool isUsed =
					command.type == SVGPathCommandType::cubic || (j == 2 && command.type != SVGPathCommandType::close);
				ASSERT_EQ(isUsed ? pointOf(i, j) : Vector2d(), command.points[j]) << i;
			}
		}
	};
	for (const int cut : {1, 4, 31, 32, 33, 63, 64, 65, 100, 200})
	{
		const auto path = Make<SVGPathElementInterface>("svgpathelement");
		append(path, 0, cut);
		Must(path->PathExit());
		const auto copy = Must(CloneObject(path));
		append(path, cut, 300);
		expect(copy, cut);
		append(copy, cut, 250);
		expect(copy, 250);
		expect(path, 300);
	}
}

// Several arcs of one path are read together, and what stands between them is stored with theirs.
TEST_F(ElementClasses, PathsOfManyArcsAreThoseOfTheirParts)
{
	std::mt19937 random{5};
	const auto number = [&random]
	{
		return std::to_string(static_cast<int>(random() % 2000) - 1000) + '.' + std::to_string(random() % 10) + ' ';
	};
	std::string text, data = "M0 0";
	std::string start = data;
	for (int i = 0; i < 1000; i++)
	{
		const std::string end = number() + number();
		std::string part = "C" + number() + number() + number() + number() + end;
		if (random() % 2 == 0)
			part = 'L' + end;
		else if (random() % 3 == 0)
			part = "A 70 " + std::to_string(random() % 90) + (random() % 2 == 0 ? " 0 1 0 " : " 9 0 1 ") + end;
		if (i % 40 == 39)
			part += "zM" + end;
		text += "<path d='" + start + part + "'/>";
		data += part;
		start = 'M' + end;
	}
	const SVGDocumentRef document = Load("<svg><path d='" + data + "'/>" + text + "</svg>");
	const auto children = Must(Cast<HierarchyObjectInterface>(document->GetRootElement())->GetChildren());
	const auto commandsOf = [&children](std::size_t i)
	{
		return Must(Cast<SVGPathElementInterface>(children[i])->GetPath());
	};
	const BaseArray<SVGPathCommand> whole = commandsOf(0);
	std::size_t at = 0;
	for (std::size_t i = 1; i < children.GetCount(); i++)
	{
		const BaseArray<SVGPathCommand> part = commandsOf(i);
		// All but the first part begin with a move that is not in the whole.
		for (std::size_t j = i == 1 ? 0 : 1; j < part.GetCount(); j++, at++)
		{
			ASSERT_LT(at, whole.GetCount());
			ASSERT_EQ(part[j].type, whole[at].type) << at;
			for (int k = 0; k < 3; k++)
				ASSERT_EQ(part[j].points[k], whole[at].points[k]) << at;
		}
	}
	EXPECT_EQ(at, whole.GetCount());
}

TEST_F(ElementClasses, CopiesOfThoseWithAStateOfTheirOwnKeepWhatAllElementsHave)
{
	for (const std::string name : {"path", "use", "text"})
	{
		const SVGElementRef element = Make("svg" + name + "element");
		Must(element->SetId(Text("a")));
		EXPECT_EQ(Must(CloneObject(element))->GetId(), "a") << name;
	}
}

TEST_F(ElementClasses, TextsHaveAFontOfTheirOwn)
{
	const SVGElementRef element = Make("svgtextelement");
	const auto text = Cast<SVGTextElementInterface>(element);
	EXPECT_EQ(Px(16.0), text->GetFontSize());
	EXPECT_TRUE(text->GetFont().IsEmpty());
	EXPECT_EQ(SVGFontStyle::normal, text->GetFontStyle());
	EXPECT_EQ(SVGFontWeight::normal, text->GetFontWeight());
	Must(text->SetText(Text(" a  b ")));
	Must(text->SetFont(Text("Times")));
	Must(text->SetFontSize({2.0, SVGLengthUnit::em}));
	Must(text->SetFontStyle(SVGFontStyle::oblique));
	Must(text->SetFontWeight(SVGFontWeight::bold));
	const auto copy = Cast<SVGTextElementInterface>(Must(CloneObject(element)));
	EXPECT_EQ(copy->GetText(), " a  b ");
	EXPECT_EQ(copy->GetFont(), "Times");
	EXPECT_EQ((SVGLength{2.0, SVGLengthUnit::em}), Stored(element, Attribute::fontSize));
	EXPECT_EQ(SVGFontStyle::oblique, copy->GetFontStyle());
	EXPECT_EQ(SVGFontWeight::bold, copy->GetFontWeight());
	const auto below = Cast<HierarchyObjectInterface>(Make("svgtspanelement"));
	Must(below->InsertAsLastChildOf(Cast<HierarchyObjectInterface>(element), {}));
	Must(text->SetText(Text("c")));
	EXPECT_FALSE(Cast<HierarchyObjectInterface>(element)->GetFirstChild())
		<< "A text takes the place of what is below.";
}

TEST_F(ElementClasses, LinksAreDirtyUntilTheyStandForALivingElement)
{
	const auto use = Make<SVGUseElementInterface>("svguseelement");
	EXPECT_FALSE(use->IsLinkDirty());
	Must(use->SetLink(Text("a")));
	EXPECT_TRUE(use->IsLinkDirty());
	SVGElementRef target = Make("svgrectelement");
	Must(use->SetShadowRoot(target));
	EXPECT_FALSE(use->IsLinkDirty());
	EXPECT_FALSE(Must(CloneObject(use))->IsLinkDirty());
	EXPECT_EQ(Must(CloneObject(use))->GetLink(), "a");
	Must(use->SetLink(Text("b")));
	EXPECT_TRUE(use->IsLinkDirty());
	EXPECT_EQ(use->GetLink(), "b");
	Must(use->SetShadowRoot(target));
	target = nullptr;
	EXPECT_TRUE(use->IsLinkDirty()) << "the use element does not keep its element alive";
}

TEST_F(ElementClasses, UsesRefuseToStandForWhatContainsThem)
{
	const SVGElementRef root = Make("svgsvgelement");
	const SVGElementRef group = Make("svggroupelement");
	const SVGElementRef element = Make("svguseelement");
	Insert(group, root);
	Insert(element, group);
	const auto use = Cast<SVGUseElementInterface>(element);
	for (const auto& refused : {root, group, element})
		EXPECT_EQ("A use element cannot stand for an element that contains it.",
				  MessageOf(use->SetShadowRoot(refused)));
	EXPECT_EQ(ErrorClass::nullReference, use->SetShadowRoot(nullptr).GetError().GetClass());
	EXPECT_EQ("no error", MessageOf(use->SetShadowRoot(Make("svgrectelement"))));
}

TEST_F(ElementClasses, KnottedUsesKeepNobodyAlive)
{
	SVGDocumentRef document = Load("<svg id='s'><g id='a'><use id='ua' href='#b'/></g>"
								   "<g id='b'><use id='ub' href='#a'/></g><use id='self' href='#self'/></svg>");
	for (const auto& [use, target] : {std::pair("ua", "b"), std::pair("ub", "a")})
		Must(Cast<SVGUseElementInterface>(Find(document, use))->SetShadowRoot(Find(document, target)));
	const WeakRef use = Must(WeakRef::To(Find(document, "ua").GetObject()));
	const WeakRef group = Must(WeakRef::To(Find(document, "b").GetObject()));
	EXPECT_TRUE(use.Lock());
	document = nullptr;
	EXPECT_FALSE(use.Lock());
	EXPECT_FALSE(group.Lock());
}

} // namespace
} // namespace orvan
