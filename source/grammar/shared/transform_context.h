// SPDX-License-Identifier: MIT
#pragma once

#include "grammar.h"

#include <svgpp/adapter/transform.hpp>

#include <algorithm>
#include <cmath>

namespace orvan::grammar
{
/// Stands behind the library's transform adapter, which joins a list into one matrix. The name of the event is the
/// library's.
struct TransformContext
{
	void transform_matrix(const boost::array<double, 6>& values)
	{
		matrix = values;
	}

	boost::array<double, 6> matrix;
};

using TransformAdapter = svgpp::transform_adapter<TransformContext, svgpp::policy::transform::matrix>;

/// Ends the list and stores its matrix, unless that left the range of finite numbers.
inline Parsed DeliverMatrix(const TransformAdapter& adapter, Matrix& matrix)
{
	adapter.on_exit_attribute();
	const boost::array<double, 6>& m = adapter.get_output_context().matrix;
	if (!std::all_of(m.begin(), m.end(), [](double value) { return std::isfinite(value); }))
		return Parsed::refused;
	matrix = {m[0], m[1], m[2], m[3], m[4], m[5]};
	return Parsed::value;
}
} // namespace orvan::grammar
