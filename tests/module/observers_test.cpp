// SPDX-License-Identifier: MIT
/// What observers hear of changes, and what they may do meanwhile.
#include "editing.h"

namespace orvan
{
namespace
{

TEST_F(Editing, TellsObserversWhatChanged)
{
	const std::int64_t number = Must(edit->AddObserver(&Hear, this));
	const SVGElementRef b = Find(document, "b");
	const SVGElementRef p = Find(document, "p");
	Must(b->SetFill({}));
	Must(b->SetTranslation({1.0, 2.0}));
	Must(Cast<SVGSizeInterface>(b)->SetSize({}));
	EXPECT_EQ("b.fill b.transform b.", Heard());
	Must(Cast<SVGPathElementInterface>(p)->LineTo({}));
	Must(Cast<SVGUseElementInterface>(Find(document, "u"))->SetLink(Text("d")));
	EXPECT_EQ("p.d u.href", Heard());
	for (const Attribute none : {Attribute::fill, Attribute::transform, Attribute::d})
		Must(Edit("u")->RemoveAttribute(none));
	for (const Attribute removed : {Attribute::d, Attribute::d, Attribute::transform})
		Must(Edit("p")->RemoveAttribute(removed));
	Must(Edit("d")->CopyAttribute(b, Attribute::fill));
	EXPECT_EQ("p.d d.fill", Heard()) << "what is not there cannot be removed";
	Must(Edit("c")->InsertChildBefore(b, {}));
	Must(Edit("c")->Remove());
	Must(b->SetOpacity(0.5)); // Of no tree.
	EXPECT_EQ("+b<c -c<s", Heard());
	Must(Edit(b)->CopyAttributes(p)); // Nor this.
	Must(Edit(p)->CopyAttributes(b));
	EXPECT_EQ("p. p.transform", Heard());
	Must(Edit("a")->ReplaceWith(b));
	EXPECT_EQ("-a<s +b<s", Heard());
	Must(edit->RenameId(Find(document, "d"), Text("e")));
	EXPECT_EQ("e.id", Heard());
	const SVGElementRef fresh = Make("svgtextelement");
	Must(fresh->SetId(Text("t")));
	Insert(fresh, b);
	EXPECT_FALSE(IsFound("t")) << "The older methods leave the table of ids as it is.";
	Must(Cast<SVGTextElementInterface>(fresh)->SetText(Text("x")));
	Cast<HierarchyObjectInterface>(b)->RemoveAllChildren();
	EXPECT_EQ("+t<b t.text -t<b", Heard());
	Must(Find(document, "e")->GetWorldTransform());
	Must(document->GetRootElement()->SetTranslation({1.0, 2.0}));
	EXPECT_TRUE(Find(document, "e")->IsTransformDirty());
	EXPECT_EQ("s.transform", Heard());
	const CollectedFindings findings;
	Must(document->Init(TextFile("<svg fill='x'/>").GetUrl()));
	EXPECT_FALSE(IsFound("e")) << "Ids go with their tree, also those of later.";
	document->Reset();
	EXPECT_EQ("loaded 3 loaded 0", Heard());
	Must(document->Init(TextFile("<svg id='s'/>").GetUrl()));
	Must(edit->RenameId(document->GetRootElement(), Text("later")));
	document->Reset();
	EXPECT_FALSE(IsFound("later"));
	EXPECT_EQ("loaded 1 later.id loaded 0", Heard());
	Must(document->Init(TextFile("<svg/>").GetUrl()));
	Must(document->GetRootElement()->SetOpacity(0.5));
	EXPECT_EQ("loaded 1 .opacity", Heard());
	edit->RemoveObserver(number);
	Must(document->Init(TextFile("<svg/>").GetUrl()));
	EXPECT_EQ("", Heard());
	EXPECT_EQ(ErrorClass::nullReference, ClassOf(edit->AddObserver(nullptr, nullptr)));
}

TEST_F(Editing, TellsObserversOfStepsThereAndBack)
{
	Must(edit->AddObserver(&Hear, this));
	const SVGElementRef b = Find(document, "b");
	const SVGElementRef u = Find(document, "u");
	const SVGElementRef d = Find(document, "d");
	Must(edit->BeginTransaction());
	Must(b->SetFill({}));
	Must(d->SetTranslation({1.0, 2.0}));
	Must(Edit("c")->Remove());
	Must(u->SetFill({})); // Out of the tree by now.
	Must(u->SetTranslation({1.0, 2.0}));
	Must(Edit(u)->RemoveAttribute(Attribute::href));
	Must(edit->CommitTransaction());
	EXPECT_EQ("b.fill d.transform -c<s", Heard());
	Must(b->GetWorldTransform());
	Must(d->GetWorldTransform());
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ("u.href u.transform u.fill +c<s d.transform b.fill", Heard()) << "the last first";
	EXPECT_TRUE(d->IsTransformDirty());
	EXPECT_FALSE(b->IsTransformDirty());
	EXPECT_TRUE(Must(edit->Redo()));
	EXPECT_EQ("b.fill d.transform -c<s", Heard());
	Must(edit->BeginTransaction());
	Must(b->SetOpacity(0.5));
	Must(d->SetOpacity(0.5));
	Must(edit->RollbackTransaction());
	EXPECT_EQ("b.opacity d.opacity d.opacity b.opacity", Heard());
	// What observers do meanwhile is told once; and one step is taken back after the other.
	meanwhile = [](Editing& test)
	{
		Must(Find(test.document, "d")->SetOpacity(0.5));
		EXPECT_EQ(ErrorClass::illegalState, ClassOf(test.edit->Undo()));
		EXPECT_EQ(ErrorClass::illegalState, ClassOf(test.edit->Redo()));
		EXPECT_EQ(ErrorClass::illegalState, ClassOf(test.edit->ClearHistory()));
	};
	Must(Edit("p")->Remove());
	EXPECT_EQ("-p<a d.opacity", Heard());
	// Whoever loads another file while a step is taken back hears no more of it.
	Must(edit->BeginTransaction());
	Must(Edit("b")->Remove());
	Must(d->SetFill({}));
	Must(edit->CommitTransaction());
	Heard();
	meanwhile = [](Editing& test)
	{
		test.document->Reset();
	};
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ("d.fill loaded 0", Heard());
}

TEST_F(Editing, RecordsWithoutObserversAndInWhateverTree)
{
	// An observer that goes leaves the transaction.
	const std::string before = JsonOf(document);
	Must(edit->BeginTransaction());
	edit->RemoveObserver(Must(edit->AddObserver(&Hear, this)));
	Must(Find(document, "b")->SetOpacity(0.5));
	// Somewhere in a tree of no document, too.
	const SVGElementRef top = Make("svggroupelement");
	const SVGElementRef inner = Make("svggroupelement");
	Insert(inner, top);
	const SVGElementRef d = Find(document, "d");
	Must(Edit(inner)->InsertChildBefore(d, {}));
	Must(d->SetOpacity(0.5));
	Must(edit->RollbackTransaction());
	EXPECT_EQ(before, JsonOf(document));
	// A text takes all that stands in it along.
	const SVGDocumentRef drawing = MakeDocument();
	SVGImportOptions options;
	options.isComplete = true;
	const auto import = Cast<SVGDocumentImportInterface>(drawing);
	Must(import->SetImportOptions(options));
	constexpr std::string_view kText = "<svg><text id='t'>a<tspan>b</tspan></text></svg>";
	Must(import->InitFromMemory(kText.data(), static_cast<std::int64_t>(kText.size()), {}));
	const auto own = Cast<SVGDocumentEditInterface>(drawing);
	const auto text = Cast<SVGTextElementInterface>(Find(drawing, "t"));
	Must(own->BeginTransaction());
	Must(text->SetText(Text("x")));
	EXPECT_EQ(Text("x"), text->GetText());
	EXPECT_EQ(0, Edit(Find(drawing, "t"))->GetChildCount());
	Must(own->RollbackTransaction());
	EXPECT_EQ(Text("ab"), text->GetText());
	EXPECT_EQ(2, Edit(Find(drawing, "t"))->GetChildCount());
}

TEST_F(Editing, LetsObserversDoAsTheyLike)
{
	const SVGElementRef b = Find(document, "b");
	// Remove themselves, and add others, which hear of the next change.
	static std::int64_t number;
	number = Must(edit->AddObserver(&Hear, this));
	meanwhile = [](Editing& test)
	{
		test.edit->RemoveObserver(number);
		number = Must(test.edit->AddObserver(&Hear, &test));
		Must(test.edit->AddObserver(&Hear, &test));
	};
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill", Heard());
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill b.fill", Heard());
	meanwhile = [](Editing& test)
	{
		test.edit->RemoveObserver(number);
	};
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill b.fill", Heard());
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill", Heard());
	number = Must(edit->AddObserver(&Hear, this)) - 1;
	meanwhile = [](Editing& test)
	{
		test.edit->RemoveObserver(number + 1);
	};
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill", Heard());
	// Edit, and load another file.
	meanwhile = [](Editing& test)
	{
		Must(Find(test.document, "d")->SetOpacity(0.5));
	};
	Must(b->SetFill({}));
	EXPECT_EQ("b.fill d.opacity", Heard());
	meanwhile = [](Editing& test)
	{
		EXPECT_EQ(ErrorClass::illegalState, ClassOf(test.edit->RollbackTransaction()));
		test.document->Reset();
	};
	Must(edit->BeginTransaction());
	Must(Edit("d")->Remove());
	EXPECT_EQ("-d<s loaded 0", Heard());
	EXPECT_FALSE(edit->IsInTransaction());
	// Let go of the document and its tree.
	static SVGDocumentRef last;
	static SVGElementRef element;
	last = Load("<svg><g id='g'/></svg>");
	element = Find(last, "g");
	const auto lastEdit = []
	{
		return Cast<SVGDocumentEditInterface>(last);
	};
	Must(lastEdit()->AddObserver(&Hear, this));
	Must(lastEdit()->BeginTransaction());
	meanwhile = [](Editing&)
	{
		element = nullptr;
		last = nullptr;
	};
	Must(element->SetOpacity(0.5));
	EXPECT_EQ("g.opacity", Heard());
	EXPECT_FALSE(last);
	last = Load("<svg><g id='g'/></svg>");
	Must(lastEdit()->AddObserver(&Hear, this));
	Must(lastEdit()->BeginTransaction());
	Must(Edit(Find(last, "g"))->Remove());
	Must(lastEdit()->CommitTransaction());
	meanwhile = [](Editing&)
	{
		last = nullptr;
	};
	Must(lastEdit()->Undo());
	EXPECT_EQ("-g< +g<", Heard());
}

} // namespace
} // namespace orvan
