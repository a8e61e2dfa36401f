// SPDX-License-Identifier: MIT
/// Looking names up in a table that is fixed at compile time.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orvan::svg
{

inline constexpr std::size_t kLongestName = 32;

/// Equality of two names of the same length, `kLongestName` at most. Names are short, so that overlapping words cover
/// them; that is much cheaper than calling the library's comparison.
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
	if (size > 24)
		return (differ(0, uint64_t()) | differ(8, uint64_t()) | differ(16, uint64_t()) |
				differ(size - 8, uint64_t())) == 0;
	if (size > 16)
		return (differ(0, uint64_t()) | differ(8, uint64_t()) | differ(size - 8, uint64_t())) == 0;
	if (size >= 8)
		return (differ(0, uint64_t()) | differ(size - 8, uint64_t())) == 0;
	if (size >= 4)
		return (differ(0, uint32_t()) | differ(size - 4, uint32_t())) == 0;
	if (size >= 2)
		return differ(0, uint16_t()) == 0 && a[size - 1] == b[size - 1];
	return size == 0 || *a == *b;
}

namespace detail
{

/// Goes through odd multiples of the golden ratio's bits until `tryPlace` succeeds with one.
template <typename Word, typename TryPlace>
constexpr void FindMultiplier(Word& multiplier, Word golden, TryPlace tryPlace)
{
	int left = 1000;
	for (multiplier = golden; !tryPlace(); multiplier += 2 * golden)
	{
		if (left-- == 0)
			throw "two names are the same, or agree in all that the hash looks at";
	}
}

} // namespace detail

/// A perfect hash from names to the rows of a constexpr table: every name has a slot of its own, so that one comparison
/// decides. The compiler looks for a multiplier with which that is so, and finds none when a name is listed twice.
template <std::size_t rowCount>
class NameIndex
{
public:
	/// `rows` must have a member `name`; the index refers to them by position.
	template <typename Row>
	consteval explicit NameIndex(const std::array<Row, rowCount>& rows)
	{
		for (const Row& row : rows)
		{
			if (row.name.size() > kLongestName)
				throw "a name is too long to be compared";
		}
		detail::FindMultiplier(_multiplier, std::uint32_t{0x9e3779b1}, [&] { return TryPlace(rows); });
	}

	/// The row of `name`, or null.
	template <typename Row>
	const Row* Find(const std::array<Row, rowCount>& rows, std::string_view name) const noexcept
	{
		if (name.empty())
			return nullptr;
		const std::size_t number = _slots[Position(name)];
		if (number == 0)
			return nullptr;
		const Row& row = rows[number - 1];
		return row.name.size() == name.size() && AreEqual(row.name.data(), name.data(), name.size()) ? &row : nullptr;
	}

private:
	static constexpr int kSlotBits = 8;
	static_assert(rowCount < (1 << kSlotBits) / 2);

	/// Gives each row its slot; false when two rows want the same.
	template <typename Row>
	constexpr bool TryPlace(const std::array<Row, rowCount>& rows) noexcept
	{
		_slots = {};
		for (std::size_t i = 0; i < rowCount; i++)
		{
			std::uint8_t& slot = _slots[Position(rows[i].name)];
			if (slot != 0)
				return false;
			slot = static_cast<std::uint8_t>(i + 1);
		}
		return true;
	}

	/// Length and three characters tell the names of the tables apart.
	constexpr std::size_t Position(std::string_view name) const noexcept
	{
		const auto at = [&](std::size_t i)
		{
			return static_cast<std::uint32_t>(static_cast<unsigned char>(name[i]));
		};
		const std::uint32_t key = at(0) | at(name.size() * 3 / 4) << 8 | at(name.size() - 1) << 16 |
								  static_cast<std::uint32_t>(name.size()) << 24;
		return key * _multiplier >> (32 - kSlotBits);
	}

	std::uint32_t _multiplier = 0;
	std::array<std::uint8_t, std::size_t{1} << kSlotBits> _slots{};
};

/// A hash table from names to the rows of a constexpr table that is too large for a perfect hash: names that want the
/// same slot stand in the next ones (linear probing).
template <std::size_t rowCount>
class ProbedNameIndex
{
public:
	/// `rows` must have a member `name`; the index refers to them by position.
	template <typename Row>
	consteval explicit ProbedNameIndex(const std::array<Row, rowCount>& rows)
	{
		for (std::size_t i = 0; i < rowCount; i++)
		{
			const std::string_view name = rows[i].name;
			if (name.empty() || name.size() > kLongestName)
				throw "a name is empty, or too long to be compared";
			std::size_t slot = Position(name);
			for (; _slots[slot] != 0; slot = (slot + 1) % kSlotCount)
			{
				if (rows[_slots[slot] - 1u].name == name)
					throw "a name is listed twice";
			}
			_slots[slot] = static_cast<std::uint8_t>(i + 1);
		}
	}

	/// The row of `name`, or null.
	template <typename Row>
	const Row* Find(const std::array<Row, rowCount>& rows, std::string_view name) const noexcept
	{
		if (name.empty())
			return nullptr;
		const std::size_t slot = Position(name);
		if (_slots[slot] == 0)
			return nullptr;
		const Row& row = rows[_slots[slot] - 1u];
		return Is(row, name) ? &row : FindBehind(rows, name, slot);
	}

private:
	template <typename Row>
	static bool Is(const Row& row, std::string_view name) noexcept
	{
		return row.name.size() == name.size() && AreEqual(row.name.data(), name.data(), name.size());
	}

	/// Few names share their slot, so this stands apart from what all have to go through.
	template <typename Row>
	[[gnu::noinline]] const Row* FindBehind(const std::array<Row, rowCount>& rows, std::string_view name,
											std::size_t slot) const noexcept
	{
		while (_slots[slot = (slot + 1) % kSlotCount] != 0)
		{
			const Row& row = rows[_slots[slot] - 1u];
			if (Is(row, name))
				return &row;
		}
		return nullptr;
	}

	static constexpr std::size_t kSlotCount = 1024;
	static_assert(rowCount < 256);

	static constexpr std::size_t Position(std::string_view name) noexcept
	{
		const auto at = [&](std::size_t i)
		{
			return static_cast<std::uint32_t>(static_cast<unsigned char>(name[i]));
		};
		const std::uint32_t key = at(0) | at(name.size() / 2) << 8 | at(name.size() - 1) << 16 |
								  (static_cast<std::uint32_t>(name.size()) + at(name.size() * 3 / 4) * 7) << 24;
		return (key * 0x9e3779b1u >> 16) % kSlotCount;
	}

	std::array<std::uint8_t, kSlotCount> _slots{};
};

/// A name of at most sixteen characters as two words, with zeros behind it.
struct NameWords
{
	static constexpr std::size_t kLongest = 16;

	std::uint64_t low;
	std::uint64_t high;

	/// Of `size` characters at `at`, where sixteen are readable.
	static NameWords Read(const char* at, std::size_t size) noexcept;

	constexpr bool operator==(const NameWords& other) const noexcept
	{
		return ((low ^ other.low) | (high ^ other.high)) == 0;
	}

	static constexpr NameWords Of(std::string_view name) noexcept
	{
		NameWords words{};
		for (std::size_t i = 0; i < name.size(); i++)
		{
			const std::size_t place = std::endian::native == std::endian::little ? i % 8 : 7 - i % 8;
			(i < 8 ? words.low : words.high) |= std::uint64_t{static_cast<unsigned char>(name[i])} << place * 8;
		}
		return words;
	}
};

namespace detail
{

/// By size: ones for the characters of a name.
inline constexpr auto kNameMasks = []
{
	std::array<NameWords, NameWords::kLongest + 1> masks{};
	for (std::size_t size = 0; size < masks.size(); size++)
		masks[size] =
			NameWords::Of(std::string_view("\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff", size));
	return masks;
}();

} // namespace detail

inline NameWords NameWords::Read(const char* at, std::size_t size) noexcept
{
	NameWords words;
	std::memcpy(&words, at, sizeof(words));
	words.low &= detail::kNameMasks[size].low;
	words.high &= detail::kNameMasks[size].high;
	return words;
}

/// A perfect hash, as above, from short names to rows: without a branch on a name's length, which nobody foresees.
template <std::size_t rowCount, int slotBits = 8>
class ShortNameIndex
{
public:
	/// Takes those names of `rows`, which must have a member `name`, that are short and have no prefix.
	template <typename Row>
	consteval explicit ShortNameIndex(const std::array<Row, rowCount>& rows)
	{
		detail::FindMultiplier(_multiplier, std::uint64_t{0x9e3779b97f4a7c15}, [&] { return TryPlace(rows); });
	}

	/// The number of the row, the first one's being 1, that has the name of `size` characters at `at`, where sixteen
	/// are readable; 0 when there is none.
	std::uint8_t Find(const char* at, std::size_t size) const noexcept
	{
		if (size > NameWords::kLongest) [[unlikely]]
			return 0;
		const NameWords name = NameWords::Read(at, size);
		const std::uint8_t number = _slots[Position(name)];
		return _names[number] == name ? number : 0;
	}

private:
	static_assert(rowCount < (1 << slotBits) / 2 && rowCount < 256);

	template <typename Row>
	constexpr bool TryPlace(const std::array<Row, rowCount>& rows) noexcept
	{
		_slots = {};
		for (std::size_t i = 0; i < rowCount; i++)
		{
			const std::string_view name = rows[i].name;
			bool hasPrefix = false;
			for (const char c : name)
				hasPrefix |= c == ':';
			if (hasPrefix || name.size() > NameWords::kLongest)
				continue;
			_names[i + 1] = NameWords::Of(name);
			std::uint8_t& slot = _slots[Position(_names[i + 1])];
			if (slot != 0)
				return false;
			slot = static_cast<std::uint8_t>(i + 1);
		}
		return true;
	}

	constexpr std::size_t Position(const NameWords& name) const noexcept
	{
		return (name.low + name.high) * _multiplier >> (64 - slotBits);
	}

	std::uint64_t _multiplier = 0;
	std::array<std::uint8_t, std::size_t{1} << slotBits> _slots{};
	std::array<NameWords, rowCount + 1> _names{}; ///< The first one is no row's.
};

} // namespace orvan::svg
