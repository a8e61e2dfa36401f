// SPDX-License-Identifier: MIT
/// Attribute values as Python has them.
#pragma once

#include "host.h"
#include "orvan/data_dictionary.h"
#include "svg_attribute_companions.h"
#include "svg_complete.h"
#include "svg_types.h"

#include <array>

namespace orvan::python
{

/// A length as it was written: `Length(50, "%")`.
struct Length
{
	double value = 0.0;
	std::string unit;

	bool operator==(const Length&) const = default;
};

/// A paint: none, a colour, a reference to a paint server …
struct Paint
{
	std::string kind; ///< "none", "color", "url", "currentColor", "context-fill" or "context-stroke".
	py::tuple color;  ///< Red, green and blue, 0 to 1.
	double alpha = 1.0;
	std::string reference; ///< The id that a "url" names.
};

Length ToLength(const SVGLength& length);
py::tuple ToTuple(const Matrix2d& matrix); ///< a, b, c, d, e, f.
Matrix2d ToMatrix(const std::array<double, 6>& numbers);

/// The value of an attribute of an element; None when the element says nothing. Keywords, and what else Python has no
/// type for, are text as SVG writes it. Where a text has several positions, its "x" and "y" are lists.
py::object GetValue(const SVGDocumentRef& document, const SVGElementRef& element, SVGImportAttribute number);

/// The number of an attribute by its SVG name; `unknown` for names that are none, those of companions included.
SVGImportAttribute FindAttribute(std::string_view name);

/// The name of a kind of element: "circle", "linearGradient" …
std::string_view NameOfKind(SVGImportElementKind kind);

void DefineValues(py::module_& module);

} // namespace orvan::python
