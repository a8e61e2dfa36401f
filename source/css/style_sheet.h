// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"
#include "report.h"
#include "selector.h"
#include "text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

namespace orvan::css
{
/// One selector, and the declarations of the block behind it; the selectors of a list share a block.
struct Rule
{
	const Selector* selector;
	std::uint32_t firstDeclaration;
	std::uint32_t declarationCount;
	std::int32_t layer;
};

/// The rules of any number of texts, read once and then looked at by any number of `Cascade`s, also side by side.
///
///     StyleSheet sheet(memory);
///     sheet.Add(".a { fill: red }", {.source = 0, .layer = 0, .report = &findings});
///
/// @media blocks count when their condition is empty or names "all" or "screen" without anything else ("only screen"
/// and "not print" do, "screen and (color)" does not); every other at-rule is skipped: @import, @font-face, @keyframes,
/// @supports, @layer, @namespace and whatever else there is. Rules inside rules are skipped.
///
/// Nothing is copied but what has escapes, comments or capitals in the wrong place: the texts must outlive the sheet.
/// The sheet stays where it is made.
class StyleSheet
{
public:
	/// How a text is added.
	struct TextOptions
	{
		std::uint32_t source = 0; ///< Handed on to declarations and problems, so that places can be told apart.
		/// Texts of a higher layer win over texts of a lower one, whatever their selectors weigh; within a layer weight
		/// and then order decide, as if its texts were one. Normal and important declarations take the layers in the
		/// same order.
		std::int32_t layer = 0;
		ReportSink* report = nullptr; ///< Takes the problems; may be absent.
	};

	explicit StyleSheet(std::pmr::memory_resource* memory = std::pmr::get_default_resource());
	StyleSheet(const StyleSheet&) = delete;
	StyleSheet& operator=(const StyleSheet&) = delete;

	/// Adds the rules of a text, in UTF-8 with or without a mark. Throws std::bad_alloc. No `Cascade` may be looking.
	void Add(std::string_view text, const TextOptions& options);

	/// True when there is no rule.
	bool IsEmpty() const
	{
		return _rules.empty();
	}

	/// All rules in their order.
	std::span<const Rule> Rules() const
	{
		return _rules;
	}

	/// All declarations in their order, so that a caller can read every value once and remember it in its tag.
	std::span<const Declaration> Declarations() const
	{
		return _declarations;
	}

	/// Memory that lives as long as the sheet.
	Arena& Memory()
	{
		return _arena;
	}

private:
	/// Room for a handful of rules, so that a small sheet costs no allocation.
	alignas(std::max_align_t) std::array<std::byte, 4096> _room;
	Arena _arena;
	std::pmr::vector<Rule> _rules;
	std::pmr::vector<Declaration> _declarations;
};
} // namespace orvan::css
