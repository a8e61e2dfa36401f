// SPDX-License-Identifier: MIT
/// Conditional processing: for whom an element is meant.
#pragma once

#include "svg_elements.h"

namespace orvan::drawing
{

/// True when the tests of "systemLanguage", "requiredExtensions" and "requiredFeatures" are passed: the language is
/// `language` (or of it), no extension is known, and the features are those of SVG 1.1 that a
/// picture can have.
bool PassesConditions(const DataDictionary& attributes, std::string_view language) noexcept;

} // namespace orvan::drawing
