// SPDX-License-Identifier: MIT
/// The compiled half of the package: everything that `orvan_svg` hands on.
#include "documents.h"
#include "values.h"

#include <pybind11/stl.h>

PYBIND11_MODULE(_core, module)
{
	using namespace orvan::python;
	module.doc() = "The compiled half of orvan_svg.";
	module.attr("__version__") = ORVAN_SVG_VERSION;
	module.def("load_modules", &LoadModules);
	py::list names;
	for (const std::string_view name : orvan::kSVGAttributeNames)
	{
		if (FindAttribute(name) != orvan::SVGImportAttribute::unknown)
			names.append(py::str(name.data(), name.size()));
	}
	module.attr("attribute_names") = py::tuple(names);
	DefineValues(module);
	DefineElements(module); // Before the documents, whose help names it.
	DefineDocuments(module);
	DefinePictures(module);
	DefineIcons(module);
	DefineGeometry(module);
	DefineBatches(module);
}
