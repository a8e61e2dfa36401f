// SPDX-License-Identifier: MIT
/// From a tree to a text: what was edited of one that was loaded, or all of one.
#pragma once

#include "svg_source.h"
#include "writer/element_text.h"
#include "writer/saved_attributes.h"
#include "writer/source_sheets.h"
#include "writer/start_tag_editor.h"

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvan::svg
{

using ForcedProperties = std::unordered_map<const ElementBase*, std::vector<ForcedProperty>>;

/// What is to be written, and how.
struct WriteRequest
{
	const ElementBase& root;
	const DocumentSource* source; ///< Null when there is none.
	const SVGSaveOptions& options;
	const SavedAttributes& attributes;
	const ForcedProperties& forced;
	std::string_view clientSheet = {}; ///< The client's style sheet, which counted when the document was loaded.
	/// Where style sheets say something about what was edited, it is written with the weight that wins over them.
	/// Otherwise the result has to be loaded to see.
	bool asksSheets = false;
};

/// The one of a rule's property; null when there is none.
const ForcedProperty* FindForced(std::span<const ForcedProperty> forced, const complete::Rule& rule) noexcept;

/// Writes a tree. Lives for one attempt. Everything may throw a `SaveError` and std::bad_alloc.
class TreeWriter
{
public:
	explicit TreeWriter(const WriteRequest& request);

	/// The edits of the source that make it say what the tree does. Needs a source.
	TextEdits MakeEdits();

	/// The whole document, in UTF-8.
	std::string WriteWhole();

	/// Whether what was written reads back the same is only known when it is read.
	bool NeedsCheck() const noexcept
	{
		return _needsCheck;
	}

	/// Whether an element differs from its source, if only in what sheets say of it.
	bool HasChanges() const noexcept
	{
		return _hasChanges;
	}

	/// Whether the sheets were asked, and their answers hold for what was edited, too.
	bool AreSheetsSure() const noexcept
	{
		return _areSheetsSure;
	}

private:
	/// How the lines of new elements begin.
	struct Layout
	{
		std::string line; ///< The line break, if there are any, and what the element's line begins with.
		std::string unit; ///< What a level more adds to that.
	};

	/// A child as it is now, and its record if it comes out of the source.
	struct Child
	{
		const ElementBase* element;
		std::uint32_t record;
		bool isKept; ///< It stands where it stood among its siblings.
	};

	const SourceElement& Record(std::uint32_t number) const noexcept;

	// Editing.
	void EditElement(std::uint32_t record, const ElementBase& element);
	void EditStartTag(std::uint32_t record, const ElementBase& element);
	bool EditText(std::uint32_t record, const ElementBase& element);
	void EditChildren(std::uint32_t record, const ElementBase& element);
	void EditAttribute(StartTagEditor& tag, const ElementBase& element, complete::Tag name, const complete::Rule& rule,
					   const ForcedProperty* forced);
	void SetAttribute(StartTagEditor& tag, const ElementBase& element, complete::Tag name, const complete::Rule& rule,
					  const ForcedProperty* forced, std::string_view exact);
	void RemoveAttribute(StartTagEditor& tag, const complete::Rule& rule, const ForcedProperty* forced);
	std::vector<const complete::Rule*> ListChanges(std::uint32_t record, const ElementBase& element,
												   complete::Tag name) const;
	std::string_view ChooseTag(std::uint32_t record, const ElementBase& element, complete::Tag& name) const;
	std::vector<std::string> NamesOf(const StartTagEditor& tag, const complete::Rule& rule) const;
	std::string LinkName() const;
	void EditOverrides(StartTagEditor& tag, const ElementBase& element, complete::Tag name,
					   const std::vector<const complete::Rule*>& changes);
	void CheckReads(const ElementBase& element, complete::Tag name, const complete::Rule& rule, std::string_view text,
					bool isDeclaration, std::string_view exact) const;
	void ReplaceContent(std::uint32_t record, const std::string& content);
	std::vector<Child> ListChildren(std::uint32_t record, const ElementBase& element);
	void RemoveRecord(std::uint32_t record, bool isInText);
	void InsertChildren(std::uint32_t record, const std::vector<Child>& children, bool isInText);
	void InsertIntoNothing(std::uint32_t record, const std::vector<Child>& children, bool isInText);
	void EnterScope(std::uint32_t record);
	void DeclarePrefixes(std::uint32_t record);
	std::string TextOfChild(const Child& child, const Layout& layout, bool isInText);
	std::string LineOf(std::uint32_t record) const;
	Layout LayoutBelow(std::uint32_t record) const;

	// Writing.
	void WriteElement(std::string& text, const ElementBase& element, const Layout& layout, bool isInText);
	void WriteAttributes(std::string& text, const ElementBase& element, complete::Tag name);
	void WriteUnknownAttributes(std::string& text, const ElementBase& element) const;
	void WriteContent(std::string& text, const ElementBase& element, std::string_view tag, const Layout& layout,
					  bool isInText);

	const DataDictionary& AttributesOf(const ElementBase& element) const noexcept
	{
		return _request.attributes.Of(element);
	}

	std::string Format(const ElementBase& element, complete::Tag name, const complete::Rule& rule,
					   bool isDeclaration) const;
	std::span<const ForcedProperty> ForcedOn(const ElementBase& element) const noexcept;
	std::vector<ForcedProperty> ForcedOnNew(const ElementBase& element, complete::Tag name);
	std::optional<ForcedProperty> ForceAgainstSheets(std::uint32_t record, complete::Tag name,
													 const complete::Rule& rule);
	bool ReachesBelow(const ElementBase& element, const complete::Rule& rule) noexcept;
	void AddTied(const StartTagEditor& tag, std::uint32_t record, const ElementBase& element, complete::Tag name,
				 std::vector<const complete::Rule*>& changes);
	static void AddAlsoSet(const StartTagEditor& tag, const complete::Rule& rule,
						   std::vector<const complete::Rule*>& changes);
	bool GetsBox(std::uint32_t record, const ElementBase& element, complete::Tag name,
				 const std::vector<const complete::Rule*>& changes);
	static void AddWithBox(std::vector<const complete::Rule*>& changes);
	SourceSheets& Sheets();
	ValueStyle StyleFor(bool isDeclaration) const noexcept;

	const WriteRequest& _request;
	const DocumentSource* _source;
	std::vector<std::uint32_t> _firstChild; ///< By record; `kNoRecord` for none.
	std::vector<std::uint32_t> _nextSibling;
	std::optional<RecordFinder> _finder;
	TextEdits _edits;
	std::string _prefix;                 ///< Of new elements' tags.
	std::optional<SourceSheets> _sheets; ///< Made when something was edited.
	std::optional<bool> _mayInherit;     ///< Whether "inherit" may stand somewhere.
	bool _areSheetsSure = true;
	bool _needsCheck = false;
	bool _hasChanges = false;
	bool _hasLinks = false;           ///< A link was written with the usual prefix.
	std::uint32_t _scope = kNoRecord; ///< Where prefixes are looked for.
};

} // namespace orvan::svg
