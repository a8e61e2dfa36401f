// SPDX-License-Identifier: MIT
/// The complete import's walk over the XML tree.
#pragma once

#include "css/declarations.h"
#include "css/variables.h"
#include "importer/complete/host_memory.h"
#include "importer/complete/importer.h"
#include "importer/complete/single_transforms.h"
#include "importer/complete/style_sheets.h"
#include "importer/complete/text_runs.h"
#include "importer/style_cache.h"
#include "importer/xml/xml_tree.h"
#include "writer/source_recorder.h"

#include <list>
#include <memory_resource>
#include <string>
#include <vector>

namespace orvan::svg::complete
{

/// The tag of an XML element: `unknown` for elements of other namespaces and for tags that nobody knows.
Tag TagOfNode(const XmlNode& node) noexcept;

/// Makes the elements of a document. The recursion is as deep as the elements are nested, which `GuardXml` bounds.
class TreeBuilder
{
public:
	/// The recorder, which may be null, keeps the source of what is built.
	TreeBuilder(Importer& importer, XmlTree& tree, SourceRecorder* recorder) noexcept;
	TreeBuilder(const TreeBuilder&) = delete;

	/// Builds the document below its svg element. `clientSheet` cascades after the document's own sheets.
	Result<SVGElementRef> BuildDocument(const XmlNode& root, std::string_view clientSheet);

private:
	/// What an element inherits while it is built.
	struct Surroundings
	{
		Vector2d viewport;
		bool preservesSpace = false;
		TextRuns* text = nullptr; ///< Inside of a text: that text's runs.
	};

	Result<SVGElementRef> Build(const XmlNode& node, HierarchyObject* parent, const Surroundings& outer);
	Result<std::string_view> SetAttributes(const XmlNode& node, ElementBase& element, Tag tag);
	Result<void> SetDeclarations(const XmlNode& node, ElementBase& element, Tag tag, std::string_view style);
	Result<void> SetInlineStyle(ElementBase& element, Tag tag, std::string_view style);
	Result<bool> SetRestOfStyle(ElementBase& element, Tag tag, std::string_view style, std::size_t start);
	Result<bool> SetAll(ElementBase& element, Tag tag, std::string_view value);
	void AddVariable(const css::Declaration& declaration);
	Result<void> SetWaiting(ElementBase& element, Tag tag);
	Result<void> SetSubstituted(const Application& application, const ValuePlace& place);
	Result<bool> Declare(ElementBase& element, Tag tag, const css::Declaration& declaration, const char* where);
	Result<void> BuildContent(const XmlNode& node, ElementBase& element, Tag tag, Surroundings& inner);
	Result<void> ReadSingleTransform(ElementBase& element, std::string_view name, std::string_view value,
									 const char* where);
	Result<void> BuildChildren(const XmlNode& node, ElementBase& element, const Surroundings& inner);
	Result<void> AppendRun(const XmlNode*& node, HierarchyObject& parent, const Surroundings& inner);
	Result<void> AppendBlanks(std::string_view blanks, HierarchyObject& parent, const Surroundings& inner);
	Result<void> SetCharacters(const XmlNode& node, ElementBase& element, Tag tag);

	/// A presentation attribute with var() in it, which waits for the custom properties of its element.
	struct WaitingAttribute
	{
		const Rule& rule;
		std::string text;
		const char* where;
	};

	Importer& _importer;
	XmlTree& _tree;
	SourceRecorder* _recorder;
	HostMemory _memory;
	StyleSheets _sheets;
	ReferenceDecoder _values;
	ReferenceDecoder _styles; ///< Style attributes stay good while their declarations are set.
	StyleCache _styleCache;
	css::Arena _arena;
	SingleTransforms _singleTransforms; ///< Of the element at hand.
	std::pmr::vector<css::Declaration>
		_declarations; ///< Those of the style at hand that need tokens; kept for their room.
	css::VariableBudget _variableBudget;
	css::Variables _noVariables;
	std::pmr::list<css::Variables> _variables; ///< Of the elements that have some, down to the one at hand.
	bool _hasOwnVariables = false;             ///< Whether the last of them are those of the element at hand.
	std::vector<WaitingAttribute> _waiting;
	std::string_view _rawStyle;
	std::string_view _elementTag;
	const char* _svgNamespace = kSvgNamespace.data(); ///< Where the name of the namespace was found last.
};

} // namespace orvan::svg::complete
