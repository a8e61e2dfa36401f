// SPDX-License-Identifier: MIT
/// What an XML element says of itself, and style sheets of it, set on the element that was made of it.
#pragma once

#include "css/declarations.h"
#include "css/variables.h"
#include "importer/complete/importer.h"
#include "importer/complete/single_transforms.h"
#include "importer/complete/style_sheets.h"
#include "importer/style_cache.h"
#include "importer/xml/xml_tree.h"

#include <list>
#include <memory_resource>
#include <string>
#include <vector>

namespace orvan::svg::complete
{

/// Sets elements in document order: the attributes, and then the declarations in ascending order of precedence, so that
/// the last one that can be read holds.
class ElementSetter
{
public:
	/// The importer, the sheets and the memory must outlive this.
	ElementSetter(Importer& importer, StyleSheets& sheets, std::pmr::memory_resource* memory,
				  bool hasReferences) noexcept;
	ElementSetter(const ElementSetter&) = delete;

	Result<void> Set(const XmlNode& node, ElementBase& element, Tag tag);

	/// Sets all that counts of an element of another namespace.
	Result<void> SetIdOnly(const XmlNode& node, ElementBase& element, Tag tag);

	/// Number of elements, of those around the next one, that have custom properties.
	std::size_t GetScopeCount() const noexcept
	{
		return _variables.size();
	}

	/// At the end of an element: back to the number before it was set.
	void LeaveScopes(std::size_t count) noexcept
	{
		if (_variables.size() != count) [[unlikely]]
			_variables.pop_back();
	}

private:
	Result<std::string_view> SetAttributes(const XmlNode& node, ElementBase& element, Tag tag);
	Result<void> SetDeclarations(const XmlNode& node, ElementBase& element, Tag tag, std::string_view style);
	Result<void> SetInlineStyle(ElementBase& element, Tag tag, std::string_view style);
	Result<bool> SetRestOfStyle(ElementBase& element, Tag tag, std::string_view style, std::size_t start);
	Result<bool> SetAll(ElementBase& element, Tag tag, std::string_view value);
	void AddVariable(const css::Declaration& declaration);
	Result<void> SetWaiting(ElementBase& element, Tag tag);
	Result<void> SetSubstituted(const Application& application, const ValuePlace& place);
	Result<bool> Declare(ElementBase& element, Tag tag, const css::Declaration& declaration, const char* where);
	Result<void> ReadSingleTransform(ElementBase& element, std::string_view name, std::string_view value,
									 const char* where);

	/// A presentation attribute with var() in it, which waits for the custom properties of its element.
	struct WaitingAttribute
	{
		const Rule& rule;
		std::string text;
		const char* where;
	};

	Importer& _importer;
	StyleSheets& _sheets;
	std::pmr::memory_resource* const _memory;
	ReferenceDecoder _values;
	ReferenceDecoder _styles;   ///< Style attributes stay good while their declarations are set.
	DictionaryStaging _staging; ///< Lends the element at hand its room.
	StyleCache _styleCache;
	css::Arena _arena;
	SingleTransforms _singleTransforms; ///< Of the element at hand.
	/// Those of the style at hand that need tokens; kept for their room.
	std::pmr::vector<css::Declaration> _declarations;
	css::VariableBudget _variableBudget;
	css::Variables _noVariables;
	std::pmr::list<css::Variables> _variables; ///< Of the elements that have some, down to the one at hand.
	bool _hasOwnVariables = false;             ///< Whether the last of them are those of the element at hand.
	std::vector<WaitingAttribute> _waiting;
	std::string_view _rawStyle;
	std::string_view _elementTag;
};

} // namespace orvan::svg::complete
