// SPDX-License-Identifier: MIT
/// What changes a source: the start tags of the elements that are still there.
#include "writer/tree_writer.h"

#include "complete/calculations.h"
#include "css/variables.h"
#include "importer/xml/xml_tree.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <utility>

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

/// What an element is called in a message.
std::string Describe(const ElementBase& element, Tag name)
{
	const String id = element.GetId();
	return '<' + std::string(complete::TagName(name)) + (id.IsEmpty() ? "" : " id=\"" + std::string(id.View()) + '"') +
		   '>';
}

} // namespace

TreeWriter::TreeWriter(const WriteRequest& request) : _request(request), _source(request.source)
{
	if (_source == nullptr)
		return;
	_finder.emplace(*_source);
	const std::size_t count = _source->elements.GetCount();
	_firstChild.assign(count, kNoRecord);
	_nextSibling.assign(count, kNoRecord);
	for (auto number = static_cast<std::uint32_t>(count); number-- > 1;)
	{
		// What the import passed over is left alone.
		if (!_source->loaded[number].element)
			continue;
		std::uint32_t& first = _firstChild[Record(number).parent];
		_nextSibling[number] = std::exchange(first, number);
	}
}

const SourceElement& TreeWriter::Record(std::uint32_t number) const noexcept
{
	return _source->elements[number];
}

ValueStyle TreeWriter::StyleFor(bool isDeclaration) const noexcept
{
	const bool isPlain = _source != nullptr && !_source->isComplete;
	return {{_request.options.precision, !isDeclaration}, isDeclaration, isPlain};
}

std::string TreeWriter::Format(const ElementBase& element, Tag name, const Rule& rule, bool isDeclaration) const
{
	std::string text;
	if (FormatAttribute(text, element, AttributesOf(element), rule, name, StyleFor(isDeclaration)) != Formatted::text)
	{
		throw SaveError("The attribute \"" + std::string(rule.name) + "\" of " + Describe(element, name) +
						" has a value that cannot be written.");
	}
	return text;
}

std::span<const ForcedProperty> TreeWriter::ForcedOn(const ElementBase& element) const noexcept
{
	const auto found = _request.forced.find(&element);
	return found != _request.forced.end() ? found->second : std::span<const ForcedProperty>();
}

const ForcedProperty* FindForced(std::span<const ForcedProperty> forced, const Rule& rule) noexcept
{
	const auto found =
		std::find_if(forced.begin(), forced.end(),
					 [&](const ForcedProperty& property) { return property.number == WrittenAs(rule.number); });
	return found != forced.end() ? &*found : nullptr;
}

TextEdits TreeWriter::MakeEdits()
{
	if (_source->loaded[0].element.GetObject() != static_cast<const ObjectBase*>(&_request.root))
		throw SaveError("The document has another root than its source: it can only be written whole.");
	EditElement(0, _request.root);
	if ((!_edits.IsEmpty() || _hasChanges) && _source->isComplete)
	{
		SourceSheets& sheets = Sheets();
		_areSheetsSure = _areSheetsSure && _request.asksSheets && sheets.IsSure();
		// A sheet may match what was edited, and what stands around it.
		_needsCheck |= !_areSheetsSure && (!sheets.IsEmpty() || !sheets.IsSure());
		// Custom properties reach from what was edited to whatever is in it.
		_needsCheck |= css::MayHaveVariables(_source->Text());
	}
	return std::move(_edits);
}

SourceSheets& TreeWriter::Sheets()
{
	if (!_sheets)
		_sheets.emplace(*_source, _request.clientSheet);
	return *_sheets;
}

void TreeWriter::EditElement(std::uint32_t record, const ElementBase& element)
{
	if (!Record(record).IsRun())
		EditStartTag(record, element);
	if (!EditText(record, element))
		EditChildren(record, element);
}

// Start tags ---------------------------------------------------------------------------------------------------------

/// The name of a new link: with a prefix where one is bound.
std::string TreeWriter::LinkName() const
{
	for (std::uint32_t at = _scope; at != kNoRecord; at = Record(at).parent)
	{
		const SourceElement& record = Record(at);
		for (std::uint32_t i = 0; i < record.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source->attributes[record.firstAttribute + i];
			const std::string_view name = _source->NameOf(attribute);
			if (PrefixOf(name) == "xmlns:" && _source->RawValueOf(attribute) == kXlinkNamespace)
				return std::string(WithoutPrefix(name)) + ":href";
		}
	}
	return "href";
}

/// The names of the attributes of a tag that a rule is about; the one that counts first.
std::vector<std::string> TreeWriter::NamesOf(const StartTagEditor& tag, const Rule& rule) const
{
	const auto meaning = [&](std::string_view name) -> const Rule*
	{
		const std::string_view prefix = PrefixOf(name);
		if (!prefix.empty() && WithoutPrefix(name) == "href" && _source->NamespaceOf(_scope, prefix) == kXlinkNamespace)
			return FindRule("xlink:href");
		return FindRule(name); // "xml:space" and its like are in the table.
	};
	std::vector<std::string> names;
	for (const std::string_view name : tag.GetNames())
	{
		const Rule* const known = meaning(name);
		if (known == nullptr || known->role == complete::Role::declaration ||
			WrittenAs(known->number) != WrittenAs(rule.number) ||
			(known->number != rule.number && known->name != rule.name))
			continue;
		if (PrefixOf(name).empty())
			names.insert(names.begin(), std::string(name));
		else
			names.emplace_back(name);
	}
	return names;
}

/// What has changed of an element since it was loaded.
std::vector<const Rule*> TreeWriter::ListChanges(std::uint32_t record, const ElementBase& element, Tag name) const
{
	const LoadedElement& loaded = _source->loaded[record];
	std::vector<const Rule*> changes;
	if (loaded.id != element.GetId())
		changes.push_back(FindRule("id"));
	if (!loaded.attributes.IsSameObject(AttributesOf(element)))
	{
		const auto compare =
			[&](const DataDictionary& in, const DataDictionary& other, const DataDictionary::Entry& entry)
		{
			if (HasSame(other, in, entry))
				return;
			const Rule* const rule = FindWritingRule(WrittenAs(static_cast<Number>(entry.key)));
			if (rule == nullptr)
				throw SaveError("An attribute of " + Describe(element, name) + " has no name and cannot be written.");
			if (std::find(changes.begin(), changes.end(), rule) != changes.end())
				return;
			std::string before;
			std::string after;
			const Formatted wasThere = FormatEntry(before, loaded.attributes, *rule, name, {});
			const Formatted isThere = FormatEntry(after, AttributesOf(element), *rule, name, {});
			if (wasThere == isThere && before == after)
				return;
			if (rule->number == Number::display)
			{
				// That a layer which was not hidden is shown says nothing.
				if (wasThere == Formatted::absent && after == "inline")
					return;
			}
			changes.push_back(rule);
		};
		const DataDictionary& present = AttributesOf(element);
		for (const DataDictionary::Entry& entry : present)
			compare(present, loaded.attributes, entry);
		for (const DataDictionary::Entry& entry : loaded.attributes)
			compare(loaded.attributes, present, entry);
	}
	if (loaded.transform != HashTransform(element))
		changes.push_back(FindRule("transform"));
	if (loaded.path != HashPath(element))
		changes.push_back(FindRule(name == Tag::polygon || name == Tag::polyline ? "points" : "d"));
	if (ClassKindOf(element) == Kind::use && loaded.text != OwnTextOf(element))
		changes.push_back(FindRule("href"));
	return changes;
}

/// The tag that an element needs when it is no longer what its own one says; empty when it is.
std::string_view TreeWriter::ChooseTag(std::uint32_t record, const ElementBase& element, Tag& name) const
{
	const LoadedElement& loaded = _source->loaded[record];
	const bool isPoints = name == Tag::polygon || name == Tag::polyline;
	if (isPoints && loaded.path != HashPath(element))
	{
		std::string points;
		if (FormatAttribute(points, element, AttributesOf(element), *FindRule("points"), name, {}) ==
			Formatted::impossible)
			name = TagOf(Kind::path);
	}
	else if (ClassKindOf(element) == Kind::circle && !loaded.attributes.IsSameObject(AttributesOf(element)))
	{
		const bool hasRadii =
			AttributesOf(element).Has(static_cast<std::int32_t>(Number::rx)) || element.HasAttribute(Number::ry);
		if (hasRadii != (name == Tag::ellipse) && hasRadii != element.HasAttribute(Number::r))
			name = hasRadii ? Tag::ellipse : TagOf(Kind::circle);
	}
	const std::string_view written = complete::TagName(name);
	return written == WithoutPrefix(_source->NameOf(Record(record))) || complete::KindOf(name) != ClassKindOf(element)
			   ? std::string_view()
			   : written;
}

void TreeWriter::EditStartTag(std::uint32_t record, const ElementBase& element)
{
	const LoadedElement& loaded = _source->loaded[record];
	const bool mayHaveChanged = !loaded.attributes.IsSameObject(AttributesOf(element)) ||
								!loaded.id.IsSameObject(element.GetId()) || loaded.path != HashPath(element) ||
								loaded.transform != HashTransform(element) ||
								(ClassKindOf(element) == Kind::use && loaded.text != OwnTextOf(element));
	if (!mayHaveChanged && _source->overrides.IsEmpty() && _request.forced.empty()) [[likely]]
		return;
	_scope = record;
	StartTagEditor tag(*_source, Record(record));
	Tag name = TagOfElement(element, _source, &Record(record));
	if (const Kind kind = ClassKindOf(element); kind == Kind::path || kind == Kind::circle)
	{
		if (const std::string_view other = ChooseTag(record, element, name); !other.empty())
		{
			tag.Rename(other);
			tag.Remove("points");
		}
	}
	std::vector<const Rule*> changes = ListChanges(record, element, name);
	const std::span<const ForcedProperty> allForced = ForcedOn(element);
	for (const ForcedProperty& property : allForced)
	{
		const Rule* const rule = FindWritingRule(property.number);
		if (std::find(changes.begin(), changes.end(), rule) == changes.end())
			changes.push_back(rule);
	}
	AddTied(tag, record, element, name, changes);
	_hasChanges |= !changes.empty();
	for (const Rule* rule : changes)
	{
		const ForcedProperty* const forced = FindForced(allForced, *rule);
		const std::optional<ForcedProperty> asked =
			forced == nullptr ? ForceAgainstSheets(record, name, *rule) : std::nullopt;
		if (rule->number == Number::transform && _source->isComplete && tag.Has("style"))
			tag.Style().RemoveSingleTransforms(); // The tree's transform is all that there is.
		EditAttribute(tag, element, name, *rule, asked ? &*asked : forced);
		_needsCheck |= ReachesBelow(element, *rule);
	}
	EditOverrides(tag, element, name, changes);
	tag.Finish(_edits);
	_areSheetsSure = _areSheetsSure && !tag.IsRenamed();
	for (const std::string_view changed : tag.GetChangedNames())
		_areSheetsSure = _areSheetsSure && _request.asksSheets && !Sheets().LookAt(changed);
}

/// Whether an edit of a property may change what is read on the elements below.
bool TreeWriter::ReachesBelow(const ElementBase& element, const Rule& rule) noexcept
{
	if (!_source->isComplete)
		return false;
	const Number number = WrittenAs(rule.number);
	const bool isViewport = ClassKindOf(element) == Kind::svg &&
							(number == Number::width || number == Number::height || number == Number::viewBox);
	// What a calculation came to when it was read depends on the font's size and on the viewport.
	if ((isViewport || number == Number::fontSize) && (grammar::complete::MayHaveCalculations(_source->Text()) ||
													   grammar::complete::MayHaveCalculations(_request.clientSheet)))
		return true;
	// So does what a colour came to that was made of the current one.
	const auto mayMix = [](std::string_view text)
	{
		return MayMention(text, "currentcolor") && (MayMention(text, "color-mix") || MayMention(text, "from"));
	};
	if (number == Number::color && (mayMix(_source->Text()) || mayMix(_request.clientSheet)))
		return true;
	if (element.FirstChild() == nullptr)
		return false;
	if (number == Number::whiteSpace)
		return true;
	// Percentages in transforms are taken of the viewport.
	if (isViewport)
		return _source->Text().find('%') != std::string_view::npos;
	if (!complete::IsProperty(rule) || rule.role == complete::Role::inherited)
		return false;
	// What is in it may have the property by "inherit", or get it only now.
	if (!_mayInherit)
		_mayInherit = MayMention(_request.clientSheet, "inherit") || MayMention(_source->Text(), "inherit");
	return *_mayInherit;
}

/// What a property has to be written with where a sheet says something about it.
std::optional<ForcedProperty> TreeWriter::ForceAgainstSheets(std::uint32_t record, Tag name, const Rule& rule)
{
	if (!_request.asksSheets || !_source->isComplete || Sheets().IsEmpty())
		return {};
	const SourceSheets::Saying saying = Sheets().Find(record, name, rule);
	if (saying == SourceSheets::Saying::nothing)
		return {};
	return ForcedProperty{WrittenAs(rule.number), saying == SourceSheets::Saying::important};
}

void TreeWriter::EditAttribute(StartTagEditor& tag, const ElementBase& element, Tag name, const Rule& rule,
							   const ForcedProperty* forced)
{
	std::string exact;
	if (FormatAttribute(exact, element, AttributesOf(element), rule, name, {}) == Formatted::absent)
		RemoveAttribute(tag, rule, forced);
	else
		SetAttribute(tag, element, name, rule, forced, exact);
}

void TreeWriter::RemoveAttribute(StartTagEditor& tag, const Rule& rule, const ForcedProperty* forced)
{
	for (const std::string& name : NamesOf(tag, rule))
		tag.Remove(name);
	const Rule* const property = complete::PropertyOf(rule);
	if (property != nullptr && tag.Has("style") &&
		tag.Style().Find(WrittenAs(property->number)) != StyleEditor::Saying::nothing)
		tag.Style().Remove(*property);
	if (forced != nullptr)
		tag.Style().Set(*property, "unset", forced->isImportant);
}

/// A text must read back as the value that it was made of, unless it was meant to be shorter. `exact` is that value.
void TreeWriter::CheckReads(const ElementBase& element, Tag name, const Rule& rule, std::string_view text,
							bool isDeclaration, std::string_view exact) const
{
	// That an element is shown, which it is anyway, is read as nothing.
	if (rule.number == Number::display && text == "inline")
		return;
	const ValueStyle style = StyleFor(isDeclaration);
	const grammar::Source source = isDeclaration ? grammar::Source::style : grammar::Source::attribute;
	bool reads = true;
	if (style.isPlain || style.numbers.precision != NumberStyle::kExact)
	{
		const Result<SVGElementRef> read = ReadIntoNew(rule, name, text, source);
		reads = read.IsOk() && read.GetValue();
	}
	else
		reads = ReadsAs(rule, name, text, source, exact);
	if (!reads)
	{
		throw SaveError("The attribute \"" + std::string(rule.name) + "\" of " + Describe(element, name) +
						" would not be read again as it is: \"" + std::string(text.substr(0, 100)) + "\".");
	}
}

void TreeWriter::SetAttribute(StartTagEditor& tag, const ElementBase& element, Tag name, const Rule& rule,
							  const ForcedProperty* forced, std::string_view exact)
{
	const bool isForeign =
		ClassKindOf(element) == Kind::unknown && rule.number != Number::id && _source->IsForeign(_scope);
	if (_source->isComplete && (!rule.tags.Has(name) || isForeign))
	{
		throw SaveError("The attribute \"" + std::string(rule.name) + "\" cannot be written: it does not count on " +
						Describe(element, name) + '.');
	}
	const std::vector<std::string> names = NamesOf(tag, rule);
	const Rule* const property = complete::PropertyOf(rule);
	const bool isInStyle =
		property != nullptr &&
		(forced != nullptr || rule.role == complete::Role::declaration ||
		 (tag.Has("style") && tag.Style().Find(WrittenAs(property->number)) != StyleEditor::Saying::nothing));
	// What the client wrote stands as it was written while it says what the tree says.
	std::string_view given;
	for (const SourceOverride& entry : _source->overrides)
	{
		const Rule* const known = FindRule(entry.name.View());
		if (ElementOf(entry.element) == &element && known != nullptr &&
			WrittenAs(known->number) == WrittenAs(rule.number) &&
			ReadsAs(rule, name, entry.text.View(), isInStyle ? grammar::Source::sheet : grammar::Source::attribute,
					exact))
			given = entry.text.View();
	}
	if (isInStyle)
	{
		const std::string text = given.empty() ? Format(element, name, rule, true) : std::string(given);
		CheckReads(element, name, rule, text, true, exact);
		tag.Style().Set(*property, text, forced != nullptr && forced->isImportant);
		// To the plain import the later one counts, so both say the same.
		if (_source->isComplete || names.empty())
			return;
	}
	std::string text = given.empty() ? Format(element, name, rule, false) : std::string(given);
	CheckReads(element, name, rule, text, false, exact);
	if (rule.number == Number::whiteSpace && (text == "pre" || text == "normal") &&
		(names.empty() || names.back() == "xml:space"))
		return tag.Set("xml:space", text == "pre" ? "preserve" : "default");
	if (rule.number == Number::href && names.empty())
		return tag.Set(LinkName(), text);
	tag.Set(names.empty() ? rule.name : std::string_view(names.front()), text);
}

/// Attributes that were set as text: those that SVG does not know, and known ones that are to be written otherwise.
void TreeWriter::EditOverrides(StartTagEditor& tag, const ElementBase& element, Tag name,
							   const std::vector<const Rule*>& changes)
{
	const bool isForeign = ClassKindOf(element) == Kind::unknown && _source->IsForeign(_scope);
	for (const SourceOverride& entry : _source->overrides)
	{
		if (ElementOf(entry.element) != &element)
			continue;
		const Rule* const rule = FindRule(entry.name.View());
		if (rule == nullptr || (rule->number != Number::id && isForeign))
		{
			if (entry.isRemoved)
				tag.Remove(entry.name.View());
			else
				tag.Set(entry.name.View(), entry.text.View());
			continue;
		}
		const Rule* const written = FindWritingRule(WrittenAs(rule->number));
		std::string now;
		if (written != nullptr && std::find(changes.begin(), changes.end(), written) == changes.end() &&
			FormatAttribute(now, element, AttributesOf(element), *written, name, {}) == Formatted::text &&
			ReadsAs(*written, name, entry.text.View(), grammar::Source::attribute, now))
			SetAttribute(tag, element, name, *written, nullptr, now);
	}
}

} // namespace orvan::svg
