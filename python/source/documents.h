// SPDX-License-Identifier: MIT
/// Documents and elements as Python has them.
#pragma once

#include "host.h"

#include <memory>

namespace orvan::python
{

/// An element and the document whose tree it stands in, which stays as long as somebody holds the element.
struct Element
{
	std::shared_ptr<SharedDocument> shared;
	SVGElementRef element;
};

/// An element as an object of the Python class for its kind; None for a null reference.
py::object Wrap(const std::shared_ptr<SharedDocument>& shared, const SVGElementRef& element);

/// A document that is an icon.
std::shared_ptr<SharedDocument> MakeIcon();

void DefineDocuments(py::module_& module);
void DefineElements(py::module_& module);
void DefinePictures(py::module_& module);
void DefineIcons(py::module_& module);
void DefineGeometry(py::module_& module);
void DefineBatches(py::module_& module);

} // namespace orvan::python
