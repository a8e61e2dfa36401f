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

	/// Reads a value by its rule and sets it on the element: the CSS-wide keywords here, all others by the rule's
	/// reader.
	Result<Reading> Read(const Application& application)
	{
		if (!application.rule.tags.Has(application.tag))
			return Reading::applied;
		faultOffset = 0;
		return MayBeWide(application.text) ? ReadPerhapsWide(application) : application.rule.read(application);
	}

	/// Reads a value that was refused once more, with the math functions in it as the pixels that they come to here,
	/// and currentColor in functions as the colour that it stands for here: as far as fonts and colours are known by
	/// now.
	Result<Reading> ReadCalculated(const Application& application);

	/// Takes down that an attribute's value was not read, or not wholly: as a finding or, when it is refused and the
	/// import is not tolerant, as what ends the import, by throwing.
	Result<void> Refuse(const Application& application, const ValuePlace& place, Reading reading);

	/// Adds a finding about a value that was not read, or not wholly.
	Result<void> WarnOfValue(const Application& application, const ValuePlace& place);

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
	Result<void> RegisterId(ElementBase& element, String id) noexcept
	{
		ORVAN_TRY(_elementsById.Insert(std::move(id), SVGElementRef::From(&element)));
		return {};
	}

	StringMap<SVGElementRef> TakeIds() noexcept
	{
		return std::move(_elementsById);
	}

	/// Where in the value at hand its fault is, for readers that go on up to one.
	std::size_t faultOffset = 0;

	/// The size of the nearest viewport in user units, for percentages in transforms; 0 when it is not known.
	Vector2d viewport;

	/// The element at hand has no box ("display: contents"): what it contains stands in its place.
	bool isDissolved = false;

	/// The place that a value which ends the import was refused at.
	ValuePlace refusedAt;
	String refusedElementId;
	std::string_view refusedAttribute;

private:
	/// Most values can be told from "inherit", "initial", "unset" and "revert" by their first two characters.
	static bool MayBeWide(std::string_view text) noexcept
	{
		constexpr std::size_t kShortest = 5;
		if (text.size() < kShortest)
			return false;
		const auto is = [text](std::size_t at, char small)
		{
			return (text[at] | ('a' - 'A')) == small;
		};
		if (is(0, 'i') || is(0, 'u'))
			return is(1, 'n');
		// Blanks and comments may stand in front.
		return is(0, 'r') ? is(1, 'e') : text[0] == '/' || static_cast<unsigned char>(text[0]) <= ' ';
	}

	Result<Reading> ReadPerhapsWide(const Application& application);
	ValuePlace PlaceOfFault(const ValuePlace& place, std::string_view text) const noexcept;
	Result<Reading> ReadWide(const Application& application, grammar::complete::CssWideKeyword keyword);

	const SVGImportOptions& _options;
	FindingList _findings;
	StringMap<SVGElementRef> _elementsById;
};

} // namespace orvan::svg::complete
