// SPDX-License-Identifier: MIT
/// Changes of one attribute that need others to be written as well.
#include "writer/tree_writer.h"

#include "writer/value_text.h"

#include <algorithm>

namespace orvan::svg
{

using complete::FindRule;
using complete::Rule;
using complete::Tag;
using Number = SVGImportAttribute;

namespace
{

void Add(std::vector<const Rule*>& changes, Number number)
{
	const Rule* const rule = FindWritingRule(WrittenAs(number));
	if (std::ranges::count(changes, rule) == 0)
		changes.push_back(rule);
}

} // namespace

/// Adds to the changes of an element what has to be written because of them, behind them.
void TreeWriter::AddTied(const StartTagEditor& tag, std::uint32_t record, const ElementBase& element, Tag name,
						 std::vector<const Rule*>& changes)
{
	if (!_source->isComplete)
		return;
	if (GetsBox(record, element, name, changes))
		AddWithBox(changes);
	for (const char* const owner : {"text-decoration", "mask"})
		AddAlsoSet(tag, *FindRule(owner), changes);
}

/// A property whose value may say others, too, says them no more when it is written anew; nor does it take back those
/// that stand before it.
void TreeWriter::AddAlsoSet(const StartTagEditor& tag, const Rule& rule, std::vector<const Rule*>& changes)
{
	const std::span<const Number> others = complete::AlsoSetBy(rule);
	const auto isChanged = [&](Number number)
	{
		return std::ranges::count(changes, FindWritingRule(number)) > 0;
	};
	// A style attribute can take one of the others back, the attribute itself cannot.
	if (!isChanged(rule.number) && !(tag.Has(rule.name) && std::ranges::any_of(others, isChanged)))
		return;
	Add(changes, rule.number);
	for (const Number number : others)
	{
		std::erase(changes, FindWritingRule(number)); // It comes behind.
		Add(changes, number);
	}
}

/// Whether an element takes on effects that do not count as its source stands, because it has no box there
/// ("display: contents").
bool TreeWriter::GetsBox(std::uint32_t record, const ElementBase& element, Tag name,
						 const std::vector<const Rule*>& changes)
{
	const auto isEffect = [&](const Rule* rule)
	{
		const bool needsBox =
			rule->number == Number::transform || std::ranges::count(complete::kEffects, rule->number) > 0;
		std::string text;
		return needsBox && FormatAttribute(text, element, AttributesOf(element), *rule, name, {}) != Formatted::absent;
	};
	if (std::none_of(changes.begin(), changes.end(), isEffect))
		return false;
	constexpr std::string_view kContents = "contents";
	const SourceElement& tag = Record(record);
	for (std::uint32_t i = 0; i < tag.attributeCount; i++)
	{
		const SourceAttribute& attribute = _source->attributes[tag.firstAttribute + i];
		const std::string_view attributeName = _source->NameOf(attribute);
		if ((attributeName == "display" || attributeName == "style") &&
			MayMention(_source->RawValueOf(attribute), kContents))
			return true;
	}
	return (MayMention(_source->Text(), kContents) || MayMention(_request.clientSheet, kContents)) &&
		   ForceAgainstSheets(record, name, *FindRule("display"));
}

/// An element that gets a box has all the effects that its source says then: those that it has not in the tree go.
void TreeWriter::AddWithBox(std::vector<const Rule*>& changes)
{
	Add(changes, Number::display);
	Add(changes, Number::transform);
	for (const Number number : complete::kEffects)
		Add(changes, number);
}

} // namespace orvan::svg
