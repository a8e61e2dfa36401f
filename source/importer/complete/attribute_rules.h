// SPDX-License-Identifier: MIT
/// The table of what the complete import reads: every attribute and property with its number, its reader, where it
/// counts and how it cascades.
///
/// A new attribute is a row in `attribute_rules.cpp`; a new form of value is a reader in `value_readers.h` besides.
#pragma once

#include "complete/values.h"
#include "importer/complete/tags.h"
#include "svg_types.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace orvan::svg
{
class ElementBase;
}

namespace orvan::svg::complete
{

class Importer;
struct Rule;

/// One value on its way to an element.
struct Application
{
	Importer& importer;
	ElementBase& element;
	Tag tag;
	const Rule& rule;
	std::string_view text;
	grammar::Source source;
};

/// What became of a value.
enum class Reading
{
	applied, ///< Set, or understood and without effect.
	refused, ///< Not a value of this attribute; nothing has changed.
	partial, ///< A list or path with a fault; what stands before it has been set.
};

/// Reads a value and sets it on the element. Errors are those of the host, such as out of memory.
using Reader = Result<Reading> (*)(const Application& application);

/// How an attribute takes part.
enum class Role : std::uint8_t
{
	attribute,   ///< An XML attribute and nothing else.
	property,    ///< A presentation attribute, which counts in declarations too.
	inherited,   ///< As `property`, and children inherit it.
	geometry,    ///< A property that is no presentation attribute on other elements than its own: `x`, `r` …
	declaration, ///< A property that is no presentation attribute.
};

struct Rule
{
	std::string_view name;
	SVGImportAttribute number = SVGImportAttribute::unknown;
	Reader read = nullptr;
	Role role = Role::attribute;
	TagSet tags = TagSet::All(); ///< Where it counts.
	/// What "initial" means for an inherited property, as text; of others the initial value is that nothing is said.
	std::string_view initial = {};
	std::span<const grammar::complete::Keyword> keywords = {}; ///< For the readers of keywords.
};

constexpr bool IsProperty(const Rule& rule) noexcept
{
	return rule.role != Role::attribute;
}

/// What applies to an element as a whole, besides its transform: one without a box ("display: contents") has none of
/// it.
inline constexpr SVGImportAttribute kEffects[] = {
	SVGImportAttribute::opacity,   SVGImportAttribute::mask,   SVGImportAttribute::clipPath,
	SVGImportAttribute::clipShape, SVGImportAttribute::filter, SVGImportAttribute::mixBlendMode,
	SVGImportAttribute::isolation,
};

/// The rule of a name; null when the name is not known.
const Rule* FindRule(std::string_view name) noexcept;

/// The same for a name without a prefix from whose start on sixteen characters are readable, however short it is: in
/// less than half the instructions.
const Rule* FindRuleInText(std::string_view name) noexcept;

/// The properties that a name without a property of its own stands for: several for a shorthand, one for another name
/// of a property. Empty for all other names.
std::span<const SVGImportAttribute> LonghandsOf(const Rule& rule) noexcept;

/// The properties that the value of another one sets besides itself: "text-decoration" a style and a thickness, "mask"
/// what of the masks counts and how they are joined. Empty for most; not for other names of the same property.
std::span<const SVGImportAttribute> AlsoSetBy(const Rule& rule) noexcept;

/// The property by which styles and sheets say what an attribute says: its own rule for most, "transform" for the
/// transforms of gradients and patterns, null where CSS has no word for it.
const Rule* PropertyOf(const Rule& rule) noexcept;

/// The attribute that keeps what a property says on elements of a tag: the other way round.
SVGImportAttribute KeptAs(const Rule& property, Tag tag) noexcept;

inline bool IsShorthand(const Rule& rule) noexcept
{
	return LonghandsOf(rule).size() > 1;
}

/// All rules, for the documentation and for tests.
std::span<const Rule> AllRules() noexcept;

} // namespace orvan::svg::complete
