// SPDX-License-Identifier: MIT
#include "fast/number_tape.h"

#include <algorithm>
#include <cmath>

#if defined(__x86_64__)
#include "fast/number_masks.h"
#include "fast/wide_registers.h"
#include "shared/decimal.h"
#endif

namespace orvan::grammar
{
#if defined(__x86_64__)

bool NumberTape::IsAvailable()
{
	static const bool isAvailable = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
									__builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
									__builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
									__builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
									__builtin_cpu_supports("popcnt");
	return isAvailable;
}

/// Records one text, sixty-four characters at a look. What one look finds is gathered by compressing: of a row of
/// values and a mask with one bit for each, `compress` makes a row of those whose bits are set, without gaps. So, of
/// the numbers 0 to 63 and the bits of where numbers start, come the places where they start, one beside the other.
///
///     text          1.25,-3
///     digits        1253         the text of the digits' bits
///     lastDigits    2 3          the places in that of each number's last digit
///     digitCounts   3 1
class NumberTape::Recorder
{
public:
	Recorder(NumberTape& tape, const char* at, const char* end, PathDialect dialect)
		: _tape(tape), _base(at), _end(end), _dialect(dialect), _cursor{at}
	{
	}

	ORVAN_WIDE void Record(bool isBehindNumber)
	{
		_cursor.isBehindNumber = isBehindNumber;
		_tape.isWhole = false;
		_tape.isAtEnd = !RecordAll() || _tape.isWhole || _countAlone > _cursor.numbers / 3;
		_tape.behind = _tape.isWhole ? _end : _cursor.at;
		_tape.numberCount = _cursor.numbers;
		_tape.markCount = _cursor.marks;
		_tape.numbersBefore[_cursor.marks] = static_cast<std::uint16_t>(_cursor.numbers);
	}

private:
	/// How far recording has come.
	struct Cursor
	{
		const char* at; ///< What comes before is on the tape.
		bool isBehindNumber = false;
		std::size_t numbers = 0;
		std::size_t marks = 0;

		/// Which of the numbers behind the first `longFrom` have more than fifteen digits and are still to be
		/// converted.
		std::uint64_t longNumbers = 0;
		std::size_t longFrom = 0;
	};

	/// Why a row of looks ended.
	enum class Stop
	{
		full,
		whole,
		longNumbers,
		unusual ///< What follows is no usual number.
	};

	/// Records until there is no more room, or until the end; false when neither can be reached.
	bool RecordAll()
	{
		for (;;)
		{
			switch (RecordUsual())
			{
			case Stop::full:
				return true;
			case Stop::whole:
				_tape.isWhole = true;
				return true;
			case Stop::longNumbers:
				FinishLongNumbers();
				break;
			case Stop::unusual:
				if (!AddUnusual())
					return false;
				break;
			}
		}
	}

	/// What looks compare and compute with. Left to itself, the compiler makes each of these anew for every look, on
	/// the very port of the processor that all else waits for.
	struct Constants
	{
		ORVAN_WIDE Constants()
			: zeros(Keep(_mm512_set1_epi8('0'))), nines(Keep(_mm512_set1_epi8(9))), points(Keep(_mm512_set1_epi8('.'))),
			  commas(Keep(_mm512_set1_epi8(','))), minuses(Keep(_mm512_set1_epi8('-'))),
			  caseBits(Keep(_mm512_set1_epi8('a' - 'A'))), exponents(Keep(_mm512_set1_epi8('e'))),
			  blanksByLowBits(Keep(_mm512_broadcast_i32x4(
				  _mm_setr_epi8(' ', 0, 0, 0, 0, 0, 0, 0, 0, '\t', '\n', '\v', '\f', '\r', 0, 0)))),
			  ones(Keep(_mm512_set1_epi8(1))), eights(Keep(_mm512_set1_epi8(8)))
		{
		}

		__m512i zeros, nines, points, commas, minuses, caseBits, exponents;
		__m512i blanksByLowBits; ///< The blank whose lower four bits those of a character are.
		__m512i ones, eights;

	private:
		/// Hides from the compiler what it is.
		ORVAN_WIDE static __m512i Keep(__m512i constant)
		{
			asm("" : "+v"(constant));
			return constant;
		}
	};

	/// There are no calls in here, and the cursor is a copy, so that all that looks need stays in registers.
	ORVAN_WIDE Stop RecordUsual()
	{
		const Constants constants;
		Cursor cursor = _cursor;
		Stop stop = Stop::full;
		while (cursor.numbers < kMostNumbers && cursor.marks < kMostMarks && cursor.at - _base < kMostCharacters &&
			   stop == Stop::full)
			stop = Look(cursor, constants);
		_cursor = cursor;
		return stop;
	}

	/// Records what stands among the next sixty-four characters; `full` when more may follow.
	[[gnu::always_inline]] ORVAN_WIDE Stop Look(Cursor& cursor, const Constants& constants)
	{
		const std::size_t rest = std::min(static_cast<std::size_t>(_end - cursor.at), CharacterMasks::kCount);
		const std::uint64_t there = _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(rest));
		// Zeros stand behind the end, which are among the others.
		const __m512i text = _mm512_maskz_loadu_epi8(there, cursor.at);
		const CharacterMasks is = FindCharacters(text, constants);
		NumberMasks numbers(is, Separation::loose, cursor.isBehindNumber);
		numbers.others &= there;
		AddMarks(text, numbers, cursor);
		AddNumbers(text, is, numbers, cursor, constants);

		// Reading goes on behind the last number or mark; a number that is cut off is looked at again as a whole.
		const std::uint64_t behindNumber = 63 - _lzcnt_u64(numbers.ends | 1);
		const std::uint64_t behindOther = 64 - _lzcnt_u64(numbers.others);
		const bool isAnything = behindNumber != 0 || behindOther != 0;
		if (isAnything) [[likely]]
		{
			cursor.isBehindNumber = behindNumber >= behindOther;
			cursor.at += std::max(behindNumber, behindOther);
		}
		if (cursor.longNumbers != 0) [[unlikely]]
			return Stop::longNumbers;
		if (!numbers.isWhole) [[unlikely]]
			return Stop::unusual;
		if (rest != CharacterMasks::kCount)
			return Stop::whole;
		if (!isAnything) [[unlikely]]
		{
			if (~is.blanks != 0)
				return Stop::unusual;
			cursor.at += CharacterMasks::kCount;
		}
		return Stop::full;
	}

	/// The numbers from 0 to 63.
	ORVAN_WIDE static __m512i CountUp()
	{
		alignas(64) static constexpr auto kNumbers = []
		{
			std::array<std::uint8_t, CharacterMasks::kCount> numbers{};
			for (std::size_t i = 0; i != numbers.size(); ++i)
				numbers[i] = static_cast<std::uint8_t>(i);
			return numbers;
		}();
		return _mm512_load_si512(kNumbers.data());
	}

	/// The places of bits.
	ORVAN_WIDE static __m512i PlacesOf(std::uint64_t bits)
	{
		return _mm512_maskz_compress_epi8(bits, CountUp());
	}

	/// The places of up to thirty-two bits.
	ORVAN_WIDE static __m256i FewPlacesOf(std::uint64_t bits)
	{
		return _mm512_castsi512_si256(PlacesOf(bits));
	}

	ORVAN_WIDE static CharacterMasks FindCharacters(__m512i text, const Constants& constants)
	{
		CharacterMasks is;
		is.digits = _mm512_cmple_epu8_mask(_mm512_sub_epi8(text, constants.zeros), constants.nines);
		is.points = _mm512_cmpeq_epi8_mask(text, constants.points);
		is.blanks = _mm512_cmpeq_epi8_mask(text, _mm512_shuffle_epi8(constants.blanksByLowBits, text));
		is.commas = _mm512_cmpeq_epi8_mask(text, constants.commas);
		is.minuses = _mm512_cmpeq_epi8_mask(text, constants.minuses);
		const __m512i lowerCase = _mm512_or_si512(text, constants.caseBits);
		is.exponents = _mm512_cmpeq_epi8_mask(lowerCase, constants.exponents);
		return is;
	}

	/// Writes up to sixty-four numbers with something added to each; only the first thirty-two unless there are more.
	[[gnu::always_inline]] ORVAN_WIDE static void Store(__m512i numbers, std::size_t count, std::size_t added,
														std::uint16_t* to)
	{
		StoreFew(_mm512_castsi512_si256(numbers), added, to);
		if (count > kMostAtOnce) [[unlikely]]
			StoreFew(_mm512_extracti64x4_epi64(numbers, 1), added, to + kMostAtOnce);
	}

	[[gnu::always_inline]] ORVAN_WIDE static void StoreFew(__m256i numbers, std::size_t added, std::uint16_t* to)
	{
		const __m512i base = _mm512_set1_epi16(static_cast<short>(added));
		_mm512_storeu_si512(to, _mm512_add_epi16(_mm512_cvtepu8_epi16(numbers), base));
	}

	[[gnu::always_inline]] ORVAN_WIDE void AddMarks(__m512i text, const NumberMasks& numbers, Cursor& cursor)
	{
		const auto count = static_cast<std::size_t>(_mm_popcnt_u64(numbers.others));
		Store(PlacesOf(numbers.others), count, CountBefore(cursor), _tape.marks.data() + cursor.marks);
		_mm512_storeu_si512(_tape.letters.data() + cursor.marks, _mm512_maskz_compress_epi8(numbers.others, text));

		// The place of each among marks and numbers alone, less the marks before it.
		const __m512i places = PlacesOf(_pext_u64(numbers.others, numbers.others | numbers.starts));
		Store(_mm512_sub_epi8(places, CountUp()), count, cursor.numbers, _tape.numbersBefore.data() + cursor.marks);
		cursor.marks += count;
	}

	std::size_t CountBefore(const Cursor& cursor) const
	{
		return static_cast<std::size_t>(cursor.at - _base);
	}

	[[gnu::always_inline]] ORVAN_WIDE void AddNumbers(__m512i text, const CharacterMasks& is,
													  const NumberMasks& numbers, Cursor& cursor,
													  const Constants& constants)
	{
		const auto count = static_cast<std::size_t>(_mm_popcnt_u64(numbers.ends));
		const std::uint64_t usual = _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));

		// Digits behind a point, from which a carry runs through them, and where those before it end: at the point, or
		// where the number ends.
		const std::uint64_t fractions = is.digits & ~(is.digits + (is.points << 1));
		const std::uint64_t wholeEnds = is.points | (numbers.ends & ~(fractions << 1));
		const __m256i startPlaces = FewPlacesOf(numbers.starts);
		const __m256i endPlaces = FewPlacesOf(numbers.ends);
		StoreFew(startPlaces, CountBefore(cursor), _tape.starts.data() + cursor.numbers);

		// What stands behind those: nothing, or a point and at least one digit.
		const __m256i one = _mm512_castsi512_si256(constants.ones);
		const __m256i behindWhole = _mm256_sub_epi8(endPlaces, FewPlacesOf(wholeEnds));
		const __m256i fractionCounts = _mm256_subs_epu8(behindWhole, one);
		const __m256i lengths = _mm256_sub_epi8(endPlaces, startPlaces);
		const __m256i digitCounts = _mm256_sub_epi8(lengths, _mm256_min_epu8(behindWhole, one));
		const std::uint64_t signs = _pext_u64(numbers.signs, numbers.starts);
		const __m256i few = _mm512_castsi512_si256(constants.eights);
		const bool areLong = (_mm256_cmpgt_epu8_mask(digitCounts, few) & usual) != 0;
		cursor.longNumbers = !areLong ? 0 : _mm256_cmpgt_epu8_mask(digitCounts, _mm256_set1_epi8(kMostDigits)) & usual;

		const __m512i digits = _mm512_maskz_compress_epi8(is.digits, _mm512_sub_epi8(text, constants.zeros));
		const __m512i lastDigits = PlacesOf(_pext_u64(numbers.ends >> 1, is.digits));
		double* const to = _tape.values.data() + cursor.numbers;
		__m512i lanes = Lanes();
		for (std::size_t i = 0; i < count; i += 8, lanes = _mm512_add_epi8(lanes, constants.eights))
		{
			const __m512i last = _mm512_permutexvar_epi8(lanes, lastDigits);
			const __m512i most = _mm512_permutexvar_epi8(lanes, _mm512_castsi256_si512(digitCounts));
			__m512i mantissas = JoinDigits(digits, last, most, 0);
			if (areLong)
			{
				const __m512i high = JoinDigits(digits, last, most, kFewDigits);
				mantissas = _mm512_add_epi64(mantissas, _mm512_mul_epu32(high, _mm512_set1_epi64(100000000)));
			}
			const __m512i fraction =
				_mm512_maskz_permutexvar_epi8(kLowBytes, lanes, _mm512_castsi256_si512(fractionCounts));
			const __m512d divisors = _mm512_permutex2var_pd(_mm512_loadu_pd(kPowersOfTen.data()), fraction,
															_mm512_loadu_pd(kPowersOfTen.data() + 8));
			const __m512d magnitudes = _mm512_div_pd(_mm512_cvtepi64_pd(mantissas), divisors);
			const auto areNegative = static_cast<__mmask8>(signs >> i);
			_mm512_storeu_pd(to + i, _mm512_mask_xor_pd(magnitudes, areNegative, magnitudes, _mm512_set1_pd(-0.0)));
		}
		cursor.longFrom = cursor.numbers;
		cursor.numbers += count;
	}

	/// Each of eight numbers in as many bytes.
	ORVAN_WIDE static __m512i Lanes()
	{
		return _mm512_setr_epi64(0, kLowBytes, 2 * kLowBytes, 3 * kLowBytes, 4 * kLowBytes, 5 * kLowBytes,
								 6 * kLowBytes, 7 * kLowBytes);
	}

	/// What eight digits of each of eight numbers make, the first of which are left out at their ends. `last` is where
	/// the last digit of each stands, `most` is how many there are, in all bytes of its lane.
	ORVAN_WIDE static __m512i JoinDigits(__m512i digits, __m512i last, __m512i most, int leftOut)
	{
		const __m512i fromEnd =
			_mm512_add_epi8(_mm512_set1_epi64(0x0001020304050607), _mm512_set1_epi8(static_cast<char>(leftOut)));
		const __mmask64 areThere = _mm512_cmplt_epu8_mask(fromEnd, most);
		const __m512i eights = _mm512_maskz_permutexvar_epi8(areThere, _mm512_sub_epi8(last, fromEnd), digits);
		// Neighbours are joined to pairs, pairs to fours, and fours to the number.
		const __m512i pairs = _mm512_maddubs_epi16(eights, _mm512_set1_epi16(1 << 8 | 10));
		const __m512i fours = _mm512_madd_epi16(pairs, _mm512_set1_epi32(1 << 16 | 100));
		return _mm512_add_epi64(_mm512_mul_epu32(fours, _mm512_set1_epi64(10000)), _mm512_srli_epi64(fours, 32));
	}

	/// Converts the numbers of more than fifteen digits among those that were added last. What fits a look is never too
	/// large.
	[[gnu::noinline]] void FinishLongNumbers()
	{
		for (std::uint64_t rest = _cursor.longNumbers; rest != 0; rest &= rest - 1)
		{
			const std::size_t index = _cursor.longFrom + static_cast<unsigned>(__builtin_ctzll(rest));
			const char* at = _base + _tape.starts[index];
			double value = 0;
			if (_dialect != PathDialect::plain || !ReadDecimal(at, _end, false, value))
				ReadSlowly(at, false, value);
			_tape.values[index] = std::copysign(value, _tape.values[index]);
		}
		_cursor.longNumbers = 0;
	}

	/// Adds a number that is unusual.
	[[gnu::noinline]] bool AddUnusual()
	{
		const char* const start = std::find_if_not(_cursor.at, _end, [](char c) { return IsSpace(c) || c == ','; });
		const char* at = _cursor.at;
		double value;
		if (start - _base >= kMostCharacters || !ReadSlowly(at, _cursor.isBehindNumber, value))
			return false;
		_tape.values[_cursor.numbers] = value;
		_tape.starts[_cursor.numbers++] = static_cast<std::uint16_t>(start - _base);
		_cursor.at = at;
		_cursor.isBehindNumber = true;
		return true;
	}

	/// Reads a number by itself, of which sums can be made without leaving the range of what is finite.
	bool ReadSlowly(const char*& at, bool isBehindNumber, double& value)
	{
		++_countAlone;
		constexpr double kMost = 1e100;
		const bool isRead = _dialect == PathDialect::plain
								? ReadByItself<PathDialect::plain>(at, isBehindNumber, value)
								: ReadByItself<PathDialect::complete>(at, isBehindNumber, value);
		return isRead && std::fabs(value) <= kMost;
	}

	template <PathDialect dialect>
	bool ReadByItself(const char*& at, bool isBehindNumber, double& value) const
	{
		PathReader<dialect> reader({at, static_cast<std::size_t>(_end - at)});
		const bool isRead = isBehindNumber ? reader.template ReadNumber<After::number>(value)
										   : reader.template ReadNumber<After::command>(value);
		at = _end - reader.CountRest();
		return isRead;
	}

	static constexpr std::ptrdiff_t kMostCharacters = 0xffff - CharacterMasks::kCount; ///< So that places fit.
	static constexpr long long kLowBytes = 0x0101010101010101; ///< The lowest byte of eight, or its mask.
	static constexpr int kFewDigits = 8;                       ///< As many as fit eight bytes, which are `eights`.
	static constexpr int kMostDigits = 15;                     ///< As many as fit a double, and the table of powers.

	NumberTape& _tape;
	const char* _base;
	const char* _end;
	PathDialect _dialect;
	Cursor _cursor;
	std::size_t _countAlone = 0; ///< How many numbers were read by themselves.
};

void NumberTape::Record(const char* at, const char* end, bool isBehindNumber, PathDialect dialect)
{
	Recorder(*this, at, end, dialect).Record(isBehindNumber);
}

#else

bool NumberTape::IsAvailable()
{
	return false;
}

void NumberTape::Record(const char*, const char*, bool, PathDialect)
{
}

#endif
} // namespace orvan::grammar
