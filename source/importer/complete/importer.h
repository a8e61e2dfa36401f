// SPDX-License-Identifier: MIT
/// What the parts of one complete import share.
#pragma once

#include "complete/values.h"
#include "elements/element_base.h"
#include "importer/complete/attribute_rules.h"
#include "importer/findings.h"
#include "orvan/hash_map.h"
#include "svg_import.h"

#include <string_view>

namespace orvan::svg::complete
{

/// Where a value stands, for findings.
struct ValuePlace
{
	const char* where = nullptr; ///< In the text that is parsed; null when the value stands elsewhere.
	std::string_view elementTag;
};

/// The state of one complete import. Lives for one import, on one thread.
class Importer
{
public:
	explicit Importer(const SVGImportOptions& options) noexcept : _options(options)
	{
	}

	/// Reads a value by a rule and sets it on an element: the CSS-wide keywords here, all others by the rule's reader.
	/// A value that is refused becomes a finding or, when it is an attribute's and the import is not tolerant, throws.
	Result<void> Apply(const Rule& rule, ElementBase& element, Tag tag, std::string_view text, grammar::Source source,
					   const ValuePlace& place);

	/// As above, for an element's declarations in ascending order of precedence: tells whether the value was refused.
	Result<bool> ApplyDeclaration(const Rule& rule, ElementBase& element, Tag tag, std::string_view text,
								  grammar::Source source, const ValuePlace& place);

	/// Adds a finding about an element.
	Result<void> Warn(const ElementBase* element, const ValuePlace& place, std::string_view attribute,
					  std::string_view message) noexcept;

	bool IsTolerant() const noexcept
	{
		return _options.isTolerant;
	}

	FindingList& Findings() noexcept
	{
		return _findings;
	}

	/// Enters an element into the table of ids.
	Result<void> RegisterId(ElementBase& element, String id) noexcept;

	StringMap<SVGElementRef> TakeIds() noexcept
	{
		return std::move(_elementsById);
	}

	/// Where in the value at hand its fault is, for readers that go on up to one.
	std::size_t faultOffset = 0;

	/// The size of the nearest viewport in user units, for percentages in transforms; 0 when it is not known.
	Vector2d viewport;

	/// The place that a value which ends the import was refused at.
	ValuePlace refusedAt;
	String refusedElementId;
	std::string_view refusedAttribute;

private:
	Result<Reading> Read(const Application& application);
	ValuePlace PlaceOfFault(const ValuePlace& place, std::string_view text) const noexcept;
	Result<Reading> ReadWide(const Application& application, grammar::complete::CssWideKeyword keyword);

	const SVGImportOptions& _options;
	FindingList _findings;
	StringMap<SVGElementRef> _elementsById;
};

} // namespace orvan::svg::complete
