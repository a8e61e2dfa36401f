/// Looking names up in a table that is fixed at compile time.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orvan::svg
{

/// Equality of two names of the same length. Names are short, so two overlapping words nearly always cover them; that
/// is much cheaper than calling the library's comparison.
inline bool AreEqual(const char* a, const char* b, std::size_t size) noexcept
{
	const auto differ = [&]<typename Word>(std::size_t at, Word)
	{
		Word wordA;
		Word wordB;
		std::memcpy(&wordA, a + at, sizeof(Word));
		std::memcpy(&wordB, b + at, sizeof(Word));
		return wordA ^ wordB;
	};
	using std::uint16_t, std::uint32_t, std::uint64_t;
	if (size > 16)
		return std::memcmp(a, b, size) == 0;
	if (size >= 8)
		return (differ(0, uint64_t()) | differ(size - 8, uint64_t())) == 0;
	if (size >= 4)
		return (differ(0, uint32_t()) | differ(size - 4, uint32_t())) == 0;
	if (size >= 2)
		return differ(0, uint16_t()) == 0 && a[size - 1] == b[size - 1];
	return size == 0 || *a == *b;
}

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
			if (row.name.size() == name.size() && AreEqual(row.name.data(), name.data(), name.size()))
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
