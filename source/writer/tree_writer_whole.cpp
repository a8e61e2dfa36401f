// SPDX-License-Identifier: MIT
/// What writes elements anew: whole documents, and what was added to others.
#include "elements/complete_classes.h"
#include "importer/xml/xml_tree.h"
#include "writer/tree_writer.h"
#include "writer/xml_text.h"

#include <algorithm>

namespace orvan::svg
{

using complete::Rule;
using complete::Tag;
using complete::TagOf;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

/// Whether a text loses blanks when it is read without "xml:space".
bool HasLooseBlanks(std::string_view text) noexcept
{
	if (text.empty())
		return false;
	bool wasBlank = false;
	for (const char c : text)
	{
		const bool isBlank = IsXmlBlank(c);
		if ((isBlank && wasBlank) || (isBlank && c != ' '))
			return true;
		wasBlank = isBlank;
	}
	return IsXmlBlank(text.front()) || wasBlank;
}

void AddAttribute(std::string& text, std::string_view name, std::string_view value)
{
	text += ' ';
	text += name;
	text += "=\"";
	AppendAttributeValue(text, value, '"');
	text += '"';
}

} // namespace

std::string TreeWriter::WriteWhole()
{
	_needsCheck = true;
	const std::int32_t indentation = _request.options.indentation;
	Layout layout{"\n",
				  indentation < 0 ? std::string(1, '\t') : std::string(static_cast<std::size_t>(indentation), ' ')};
	std::string attributes;
	WriteAttributes(attributes, _request.root, TagOf(Kind::svg));
	std::string content;
	WriteContent(content, _request.root, "svg", layout, false);
	std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"";
	text += kSvgNamespace;
	if (_hasLinks)
	{
		text += "\" xmlns:xlink=\"";
		text += kXlinkNamespace;
	}
	text += "\" version=\"1.1\"";
	text += attributes;
	text += content;
	text += '\n';
	return text;
}

void TreeWriter::WriteElement(std::string& text, const ElementBase& element, const Layout& layout, bool isInText)
{
	const Kind kind = ClassKindOf(element);
	if (kind == Kind::textRun)
		return AppendCharacters(text, OwnTextOf(element).View());
	const std::uint32_t record = _source != nullptr ? _finder->Find(element) : kNoRecord;
	const Tag name = TagOfElement(element, _source, record == kNoRecord ? nullptr : &Record(record));
	// To the plain import, an unknown tag makes a group.
	std::string_view local =
		record == kNoRecord ? complete::TagName(name) : WithoutPrefix(_source->NameOf(Record(record)));
	std::string points;
	if ((name == Tag::polygon || name == Tag::polyline) &&
		FormatAttribute(points, element, AttributesOf(element), *complete::FindRule("points"), name, {}) ==
			Formatted::impossible)
		local = "path";
	if (local.empty() || kind == Kind::unknown)
		throw SaveError("An element of no kind cannot be written.");
	const std::string tag = _prefix + std::string(local);
	text += '<' + tag;
	WriteAttributes(text, element, local == "path" ? TagOf(Kind::path) : name);
	WriteContent(text, element, tag, layout, isInText);
}

/// What an element that is written anew has to say against the style sheets.
std::vector<ForcedProperty> TreeWriter::ForcedOnNew(const ElementBase& element, Tag name)
{
	const std::span<const ForcedProperty> known = ForcedOn(element);
	if (!known.empty() || !_request.asksSheets || !_source->isComplete)
		return {known.begin(), known.end()};
	_areSheetsSure = _areSheetsSure && ClassKindOf(element) != Kind::style;
	return Sheets().FindDifferences(element, AttributesOf(element), name);
}

void TreeWriter::WriteAttributes(std::string& text, const ElementBase& element, Tag name)
{
	const auto add = [&text](std::string_view attribute, std::string_view value)
	{
		AddAttribute(text, attribute, value);
	};
	StyleEditor style{{}};
	bool preservesSpace = false;
	const std::vector<ForcedProperty> allForced = ForcedOnNew(element, name);
	for (const Rule* rule : ListRules(element, AttributesOf(element), name))
	{
		std::string exact;
		if (FormatAttribute(exact, element, AttributesOf(element), *rule, name, {}) == Formatted::absent)
			continue;
		const ForcedProperty* const forced = FindForced(allForced, *rule);
		if (forced != nullptr || rule->role == complete::Role::declaration)
		{
			style.Set(*complete::PropertyOf(*rule), Format(element, name, *rule, true),
					  forced != nullptr && forced->isImportant);
			continue;
		}
		if (rule->number == Number::display && exact == "inline")
			continue;
		const std::string value = Format(element, name, *rule, false);
		if (rule->number == Number::whiteSpace && (value == "pre" || value == "normal"))
		{
			preservesSpace = true;
			add("xml:space", value == "pre" ? "preserve" : "default");
		}
		else if (rule->number == Number::href)
		{
			_hasLinks |= _source == nullptr || _scope == kNoRecord;
			add(_source == nullptr || _scope == kNoRecord ? "xlink:href" : LinkName(), value);
		}
		else
		{
			if (rule->tags.Has(name))
				CheckReads(element, name, *rule, value, false, exact);
			add(rule->name, value);
		}
	}
	for (const ForcedProperty& property : allForced)
	{
		const Rule& rule = *FindWritingRule(property.number);
		if (std::string none;
			FormatAttribute(none, element, AttributesOf(element), rule, name, {}) == Formatted::absent)
			style.Set(*complete::PropertyOf(rule), "unset", property.isImportant);
	}
	if (!style.IsBlank())
		add("style", style.GetText());
	if (ClassKindOf(element) == Kind::text && !preservesSpace)
	{
		const auto& content = static_cast<const TextElement&>(element);
		if (HasLooseBlanks(content.GetText().View()))
			add("xml:space", "preserve");
	}
	WriteUnknownAttributes(text, element);
}

/// Writes the attributes that only the source knows.
void TreeWriter::WriteUnknownAttributes(std::string& text, const ElementBase& element) const
{
	if (_source == nullptr)
		return;
	for (const SourceOverride& entry : _source->overrides)
	{
		if (ElementOf(entry.element) == &element && !entry.isRemoved &&
			complete::FindRule(entry.name.View()) == nullptr && PrefixOf(entry.name.View()).empty())
			AddAttribute(text, entry.name.View(), entry.text.View());
	}
}

/// Writes what comes behind the attributes of a tag, to the end of the element.
void TreeWriter::WriteContent(std::string& text, const ElementBase& element, std::string_view tag, const Layout& layout,
							  bool isInText)
{
	const Kind kind = ClassKindOf(element);
	std::string content;
	if (kind != Kind::use)
		AppendCharacters(content, OwnTextOf(element).View());
	const bool isText = isInText || kind == Kind::text;
	const Layout inner = isText || layout.line.empty() ? Layout() : Layout{layout.line + layout.unit, layout.unit};
	bool hasElements = false;
	for (HierarchyObject* at = element.FirstChild(); at != nullptr; at = at->NextSibling())
	{
		const ElementBase* const child = AsElement(at);
		if (child == nullptr)
			throw SaveError("An element of another module cannot be written.");
		// What is none of SVG's goes when a whole document is written anew.
		if (ClassKindOf(*child) == Kind::unknown && _scope == kNoRecord)
			continue;
		if (ClassKindOf(*child) != Kind::textRun)
		{
			content += inner.line;
			hasElements = true;
		}
		WriteElement(content, *child, inner, isText);
	}
	if (content.empty())
	{
		text += "/>";
		return;
	}
	text += '>';
	text += content;
	if (hasElements && !isText)
		text += layout.line;
	text += "</";
	text += tag;
	text += '>';
}

} // namespace orvan::svg
