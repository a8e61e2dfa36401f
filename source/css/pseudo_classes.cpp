// SPDX-License-Identifier: MIT
#include "pseudo_classes.h"

#include "text.h"

#include <algorithm>
#include <iterator>

namespace orvan::css
{
namespace
{
template <typename Meaning>
struct Row
{
	std::string_view name;
	Meaning meaning;
};

constexpr Row<PseudoClass> kClasses[]{
	{"first-child", PseudoClass::firstChild},
	{"last-child", PseudoClass::lastChild},
	{"only-child", PseudoClass::onlyChild},
	{"first-of-type", PseudoClass::firstOfType},
	{"last-of-type", PseudoClass::lastOfType},
	{"only-of-type", PseudoClass::onlyOfType},
	{"root", PseudoClass::root},
	{"scope", PseudoClass::root},
	{"empty", PseudoClass::empty},
	{"link", PseudoClass::link},
	{"any-link", PseudoClass::link},
	{"-webkit-any-link", PseudoClass::link},
	{"defined", PseudoClass::always},
	{"active", PseudoClass::never},
	{"active-view-transition", PseudoClass::never},
	{"autofill", PseudoClass::never},
	{"checked", PseudoClass::never},
	{"corner-present", PseudoClass::never},
	{"current", PseudoClass::never},
	{"default", PseudoClass::never},
	{"disabled", PseudoClass::never},
	{"enabled", PseudoClass::never},
	{"focus", PseudoClass::never},
	{"focus-visible", PseudoClass::never},
	{"focus-within", PseudoClass::never},
	{"fullscreen", PseudoClass::never},
	{"future", PseudoClass::never},
	{"horizontal", PseudoClass::never},
	{"host", PseudoClass::never},
	{"hover", PseudoClass::never},
	{"in-range", PseudoClass::never},
	{"indeterminate", PseudoClass::never},
	{"interest-source", PseudoClass::never},
	{"interest-target", PseudoClass::never},
	{"invalid", PseudoClass::never},
	{"modal", PseudoClass::never},
	{"open", PseudoClass::never},
	{"optional", PseudoClass::never},
	{"out-of-range", PseudoClass::never},
	{"past", PseudoClass::never},
	{"picture-in-picture", PseudoClass::never},
	{"placeholder-shown", PseudoClass::never},
	{"popover-open", PseudoClass::never},
	{"read-only", PseudoClass::never},
	{"read-write", PseudoClass::never},
	{"required", PseudoClass::never},
	{"target", PseudoClass::never},
	{"target-after", PseudoClass::never},
	{"target-before", PseudoClass::never},
	{"target-current", PseudoClass::never},
	{"user-invalid", PseudoClass::never},
	{"user-valid", PseudoClass::never},
	{"valid", PseudoClass::never},
	{"vertical", PseudoClass::never},
	{"visited", PseudoClass::never},
	{"-webkit-autofill", PseudoClass::never},
	{"-webkit-drag", PseudoClass::never},
	{"-webkit-full-screen", PseudoClass::never},
	{"window-inactive", PseudoClass::never},
	{"xr-overlay", PseudoClass::never},
};

constexpr Row<PseudoFunction> kFunctions[]{
	{"is", PseudoFunction::is},
	{"where", PseudoFunction::where},
	{"-webkit-any", PseudoFunction::is},
	{"has", PseudoFunction::has},
	{"host", PseudoFunction::ofHost},
	{"host-context", PseudoFunction::ofHost},
	{"not", PseudoFunction::isNot},
	{"nth-child", PseudoFunction::nthChild},
	{"nth-last-child", PseudoFunction::nthLastChild},
	{"nth-of-type", PseudoFunction::nthOfType},
	{"nth-last-of-type", PseudoFunction::nthLastOfType},
	{"lang", PseudoFunction::language},
	{"dir", PseudoFunction::direction},
	{"state", PseudoFunction::never},
	{"active-view-transition-type", PseudoFunction::never},
};

struct PseudoElement
{
	std::string_view name;
	bool mayHaveSingleColon;
};

constexpr PseudoElement kElements[]{
	{"before", true},           {"after", true},
	{"first-line", true},       {"first-letter", true},
	{"backdrop", false},        {"checkmark", false},
	{"column", false},          {"cue", false},
	{"details-content", false}, {"file-selector-button", false},
	{"grammar-error", false},   {"marker", false},
	{"picker-icon", false},     {"placeholder", false},
	{"scroll-marker", false},   {"scroll-marker-group", false},
	{"search-text", false},     {"selection", false},
	{"spelling-error", false},  {"target-text", false},
	{"view-transition", false},
};

template <typename Meaning, std::size_t count>
Meaning Find(const Row<Meaning> (&rows)[count], std::string_view name)
{
	for (const Row<Meaning>& row : rows)
	{
		if (EqualsIgnoringCase(row.name, name))
			return row.meaning;
	}
	return Meaning::unknown;
}
} // namespace

PseudoClass FindPseudoClass(std::string_view name)
{
	return Find(kClasses, name);
}

PseudoFunction FindPseudoFunction(std::string_view name)
{
	return Find(kFunctions, name);
}

bool IsPseudoElement(std::string_view name, bool hasSingleColon)
{
	for (const PseudoElement& element : kElements)
	{
		if (EqualsIgnoringCase(element.name, name))
			return element.mayHaveSingleColon || !hasSingleColon;
	}
	// What browsers call by a name of their own is valid to them, whether they know it or not.
	return !hasSingleColon && name.size() > 8 && EqualsIgnoringCase(name.substr(0, 8), "-webkit-");
}

bool IsPseudoElementFunction(std::string_view name)
{
	constexpr std::string_view kNames[]{"part",
										"slotted",
										"highlight",
										"cue",
										"picker",
										"scroll-button",
										"view-transition-group",
										"view-transition-image-pair",
										"view-transition-new",
										"view-transition-old"};
	return std::any_of(std::begin(kNames), std::end(kNames),
					   [name](std::string_view known) { return EqualsIgnoringCase(known, name); });
}
} // namespace orvan::css
