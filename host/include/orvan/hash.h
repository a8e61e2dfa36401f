// SPDX-License-Identifier: MIT
/// The host's 64-bit hash of bytes: fast, well mixed, the same in every process and usable at compile time.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace orvan
{
namespace detail
{
constexpr std::uint64_t MixProduct(std::uint64_t a, std::uint64_t b) noexcept
{
	__extension__ using Wide = unsigned __int128;
	const Wide product = static_cast<Wide>(a) * b;
	return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Reads up to eight bytes as a little-endian number.
constexpr std::uint64_t ReadBytes(const char* bytes, std::size_t count) noexcept
{
	if (!std::is_constant_evaluated() && count == 8)
	{
		std::uint64_t word = 0;
		std::memcpy(&word, bytes, 8);
		return word;
	}
	if (!std::is_constant_evaluated() && count >= 4)
	{
		// Two halves, which overlap in bytes that are the same in both.
		std::uint32_t first = 0;
		std::uint32_t last = 0;
		std::memcpy(&first, bytes, 4);
		std::memcpy(&last, bytes + count - 4, 4);
		return first | static_cast<std::uint64_t>(last) << (8 * (count - 4));
	}
	std::uint64_t word = 0;
	for (std::size_t i = 0; i < count; i++)
		word |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
	return word;
}
} // namespace detail

/// The hash of `bytes`. Never 0, so that 0 can stand for "not yet computed".
constexpr std::uint64_t HashBytes(std::string_view bytes) noexcept
{
	constexpr std::uint64_t kSecret0 = 0xa0761d6478bd642f;
	constexpr std::uint64_t kSecret1 = 0xe7037ed1a0b428db;
	std::uint64_t state = kSecret0 ^ bytes.size();
	const char* at = bytes.data();
	std::size_t left = bytes.size();
	for (; left > 8; at += 8, left -= 8)
		state = detail::MixProduct(state ^ detail::ReadBytes(at, 8), kSecret1);
	state = detail::MixProduct(state ^ detail::ReadBytes(at, left), kSecret1);
	state = detail::MixProduct(state ^ kSecret1, kSecret0);
	return state != 0 ? state : 1;
}

} // namespace orvan
