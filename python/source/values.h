// SPDX-License-Identifier: MIT
/// Attribute values as Python has them.
#pragma once

#include "host.h"
#include "orvan/data_dictionary.h"
#include "svg_complete.h"
#include "svg_types.h"

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
Matrix2d ToMatrix(const py::sequence& numbers);

/// The value under a number of a dictionary; None when there is none, or none that Python has a form for.
py::object GetValue(const DataDictionary& attributes, SVGImportAttribute number);

/// The number of an attribute by its SVG name; `unknown` for names that are none.
SVGImportAttribute FindAttribute(std::string_view name);

/// The name of a kind of element: "circle", "linearGradient" …
std::string_view NameOfKind(SVGImportElementKind kind);

void DefineValues(py::module_& module);

} // namespace orvan::python
