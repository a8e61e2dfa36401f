// SPDX-License-Identifier: MIT
/// Transactions, undo and redo: by random edits, and with every allocation failing in turn.
#include "support/everything.h"
#include "support/svg_module.h"
#include "support/tree_json.h"
#include "svg_edit.h"

#include <functional>
#include <random>

namespace orvan
{
namespace
{

class UndoTest : public SvgModuleTest
{
protected:
	SVGElementEditRef Edit(const SVGElementRef& element) const
	{
		return Cast<SVGElementEditInterface>(element);
	}

	SVGElementRef At(std::string_view id) const
	{
		return Find(document, id);
	}

	std::string Json() const
	{
		return JsonOf(document);
	}

	const SVGDocumentRef document = Load(kEverything);
	const SVGDocumentEditRef edit = Cast<SVGDocumentEditInterface>(document);
	const std::string loaded = Json();
};

TEST_F(UndoTest, TakesTransactionsBackAndMakesThemAgain)
{
	const auto path = Cast<SVGPathElementInterface>(At("p"));
	Must(At("r")->SetOpacity(0.25)); // Not recorded: there was no transaction yet.
	Must(Edit(At("d"))->InsertChildBefore(At("r"), {}));
	EXPECT_EQ(0, edit->GetUndoCount());
	const std::string first = Json();
	Must(edit->BeginTransaction());
	EXPECT_TRUE(edit->IsInTransaction());
	for (int i = 0; i < 40; i++)
		Must(path->LineTo({1.0 * i, 2.0}));
	Must(edit->BeginTransaction());
	Must(path->CloseSubpath());
	Must(Edit(At("layer1"))->Remove());
	Must(path->CloseSubpath()); // Out of the tree by now.
	EXPECT_FALSE(Edit(At("root"))->GetChildCount() == 0);
	Must(edit->RollbackTransaction());
	Must(edit->BeginTransaction());
	Must(At("ci")->SetTranslation({3.0, 4.0}));
	Must(edit->CommitTransaction());
	Must(edit->CommitTransaction());
	const std::string second = Json();
	EXPECT_EQ(1, edit->GetUndoCount());
	// From here on each change is a step; commands of one path are one.
	Must(At("t")->SetFill({}));
	Must(path->LineTo({}));
	Must(path->LineTo({}));
	const std::string third = Json();
	EXPECT_EQ(3, edit->GetUndoCount());
	EXPECT_TRUE(Must(edit->Undo()) && Must(edit->Undo()));
	EXPECT_EQ(second, Json());
	EXPECT_EQ((Vector2d{3.0, 4.0}), At("ci")->GetTranslation());
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ(first, Json());
	EXPECT_EQ(Vector2d(), At("ci")->GetTranslation());
	EXPECT_FALSE(Must(edit->Undo()));
	EXPECT_EQ(3, edit->GetRedoCount());
	// A transaction that is rolled back, or empty, leaves what can be redone.
	Must(edit->BeginTransaction());
	Must(Edit(At("d"))->Remove());
	Must(edit->RollbackTransaction());
	Must(edit->BeginTransaction());
	Must(edit->CommitTransaction());
	EXPECT_TRUE(Must(edit->Redo()) && Must(edit->Redo()) && Must(edit->Redo()));
	EXPECT_FALSE(Must(edit->Redo()));
	EXPECT_EQ(third, Json());
	EXPECT_TRUE(Must(edit->Undo()));
	Must(At("t")->SetOpacity(0.5));
	EXPECT_EQ(0, edit->GetRedoCount());
	EXPECT_TRUE(Must(edit->Undo()));
	Must(path->LineTo({}));
	Must(At("t")->SetOpacity(0.5));
	EXPECT_TRUE(Must(edit->Undo()));
	Must(path->LineTo({})); // Joins no step that something was taken back after.
	EXPECT_EQ(0, edit->GetRedoCount());
	EXPECT_EQ(4, edit->GetUndoCount());
	Must(path->LineTo({}));
	EXPECT_EQ(4, edit->GetUndoCount()) << "But this one joins it.";
	const std::string fourth = Json();
	// Nor does one join what is of another attribute, or of a transaction, or stands before the transaction.
	Must(At("p")->SetOpacity(0.125));
	Must(path->LineTo({5.0, 5.0}));
	EXPECT_TRUE(Must(edit->Undo()) && Must(edit->Undo()));
	EXPECT_EQ(fourth, Json());
	Must(edit->BeginTransaction());
	Must(path->LineTo({6.0, 6.0}));
	Must(edit->CommitTransaction());
	EXPECT_EQ(0, edit->GetRedoCount());
	Must(path->LineTo({7.0, 7.0}));
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ(5, edit->GetUndoCount());
	Must(path->LineTo({8.0, 8.0}));
	const std::string fifth = Json();
	Must(edit->BeginTransaction());
	Must(path->LineTo({9.0, 9.0}));
	// The limit counts steps, of which the open one is none yet.
	Must(edit->SetUndoLimit(3));
	Must(edit->RollbackTransaction());
	EXPECT_EQ(fifth, Json());
	Must(edit->SetUndoLimit(2));
	EXPECT_EQ(2, edit->GetUndoCount());
	Must(At("t")->SetOpacity(0.75));
	EXPECT_EQ(2, edit->GetUndoCount());
	Must(edit->BeginTransaction());
	Must(At("t")->SetOpacity(0.5));
	Must(edit->CommitTransaction());
	EXPECT_EQ(2, edit->GetUndoCount());
	EXPECT_FALSE(edit->SetUndoLimit(-1).IsOk());
	Must(edit->SetUndoLimit(0));
	EXPECT_FALSE(Must(edit->Undo()));
	Must(edit->ClearHistory());
	Must(At("t")->SetOpacity(0.25));
	EXPECT_EQ(0, edit->GetUndoCount());
	EXPECT_FALSE(edit->CommitTransaction().IsOk() || edit->RollbackTransaction().IsOk());
	Must(edit->BeginTransaction());
	EXPECT_FALSE(edit->Undo().IsOk() || edit->Redo().IsOk() || edit->ClearHistory().IsOk());
	Must(document->Init(TextFile("<svg/>").GetUrl()));
	EXPECT_FALSE(edit->IsInTransaction());
}

TEST_F(UndoTest, LeadsBelowElementsOfNoDocument)
{
	const SVGElementRef top = Make("svggroupelement");
	const SVGElementRef moved = At("d");
	Must(edit->BeginTransaction());
	Must(Edit(top)->InsertChildBefore(moved, {}));
	Must(edit->CommitTransaction());
	EXPECT_EQ(1, Edit(top)->GetChildCount());
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ(loaded, Json());
	EXPECT_EQ(0, Edit(top)->GetChildCount());
	EXPECT_TRUE(Must(edit->Redo()));
	EXPECT_EQ(1, Edit(top)->GetChildCount());
	EXPECT_FALSE(document->GetElementById(Text("d")).IsOk());
}

/// What somebody does to a document, at random, with elements in the tree and out of it.
class RandomEditor
{
public:
	RandomEditor(const SVGDocumentRef& document, unsigned seed) : _document(document), _random(seed)
	{
		Collect(document->GetRootElement());
	}

	/// One edit, which may be refused.
	void Edit()
	{
		const SVGElementRef element = Pick();
		const SVGElementRef other = Pick();
		const auto edit = Cast<SVGElementEditInterface>(element);
		const auto path = Cast<SVGPathElementInterface>(element);
		const String id = Text("id" + std::to_string(Number(30)));
		const auto attribute = static_cast<SVGImportAttribute>(Number(60));
		switch (Number(22))
		{
		case 0:
			return Done(element->SetFill({SVGPaintType::reference, {}, other->GetId()}));
		case 1:
			return Done(element->SetOpacity(Number(100) / 100.0));
		case 2:
			return Done(element->AddTranslation({1.0 * Number(9), 1.0}));
		case 3:
			return Done(element->SetLocalTransform(Matrix2d{{1.0 * Number(9), 2.0}}));
		case 4:
			return Done(element->SetId(id));
		case 5:
			return Done(Cast<SVGDocumentEditInterface>(_document)->RenameId(element, id));
		case 6:
			return Done(edit->Remove());
		case 7:
		case 8:
		case 9:
			return Done(edit->InsertChildBefore(other, edit->GetChildAt(Number(4))));
		case 10:
			return Done(edit->ReplaceWith(other));
		case 11:
		case 12:
			return Done(edit->RemoveAttribute(attribute));
		case 13:
			return Done(edit->CopyAttribute(other, attribute));
		case 14:
			return Done(edit->CopyAttributes(other));
		case 15:
			if (const auto use = Cast<SVGUseElementInterface>(element))
				return Done(use->SetLink(id));
			if (const auto text = Cast<SVGTextElementInterface>(element))
				return Done(text->SetText(id));
			return Done(element->SetElementType(static_cast<SVGImportElementKind>(Number(16))));
		case 16:
			return path ? Done(path->LineTo({1.0 * Number(9), 2.0})) : Edit();
		case 17:
			return path ? Done(Cast<SVGPathEditInterface>(path)->SetPathData(Text("M1 2h3v4z"))) : Edit();
		case 18:
			return Done(Cast<HierarchyObjectInterface>(element)->InsertAsLastChildOf(
				Cast<HierarchyObjectInterface>(other), {}));
		case 19:
			if (Number(20) == 0)
				Cast<HierarchyObjectInterface>(element)->RemoveAllChildren();
			return;
		case 20:
			if (const auto copy = CloneObject(element); copy.IsOk())
				_elements.push_back(copy.GetValue());
			return;
		default:
			if (const auto size = Cast<SVGSizeInterface>(element))
				return Done(size->SetSize({{1.0 * Number(9), SVGLengthUnit::px}, {}}));
			return Done(element->SetStrokeDashArray({}));
		}
	}

	int Number(int end)
	{
		return std::uniform_int_distribution(0, end - 1)(_random);
	}

private:
	void Collect(const SVGElementRef& element)
	{
		_elements.push_back(element);
		for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child;
			 child = child->GetNextSibling())
			Collect(Cast<SVGElementInterface>(child));
	}

	const SVGElementRef& Pick()
	{
		return _elements[static_cast<std::size_t>(Number(static_cast<int>(_elements.size())))];
	}

	static void Done(const Result<void>&)
	{
	}

	SVGDocumentRef _document;
	std::mt19937 _random;
	std::vector<SVGElementRef> _elements;
};

TEST_F(UndoTest, LeadsBackThroughTenThousandRandomEdits)
{
	RandomEditor editor(document, 1);
	std::vector<std::string> states = {loaded}; // After each step.
	std::size_t step = 0;
	for (int edits = 0; edits < 10000 && !HasFailure();)
	{
		const int choice = editor.Number(10);
		SCOPED_TRACE(std::to_string(edits) + " edits, choice " + std::to_string(choice));
		if (choice == 0 && step > 0)
			EXPECT_EQ(states[--step], (Must(edit->Undo()), Json()));
		else if (choice == 1 && step + 1 < states.size())
			EXPECT_EQ(states[++step], (Must(edit->Redo()), Json()));
		else
		{
			Must(edit->BeginTransaction());
			for (int i = editor.Number(30); i >= 0; i--, edits++)
				editor.Edit();
			if (choice < 5)
			{
				const std::string before = Json();
				Must(edit->BeginTransaction());
				for (int i = editor.Number(30); i >= 0; i--, edits++)
					editor.Edit();
				Must(edit->RollbackTransaction());
				EXPECT_EQ(before, Json());
			}
			if (choice < 7)
			{
				Must(edit->RollbackTransaction());
				EXPECT_EQ(states[step], Json());
				continue;
			}
			const std::int64_t steps = edit->GetUndoCount();
			Must(edit->CommitTransaction());
			if (edit->GetUndoCount() == steps)
				continue; // All were refused.
			states.resize(++step);
			states.push_back(Json());
		}
		EXPECT_EQ(static_cast<std::int64_t>(step), edit->GetUndoCount());
	}
	EXPECT_GT(states.size(), 50u);
	while (Must(edit->Undo()))
		EXPECT_EQ(states[--step], Json());
	EXPECT_EQ(loaded, Json());
}

/// What clients do. What it takes is prepared first, so that all that fails is the edit.
struct Operation
{
	const char* name;
	std::function<Result<void>()> make;
};

std::vector<Operation> PrepareOperations(const SVGDocumentRef& document)
{
	const auto at = [&](const char* id)
	{
		return Must(document->GetElementById(Text(id)));
	};
	const auto edit = [&](const char* id)
	{
		return Cast<SVGElementEditInterface>(at(id));
	};
	const String other = Text("other");
	const SVGElementRef fresh = Must(CreateObject<SVGElementInterface>(kSVGSVGElementClass));
	Must(fresh->SetId(other));
	const auto own = Cast<SVGDocumentEditInterface>(document);
	// clang-format off
	return {
		{"attribute", [p = at("p"), other] { return p->SetMask(other); }},
		{"several", [r = Cast<SVGSizeInterface>(at("r"))] { return r->SetSize({}); }},
		{"id", [p = at("p"), other] { return p->SetId(other); }},
		{"type", [p = at("p")] { return p->SetElementType({}); }},
		{"transform", [p = at("p")] { return p->SetRotation(1.0); }},
		{"line", [p = Cast<SVGPathElementInterface>(at("p"))] { return p->LineTo({}); }},
		{"path", [p = Cast<SVGPathEditInterface>(at("p")), data = Text("M1 2h3")] { return p->SetPathData(data); }},
		{"link", [u = Cast<SVGUseElementInterface>(at("u")), other] { return u->SetLink(other); }},
		{"text", [t = Cast<SVGTextElementInterface>(at("t")), other] { return t->SetText(other); }},
		{"unset", [p = edit("p")] { return p->RemoveAttribute(SVGImportAttribute::fill); }},
		{"copy", [p = edit("p"), from = at("layer1")] { return p->CopyAttributes(from); }},
		{"remove", [d = edit("d")] { return d->Remove(); }},
		{"move", [g = edit("layer1"), d = at("d"), p = at("p")] { return g->InsertChildBefore(d, p); }},
		{"insert", [d = edit("d"), fresh] { return d->InsertChildBefore(fresh, {}); }},
		{"replace", [g = edit("layer1"), s = at("sy")] { return g->ReplaceWith(s); }},
		{"append", [t = Cast<HierarchyObjectInterface>(at("t")), d = Cast<HierarchyObjectInterface>(at("d"))]
		 { return t->InsertAsLastChildOf(d, {}); }},
		{"rename", [own, g = at("lg"), other] { return own->RenameId(g, other); }},
		{"root", [own, fresh] { return own->SetRootElement(fresh); }},
	};
	// clang-format on
}

/// What hears of changes costs nothing that can fail.
void HearNothing(void*, const SVGChange&) noexcept
{
}

TEST_F(UndoTest, LeavesTheTreeAsItWasWhenMemoryRunsOut)
{
	enum class Mode
	{
		alone,
		observed,
		inTransaction
	};
	const std::size_t count = PrepareOperations(document).size();
	for (std::size_t i = 0; i < count; i++)
	{
		for (const Mode mode : {Mode::alone, Mode::observed, Mode::inTransaction})
		{
			const SVGDocumentRef drawing = Load(kEverything);
			const auto own = Cast<SVGDocumentEditInterface>(drawing);
			const Operation operation = PrepareOperations(drawing)[i];
			const SVGDocumentRef other = Load(kEverything);
			Must(PrepareOperations(other)[i].make());
			const std::string done = JsonOf(other);
			SCOPED_TRACE(std::string(operation.name) + ", mode " + std::to_string(static_cast<int>(mode)));
			if (mode == Mode::observed)
				Must(own->AddObserver(&HearNothing, nullptr));
			if (mode == Mode::inTransaction)
				Must(own->BeginTransaction());
			for (int number = 1; !HasFailure(); number++)
			{
				bool isDone = false;
				{
					const AllocationFailure failure(number, AllocationFailure::Extent::one);
					const Result<void> result = operation.make();
					isDone = result.IsOk(); // Giving unused memory back may fail without harm.
					EXPECT_TRUE(isDone || failure.HasFailed()) << number;
				}
				if (isDone)
					break;
				EXPECT_EQ(loaded, JsonOf(drawing)) << number;
			}
			EXPECT_NE(loaded, done);
			EXPECT_EQ(done, JsonOf(drawing));
			if (mode != Mode::inTransaction)
				continue;
			{
				// Going back takes no memory.
				const AllocationFailure failure(1, AllocationFailure::Extent::allFollowing);
				Must(own->RollbackTransaction());
				EXPECT_FALSE(failure.HasFailed());
			}
			EXPECT_EQ(loaded, JsonOf(drawing));
		}
	}
}

TEST_F(UndoTest, KeepsItsPromiseToTransactionsWithoutMemory)
{
	const auto group = Cast<HierarchyObjectInterface>(At("layer1"));
	Must(edit->BeginTransaction());
	Must(At("p")->SetOpacity(0.5));
	{
		const AllocationFailure failure(1, AllocationFailure::Extent::allFollowing);
		group->RemoveAllChildren(); // Cannot fail, and cannot be recorded.
	}
	EXPECT_TRUE(group->GetFirstChild());
	Must(edit->BeginTransaction());
	Must(edit->RollbackTransaction());
	EXPECT_EQ(ErrorClass::outOfMemory, edit->CommitTransaction().GetError().GetClass());
	EXPECT_EQ(loaded, Json());
	Must(edit->BeginTransaction());
	group->RemoveAllChildren();
	Must(edit->CommitTransaction());
	EXPECT_FALSE(group->GetFirstChild());
	EXPECT_TRUE(Must(edit->Undo()));
	EXPECT_EQ(loaded, Json());
	{
		const AllocationFailure failure(1, AllocationFailure::Extent::allFollowing);
		group->RemoveAllChildren();
	}
	EXPECT_FALSE(group->GetFirstChild());
	EXPECT_EQ(0, edit->GetUndoCount() + edit->GetRedoCount());
	// Another file has nothing to do with it.
	Must(document->Init(TextFile(kEverything).GetUrl()));
	const auto other = Cast<HierarchyObjectInterface>(At("layer1"));
	Must(edit->BeginTransaction());
	{
		const AllocationFailure failure(1, AllocationFailure::Extent::allFollowing);
		other->RemoveAllChildren();
	}
	Must(document->Init(TextFile(kEverything).GetUrl()));
	Must(edit->BeginTransaction());
	Must(edit->CommitTransaction());
}

} // namespace
} // namespace orvan
