// SPDX-License-Identifier: MIT
// Whole files, through the document.

#include "document.h"
#include "require.h"

#include <cstdint>

using namespace orvan;
using fuzz::Require;

namespace
{
/// Walks a tree through the public interfaces alone; the result is the number of its elements.
std::size_t CheckTree(const SVGDocumentRef& document)
{
	const auto root = Cast<HierarchyObjectInterface>(document->GetRootElement());
	Require(!root->GetParent().GetValue(), "the root has no parent");
	std::size_t count = 0;
	for (HierarchyObjectRef at = root; at;)
	{
		count++;
		const auto element = Cast<SVGElementInterface>(at);
		const std::string description = fuzz::DescribeElement(element);
		// A gradient's copy has no stops: those are children.
		if (!Cast<SVGLinearGradientElementInterface>(element) && !Cast<SVGRadialGradientElementInterface>(element))
			Require(fuzz::DescribeElement(CloneObject(element).GetValue()) == description, "copies say the same",
					description);
		Require(element->GetWorldTransform().IsOk(), "there is a world transform");
		if (const String id = element->GetId(); !id.IsEmpty())
			Require(document->GetElementById(id).IsOk(), "elements are found by their id", id);

		const BaseArray<HierarchyObjectRef> children = at->GetChildren().GetValue();
		HierarchyObjectRef sibling = at->GetFirstChild();
		for (const HierarchyObjectRef& child : children)
		{
			Require(child.GetObject() == sibling.GetObject(), "both ways to the children lead to the same");
			Require(child->GetParent().GetValue().GetObject() == at.GetObject(), "children know their parent");
			sibling = sibling->GetNextSibling();
		}
		Require(!sibling, "both ways to the children lead to as many");

		HierarchyObjectRef next = at->GetFirstChild();
		for (; !next && at && at.GetObject() != root.GetObject(); at = at->GetParent().GetValue())
			next = at->GetNextSibling();
		at = next;
	}
	return count;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string_view text(reinterpret_cast<const char*>(data), size);
	const fuzz::LoadedDocument loaded = fuzz::LoadDocument(text);
	const SVGDocumentRef& document = loaded.document;
	const SVGElementRef root = document->GetRootElement();
	Require(root && root->GetElementType() == SVGImportElementKind::svg, "there is a root, which is an svg element");
	const std::size_t count = CheckTree(document);
	const BaseArray<SVGElementRef> identified = document->GetElementsByIdWithPrefix({}).GetValue();
	Require(!loaded.isRefused || (count == 2 && identified.IsEmpty()), "what is refused leaves the placeholder");
	for (const SVGElementRef& element : identified)
	{
		HierarchyObjectRef top = Cast<HierarchyObjectInterface>(element);
		while (const HierarchyObjectRef parent = top->GetParent().GetValue())
			top = parent;
		Require(top.GetObject() == root.GetObject(), "what has an id is in the tree", element->GetId());
	}
	// What a client holds stays as it is when the tree around it is taken apart.
	const SVGElementRef held = identified.IsEmpty() ? root : identified[identified.GetCount() - 1];
	document->Reset();
	fuzz::DescribeElement(held);
	return 0;
}
