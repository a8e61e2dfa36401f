// SPDX-License-Identifier: MIT
/// What was edited, so that it can be taken back.
#pragma once

#include "editing/edit_list.h"

#include <cstdint>

namespace orvan::svg
{

/// The edits of one document: those that can be taken back, in steps, the last of which may be a transaction that is
/// still open; and those that can be made again.
///
/// A scope is a transaction, or the edits of one call that must happen together. Scopes nest. Outside of any, and
/// before the first transaction, nothing is recorded.
class EditHistory
{
public:
	static constexpr std::int64_t kUsualLimit = 1000;

	/// Whether an edit has to be recorded, rather than just made.
	bool IsRecording() const noexcept
	{
		return !_scopes.IsEmpty() || _isKept;
	}

	/// Whether edits stay recorded beyond the scope at hand.
	bool IsKeeping() const noexcept
	{
		return _transactions > 0 || _isKept;
	}

	bool IsInTransaction() const noexcept
	{
		return _transactions > 0;
	}

	/// True while the edits of one call are being made.
	bool IsInsideCall() const noexcept
	{
		return _scopes.GetCount() > static_cast<std::size_t>(_transactions);
	}

	/// True while any scope is open.
	bool IsInsideScope() const noexcept
	{
		return !_scopes.IsEmpty();
	}

	/// Takes over an edit that was made.
	void Append(Edit* edit) noexcept;

	/// True when the last edit is one of this element and attribute to which another change of the same can be added,
	/// because both would be taken back together.
	bool CanJoinLast(const HierarchyObject& subject, SVGImportAttribute attribute) const noexcept;

	/// Notes that an edit could not be recorded that had to be: the transaction can only be rolled back.
	void Fail() noexcept
	{
		_hasFailed = true;
	}

	bool HasFailed() const noexcept
	{
		return _hasFailed;
	}

	// Scopes.

	/// Begins a scope.
	Result<void> Begin(bool isTransaction) noexcept;

	/// The first edit of the scope at hand, and the last; null when there is none.
	Edit* FirstOfScope() const noexcept;
	Edit* Last() const noexcept
	{
		return _done.Last();
	}

	/// Ends the scope at hand; its edits become part of the one around it, or a step. `isTransaction` as it began.
	void Commit(bool isTransaction) noexcept;

	/// Ends the scope at hand, takes its edits back and hands them over, the earliest first.
	void Rollback(bool isTransaction, EditList& undone) noexcept;

	// Steps.

	std::int64_t GetUndoCount() const noexcept
	{
		return _doneSteps;
	}

	std::int64_t GetRedoCount() const noexcept
	{
		return _undoneSteps;
	}

	/// Takes a step back, or makes it again; there must be one. The result is the step's first edit and its last.
	std::pair<Edit*, Edit*> Undo() noexcept;
	std::pair<Edit*, Edit*> Redo() noexcept;

	void SetLimit(std::int64_t limit) noexcept;

	/// Forgets everything, open scopes included. Nothing is taken back.
	void Clear() noexcept;

	// While observers are told of edits, the edits stay.

	void Hold() noexcept
	{
		_holds++;
	}

	void Release() noexcept
	{
		if (--_holds == 0)
			_dropped.DestroyAll();
	}

	bool IsHeld() const noexcept
	{
		return _holds > 0;
	}

	/// Lets go of edits, at once or when nobody is told of them any more.
	void Drop(EditList& edits) noexcept
	{
		_dropped.TakeAll(edits);
		if (_holds == 0)
			_dropped.DestroyAll();
	}

private:
	void DropOldest() noexcept;

	EditList _done;
	EditList _undone;
	EditList _dropped;
	BaseArray<Edit*> _scopes; ///< For each open scope the last edit before it, or null.
	std::int64_t _limit = kUsualLimit;
	std::int64_t _doneSteps = 0; ///< Without the one that is open.
	std::int64_t _undoneSteps = 0;
	int _transactions = 0; ///< How many of the scopes are.
	int _holds = 0;
	bool _isKept = false; ///< There was a transaction.
	bool _hasFailed = false;
};

} // namespace orvan::svg
