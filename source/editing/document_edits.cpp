// SPDX-License-Identifier: MIT
/// What a document does about edits of its tree: observers, transactions, the history.
#include "elements/element_base.h"
#include "svg_document.h"

namespace orvan::svg
{

Document::~Document()
{
	_owner.Forget();
	if (_isTracking)
		ElementBase::CountTrackingDocuments(-1);
}

// The tree -----------------------------------------------------------------------------------------------------------

Result<void> Document::Own(ElementBase& top) noexcept
{
	if (!_owner)
		_owner = ORVAN_TRY(TreeOwner::Of(*this));
	return top.SetOwner(_owner);
}

Result<void> Document::TakeRoot(SVGElementRef root) noexcept
{
	auto& element = static_cast<ElementBase&>(*root.GetObject());
	ORVAN_TRY(Own(element));
	_rootElement = std::move(root);
	if (_isTracking)
		TrackRoot();
	return {};
}

void Document::ForgetTree() noexcept
{
	_history.Clear();
	// Whoever still has elements of the tree shall not come here with their changes.
	_owner.Forget();
	_owner = TreeOwner();
	UntrackUnlessNeeded();
}

void Document::TrackRoot() noexcept
{
	if (_rootElement)
		ElementBase::TrackTree(static_cast<ElementBase&>(*_rootElement.GetObject()), _isTracking);
}

void Document::Track() noexcept
{
	if (_isTracking)
		return;
	_isTracking = true;
	ElementBase::CountTrackingDocuments(1);
	TrackRoot();
}

void Document::UntrackUnlessNeeded() noexcept
{
	if (!_isTracking || !_observers.IsEmpty() || _history.IsRecording())
		return;
	_isTracking = false;
	ElementBase::CountTrackingDocuments(-1);
	TrackRoot();
}

Result<void> Document::EndLoad(Result<void> loaded) noexcept
{
	TellOfLoad(SVGChangeKind::loaded, _report);
	return loaded;
}

// Observers ----------------------------------------------------------------------------------------------------------

Result<std::int64_t> Document::AddObserver(SVGChangeCallback callback, void* context) noexcept
{
	if (callback == nullptr)
		return NullReferenceError("An observer needs a function to be called.");
	const std::int64_t number = ORVAN_TRY(_observers.Add(callback, context));
	Track();
	return number;
}

void Document::RemoveObserver(std::int64_t number) noexcept
{
	_observers.Remove(number);
	UntrackUnlessNeeded();
}

void Document::TellOf(HierarchyObject& element, SVGChangeKind kind, SVGImportAttribute attribute) noexcept
{
	// Of the edits of one call the observers hear when all are made.
	if (_observers.IsEmpty() || _history.IsInsideCall())
		return;
	const auto self = SVGDocumentRef::From(this);
	_observers.Tell({kind, attribute, SVGElementRef::From(&element), {}, nullptr});
}

void Document::TellOfLoad(SVGChangeKind kind, const SVGImportReport& report) noexcept
{
	if (_observers.IsEmpty())
		return;
	const auto self = SVGDocumentRef::From(this);
	_observers.Tell({kind, SVGImportAttribute::unknown, {}, {}, &report});
}

void Document::TellOfEdit(const Edit& edit) noexcept
{
	if (edit.IsSilent())
		return;
	SVGChange change = edit.Describe();
	if (change.kind == SVGChangeKind::loaded)
		change.report = &_report;
	else
	{
		// What happens to elements that are not in the tree is nobody's business.
		const bool isRemoved = change.kind == SVGChangeKind::removed;
		auto* at = isRemoved ? static_cast<HierarchyObject*>(change.parent.GetObject()) : edit.GetSubject();
		while (at != nullptr && AsElement(at) == nullptr)
			at = at->Parent();
		if (at == nullptr)
			return;
		const ElementBase::Standing standing = AsElement(at)->FindStanding();
		if (standing.document != this || !standing.isInTree)
			return;
	}
	_observers.Tell(change);
}

/// Tells of edits that were made or taken back, all of them by now. The history is held meanwhile.
void Document::TellOfEdits(const Edit* first, const Edit* last, bool isBackwards) noexcept
{
	if (_observers.IsEmpty() || first == nullptr)
		return;
	if (isBackwards)
		std::swap(first, last);
	for (const Edit* edit = first; edit != nullptr; edit = isBackwards ? edit->previous : edit->next)
	{
		TellOfEdit(*edit);
		if (edit == last)
			break;
	}
}

// Transactions -------------------------------------------------------------------------------------------------------

Result<void> Document::EndTogether(Result<void> made) noexcept
{
	if (!made.IsOk())
	{
		EditList undone;
		_history.Rollback(false, undone);
		_history.Drop(undone);
		return made;
	}
	Edit* const first = _history.FirstOfScope();
	Edit* const last = _history.Last();
	const auto self = SVGDocumentRef::From(this);
	_history.Hold();
	_history.Commit(false);
	if (!_history.IsInsideCall() && first != nullptr)
	{
		// What nobody can put back is a tree of its own from now on.
		for (const Edit* edit = first; !_history.IsKeeping() && edit != last->next; edit = edit->next)
		{
			if (edit->GetKind() == SVGChangeKind::inserted && edit->GetSubject()->Parent() == nullptr)
				ElementBase::TrackTree(*edit->GetSubject(), false);
		}
		TellOfEdits(first, last, false);
	}
	_history.Release();
	return made;
}

Result<void> Document::RefuseInsideEdits() const noexcept
{
	if (_history.IsInsideScope())
		return IllegalStateError("This is not possible inside of a transaction.");
	if (_history.IsHeld())
		return IllegalStateError("This is not possible while observers are told of edits.");
	return {};
}

Result<void> Document::BeginTransaction() noexcept
{
	ORVAN_TRY(_history.Begin(true));
	Track();
	return {};
}

Result<void> Document::CommitTransaction() noexcept
{
	if (!_history.IsInTransaction())
		return IllegalStateError("There is no transaction to commit.");
	if (_history.HasFailed())
	{
		ORVAN_TRY(RollbackTransaction());
		return OutOfMemoryError();
	}
	_history.Commit(true);
	return {};
}

Result<void> Document::RollbackTransaction() noexcept
{
	if (!_history.IsInTransaction())
		return IllegalStateError("There is no transaction to roll back.");
	if (_history.IsHeld())
		return IllegalStateError("This is not possible while observers are told of edits.");
	const auto self = SVGDocumentRef::From(this);
	EditList undone;
	_history.Rollback(true, undone);
	_history.Hold();
	TellOfEdits(undone.First(), undone.Last(), true);
	_history.Drop(undone);
	_history.Release();
	return {};
}

bool Document::IsInTransaction() const noexcept
{
	return _history.IsInTransaction();
}

Result<bool> Document::Undo() noexcept
{
	ORVAN_TRY(RefuseInsideEdits());
	if (_history.GetUndoCount() == 0)
		return false;
	const auto self = SVGDocumentRef::From(this);
	_history.Hold();
	const auto [first, last] = _history.Undo();
	TellOfEdits(first, last, true);
	_history.Release();
	return true;
}

Result<bool> Document::Redo() noexcept
{
	ORVAN_TRY(RefuseInsideEdits());
	if (_history.GetRedoCount() == 0)
		return false;
	const auto self = SVGDocumentRef::From(this);
	_history.Hold();
	const auto [first, last] = _history.Redo();
	TellOfEdits(first, last, false);
	_history.Release();
	return true;
}

std::int64_t Document::GetUndoCount() const noexcept
{
	return _history.GetUndoCount();
}

std::int64_t Document::GetRedoCount() const noexcept
{
	return _history.GetRedoCount();
}

Result<void> Document::SetUndoLimit(std::int64_t count) noexcept
{
	if (count < 0)
		return IllegalArgumentError("A history of @ steps cannot be kept.", count);
	_history.SetLimit(count);
	return {};
}

Result<void> Document::ClearHistory() noexcept
{
	ORVAN_TRY(RefuseInsideEdits());
	_history.Clear();
	UntrackUnlessNeeded();
	return {};
}

} // namespace orvan::svg
