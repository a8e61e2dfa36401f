// SPDX-License-Identifier: MIT
/// Lists of edits.
#pragma once

#include "editing/edit.h"

namespace orvan::svg
{

/// Edits in the order in which they were made; owns them. The links stand inside the edits, so nothing is allocated.
class EditList
{
public:
	EditList() noexcept = default;
	EditList(const EditList&) = delete;

	~EditList()
	{
		DestroyAll();
	}

	bool IsEmpty() const noexcept
	{
		return _first == nullptr;
	}

	Edit* First() const noexcept
	{
		return _first;
	}

	Edit* Last() const noexcept
	{
		return _last;
	}

	/// Takes an edit over.
	void Append(Edit* edit) noexcept
	{
		edit->previous = _last;
		edit->next = nullptr;
		(_last != nullptr ? _last->next : _first) = edit;
		_last = edit;
	}

	void Prepend(Edit* edit) noexcept
	{
		edit->previous = nullptr;
		edit->next = _first;
		(_first != nullptr ? _first->previous : _last) = edit;
		_first = edit;
	}

	/// Hands the last edit, of which there must be one, to the caller.
	Edit* TakeLast() noexcept
	{
		Edit* edit = _last;
		_last = edit->previous;
		(_last != nullptr ? _last->next : _first) = nullptr;
		return edit;
	}

	Edit* TakeFirst() noexcept
	{
		Edit* edit = _first;
		_first = edit->next;
		(_first != nullptr ? _first->previous : _last) = nullptr;
		return edit;
	}

	/// Appends all edits of another list, whose links among each other stay as they are.
	void TakeAll(EditList& other) noexcept
	{
		if (other._first == nullptr)
			return;
		other._first->previous = _last;
		(_last != nullptr ? _last->next : _first) = other._first;
		_last = other._last;
		other._first = other._last = nullptr;
	}

	/// The latest first, as they would be taken back: what one of them holds may need what an earlier one does.
	void DestroyAll() noexcept
	{
		while (_last != nullptr)
			Edit::Destroy(TakeLast());
	}

private:
	Edit* _first = nullptr;
	Edit* _last = nullptr;
};

} // namespace orvan::svg
