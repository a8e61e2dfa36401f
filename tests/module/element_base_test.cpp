// SPDX-License-Identifier: MIT
/// What all elements share: attributes and transforms.
#include "support/svg_module.h"

#include <numbers>
#include <random>

namespace orvan
{
namespace
{

class ElementBase : public SvgModuleTest
{
protected:
	static HierarchyObjectRef Hierarchy(const SVGElementRef& element)
	{
		return Cast<HierarchyObjectInterface>(element);
	}

	/// The world transform by its definition, without the elements' caches.
	static Matrix2d ProductOfAncestors(const SVGElementRef& element)
	{
		Matrix2d product;
		for (SVGElementRef at = element; at; at = Cast<SVGElementInterface>(Must(Hierarchy(at)->GetParent())))
			product = at->GetLocalTransform() * product;
		return product;
	}

	const SVGElementRef element = Make("svggroupelement");
};

void ExpectNear(const Vector2d& expected, const Vector2d& actual)
{
	EXPECT_NEAR(expected.x, actual.x, 1e-12);
	EXPECT_NEAR(expected.y, actual.y, 1e-12);
}

TEST_F(ElementBase, AnswersWithInitialValuesWhereNothingWasSet)
{
	EXPECT_FALSE(element->HasAttribute(Attribute::opacity));
	EXPECT_EQ(0u, element->GetAttributeDictionary().GetCount());
	EXPECT_EQ(SVGVisibility::visible, element->GetVisibility());
	EXPECT_EQ(SVGDisplay::inherit, element->GetDisplay());
	EXPECT_EQ(1.0, element->GetOpacity());
	EXPECT_EQ(SVGPaintType::color, element->GetFill().type);
	EXPECT_EQ(SVGFillRule::nonzero, element->GetFillRule());
	EXPECT_EQ(1.0, element->GetFillOpacity());
	EXPECT_EQ(SVGPaintType::none, element->GetStroke().type);
	EXPECT_EQ(1.0, element->GetStrokeOpacity());
	EXPECT_EQ((SVGLength{1.0, SVGLengthUnit::number}), element->GetStrokeWidth());
	EXPECT_EQ(SVGLineCap::butt, element->GetStrokeLineCap());
	EXPECT_EQ(SVGLineJoin::miter, element->GetStrokeLineJoin());
	EXPECT_EQ(4.0, element->GetStrokeMiterLimit());
	EXPECT_TRUE(Must(element->GetStrokeDashArray()).IsEmpty());
	EXPECT_EQ((SVGLength{0.0, SVGLengthUnit::number}), element->GetStrokeDashOffset());
	EXPECT_TRUE(element->GetMask().IsEmpty());
	EXPECT_TRUE(element->GetClipPath().IsEmpty());
	EXPECT_FALSE(element->HasAttribute(Attribute::fill)) << "asking sets nothing";
}

TEST_F(ElementBase, KeepsEachPropertyUnderTheNumberOfItsAttribute)
{
	BaseArray<SVGLength> dashes;
	Must(dashes.Append({2.0, SVGLengthUnit::mm}));
	Must(element->SetVisibility(SVGVisibility::collapse));
	Must(element->SetDisplay(SVGDisplay::none));
	Must(element->SetOpacity(0.25));
	Must(element->SetFill({SVGPaintType::reference, {}, Text("g")}));
	Must(element->SetFillRule(SVGFillRule::evenodd));
	Must(element->SetFillOpacity(0.5));
	Must(element->SetStroke({SVGPaintType::color, {1.0, 0.0, 0.0}, {}}));
	Must(element->SetStrokeOpacity(0.75));
	Must(element->SetStrokeWidth({3.0, SVGLengthUnit::cm}));
	Must(element->SetStrokeLineCap(SVGLineCap::square));
	Must(element->SetStrokeLineJoin(SVGLineJoin::bevel));
	Must(element->SetStrokeMiterLimit(-3.0));
	Must(element->SetStrokeDashArray(dashes));
	Must(element->SetStrokeDashOffset({4.0, SVGLengthUnit::percent}));
	Must(element->SetMask(Text("m")));
	Must(element->SetClipPath(Text("c")));

	const DataDictionary attributes = element->GetAttributeDictionary();
	EXPECT_EQ(16u, attributes.GetCount());
	EXPECT_EQ(3, attributes.GetOr(6, 0));
	EXPECT_EQ(2, attributes.GetOr(5, 0));
	EXPECT_EQ(0.25, attributes.GetOr(7, 0.0));
	EXPECT_EQ(attributes.GetOr(26, SVGPaint()).reference, "g");
	EXPECT_EQ(2, attributes.GetOr(27, 0));
	EXPECT_EQ(0.5, attributes.GetOr(28, 0.0));
	EXPECT_EQ((Color{1.0, 0.0, 0.0}), attributes.GetOr(29, SVGPaint()).color);
	EXPECT_EQ((SVGLength{3.0, SVGLengthUnit::cm}), attributes.GetOr(30, SVGLength()));
	EXPECT_EQ(0.75, attributes.GetOr(31, 0.0));
	EXPECT_EQ(3, attributes.GetOr(32, 0));
	EXPECT_EQ(3, attributes.GetOr(33, 0));
	EXPECT_EQ(-3.0, attributes.GetOr(34, 0.0)) << "not clamped";
	EXPECT_EQ(1u, attributes.Find<BaseArray<SVGLength>>(35)->GetCount());
	EXPECT_EQ((SVGLength{4.0, SVGLengthUnit::percent}), attributes.GetOr(36, SVGLength()));
	EXPECT_EQ(attributes.GetOr(46, String()), "m");
	EXPECT_EQ(attributes.GetOr(47, String()), "c");

	EXPECT_EQ((SVGLength{2.0, SVGLengthUnit::mm}), Must(element->GetStrokeDashArray())[0]);
	EXPECT_EQ(SVGLineCap::square, element->GetStrokeLineCap());
	EXPECT_EQ(element->GetMask(), "m");
}

TEST_F(ElementBase, ClampsOpacitiesThatAreSetToTheUnitInterval)
{
	Must(element->SetOpacity(1.7));
	Must(element->SetFillOpacity(-0.2));
	Must(element->SetStrokeOpacity(2.0));
	EXPECT_EQ(1.0, element->GetAttributeDictionary().GetOr(7, 0.5));
	EXPECT_EQ(0.0, element->GetFillOpacity());
	EXPECT_EQ(1.0, element->GetStrokeOpacity());
	for (const auto& refused : {element->SetOpacity(std::nan("")), element->SetFillOpacity(-std::nan("")),
								element->SetStrokeOpacity(std::nan(""))})
		EXPECT_EQ("NaN is no opacity.", MessageOf(refused));
	EXPECT_EQ(1.0, element->GetOpacity());
	Must(element->SetOpacity(-std::numeric_limits<Float>::infinity()));
	EXPECT_EQ(0.0, element->GetOpacity());
}

TEST_F(ElementBase, SharesAttributesWithItsCopyUntilOneOfThemWrites)
{
	Must(element->SetOpacity(0.5));
	const SVGElementRef copy = Must(CloneObject(element));
	EXPECT_TRUE(copy->GetAttributeDictionary().IsSameObject(element->GetAttributeDictionary()));
	Must(copy->SetAttribute(Attribute::x, Must(Data::Create(SVGLength{1.0, SVGLengthUnit::px}))));
	Must(copy->SetOpacity(0.25));
	EXPECT_FALSE(element->HasAttribute(Attribute::x));
	EXPECT_EQ(0.5, element->GetOpacity());

	const SVGElementRef second = Must(CloneObject(element));
	Must(element->SetOpacity(0.75));
	EXPECT_EQ(0.5, second->GetOpacity());

	DataDictionary own = element->GetAttributeDictionary();
	Must(own.Set(7, 0.125));
	EXPECT_EQ(0.75, element->GetOpacity()) << "writing to a dictionary does not reach the element";
}

TEST_F(ElementBase, IsCopiedWithoutItsPlaceInTheTree)
{
	const SVGElementRef parent = Make("svggroupelement");
	Insert(element, parent);
	Insert(Make("svgrectelement"), element);
	Must(parent->SetTranslation({100.0, 0.0}));
	Must(element->SetId(Text("a")));
	Must(element->SetElementType(Kind::symbol));
	Must(element->SetRotationPivot({1.0, 2.0}));
	Must(element->SetScale({3.0, 4.0}));
	Must(element->GetWorldTransform());

	const SVGElementRef copy = Must(CloneObject(element));
	EXPECT_EQ(copy->GetId(), "a");
	EXPECT_EQ(Kind::symbol, copy->GetElementType());
	EXPECT_EQ(element->GetLocalTransform(), copy->GetLocalTransform());
	EXPECT_EQ((Vector2d{3.0, 4.0}), copy->GetScale());
	EXPECT_FALSE(Must(Hierarchy(copy)->GetParent()));
	EXPECT_FALSE(Hierarchy(copy)->GetFirstChild());
	EXPECT_EQ(copy->GetLocalTransform(), Must(copy->GetWorldTransform()));
	Must(copy->SetRotation(1.0));
	EXPECT_EQ(copy->GetLocalTransform().Apply({1.0, 2.0}), (Vector2d{1.0, 2.0})) << "the pivot is copied too";
}

TEST_F(ElementBase, RefusesAnEmptyAttribute)
{
	EXPECT_EQ(ErrorClass::illegalArgument, element->SetAttribute(Attribute::x, Data()).GetError().GetClass());
	EXPECT_FALSE(element->HasAttribute(Attribute::x));
}

TEST_F(ElementBase, RotatesAndScalesAboutThePivotAndThenTranslates)
{
	Must(element->SetRotation(std::numbers::pi / 2));
	Must(element->SetRotationPivot({10.0, 0.0}));
	ExpectNear({10.0, 0.0}, element->GetLocalTransform().Apply({10.0, 0.0}));
	ExpectNear({10.0, 1.0}, element->GetLocalTransform().Apply({11.0, 0.0}));
	Must(element->SetScale({2.0, 3.0}));
	ExpectNear({10.0, 2.0}, element->GetLocalTransform().Apply({11.0, 0.0}));
	ExpectNear({7.0, 0.0}, element->GetLocalTransform().Apply({10.0, 1.0}));
	Must(element->SetTranslation({100.0, 200.0}));
	ExpectNear({110.0, 202.0}, element->GetLocalTransform().Apply({11.0, 0.0}));
}

TEST_F(ElementBase, AddsToTranslationRotationAndScale)
{
	Must(element->AddScale({1.0, 1.0}));
	EXPECT_EQ((Vector2d{2.0, 2.0}), element->GetScale());
	Must(element->AddTranslation({1.0, 2.0}));
	Must(element->AddTranslation({3.0, 4.0}));
	EXPECT_EQ((Vector2d{4.0, 6.0}), element->GetTranslation());
	Must(element->AddRotation(1.0));
	Must(element->AddRotation(1.0));
	EXPECT_EQ(2.0, element->GetRotation());
	ExpectNear({4.0 + 2.0 * std::cos(2.0), 6.0 + 2.0 * std::sin(2.0)}, element->GetLocalTransform().Apply({1.0, 0.0}));
}

TEST_F(ElementBase, OverwritesAMatrixWithTheNextTranslation)
{
	const Matrix2d matrix{{1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0}};
	Must(element->SetTranslation({7.0, 8.0}));
	Must(element->SetLocalTransform(matrix));
	EXPECT_EQ(matrix, element->GetLocalTransform());
	EXPECT_EQ((Vector2d{7.0, 8.0}), element->GetTranslation());
	Must(element->AddTranslation({1.0, 1.0}));
	EXPECT_EQ((Matrix2d{{8.0, 9.0}}), element->GetLocalTransform());
}

TEST_F(ElementBase, MarksEverythingBelowAndNothingElse)
{
	const SVGElementRef child = Make("svgpathelement");
	const SVGElementRef sibling = Make("svgpathelement");
	const SVGElementRef grandchild = Make("svgrectelement");
	Insert(child, element);
	Insert(sibling, element);
	Insert(grandchild, child);
	EXPECT_TRUE(element->IsTransformDirty());
	for (const auto& each : {grandchild, sibling})
		Must(each->GetWorldTransform());
	EXPECT_FALSE(element->IsTransformDirty());

	Must(child->SetLocalTransform({{5.0, 0.0}}));
	EXPECT_TRUE(grandchild->IsTransformDirty());
	EXPECT_FALSE(sibling->IsTransformDirty());
	EXPECT_FALSE(element->IsTransformDirty());

	Must(element->SetTranslation({0.0, 7.0}));
	EXPECT_TRUE(sibling->IsTransformDirty());
	EXPECT_EQ((Vector2d{5.0, 7.0}), Must(grandchild->GetWorldTransform()).offset);
	EXPECT_FALSE(grandchild->IsTransformDirty());
	EXPECT_TRUE(sibling->IsTransformDirty());

	Must(element->MarkTransformDirty());
	EXPECT_TRUE(grandchild->IsTransformDirty());
}

TEST_F(ElementBase, KnowsItsWorldTransformAfterAnyChangeOfTheTree)
{
	std::mt19937 random(20);
	std::vector<SVGElementRef> elements;
	for (int i = 0; i < 12; i++)
		elements.push_back(Make(i % 2 == 0 ? "svggroupelement" : "svgrectelement"));
	const auto pick = [&]() -> const SVGElementRef&
	{
		return elements[random() % elements.size()];
	};
	const auto number = [&]
	{
		return static_cast<Float>(random() % 3) - 1.0;
	};
	for (int step = 0; step < 20000; step++)
	{
		const SVGElementRef& at = pick();
		switch (random() % 6)
		{
		case 0:
			Must(at->SetLocalTransform({{number(), number()}, {number(), number()}, {number(), number()}}));
			break;
		case 1:
			Must(at->AddTranslation({number(), number()}));
			break;
		case 2: // Refused when it would make a circle.
			IgnoreResult(Hierarchy(at)->InsertAsLastChildOf(Hierarchy(pick()), {}));
			break;
		case 3:
			if (random() % 8 == 0)
				Hierarchy(at)->RemoveAllChildren();
			break;
		default:
			ASSERT_EQ(ProductOfAncestors(at), Must(at->GetWorldTransform())) << "step " << step;
		}
	}
}

/// Elements of another module: they stand at (100, 0) whatever is above them, tell those below of a mark once they are
/// shown, and fail while they are not displayed.
class ForeignElements : public ElementBase
{
protected:
	void SetUp() override
	{
		_guest = Must(Module::Load(ORVAN_GUEST_MODULE));
		foreign = Must(CreateObject<SVGElementInterface>("net.orvan.test.class.element"));
	}

	void TearDown() override
	{
		foreign = nullptr;
		Hierarchy(element)->RemoveAllChildren();
		Must(Module::Unload(_guest));
	}

	SVGElementRef foreign;
	const SVGElementRef below = Make("svgrectelement");

private:
	Module* _guest = nullptr;
};

TEST_F(ForeignElements, PassOnTheirTransformsAndTheirErrors)
{
	Insert(below, foreign);
	Must(below->SetTranslation({1.0, 2.0}));
	Must(foreign->SetDisplay(SVGDisplay::none));
	EXPECT_EQ("The place is unknown.", MessageOf(below->GetWorldTransform()));
	EXPECT_TRUE(below->IsTransformDirty());
	Must(foreign->SetDisplay(SVGDisplay::shown));
	EXPECT_EQ((Vector2d{101.0, 2.0}), Must(below->GetWorldTransform()).offset);
}

TEST_F(ForeignElements, AreMarkedWithAllBelowAlsoWhereTheElementsAboveAreDirty)
{
	// Nobody asks for the place of a group: from the top, each of these is dirty.
	const SVGElementRef inner = Make("svggroupelement");
	Insert(below, foreign);
	Insert(inner, element);
	Insert(foreign, inner);
	Must(below->GetWorldTransform());
	EXPECT_TRUE(element->IsTransformDirty());
	CollectedDiagnostics marks;
	Must(element->SetTranslation({3.0, 4.0}));
	EXPECT_EQ(std::vector<std::string>{"marked"}, marks.lines);
	EXPECT_TRUE(below->IsTransformDirty());

	Must(below->GetWorldTransform());
	const SVGElementRef other = Make("svggroupelement");
	Insert(inner, other);
	EXPECT_EQ(2u, marks.lines.size());
	EXPECT_TRUE(below->IsTransformDirty()) << "another parent, another place";
	Must(other->MarkTransformDirty());
	Must(inner->MarkTransformDirty());
	EXPECT_EQ(4u, marks.lines.size());
}

TEST_F(ForeignElements, AreMarkedOnceEachHoweverTheyTakeTurnsWithOthers)
{
	constexpr std::size_t kTurns = 20; // With two marks for each mark above, a million.
	SVGElementRef at = element;
	for (std::size_t i = 0; i < kTurns; i++)
	{
		const auto next = Must(CreateObject<SVGElementInterface>("net.orvan.test.class.element"));
		Must(next->SetDisplay(SVGDisplay::shown));
		Insert(next, at);
		at = Make("svggroupelement");
		Insert(at, next);
	}
	CollectedDiagnostics marks;
	Must(element->MarkTransformDirty());
	EXPECT_EQ(kTurns, marks.lines.size());
}

TEST_F(ForeignElements, ThatCannotBeMarkedKeepNoMarkFromOthers)
{
	const SVGElementRef sibling = Make("svgrectelement");
	Insert(foreign, element);
	Insert(below, foreign);
	Insert(sibling, element);
	Insert(Must(CreateObject<SVGElementInterface>("net.orvan.test.class.element")), element); // Which does not fail.
	for (const auto& each : {below, sibling})
		Must(each->GetWorldTransform());
	Must(foreign->SetDisplay(SVGDisplay::none));
	EXPECT_EQ("No mark sticks.", MessageOf(element->SetTranslation({5.0, 6.0})));
	EXPECT_EQ("No mark sticks.", MessageOf(element->MarkTransformDirty())) << "each time";
	for (const auto& each : {below, sibling})
		EXPECT_TRUE(each->IsTransformDirty());
	EXPECT_EQ((Vector2d{5.0, 6.0}), Must(sibling->GetWorldTransform()).offset) << "what was set stays set";
	Must(foreign->SetDisplay(SVGDisplay::shown));
	EXPECT_EQ("no error", MessageOf(element->MarkTransformDirty()));
	EXPECT_TRUE(sibling->IsTransformDirty());
}

TEST_F(ElementBase, WorldTransformsAreHadInTreesDeeperThanTheStack)
{
	constexpr int kDepth = 100000;
	SVGElementRef leaf = element;
	Must(leaf->SetTranslation({1.0, 0.0}));
	for (int i = 1; i < kDepth; i++)
	{
		const SVGElementRef below = Make("svggroupelement");
		Must(below->SetTranslation({1.0, 0.0}));
		Insert(below, leaf);
		leaf = below;
	}
	EXPECT_EQ((Vector2d{kDepth, 0.0}), Must(leaf->GetWorldTransform()).offset);
	Must(element->SetTranslation({0.0, 0.0}));
	EXPECT_TRUE(leaf->IsTransformDirty());
	EXPECT_EQ((Vector2d{kDepth - 1, 0.0}), Must(leaf->GetWorldTransform()).offset);
}

TEST_F(ElementBase, IsAsItWasWhenASetterHasNoMemory)
{
	BaseArray<SVGLength> dashes;
	Must(dashes.Resize(3));
	const int count = FailEachAllocation(
		[&]() -> Result<void>
		{
			const SVGElementRef copy = ORVAN_TRY(CloneObject(element));
			const auto attempt = [&](Result<void> result, Attribute key)
			{
				EXPECT_EQ(result.IsOk(), copy->HasAttribute(key));
				return result;
			};
			ORVAN_TRY(attempt(copy->SetOpacity(0.5), Attribute::opacity));
			ORVAN_TRY(attempt(copy->SetStrokeDashArray(dashes), Attribute::strokeDashArray));
			ORVAN_TRY(attempt(copy->SetFill({}), Attribute::fill));
			ORVAN_TRY(copy->SetTranslation({1.0, 1.0}));
			ORVAN_TRY(copy->GetWorldTransform());
			ORVAN_TRY(copy->GetStrokeDashArray());
			return {};
		});
	EXPECT_GT(count, 5);
}

} // namespace
} // namespace orvan
