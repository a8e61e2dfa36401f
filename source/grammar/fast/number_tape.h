// SPDX-License-Identifier: MIT
#pragma once

#include "fast/path_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
/// Numbers of path data, found and converted ahead of who reads them: a tape, as fast readers of other formats make one
/// of what they find. Of `M1.5-20 30,40z` it holds
///
///     values         1.5  -20  30  40
///     starts         1    5    8   11     the places of the numbers' first characters, behind their signs
///     letters        M  z
///     marks          0  13                the places of these
///     numbersBefore  0  4   4             how many numbers stand before each of these, and before the tape's end
///
/// Between two marks stand numbers, well separated, and nothing else. A mark is any character that is no part of a
/// number and separates none. Numbers that are unusual, as `NumberMasks` has it, are read by a `PathReader`, and start
/// with their signs. The tape ends where that can not read one, and before a number so large that sums might not be
/// finite.
///
/// Where more than every third number is unusual, another tape takes longer than it saves.
class NumberTape
{
public:
	/// Whether this processor can record one. It takes AVX-512 with its instructions for bytes, as processors have them
	/// since Ice Lake and Zen 4; without these a tape takes longer than reading number by number.
	static bool IsAvailable();

	/// Records the text from `at` on, up to `end` or as far as there is room; places count from `at`. `isBehindNumber`
	/// is as NumberMasks has it.
	void Record(const char* at, const char* end, bool isBehindNumber, PathDialect dialect);

	/// How many values come at most in one look at sixty-four characters, and how many more there are room for.
	static constexpr std::size_t kMostAtOnce = 32;
	static constexpr std::size_t kMostNumbers = 512;
	static constexpr std::size_t kMostMarks = 256;

	std::size_t numberCount;
	std::size_t markCount;
	const char* behind; ///< Where what the tape holds ends.
	bool isAtEnd;       ///< Whether a tape from there on is of no use: it can hold nothing, or saves no time.
	bool isWhole;       ///< Whether nothing but blanks stands there.

	std::array<double, kMostNumbers + kMostAtOnce + 8> values; ///< Eight more may be read.
	std::array<std::uint16_t, kMostNumbers + kMostAtOnce> starts;
	std::array<char, kMostMarks + 2 * kMostAtOnce> letters;
	std::array<std::uint16_t, kMostMarks + 2 * kMostAtOnce> marks;
	std::array<std::uint16_t, kMostMarks + 2 * kMostAtOnce + 1> numbersBefore;

private:
	class Recorder;
};
} // namespace orvan::grammar
