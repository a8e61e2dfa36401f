// SPDX-License-Identifier: MIT
/// Who is told of a document's changes.
#pragma once

#include "svg_edit.h"

namespace orvan::svg
{

/// The observers of a document, in the order of their registration. They may come and go while they are told.
class ObserverList
{
public:
	Result<std::int64_t> Add(SVGChangeCallback callback, void* context) noexcept
	{
		ORVAN_TRY(_observers.Append({++_lastNumber, callback, context}));
		return _lastNumber;
	}

	void Remove(std::int64_t number) noexcept
	{
		for (Observer& observer : _observers)
		{
			if (observer.number == number)
				observer.callback = nullptr;
		}
		if (_depth == 0)
			DropRemoved();
	}

	bool IsEmpty() const noexcept
	{
		return _observers.IsEmpty();
	}

	/// Tells those of a change that were there when it happened.
	void Tell(const SVGChange& change) noexcept
	{
		_depth++;
		const std::size_t count = _observers.GetCount();
		for (std::size_t i = 0; i < count; i++)
		{
			const Observer observer = _observers[i]; // The array may grow meanwhile.
			if (observer.callback != nullptr)
				observer.callback(observer.context, change);
		}
		if (--_depth == 0)
			DropRemoved();
	}

private:
	struct Observer
	{
		std::int64_t number;
		SVGChangeCallback callback; ///< Null once it was removed.
		void* context;
	};

	void DropRemoved() noexcept
	{
		std::size_t kept = 0;
		for (const Observer& observer : _observers)
		{
			if (observer.callback != nullptr)
				_observers[kept++] = observer;
		}
		IgnoreResult(_observers.Resize(kept));
	}

	BaseArray<Observer> _observers;
	std::int64_t _lastNumber = 0;
	int _depth = 0; ///< Of calls of `Tell`.
};

} // namespace orvan::svg
