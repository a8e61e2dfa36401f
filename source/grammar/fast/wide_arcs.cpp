// SPDX-License-Identifier: MIT
#include "fast/wide_arcs.h"

#if defined(__x86_64__)
#include "fast/wide_angles.h"

#include <boost/math/constants/constants.hpp>

#include <algorithm>
#include <bit>
#include <limits>
#endif

namespace orvan::grammar
{
#if defined(__x86_64__)
namespace
{
using wide::All;
using wide::Ask;
using wide::Choose;
using wide::Doubles;
using wide::kAllLanes;
using wide::Lanes;
using wide::Negate;
using wide::Rounded;

constexpr double kQuarterTurn = boost::math::constants::half_pi<double>();
constexpr double kFullTurn = boost::math::constants::two_pi<double>();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

ORVAN_WIDE Lanes AreFinite(Doubles values)
{
	return _mm512_cmp_pd_mask(wide::Magnitude(values), All(kInfinity), _CMP_LT_OQ);
}

ORVAN_WIDE void Store(Doubles values, ArcRow& row)
{
	_mm512_store_pd(row.items.data(), values);
}

ORVAN_WIDE void Store(Doubles x, Doubles y, PointRow& row)
{
	Store(_mm512_unpacklo_pd(x, y), row.points[0]);
	Store(_mm512_unpackhi_pd(x, y), row.points[1]);
}

/// The angles of some lanes, then of some again, and so on: side by side without gaps, so that their sines and cosines
/// are found by as few looks as can be.
class Angles
{
public:
	ORVAN_WIDE void Add(Doubles angles, Lanes lanes)
	{
		_mm512_storeu_pd(_angles.data() + _count, _mm512_maskz_compress_pd(lanes, angles));
		_count += static_cast<std::size_t>(std::popcount(lanes));
		_lanes[_addCount++] = lanes;
	}

	ORVAN_WIDE void FindSinesAndCosines()
	{
		for (std::size_t i = 0; i < _count; i += ArcRow::kLanes)
		{
			const auto [sine, cosine] = wide::RoundSineAndCosine(_mm512_load_pd(_angles.data() + i));
			_mm512_store_pd(_sines.data() + i, sine.values);
			_mm512_store_pd(_otherSines.data() + i, sine.others);
			_mm512_store_pd(_cosines.data() + i, cosine.values);
			_mm512_store_pd(_otherCosines.data() + i, cosine.others);
		}
	}

	/// What was added, and what was found for it, in the order of that. Lanes without an angle are zero.
	struct Found
	{
		Doubles angle;
		Doubles sine, otherSine;
		Doubles cosine, otherCosine;
	};

	ORVAN_WIDE Found Take()
	{
		const Lanes lanes = _lanes[_takeCount++];
		const Found found = {Expand(lanes, _angles), Expand(lanes, _sines), Expand(lanes, _otherSines),
							 Expand(lanes, _cosines), Expand(lanes, _otherCosines)};
		_taken += static_cast<std::size_t>(std::popcount(lanes));
		return found;
	}

private:
	static constexpr std::size_t kMostTimes = BentArcs::kMostCubics + 1;
	static constexpr std::size_t kRoom = (kMostTimes + 1) * ArcRow::kLanes;

	using Row = std::array<double, kRoom>;

	ORVAN_WIDE Doubles Expand(Lanes lanes, const Row& row) const
	{
		return _mm512_maskz_expand_pd(lanes, _mm512_loadu_pd(row.data() + _taken));
	}

	alignas(64) Row _angles;
	alignas(64) Row _sines;
	alignas(64) Row _otherSines;
	alignas(64) Row _cosines;
	alignas(64) Row _otherCosines;
	std::array<Lanes, kMostTimes> _lanes;
	std::size_t _count = 0;
	std::size_t _addCount = 0;
	std::size_t _takeCount = 0;
	std::size_t _taken = 0;
};

/// Where angles are on the arcs, and the control points before and behind.
struct Places
{
	/// In which lanes these are not the same to the last bit.
	ORVAN_WIDE Lanes Differ(const Places& others) const
	{
		__m512i bits = _mm512_setzero_si512();
		AddDifferences(x, others.x, bits);
		AddDifferences(y, others.y, bits);
		AddDifferences(beforeX, others.beforeX, bits);
		AddDifferences(beforeY, others.beforeY, bits);
		AddDifferences(behindX, others.behindX, bits);
		AddDifferences(behindY, others.behindY, bits);
		return _mm512_test_epi64_mask(bits, bits);
	}

	Doubles x, y;
	Doubles beforeX, beforeY;
	Doubles behindX, behindY;

private:
	ORVAN_WIDE static void AddDifferences(Doubles these, Doubles those, __m512i& bits)
	{
		constexpr int kFirstOrDifferent = 0xf0 | (0xcc ^ 0xaa);
		bits =
			_mm512_ternarylogic_epi64(bits, _mm512_castpd_si512(these), _mm512_castpd_si512(those), kFirstOrDifferent);
	}
};

/// Bends arcs by the same operations in the same order as `DeliverArc`, so that the results are the same to the last
/// bit. The names of what stands in the middle are those of the conversion in SVG 1.1, F.6.5.
class ArcBender
{
public:
	ORVAN_WIDE explicit ArcBender(const ArcRows& arcs)
		: _all(static_cast<Lanes>((1U << arcs.count) - 1)), _radiusX(Load(arcs.radiusX)), _radiusY(Load(arcs.radiusY))
	{
		const Doubles phi = Load(arcs.rotation) * All(boost::math::constants::degree<double>());
		const Lanes areTurned = _mm512_cmp_pd_mask(phi, All(0), _CMP_NEQ_UQ);
		_sine = Ask(std::sin, areTurned, phi, phi);
		_cosine = Ask(std::cos, areTurned, All(1), phi);

		const Doubles startX = Load(arcs.startX), startY = Load(arcs.startY);
		const Doubles endX = Load(arcs.endX), endY = Load(arcs.endY);
		const Doubles halfX = (startX - endX) * All(0.5);
		const Doubles halfY = (startY - endY) * All(0.5);
		const Doubles x1 = _cosine * halfX + _sine * halfY;
		const Doubles y1 = _cosine * halfY - _sine * halfX;
		const Doubles x1Square = x1 * x1, y1Square = y1 * y1;
		Doubles xSquare = _radiusX * _radiusX, ySquare = _radiusY * _radiusY;
		const Doubles lambda = x1Square / xSquare + y1Square / ySquare;
		const Lanes areTooSmall = _mm512_cmp_pd_mask(lambda, All(1), _CMP_GT_OQ);
		if (areTooSmall != 0)
		{
			const Doubles factor = _mm512_sqrt_pd(lambda);
			_radiusX = Choose(areTooSmall, _radiusX * factor, _radiusX);
			_radiusY = Choose(areTooSmall, _radiusY * factor, _radiusY);
			xSquare = _radiusX * _radiusX;
			ySquare = _radiusY * _radiusY;
		}

		const Doubles quotient =
			(xSquare * ySquare - xSquare * y1Square - ySquare * x1Square) / (xSquare * y1Square + ySquare * x1Square);
		// Of two that can not be compared, the second is taken.
		const Doubles coefficient = Negate(_mm512_sqrt_pd(_mm512_max_pd(quotient, All(0))),
										   static_cast<Lanes>(~(arcs.areLarge ^ arcs.areSweep)));
		const Doubles ratio = _radiusX / _radiusY;
		const Doubles x = coefficient * ratio * y1;
		const Doubles y = Negate(coefficient, kAllLanes) * x1 / ratio;
		_centerX = x * _cosine - y * _sine + (startX + endX) * All(0.5);
		_centerY = x * _sine + y * _cosine + (startY + endY) * All(0.5);
		Doubles endAngle;
		FindAngles((y1 - y) / _radiusY, (x1 - x) / _radiusX, (Negate(y1, kAllLanes) - y) / _radiusY,
				   (Negate(x1, kAllLanes) - x) / _radiusX, endAngle);

		const Lanes isEndLess = _mm512_cmp_pd_mask(endAngle, _startAngle, _CMP_LT_OQ);
		const Lanes isEndMore = _mm512_cmp_pd_mask(endAngle, _startAngle, _CMP_GT_OQ);
		endAngle = Choose(isEndLess & arcs.areSweep, endAngle + All(kFullTurn), endAngle);
		endAngle = Choose(static_cast<Lanes>(isEndMore & ~arcs.areSweep), endAngle - All(kFullTurn), endAngle);
		_step = endAngle - _startAngle;

		// Whatever else is not finite shows in the cubics.
		const Doubles squares = (_radiusX * _radiusX) * (_radiusY * _radiusY);
		_areUsable = _all & AreFinite(squares) & AreProper(arcs);
	}

	ORVAN_WIDE void Bend(BentArcs& bent)
	{
		const Doubles counts = _mm512_roundscale_pd(wide::Magnitude(_step) / All(kQuarterTurn) + All(1),
													_MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
		bent.areBent = _areUsable & _mm512_cmp_pd_mask(counts, All(BentArcs::kMostCubics), _CMP_LE_OQ);
		Store(counts, bent.counts);
		_step = _step / counts;
		FindDistance(bent.areBent);

		Angles angles;
		Lanes going = bent.areBent;
		std::size_t steps = 0;
		for (Doubles angle = _startAngle; going != 0; angle = angle + _step)
		{
			angles.Add(angle, going);
			going &= _mm512_cmp_pd_mask(counts, All(static_cast<double>(steps++)), _CMP_GT_OQ);
		}
		angles.FindSinesAndCosines();

		if (steps == 0)
			return;
		Places from = NextPlaces(angles);
		for (std::size_t i = 0; i + 1 != steps; ++i)
		{
			const Places to = NextPlaces(angles);
			const Lanes areFinite = AreFinite(from.behindX) & AreFinite(from.behindY) & AreFinite(to.beforeX) &
									AreFinite(to.beforeY) & AreFinite(to.x) & AreFinite(to.y);
			// Behind an arc's last cubic, whatever comes out is finite, because the sines are zero.
			bent.areBent &= areFinite;
			CubicRows& cubics = bent.cubics[i];
			Store(from.behindX, from.behindY, cubics.first);
			Store(to.beforeX, to.beforeY, cubics.second);
			Store(to.x, to.y, cubics.end);
			from = to;
		}
	}

private:
	ORVAN_WIDE Doubles Load(const ArcRow& row) const
	{
		return _mm512_maskz_load_pd(_all, row.items.data());
	}

	/// Those that have radii, and an end somewhere else than their start.
	ORVAN_WIDE Lanes AreProper(const ArcRows& arcs) const
	{
		const Doubles none = All(0);
		const Lanes haveRadii = _mm512_cmp_pd_mask(Load(arcs.radiusX), none, _CMP_NEQ_UQ) &
								_mm512_cmp_pd_mask(Load(arcs.radiusY), none, _CMP_NEQ_UQ);
		return haveRadii & (_mm512_cmp_pd_mask(Load(arcs.startX), Load(arcs.endX), _CMP_NEQ_UQ) |
							_mm512_cmp_pd_mask(Load(arcs.startY), Load(arcs.endY), _CMP_NEQ_UQ));
	}

	/// Finds the angles of where the arcs start and end.
	ORVAN_WIDE void FindAngles(Doubles startY, Doubles startX, Doubles endY, Doubles endX, Doubles& endAngle)
	{
		constexpr Lanes kHalf = 0x0f;
		if (_all > kHalf)
		{
			const Rounded starts = wide::RoundAngle(startY, startX);
			const Rounded ends = wide::RoundAngle(endY, endX);
			_startAngle = Ask(std::atan2, starts.inDoubt & _all, starts.values, startY, startX);
			endAngle = Ask(std::atan2, ends.inDoubt & _all, ends.values, endY, endX);
			return;
		}
		// Both at once, side by side.
		const Doubles y = _mm512_insertf64x4(startY, _mm512_castpd512_pd256(endY), 1);
		const Doubles x = _mm512_insertf64x4(startX, _mm512_castpd512_pd256(endX), 1);
		const Rounded angles = wide::RoundAngle(y, x);
		_startAngle = Ask(std::atan2, angles.inDoubt & static_cast<Lanes>(_all | _all << 4), angles.values, y, x);
		endAngle = _mm512_castpd256_pd512(_mm512_extractf64x4_pd(_startAngle, 1));
	}

	/// How far the control points of a cubic stand from its ends, as a part of the way to where its tangents meet.
	ORVAN_WIDE void FindDistance(Lanes lanes)
	{
		const Doubles half = _step * All(0.5);
		const auto [tangent, sine] = wide::RoundTangentAndSine(half);
		Doubles sum = SumOf(tangent.values);
		// Next to four, most bits of the tangent do not count.
		const Lanes matters = _mm512_cmp_pd_mask(sum, SumOf(tangent.others), _CMP_NEQ_UQ) & lanes;
		if (matters != 0)
			sum = SumOf(Ask(std::tan, matters, tangent.values, half));
		_distance = Ask(std::sin, sine.inDoubt & lanes, sine.values, half + half) * (_mm512_sqrt_pd(sum) - All(1)) *
					All(boost::math::constants::third<double>());
	}

	ORVAN_WIDE static Doubles SumOf(Doubles tangent)
	{
		return All(4) + All(3) * tangent * tangent;
	}

	/// Most bits of a sine do not count either, next to the center; where they do, the C library is asked.
	ORVAN_WIDE Places NextPlaces(Angles& angles) const
	{
		const Angles::Found found = angles.Take();
		const Places places = PlacesOf(found.sine, found.cosine);
		const Lanes areBothInDoubt = _mm512_cmp_pd_mask(found.sine, found.otherSine, _CMP_NEQ_UQ) &
									 _mm512_cmp_pd_mask(found.cosine, found.otherCosine, _CMP_NEQ_UQ);
		const Lanes matters = places.Differ(PlacesOf(found.otherSine, found.otherCosine)) | areBothInDoubt;
		if (matters == 0) [[likely]]
			return places;
		return PlacesOf(Ask(std::sin, matters, found.sine, found.angle),
						Ask(std::cos, matters, found.cosine, found.angle));
	}

	ORVAN_WIDE Places PlacesOf(Doubles sine, Doubles cosine) const
	{
		const Doubles rightX = _radiusX * cosine;
		const Doubles upY = _radiusY * sine;
		const Doubles leftSlope = Negate(_radiusX * sine, kAllLanes);
		const Doubles upSlope = _radiusY * cosine;
		const Doubles x = _centerX + rightX * _cosine - upY * _sine;
		const Doubles y = _centerY + rightX * _sine + upY * _cosine;
		const Doubles alongX = (leftSlope * _cosine - upSlope * _sine) * _distance;
		const Doubles alongY = (leftSlope * _sine + upSlope * _cosine) * _distance;
		return {x, y, x - alongX, y - alongY, x + alongX, y + alongY};
	}

	Lanes _all;
	Lanes _areUsable;
	Doubles _radiusX, _radiusY;
	Doubles _sine, _cosine;
	Doubles _centerX, _centerY;
	Doubles _startAngle;
	Doubles _step;
	Doubles _distance;
};

} // namespace

ORVAN_WIDE void BendArcs(const ArcRows& arcs, BentArcs& bent)
{
	ArcBender(arcs).Bend(bent);
}

#else

void BendArcs(const ArcRows&, BentArcs& bent)
{
	bent.areBent = 0;
}

#endif
} // namespace orvan::grammar
