// SPDX-License-Identifier: MIT
#pragma once

/// Kinds of bytes, as CSS Syntax tells them apart.
///
/// Texts are UTF-8 that nobody has preprocessed: carriage returns and form feeds count as line ends, a zero byte stands
/// for U+FFFD, and every byte beyond ASCII may stand in a name.

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan::css
{
enum CharacterKind : std::uint8_t
{
	kSpaceKind = 1,
	kNewlineKind = 2,
	kDigitKind = 4,
	kHexKind = 8,
	kNameStartKind = 16,
	kNameKind = 32,
	kUpperKind = 64,
	kUnprintableKind = 128
};

inline constexpr std::array<std::uint8_t, 256> kCharacterKinds = []
{
	std::array<std::uint8_t, 256> kinds{};
	const auto add = [&kinds](unsigned from, unsigned to, unsigned kind)
	{
		for (unsigned c = from; c <= to; c++)
			kinds[c] = static_cast<std::uint8_t>(kinds[c] | kind);
	};
	for (const char c : std::string_view(" \t\n\r\f"))
		add(static_cast<unsigned char>(c), static_cast<unsigned char>(c), kSpaceKind);
	for (const char c : std::string_view("\n\r\f"))
		add(static_cast<unsigned char>(c), static_cast<unsigned char>(c), kNewlineKind);
	add('0', '9', kDigitKind | kHexKind | kNameKind);
	add('a', 'f', kHexKind);
	add('A', 'F', kHexKind);
	add('a', 'z', kNameStartKind | kNameKind);
	add('A', 'Z', kNameStartKind | kNameKind | kUpperKind);
	add('_', '_', kNameStartKind | kNameKind);
	add('-', '-', kNameKind);
	add(0x80, 0xff, kNameStartKind | kNameKind);
	add(0, 0, kNameStartKind | kNameKind);
	add(0x01, 0x08, kUnprintableKind);
	add(0x0b, 0x0b, kUnprintableKind);
	add(0x0e, 0x1f, kUnprintableKind);
	add(0x7f, 0x7f, kUnprintableKind);
	return kinds;
}();

/// True when the byte is of one of the kinds.
constexpr bool Is(char c, unsigned kinds)
{
	return (kCharacterKinds[static_cast<unsigned char>(c)] & kinds) != 0;
}

/// ASCII capitals become small letters; nothing else changes.
constexpr char ToLower(char c)
{
	return Is(c, kUpperKind) ? static_cast<char>(c + ('a' - 'A')) : c;
}
} // namespace orvan::css
