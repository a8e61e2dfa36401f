// SPDX-License-Identifier: MIT
#include "writer/source_recorder.h"

#include "elements/element_base.h"

#include <algorithm>
#include <utility>

namespace orvan::svg
{

std::uint32_t SourceRecorder::PlaceOf(const char* where) const noexcept
{
	return static_cast<std::uint32_t>(where - _text.data());
}

/// The "<" of the end tag that comes behind an element's last child. Nothing but characters, comments, CDATA sections
/// and processing instructions stands before it: the parser has seen to that.
std::uint32_t SourceRecorder::FindEndTag(std::uint32_t from) const noexcept
{
	constexpr std::pair<std::string_view, std::string_view> kBrackets[] = {
		{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};
	std::size_t at = from;
	while ((at = _text.find('<', at)) != _text.npos)
	{
		const std::string_view rest = _text.substr(at);
		const auto* const found = std::find_if(std::begin(kBrackets), std::end(kBrackets),
											   [&](const auto& bracket) { return rest.starts_with(bracket.first); });
		if (found == std::end(kBrackets))
			break;
		const std::size_t close = _text.find(found->second, at + found->first.size());
		if (close == _text.npos)
			break;
		at = close + found->second.size();
	}
	return static_cast<std::uint32_t>(std::min(at, _text.size()));
}

Result<void> SourceRecorder::Collect(const XmlNode& root) noexcept
{
	if (_text.size() >= kNoRecord)
		return IllegalArgumentError("A text of @ bytes is too large for its source to be kept.", _text.size());
	ORVAN_TRY(CollectElement(root, kNoRecord));
	return _source.loaded.Resize(_source.elements.GetCount());
}

/// Takes down an element and all below; returns its end. The recursion is as deep as the elements are nested, which
/// `XmlNamespaces` bounds.
Result<std::uint32_t> SourceRecorder::CollectElement(const XmlNode& node, std::uint32_t parent) noexcept
{
	const auto number = static_cast<std::uint32_t>(_source.elements.GetCount());
	SourceElement element{};
	element.begin = PlaceOf(node.name()) - 1;
	element.nameSize = static_cast<std::uint32_t>(node.name_size());
	element.parent = parent;
	element.firstAttribute = static_cast<std::uint32_t>(_source.attributes.GetCount());
	std::size_t at = element.begin + 1 + element.nameSize;
	for (const XmlAttribute* attribute = node.first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		const SourceAttribute place{PlaceOf(attribute->name()), static_cast<std::uint32_t>(attribute->name_size()),
									PlaceOf(attribute->value()), static_cast<std::uint32_t>(attribute->value_size())};
		ORVAN_TRY(_source.attributes.Append(place));
		at = place.valueBegin + place.valueSize + 1;
	}
	element.attributeCount = static_cast<std::uint32_t>(_source.attributes.GetCount()) - element.firstAttribute;
	const std::size_t close = std::min(_text.find('>', at), _text.size() - 1);
	const bool isEmptyTag = _text[close - 1] == '/';
	element.contentBegin = static_cast<std::uint32_t>(close) + 1;
	element.contentEnd = element.end = element.contentBegin;
	ORVAN_TRY(_source.elements.Append(element));
	if (isEmptyTag)
		return element.end;
	std::uint32_t reached = element.contentBegin;
	for (const XmlNode* child = node.first_node(); child != nullptr; child = child->next_sibling())
	{
		if (child->type() == xml::node_element)
			reached = ORVAN_TRY(CollectElement(*child, number));
	}
	SourceElement& record = _source.elements[number];
	record.contentEnd = FindEndTag(reached);
	record.end = static_cast<std::uint32_t>(std::min(_text.find('>', record.contentEnd), _text.size() - 1)) + 1;
	return record.end;
}

void SourceRecorder::NoteElement(const char* name, const SVGElementRef& element) noexcept
{
	const std::uint32_t begin = PlaceOf(name) - 1;
	while (_next < _source.elements.GetCount() && _source.elements[_next].begin < begin)
		_next++;
	if (_next < _source.elements.GetCount() && _source.elements[_next].begin == begin)
		_source.loaded[_next++].element = element;
}

Result<void> SourceRecorder::NoteRun(const char* from, const char* to, const SVGElementRef& run) noexcept
{
	return _runs.Append({PlaceOf(from), PlaceOf(to), run});
}

/// Puts the runs among the elements, in document order.
Result<void> SourceRecorder::MergeRuns() noexcept
{
	const std::size_t count = _source.elements.GetCount();
	BaseArray<SourceElement> elements;
	BaseArray<LoadedElement> loaded;
	BaseArray<std::uint32_t> numbers; // The new ones of the elements.
	ORVAN_TRY(elements.Reserve(count + _runs.GetCount()));
	ORVAN_TRY(loaded.Reserve(count + _runs.GetCount()));
	ORVAN_TRY(numbers.Reserve(count));
	std::size_t run = 0;
	std::uint32_t around = kNoRecord; // The innermost element that is open.
	for (std::size_t i = 0; i <= count; i++)
	{
		for (; run < _runs.GetCount() && (i == count || _runs[run].begin < _source.elements[i].begin); run++)
		{
			Run& at = _runs[run];
			while (elements[around].end <= at.begin)
				around = elements[around].parent;
			IgnoreResult(elements.Append({at.begin, at.begin, at.end, at.end, 0, around, 0, 0}));
			LoadedElement element;
			element.element = std::move(at.element);
			IgnoreResult(loaded.Append(std::move(element)));
		}
		if (i == count)
			break;
		SourceElement element = _source.elements[i];
		if (element.parent != kNoRecord)
			element.parent = numbers[element.parent];
		around = static_cast<std::uint32_t>(elements.GetCount());
		IgnoreResult(numbers.Append(around));
		IgnoreResult(elements.Append(element));
		IgnoreResult(loaded.Append(std::move(_source.loaded[i])));
	}
	_source.elements = std::move(elements);
	_source.loaded = std::move(loaded);
	return {};
}

Result<void> SourceRecorder::Finish() noexcept
{
	if (!_runs.IsEmpty())
		ORVAN_TRY(MergeRuns());
	for (LoadedElement& loaded : _source.loaded)
	{
		if (!loaded.element)
			continue;
		const auto& element = static_cast<const ElementBase&>(
			static_cast<const HierarchyObject&>(*loaded.element.GetObject())); // The import makes no others.
		loaded.attributes = element.Attributes();
		loaded.id = element.GetId();
		loaded.text = OwnTextOf(element);
		loaded.transform = HashTransform(element);
		loaded.path = HashPath(element);
	}
	_source.elements.Compact();
	_source.attributes.Compact();
	return {};
}

} // namespace orvan::svg
