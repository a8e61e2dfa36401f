// SPDX-License-Identifier: MIT
#include "writer/start_tag_editor.h"

#include "importer/xml/xml_guard.h"
#include "writer/xml_text.h"

#include <algorithm>

namespace orvan::svg
{
namespace
{

constexpr std::string_view kStyle = "style";

} // namespace

StartTagEditor::StartTagEditor(const DocumentSource& source, const SourceElement& element)
	: _source(source), _element(element)
{
	_places.reserve(element.attributeCount);
	for (std::uint32_t i = 0; i < element.attributeCount; i++)
		_places.push_back({&source.attributes[element.firstAttribute + i], {}});
}

const StartTagEditor::Place* StartTagEditor::FindPlace(std::string_view name) const noexcept
{
	const auto found =
		std::find_if(_places.rbegin(), _places.rend(),
					 [&](const Place& place) { return !place.isRemoved && _source.NameOf(*place.attribute) == name; });
	return found != _places.rend() ? &*found : nullptr;
}

/// The attribute to write to; what stands before it under the same name goes.
StartTagEditor::Place* StartTagEditor::TakePlace(std::string_view name) noexcept
{
	const Place* const last = FindPlace(name);
	Place* taken = nullptr;
	for (Place& place : _places)
	{
		if (&place == last)
			taken = &place;
		else if (_source.NameOf(*place.attribute) == name)
			place.isRemoved = true;
	}
	return taken;
}

std::vector<std::string_view> StartTagEditor::GetNames() const
{
	std::vector<std::string_view> names;
	for (const Place& place : _places)
	{
		if (!place.isRemoved)
			names.push_back(_source.NameOf(*place.attribute));
	}
	return names;
}

char StartTagEditor::QuoteOf(const Place& place) const noexcept
{
	return _source.Text()[place.attribute->valueBegin - 1];
}

std::vector<std::string_view> StartTagEditor::GetChangedNames() const
{
	std::vector<std::string_view> names;
	for (const Place& place : _places)
	{
		if (place.isRemoved || place.value)
			names.push_back(_source.NameOf(*place.attribute));
	}
	for (const std::string_view added : _added)
		names.push_back(added.substr(0, added.find('=')));
	return names;
}

void StartTagEditor::Set(std::string_view name, std::string_view value)
{
	if (Place* const place = TakePlace(name))
	{
		std::string written;
		AppendAttributeValue(written, value, QuoteOf(*place));
		place->value = std::move(written);
		return;
	}
	std::string added(name);
	added += "=\"";
	AppendAttributeValue(added, value, '"');
	added += '"';
	_added.push_back(std::move(added));
}

void StartTagEditor::Remove(std::string_view name)
{
	if (Place* const place = TakePlace(name))
		place->isRemoved = true;
}

StyleEditor& StartTagEditor::Style()
{
	if (!_style)
	{
		if (const Place* const place = FindPlace(kStyle))
		{
			const std::string_view raw = _source.RawValueOf(*place->attribute);
			_styleBefore.resize(raw.size());
			char* const end = DecodeReferences(raw, _styleBefore.data());
			_styleBefore.resize(static_cast<std::size_t>(end - _styleBefore.data()));
		}
		_style.emplace(_styleBefore);
	}
	return *_style;
}

void StartTagEditor::Rename(std::string_view localName)
{
	_tag = localName;
}

void StartTagEditor::FinishStyle()
{
	if (!_style || _style->GetText() == _styleBefore)
		return;
	if (_style->IsBlank())
		return Remove(kStyle);
	Place* const place = TakePlace(kStyle);
	std::string written = place != nullptr ? "" : "style=\"";
	AppendStyleValue(written, _style->GetText(), place != nullptr ? QuoteOf(*place) : '"');
	if (place != nullptr)
		place->value = std::move(written);
	else
		_added.push_back(written + '"');
}

/// Where the blank before an attribute begins.
std::size_t StartTagEditor::BeginOf(std::size_t number) const noexcept
{
	std::size_t begin = _places[number].attribute->nameBegin;
	while (IsXmlBlank(_source.Text()[begin - 1]))
		begin--;
	return begin;
}

void StartTagEditor::FinishAdditions(TextEdits& edits) const
{
	const std::string_view text = _source.Text();
	std::size_t at = _element.begin + 1 + _element.nameSize;
	std::string_view blank = " ";
	if (!_places.empty())
	{
		const std::size_t last = _places.size() - 1;
		const SourceAttribute& attribute = *_places[last].attribute;
		const std::size_t begin = BeginOf(last);
		const std::string_view before = text.substr(begin, attribute.nameBegin - begin);
		at = attribute.valueBegin + attribute.valueSize + 1;
		// Where each attribute has a line of its own, a new one gets one too; before the last one, so that no other
		// line changes.
		if (before.find('\n') != before.npos && !_places[last].isRemoved)
		{
			blank = before;
			at = begin;
		}
	}
	std::string added;
	for (const std::string& attribute : _added)
	{
		added += blank;
		added += attribute;
	}
	edits.Insert(at, std::move(added));
}

void StartTagEditor::Finish(TextEdits& edits)
{
	FinishStyle();
	if (!_tag.empty())
	{
		const std::size_t prefix = PrefixOf(_source.NameOf(_element)).size();
		const auto rename = [&](std::size_t nameBegin)
		{
			edits.Replace(nameBegin + prefix, nameBegin + _element.nameSize, _tag);
		};
		rename(_element.begin + 1);
		if (!_element.IsEmptyTag())
			rename(_element.contentEnd + 2);
	}
	for (std::size_t i = 0; i < _places.size(); i++)
	{
		const Place& place = _places[i];
		const SourceAttribute& attribute = *place.attribute;
		const std::size_t valueEnd = attribute.valueBegin + attribute.valueSize;
		// The parser takes attributes without a blank between them, too: then that before the first one stays.
		const bool isNextAtOnce = i + 1 < _places.size() && _places[i + 1].attribute->nameBegin == valueEnd + 1;
		if (place.isRemoved)
			edits.Replace(isNextAtOnce ? attribute.nameBegin : BeginOf(i), valueEnd + 1, {});
		else if (place.value)
			edits.Replace(attribute.valueBegin, valueEnd, *place.value);
	}
	if (!_added.empty())
		FinishAdditions(edits);
}

} // namespace orvan::svg
