#pragma once

#include "decimal.h"
#include "grammar_library.h"
#include "text_checks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>

namespace orvan::grammar
{
/// What stands before a number, which decides what may part the two.
enum class After
{
	start,    ///< The start of "points": blanks.
	command,  ///< A command letter: blanks.
	number,   ///< A number of path data: blanks, a comma, or nothing.
	abscissa, ///< The first number of a pair in "points": blanks, a comma, or just a minus.
	pair      ///< A whole pair in "points": blanks or a comma.
};

/// Reads the numbers of path data and "points".
///
/// The usual number, up to sixteen characters with what parts it from the one before, is found with one look at all of
/// them, and the next one is sought before this one is converted. Whatever does not fit this mould is read character by
/// character, and by the library where digits are too many. Near its end the text is copied to a buffer of the reader's
/// own, with zeros behind it, so that looking ahead never leaves what may be read.
class PathReader
{
public:
	explicit PathReader(std::string_view text) : _at(text.data()), _end(text.data() + text.size()), _lastSafe(nullptr)
	{
		if (text.size() < kLookAhead)
			MoveToTail();
		else
			_lastSafe = _end - kLookAhead;
	}

	PathReader(const PathReader&) = delete;
	PathReader& operator=(const PathReader&) = delete;

	bool IsAtEnd() const
	{
		return _at == _end;
	}

	void SkipSpaces()
	{
		while (_at != _end && IsSpace(*_at))
			++_at;
	}

	/// Whether anything but blanks is left; takes nothing.
	bool HasPair() const
	{
		return std::find_if_not(_at, _end, IsSpace) != _end;
	}

	/// The next character; zero at the end. A zero in the text means nothing good either.
	char Peek() const
	{
		return _at != _end ? *_at : '\0';
	}

	/// Takes the next character, which must exist.
	void Take()
	{
		++_at;
	}

	/// Reads a number with a sign or without and what parts it from what stands before. False when there is none; the
	/// reader is then of no more use.
	template <After after>
	[[gnu::always_inline]] bool ReadNumber(double& number)
	{
		if (_at > _lastSafe) [[unlikely]]
			MoveToTail();

		const CharacterMasks masks = ClassifySixteen(_at);
		const std::uint32_t starts = masks.digits | masks.points | kBehind;
		const unsigned start = static_cast<unsigned>(std::countr_zero(starts));
		// From here on, bit 0 stands for the first digit or the point. The bits that are set are those of no digits.
		const std::uint32_t stops = (~masks.digits | kBehind) >> start;
		const unsigned integerDigits = static_cast<unsigned>(std::countr_zero(stops));
		const std::uint32_t hasPoint = (masks.points >> start) >> integerDigits & 1;
		// Computed without a branch: which numbers have a point is anybody's guess.
		const std::uint32_t ifPoint = 0 - hasPoint;
		const unsigned afterPoint = static_cast<unsigned>(std::countr_zero(stops & (stops - 1)));
		const unsigned fractionDigits = (afterPoint - integerDigits - 1) & ifPoint;
		const unsigned length = integerDigits + hasPoint + fractionDigits;

		const char* const first = _at + start;
		const bool isUsual = start <= kLongestPrefix && start + length < kSeen && integerDigits <= 8 &&
							 fractionDigits <= 8 && fractionDigits >= hasPoint && (first[length] | 0x20) != 'e' &&
							 IsPrefix<after>(start);
		if (!isUsual) [[unlikely]]
			return ReadUnusualNumber(after, number);

		const std::uint64_t mantissa = ReadDigits(first, integerDigits) * kIntegerPowersOfTen[fractionDigits] +
									   ReadDigits(first + integerDigits + 1, fractionDigits);
		// Sixteen digits fit a signed integer, which is converted in one step.
		const double magnitude =
			static_cast<double>(static_cast<std::int64_t>(mantissa)) / kPowersOfTen[fractionDigits];
		// A sign, if any, ends the prefix. Without a prefix this looks at the number itself, which is no sign.
		const std::uint64_t sign = static_cast<std::uint64_t>(*(start != 0 ? first - 1 : first) == '-') << 63;
		number = std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) ^ sign);
		_at = first + length;
		return true;
	}

	/// As ReadNumber after a command or a number, but without a sign.
	template <After after>
	bool ReadMagnitude(double& number)
	{
		SkipSeparator(after == After::number);
		return Peek() != '-' && Peek() != '+' && ReadNumber<After::command>(number);
	}

	/// Reads a flag of an arc, a single digit that need not be parted from anything.
	bool ReadFlag(bool& flag)
	{
		SkipSeparator(true);
		const char c = Peek();
		if (c != '0' && c != '1')
			return false;
		flag = c == '1';
		Take();
		return true;
	}

private:
	static constexpr std::size_t kLookAhead = 24;
	static constexpr unsigned kSeen = 16;
	static constexpr std::uint32_t kBehind = 1u << kSeen;
	static constexpr unsigned kLongestPrefix = 2;

	/// Kinds of the characters before a number, in two bits each.
	enum Kind : unsigned
	{
		other,
		space,
		comma,
		minus
	};

	static constexpr auto kKinds = []
	{
		std::array<unsigned char, 256> kinds{};
		for (std::size_t c = '\t'; c <= '\r'; ++c)
			kinds[c] = space;
		kinds[' '] = space;
		kinds[','] = comma;
		kinds['-'] = minus;
		return kinds;
	}();

	/// For prefixes of zero, one and two characters: a bit for each pair of kinds that may stand there. The kinds of
	/// characters behind the prefix do not count.
	static constexpr std::array<std::uint32_t, kLongestPrefix + 1> PrefixesAfter(After after)
	{
		const bool needsPart = after == After::abscissa || after == After::pair;
		const bool mayBeComma = needsPart || after == After::number;
		std::array<std::uint32_t, kLongestPrefix + 1> prefixes{};
		for (unsigned first = 0; first != 4; ++first)
		{
			const bool parts = first == space || (first == comma && mayBeComma);
			for (unsigned second = 0; second != 4; ++second)
			{
				const std::uint32_t bit = 1u << (first + 4 * second);
				if (!needsPart)
					prefixes[0] |= bit;
				if (parts || (first == minus && after != After::pair))
					prefixes[1] |= bit;
				const bool mayFollow =
					second == minus || second == space || (second == comma && first == space && mayBeComma);
				if (parts && mayFollow)
					prefixes[2] |= bit;
			}
		}
		return prefixes;
	}

	template <After after>
	bool IsPrefix(unsigned length) const
	{
		static constexpr auto kPrefixes = PrefixesAfter(after);
		const unsigned kinds =
			kKinds[static_cast<unsigned char>(_at[0])] + 4u * kKinds[static_cast<unsigned char>(_at[1])];
		return (kPrefixes[length] >> kinds & 1) != 0;
	}

	void MoveToTail();
	void SkipSeparator(bool mayBeComma);
	bool ReadUnusualNumber(After after, double& number);

	const char* _at;
	const char* _end;
	const char* _lastSafe;
	std::array<char, 2 * kLookAhead> _tail;
};
} // namespace orvan::grammar
