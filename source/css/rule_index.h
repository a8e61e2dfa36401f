// SPDX-License-Identifier: MIT
#pragma once

#include "element_view.h"
#include "style_sheet.h"
#include "words.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory_resource>
#include <span>
#include <string_view>
#include <tuple>
#include <vector>

namespace orvan::css
{
/// The rules by what their rightmost compound asks for: an id, else a class, else a type, else nothing. An element is
/// held against those rules only whose id, class or type it has.
///
/// The buckets lie sorted in one list and are searched by halves, so names that were made to collide gain nothing.
class RuleIndex
{
public:
	/// Looks through the rules, which must not change. Throws std::bad_alloc.
	RuleIndex(std::span<const Rule> rules, std::pmr::memory_resource* memory);

	/// Calls `take` with the number of every rule that may match an element with these names, in no order; with some
	/// more than once when a class is named more than once.
	template <typename Take>
	void VisitCandidates(const ElementNames& names, const Take& take) const
	{
		if (HasFewRules())
		{
			for (std::uint32_t i = 0; i < _ruleCount; i++)
				take(i);
			return;
		}
		VisitBucket(SimpleKind::type, names.type, take);
		if (!names.id.empty())
			VisitBucket(SimpleKind::id, names.id, take);
		std::string_view classes = names.classes;
		for (std::string_view name; TakeWord(classes, name);)
			VisitBucket(SimpleKind::className, name, take);
		for (const std::uint32_t rule : _universal)
			take(rule);
	}

private:
	/// One rule in its bucket.
	struct Place
	{
		std::size_t hash;
		std::string_view name;
		SimpleKind kind;
		std::uint32_t rule;
	};

	static bool IsBefore(const Place& left, const Place& right)
	{
		return std::tie(left.hash, left.name, left.kind, left.rule) <
			   std::tie(right.hash, right.name, right.kind, right.rule);
	}

	/// So many rules are looked at one after the other sooner than they are sorted.
	bool HasFewRules() const
	{
		return _ruleCount <= 8;
	}

	template <typename Take>
	void VisitBucket(SimpleKind kind, std::string_view name, const Take& take) const
	{
		const Place first{std::hash<std::string_view>()(name), name, kind, 0};
		for (auto place = std::lower_bound(_places.begin(), _places.end(), first, IsBefore);
			 place != _places.end() && place->hash == first.hash && place->kind == kind && place->name == name; ++place)
			take(place->rule);
	}

	std::size_t _ruleCount;
	std::pmr::vector<Place> _places;
	std::pmr::vector<std::uint32_t> _universal; ///< Rules that any element may match.
};
} // namespace orvan::css
