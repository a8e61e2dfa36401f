// SPDX-License-Identifier: MIT
/// Arrays that grow with the inputs of a chunk.
#pragma once

#include "batch/array_archive.h"
#include "orvan/array.h"

#include <span>
#include <string>
#include <vector>

namespace orvan::batch
{

/// One array of a shard.
struct ColumnKind
{
	const char* name;
	const char* type;       ///< NumPy's: "<f8", "<i8", "<i4", "|u1".
	std::size_t width;      ///< Numbers in a row.
	bool isOffsets = false; ///< Begins with a 0: row i + 1 says where the i-th thing ends in another column.
};

/// Columns of given kinds.
class Columns
{
public:
	explicit Columns(std::span<const ColumnKind> kinds);

	/// Adds rows to the column of this number.
	template <typename T>
	void Add(std::size_t column, const T* values, std::size_t count)
	{
		if (count != 0)
			_bytes[column].append(reinterpret_cast<const char*>(values), count * sizeof(T));
	}

	template <typename T>
	void Add(std::size_t column, const BaseArray<T>& values)
	{
		Add(column, values.begin(), values.GetCount());
	}

	/// Adds offsets that begin with a 0 behind those that are there.
	void AddOffsets(std::size_t column, const BaseArray<std::int64_t>& offsets);

	/// How far the columns have come, for `CutOff`.
	std::vector<std::size_t> GetSizes() const;

	/// Takes back what came after that.
	void CutOff(const std::vector<std::size_t>& sizes);

	/// All of them as a file that NumPy reads.
	std::string Pack() const;

	bool IsEmpty() const
	{
		return _kinds.empty();
	}

private:
	std::span<const ColumnKind> _kinds;
	std::vector<std::string> _bytes;
};

} // namespace orvan::batch
