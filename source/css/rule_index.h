// SPDX-License-Identifier: MIT
#pragma once

#include "element_view.h"
#include "style_sheet.h"

#include <cstdint>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

namespace orvan::css
{
/// The rules by what their rightmost compound asks for first: an id, else a class, else a type, else nothing. An
/// element is held against those rules only whose id, class or type it has.
class RuleIndex
{
public:
	/// Looks through the rules, which must not change. Throws std::bad_alloc.
	RuleIndex(std::span<const Rule> rules, std::pmr::memory_resource* memory);

	/// Calls `take` with the number of every rule that may match an element with these names, each at least once, and
	/// answers with the bytes of class names that were looked at.
	template <typename Take>
	void VisitCandidates(const ElementNames& names, const Take& take) const;

private:
	static constexpr std::uint32_t kNone = UINT32_MAX;

	/// The first rule of a chain, and what its rules ask for.
	struct Bucket
	{
		std::string_view name;
		SimpleKind kind = SimpleKind::never;
		std::uint32_t first = kNone;
	};

	std::uint32_t FindFirst(SimpleKind kind, std::string_view name) const;

	std::size_t _ruleCount;
	std::pmr::vector<Bucket> _buckets;     ///< Open addressing; empty when the rules are few.
	std::pmr::vector<std::uint32_t> _next; ///< By rule: the next one of its chain.
	std::uint32_t _universal = kNone;
};
} // namespace orvan::css
