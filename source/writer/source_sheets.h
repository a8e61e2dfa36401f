// SPDX-License-Identifier: MIT
/// What the style sheets of a source say about its elements.
#pragma once

#include "css/cascade.h"
#include "importer/complete/attribute_rules.h"
#include "importer/complete/host_memory.h"
#include "writer/document_source.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace orvan::svg
{

/// A property that an element has to say in its style attribute, because a style sheet says otherwise.
struct ForcedProperty
{
	SVGImportAttribute number;
	bool isImportant;
};

/// The style sheets of a source, held against its elements as they were loaded: for edits that change neither the
/// sheets nor what their selectors look at. It spares whoever saves such an edit from loading the whole result to see
/// which declarations win in it. Everything may throw std::bad_alloc.
class SourceSheets
{
public:
	/// What the sheets say about one property of one element.
	enum class Saying
	{
		nothing,
		something,
		important, ///< Only an important declaration of the element's own wins over it.
	};

	/// `clientSheet` counts behind those of the source. Both must outlive this object.
	SourceSheets(const DocumentSource& source, std::string_view clientSheet);
	SourceSheets(const SourceSheets&) = delete;
	~SourceSheets();

	/// True when there is no rule.
	bool IsEmpty() const noexcept
	{
		return _sheet.IsEmpty();
	}

	/// False when the answers cannot be relied on: the sheets use something that only the import knows how to read.
	bool IsSure() const noexcept
	{
		return _isSure && (!_cascade || !_cascade->IsBudgetExceeded());
	}

	/// What is said about the property of a rule on an element, given by its record.
	Saying Find(std::uint32_t record, complete::Tag tag, const complete::Rule& rule);

	/// The properties that the sheets say otherwise on an element that is not in the source: one that will stand there
	/// with this tag and these attributes.
	std::vector<ForcedProperty> FindDifferences(const ElementBase& element, const DataDictionary& attributes,
												complete::Tag tag);

	/// Whether a selector may look at an attribute of this name.
	bool LookAt(std::string_view attribute) const noexcept;

	/// Whether a selector looks at what stands around an element.
	bool LookAround() const noexcept
	{
		return _lookAround;
	}

private:
	class View;

	void CollectSheets(std::string_view clientSheet);
	void NoteSelectors(const css::Selector* selector);
	void NoteCondition(const css::Simple& condition);
	SVGElementRef Read(const css::Declaration& declaration, const complete::Rule& rule, complete::Tag tag);

	const DocumentSource& _source;
	complete::HostMemory _memory;
	css::StyleSheet _sheet;
	std::unique_ptr<View> _view;
	std::optional<css::Cascade> _cascade;
	std::vector<std::string_view> _attributes; ///< That selectors look at.
	bool _lookAtValues = false;                ///< A selector asks for an attribute, and be it "[class]".
	bool _lookAround = false;
	bool _isSure = true;
};

} // namespace orvan::svg
