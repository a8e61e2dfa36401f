// SPDX-License-Identifier: MIT
#include "writer/element_text.h"

#include "elements/complete_classes.h"
#include "importer/complete/importer.h"
#include "writer/xml_text.h"

#include <algorithm>

namespace orvan::svg
{

using complete::FindRule;
using complete::Rule;
using complete::Tag;
using complete::TagOf;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

Formatted FormatPath(std::string& text, const ElementBase& element, Tag tag, const ValueStyle& style)
{
	if (ClassKindOf(element) != Kind::path)
		return Formatted::absent;
	const Result<BaseArray<SVGPathCommand>> commands = static_cast<const PathElement&>(element).GetPath();
	if (!commands.IsOk())
		throw std::bad_alloc();
	if (commands.GetValue().IsEmpty())
		return Formatted::absent;
	const bool isPolygon = tag == Tag::polygon;
	const bool isWritten = isPolygon || tag == Tag::polyline
							   ? AppendPoints(text, commands.GetValue(), isPolygon, style.numbers)
							   : AppendPath(text, commands.GetValue(), style.numbers);
	return isWritten ? Formatted::text : Formatted::impossible;
}

Formatted FormatTransform(std::string& text, const ElementBase& element, const ValueStyle& style)
{
	const Matrix2d local = element.GetLocalTransform();
	const std::size_t before = text.size();
	if (!AppendMatrix(text, local, {style.numbers, false, style.isPlain}))
		return Formatted::impossible;
	if (text.size() == before)
		return Formatted::absent;
	if (style.isDeclaration)
	{
		text.resize(before);
		return AppendMatrix(text, local, style) ? Formatted::text : Formatted::impossible;
	}
	return Formatted::text;
}

} // namespace

Tag TagOfElement(const ElementBase& element, const DocumentSource* source, const SourceElement* record)
{
	const Kind kind = ClassKindOf(element);
	if (kind == Kind::tspan)
		return element.HasAttribute(Number::link) ? Tag::tref : TagOf(kind);
	if (kind != Kind::path && kind != Kind::circle)
		return TagOf(kind);
	if (source != nullptr && record != nullptr)
	{
		const Tag tag = complete::FindTag(WithoutPrefix(source->NameOf(*record)));
		if (complete::KindOf(tag) == kind)
			return tag;
	}
	const bool isEllipse =
		kind == Kind::circle && (element.HasAttribute(Number::rx) || element.HasAttribute(Number::ry));
	return isEllipse ? Tag::ellipse : TagOf(kind);
}

Formatted FormatAttribute(std::string& text, const ElementBase& element, const Rule& rule, Tag tag,
						  const ValueStyle& style)
{
	return FormatAttribute(text, element, element.Attributes(), rule, tag, style);
}

Formatted FormatAttribute(std::string& text, const ElementBase& element, const DataDictionary& attributes,
						  const Rule& rule, Tag tag, const ValueStyle& style)
{
	switch (rule.number)
	{
	case Number::id:
	{
		const String id = element.GetId();
		text += id.View();
		return id.IsEmpty() ? Formatted::absent : Formatted::text;
	}
	case Number::transform:
		return FormatTransform(text, element, style);
	case Number::d:
	case Number::points:
	{
		if (!style.isDeclaration)
			return FormatPath(text, element, tag, style);
		text += "path(\"";
		const Formatted formatted = FormatPath(text, element, tag, style);
		text += "\")";
		return formatted;
	}
	case Number::href:
		if (ClassKindOf(element) == Kind::use)
		{
			const String link = static_cast<const UseElement&>(element).GetLink();
			if (link.IsEmpty())
				return Formatted::absent;
			AppendLink(text, link.View(), tag, false);
			return Formatted::text;
		}
		break;
	default:
		break;
	}
	return FormatEntry(text, attributes, rule, tag, style);
}

std::vector<const Rule*> ListRules(const ElementBase& element, const DataDictionary& attributes, Tag tag)
{
	std::vector<const Rule*> rules;
	const auto add = [&](const Rule* rule)
	{
		if (rule == nullptr)
			throw SaveError("An attribute that has no name cannot be written.");
		if (std::find(rules.begin(), rules.end(), rule) == rules.end())
			rules.push_back(rule);
	};
	if (!element.GetId().IsEmpty())
		add(FindRule("id"));
	for (const DataDictionary::Entry& entry : attributes)
		add(FindWritingRule(WrittenAs(static_cast<Number>(entry.key))));
	add(FindRule("transform"));
	if (ClassKindOf(element) == Kind::path)
		add(FindRule(tag == Tag::polygon || tag == Tag::polyline ? "points" : "d"));
	if (ClassKindOf(element) == Kind::use)
		add(FindRule("href"));
	return rules;
}

Result<SVGElementRef> ReadIntoNew(const Rule& rule, Tag tag, std::string_view text, grammar::Source source)
{
	const SVGElementRef reference = ORVAN_TRY(complete::FactoryOf(tag).Create<SVGElementInterface>());
	ElementBase& element = *ElementOf(reference);
	const SVGImportOptions options;
	complete::Importer importer(options);
	const Rule& read = source == grammar::Source::attribute ? rule : *complete::PropertyOf(rule);
	if (ORVAN_TRY(importer.Read({importer, element, tag, read, text, source})) != complete::Reading::applied)
		return SVGElementRef();
	return reference;
}

bool ReadsAs(const Rule& rule, Tag tag, std::string_view text, grammar::Source source, std::string_view expected)
{
	const Result<SVGElementRef> read = ReadIntoNew(rule, tag, text, source);
	if (!read.IsOk())
		throw std::bad_alloc();
	if (!read.GetValue())
		return false;
	std::string again;
	return FormatAttribute(again, *ElementOf(read.GetValue()), rule, tag, {}) == Formatted::text && again == expected;
}

ElementBase* ElementOf(const SVGElementRef& reference) noexcept
{
	const auto hierarchy = Borrowed<HierarchyObjectInterface>(reference);
	return hierarchy ? AsElement(static_cast<HierarchyObject*>(reference.GetObject())) : nullptr;
}

bool IsInText(const ElementBase& element) noexcept
{
	for (HierarchyObject* at = const_cast<ElementBase*>(&element); at != nullptr; at = at->Parent())
	{
		const ElementBase* const around = AsElement(at);
		if (around == nullptr)
			return false;
		const Kind kind = ClassKindOf(*around);
		if (kind == Kind::text)
			return true;
		if (kind != Kind::tspan && kind != Kind::textPath && kind != Kind::anchor && kind != Kind::textRun)
			return false;
	}
	return false;
}

} // namespace orvan::svg
