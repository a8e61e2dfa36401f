// SPDX-License-Identifier: MIT
/// Finding what a document's references name.
#pragma once

#include "svg_base.h"

namespace orvan::cairo
{

/// The element with this id, or null: a reference that leads nowhere is no error.
inline Result<SVGElementRef> FindElement(const SVGDocumentRef& document, const String& id) noexcept
{
	auto found = document->GetElementById(id);
	if (!found.IsOk() && found.GetError().GetClass() != ErrorClass::outOfMemory)
		return SVGElementRef();
	return found;
}

} // namespace orvan::cairo
