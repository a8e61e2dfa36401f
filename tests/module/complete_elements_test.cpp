// SPDX-License-Identifier: MIT
// The elements that only the complete import makes. The values that single attributes come to are in the corpus.
#include "complete_import.h"
#include "svg_attribute_companions.h"
#include "svg_edit.h"

namespace orvan
{
namespace
{

/// The classes of a tree and its characters: "svg(text('one ' tspan('two')))".
std::string Shape(const SVGElementRef& element)
{
	if (const auto run = Cast<SVGTextRunInterface>(element))
		return '\'' + std::string(run->GetText().View()) + '\'';
	std::string shape = element->GetClassId();
	shape = shape.substr(std::string("net.orvan.image.class.svg").size());
	shape.resize(shape.size() - std::string("element").size());
	std::string children;
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		children += (children.empty() ? "" : " ") + Shape(Cast<SVGElementInterface>(child));
	return children.empty() ? shape : shape + '(' + children + ')';
}

TEST_F(CompleteImport, MakesElementsOfAllKinds)
{
	const Loaded loaded = LoadWith(kRich);
	EXPECT_EQ("", Places(loaded.report));
	EXPECT_EQ("svg(style title pattern(image) marker filter(feblend femerge(femergenode)) lineargradient group(rect) "
			  "switch(anchor(foreignobject)) text('one ' tspan('two') textpath(' three')))",
			  Shape(loaded.document->GetRootElement()));
	EXPECT_EQ("one two three", Cast<SVGTextElementInterface>(loaded["text"])->GetText());
	EXPECT_EQ("one two three", Must(Cast<SVGTextContentInterface>(loaded["text"])->GetCharacters()));
	EXPECT_EQ("A a<b", Cast<SVGDescriptionInterface>(loaded["title"])->GetText());
	EXPECT_EQ("other", Cast<SVGLinkInterface>(loaded["linear"])->GetLink());
	EXPECT_EQ("x", Cast<SVGLinkInterface>(loaded["anchor"])->GetLink());
	EXPECT_EQ(SVGPaintType::currentColor, loaded["rect"]->GetStroke().type);
	EXPECT_EQ(1.0, loaded["rect"]->GetFill().color.red);
	EXPECT_EQ(2u, Must(Cast<SVGTextContentInterface>(loaded["text"])->GetXList()).GetCount());
	// All elements share the element interface, and copies have what their sources have.
	for (const char* id :
		 {"pattern", "image", "marker", "filter", "blend", "switch", "anchor", "foreign", "tspan", "textpath", "title"})
	{
		const SVGElementRef element = loaded[id];
		Must(element->SetDisplay(SVGDisplay::none));
		Must(element->SetOpacity(0.5));
		const SVGElementRef copy = Must(CloneObject(element));
		EXPECT_EQ(SVGDisplay::none, copy->GetDisplay()) << id;
		EXPECT_EQ(0.5, copy->GetOpacity()) << id;
		EXPECT_EQ(element->GetElementType(), copy->GetElementType()) << id;
		EXPECT_EQ(element->GetAttributeDictionary().GetCount(), copy->GetAttributeDictionary().GetCount()) << id;
	}
	EXPECT_EQ("A a<b", Must(CloneObject(Cast<SVGDescriptionInterface>(loaded["title"])))->GetText());
}

/// Sets a property away from its initial value, and looks where it went. `kind` is the element's, "marker" for example.
template <typename Interface, typename Given, typename Got>
void ExpectKept(const std::string& kind, Result<void> (Interface::*set)(Given) const, Got (Interface::*get)() const,
				const Got& initial, const Got& value, SVGImportAttribute key)
{
	const auto element =
		Must(CreateObject<SVGElementInterface>(("net.orvan.image.class.svg" + kind + "element").c_str()));
	const auto object = Cast<Interface>(element);
	SCOPED_TRACE(kind + " " + std::to_string(static_cast<int>(key)));
	EXPECT_TRUE(initial == (object.operator->()->*get)());
	EXPECT_FALSE(element->HasAttribute(key));
	Must((object.operator->()->*set)(value));
	EXPECT_TRUE(value == (object.operator->()->*get)());
	EXPECT_TRUE(element->HasAttribute(key));
	const auto copy = Cast<Interface>(Must(CloneObject(element)));
	EXPECT_TRUE(value == (copy.operator->()->*get)());
}

TEST_F(CompleteImport, ElementsHaveInitialValuesAndKeepWhatIsSet)
{
	using M = SVGMarkerElementInterface;
	using P = SVGPatternElementInterface;
	using F = SVGFilterElementInterface;
	using E = SVGFilterPrimitiveInterface;
	constexpr SVGLength kZero{0.0, SVGLengthUnit::number};
	constexpr SVGLength kThree{3.0, SVGLengthUnit::number};
	constexpr SVGLength kOther{5.0, SVGLengthUnit::mm};
	const String nothing, name = Text("name");
	ExpectKept("lineargradient", &SVGLinkInterface::SetLink, &SVGLinkInterface::GetLink, nothing, name,
			   Attribute::link);
	ExpectKept("marker", &M::SetRefX, &M::GetRefX, kZero, kOther, Attribute::refX);
	ExpectKept("marker", &M::SetRefY, &M::GetRefY, kZero, kOther, Attribute::refY);
	ExpectKept("marker", &M::SetMarkerWidth, &M::GetMarkerWidth, kThree, kOther, Attribute::markerWidth);
	ExpectKept("marker", &M::SetMarkerHeight, &M::GetMarkerHeight, kThree, kOther, Attribute::markerHeight);
	ExpectKept("marker", &M::SetMarkerUnits, &M::GetMarkerUnits, SVGMarkerUnits::strokeWidth,
			   SVGMarkerUnits::userSpaceOnUse, Attribute::markerUnits);
	ExpectKept("pattern", &P::SetPatternUnits, &P::GetPatternUnits, SVGUnits::objectBoundingBox,
			   SVGUnits::userSpaceOnUse, Attribute::patternUnits);
	ExpectKept("pattern", &P::SetPatternContentUnits, &P::GetPatternContentUnits, SVGUnits::userSpaceOnUse,
			   SVGUnits::objectBoundingBox, Attribute::patternContentUnits);
	ExpectKept("pattern", &P::SetPatternTransform, &P::GetPatternTransform, Matrix2d(),
			   Matrix2d{{4.0, 5.0}, {2.0, 0.0}, {0.0, 3.0}}, Attribute::patternTransform);
	ExpectKept("filter", &F::SetFilterUnits, &F::GetFilterUnits, SVGUnits::objectBoundingBox, SVGUnits::userSpaceOnUse,
			   Attribute::filterUnits);
	ExpectKept("filter", &F::SetPrimitiveUnits, &F::GetPrimitiveUnits, SVGUnits::userSpaceOnUse,
			   SVGUnits::objectBoundingBox, Attribute::primitiveUnits);
	ExpectKept("feblend", &E::SetInput, &E::GetInput, nothing, name, Attribute::in);
	ExpectKept("feblend", &E::SetSecondInput, &E::GetSecondInput, nothing, name, Attribute::in2);
	ExpectKept("feblend", &E::SetResult, &E::GetResult, nothing, name, Attribute::result);
	ExpectKept("anchor", &SVGAnchorElementInterface::SetTarget, &SVGAnchorElementInterface::GetTarget, nothing, name,
			   Attribute::target);
	ExpectKept("textpath", &SVGTextPathElementInterface::SetStartOffset, &SVGTextPathElementInterface::GetStartOffset,
			   kZero, kOther, Attribute::startOffset);

	const auto marker = Make<SVGMarkerElementInterface>("svgmarkerelement");
	EXPECT_EQ(0.0, marker->GetOrient().angle);
	Must(marker->SetOrient({SVGOrientType::autoStartReverse, 30.0}));
	EXPECT_EQ(SVGOrientType::autoStartReverse, marker->GetOrient().type);
	EXPECT_EQ(30.0, marker->GetOrient().angle);

	const auto image = Make<SVGImageElementInterface>("svgimageelement");
	EXPECT_EQ(SVGAlign::xMidYMid, image->GetPreserveAspectRatio().align);
	Must(image->SetPreserveAspectRatio({SVGAlign::xMaxYMin, SVGMeetOrSlice::slice}));
	EXPECT_EQ(SVGAlign::xMaxYMin, image->GetPreserveAspectRatio().align);
	EXPECT_EQ(SVGMeetOrSlice::slice, image->GetPreserveAspectRatio().meetOrSlice);

	// Each list by itself, with its own values.
	const auto content = Make<SVGTextContentInterface>("svgtextelement");
	const auto list = [](Float start)
	{
		BaseArray<SVGLength> lengths;
		for (const Float value : {start, start + 1.0})
			Must(lengths.Append({value, SVGLengthUnit::px}));
		return lengths;
	};
	const auto first = [](const BaseArray<SVGLength>& lengths)
	{
		return lengths.GetCount() == 2 ? lengths[1].value - 1.0 : -1.0;
	};
	EXPECT_TRUE(Must(content->GetDxList()).IsEmpty());
	Must(content->SetXList(list(1.0)));
	Must(content->SetYList(list(2.0)));
	Must(content->SetDxList(list(3.0)));
	Must(content->SetDyList(list(4.0)));
	BaseArray<Float> rotations;
	Must(rotations.Append(30.0));
	Must(content->SetRotations(rotations));
	EXPECT_EQ(1.0, first(Must(content->GetXList())));
	EXPECT_EQ(2.0, first(Must(content->GetYList())));
	EXPECT_EQ(3.0, first(Must(content->GetDxList())));
	EXPECT_EQ(4.0, first(Must(content->GetDyList())));
	EXPECT_EQ(30.0, Must(content->GetRotations())[0]);
	EXPECT_EQ(2.0, Cast<SVGPositionInterface>(content)->GetY().value);
}

TEST_F(CompleteImport, AttributesAreSetCopiedAndRemovedWithTheirCompanions)
{
	const Loaded loaded =
		LoadWith("<svg><text id='t' x='1 2' y='3 4' font-weight='900' clip-path='circle(5px)'/>"
				 "<text id='copy'/><g font-weight='900' clip-path='circle(5px)'><text id='unset' "
				 "font-weight='100' clip-path='inset(1px)' style='font-weight:unset;clip-path:unset'/>"
				 "<rect id='inherit' clip-path='inherit'/></g></svg>");
	const SVGElementRef text = loaded["t"];
	const auto companionsOf = [](const SVGElementRef& element)
	{
		std::string names;
		for (const SVGAttributeCompanion& row : kSVGAttributeCompanions)
			names += element->HasAttribute(row.companion)
						 ? std::string(kSVGAttributeNames.at(static_cast<std::size_t>(row.companion))) + ' '
						 : "";
		return names;
	};
	constexpr const char* kAll = "x-list y-list font-weight-number clip-shape ";
	EXPECT_EQ(kAll, companionsOf(text));
	EXPECT_EQ("", companionsOf(loaded["unset"]));
	EXPECT_EQ("clip-shape ", companionsOf(loaded["inherit"]));
	const auto history = Cast<SVGDocumentEditInterface>(loaded.document);
	Must(history->BeginTransaction()); // From here on changes can be undone.
	Must(text->SetOpacity(0.5));
	Must(history->CommitTransaction());
	const auto position = Cast<SVGPositionInterface>(text);
	Must(position->SetX({5.0, SVGLengthUnit::px}));
	EXPECT_EQ("y-list font-weight-number clip-shape ", companionsOf(text));
	Must(position->SetPosition({{6.0, SVGLengthUnit::px}, {7.0, SVGLengthUnit::px}}));
	EXPECT_EQ("font-weight-number clip-shape ", companionsOf(text));
	Must(Cast<SVGTextElementInterface>(text)->SetFontWeight(SVGFontWeight::normal));
	EXPECT_EQ("clip-shape ", companionsOf(text));
	Must(text->SetClipPath({}));
	EXPECT_EQ("", companionsOf(text));
	EXPECT_EQ(1 + 4, history->GetUndoCount()) << "each is one step";
	while (Must(history->Undo()))
	{
	}
	EXPECT_EQ(kAll, companionsOf(text));
	EXPECT_EQ(1.0, position->GetX().value);
	for (const SVGAttributeCompanion& row : kSVGAttributeCompanions)
	{
		Must(Cast<SVGElementEditInterface>(loaded["copy"])->CopyAttribute(text, row.attribute));
		Must(Cast<SVGElementEditInterface>(text)->RemoveAttribute(row.attribute));
	}
	EXPECT_EQ(kAll, companionsOf(loaded["copy"]));
	EXPECT_EQ(0u, text->GetAttributeDictionary().GetCount());
}

} // namespace
} // namespace orvan
