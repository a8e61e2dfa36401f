// SPDX-License-Identifier: MIT
/// Keeps the source of a document while it is imported.
#pragma once

#include "importer/xml/xml_tree.h"
#include "writer/document_source.h"

#include <string_view>

namespace orvan::svg
{

/// Takes down where things stand, from the nodes of the XML library, and which element each has become. Lives for one
/// import.
class SourceRecorder
{
public:
	/// `text` is what was parsed. It stays where it is until the import is over.
	SourceRecorder(DocumentSource& source, std::string_view text) noexcept : _source(source), _text(text)
	{
	}

	/// Takes down all elements at and below a node.
	Result<void> Collect(const XmlNode& root) noexcept;

	/// Says which element the node with this name, at its place in the text, has become. Nodes come in document order.
	void NoteElement(const char* name, const SVGElementRef& element) noexcept;

	/// Says which run the characters of [from, to) have become; in document order, after the element around it.
	Result<void> NoteRun(const char* from, const char* to, const SVGElementRef& run) noexcept;

	/// The end of the import: keeps the elements as they are now.
	Result<void> Finish() noexcept;

private:
	struct Run
	{
		std::uint32_t begin;
		std::uint32_t end;
		SVGElementRef element;
	};

	Result<std::uint32_t> CollectElement(const XmlNode& node, std::uint32_t parent) noexcept;
	std::uint32_t FindEndTag(std::uint32_t from) const noexcept;
	std::uint32_t PlaceOf(const char* where) const noexcept;
	Result<void> MergeRuns() noexcept;

	DocumentSource& _source;
	std::string_view _text;
	std::size_t _next = 0; ///< The record of the next element.
	BaseArray<Run> _runs;
};

} // namespace orvan::svg
