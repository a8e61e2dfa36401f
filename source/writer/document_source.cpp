// SPDX-License-Identifier: MIT
#include "writer/document_source.h"

#include "elements/complete_classes.h"
#include "elements/element_classes.h"
#include "importer/xml/xml_tree.h"
#include "writer/xml_text.h"

#include <new>

namespace orvan::svg
{

std::uint64_t HashTransform(const ElementBase& element) noexcept
{
	const Matrix2d local = element.GetLocalTransform();
	return HashBytes({reinterpret_cast<const char*>(&local), sizeof local});
}

std::uint64_t HashPath(const ElementBase& element) noexcept
{
	return ClassKindOf(element) == SVGImportElementKind::path ? static_cast<const PathElement&>(element).HashOfPath()
															  : 0;
}

String OwnTextOf(const ElementBase& element) noexcept
{
	switch (ClassKindOf(element))
	{
	case SVGImportElementKind::text:
		return element.FirstChild() == nullptr ? static_cast<const TextElement&>(element).GetText() : String();
	case SVGImportElementKind::use:
		return static_cast<const UseElement&>(element).GetLink();
	case SVGImportElementKind::textRun:
		return static_cast<const TextRunElement&>(element).GetText();
	default:
		break;
	}
	const auto description = Borrowed<SVGDescriptionInterface>(SVGElementRef::From(const_cast<ElementBase*>(&element)));
	return description ? description->GetText() : String();
}

bool RecordFinder::IsAt(std::uint32_t number, const ElementBase& element) const noexcept
{
	return number < _source.loaded.GetCount() &&
		   _source.loaded[number].element.GetObject() == static_cast<const ObjectBase*>(&element);
}

std::uint32_t RecordFinder::Find(const ElementBase& element)
{
	// What the import passed over has no elements.
	while (_expected < _source.loaded.GetCount() && !_source.loaded[_expected].element)
		_expected++;
	if (IsAt(_expected, element))
		return _expected++;
	if (_numbers.empty())
	{
		for (std::uint32_t number = 0; number < _source.loaded.GetCount(); number++)
		{
			if (_source.loaded[number].element)
				_numbers.emplace(_source.loaded[number].element.GetObject(), number);
		}
	}
	const auto found = _numbers.find(static_cast<const ObjectBase*>(&element));
	if (found == _numbers.end())
		return kNoRecord;
	_expected = found->second + 1;
	return found->second;
}

std::string_view DocumentSource::FileBytes() const noexcept
{
	return file.IsEmpty() ? text.ForPlaces() : std::string_view(file.begin(), file.GetCount());
}

std::string_view DocumentSource::NamespaceOf(std::uint32_t record, std::string_view prefix) const noexcept
{
	constexpr std::string_view kDeclaration = "xmlns";
	for (; record != kNoRecord; record = elements[record].parent)
	{
		const SourceElement& element = elements[record];
		for (std::uint32_t i = 0; i < element.attributeCount; i++)
		{
			const SourceAttribute& attribute = attributes[element.firstAttribute + i];
			const std::string_view name = NameOf(attribute);
			const bool isBound = prefix.empty() ? name == kDeclaration
												: PrefixOf(name) == "xmlns:" &&
													  WithoutPrefix(name) == prefix.substr(0, prefix.size() - 1);
			if (isBound)
				return RawValueOf(attribute);
		}
	}
	return {};
}

bool DocumentSource::IsForeign(std::uint32_t record) const noexcept
{
	const std::string_view prefix = PrefixOf(NameOf(elements[record]));
	const std::string_view space = NamespaceOf(record, prefix);
	return space != kSvgNamespace && (!prefix.empty() || !space.empty());
}

void ReleaseDocumentSource::operator()(DocumentSource* source) const noexcept
{
	std::destroy_at(source);
	Host().free(source);
}

Result<DocumentSourcePointer> MakeDocumentSource() noexcept
{
	void* const memory = Host().allocate(sizeof(DocumentSource));
	if (memory == nullptr)
		return OutOfMemoryError();
	return DocumentSourcePointer(new (memory) DocumentSource);
}

} // namespace orvan::svg
