// SPDX-License-Identifier: MIT
// Styles that several elements have, which share what the first of them came to, beside a style that is read by itself.

#include "document.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using namespace orvan;

namespace
{
constexpr const char* kTags[] = {"path",   "text", "stop",   "g",   "linearGradient", "rect",
								 "circle", "use",  "symbol", "svg", "line",           "mask"};

/// The descriptions of the elements below the root.
std::vector<std::string> DescribeAll(const SVGDocumentRef& document)
{
	std::vector<std::string> descriptions;
	auto child = Cast<HierarchyObjectInterface>(document->GetRootElement())->GetFirstChild();
	for (; child; child = child->GetNextSibling())
		descriptions.push_back(fuzz::DescribeElement(Cast<SVGElementInterface>(child)));
	return descriptions;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	if (size < 2)
		return 0;
	const std::string tags[] = {kTags[data[0] % std::size(kTags)], kTags[data[1] % std::size(kTags)]};
	std::string style(reinterpret_cast<const char*>(data) + 2, size - 2);
	std::replace(style.begin(), style.end(), '\'', ' ');
	std::replace(style.begin(), style.end(), '\0', ' ');

	// A style that begins with a reference has to be copied, and is never shared.
	std::string lone = "<svg>";
	std::string shared = "<svg>";
	for (int round = 0; round < 4; round++)
	{
		// An attribute behind the style makes an element write to what it shares.
		const std::string behind = round == 2 ? " stroke-dashoffset='7'" : "";
		for (const std::string& tag : tags)
		{
			lone += '<' + tag + " style='&#32;" + style + '\'' + behind + "/>";
			shared += '<' + tag + " style='" + style + '\'' + behind + "/>";
		}
	}
	const fuzz::LoadedDocument loneDocument = fuzz::LoadDocument(lone + "</svg>");
	const fuzz::LoadedDocument sharedDocument = fuzz::LoadDocument(shared + "</svg>");
	fuzz::Require(loneDocument.isRefused == sharedDocument.isRefused, "sharing changes no verdict", style);
	fuzz::Require(DescribeAll(loneDocument.document) == DescribeAll(sharedDocument.document),
				  "elements that share a style are as without sharing", style);
	return 0;
}
