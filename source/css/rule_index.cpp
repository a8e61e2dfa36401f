// SPDX-License-Identifier: MIT
#include "rule_index.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
/// The condition of the rightmost compound that the fewest elements will meet; null when it has none to go by.
const Simple* FindKey(const Selector& selector)
{
	const Simple* key = nullptr;
	for (const Simple* simple = selector.subject->first; simple; simple = simple->next)
	{
		if (simple->kind == SimpleKind::id)
			return simple;
		const bool isBetter = simple->kind == SimpleKind::className && (!key || key->kind == SimpleKind::type);
		if (isBetter || (simple->kind == SimpleKind::type && !key))
			key = simple;
	}
	return key;
}
} // namespace

RuleIndex::RuleIndex(std::span<const Rule> rules, std::pmr::memory_resource* memory)
	: _ruleCount(rules.size()), _places(memory), _universal(memory)
{
	if (HasFewRules())
		return;
	_places.reserve(rules.size());
	for (std::uint32_t i = 0; i < rules.size(); i++)
	{
		if (const Simple* const key = FindKey(*rules[i].selector))
			_places.push_back({std::hash<std::string_view>()(key->name), key->name, key->kind, i});
		else
			_universal.push_back(i);
	}
	std::sort(_places.begin(), _places.end(), IsBefore);
}
} // namespace orvan::css
