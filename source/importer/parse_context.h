// SPDX-License-Identifier: MIT
/// The state of one import.
#pragma once

#include "elements/element_base.h"
#include "grammar.h"
#include "importer/findings.h"
#include "importer/style_cache.h"
#include "importer/text/text_release.h"
#include "orvan/hash_map.h"
#include "orvan/result.h"

#include <string_view>

namespace orvan::svg
{

/// What the tree builder and the attribute handlers share. Lives for one import, on one thread.
struct SVGParseContext
{
	/// The element whose attributes are being set and under which new elements are linked; null outside of the root.
	const SVGElementRef* element = nullptr;
	/// The same element as what it is in this module: no other module can bring a class that the importer makes.
	ElementBase* ownElement = nullptr;
	bool isPolygon = false;     ///< The current tag is "polygon".
	bool suppressesIds = false; ///< Ids are not entered into the table. Nothing sets it.
	StringMap<SVGElementRef> elementsById;
	DictionaryStaging staging; ///< Lends the element at hand its room while its attributes are set.
	StyleCache styles;
	TextRelease textRelease;

	/// The error of a value that was refused, which ends the import behind the attributes of the element. No exception,
	/// which would have to be caught by every level of the tree. Without meaning when text was released: then the
	/// import has to begin anew.
	Result<void> refusal;

	// Where a refused value stood, for the diagnostics.
	std::string_view elementName; ///< The tag as written.
	std::string_view rawValue;    ///< The attribute value at hand, as it stands in the text of the file.
	const char* refusedAt = nullptr;
	std::string_view refusedElementName;
	String refusedElementId;
	std::string_view refusedAttribute; ///< A name of the table.

	/// Takes the findings of a tolerant import; null when a refused value ends the import.
	FindingList* findings = nullptr;

	/// Refuses the value of an attribute, which then counts as absent: makes `refusal` of it and keeps the place or, in
	/// a tolerant import, makes a finding.
	void Refuse(const char* attributeName, std::string_view text);
};

} // namespace orvan::svg
