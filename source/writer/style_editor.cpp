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

/// The end of a declaration's value: the ";" that no bracket, quote or comment hides, or the end of the text.
std::size_t FindEnd(std::string_view text, std::size_t at) noexcept
{
	int depth = 0;
	for (; at < text.size(); at++)
	{
		const char c = text[at];
		if (c == '\\')
			at++;
		else if (c == '"' || c == '\'')
		{
			for (at++; at < text.size() && text[at] != c; at++)
				at += text[at] == '\\' ? 1 : 0;
		}
		else if (text.substr(at, 2) == "/*")
			at = std::min(text.find("*/", at + 2), text.size() - 1) + 1;
		else if (c == '(' || c == '[' || c == '{')
			depth++;
		else if (c == ')' || c == ']' || c == '}')
			depth--;
		else if (c == ';' && depth <= 0)
			return at;
	}
	return text.size();
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

StyleEditor::Place StyleEditor::PlaceOf(const css::Declaration& declaration, Saying saying) const noexcept
{
	Place place{declaration.offset, declaration.valueOffset, 0, 0, saying, declaration.isImportant};
	place.valueEnd = FindEnd(_text, place.valueBegin);
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
