// SPDX-License-Identifier: MIT
/// The ids of a document.
#pragma once

#include "orvan/hash_map.h"
#include "svg_elements.h"

namespace orvan::svg
{

/// Which element is found under which id: the ids of the file, as they were loaded, and behind them those that came
/// with edits. An id that nobody has any more keeps its place with a null reference, so that the order stays, and so
/// that an edit that is taken back finds the place again without allocating.
class IdTable
{
public:
	/// The element with this id; null when there is none.
	const SVGElementRef* Find(const String& id) const noexcept
	{
		const SVGElementRef* place = FindPlace(id);
		return place != nullptr && *place ? place : nullptr;
	}

	/// Where the element of this id stands, which may be null; null when the id has no place.
	SVGElementRef* FindPlace(const String& id) const noexcept
	{
		const SVGElementRef* place = _loaded.Find(id);
		if (place == nullptr)
			place = _later.Find(id);
		return const_cast<SVGElementRef*>(place); // The maps hand out what they own as constant.
	}

	/// The same, with a place made when there is none. It is good until the table is reset.
	Result<SVGElementRef*> MakePlace(const String& id) noexcept
	{
		if (FindPlace(id) == nullptr)
			ORVAN_TRY(_later.Insert(id, SVGElementRef()));
		return FindPlace(id);
	}

	/// Calls `visit` with the key and the place of each id that somebody has, in the order of the table; stops at the
	/// first error.
	template <typename Visit>
	Result<void> ForEach(Visit visit) const noexcept
	{
		for (const StringMap<SVGElementRef>* map : {&_loaded, &_later})
		{
			for (const auto& entry : *map)
			{
				if (entry.value)
					ORVAN_TRY(visit(entry.key, const_cast<SVGElementRef&>(entry.value)));
			}
		}
		return {};
	}

	/// Forgets all and takes the ids of a load over.
	void Take(StringMap<SVGElementRef> loaded) noexcept
	{
		_later.Reset();
		_loaded = std::move(loaded);
	}

	void Take(IdTable& other) noexcept
	{
		_later = std::move(other._later);
		_loaded = std::move(other._loaded);
	}

	void Reset() noexcept
	{
		_later.Reset();
		_loaded.Reset();
	}

private:
	StringMap<SVGElementRef> _loaded;
	StringMap<SVGElementRef> _later;
};

} // namespace orvan::svg
