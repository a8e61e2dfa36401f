// SPDX-License-Identifier: MIT
#include "geometry_access.h"

#include "console.h"
#include "tree_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace orvan::program
{
namespace
{

/// True when one of the parts of a selector means the element.
bool IsMeant(const SVGElementRef& element, std::string_view selector)
{
	while (true)
	{
		const std::size_t comma = selector.find(',');
		std::string_view part = selector.substr(0, comma);
		const std::size_t first = part.find_first_not_of(' ');
		part = first == part.npos ? std::string_view() : part.substr(first, part.find_last_not_of(' ') + 1 - first);
		if (part.starts_with('#') ? element->GetId().View() == part.substr(1)
								  : part == "*" || part == GetElementName(element->GetElementType()))
			return true;
		if (comma == selector.npos)
			return false;
		selector.remove_prefix(comma + 1);
	}
}

} // namespace

void LoadGeometryModule(Modules& modules)
{
	modules.LoadModule("net.orvan.svg.geometry.so");
}

SVGGeometryRef MakeGeometry(const SVGDocumentRef& document)
{
	const SVGGeometryRef geometry = Unwrap(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
	Unwrap(geometry->SetDocument(document, SVGGeometryOptions()));
	return geometry;
}

std::vector<PlacedElement> SelectElements(const SVGDocumentRef& document, std::string_view selector)
{
	// A walk without recursion: trees may be deep.
	struct Level
	{
		HierarchyObjectRef next;
		std::uint32_t index;
	};
	std::vector<PlacedElement> found;
	std::vector<std::uint32_t> path;
	const auto take = [&](const SVGElementRef& element)
	{
		const bool isElement = element && element->GetElementType() != SVGImportElementKind::textRun;
		if (isElement && (selector.empty() || IsMeant(element, selector)))
			found.push_back({element, path});
	};
	const SVGElementRef root = document->GetRootElement();
	if (!root)
		return found;
	take(root);
	std::vector<Level> levels{{Cast<HierarchyObjectInterface>(root)->GetFirstChild(), 0}};
	while (!levels.empty())
	{
		const HierarchyObjectRef child = levels.back().next;
		if (!child)
		{
			levels.pop_back();
			if (!path.empty())
				path.pop_back();
			continue;
		}
		path.push_back(levels.back().index++);
		levels.back().next = child->GetNextSibling();
		take(Cast<SVGElementInterface>(child));
		levels.push_back({child->GetFirstChild(), 0});
	}
	return found;
}

std::vector<std::uint32_t> GetElementPath(const SVGElementRef& element)
{
	std::vector<std::uint32_t> path;
	auto at = Cast<HierarchyObjectInterface>(element);
	for (auto parent = Unwrap(at->GetParent()); parent; parent = Unwrap(at->GetParent()))
	{
		std::uint32_t index = 0;
		for (auto child = parent->GetFirstChild(); child.GetObject() != at.GetObject(); child = child->GetNextSibling())
			index++;
		path.push_back(index);
		at = parent;
	}
	std::ranges::reverse(path);
	return path;
}

std::string GetElementLabel(const SVGElementRef& element)
{
	std::string label(GetElementName(element->GetElementType()));
	if (const String id = element->GetId(); !id.IsEmpty())
		label += '#' + WholeLine(id.View());
	return label;
}

void WriteElement(JsonWriter& json, const SVGElementRef& element, const std::vector<std::uint32_t>& path)
{
	json.Member("element", GetElementName(element->GetElementType()));
	if (const String id = element->GetId(); !id.IsEmpty())
		json.Member("id", id.View());
	json.Key("path");
	json.BeginArray();
	for (const std::uint32_t index : path)
		json.Value(index);
	json.EndArray();
}

std::string FormatNumber(double number)
{
	char text[64];
	std::snprintf(text, sizeof(text), std::abs(number) < 1e15 ? "%.6f" : "%g", number);
	std::string result(text);
	if (result.find('.') != result.npos && result.find('e') == result.npos)
	{
		result.erase(result.find_last_not_of('0') + 1);
		if (result.back() == '.')
			result.pop_back();
	}
	return result == "-0" ? "0" : result;
}

double ReadNumber(const std::string& text, const char* name)
{
	double number = 0.0;
	const char* const end = text.data() + text.size();
	const auto [at, error] = std::from_chars(text.data(), end, number);
	if (error != std::errc() || at != end || !std::isfinite(number))
		throw UsageFailure(std::string(name) + ": \"" + text + "\" is no number");
	return number;
}

} // namespace orvan::program
