// SPDX-License-Identifier: MIT
/// Taking away, moving, renaming.
#include "editing.h"

#include <cmath>
#include <limits>

namespace orvan
{
namespace
{

std::size_t CountOf(std::string_view text, std::string_view part)
{
	std::size_t count = 0;
	for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
		count++;
	return count;
}

TEST_F(Editing, TellsWhereAnElementStands)
{
	EXPECT_EQ(document, Edit("b")->GetDocument());
	EXPECT_EQ(3, Edit("s")->GetChildCount());
	EXPECT_EQ(0, Edit("b")->GetChildCount());
	EXPECT_EQ(Find(document, "d"), Edit("s")->GetChildAt(2));
	for (const std::int64_t index : {-1, 3})
		EXPECT_FALSE(Edit("s")->GetChildAt(index));
	EXPECT_EQ(1, Edit("c")->GetIndex());
	EXPECT_EQ(-1, Edit("s")->GetIndex());
	EXPECT_FALSE(Edit(Make("svgrectelement"))->GetDocument());
	// The tree may outlive its document.
	SVGDocumentRef other = Load("<svg><rect/></svg>");
	const SVGElementEditRef left = Edit(other->GetRootElement());
	other = nullptr;
	EXPECT_FALSE(left->GetDocument());
}

TEST_F(Editing, MovesTakesOutAndReplaces)
{
	const SVGElementRef b = Find(document, "b");
	Must(b->GetWorldTransform());
	Must(Edit("c")->InsertChildBefore(b, Find(document, "u")));
	EXPECT_EQ("svg#s(g#a(path#p) g#c(rect#b use#u) rect#d)", Tree());
	EXPECT_TRUE(b->IsTransformDirty());
	Must(Edit("s")->InsertChildBefore(Find(document, "d"), Find(document, "a")));
	Must(Edit("c")->InsertChildBefore(b, {}));
	Must(Edit("c")->InsertChildBefore(b, b));
	EXPECT_EQ("svg#s(rect#d g#a(path#p) g#c(use#u rect#b))", Tree());

	const SVGElementRef fresh = Make("svgcircleelement");
	Must(fresh->SetId(Text("new")));
	Must(Edit("a")->ReplaceWith(fresh));
	EXPECT_EQ("svg#s(rect#d circle#new g#c(use#u rect#b))", Tree());
	Must(Edit("new")->ReplaceWith(Find(document, "c")));
	EXPECT_EQ("svg#s(rect#d g#c(use#u rect#b))", Tree());
	Must(Edit(b)->Remove());
	Must(Edit(b)->Remove());
	EXPECT_EQ("svg#s(rect#d g#c(use#u))", Tree());
	EXPECT_FALSE(Edit(b)->GetDocument());
	// In a tree of no document.
	const SVGElementRef group = Make("svggroupelement");
	Must(Edit(group)->InsertChildBefore(fresh, {}));
	Must(Edit(fresh)->ReplaceWith(b));
	EXPECT_EQ("g(rect#b)", Outline(group));
}

TEST_F(Editing, RefusesWhatWouldTearTheTree)
{
	const std::string before = Tree();
	const SVGElementRef a = Find(document, "a");
	const SVGElementRef root = document->GetRootElement();
	const SVGElementRef none;
	const SVGDocumentRef elsewhere = Load("<svg/>");
	const auto refuses = [](const Result<void>& result)
	{
		return !result.IsOk() && result.GetError().GetClass() != ErrorClass::outOfMemory;
	};
	Must(edit->AddObserver(&Hear, this));
	EXPECT_TRUE(refuses(Cast<HierarchyObjectInterface>(a)->InsertAsLastChildOf(
		Cast<HierarchyObjectInterface>(Find(document, "b")), {})));
	EXPECT_TRUE(refuses(Edit("b")->ReplaceWith(elsewhere->GetRootElement())));
	EXPECT_TRUE(refuses(Edit("b")->InsertChildBefore(a, {})));
	EXPECT_TRUE(refuses(Edit(a)->InsertChildBefore(a, {})));
	EXPECT_TRUE(refuses(Edit(a)->InsertChildBefore(none, {})));
	EXPECT_TRUE(refuses(Edit(a)->InsertChildBefore(Find(document, "d"), Find(document, "u"))));
	EXPECT_TRUE(refuses(Edit(Make("svggroupelement"))->InsertChildBefore(root, {})));
	EXPECT_TRUE(refuses(Edit(root)->Remove()));
	EXPECT_TRUE(refuses(Edit(root)->ReplaceWith(Make("svgsvgelement"))));
	EXPECT_TRUE(refuses(Edit("b")->ReplaceWith(a)));
	EXPECT_TRUE(refuses(Edit("b")->ReplaceWith(none)));
	Must(Edit("b")->ReplaceWith(Find(document, "b")));
	EXPECT_EQ(before, Tree());
	EXPECT_EQ("", Heard());
}

TEST_F(Editing, FindsWhatStandsInTheTree)
{
	const SVGElementRef a = Find(document, "a");
	Must(Find(document, "b")->SetId(Text("other"))); // Found under "b", as ever.
	Must(Edit("c")->InsertChildBefore(Find(document, "b"), {}));
	EXPECT_FALSE(IsFound("other"));
	Must(Edit(a)->InsertChildBefore(Find(document, "b"), Find(document, "p")));
	Must(Edit(a)->Remove());
	for (const char* id : {"a", "b", "p", "other"})
		EXPECT_FALSE(IsFound(id)) << id;
	EXPECT_EQ(4u, Must(document->GetElementsByIdWithPrefix({})).GetCount());
	const SVGElementRef second = Make("svgrectelement");
	Must(second->SetId(Text("p")));
	Must(Edit("c")->InsertChildBefore(second, {}));
	EXPECT_EQ(second, Find(document, "p"));
	Must(Edit("c")->InsertChildBefore(a, {}));
	EXPECT_EQ(a, Find(document, "a"));
	EXPECT_EQ(second, Find(document, "p")) << "the first that came";
	EXPECT_TRUE(IsFound("other"));
	EXPECT_EQ(7u, Must(document->GetElementsByIdWithPrefix({})).GetCount());
	// Moving about changes nothing.
	Must(Edit("s")->InsertChildBefore(a, Find(document, "d")));
	EXPECT_EQ(a, Find(document, "a"));
	// To where it may come back from.
	Must(edit->BeginTransaction());
	Must(Edit("c")->Remove());
	const SVGElementRef fresh = Make("svgrectelement");
	Must(fresh->SetId(Text("fresh")));
	Must(Edit(second)->InsertChildBefore(fresh, {}));
	EXPECT_FALSE(IsFound("fresh")) << "out of the tree";
	Must(Edit(a)->InsertChildBefore(Find(document, "d"), {}));
	EXPECT_TRUE(IsFound("d"));
	const SVGElementRef d = Find(document, "d");
	Must(Edit(second)->InsertChildBefore(d, {}));
	EXPECT_FALSE(IsFound("d"));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(edit->RenameId(d, Text("e"))));
	Must(edit->RollbackTransaction());
	EXPECT_TRUE(IsFound("d"));
	// From one document to another.
	const SVGDocumentRef elsewhere = Load("<svg id='t'/>");
	Must(Edit(elsewhere->GetRootElement())->InsertChildBefore(a, {}));
	EXPECT_FALSE(IsFound("a"));
	EXPECT_EQ(a, Find(elsewhere, "a"));
	EXPECT_EQ(elsewhere, Edit(a)->GetDocument());
}

TEST_F(Editing, RemovesListsAndCopiesAttributes)
{
	const SVGDocumentRef drawing = Load("<svg><g id='g' fill='red'><path id='p' d='M0 0' transform='scale(2)' "
										"fill='blue' stroke='lime' opacity='.5'/><use id='u' href='#p'/></g></svg>");
	const SVGElementRef path = Find(drawing, "p");
	const SVGElementRef use = Find(drawing, "u");
	const auto numbersOf = [](const SVGElementRef& element)
	{
		std::string names;
		for (const Attribute number : Must(Edit(element)->GetAttributeNumbers()))
			names += std::string(kSVGAttributeNames.at(static_cast<std::size_t>(number))) + ' ';
		return names;
	};
	EXPECT_EQ("id transform opacity d fill stroke ", numbersOf(path));
	EXPECT_EQ("id href ", numbersOf(use));
	Must(Edit(use)->CopyAttribute(path, Attribute::stroke));
	Must(Edit(use)->CopyAttribute(path, Attribute::d)); // Uses have none.
	Must(Edit(use)->CopyAttribute(path, Attribute::transform));
	EXPECT_EQ("id href transform stroke ", numbersOf(use));
	EXPECT_EQ(1.0, use->GetStroke().color.green);
	const auto other = Make<SVGUseElementInterface>("svguseelement");
	Must(Edit(Cast<SVGElementInterface>(other))->CopyAttribute(use, Attribute::href));
	EXPECT_EQ(Text("p"), other->GetLink());
	Must(Edit(path)->CopyAttribute(use, Attribute::opacity));
	EXPECT_EQ("id transform d fill stroke ", numbersOf(path));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(Edit(path)->CopyAttribute(use, Attribute::id)));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(Edit(path)->CopyAttributes({})));

	for (const Attribute number : {Attribute::fill, Attribute::fill, Attribute::d, Attribute::transform})
		Must(Edit(path)->RemoveAttribute(number));
	EXPECT_EQ("id stroke ", numbersOf(path));
	EXPECT_EQ((Vector2d{1.0, 1.0}), path->GetScale());
	Must(Edit(use)->RemoveAttribute(Attribute::href));
	Must(Edit(use)->RemoveAttribute(Attribute::id));
	EXPECT_EQ("transform stroke ", numbersOf(use));
	Must(Edit(path)->CopyAttributes(Find(drawing, "g")));
	EXPECT_EQ("id fill ", numbersOf(path));
	EXPECT_EQ(path, Find(drawing, "p"));
}

TEST_F(Editing, ReadsAndWritesWholePaths)
{
	const auto path = Cast<SVGPathEditInterface>(Find(document, "p"));
	const auto dataOf = [&](const char* data)
	{
		Must(path->SetPathData(Text(data)));
		return std::string(Must(path->GetPathData()));
	};
	EXPECT_EQ("M1 2L3 4", std::string(Must(path->GetPathData())));
	EXPECT_EQ("", dataOf(""));
	EXPECT_EQ("M10-.5L10 .25 .5 1e-9C1 2 3 4 5 6Z", dataOf("m10-.5v.75L.5 1E-9C1,2,3,4 5 6z"));
	EXPECT_EQ("M1e22-1e-9", dataOf("M1e22-1e-9"));
	// Every number reads back as it was.
	std::uint64_t state = 1;
	BaseArray<SVGPathCommand> commands;
	for (int i = 0; i < 1000; i++)
	{
		SVGPathCommand command;
		command.type = static_cast<SVGPathCommandType>(i == 0 ? 0 : i % 4);
		for (Vector2d& point : command.points)
		{
			for (Float* number : {&point.x, &point.y})
			{
				do
				{
					state = state * 6364136223846793005u + 1442695040888963407u;
					*number = i % 3 == 0 ? static_cast<Float>(state >> 50) / 8.0 : std::bit_cast<Float>(state);
				} while (!std::isfinite(*number));
			}
		}
		Must(commands.Append(command));
	}
	Must(path->SetPath(commands));
	const String text = Must(path->GetPathData());
	Must(path->Clear());
	EXPECT_TRUE(path->GetPathView().IsEmpty());
	Must(path->SetPathData(text));
	ASSERT_EQ(commands.GetCount(), path->GetPathView().GetCount());
	std::size_t i = 0;
	for (const SVGPathCommand& command : path->GetPathView())
	{
		const SVGPathCommand& expected = commands[i++];
		ASSERT_EQ(expected.type, command.type) << i;
		for (int k = command.type == SVGPathCommandType::cubic ? 0 : 2; k < 3; k++)
		{
			if (command.type != SVGPathCommandType::close)
			{
				ASSERT_EQ(expected.points[k], command.points[k]) << i << ' ' << text.View().substr(0, 200);
			}
		}
	}
	EXPECT_EQ("Path data has a fault at character 6.", MessageOf(path->SetPathData(Text("M1 2 x"))));
	EXPECT_EQ(text, Must(path->GetPathData()));
	commands[3].type = static_cast<SVGPathCommandType>(7);
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(path->SetPath(commands)));
	Must(Cast<SVGPathElementInterface>(path)->LineTo({std::numeric_limits<Float>::infinity(), 0.0}));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(path->GetPathData()));
}

TEST_F(Editing, ResolvesLinks)
{
	const auto use = Cast<SVGUseEditInterface>(Find(document, "u"));
	EXPECT_FALSE(use->GetShadowRoot());
	EXPECT_EQ(Find(document, "b"), Must(use->ResolveLink()));
	EXPECT_EQ(Find(document, "b"), use->GetShadowRoot());
	EXPECT_FALSE(Cast<SVGUseElementInterface>(use)->IsLinkDirty());
	for (const char* link : {"nothing", "c"})
	{
		Must(Cast<SVGUseElementInterface>(use)->SetLink(Text(link)));
		EXPECT_FALSE(use->ResolveLink().IsOk()) << link;
		EXPECT_FALSE(use->GetShadowRoot());
	}
	EXPECT_EQ(ErrorClass::notFound, ClassOf(Make<SVGUseEditInterface>("svguseelement")->ResolveLink()));
}

TEST_F(Editing, RenamesWithAllReferences)
{
	const SVGDocumentRef drawing = MakeDocument();
	SVGImportOptions options;
	options.isComplete = true;
	const auto import = Cast<SVGDocumentImportInterface>(drawing);
	Must(import->SetImportOptions(options));
	constexpr std::string_view kText =
		"<svg><g id='x' fill='url(#x) red' stroke='url(#y)' mask='url(#x)' clip-path='url(#x)'/><use href='#x'/>"
		"<path style='marker:url(#x)' filter='url(#x) blur(1px)'/><linearGradient href='#x'/><rect filter='url(#x)'/>"
		"<g id='x'/><g id='y'/><rect mask='url(#y), url(#x), url(#xx)'/></svg>";
	Must(import->InitFromMemory(kText.data(), static_cast<std::int64_t>(kText.size()), {}));
	const std::string before = JsonOf(drawing);
	const auto names = Cast<SVGDocumentEditInterface>(drawing);
	const SVGElementRef first = Find(drawing, "x");
	Must(names->RenameId(first, Text("neu")));
	EXPECT_EQ(first, Find(drawing, "neu"));
	EXPECT_FALSE(drawing->GetElementById(Text("x")).IsOk());
	std::string expected = before;
	for (std::size_t at = 0, second = 0; (at = expected.find("\"x\"", at)) != std::string::npos; at++)
	{
		// The other element of this id keeps it. The table lists the new one last.
		if (expected.compare(at - 6, 6, "\"id\": ") == 0 && second++ == 1)
			continue;
		expected.replace(at, 3, "\"neu\"");
	}
	EXPECT_EQ(12u, CountOf(expected, "\"neu\""));
	expected.replace(expected.find("y x xx"), 6, "y neu xx");
	const std::string after = JsonOf(drawing);
	EXPECT_EQ(expected.substr(expected.find("root")), after.substr(after.find("root")));
	for (const char* taken : {"x", "y", ""})
		EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(names->RenameId(first, Text(taken)))) << taken;
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(names->RenameId(Make("svgrectelement"), Text("z"))));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(names->RenameId(Find(document, "a"), Text("z"))));
	Must(names->RenameId(first, Text("neu")));
	Must(names->RenameId(first, Text("neuer")));
	Must(names->RenameId(first, Text("neu")));
	EXPECT_EQ(after, JsonOf(drawing));

	// Nothing refers to the second of two.
	const SVGDocumentRef doubled = Load("<svg><g id='x'/><rect id='x'/><use href='#x'/></svg>");
	const auto second = Edit(doubled->GetRootElement())->GetChildAt(1);
	Must(Cast<SVGDocumentEditInterface>(doubled)->RenameId(second, Text("z")));
	EXPECT_EQ(second, Find(doubled, "z"));
	const auto use = Cast<SVGUseElementInterface>(Edit(doubled->GetRootElement())->GetChildAt(2));
	EXPECT_EQ(Text("x"), use->GetLink());
	// Taking the second out leaves the first; and when that is gone, the second can have the id.
	const SVGDocumentRef twins = Load("<svg><g id='x'/><rect id='x'/></svg>");
	const SVGElementEditRef top = Edit(twins->GetRootElement());
	const SVGElementRef one = top->GetChildAt(0);
	const SVGElementRef two = top->GetChildAt(1);
	Must(Edit(two)->Remove());
	EXPECT_EQ(one, Find(twins, "x"));
	Must(top->InsertChildBefore(two, {}));
	Must(Edit(one)->Remove());
	Must(Cast<SVGDocumentEditInterface>(twins)->RenameId(two, Text("x")));
	EXPECT_EQ(two, Find(twins, "x"));
}

TEST_F(Editing, GivesADocumentItsRoot)
{
	const SVGDocumentRef drawing = MakeDocument();
	const auto own = Cast<SVGDocumentEditInterface>(drawing);
	Must(own->AddObserver(&Hear, this));
	const SVGElementRef root = Make("svgsvgelement");
	Must(root->SetId(Text("r")));
	Must(own->BeginTransaction());
	Must(own->SetRootElement(root));
	Must(own->CommitTransaction());
	EXPECT_EQ(root, Find(drawing, "r"));
	EXPECT_EQ(drawing, Edit(root)->GetDocument());
	Must(root->SetOpacity(0.5));
	EXPECT_EQ("loaded 0 r.opacity", Heard());
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(edit->SetRootElement(root)));
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(own->SetRootElement(Find(document, "a"))));
	const SVGElementRef group = Make("svggroupelement");
	const SVGElementRef inner = Make("svgsvgelement");
	Insert(inner, group);
	EXPECT_EQ(ErrorClass::illegalArgument, ClassOf(own->SetRootElement(inner))) << "It has a parent.";
	// The ids of the former root go with it.
	Must(edit->SetRootElement(Make("svgsvgelement")));
	EXPECT_FALSE(IsFound("b"));
	EXPECT_TRUE(Must(own->Undo()));
	EXPECT_TRUE(Must(own->Undo()));
	EXPECT_FALSE(drawing->GetRootElement());
	EXPECT_FALSE(Edit(root)->GetDocument());
	EXPECT_TRUE(Must(own->Redo()));
	EXPECT_EQ(root, Find(drawing, "r"));
}

} // namespace
} // namespace orvan
