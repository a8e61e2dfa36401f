// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
/// Numbers of path data, found and converted ahead of who reads them: a tape, as fast readers of other formats make one
/// of what they find. Of `M1.5-20 30,40z` it holds
///
///     values   1.5  -20  30  40
///     starts   1    5    8   11     the places of the numbers' first characters, behind their signs
///     marks    0    13              the places of M and z
///
/// Between two marks stand numbers, well separated, and nothing else. A mark is any character that is no part of a
/// number and separates none. The tape ends where anything unusual stands, as `NumberMasks` has it, and before a number
/// with too many digits.
class NumberTape
{
public:
	/// Whether this processor can record one. It takes AVX-512 with its instructions for bytes, as processors have them
	/// since Ice Lake and Zen 4; without these a tape takes longer than reading number by number.
	static bool IsAvailable();

	/// Records the text from `at` on, up to `end` or as far as there is room; places count from `at`. `isBehindNumber`
	/// is as NumberMasks has it. Numbers of more than fifteen digits need not be the nearest doubles; the tape ends
	/// before the first of them unless it `takesLongNumbers`.
	void Record(const char* at, const char* end, bool isBehindNumber, bool takesLongNumbers);

	/// How many values come at most in one look at sixty-four characters, and how many more there are room for.
	static constexpr std::size_t kMostAtOnce = 32;
	static constexpr std::size_t kMostNumbers = 256;
	static constexpr std::size_t kMostMarks = 256;

	/// How many of the starts behind the last one are `kNone`, as the mark behind the last one is `kNoMark`. So that
	/// the next numbers stand before the next mark just when their places are less, to the tape's end as well.
	static constexpr std::size_t kGroup = 7;
	static constexpr std::uint16_t kNone = 0xffff;
	static constexpr std::uint16_t kNoMark = 0xfffe;

	/// Forgets everything.
	void Clear();

	std::size_t numberCount;
	std::size_t markCount;
	bool isAtEnd; ///< Whether nothing more could be recorded right behind what the tape holds.
	bool isWhole; ///< Whether nothing but blanks stands behind that.

	std::array<double, kMostNumbers + kMostAtOnce> values;
	std::array<std::uint16_t, kMostNumbers + kMostAtOnce + kGroup> starts;
	std::array<std::uint16_t, kMostMarks + 2 * kMostAtOnce + 1> marks;

private:
	class Recorder;

	void End();
};
} // namespace orvan::grammar
