// SPDX-License-Identifier: MIT
#include "scene.h"

namespace orvan::drawing
{
namespace
{

Result<bool> IsAnyBlended(const SVGElementRef& root) noexcept
{
	auto at = Cast<HierarchyObjectInterface>(root);
	// Down first, then on, and up from the last of its siblings.
	while (at)
	{
		const Borrowed<SVGElementInterface> element(at.GetObject());
		if (element && element->HasAttribute(SVGImportAttribute::mixBlendMode))
			return true;
		auto next = at->GetFirstChild();
		while (!next && at && at.GetObject() != root.GetObject())
		{
			next = at->GetNextSibling();
			if (!next)
				at = ORVAN_TRY(at->GetParent());
		}
		at = next;
	}
	return false;
}

} // namespace

Result<bool> HasBlendModes(Scene& scene) noexcept
{
	if (!scene.hasBlendModes)
		scene.hasBlendModes = ORVAN_TRY(IsAnyBlended(scene.document->GetRootElement()));
	return *scene.hasBlendModes;
}

} // namespace orvan::drawing
