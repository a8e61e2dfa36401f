// SPDX-License-Identifier: MIT
#pragma once

#include "fast/wide_registers.h"

#if defined(__x86_64__)

#include <bit>
#include <cmath>

/// Sines, cosines, tangents and angles of eight numbers at once, each to the last bit what the C library (glibc)
/// returns for that number, or one of two doubles where that is in doubt.
///
/// Each is computed to some nine bits more than a double has, as the sum of two doubles. The C library returns nearly
/// always the double that is nearest to the exact value, and otherwise the second nearest. So where the sum lies
/// clearly nearer to one double than to its neighbours, that is the C library's result, and where it lies about in the
/// middle of two, it is one of these ("Ziv's rounding test"):
///
///     doubles      |           |           |
///     sums            1              2           1 is rounded to the left, 2 is in doubt
///
/// Who can not do with either then asks the C library.
///
/// How much around the middle is in doubt follows from how wrong the C library may be, in units in the last place:
/// sines and cosines 0.518, as it says itself, angles 0.524 and tangents 0.619, which are the largest errors known. A
/// sine or a cosine that is next to nothing, because the angle is next to a quarter turn, is wrong by up to 0.561.
namespace orvan::grammar::wide
{
using Doubles = __m512d;
using Lanes = __mmask8; ///< A bit for each.

constexpr Lanes kAllLanes = 0xff;

ORVAN_WIDE inline Doubles All(double value)
{
	return _mm512_set1_pd(value);
}

/// a * b + c, rounded once.
ORVAN_WIDE inline Doubles MultiplyAdd(Doubles a, Doubles b, Doubles c)
{
	return _mm512_fmadd_pd(a, b, c);
}

/// c - a * b, rounded once.
ORVAN_WIDE inline Doubles SubtractProduct(Doubles c, Doubles a, Doubles b)
{
	return _mm512_fnmadd_pd(a, b, c);
}

ORVAN_WIDE inline Doubles Choose(Lanes lanes, Doubles those, Doubles others)
{
	return _mm512_mask_mov_pd(others, lanes, those);
}

/// Changes the signs in some lanes.
ORVAN_WIDE inline Doubles Negate(Doubles values, Lanes lanes)
{
	return _mm512_mask_xor_pd(values, lanes, values, All(-0.0));
}

ORVAN_WIDE inline Doubles Magnitude(Doubles values)
{
	return _mm512_abs_pd(values);
}

ORVAN_WIDE inline Doubles WithSignOf(Doubles magnitudes, Doubles signs)
{
	return _mm512_or_pd(magnitudes, _mm512_and_pd(signs, All(-0.0)));
}

/// The value of each is the sum of both.
struct Sums
{
	Doubles high;
	Doubles low;

	/// For a sum whose second part is not larger than its first; nothing is lost.
	ORVAN_WIDE static Sums Of(Doubles large, Doubles small)
	{
		const Doubles high = large + small;
		return {high, small - (high - large)};
	}

	/// For a product; nothing is lost.
	ORVAN_WIDE static Sums OfProduct(Doubles a, Doubles b)
	{
		const Doubles high = a * b;
		return {high, _mm512_fmsub_pd(a, b, high)};
	}
};

/// Doubles, which of them are not to be relied on, and what these may be instead. The others are twice the same.
struct Rounded
{
	Doubles values;
	Doubles others;
	Lanes inDoubt;
};

/// Shares of all results that are in doubt: twice the C library's errors beyond half a unit, and some room.
constexpr double kDoubtOfSine = 0.05;
constexpr double kDoubtOfTinySine = 0.2;
constexpr double kDoubtOfAngle = 0.06;
constexpr double kDoubtOfTangent = 0.25;

/// What becomes another double when its low part is that much larger is in doubt.
constexpr double FactorOf(double doubt)
{
	return 1 / (1 - doubt);
}

ORVAN_WIDE inline Rounded Round(Sums sums, Doubles factors)
{
	const auto [high, low] = Sums::Of(sums.high, sums.low);
	const Doubles other = MultiplyAdd(low, factors, high);
	return {high, other, _mm512_cmp_pd_mask(other, high, _CMP_NEQ_UQ)};
}

ORVAN_WIDE inline Rounded RoundSine(Sums sums)
{
	constexpr double kTiny = 0x1p-40;
	const Lanes isTiny = _mm512_cmp_pd_mask(Magnitude(sums.high), All(kTiny), _CMP_LT_OQ);
	return Round(sums, Choose(isTiny, All(FactorOf(kDoubtOfTinySine)), All(FactorOf(kDoubtOfSine))));
}

/// The eight numbers one by one.
struct Stored
{
	ORVAN_WIDE explicit Stored(Doubles values)
	{
		_mm512_store_pd(items, values);
	}

	alignas(64) double items[8];
};

/// Puts a value into a lane.
ORVAN_WIDE inline Doubles Put(double value, int lane, Doubles values)
{
	return _mm512_mask_broadcastsd_pd(values, static_cast<Lanes>(1U << lane), _mm_set_sd(value));
}

/// Has a function of the C library put some lanes right.
/// @{
ORVAN_WIDE inline Doubles Ask(double (*function)(double), Lanes lanes, Doubles results, Doubles arguments)
{
	if (lanes == 0) [[likely]]
		return results;
	const Stored given(arguments);
	for (unsigned rest = lanes; rest != 0; rest &= rest - 1)
	{
		const int lane = std::countr_zero(rest);
		results = Put(function(given.items[lane]), lane, results);
	}
	return results;
}

ORVAN_WIDE inline Doubles Ask(double (*function)(double, double), Lanes lanes, Doubles results, Doubles first,
							  Doubles second)
{
	if (lanes == 0) [[likely]]
		return results;
	const Stored givenFirst(first);
	const Stored givenSecond(second);
	for (unsigned rest = lanes; rest != 0; rest &= rest - 1)
	{
		const int lane = std::countr_zero(rest);
		results = Put(function(givenFirst.items[lane], givenSecond.items[lane]), lane, results);
	}
	return results;
}
/// @}

/// Of sixteen numbers those at the indices, of which the last four bits count.
ORVAN_WIDE inline Doubles LookUp(const double* numbers, __m512i indices)
{
	return _mm512_permutex2var_pd(_mm512_loadu_pd(numbers), indices, _mm512_loadu_pd(numbers + 8));
}

struct SineAndCosine
{
	Sums sine;
	Sums cosine;
};

/// Of angles within three turns. The nearest 64th of a turn has its sine and cosine in a table, and the rest is so
/// small that a few terms of the series suffice:
///
///     sin(step + rest) = sin(step) + cos(step) rest + sin(step) (cos(rest) - 1) + cos(step) (sin(rest) - rest)
///
/// The first two terms are summed without loss, the others as doubles.
ORVAN_WIDE inline SineAndCosine FindSineAndCosine(Doubles angles)
{
	// The sines of a quarter of the steps, which are the cosines from the other end, and what they lose by rounding.
	static constexpr double kSines[] = {
		0,
		0x1.917a6bc29b42cp-4,
		0x1.8f8b83c69a60bp-3,
		0x1.294062ed59f06p-2,
		0x1.87de2a6aea963p-2,
		0x1.e2b5d3806f63bp-2,
		0x1.1c73b39ae68c8p-1,
		0x1.44cf325091dd6p-1,
		0x1.6a09e667f3bcdp-1,
		0x1.8bc806b151741p-1,
		0x1.a9b66290ea1a3p-1,
		0x1.c38b2f180bdb1p-1,
		0x1.d906bcf328d46p-1,
		0x1.e9f4156c62ddap-1,
		0x1.f6297cff75cbp-1,
		0x1.fd88da3d12526p-1,
		1,
	};
	static constexpr double kSineLows[] = {
		0,
		-0x1.e2718d26ed688p-60,
		-0x1.26d19b9ff8d82p-57,
		-0x1.5d28da2c4612dp-56,
		-0x1.72cedd3d5a61p-57,
		0x1.e0d891d3c6841p-58,
		0x1.b25dd267f66p-55,
		0x1.8076a2cfdc6b3p-57,
		-0x1.bdd3413b26456p-55,
		-0x1.2c5e12ed1336dp-55,
		0x1.9f630e8b6dac8p-60,
		-0x1.6e0b1757c8d07p-56,
		0x1.457e610231ac2p-56,
		0x1.760b1e2e3f81ep-55,
		0x1.562172a361fd3p-56,
		-0x1.87df6378811c7p-55,
		0,
	};
	// A step in three parts, of which the first two are multiplied without loss.
	constexpr double kStep[] = {0x1.921fb544428p-4, 0x1.4611a62633p-46, 0x1.45c06e0e68948p-90};
	constexpr double kStepsPerRadian = 0x1.45f306dc9c883p3;

	// What is left of the angle behind the nearest step; the first difference is exact.
	const Doubles steps =
		_mm512_roundscale_pd(angles * All(kStepsPerRadian), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
	const Doubles rough = SubtractProduct(angles, steps, All(kStep[0]));
	const Doubles second = steps * All(kStep[1]);
	const Doubles rest = rough - second;
	const Doubles back = rough - rest;
	const Doubles lost = (rough - (rest + back)) + (back - second);
	const Doubles restLow = SubtractProduct(lost, steps, All(kStep[2]));

	const __m512i index = _mm512_cvtpd_epi64(steps);
	const __m512i fromEnd = _mm512_sub_epi64(_mm512_set1_epi64(15), index);
	const Sums sine = {LookUp(kSines, index), LookUp(kSineLows, index)};
	const Sums cosine = {LookUp(kSines + 1, fromEnd), LookUp(kSineLows + 1, fromEnd)};

	// sin(rest) - rest, with the low part of the rest, and cos(rest) - 1.
	const Doubles square = rest * rest;
	Doubles sineOfRest = MultiplyAdd(square, All(1.0 / 362880), All(-1.0 / 5040));
	sineOfRest = MultiplyAdd(square, sineOfRest, All(1.0 / 120));
	sineOfRest = MultiplyAdd(square, sineOfRest, All(-1.0 / 6));
	sineOfRest = MultiplyAdd(square * rest, sineOfRest, restLow);
	Doubles cosineOfRest = MultiplyAdd(square, All(-1.0 / 3628800), All(1.0 / 40320));
	cosineOfRest = MultiplyAdd(square, cosineOfRest, All(-1.0 / 720));
	cosineOfRest = MultiplyAdd(square, cosineOfRest, All(1.0 / 24));
	cosineOfRest = MultiplyAdd(square, cosineOfRest, All(-0.5)) * square;

	const Sums sineMove = Sums::OfProduct(cosine.high, rest);
	const Sums sineSum = Sums::Of(sine.high, sineMove.high);
	Doubles sineLow = MultiplyAdd(cosine.low, rest, sine.low) + sineMove.low;
	sineLow = MultiplyAdd(sine.high, cosineOfRest, MultiplyAdd(cosine.high, sineOfRest, sineLow));
	const Sums sineThere = Sums::Of(sineSum.high, sineSum.low + sineLow);

	const Sums cosineMove = Sums::OfProduct(sine.high, rest);
	const Sums cosineSum = Sums::Of(cosine.high, Negate(cosineMove.high, kAllLanes));
	Doubles cosineLow = SubtractProduct(cosine.low, sine.low, rest) - cosineMove.low;
	cosineLow = MultiplyAdd(cosine.high, cosineOfRest, SubtractProduct(cosineLow, sine.high, sineOfRest));
	const Sums cosineThere = Sums::Of(cosineSum.high, cosineSum.low + cosineLow);

	// Quarter turns exchange the two, and half turns change their signs.
	const Lanes isQuarter = _mm512_test_epi64_mask(index, _mm512_set1_epi64(16));
	const Lanes isHalf = _mm512_test_epi64_mask(index, _mm512_set1_epi64(32));
	const Lanes isCosineNegative = isHalf ^ isQuarter;
	return {{Negate(Choose(isQuarter, cosineThere.high, sineThere.high), isHalf),
			 Negate(Choose(isQuarter, cosineThere.low, sineThere.low), isHalf)},
			{Negate(Choose(isQuarter, sineThere.high, cosineThere.high), isCosineNegative),
			 Negate(Choose(isQuarter, sineThere.low, cosineThere.low), isCosineNegative)}};
}

/// std::sin and std::cos, for angles within three turns.
/// @{
struct RoundedSineAndCosine
{
	Rounded sine;
	Rounded cosine;
};

ORVAN_WIDE inline RoundedSineAndCosine RoundSineAndCosine(Doubles angles)
{
	const SineAndCosine sums = FindSineAndCosine(angles);
	RoundedSineAndCosine rounded = {RoundSine(sums.sine), RoundSine(sums.cosine)};
	// The sine of zero has the sign of that zero.
	const Lanes isZero = _mm512_cmp_pd_mask(angles, All(0), _CMP_EQ_OQ);
	rounded.sine.values = Choose(isZero, angles, rounded.sine.values);
	rounded.sine.others = Choose(isZero, angles, rounded.sine.others);
	return rounded;
}
/// @}

/// std::tan(half) and std::sin(2 * half), up to an eighth of a turn. The sign of zero is lost.
/// @{
struct RoundedTangentAndSine
{
	Rounded tangent;
	Rounded sine;
};

ORVAN_WIDE inline RoundedTangentAndSine RoundTangentAndSine(Doubles half)
{
	const auto [sineOfHalf, cosineOfHalf] = FindSineAndCosine(half);
	const Doubles quotient = sineOfHalf.high / cosineOfHalf.high;
	const Doubles reciprocal = All(1) / cosineOfHalf.high;
	const Doubles rest = SubtractProduct(sineOfHalf.high, quotient, cosineOfHalf.high) +
						 SubtractProduct(sineOfHalf.low, quotient, cosineOfHalf.low);
	Sums product = Sums::OfProduct(sineOfHalf.high, cosineOfHalf.high);
	product.low = product.low + MultiplyAdd(sineOfHalf.high, cosineOfHalf.low, sineOfHalf.low * cosineOfHalf.high);
	return {Round({quotient, rest * reciprocal}, All(FactorOf(kDoubtOfTangent))),
			RoundSine({product.high + product.high, product.low + product.low})};
}
/// @}

/// std::atan2(y, x), which far from one may be neither of two. An estimate of the angle is turned back from the place,
/// so that a small angle is left:
///
///     angle = estimate + atan((y cos - x sin) / (x cos + y sin))
ORVAN_WIDE inline Rounded RoundAngle(Doubles y, Doubles x)
{
	constexpr double kQuarterTurn = 0x1.921fb54442d18p0;

	// Above the x axis; good for four digits (Abramowitz and Stegun, 4.4.47).
	const Doubles up = Magnitude(y);
	const Doubles aside = Magnitude(x);
	const Doubles larger = _mm512_max_pd(up, aside);
	const Doubles ratio = _mm512_min_pd(up, aside) / larger;
	const Doubles square = ratio * ratio;
	Doubles estimate = MultiplyAdd(square, All(0.0208351), All(-0.0851330));
	estimate = MultiplyAdd(square, estimate, All(0.1801410));
	estimate = MultiplyAdd(square, estimate, All(-0.3302995));
	estimate = MultiplyAdd(square, estimate, All(0.9998660)) * ratio;
	const Lanes isSteep = _mm512_cmp_pd_mask(up, aside, _CMP_GT_OQ);
	const Lanes isBehind = _mm512_movepi64_mask(_mm512_castpd_si512(x));
	estimate = Choose(isSteep, All(kQuarterTurn) - estimate, estimate);
	estimate = Choose(isBehind, All(2 * kQuarterTurn) - estimate, estimate);

	// The two products cancel each other, so that what they lose counts.
	const auto [sine, cosine] = FindSineAndCosine(estimate);
	const Sums left = Sums::OfProduct(up, cosine.high);
	const Sums right = Sums::OfProduct(x, sine.high);
	const Doubles lost = (left.low - right.low) + SubtractProduct(up * cosine.low, x, sine.low);
	const Doubles tangent = ((left.high - right.high) + lost) / MultiplyAdd(x, cosine.high, up * sine.high);
	const Doubles rest = SubtractProduct(tangent, tangent * tangent * tangent, All(1.0 / 3));
	Rounded angles = Round({estimate, rest}, All(FactorOf(kDoubtOfAngle)));

	// Far from one, products may leave the range in which nothing is lost.
	constexpr double kFar = 0x1p100;
	const Lanes isNear =
		_mm512_cmp_pd_mask(larger, All(kFar), _CMP_LT_OQ) & _mm512_cmp_pd_mask(larger, All(1 / kFar), _CMP_GT_OQ) &
		(_mm512_cmp_pd_mask(ratio, All(1 / kFar), _CMP_GT_OQ) | _mm512_cmp_pd_mask(ratio, All(0), _CMP_EQ_OQ));
	angles.inDoubt |= static_cast<Lanes>(~isNear);
	angles.values = WithSignOf(angles.values, y);
	angles.others = WithSignOf(angles.others, y);
	return angles;
}
} // namespace orvan::grammar::wide

#endif
