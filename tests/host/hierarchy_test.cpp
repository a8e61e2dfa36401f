// SPDX-License-Identifier: MIT
#include "orvan/hierarchy.h"

#include "runtime/registry.h"
#include "support.h"

namespace orvan
{
namespace
{

class Node : public HierarchyObject
{
public:
	void OnParentChanged() noexcept
	{
		parentChanges++;
	}

	Result<void> CopyStateTo(Node&) const noexcept
	{
		return {};
	}

	int parentChanges = 0;
};

constexpr const char* kNodeClass = "net.orvan.test.class.node";
constexpr ClassDeclaration kNode =
	DeclareClass<Node, Implements<HierarchyObjectInterface, HierarchyObject>>(kNodeClass);

HierarchyObjectRef NewNode()
{
	static const bool isRegistered = runtime::AddClass(kNode).IsOk();
	EXPECT_TRUE(isRegistered);
	return Must(CreateObject<HierarchyObjectInterface>(kNodeClass));
}

HierarchyObjectRef NewChild(const HierarchyObjectRef& parent)
{
	HierarchyObjectRef child = NewNode();
	Must(child->InsertAsLastChildOf(parent, {}));
	return child;
}

std::vector<HierarchyObjectRef> Children(const HierarchyObjectRef& parent)
{
	std::vector<HierarchyObjectRef> children;
	for (auto child = parent->GetFirstChild(); child; child = child->GetNextSibling())
		children.push_back(child);
	const auto list = Must(parent->GetChildren());
	EXPECT_TRUE(std::equal(children.begin(), children.end(), list.begin(), list.end()));
	return children;
}

int ParentChanges(const HierarchyObjectRef& node)
{
	return static_cast<const Node*>(node.GetObject())->parentChanges;
}

TEST(Hierarchy, KeepsChildrenInOrderAndAlive)
{
	const auto root = NewNode();
	const auto a = NewChild(root);
	const auto b = NewChild(root);
	NewChild(b);
	EXPECT_EQ((std::vector{a, b}), Children(root));
	EXPECT_EQ(root, Must(a->GetParent()));
	EXPECT_FALSE(Must(root->GetParent()));
	EXPECT_EQ(4, runtime::CountLiveObjects(kNode));
}

TEST(Hierarchy, MovesAnObjectFromParentToParentAndToTheEnd)
{
	const auto first = NewNode();
	const auto second = NewNode();
	const auto a = NewChild(first);
	const auto b = NewChild(first);
	const auto c = NewChild(first);
	Must(b->InsertAsLastChildOf(second, {}));
	EXPECT_EQ((std::vector{a, c}), Children(first));
	EXPECT_EQ((std::vector{b}), Children(second));
	Must(a->InsertAsLastChildOf(first, {}));
	EXPECT_EQ((std::vector{c, a}), Children(first));
	EXPECT_EQ(2, ParentChanges(b));
}

TEST(Hierarchy, TakesOverTheCountOfANewObject)
{
	const auto root = NewNode();
	const auto a = NewChild(root);
	auto* const b = static_cast<Node*>(NewNode().Detach());
	b->PlaceNew(*static_cast<HierarchyObject*>(root.GetObject()));
	EXPECT_EQ((std::vector{a, HierarchyObjectRef::From(b)}), Children(root));
	EXPECT_EQ(root, Must(HierarchyObjectRef::From(b)->GetParent()));
	EXPECT_EQ(1, b->parentChanges);
	root->RemoveAllChildren();
	EXPECT_EQ(2, runtime::CountLiveObjects(kNode)) << "the tree had the only count of the second child";
}

TEST(Hierarchy, RefusesEmptyParentsAndCircles)
{
	const auto root = NewNode();
	const auto child = NewChild(root);
	const auto grandchild = NewChild(child);
	EXPECT_EQ(ErrorClass::nullReference, root->InsertAsLastChildOf({}, {}).GetError().GetClass());
	EXPECT_EQ("An object cannot become its own child.", MessageOf(root->InsertAsLastChildOf(root, {})));
	EXPECT_EQ("An object cannot become a child of an object below it.",
			  MessageOf(root->InsertAsLastChildOf(grandchild, {})));
	EXPECT_EQ((std::vector{child}), Children(root));
}

TEST(Hierarchy, RemovedChildrenThatAreStillHeldAreRootsOfTheirOwn)
{
	const auto root = NewNode();
	const auto child = NewChild(root);
	const auto grandchild = NewChild(child);
	NewChild(root);
	root->RemoveAllChildren();
	EXPECT_TRUE(Children(root).empty());
	EXPECT_FALSE(Must(child->GetParent()));
	EXPECT_FALSE(child->GetNextSibling());
	EXPECT_EQ(child, Must(grandchild->GetParent()));
	EXPECT_EQ(2, ParentChanges(child));
	EXPECT_EQ(3, runtime::CountLiveObjects(kNode));
}

TEST(Hierarchy, ChildrenOutliveAReleasedParent)
{
	auto root = NewNode();
	const auto child = NewChild(root);
	root = {};
	EXPECT_FALSE(Must(child->GetParent()));
}

TEST(Hierarchy, CopiesStandOutsideOfEveryTree)
{
	const auto root = NewNode();
	const auto child = NewChild(root);
	NewChild(child);
	const auto copy = Must(CloneObject(child));
	EXPECT_FALSE(Must(copy->GetParent()));
	EXPECT_FALSE(copy->GetFirstChild());
	EXPECT_EQ(1u, Children(root).size());
}

TEST(Hierarchy, ReleasesAMillionLevelsWithoutRecursion)
{
	{
		const auto root = NewNode();
		auto deepest = root;
		for (int i = 0; i < 1'000'000; i++)
			deepest = NewChild(deepest);
	}
	EXPECT_EQ(0, runtime::CountLiveObjects(kNode));
}

} // namespace
} // namespace orvan
