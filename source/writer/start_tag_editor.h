// SPDX-License-Identifier: MIT
/// Changing the attributes of one start tag.
#pragma once

#include "writer/document_source.h"
#include "writer/style_editor.h"
#include "writer/text_edits.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::svg
{

/// The start tag of one element while its attributes are edited. What was asked for becomes edits of the text in
/// `Finish`. Everything may throw std::bad_alloc and `SaveError`.
class StartTagEditor
{
public:
	StartTagEditor(const DocumentSource& source, const SourceElement& element);

	/// Whether there is an attribute of this name, as written.
	bool Has(std::string_view name) const noexcept
	{
		return FindPlace(name) != nullptr;
	}

	/// The names of the attributes that are there, as written.
	std::vector<std::string_view> GetNames() const;

	/// Sets an attribute: in place, or behind the others.
	void Set(std::string_view name, std::string_view value);

	/// Takes an attribute out, with the blank before it.
	void Remove(std::string_view name);

	/// The style attribute; it is written if it is not what it was.
	StyleEditor& Style();

	/// Gives the element another tag, with the prefix that it has.
	void Rename(std::string_view localName);

	/// Makes edits of all this.
	void Finish(TextEdits& edits);

	/// Whether the tag itself changed.
	bool IsRenamed() const noexcept
	{
		return !_tag.empty();
	}

	/// The names of the attributes that came, went or changed. After `Finish`.
	std::vector<std::string_view> GetChangedNames() const;

private:
	struct Place
	{
		const SourceAttribute* attribute;
		std::optional<std::string> value; ///< With references, when it is to change.
		bool isRemoved = false;
	};

	/// The last one of the name, which is what counts where a file has one twice.
	const Place* FindPlace(std::string_view name) const noexcept;
	Place* TakePlace(std::string_view name) noexcept;
	char QuoteOf(const Place& place) const noexcept;
	std::size_t BeginOf(std::size_t number) const noexcept;
	void FinishStyle();
	void FinishAdditions(TextEdits& edits) const;

	const DocumentSource& _source;
	const SourceElement& _element;
	std::vector<Place> _places;
	std::vector<std::string> _added;
	std::optional<StyleEditor> _style;
	std::string _styleBefore;
	std::string _tag; ///< Another local name, if any.
};

} // namespace orvan::svg
