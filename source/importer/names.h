/// Looking names up in a table that is fixed at compile time.
#pragma once

#include "orvan/hash.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan::svg
{

/// A hash table from names to the rows of a constexpr table. The compiler refuses a name that is listed twice.
template <std::size_t rowCount>
class NameIndex
{
public:
	/// `rows` must have a member `name`; the index refers to them by position.
	template <typename Row>
	consteval explicit NameIndex(const std::array<Row, rowCount>& rows)
	{
		for (std::size_t i = 0; i < rowCount; i++)
		{
			std::size_t at = Position(rows[i].name);
			for (; _slots[at] != 0; at = (at + 1) % kSlots)
			{
				if (rows[_slots[at] - 1u].name == rows[i].name)
					throw "a name is listed twice";
			}
			_slots[at] = static_cast<std::uint8_t>(i + 1);
		}
	}

	/// The row of `name`, or null.
	template <typename Row>
	const Row* Find(const std::array<Row, rowCount>& rows, std::string_view name) const noexcept
	{
		for (std::size_t at = Position(name); _slots[at] != 0; at = (at + 1) % kSlots)
		{
			const Row& row = rows[_slots[at] - 1u];
			if (row.name == name)
				return &row;
		}
		return nullptr;
	}

private:
	static constexpr std::size_t kSlots = 256;
	static_assert(rowCount < kSlots / 2);

	/// Length and three characters tell nearly all names of the tables apart.
	static constexpr std::size_t Position(std::string_view name) noexcept
	{
		if (name.empty())
			return 0;
		const auto at = [&](std::size_t i)
		{
			return static_cast<std::size_t>(static_cast<unsigned char>(name[i]));
		};
		return (at(0) * 31 + at(name.size() / 2) * 7 + at(name.size() - 1) * 3 + name.size() * 17) % kSlots;
	}

	std::array<std::uint8_t, kSlots> _slots{};
};

} // namespace orvan::svg
