// SPDX-License-Identifier: MIT
/// What the commands share that ask a picture: the geometry of a document, and the elements that are asked about.
#pragma once

#include "command_line.h"
#include "json_writer.h"
#include "modules.h"
#include "svg_geometry.h"

namespace orvan::program
{

/// Opens the geometry module. Throws `Failure` when it is missing.
void LoadGeometryModule(Modules& modules);

/// An object that answers for a document. Throws `Failure`.
SVGGeometryRef MakeGeometry(const SVGDocumentRef& document);

/// An element, and the way to it: the indices of the children to go down to from the root.
struct PlacedElement
{
	SVGElementRef element;
	std::vector<std::uint32_t> path;
};

/// The elements of a document in document order that `selector` means: "#id" or the name of a kind such as "path",
/// several of them with commas between, or "*" for all; the empty text, too, means all.
std::vector<PlacedElement> SelectElements(const SVGDocumentRef& document, std::string_view selector);

/// The way to an element from the root.
std::vector<std::uint32_t> GetElementPath(const SVGElementRef& element);

/// The name of an element's kind, with its id: "path#p1".
std::string GetElementLabel(const SVGElementRef& element);

/// Writes members for an element into the object that has been begun: "element", "id" where there is one, "path".
void WriteElement(JsonWriter& json, const SVGElementRef& element, const std::vector<std::uint32_t>& path);

/// A number as people read it: six digits behind the point at most.
std::string FormatNumber(double number);

/// Reads a number from the command line. Throws `UsageFailure`.
double ReadNumber(const std::string& text, const char* name);

} // namespace orvan::program
