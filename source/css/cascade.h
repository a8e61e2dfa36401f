// SPDX-License-Identifier: MIT
#pragma once

#include "element_view.h"
#include "matcher.h"
#include "rule_index.h"
#include "style_sheet.h"

#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

namespace orvan::css
{
/// Which declarations apply to the elements of one tree.
///
///     Cascade cascade(sheet, view, memory);
///     for (Element element : elements in document order)
///         for (const Declaration* declaration : cascade.Collect(element, inlineStyle))
///             Apply(*declaration); // A later one replaces an earlier one of the same property.
///
/// A caller that cannot read a value leaves it out, and the declaration below it stays in force, as CSS wants it.
/// Any order of elements gives the same answers; document order is the quick one. One cascade serves one thread.
class Cascade
{
public:
	/// Both must outlive the cascade, and must not change meanwhile. Throws std::bad_alloc.
	Cascade(const StyleSheet& sheet, const ElementView& view,
			std::pmr::memory_resource* memory = std::pmr::get_default_resource());
	Cascade(const Cascade&) = delete;
	Cascade& operator=(const Cascade&) = delete;

	/// The declarations that apply to an element, in ascending order of precedence: those of the sheet (by layer,
	/// weight and order), those of the style attribute, then the important ones of the sheet, of which those of the
	/// lowest layer come last, then the important ones of the style attribute. All declarations are there, also those
	/// that a later one overrides. The answer is good until the next call; what it points to lives in the sheet and in
	/// `inlineStyle`. Throws std::bad_alloc, and what the view throws.
	std::span<const Declaration* const> Collect(Element element, std::span<const Declaration> inlineStyle = {});

	/// True when matching was given up because the sheet costs more than the bounds allow; from then on only style
	/// attributes are delivered.
	bool IsBudgetExceeded() const
	{
		return _matcher.IsBudgetExceeded();
	}

	/// Steps of work so far, see `kFreeWork`.
	std::uint64_t WorkDone() const
	{
		return _matcher.WorkDone();
	}

private:
	void FindRules(Element element);
	void SortRules();
	void SortImportant();
	void Append(std::span<const Declaration> declarations, bool isImportant);

	const StyleSheet& _sheet;
	const ElementView& _view;
	Matcher _matcher;
	RuleIndex _index;
	std::pmr::vector<std::uint32_t> _matched; ///< Numbers of the rules that match, kept for its room.
	std::pmr::vector<const Declaration*> _collected;
};
} // namespace orvan::css
