// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

namespace orvan::grammar::complete
{
/// A transform of space, four columns of four rows. Its last column is the translation.
struct SpaceMatrix
{
	using Column = std::array<double, 4>;

	std::array<Column, 4> columns{Column{1, 0, 0, 0}, Column{0, 1, 0, 0}, Column{0, 0, 1, 0}, Column{0, 0, 0, 1}};

	/// What a column becomes under this transform.
	Column Apply(const Column& column) const noexcept
	{
		Column result{};
		for (std::size_t row = 0; row != result.size(); ++row)
		{
			for (std::size_t i = 0; i != column.size(); ++i)
				result[row] += columns[i][row] * column[i];
		}
		return result;
	}

	/// This transform, after another one.
	SpaceMatrix operator*(const SpaceMatrix& other) const noexcept
	{
		SpaceMatrix result;
		for (std::size_t i = 0; i != columns.size(); ++i)
			result.columns[i] = Apply(other.columns[i]);
		return result;
	}
};
} // namespace orvan::grammar::complete
