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
void NumberTape::Clear()
{
	numberCount = 0;
	markCount = 0;
	isAtEnd = false;
	isWhole = false;
	End();
}

void NumberTape::End()
{
	std::fill_n(starts.begin() + static_cast<std::ptrdiff_t>(numberCount), kGroup, kNone);
	marks[markCount] = kNoMark;
}

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
	Recorder(NumberTape& tape, const char* at, const char* end) : _tape(tape), _base(at), _at(at), _end(end)
	{
	}

	ORVAN_WIDE void Record(bool isBehindNumber, bool takesLongNumbers)
	{
		_tape.isAtEnd = true;
		for (;;)
		{
			if (_tape.numberCount >= kMostNumbers || _tape.markCount >= kMostMarks)
			{
				_tape.isAtEnd = false;
				return;
			}
			const std::size_t rest = std::min(static_cast<std::size_t>(_end - _at), CharacterMasks::kCount);
			const std::uint64_t there = _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(rest));
			// Zeros stand behind the end, which are among the others.
			const __m512i text = _mm512_maskz_loadu_epi8(there, _at);
			const CharacterMasks is = Look(text);
			NumberMasks numbers(is, Separation::loose, isBehindNumber);
			numbers.others &= there;
			AddMarks(numbers.others);
			const std::size_t added = AddNumbers(text, is, numbers);
			if (!FinishLongNumbers(added, takesLongNumbers) || !numbers.isWhole)
				return;
			if (rest != CharacterMasks::kCount)
			{
				_tape.isWhole = true;
				return;
			}

			// Reading goes on behind the last number or mark; a number that is cut off is looked at again as a whole.
			const std::uint64_t behindNumber = 63 - _lzcnt_u64(numbers.ends | 1);
			const std::uint64_t behindOther = 64 - _lzcnt_u64(numbers.others);
			if (behindNumber != 0 || behindOther != 0)
			{
				isBehindNumber = behindNumber >= behindOther;
				_at += std::max(behindNumber, behindOther);
			}
			else if (~is.blanks == 0)
				_at += CharacterMasks::kCount;
			else
				return;
		}
	}

private:
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

	ORVAN_WIDE static CharacterMasks Look(__m512i text)
	{
		CharacterMasks is;
		is.digits = IsBetween(text, '0', '9');
		is.points = _mm512_cmpeq_epi8_mask(text, _mm512_set1_epi8('.'));
		is.blanks = _mm512_cmpeq_epi8_mask(text, _mm512_set1_epi8(' ')) | IsBetween(text, '\t', '\r');
		is.commas = _mm512_cmpeq_epi8_mask(text, _mm512_set1_epi8(','));
		is.minuses = _mm512_cmpeq_epi8_mask(text, _mm512_set1_epi8('-'));
		const __m512i lowerCase = _mm512_or_si512(text, _mm512_set1_epi8('a' - 'A'));
		is.exponents = _mm512_cmpeq_epi8_mask(lowerCase, _mm512_set1_epi8('e'));
		return is;
	}

	ORVAN_WIDE static std::uint64_t IsBetween(__m512i text, char first, char last)
	{
		const __m512i offsets = _mm512_sub_epi8(text, _mm512_set1_epi8(first));
		return _mm512_cmple_epu8_mask(offsets, _mm512_set1_epi8(static_cast<char>(last - first)));
	}

	/// Writes thirty-two places in what is looked at as places in the text.
	ORVAN_WIDE void StorePlaces(__m256i places, std::uint16_t* to) const
	{
		const __m512i here = _mm512_set1_epi16(static_cast<short>(_at - _base));
		_mm512_storeu_si512(to, _mm512_add_epi16(_mm512_cvtepu8_epi16(places), here));
	}

	ORVAN_WIDE void AddMarks(std::uint64_t others)
	{
		const __m512i places = PlacesOf(others);
		const auto count = static_cast<std::size_t>(_mm_popcnt_u64(others));
		std::uint16_t* const to = _tape.marks.data() + _tape.markCount;
		StorePlaces(_mm512_castsi512_si256(places), to);
		if (count > kMostAtOnce) [[unlikely]]
			StorePlaces(_mm512_extracti64x4_epi64(places, 1), to + kMostAtOnce);
		_tape.markCount += count;
	}

	/// Returns how many there are. Of those with more than fifteen digits the value is still to come.
	ORVAN_WIDE std::size_t AddNumbers(__m512i text, const CharacterMasks& is, const NumberMasks& numbers)
	{
		const auto count = static_cast<std::size_t>(_mm_popcnt_u64(numbers.ends));
		const std::uint64_t usual = _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));

		// Digits behind a point, from which a carry runs through them, and where those before it end: at the point, or
		// where the number ends.
		const std::uint64_t fractions = is.digits & ~(is.digits + (is.points << 1));
		const std::uint64_t wholeEnds = is.points | (numbers.ends & ~(fractions << 1));
		const __m256i startPlaces = FewPlacesOf(numbers.starts);
		const __m256i endPlaces = FewPlacesOf(numbers.ends);
		StorePlaces(startPlaces, _tape.starts.data() + _tape.numberCount);

		// What stands behind those: nothing, or a point and at least one digit.
		const __m256i one = _mm256_set1_epi8(1);
		const __m256i behindWhole = _mm256_sub_epi8(endPlaces, FewPlacesOf(wholeEnds));
		const __m256i fractionCounts = _mm256_subs_epu8(behindWhole, one);
		const __m256i lengths = _mm256_sub_epi8(endPlaces, startPlaces);
		const __m256i digitCounts = _mm256_sub_epi8(lengths, _mm256_min_epu8(behindWhole, one));
		const std::uint64_t signs = _pext_u64(numbers.signs, numbers.starts);
		const bool areLong = (_mm256_cmpgt_epu8_mask(digitCounts, _mm256_set1_epi8(kFewDigits)) & usual) != 0;
		_longNumbers = !areLong ? 0 : _mm256_cmpgt_epu8_mask(digitCounts, _mm256_set1_epi8(kMostDigits)) & usual;

		const __m512i digits = _mm512_maskz_compress_epi8(is.digits, _mm512_sub_epi8(text, _mm512_set1_epi8('0')));
		const __m512i lastDigits = PlacesOf(_pext_u64(numbers.ends >> 1, is.digits));
		double* const to = _tape.values.data() + _tape.numberCount;
		for (std::size_t i = 0; i < count; i += 8)
		{
			const __m512i lanes = _mm512_add_epi8(Lanes(), _mm512_set1_epi8(static_cast<char>(i)));
			const __m512i last = _mm512_permutexvar_epi8(lanes, lastDigits);
			const __m512i most = _mm512_permutexvar_epi8(lanes, _mm512_castsi256_si512(digitCounts));
			__m512i mantissas = JoinDigits(digits, last, most, 0);
			if (areLong)
			{
				const __m512i high = JoinDigits(digits, last, most, kFewDigits);
				mantissas = _mm512_add_epi64(mantissas, _mm512_mul_epu32(high, _mm512_set1_epi64(100000000)));
			}
			const __m512i fraction =
				_mm512_maskz_permutexvar_epi8(0x0101010101010101, lanes, _mm512_castsi256_si512(fractionCounts));
			const __m512d divisors = _mm512_permutex2var_pd(_mm512_loadu_pd(kPowersOfTen.data()), fraction,
															_mm512_loadu_pd(kPowersOfTen.data() + 8));
			const __m512d magnitudes = _mm512_div_pd(_mm512_cvtepi64_pd(mantissas), divisors);
			const auto areNegative = static_cast<__mmask8>(signs >> i);
			_mm512_storeu_pd(to + i, _mm512_mask_xor_pd(magnitudes, areNegative, magnitudes, _mm512_set1_pd(-0.0)));
		}
		return count;
	}

	/// Each of eight numbers in as many bytes.
	ORVAN_WIDE static __m512i Lanes()
	{
		constexpr long long kEveryByte = 0x0101010101010101;
		return _mm512_setr_epi64(0, kEveryByte, 2 * kEveryByte, 3 * kEveryByte, 4 * kEveryByte, 5 * kEveryByte,
								 6 * kEveryByte, 7 * kEveryByte);
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

	/// Takes the numbers that were added last; false when the tape ends with or before the last of them.
	bool FinishLongNumbers(std::size_t added, bool takesLongNumbers)
	{
		for (; _longNumbers != 0; _longNumbers &= _longNumbers - 1)
		{
			const std::size_t index = _tape.numberCount + static_cast<unsigned>(__builtin_ctzll(_longNumbers));
			const char* at = _base + _tape.starts[index];
			double value;
			if (!takesLongNumbers || !ReadDecimal(at, _end, false, value))
			{
				_tape.numberCount = index;
				while (_tape.markCount != 0 && _tape.marks[_tape.markCount - 1] > _tape.starts[index])
					--_tape.markCount;
				return false;
			}
			_tape.values[index] = std::copysign(value, _tape.values[index]);
		}
		_tape.numberCount += added;
		return true;
	}

	static constexpr int kFewDigits = 8;   ///< As many as fit eight bytes.
	static constexpr int kMostDigits = 15; ///< As many as fit a double, and the table of powers.

	NumberTape& _tape;
	const char* _base;
	const char* _at;
	const char* _end;
	std::uint64_t _longNumbers = 0; ///< Those of the last look that have more digits.
};

void NumberTape::Record(const char* at, const char* end, bool isBehindNumber, bool takesLongNumbers)
{
	Clear();
	Recorder(*this, at, end).Record(isBehindNumber, takesLongNumbers);
	End();
}

#else

bool NumberTape::IsAvailable()
{
	return false;
}

void NumberTape::Record(const char*, const char*, bool, bool)
{
	Clear();
	isAtEnd = true;
}

#endif
} // namespace orvan::grammar
