// SPDX-License-Identifier: MIT
/// What changes the content of elements in a source: which children stay, which go, and where new ones come.
#include "writer/tree_writer.h"

#include "importer/xml/xml_tree.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <utility>

namespace orvan::svg
{

using Kind = SVGImportElementKind;

namespace
{

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
	// The line breaks of a description belong to its text.
	const bool isDescription = ClassKindOf(element) != Kind::use && !OwnTextOf(element).IsEmpty();
	const bool isInText = IsInText(element) || isDescription;
	_needsCheck |= isInText;
	_areSheetsSure = _areSheetsSure && _request.asksSheets && !Sheets().LookAround();
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
	for (std::uint32_t below = record; below < _source->elements.GetCount() && Record(below).begin < at.end; below++)
		_areSheetsSure =
			_areSheetsSure && (Record(below).IsRun() || WithoutPrefix(_source->NameOf(Record(below))) != "style");
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
