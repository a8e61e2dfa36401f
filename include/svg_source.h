// SPDX-License-Identifier: MIT
/// Saving documents, values as text, and what stands in the text of a file.
///
/// Documents and icons implement `SVGDocumentSourceInterface` beside `SVGDocumentInterface`. A document that keeps its
/// source changes in the file what was changed in the tree and leaves every other byte as it is:
///
///     SVGImportOptions options;
///     options.isComplete = true;
///     options.keepsSource = true;
///     ORVAN_TRY(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
///     ORVAN_TRY(document->Init(url));
///     const auto source = Cast<SVGDocumentSourceInterface>(document);
///     for (const SVGElementRef& element : ORVAN_TRY(source->Select(ORVAN_TRY(String::Create("rect.wall")))))
///         ORVAN_TRY(element->SetFill(red));
///     ORVAN_TRY(source->Save(url, {}));
#pragma once

#include "svg_base.h"
#include "svg_import.h"

#include <cstdint>

namespace orvan
{

/// How a document is written.
enum class SVGSaveMode : std::int32_t
{
	/// Where the document keeps its source, just what was edited changes there; otherwise it is written whole.
	edit = 0,
	/// The document is written whole, from its tree. What is no part of the tree goes: comments, other documents'
	/// elements and attributes, entities.
	rewrite = 1,
};

struct SVGSaveOptions
{
	/// Digits behind the decimal point for "all that it takes to read the same number again".
	static constexpr std::int32_t kExact = -1;

	SVGSaveMode mode = SVGSaveMode::edit;
	/// What a document that is written whole is indented with: this many blanks a level, or a tab for -1. New elements
	/// of an edited file stand as their neighbours do.
	std::int32_t indentation = 2;
	/// How many digits numbers that are written may have behind the decimal point, 0 to 15, or `kExact`. With fewer the
	/// file no longer loads to the very tree that was saved.
	std::int32_t precision = kExact;
};

/// A value that `Repair` has replaced.
struct SVGRepair
{
	std::int64_t line = 0; ///< Of the value in the text as it was loaded, from 1.
	std::int64_t column = 0;
	String elementTag;
	String elementId;
	String attribute; ///< The name of the attribute or property.
	String before;
	String after; ///< Empty where the attribute or declaration was taken out: a browser reads nothing there.
};

/// One of the values of an attribute that takes keywords.
struct SVGEnumerator
{
	std::int32_t number = 0; ///< As a dictionary holds it.
	String name;             ///< The keyword.
};

/// The text of a document, and its values as text.
///
/// `SetAttributeText`, `RemoveAttributeText` and `Repair` must not overlap any other use of the document or its tree;
/// nothing may change the tree while the others run.
class SVGDocumentSourceInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdocumentsource";
	static constexpr const char* kName = "orvan.SVGDocumentSourceInterface";
	static constexpr int kSlotCount = 17;

	/// Saves the document under a `file:` URL, as `Url::Replace` does it: the old file stays until the new one is
	/// complete. A name that ends in ".svgz" packs the file, one that ends in ".svg" does not; under any other name the
	/// file is packed if the source was.
	///
	/// Fails when what would be written could not be loaded again to the same tree, and says why: a number that is not
	/// finite, a text with characters that XML has no way to write, an attribute on an element where it does not count,
	/// a content that was refused when it was loaded. Fails with an I/O error when the file cannot be written. In all
	/// cases the old file is as it was.
	///
	/// A document or icon that follows the file does not reload what it has saved itself.
	ORVAN_METHOD(1, Result<void>, Save, (const Url& url, const SVGSaveOptions& options), url, options)
	/// What `Save` would write, packed if the source was. Fails likewise.
	ORVAN_METHOD(2, Result<BaseArray<char>>, SaveToMemory, (const SVGSaveOptions& options), options)

	/// True when the document has the text that it was loaded from: the import option `keepsSource` was set, and the
	/// content was not refused.
	ORVAN_METHOD(3, bool, HasSource, ())
	/// The tag of an element as it is written, with its prefix; of one that is not in the source, as it would be.
	ORVAN_METHOD(4, Result<String>, GetTag, (const SVGElementRef& element), element)
	/// The names of an element's attributes as they are written, in their order, known or not. Empty for an element
	/// that is not in the source.
	ORVAN_METHOD(5, Result<BaseArray<String>>, GetAttributeNames, (const SVGElementRef& element), element)
	/// An attribute's value as it is written, with its references, before any edit. Not found when there is none.
	ORVAN_METHOD(6, Result<String>, GetRawAttribute, (const SVGElementRef& element, const String& name), element, name)

	/// The value that an element has for the attribute or property of this name, as text. For names of SVG that is what
	/// the tree says, in the shortest form that reads back the same; for any other, what the source says or what was
	/// set. Not found when the element says nothing.
	ORVAN_METHOD(7, Result<String>, GetAttributeText, (const SVGElementRef& element, const String& name), element, name)
	/// Sets an attribute from its text, as the complete import reads it. A name that is unknown to SVG is set in the
	/// source alone, and is saved as it is. Fails with the illegal-argument error for a text that is no value of the
	/// attribute, for an attribute that does not count on the element, and for an unknown one without a source. Saved
	/// as written, as long as the value is not changed.
	ORVAN_METHOD(8, Result<void>, SetAttributeText,
				 (const SVGElementRef& element, const String& name, const String& text), element, name, text)
	/// Takes an attribute away; does nothing when there is none. Fails for want of memory only.
	ORVAN_METHOD(9, Result<void>, RemoveAttributeText, (const SVGElementRef& element, const String& name), element,
				 name)

	/// The shortest text that the complete import reads as this value of an attribute on elements of this kind. The
	/// value is of the type that `SVGImportAttribute` names; where it names none, id and links are a String, transforms
	/// a `Matrix2d`, paths and points an array of `SVGPathCommand`. Fails with the illegal-argument error for a value
	/// of another type, or one that has no text: a number that is not finite, a keyword that there is not.
	ORVAN_METHOD(10, Result<String>, FormatValue,
				 (SVGImportElementKind kind, SVGImportAttribute attribute, const Data& value), kind, attribute, value)
	/// The value that a text stands for, likewise. Fails with the illegal-argument error when it is none. The empty
	/// `Data` for a text that says nothing, such as "auto".
	ORVAN_METHOD(11, Result<Data>, ParseValue,
				 (SVGImportElementKind kind, SVGImportAttribute attribute, const String& text), kind, attribute, text)

	/// The elements that a list of CSS selectors finds, in document order: "#door", "g > path.wall[fill]". Attributes
	/// are those of the source where there is one, otherwise those of the tree. Fails with the illegal-argument error
	/// for a text that is no list of selectors.
	ORVAN_METHOD(12, Result<BaseArray<SVGElementRef>>, Select, (const String& selectors), selectors)

	/// Rewrites the values in the source that the plain import refuses, each to what the complete import reads there,
	/// in a form that the plain one takes; what neither reads is taken out. Everything else stays. For a document that
	/// keeps its source, before any edit: loads it again afterwards. The result tells what was changed. Fails with the
	/// illegal-state error without a source, and when something was edited.
	ORVAN_METHOD(13, Result<BaseArray<SVGRepair>>, Repair, ())

	/// The text that a document was loaded from, in UTF-8, before any edit: for showing places and differences. Empty
	/// without a source.
	ORVAN_METHOD(14, Result<String>, GetSourceText, ())

	/// The tag that elements of a kind are written with when nothing else is known: "linearGradient", "path". Fails
	/// with the illegal-argument error for kinds without a tag: what is unknown, and runs of characters.
	ORVAN_METHOD(15, Result<String>, GetKindName, (SVGImportElementKind kind), kind)
	/// The kind of elements that the complete import makes of a tag, without its prefix: "polygon" is a path. Not found
	/// for other tags.
	ORVAN_METHOD(16, Result<SVGImportElementKind>, FindKind, (const String& tag), tag)
	/// The enumerators that an attribute has on elements of a kind, by their numbers, ascending; empty for attributes
	/// that hold something else. The names are those that `FormatValue` writes and `ParseValue` reads.
	ORVAN_METHOD(17, Result<BaseArray<SVGEnumerator>>, GetEnumerators,
				 (SVGImportElementKind kind, SVGImportAttribute attribute), kind, attribute)
};
using SVGDocumentSourceRef = Ref<SVGDocumentSourceInterface>;

ORVAN_DATA_TYPE(SVGDocumentSourceRef, "orvan::SVGDocumentSourceRef", "orvan::SVGDocumentSourceRef");

} // namespace orvan
