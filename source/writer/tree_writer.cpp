// SPDX-License-Identifier: MIT
/// The half that changes a source: which of its pieces are replaced by what.
#include "writer/tree_writer.h"

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

/// The numbers, in rising order, of a longest sequence of children that stand as they stood.
void KeepMost(std::vector<std::pair<std::uint32_t, bool*>>& records)
{
	// The last of the best sequence of each length, and whom each one follows.
	std::vector<std::size_t> ends;
	std::vector<std::size_t> before(records.size(), records.size());
	for (std::size_t i = 0; i < records.size(); i++)
	{
		const auto place =
			std::lower_bound(ends.begin(), ends.end(), records[i].first,
							 [&](std::size_t end, std::uint32_t record) { return records[end].first < record; });
		if (place != ends.begin())
			before[i] = place[-1];
		if (place == ends.end())
			ends.push_back(i);
		else
			*place = i;
	}
	for (std::size_t i = ends.empty() ? records.size() : ends.back(); i != records.size(); i = before[i])
		*records[i].second = true;
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
	if (FormatAttribute(text, element, rule, name, StyleFor(isDeclaration)) != Formatted::text)
	{
		throw SaveError("The attribute \"" + std::string(rule.name) + "\" of " + Describe(element, name) +
						" has a value that cannot be written.");
	}
	return text;
}

const ForcedProperty* TreeWriter::FindForced(const ElementBase& element, const Rule& rule) const noexcept
{
	const auto found = _request.forced.find(&element);
	if (found == _request.forced.end())
		return nullptr;
	for (const ForcedProperty& forced : found->second)
	{
		if (forced.number == WrittenAs(rule.number))
			return &forced;
	}
	return nullptr;
}

TextEdits TreeWriter::MakeEdits()
{
	if (_source->loaded[0].element.GetObject() != static_cast<const ObjectBase*>(&_request.root))
		throw SaveError("The document has another root than its source: it can only be written whole.");
	EditElement(0, _request.root);
	if (!_edits.IsEmpty() && _source->isComplete)
	{
		// A sheet may match what was edited, and what stands around it.
		_needsCheck |= _request.hasClientSheet;
		for (const SourceElement& element : _source->elements)
			_needsCheck |= !element.IsRun() && WithoutPrefix(_source->NameOf(element)) == "style";
	}
	return std::move(_edits);
}

void TreeWriter::EditElement(std::uint32_t record, const ElementBase& element)
{
	if (!Record(record).IsRun())
		EditStartTag(record, element);
	if (!EditText(record, element))
		EditChildren(record, element);
}

// Start tags ---------------------------------------------------------------------------------------------------------

/// The namespace that a prefix, given with its colon, is bound to in the scope at hand.
std::string_view TreeWriter::NamespaceOf(std::string_view prefix) const noexcept
{
	const std::string name = "xmlns:" + std::string(prefix.substr(0, prefix.size() - 1));
	for (std::uint32_t at = _scope; at != kNoRecord; at = Record(at).parent)
	{
		const SourceElement& record = Record(at);
		for (std::uint32_t i = 0; i < record.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source->attributes[record.firstAttribute + i];
			if (_source->NameOf(attribute) == name)
				return _source->RawValueOf(attribute);
		}
	}
	return {};
}

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
		if (!prefix.empty() && WithoutPrefix(name) == "href" && NamespaceOf(prefix) == kXlinkNamespace)
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
	if (!loaded.attributes.IsSameObject(element.Attributes()))
	{
		const auto compare = [&](const DataDictionary::Entry& entry)
		{
			const Rule* const rule = FindWritingRule(WrittenAs(static_cast<Number>(entry.key)));
			if (rule == nullptr)
				throw SaveError("An attribute of " + Describe(element, name) + " has no name and cannot be written.");
			if (std::find(changes.begin(), changes.end(), rule) != changes.end())
				return;
			std::string before;
			std::string after;
			const Formatted wasThere = FormatEntry(before, loaded.attributes, *rule, name, {});
			const Formatted isThere = FormatEntry(after, element.Attributes(), *rule, name, {});
			if (wasThere == isThere && before == after)
				return;
			if (rule->number == Number::display)
			{
				// That an icon shows a layer which was not hidden says nothing.
				const bool saysNothing = wasThere == Formatted::absent && after == "inline";
				if (saysNothing ||
					std::find(_request.switched.begin(), _request.switched.end(), &element) != _request.switched.end())
					return;
			}
			changes.push_back(rule);
		};
		for (const DataDictionary::Entry& entry : element.Attributes())
			compare(entry);
		for (const DataDictionary::Entry& entry : loaded.attributes)
			compare(entry);
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
		if (FormatAttribute(points, element, *FindRule("points"), name, {}) == Formatted::impossible)
			name = TagOf(Kind::path);
	}
	else if (ClassKindOf(element) == Kind::circle && !loaded.attributes.IsSameObject(element.Attributes()))
	{
		const bool hasRadii = element.HasAttribute(Number::rx) || element.HasAttribute(Number::ry);
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
	const bool mayHaveChanged = !loaded.attributes.IsSameObject(element.Attributes()) ||
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
	if (const auto forced = _request.forced.find(&element); forced != _request.forced.end())
	{
		for (const ForcedProperty& property : forced->second)
		{
			const Rule* const rule = FindWritingRule(property.number);
			if (std::find(changes.begin(), changes.end(), rule) == changes.end())
				changes.push_back(rule);
		}
	}
	for (const Rule* rule : changes)
		EditAttribute(tag, element, name, *rule, FindForced(element, *rule));
	EditOverrides(tag, element, name, changes);
	tag.Finish(_edits);
}

void TreeWriter::EditAttribute(StartTagEditor& tag, const ElementBase& element, Tag name, const Rule& rule,
							   const ForcedProperty* forced)
{
	std::string text;
	if (FormatAttribute(text, element, rule, name, {}) == Formatted::absent)
		RemoveAttribute(tag, rule, forced);
	else
		SetAttribute(tag, element, name, rule, forced);
}

void TreeWriter::RemoveAttribute(StartTagEditor& tag, const Rule& rule, const ForcedProperty* forced)
{
	for (const std::string& name : NamesOf(tag, rule))
		tag.Remove(name);
	if (complete::IsProperty(rule) && tag.Has("style") &&
		tag.Style().Find(WrittenAs(rule.number)) != StyleEditor::Saying::nothing)
		tag.Style().Remove(rule);
	if (forced != nullptr)
		tag.Style().Set(rule, "unset", forced->isImportant);
}

/// A text must read back as the value that it was made of, unless it was meant to be shorter.
void TreeWriter::CheckReads(const ElementBase& element, Tag name, const Rule& rule, std::string_view text,
							bool isDeclaration) const
{
	const ValueStyle style = StyleFor(isDeclaration);
	const grammar::Source source = isDeclaration ? grammar::Source::style : grammar::Source::attribute;
	std::string exact;
	FormatAttribute(exact, element, rule, name, {});
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
							  const ForcedProperty* forced)
{
	if (_source->isComplete && !rule.tags.Has(name))
	{
		throw SaveError("The attribute \"" + std::string(rule.name) + "\" cannot be written: it does not count on " +
						Describe(element, name) + '.');
	}
	const std::vector<std::string> names = NamesOf(tag, rule);
	const bool isProperty = complete::IsProperty(rule);
	const bool isInStyle =
		isProperty && (forced != nullptr || rule.role == complete::Role::declaration ||
					   (tag.Has("style") && tag.Style().Find(WrittenAs(rule.number)) != StyleEditor::Saying::nothing));
	// What the client wrote stands as it was written while it says what the tree says.
	std::string_view given;
	std::string exact;
	FormatAttribute(exact, element, rule, name, {});
	for (const SourceOverride& entry : _source->overrides)
	{
		const Rule* const known = FindRule(entry.name.View());
		if (ElementOf(entry.element) == &element && known != nullptr &&
			WrittenAs(known->number) == WrittenAs(rule.number) &&
			ReadsAs(rule, name, entry.text.View(), isInStyle ? grammar::Source::style : grammar::Source::attribute,
					exact))
			given = entry.text.View();
	}
	if (isInStyle)
	{
		const std::string text = given.empty() ? Format(element, name, rule, true) : std::string(given);
		CheckReads(element, name, rule, text, true);
		tag.Style().Set(rule, text, forced != nullptr && forced->isImportant);
		// To the plain import the later one counts, so both say the same.
		if (_source->isComplete || names.empty())
			return;
	}
	std::string text = given.empty() ? Format(element, name, rule, false) : std::string(given);
	CheckReads(element, name, rule, text, false);
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
	for (const SourceOverride& entry : _source->overrides)
	{
		if (ElementOf(entry.element) != &element)
			continue;
		const Rule* const rule = FindRule(entry.name.View());
		if (rule == nullptr)
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
			FormatAttribute(now, element, *written, name, {}) == Formatted::text &&
			ReadsAs(*written, name, entry.text.View(), grammar::Source::attribute, now))
			SetAttribute(tag, element, name, *written, nullptr);
	}
}

// Content ------------------------------------------------------------------------------------------------------------

/// Puts other content between the tags of an element.
void TreeWriter::ReplaceContent(std::uint32_t record, const std::string& content)
{
	const SourceElement& at = Record(record);
	if (!at.IsEmptyTag())
		return _edits.Replace(at.contentBegin, at.contentEnd, content);
	const std::string_view text = _source->Text();
	std::size_t slash = at.contentBegin - 2;
	while (IsXmlBlank(text[slash - 1]))
		slash--;
	_edits.Replace(slash, at.contentBegin, '>' + content + "</" + std::string(_source->NameOf(at)) + '>');
}

/// Edits the characters of an element that has some of its own; false when they are as they were.
bool TreeWriter::EditText(std::uint32_t record, const ElementBase& element)
{
	const Kind kind = ClassKindOf(element);
	if (kind == Kind::use)
		return false;
	const String now = OwnTextOf(element);
	if (now == _source->loaded[record].text)
		return false;
	std::string characters;
	AppendCharacters(characters, now.View());
	_needsCheck = true;
	if (Record(record).IsRun())
	{
		_edits.Replace(Record(record).begin, Record(record).end, std::move(characters));
		return true;
	}
	if (element.FirstChild() != nullptr)
		throw SaveError("The text of an element with children cannot be written.");
	ReplaceContent(record, characters);
	return true;
}

/// The children as they are, and which of them stand where they stood.
std::vector<TreeWriter::Child> TreeWriter::ListChildren(std::uint32_t record, const ElementBase& element)
{
	std::vector<Child> children;
	for (HierarchyObject* at = element.FirstChild(); at != nullptr; at = at->NextSibling())
	{
		const ElementBase* const child = AsElement(at);
		if (child == nullptr)
			throw SaveError("An element of another module cannot be written.");
		children.push_back({child, _finder->Find(*child), false});
	}
	std::vector<std::pair<std::uint32_t, bool*>> records;
	for (Child& child : children)
	{
		if (child.record != kNoRecord && Record(child.record).parent == record)
			records.emplace_back(child.record, &child.isKept);
	}
	KeepMost(records);
	return children;
}

void TreeWriter::EditChildren(std::uint32_t record, const ElementBase& element)
{
	// Usually they are the same.
	const HierarchyObject* at = element.FirstChild();
	std::uint32_t number = _firstChild[record];
	while (at != nullptr && number != kNoRecord && _source->loaded[number].element.GetObject() == at)
	{
		at = at->NextSibling();
		number = _nextSibling[number];
	}
	if (at == nullptr && number == kNoRecord)
	{
		number = _firstChild[record];
		for (const HierarchyObject* child = element.FirstChild(); child != nullptr; child = child->NextSibling())
		{
			EditElement(number, *AsElement(const_cast<HierarchyObject*>(child)));
			number = _nextSibling[number];
		}
		return;
	}
	const std::vector<Child> children = ListChildren(record, element);
	const bool isInText = IsInText(element);
	_needsCheck |= isInText;
	std::size_t next = 0;
	for (std::uint32_t child = _firstChild[record]; child != kNoRecord; child = _nextSibling[child])
	{
		while (next < children.size() && !children[next].isKept)
			next++;
		if (next < children.size() && children[next].record == child)
			EditElement(child, *children[next++].element);
		else
			RemoveRecord(child, isInText);
	}
	InsertChildren(record, children, isInText);
}

/// What an element's line begins with, the line break included; empty when it does not begin one.
std::string TreeWriter::LineOf(std::uint32_t record) const
{
	const std::string_view text = _source->Text();
	const std::size_t end = Record(record).begin;
	std::size_t begin = end;
	while (begin > 0 && IsXmlBlank(text[begin - 1]))
		begin--;
	const std::string_view blanks = text.substr(begin, end - begin);
	std::size_t line = blanks.rfind('\n');
	if (line == blanks.npos)
		return {};
	if (line > 0 && blanks[line - 1] == '\r')
		line--;
	return std::string(blanks.substr(line));
}

void TreeWriter::RemoveRecord(std::uint32_t record, bool isInText)
{
	const SourceElement& at = Record(record);
	// The element's line goes with it, or what of a line it has begun.
	const std::size_t line = isInText || at.IsRun() ? 0 : LineOf(record).size();
	_edits.Replace(at.begin - line, at.end, {});
}

/// How new children of an element that has none are laid out.
TreeWriter::Layout TreeWriter::LayoutBelow(std::uint32_t record) const
{
	const std::string_view text = _source->Text();
	std::string line = LineOf(record);
	const std::uint32_t parent = Record(record).parent;
	if (line.empty() && parent == kNoRecord && text.find('\n', Record(record).begin) != text.npos)
		line = text.find("\r\n") == text.npos ? "\n" : "\r\n";
	if (line.empty())
		return {};
	std::string unit = line.find('\t') == line.npos ? "  " : "\t";
	if (parent != kNoRecord)
	{
		const std::string outer = LineOf(parent);
		if (line.size() > outer.size() && !outer.empty() && line.starts_with(outer))
			unit = line.substr(outer.size());
	}
	return {line + unit, unit};
}

/// Says where what is written next will stand.
void TreeWriter::EnterScope(std::uint32_t record)
{
	_scope = record;
	std::uint32_t at = record;
	while (Record(at).parent != kNoRecord && ClassKindOf(*ElementOf(_source->loaded[at].element)) == Kind::unknown)
	{
		at = Record(at).parent;
		_needsCheck = true; // Below a foreign element another namespace may hold.
	}
	_prefix = PrefixOf(_source->NameOf(Record(at)));
}

/// Gives an element that leaves its place the prefixes that are bound around it and not where it goes.
void TreeWriter::DeclarePrefixes(std::uint32_t record)
{
	const SourceElement& moved = Record(record);
	const std::string_view whole = _source->Text().substr(moved.begin, moved.end - moved.begin);
	const auto isAroundScope = [this](const SourceElement& element)
	{
		return _scope != kNoRecord && element.begin <= Record(_scope).begin && Record(_scope).end <= element.end;
	};
	std::vector<std::string_view> known;
	std::string declarations;
	for (std::uint32_t at = record; at != kNoRecord && !isAroundScope(Record(at)); at = Record(at).parent)
	{
		for (std::uint32_t i = 0; i < Record(at).attributeCount; i++)
		{
			const SourceAttribute& attribute = _source->attributes[Record(at).firstAttribute + i];
			const std::string_view name = _source->NameOf(attribute);
			const bool isPrefix = PrefixOf(name) == "xmlns:";
			if ((!isPrefix && name != "xmlns") || std::find(known.begin(), known.end(), name) != known.end())
				continue;
			known.push_back(name);
			if (at == record || (isPrefix && whole.find(std::string(WithoutPrefix(name)) + ':') == whole.npos))
				continue;
			// With its quotes.
			declarations += ' ' + std::string(name) + '=';
			declarations += _source->Text().substr(attribute.valueBegin - 1, attribute.valueSize + 2);
		}
	}
	if (!declarations.empty())
		_edits.Insert(moved.begin + 1 + moved.nameSize, std::move(declarations));
}

std::string TreeWriter::TextOfChild(const Child& child, const Layout& layout, bool isInText)
{
	_needsCheck |= isInText || child.record != kNoRecord;
	std::string text;
	if (child.record == kNoRecord)
	{
		WriteElement(text, *child.element, layout, isInText);
		return text;
	}
	// It comes from elsewhere, with what was edited of it.
	TextEdits outer = std::exchange(_edits, {});
	const std::string prefix = _prefix;
	if (!Record(child.record).IsRun())
		DeclarePrefixes(child.record);
	EditElement(child.record, *child.element);
	TextEdits inner = std::exchange(_edits, std::move(outer));
	_prefix = prefix;
	return inner.Apply(_source->Text(), Record(child.record).begin, Record(child.record).end);
}

/// Writes the children that are new among those that were there.
void TreeWriter::InsertChildren(std::uint32_t record, const std::vector<Child>& children, bool isInText)
{
	const auto isKept = [](const Child& child)
	{
		return child.isKept;
	};
	const auto firstKept = std::find_if(children.begin(), children.end(), isKept);
	if (firstKept == children.end())
	{
		if (!children.empty())
			InsertIntoNothing(record, children, isInText);
		return;
	}
	std::string unit = LayoutBelow(record).unit;
	const auto layoutOf = [&](const Child& neighbour)
	{
		return isInText || Record(neighbour.record).IsRun() ? Layout() : Layout{LineOf(neighbour.record), unit};
	};
	// Before the first that stood there, new ones end their lines; behind one, they begin them.
	if (firstKept != children.begin())
	{
		const Layout layout = layoutOf(*firstKept);
		std::string text;
		for (auto child = children.begin(); child != firstKept; ++child)
		{
			EnterScope(record);
			text += layout.line + TextOfChild(*child, layout, isInText);
		}
		_edits.Insert(Record(firstKept->record).begin - layout.line.size(), std::move(text));
	}
	for (auto kept = firstKept; kept != children.end();)
	{
		const auto next = std::find_if(kept + 1, children.end(), isKept);
		const Layout layout = layoutOf(*kept);
		std::string text;
		for (auto child = kept + 1; child != next; ++child)
		{
			EnterScope(record);
			text += layout.line + TextOfChild(*child, layout, isInText);
		}
		if (!text.empty())
			_edits.Insert(Record(kept->record).end, std::move(text));
		kept = next;
	}
}

/// Writes the children of an element none of whose children stayed.
void TreeWriter::InsertIntoNothing(std::uint32_t record, const std::vector<Child>& children, bool isInText)
{
	const SourceElement& at = Record(record);
	const Layout layout = isInText ? Layout() : LayoutBelow(record);
	std::string content;
	for (const Child& child : children)
	{
		EnterScope(record);
		content += layout.line + TextOfChild(child, layout, isInText);
	}
	const std::string_view old = _source->Text().substr(at.contentBegin, at.contentEnd - at.contentBegin);
	const std::string_view end = std::string_view(layout.line).substr(0, layout.line.size() - layout.unit.size());
	if (at.IsEmptyTag())
		ReplaceContent(record, content + std::string(end));
	else if (old.find('\n') == old.npos)
		_edits.Insert(at.contentEnd, content + std::string(end));
	else
		_edits.Insert(at.contentBegin, std::move(content));
}

} // namespace orvan::svg
