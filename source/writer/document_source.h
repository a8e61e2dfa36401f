// SPDX-License-Identifier: MIT
/// The text that a document was loaded from, with the place of every tag and attribute, and the elements as they were
/// when they came out of it. Whoever saves compares the two and leaves alone what is the same.
///
/// Nothing of it exists unless the document was told to keep its source.
#pragma once

#include "importer/text/source_text.h"
#include "svg_elements.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace orvan::svg
{

class ElementBase;

inline constexpr std::uint32_t kNoRecord = ~std::uint32_t{0};

/// Where an attribute stands, as offsets in the text that was parsed. The quotes are around the value.
struct SourceAttribute
{
	std::uint32_t nameBegin;
	std::uint32_t nameSize;
	std::uint32_t valueBegin;
	std::uint32_t valueSize;
};

/// Where an element stands, or a run of characters, which has no tag. Offsets in the text that was parsed.
struct SourceElement
{
	std::uint32_t begin;        ///< The "<" of its tag.
	std::uint32_t contentBegin; ///< Behind the ">" of its tag.
	std::uint32_t contentEnd;   ///< The "<" of its end tag; of an empty element its end.
	std::uint32_t end;          ///< Behind everything.
	std::uint32_t nameSize;     ///< Of the tag, which begins behind the "<"; 0 for a run of characters.
	std::uint32_t parent;       ///< The number of the element around it; `kNoRecord` for the root.
	std::uint32_t firstAttribute;
	std::uint32_t attributeCount;

	bool IsRun() const noexcept
	{
		return nameSize == 0;
	}

	/// Written as one tag, like "<g/>".
	bool IsEmptyTag() const noexcept
	{
		return !IsRun() && contentBegin == end;
	}
};

/// An element as it was loaded. Its attributes are shared with it until one of them is changed, and of what takes more
/// room there is a hash.
struct LoadedElement
{
	SVGElementRef element; ///< Null for what the import passed over. Kept alive, so that its address stays its own.
	DataDictionary attributes;
	String id;
	String text; ///< The characters of a run, a text or a description; the link of a use.
	std::uint64_t transform = 0;
	std::uint64_t path = 0;
};

/// What changes of an element that do not stand in its dictionary are noticed by.
std::uint64_t HashTransform(const ElementBase& element) noexcept;
std::uint64_t HashPath(const ElementBase& element) noexcept;
/// The text that `LoadedElement::text` is about. Of a text whose characters are runs it is empty.
String OwnTextOf(const ElementBase& element) noexcept;

/// An attribute that a client has set as text.
struct SourceOverride
{
	SVGElementRef element;
	String name;
	String text;
	bool isRemoved = false; ///< Of those alone that SVG does not know.
};

struct DocumentSource
{
	/// The bytes of the file where they are not the text: packed, or in another encoding. Without a terminating zero.
	BaseArray<char> file;
	SourceText text;
	BaseArray<SourceElement> elements; ///< In document order, the root first.
	BaseArray<SourceAttribute> attributes;
	BaseArray<LoadedElement> loaded; ///< Number for number with `elements`.
	BaseArray<SourceOverride> overrides;
	bool isComplete = false; ///< Read by the complete import.

	/// The text that was parsed: in UTF-8, with the entities of the document type replaced.
	std::string_view Text() const noexcept
	{
		return {text.text.begin(), text.text.GetCount() - 1};
	}

	std::string_view NameOf(const SourceElement& element) const noexcept
	{
		return Text().substr(element.begin + 1, element.nameSize);
	}

	std::string_view NameOf(const SourceAttribute& attribute) const noexcept
	{
		return Text().substr(attribute.nameBegin, attribute.nameSize);
	}

	/// As written, with its references.
	std::string_view RawValueOf(const SourceAttribute& attribute) const noexcept
	{
		return Text().substr(attribute.valueBegin, attribute.valueSize);
	}

	/// The bytes of the file as they were loaded.
	std::string_view FileBytes() const noexcept;

	/// The namespace that a prefix, given with its colon, is bound to on an element; for no prefix the default one.
	/// Empty when there is none. `record` may be `kNoRecord`.
	std::string_view NamespaceOf(std::uint32_t record, std::string_view prefix) const noexcept;

	/// Whether an element is of another namespace than SVG's, so that nothing but its id counts.
	bool IsForeign(std::uint32_t record) const noexcept;
};

/// Finds the records of elements. Quickest when they are asked for in the order of the text.
class RecordFinder
{
public:
	explicit RecordFinder(const DocumentSource& source) noexcept : _source(source)
	{
	}

	/// The number of an element's record; `kNoRecord` for one that did not come out of this text. May throw
	/// std::bad_alloc.
	std::uint32_t Find(const ElementBase& element);

private:
	bool IsAt(std::uint32_t number, const ElementBase& element) const noexcept;

	const DocumentSource& _source;
	std::uint32_t _expected = 0;
	std::unordered_map<const void*, std::uint32_t> _numbers; ///< Made when an element is not where it is expected.
};

struct ReleaseDocumentSource
{
	void operator()(DocumentSource* source) const noexcept;
};

using DocumentSourcePointer = std::unique_ptr<DocumentSource, ReleaseDocumentSource>;

Result<DocumentSourcePointer> MakeDocumentSource() noexcept;

} // namespace orvan::svg
