// SPDX-License-Identifier: MIT
#include "writer/style_editor.h"

#include "importer/complete/single_transforms.h"
#include "writer/value_text.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <memory_resource>
#include <span>
#include <vector>

namespace orvan::svg
{

using Number = SVGImportAttribute;

namespace
{

/// A way over a part of a style.
struct Way
{
	std::size_t end;
	std::string missing; ///< What would close all that is open there, in this order.
};

/// Passes over a quoted text that begins at `at`.
Way PassString(std::string_view text, std::size_t at)
{
	const char quote = text[at];
	for (at++; at < text.size() && text[at] != quote; at++)
	{
		// At the end, where it says nothing, it would take the quote with it.
		if (text[at] == '\\' && ++at == text.size())
			return {at, {'\n', quote}};
	}
	return at < text.size() ? Way{at + 1, {}} : Way{at, {quote}};
}

/// Passes over a name without quotes in the brackets of "url(…)", which may hold quotes and brackets that mean nothing.
Way PassUrl(std::string_view text, std::size_t at)
{
	for (; at < text.size() && text[at] != ')'; at++)
	{
		if (text[at] == '\\' && ++at == text.size())
			return {at, "FFFD )"};
	}
	return at < text.size() ? Way{at + 1, {}} : Way{at, ")"};
}

bool IsAtUrl(std::string_view text, std::size_t bracket) noexcept
{
	if (bracket < 3 || (text[bracket - 3] | 0x20) != 'u' || (text[bracket - 2] | 0x20) != 'r' ||
		(text[bracket - 1] | 0x20) != 'l')
		return false;
	// "curl(" is another function, "#url(" is none.
	constexpr std::string_view kNameCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_\\#@";
	if (bracket > 3 && (static_cast<unsigned char>(text[bracket - 4]) >= 0x80 ||
						kNameCharacters.find(text[bracket - 4]) != kNameCharacters.npos))
		return false;
	const std::size_t inner = text.find_first_not_of(" \t\r\n\f", bracket + 1);
	return inner == text.npos || (text[inner] != '"' && text[inner] != '\'');
}

/// Passes over a style, to its end or to the first ";" that no bracket, quote or comment hides.
Way PassStyle(std::string_view text, std::size_t at, bool endsAtSemicolon)
{
	constexpr std::string_view kOpening = "([{";
	constexpr std::string_view kClosing = ")]}";
	std::string open; // The closing brackets, the innermost first.
	while (at < text.size())
	{
		const char c = text[at];
		Way way{at + 1, {}};
		if (c == '\\')
			way = at + 1 < text.size() ? Way{at + 2, {}} : Way{at + 1, "FFFD "};
		else if (c == '"' || c == '\'')
			way = PassString(text, at);
		else if (text.substr(at, 2) == "/*")
		{
			const std::size_t end = text.find("*/", at + 2);
			way = end != text.npos ? Way{end + 2, {}} : Way{text.size(), "*/"};
		}
		else if (c == '(' && IsAtUrl(text, at))
			way = PassUrl(text, at + 1);
		else if (const std::size_t kind = kOpening.find(c); kind != kOpening.npos)
			open.insert(open.begin(), kClosing[kind]);
		else if (!open.empty() && c == open.front())
			open.erase(open.begin());
		else if (c == ';' && endsAtSemicolon && open.empty())
			return {at, {}};
		if (!way.missing.empty())
			return {text.size(), way.missing + open};
		at = way.end;
	}
	return {text.size(), open};
}

} // namespace

StyleEditor::Saying SayingOf(const css::Declaration& declaration, Number number) noexcept
{
	if (declaration.name == "all" && number != Number::direction && number != Number::unicodeBidi)
		return StyleEditor::Saying::byShorthand;
	const complete::Rule* const rule = declaration.isCustom ? nullptr : complete::FindRule(declaration.name);
	if (rule == nullptr || !complete::IsProperty(*rule))
		return StyleEditor::Saying::nothing;
	if (std::ranges::count(complete::AlsoSetBy(*rule), number) > 0)
		return StyleEditor::Saying::byShorthand;
	if (!complete::IsShorthand(*rule))
		return WrittenAs(rule->number) == number ? StyleEditor::Saying::byItself : StyleEditor::Saying::nothing;
	const std::span<const Number> longhands = complete::LonghandsOf(*rule);
	const bool isSet = std::find(longhands.begin(), longhands.end(), number) != longhands.end();
	return isSet ? StyleEditor::Saying::byShorthand : StyleEditor::Saying::nothing;
}

std::optional<StyleEditor::Place> StyleEditor::FindLast(Number number, Saying saying) const
{
	css::Arena arena;
	std::pmr::vector<css::Declaration> declarations;
	css::ReadDeclarations(_text, {.arena = arena}, declarations);
	std::optional<Place> found;
	for (const css::Declaration& declaration : declarations)
	{
		if (SayingOf(declaration, number) != saying || (found && found->isImportant && !declaration.isImportant))
			continue;
		found = PlaceOf(declaration, saying);
	}
	return found;
}

StyleEditor::Place StyleEditor::PlaceOf(const css::Declaration& declaration, Saying saying) const
{
	Place place{declaration.offset, declaration.valueOffset, 0, 0, saying, declaration.isImportant};
	place.valueEnd = PassStyle(_text, place.valueBegin, true).end;
	place.end = std::min(place.valueEnd + 1, _text.size());
	if (declaration.isImportant)
		place.valueEnd = std::max(place.valueBegin, _text.rfind('!', place.valueEnd - 1));
	while (place.valueEnd > place.valueBegin && IsXmlBlank(_text[place.valueEnd - 1]))
		place.valueEnd--;
	return place;
}

StyleEditor::Saying StyleEditor::Find(Number number) const
{
	if (FindLast(number, Saying::byItself))
		return Saying::byItself;
	return FindLast(number, Saying::byShorthand) ? Saying::byShorthand : Saying::nothing;
}

void StyleEditor::Append(std::string_view name, std::string_view value, bool isImportant)
{
	// The end of the text closes everything, until something is written behind it.
	_text += PassStyle(_text, 0, false).missing;
	// In the manner of what stands there: with or without blanks, and a ";" at the end.
	const bool hasBlank = _text.find("; ") != std::string::npos;
	const bool hasBlankInside = _text.find(": ") != std::string::npos;
	const std::size_t last = _text.find_last_not_of(" \t\r\n\f");
	const bool isEnded = last != std::string::npos && _text[last] == ';';
	std::string added;
	if (last != std::string::npos)
		added = isEnded ? "" : ";";
	if (hasBlank && last != std::string::npos)
		added += ' ';
	added += name;
	added += hasBlankInside ? ": " : ":";
	added += value;
	if (isImportant)
		added += "!important";
	if (isEnded)
		added += ';';
	_text.insert(last == std::string::npos ? _text.size() : last + 1, added);
}

void StyleEditor::Set(const complete::Rule& rule, std::string_view value, bool makesImportant)
{
	const Number number = WrittenAs(rule.number);
	const std::optional<Place> place = FindLast(number, Saying::byItself);
	const std::optional<Place> shorthand = FindLast(number, Saying::byShorthand);
	const bool isImportant = makesImportant || (place && place->isImportant) || (shorthand && shorthand->isImportant);
	// Behind a shorthand, what stood before it does not count.
	if (!place || (shorthand && shorthand->begin > place->begin) || (isImportant && !place->isImportant))
		return Append(rule.name, value, isImportant);
	_text.replace(place->valueBegin, place->valueEnd - place->valueBegin, value);
}

void StyleEditor::Remove(const complete::Rule& rule)
{
	const Number number = WrittenAs(rule.number);
	while (const std::optional<Place> place = FindLast(number, Saying::byItself))
		Erase(*place);
	if (const std::optional<Place> shorthand = FindLast(number, Saying::byShorthand))
		Append(rule.name, "unset", shorthand->isImportant);
}

void StyleEditor::RemoveSingleTransforms()
{
	css::Arena arena;
	std::pmr::vector<css::Declaration> declarations;
	css::ReadDeclarations(_text, {.arena = arena}, declarations);
	// From the last one on, so that the places of the others hold.
	for (auto declaration = declarations.rbegin(); declaration != declarations.rend(); ++declaration)
	{
		if (complete::SingleTransforms::IsName(declaration->name))
			Erase(PlaceOf(*declaration, Saying::byItself));
	}
}

/// Takes a declaration out.
void StyleEditor::Erase(const Place& place)
{
	std::size_t begin = place.begin;
	std::size_t end = place.end;
	const bool isLast = _text.find_first_not_of(" \t\r\n\f", end) == std::string::npos;
	const bool isEnded = _text[end - 1] == ';';
	if (isLast)
	{
		// The blanks before it go, and the ";" of the one before unless there was one here, too.
		while (begin > 0 && IsXmlBlank(_text[begin - 1]))
			begin--;
		if (!isEnded && begin > 0 && _text[begin - 1] == ';')
			begin--;
	}
	else
	{
		while (end < _text.size() && IsXmlBlank(_text[end]))
			end++;
	}
	_text.erase(begin, end - begin);
}

} // namespace orvan::svg
