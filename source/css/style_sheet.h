// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"
#include "layers.h"
#include "report.h"
#include "selector.h"
#include "supports.h"
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
	LayerNumber layer;
};

/// The rules of any number of texts, read once and then looked at by any number of `Cascade`s, also side by side.
///
///     StyleSheet sheet(memory);
///     sheet.Add(".a { fill: red } @media print { .a { fill: black } }", {.source = 0, .report = &findings});
///
/// Rules may stand in rules. @media blocks count when one of their queries holds (see `media.h`), @supports blocks when
/// their condition does, and what stands in an @layer cascades as its layer does; @namespace declares prefixes. Every
/// other at-rule is skipped: @import, @font-face, @keyframes, @scope, @container and whatever else there is.
///
/// Nothing is copied but what has escapes, comments or capitals in the wrong place: the texts must outlive the sheet.
/// The sheet stays where it is made.
class StyleSheet
{
public:
	/// How a text is added.
	struct TextOptions
	{
		std::uint32_t source = 0;        ///< Handed on to declarations and problems, so that places can be told apart.
		ReportSink* report = nullptr;    ///< Takes the problems; may be absent.
		FeatureTest* features = nullptr; ///< Says what @supports asks; without it nothing is supported.
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

	/// The layers that rules stand in, and their ranks.
	const Layers& AllLayers() const
	{
		return _layers;
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
	Layers _layers;
};
} // namespace orvan::css
