// SPDX-License-Identifier: MIT
/// Paths as the two arrays that numerical code wants: a code for each command, and the points of all of them.
#pragma once

#include "host.h"

#include <pybind11/numpy.h>

namespace orvan::python
{

/// Codes and points as Python hands them over, in whatever type they were.
using CodeArray = py::array_t<std::uint8_t, py::array::c_style | py::array::forcecast>;
using PointArray = py::array_t<double, py::array::c_style | py::array::forcecast>;

/// A tuple of both.
py::tuple ToArrays(const BaseArray<SVGPathCommand>& commands);

/// The commands again. ValueError for codes that there are not, and for points of another number than they take.
BaseArray<SVGPathCommand> ToCommands(const CodeArray& codes, const PointArray& points);

} // namespace orvan::python
