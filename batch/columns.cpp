// SPDX-License-Identifier: MIT
#include "batch/columns.h"

#include <cstring>

namespace orvan::batch
{

Columns::Columns(std::span<const ColumnKind> kinds) : _kinds(kinds), _bytes(kinds.size())
{
	for (std::size_t i = 0; i < kinds.size(); i++)
	{
		if (kinds[i].isOffsets)
			_bytes[i].assign(sizeof(std::int64_t), '\0');
	}
}

void Columns::AddOffsets(std::size_t column, const BaseArray<std::int64_t>& offsets)
{
	std::int64_t last = 0;
	std::string& bytes = _bytes[column];
	std::memcpy(&last, bytes.data() + bytes.size() - sizeof(last), sizeof(last));
	for (std::size_t i = 1; i < offsets.GetCount(); i++)
	{
		const std::int64_t offset = last + offsets[i];
		Add(column, &offset, 1);
	}
}

std::vector<std::size_t> Columns::GetSizes() const
{
	std::vector<std::size_t> sizes;
	for (const std::string& bytes : _bytes)
		sizes.push_back(bytes.size());
	return sizes;
}

void Columns::CutOff(const std::vector<std::size_t>& sizes)
{
	for (std::size_t i = 0; i < _bytes.size(); i++)
		_bytes[i].resize(sizes[i]);
}

std::string Columns::Pack() const
{
	ArrayArchive archive;
	for (std::size_t i = 0; i < _kinds.size(); i++)
	{
		const auto& [name, type, width, isOffsets] = _kinds[i];
		const auto size = static_cast<std::size_t>(type[2] - '0');
		archive.Add(name, type, _bytes[i].data(), _bytes[i].size() / size / width, width);
	}
	return archive.Take();
}

} // namespace orvan::batch
