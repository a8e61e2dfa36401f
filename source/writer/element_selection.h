// SPDX-License-Identifier: MIT
/// Finding elements with selectors.
#pragma once

#include "writer/document_source.h"

#include <string_view>

namespace orvan::svg
{

/// The elements at and below a root that a list of selectors finds, in document order. Fails with the illegal-argument
/// error for a text that is no such list. `source` may be null.
Result<BaseArray<SVGElementRef>> SelectElements(const SVGElementRef& root, const DocumentSource* source,
												std::string_view selectors) noexcept;

} // namespace orvan::svg
