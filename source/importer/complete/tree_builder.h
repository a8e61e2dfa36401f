// SPDX-License-Identifier: MIT
/// The complete import's walk over the XML tree.
#pragma once

#include "importer/complete/element_setter.h"
#include "importer/complete/host_memory.h"
#include "importer/complete/importer.h"
#include "importer/complete/style_sheets.h"
#include "importer/complete/text_runs.h"
#include "importer/xml/xml_tree.h"
#include "writer/source_recorder.h"

namespace orvan::svg::complete
{

/// The tag of an XML element: `unknown` for elements of other namespaces and for tags that nobody knows.
Tag TagOfNode(const XmlNode& node) noexcept;

/// Makes the elements of a document. The recursion is as deep as the elements are nested, which `XmlNamespaces` bounds.
class TreeBuilder
{
public:
	/// The recorder, which may be null, keeps the source of what is built.
	TreeBuilder(Importer& importer, XmlTree& tree, SourceRecorder* recorder, bool hasReferences) noexcept;
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

	struct NodeTag
	{
		Tag tag;
		bool isSvg; ///< Which elements of unknown tags may be, too.
	};

	Result<void> BuildChild(const XmlNode& node, ElementBase& parent, const Surroundings& outer);
	NodeTag Enter(const XmlNode& node) noexcept;
	Result<void> Fill(const SVGElementRef& reference, const XmlNode& node, NodeTag nodeTag, const Surroundings& outer);
	Result<void> BuildContent(const XmlNode& node, ElementBase& element, Tag tag, Surroundings& inner);
	Result<void> BuildChildren(const XmlNode& node, ElementBase& element, const Surroundings& inner);
	Result<void> BuildText(const XmlNode& node, ElementBase& element, const Surroundings& inner);
	Result<void> AppendRun(const XmlNode*& node, const char* from, ElementBase& parent, const Surroundings& inner);
	Result<void> SetCharacters(const XmlNode& node, ElementBase& element, Tag tag);

	Importer& _importer;
	XmlTree& _tree;
	SourceRecorder* _recorder;
	HostMemory _memory;
	StyleSheets _sheets;
	ElementSetter _setter;
	ReferenceDecoder _characters;
	const char* _svgNamespace = kSvgNamespace.data(); ///< Where the name of the namespace was found last.
};

} // namespace orvan::svg::complete
