// SPDX-License-Identifier: MIT
/// Readers of identity, links, texts and keywords.
#include "importer/complete/importer.h"
#include "importer/complete/value_readers.h"

#include "elements/element_classes.h"

#include <initializer_list>
#include <string>

namespace orvan::svg::complete
{

using grammar::Parsed;
using grammar::complete::Keyword;

namespace
{

Result<Reading> StoreText(const Application& application, std::string_view text) noexcept
{
	ORVAN_TRY(application.element.Store(application.rule.number, ORVAN_TRY(String::Create(text))));
	return Reading::applied;
}

/// The id or IRI of a reference as a text of the host's.
Result<String> TextOf(const grammar::complete::Reference& reference)
{
	return reference.hasEscapes ? String::Create(grammar::complete::ResolveEscapes(reference.text))
								: String::Create(reference.text);
}

/// Stores the id or IRI of a reference, the empty text for "none".
Result<Reading> StoreReference(const Application& application, std::span<const SVGImportAttribute> keys)
{
	grammar::complete::Reference reference;
	const Parsed parsed = grammar::complete::ParseReference(application.text, reference);
	if (parsed == Parsed::refused)
		return Reading::refused;
	const String text = parsed == Parsed::value ? ORVAN_TRY(TextOf(reference)) : String();
	for (const SVGImportAttribute key : keys)
		ORVAN_TRY(application.element.Store(key, text));
	return Reading::applied;
}

Result<Reading> StoreKeyword(const Application& application, Parsed parsed, std::int32_t value) noexcept
{
	if (parsed != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(application.rule.number, value));
	return Reading::applied;
}

} // namespace

Result<Reading> ReadNothing(const Application&)
{
	return Reading::applied;
}

Result<Reading> ReadId(const Application& application)
{
	String id = ORVAN_TRY(String::Create(application.text));
	ORVAN_TRY(application.element.SetId(id));
	ORVAN_TRY(application.importer.RegisterId(application.element, std::move(id)));
	return Reading::applied;
}

Result<Reading> ReadLink(const Application& application)
{
	grammar::complete::Reference reference;
	if (grammar::complete::ParseIri(application.text, reference) != Parsed::value)
		return Reading::applied;
	// Outside of CSS a backslash is one.
	String link = ORVAN_TRY(String::Create(reference.text));
	if (application.tag == TagOf(SVGImportElementKind::use))
		ORVAN_TRY(static_cast<UseElement&>(application.element).SetLink(link));
	else
		ORVAN_TRY(application.element.Store(SVGImportAttribute::link, std::move(link)));
	return Reading::applied;
}

Result<Reading> ReadText(const Application& application)
{
	constexpr std::string_view kBlanks = " \t\r\n";
	const std::size_t first = application.text.find_first_not_of(kBlanks);
	if (first == application.text.npos)
		return StoreText(application, {});
	return StoreText(application,
					 application.text.substr(first, application.text.find_last_not_of(kBlanks) + 1 - first));
}

Result<Reading> ReadRawText(const Application& application)
{
	return StoreText(application, application.text);
}

Result<Reading> ReadReference(const Application& application)
{
	return StoreReference(application, {&application.rule.number, 1});
}

Result<Reading> ReadMask(const Application& application)
{
	grammar::complete::Mask mask;
	const Parsed parsed = grammar::complete::ParseMask(application.text, mask);
	if (parsed == Parsed::refused)
		return Reading::refused;
	ElementBase& element = application.element;
	using Number = SVGImportAttribute;
	String first;
	BaseArray<char> ids;
	bool areSeveral = false;
	for (std::size_t i = 0; i < mask.count; i++)
	{
		String id = ORVAN_TRY(TextOf(mask.layers[i]));
		// Among several, what can be no mask's id says as much as "none".
		if (id.IsEmpty() || (mask.count > 1 && id.View().find(' ') != id.View().npos))
			continue;
		areSeveral = !ids.IsEmpty();
		if (areSeveral)
			ORVAN_TRY(ids.Append(' '));
		ORVAN_TRY(ids.AppendAll(id.View().data(), id.View().size()));
		if (!areSeveral)
			first = std::move(id);
	}
	ORVAN_TRY(element.Store(Number::mask, std::move(first)));
	if (areSeveral)
		ORVAN_TRY(element.Store(Number::maskLayers, ORVAN_TRY(String::Create({ids.begin(), ids.GetCount()}))));
	else
		ORVAN_TRY(element.Unset(Number::maskLayers));
	if (application.rule.name.ends_with("mask-image"))
		return Reading::applied;
	// The property for all of them takes back what was said before.
	const auto store = [&](Number number, std::int32_t value) noexcept
	{
		return value != 0 ? element.Store(number, value) : element.Unset(number);
	};
	ORVAN_TRY(store(Number::maskMode, static_cast<std::int32_t>(mask.mode)));
	ORVAN_TRY(store(Number::maskComposite, static_cast<std::int32_t>(mask.composite)));
	return Reading::applied;
}

Result<Reading> ReadMarkers(const Application& application)
{
	return StoreReference(application, LonghandsOf(application.rule));
}

Result<Reading> ReadKeyword(const Application& application)
{
	std::int32_t value = 0;
	const Parsed parsed = grammar::complete::ParseKeyword(application.text, application.rule.keywords, value);
	return StoreKeyword(application, parsed, value);
}

Result<Reading> ReadExactKeyword(const Application& application)
{
	std::int32_t value = 0;
	const Parsed parsed = grammar::complete::ParseExactKeyword(application.text, application.rule.keywords, value);
	return StoreKeyword(application, parsed, value);
}

/// Of all that "display" can say, only whether the element shows makes a difference.
Result<Reading> ReadDisplay(const Application& application)
{
	static constexpr Keyword kKeywords[] = {{"none", 2},          {"inline", 0},
											{"block", 0},         {"inline-block", 0},
											{"list-item", 0},     {"contents", 1},
											{"flex", 0},          {"inline-flex", 0},
											{"grid", 0},          {"inline-grid", 0},
											{"table", 0},         {"inline-table", 0},
											{"flow-root", 0},     {"table-row-group", 0},
											{"table-row", 0},     {"table-header-group", 0},
											{"table-cell", 0},    {"table-footer-group", 0},
											{"table-column", 0},  {"table-column-group", 0},
											{"table-caption", 0}, {"math", 0},
											{"flow", 0},          {"ruby", 0},
											{"ruby-text", 0},     {"-webkit-box", 0},
											{"-webkit-flex", 0},  {"-webkit-inline-box", 0}};
	std::int32_t value = 0;
	if (grammar::complete::ParseKeyword(application.text, kKeywords, value) != Parsed::value)
		return Reading::refused;
	// Only these have contents that could show without them.
	static constexpr TagSet kDissolvable{SVGImportElementKind::svg, SVGImportElementKind::group,
										 SVGImportElementKind::use, SVGImportElementKind::tspan};
	application.importer.isDissolved = value == 1 && kDissolvable.Has(application.tag);
	if (value == 0 || application.importer.isDissolved)
		ORVAN_TRY(application.element.Unset(SVGImportAttribute::display));
	else
		ORVAN_TRY(application.element.SetDisplay(SVGDisplay::none));
	return Reading::applied;
}

Result<Reading> ReadType(const Application& application)
{
	static constexpr Keyword kColorMatrixType[] = {
		{"matrix", 0}, {"saturate", 1}, {"hueRotate", 2}, {"luminanceToAlpha", 3}};
	static constexpr Keyword kTransferType[] = {
		{"identity", 0}, {"table", 1}, {"discrete", 2}, {"linear", 3}, {"gamma", 4}};
	static constexpr Keyword kTurbulenceType[] = {{"turbulence", 0}, {"fractalNoise", 1}};
	const Tag tag = application.tag;
	const std::span<const Keyword> keywords =
		tag == TagOf(SVGImportElementKind::feColorMatrix)  ? std::span<const Keyword>(kColorMatrixType)
		: tag == TagOf(SVGImportElementKind::feTurbulence) ? std::span<const Keyword>(kTurbulenceType)
														   : std::span<const Keyword>(kTransferType);
	std::int32_t value = 0;
	const Parsed parsed = grammar::complete::ParseExactKeyword(application.text, keywords, value);
	return StoreKeyword(application, parsed, value);
}

Result<Reading> ReadOperator(const Application& application)
{
	static constexpr Keyword kCompositeOperator[] = {{"over", 0}, {"in", 1},         {"out", 2},    {"atop", 3},
													 {"xor", 4},  {"arithmetic", 5}, {"lighter", 6}};
	static constexpr Keyword kMorphologyOperator[] = {{"erode", 0}, {"dilate", 1}};
	const std::span<const Keyword> keywords = application.tag == TagOf(SVGImportElementKind::feComposite)
												  ? std::span<const Keyword>(kCompositeOperator)
												  : std::span<const Keyword>(kMorphologyOperator);
	std::int32_t value = 0;
	const Parsed parsed = grammar::complete::ParseExactKeyword(application.text, keywords, value);
	return StoreKeyword(application, parsed, value);
}

Result<Reading> ReadXmlSpace(const Application& application)
{
	const auto space = application.text == "preserve" ? SVGWhiteSpace::pre : SVGWhiteSpace::normal;
	ORVAN_TRY(application.element.Store(SVGImportAttribute::whiteSpace, static_cast<std::int32_t>(space)));
	return Reading::applied;
}

} // namespace orvan::svg::complete
