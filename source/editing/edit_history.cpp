// SPDX-License-Identifier: MIT
#include "editing/edit_history.h"

namespace orvan::svg
{

void EditHistory::Append(Edit* edit) noexcept
{
	if (_scopes.IsEmpty())
	{
		// A change outside of everything is a step by itself.
		edit->startsStep = true;
		edit->isOutsideStep = true;
		_undoneSteps = 0;
		Drop(_undone);
		_done.Append(edit);
		_doneSteps++;
		DropOldest();
		return;
	}
	edit->startsStep = _done.Last() == _scopes[0];
	_done.Append(edit);
}

bool EditHistory::CanJoinLast(const HierarchyObject& subject, SVGImportAttribute attribute) const noexcept
{
	const Edit* last = _done.Last();
	if (last == nullptr || last->GetSubject() != &subject || last->GetAttribute() != attribute ||
		last->GetKind() != SVGChangeKind::attribute)
		return false;
	// Inside of a scope the edit has to be one of the scope; outside, a step that is nothing else.
	return _scopes.IsEmpty() ? last->isOutsideStep && _undone.IsEmpty() : last != _scopes[_scopes.GetCount() - 1];
}

Result<void> EditHistory::Begin(bool isTransaction) noexcept
{
	ORVAN_TRY(_scopes.Append(_done.Last()));
	_transactions += isTransaction ? 1 : 0;
	return {};
}

Edit* EditHistory::FirstOfScope() const noexcept
{
	Edit* const before = _scopes[_scopes.GetCount() - 1];
	return before != nullptr ? before->next : _done.First();
}

void EditHistory::Commit(bool isTransaction) noexcept
{
	Edit* const first = FirstOfScope();
	IgnoreResult(_scopes.Resize(_scopes.GetCount() - 1));
	_transactions -= isTransaction ? 1 : 0;
	if (!_scopes.IsEmpty() || first == nullptr)
		return;
	if (isTransaction && _limit > 0)
		_isKept = true;
	if (_isKept)
	{
		_undoneSteps = 0;
		Drop(_undone);
		_doneSteps++;
		DropOldest();
		return;
	}
	Drop(_done); // There is no history before a first transaction.
}

void EditHistory::Rollback(bool isTransaction, EditList& undone) noexcept
{
	Edit* const before = _scopes[_scopes.GetCount() - 1];
	while (_done.Last() != before)
	{
		Edit* const edit = _done.TakeLast();
		edit->Swap();
		undone.Prepend(edit);
	}
	IgnoreResult(_scopes.Resize(_scopes.GetCount() - 1));
	_transactions -= isTransaction ? 1 : 0;
	if (_transactions == 0)
		_hasFailed = false;
}

std::pair<Edit*, Edit*> EditHistory::Undo() noexcept
{
	Edit* const last = _done.Last();
	for (;;)
	{
		Edit* const edit = _done.TakeLast();
		edit->Swap();
		_undone.Prepend(edit);
		if (edit->startsStep)
			break;
	}
	_doneSteps--;
	_undoneSteps++;
	return {_undone.First(), last};
}

std::pair<Edit*, Edit*> EditHistory::Redo() noexcept
{
	Edit* const first = _undone.First();
	do
	{
		Edit* const edit = _undone.TakeFirst();
		edit->Swap();
		_done.Append(edit);
	} while (!_undone.IsEmpty() && !_undone.First()->startsStep);
	_undoneSteps--;
	_doneSteps++;
	return {first, _done.Last()};
}

void EditHistory::SetLimit(std::int64_t limit) noexcept
{
	_limit = limit;
	if (_scopes.IsEmpty())
		DropOldest();
}

void EditHistory::Clear() noexcept
{
	_undoneSteps = 0;
	_doneSteps = 0;
	_transactions = 0;
	_isKept = false;
	_hasFailed = false;
	_scopes.Reset();
	Drop(_undone);
	Drop(_done);
}

/// Forgets the steps beyond the limit. Called when no scope is open.
void EditHistory::DropOldest() noexcept
{
	EditList oldest;
	while (_doneSteps > _limit)
	{
		do
			oldest.Append(_done.TakeFirst());
		while (!_done.IsEmpty() && !_done.First()->startsStep);
		_doneSteps--;
	}
	Drop(oldest);
}

} // namespace orvan::svg
