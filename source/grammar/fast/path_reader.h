// SPDX-License-Identifier: MIT
#pragma once

#include "fast/number_masks.h"
#include "fast/short_decimal.h"
#include "shared/text_checks.h"
#include "svgpp/library.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <tuple>

namespace orvan::grammar
{
/// What stands before a number, which decides what may separate the two.
enum class After
{
	start,    ///< The start of "points": blanks.
	command,  ///< A command letter: blanks.
	number,   ///< A number of path data: blanks, a comma, or nothing.
	abscissa, ///< The first number of a pair in "points": blanks, a comma, or just a minus.
	pair      ///< A whole pair in "points": blanks or a comma.
};

/// How the numbers that follow are separated.
constexpr Separation SeparationAfter(After after)
{
	return after == After::command || after == After::number ? Separation::loose : Separation::strict;
}

/// Whether a number stands right in front.
constexpr bool IsNumber(After after)
{
	return after != After::command && after != After::start;
}

/// Whose path data is read.
enum class PathDialect
{
	plain,   ///< The grammar library's, to the letter.
	complete ///< What browsers take: numbers may end with their point, and radii may be negative.
};

/// What an arc is written with.
struct ArcValues
{
	double radiusX, radiusY, rotation;
	bool isLarge, isSweep;
	double x, y;
};

/// Reads the numbers of path data and "points".
///
/// Where numbers stand is found for sixty-four characters at once (`NumberMasks`). Usual numbers of up to eight digits
/// before the decimal point and up to eight behind it are converted without a look at single characters, two at a time
/// where they come in pairs. Others are read character by character, and by the library where digits are too many. Near
/// its end the text is copied to a buffer of the reader's own, with zeros behind it, so that looking ahead never leaves
/// what may be read.
template <PathDialect dialect>
class PathReader
{
public:
	/// `sink`, if any, is told how far a long text was read.
	explicit PathReader(std::string_view text, PathSink* sink = nullptr)
		: _at(text.data()), _end(text.data() + text.size()), _sink(sink)
	{
	}

	PathReader(const PathReader&) = delete;
	PathReader& operator=(const PathReader&) = delete;

	/// How many characters are left.
	std::size_t CountRest() const
	{
		return static_cast<std::size_t>(_end - _at);
	}

	/// Whether anything but blanks is left; takes nothing.
	bool HasMore() const
	{
		return std::find_if_not(_at, _end, IsSpace) != _end;
	}

	/// Takes the next character that is no blank, which should be a command; false when there is none.
	bool TakeCommand(char& command)
	{
		SkipSpaces();
		if (_at == _end)
			return false;
		command = *_at++;
		return true;
	}

	/// Undoes the last `TakeCommand`.
	void PutBack()
	{
		--_at;
	}

	/// Whether another group of numbers follows instead of a command or the end.
	bool HasNumbers()
	{
		SkipSpaces();
		if (dialect == PathDialect::complete && Peek() == ',')
			SkipLastComma();
		return _at != _end && IsBeginning(*_at);
	}

	/// Whether a group of numbers may begin with a character. All that they are made of, and all that separates them,
	/// comes before the letters. What is neither fails to be a number, or to be a command, later.
	static bool IsBeginning(char c)
	{
		return c < 'A';
	}

	/// Reads as many numbers as ReadNumber does.
	template <After after, std::size_t count>
	bool ReadNumbers(std::array<double, count>& numbers)
	{
		if constexpr (count == 1)
			return ReadNumber<after>(numbers[0]);
		else
		{
			if (!ReadPair<after, After::number>(numbers[0], numbers[1]))
				return false;
			for (std::size_t i = 2; i != count; i += 2)
			{
				if (!ReadPair<After::number, After::number>(numbers[i], numbers[i + 1]))
					return false;
			}
			return true;
		}
	}

	/// Reads the seven values of an arc, which has flags between its numbers, and, but in the complete dialect, radii
	/// without signs.
	template <After after>
	bool ReadArc(ArcValues& arc)
	{
		return ReadSeenArc<after>(arc) || ReadArcSlowly<after>(arc);
	}

	/// Reads a number with a sign or without and what separates it from what stands before. False when there is none;
	/// the reader is then of no more use.
	template <After after>
	[[gnu::always_inline]] bool ReadNumber(double& number)
	{
		if (_numbers.ends != 0) [[likely]]
			return TakeNumber(number) || ReadUnusual(after, number);
		return ReadSlowly(after, number);
	}

	/// Reads two numbers as ReadNumber does, in less time than one after the other.
	template <After after, After between>
	[[gnu::always_inline]] bool ReadPair(double& x, double& y)
	{
		if (!HasTwo()) [[unlikely]]
			LookAhead(after);
		if (!HasTwo()) [[unlikely]]
			return ReadSlowly(after, x) && ReadNumber<between>(y);
		const std::uint64_t laterStarts = WithoutLowest(_numbers.starts);
		const std::uint64_t laterEnds = WithoutLowest(_numbers.ends);
		const std::uint64_t end = CountTrailingZeros(laterEnds);
		const ShortDecimal first = Between(CountTrailingZeros(_numbers.starts), CountTrailingZeros(_numbers.ends));
		const ShortDecimal second = Between(CountTrailingZeros(laterStarts), end);
		if (first.digits > ShortDecimal::kMostDigits || second.digits > ShortDecimal::kMostDigits ||
			HasOthers(_at, _seen + end)) [[unlikely]]
			return ReadOneByOne(after, between, x, y);
		std::tie(x, y) = Convert(first, second);
		_numbers.starts = WithoutLowest(laterStarts);
		_numbers.ends = WithoutLowest(laterEnds);
		_at = _seen + end;
		return true;
	}

private:
	/// How far behind the first character that is seen others are read.
	static constexpr std::size_t kLookAhead = NumberMasks::kCount + 2 * ShortDecimal::kMostDigits;

	/// How many characters are read before the sink is told again.
	static constexpr std::size_t kStride = std::size_t(64) << 10;

	/// The place of the lowest bit; there must be one.
	static std::uint64_t CountTrailingZeros(std::uint64_t bits)
	{
		return static_cast<unsigned>(__builtin_ctzll(bits));
	}

	static std::uint64_t WithoutLowest(std::uint64_t bits)
	{
		return bits & (bits - 1);
	}

	bool HasTwo() const
	{
		return WithoutLowest(_numbers.ends) != 0;
	}

	/// Whether as many numbers that are known to be usual are left.
	bool HasSeen(std::size_t count) const
	{
		std::uint64_t ends = _numbers.ends;
		for (std::size_t i = 1; i != count; ++i)
			ends = WithoutLowest(ends);
		return ends != 0;
	}

	/// Moves behind blanks, a comma, and blanks in what was seen ahead.
	std::uint64_t BehindSeparator(std::uint64_t place) const
	{
		const auto skipSpaces = [this, &place]
		{
			while (place < NumberMasks::kCount && IsSpace(_seen[place]))
				++place;
		};
		skipSpaces();
		if (_seen[place] == ',')
		{
			++place;
			skipSpaces();
		}
		return place;
	}

	/// Takes an arc, of which enough was seen ahead for it to be there.
	bool TakeArc(ArcValues& arc)
	{
		std::uint64_t starts = _numbers.starts;
		std::uint64_t ends = _numbers.ends;
		std::uint64_t end = 0;
		bool areShort = true;
		const auto take = [&]
		{
			end = CountTrailingZeros(ends);
			const ShortDecimal value = Between(CountTrailingZeros(starts), end);
			areShort &= value.digits <= ShortDecimal::kMostDigits;
			starts = WithoutLowest(starts);
			ends = WithoutLowest(ends);
			return value;
		};
		const ShortDecimal radiusX = take();
		const ShortDecimal radiusY = take();
		const ShortDecimal rotation = take();
		if (dialect == PathDialect::plain && (radiusX.isNegative | radiusY.isNegative) != 0)
			return false;

		// Flags need not be separated from anything, so that they are looked at one by one.
		const std::uint64_t largePlace = BehindSeparator(end);
		const std::uint64_t sweepPlace = BehindSeparator(largePlace + 1);
		const std::uint64_t behind = sweepPlace + 1;
		const char large = _seen[largePlace];
		const char sweep = _seen[sweepPlace];
		if (behind >= NumberMasks::kCount - 1 || (large != '0' && large != '1') || (sweep != '0' && sweep != '1'))
			return false;
		// What runs on behind them is the abscissa.
		const std::uint64_t here = std::uint64_t{1} << behind;
		starts &= ~(here - 1);
		starts |= IsDigit(_seen[behind]) || _seen[behind] == '.' ? here : 0;
		ends &= ~(here | (here - 1));
		if (WithoutLowest(ends) == 0)
			return false;
		const ShortDecimal x = take();
		const ShortDecimal y = take();
		if (!areShort || HasOthers(_at, _seen + end))
			return false;
		std::tie(arc.radiusX, arc.radiusY) = Convert(radiusX, radiusY);
		arc.rotation = Convert(rotation);
		arc.isLarge = large == '1';
		arc.isSweep = sweep == '1';
		std::tie(arc.x, arc.y) = Convert(x, y);
		_numbers.starts = starts;
		_numbers.ends = ends;
		_at = _seen + end;
		return true;
	}

	/// The next character; zero at the end. A zero in the text means nothing good either.
	char Peek() const
	{
		return _at != _end ? *_at : '\0';
	}

	void SkipSpaces()
	{
		while (_at != _end && IsSpace(*_at))
			++_at;
	}

	/// Takes a comma, and the blanks behind it, that nothing but a command or the end follows. Blanks were skipped.
	void SkipLastComma()
	{
		const char* const next = std::find_if_not(_at + 1, _end, IsSpace);
		if (next == _end || IsLetter(*next))
			_at = next;
	}

	/// Reads the seven values of an arc in less time than one after the other. They must have been seen ahead; nothing
	/// is taken otherwise.
	template <After after>
	bool ReadSeenArc(ArcValues& arc)
	{
		// Flags that run together are seen as one number, and together with the abscissa.
		constexpr std::size_t kFewest = 5;
		bool isFresh = false;
		if (!HasSeen(kFewest))
		{
			LookAhead(after);
			isFresh = true;
		}
		while (HasSeen(kFewest))
		{
			if (TakeArc(arc))
				return true;
			if (isFresh)
				return false;
			LookAhead(after);
			isFresh = true;
		}
		return false;
	}

	template <After after>
	bool ReadArcSlowly(ArcValues& arc)
	{
		return ReadRadius<after>(arc.radiusX) && ReadRadius<After::number>(arc.radiusY) &&
			   ReadNumber<After::number>(arc.rotation) && ReadFlag(arc.isLarge) && ReadFlag(arc.isSweep) &&
			   ReadPair<After::number, After::number>(arc.x, arc.y);
	}

	/// Reads a radius as ReadNumber after a command or a number; in plain path data it has no sign.
	template <After after>
	bool ReadRadius(double& number)
	{
		if constexpr (dialect == PathDialect::complete)
			return ReadNumber<after>(number);
		SkipSeparator(after == After::number);
		return Peek() != '-' && Peek() != '+' && ReadNumber<After::command>(number);
	}

	/// Reads a flag of an arc, a single digit that need not be separated from anything.
	bool ReadFlag(bool& flag)
	{
		SkipSeparator(true);
		const char c = Peek();
		if (c != '0' && c != '1')
			return false;
		flag = c == '1';
		// A flag that stands alone was taken for a number.
		const bool isNumber = _numbers.ends != 0 && _seen + CountTrailingZeros(_numbers.starts) == _at &&
							  _seen + CountTrailingZeros(_numbers.ends) == _at + 1;
		if (isNumber)
			TakeUsual();
		else
		{
			_numbers.ends = 0;
			++_at;
		}
		return true;
	}

	/// Takes the next number that was seen ahead, of which there must be one. It may have more digits than a short
	/// decimal.
	[[gnu::always_inline]] ShortDecimal TakeUsual()
	{
		const std::uint64_t end = CountTrailingZeros(_numbers.ends);
		const ShortDecimal number = Between(CountTrailingZeros(_numbers.starts), end);
		_numbers.starts = WithoutLowest(_numbers.starts);
		_numbers.ends = WithoutLowest(_numbers.ends);
		_at = _seen + end;
		return number;
	}

	/// The number between two places in what was seen.
	[[gnu::always_inline]] ShortDecimal Between(std::uint64_t start, std::uint64_t end) const
	{
		const std::uint64_t length = end - start;
		const std::uint64_t integerDigits = CountTrailingZeros(_numbers.points >> start | std::uint64_t{1} << length);
		const std::uint64_t hasPoint = integerDigits != length;
		return {_seen + start, integerDigits, hasPoint, length - hasPoint, _numbers.signs >> start & 1};
	}

	/// Takes the next number that was seen ahead. When that is not a usual one after all, it stays where it is.
	[[gnu::always_inline]] bool TakeNumber(double& number)
	{
		const char* const from = _at;
		const ShortDecimal usual = TakeUsual();
		const bool isShort = usual.digits <= ShortDecimal::kMostDigits;
		if (isShort) [[likely]]
			number = Convert(usual);
		// In the complete dialect longer ones are read more exactly than the library does.
		constexpr std::uint64_t kMostExact = 15;
		const bool isLong = dialect == PathDialect::plain || usual.digits <= kMostExact;
		if ((isShort || (isLong && ConvertLong(usual, number))) && !HasOthers(from, _at)) [[likely]]
			return true;
		_at = from;
		return false;
	}

	/// Whether something that neither belongs to numbers nor separates them, such as a command, stands between two
	/// places in what was seen.
	bool HasOthers(const char* from, const char* to) const
	{
		return (_numbers.others >> (from - _seen) & ((std::uint64_t{1} << (to - from)) - 1)) != 0;
	}

	bool ReadOneByOne(After after, After between, double& x, double& y);
	bool ReadSlowly(After after, double& number);
	bool ReadUnusual(After after, double& number);
	void LookAhead(After after);
	void BeginStride();
	void SkipSeparator(bool mayBeComma);

	const char* _at;
	const char* _end;
	PathSink* _sink;

	NumberMasks _numbers;        ///< What was seen ahead and is not yet taken.
	const char* _seen = nullptr; ///< The first of the characters that were seen.

	/// With fewer characters left than these, the sink is to be told, or the end to be copied; zero in the copy.
	std::size_t _restOfStride = std::max(kLookAhead, CountRest() - std::min(CountRest(), kStride));
	std::array<char, 2 * kLookAhead> _tail;
};

extern template class PathReader<PathDialect::plain>;
extern template class PathReader<PathDialect::complete>;
} // namespace orvan::grammar
