// SPDX-License-Identifier: MIT
#include "fast/path_machine.h"

#include "fast/wide_registers.h"

namespace orvan::grammar
{
namespace
{
using Kind = PathSegment::Kind;

constexpr bool IsArc(Step step)
{
	return step == Step::arc || step == Step::arcBy;
}

constexpr bool IsCubic(Step step)
{
	return step == Step::cubic || step == Step::cubicBy || step == Step::smoothCubic || step == Step::smoothCubicBy;
}

constexpr bool IsQuadratic(Step step)
{
	return step >= Step::quadratic && step <= Step::smoothQuadraticBy;
}
} // namespace

PathState PathMachine::GetState() const
{
	PathState state{.startX = _left[6], .startY = _left[7], .currentX = _left[4], .currentY = _left[5]};
	if (IsCubic(_last))
	{
		state.controlX = _left[2];
		state.controlY = _left[3];
		state.curve = PathState::Curve::cubic;
	}
	else if (IsQuadratic(_last))
	{
		state.controlX = _control[0];
		state.controlY = _control[1];
		state.curve = PathState::Curve::quadratic;
	}
	return state;
}

#if defined(__x86_64__)

namespace
{
/// Where the eight coordinates of a segment come from.
///
///     0 1  2 3     its points, of which a line has the first only
///     4 5          where it ends; of an arc, which has no points yet, 0 1 are where it starts
///     6 7          where the subpath starts
struct Row
{
	using Choices = std::array<long long, 8>;

	Choices numbers; ///< Which number is added.
	Choices before;  ///< To which of what the last segment left.
	Kind kind;
};

/// What is added to nothing, so that even the sign of a zero stays.
constexpr long long no = 8;

/// What is added where the library adds a zero that nobody wrote.
constexpr long long zr = 9;

/// What these two stand for.
alignas(64) constexpr std::array<double, 8> kFillers{-0.0, 0.0};

/// Of the steps up to `close`, in their order.
alignas(64) constexpr std::array<Row, 13> kRows{{
	{{0, 1, no, no, 0, 1, 0, 1}, {no, no, no, no, no, no, no, no}, Kind::move},
	{{0, 1, no, no, 0, 1, 0, 1}, {4, 5, no, no, 4, 5, 4, 5}, Kind::move},
	{{0, 1, no, no, 0, 1, no, no}, {no, no, no, no, no, no, 6, 7}, Kind::line},
	{{0, 1, no, no, 0, 1, no, no}, {4, 5, no, no, 4, 5, 6, 7}, Kind::line},
	{{0, no, no, no, 0, no, no, no}, {no, 5, no, no, no, 5, 6, 7}, Kind::line},
	{{0, zr, no, no, 0, zr, no, no}, {4, 5, no, no, 4, 5, 6, 7}, Kind::line},
	{{no, 0, no, no, no, 0, no, no}, {4, no, no, no, 4, no, 6, 7}, Kind::line},
	{{zr, 0, no, no, zr, 0, no, no}, {4, 5, no, no, 4, 5, 6, 7}, Kind::line},
	{{0, 1, 2, 3, 4, 5, no, no}, {no, no, no, no, no, no, 6, 7}, Kind::cubic},
	{{0, 1, 2, 3, 4, 5, no, no}, {4, 5, 4, 5, 4, 5, 6, 7}, Kind::cubic},
	{{no, no, no, no, 0, 1, no, no}, {4, 5, no, no, no, no, 6, 7}, Kind::none},
	{{no, no, no, no, 0, 1, no, no}, {4, 5, no, no, 4, 5, 6, 7}, Kind::none},
	{{no, no, no, no, no, no, no, no}, {no, no, no, no, 6, 7, 6, 7}, Kind::close},
}};

ORVAN_WIDE __m512i Load(const Row::Choices& choices)
{
	return _mm512_loadu_si512(choices.data());
}

ORVAN_WIDE void Store(__m512d left, Kind kind, PathSegment& segment)
{
	// The kind is written into what this one leaves, which only the next one needs.
	static_assert(sizeof(PathSegment) == sizeof left && offsetof(PathSegment, coordinates) == 0);
	_mm512_store_pd(reinterpret_cast<double*>(&segment), left);
	segment.kind = kind;
}

/// The point at two places of what a segment left, or of numbers, four times.
ORVAN_WIDE __m512d Repeat(__m512d points, int place)
{
	const __m512i odd = _mm512_setr_epi64(0, 1, 0, 1, 0, 1, 0, 1);
	return _mm512_permutexvar_pd(_mm512_add_epi64(odd, _mm512_set1_epi64(place)), points);
}

/// Where the control point of a smooth curve is, from the current point if `isBy`. `control` is the last one of the
/// curve before, if it stands behind one of its kind.
ORVAN_WIDE __m512d Reflect(__m512d current, __m512d control, bool isBehindOne, bool isBy)
{
	if (isBehindOne)
		return _mm512_sub_pd(isBy ? current : _mm512_add_pd(current, current), control);
	return isBy ? _mm512_setzero_pd() : current;
}

/// What a quadratic curve leaves. `control` is its control point then, and that of the one before if `isBehindOne`.
ORVAN_WIDE __m512d BendQuadratic(__m512d left, const double* numbers, Step step, bool isBehindOne, __m512d& control)
{
	const bool isBy = step == Step::quadraticBy || step == Step::smoothQuadraticBy;
	const bool isSmooth = step == Step::smoothQuadratic || step == Step::smoothQuadraticBy;
	const __m512d written = _mm512_loadu_pd(numbers);
	const __m512d current = Repeat(left, 4);
	__m512d end = Repeat(written, isSmooth ? 0 : 2);
	control = isSmooth ? Reflect(current, control, isBehindOne, isBy) : Repeat(written, 0);

	const __m512d third = _mm512_set1_pd(1. / 3.);
	const __m512d part = _mm512_mul_pd(_mm512_set1_pd(2. / 3.), control);
	__m512d first = _mm512_add_pd(_mm512_mul_pd(current, third), part);
	__m512d second = _mm512_add_pd(_mm512_mul_pd(end, third), part);
	if (isBy)
	{
		first = _mm512_add_pd(part, current);
		second = _mm512_add_pd(second, current);
		end = _mm512_add_pd(end, current);
		control = _mm512_add_pd(control, current);
	}
	left = _mm512_mask_mov_pd(left, 0b00000011, first);
	left = _mm512_mask_mov_pd(left, 0b00001100, second);
	return _mm512_mask_mov_pd(left, 0b00110000, end);
}

/// What a smooth cubic leaves.
ORVAN_WIDE __m512d Smoothen(__m512d left, const double* numbers, Step step, bool isBehindCubic, __m512d fillers)
{
	const bool isBy = step == Step::smoothCubicBy;
	__m512d chosen = Reflect(Repeat(left, 4), Repeat(left, 2), isBehindCubic, isBy);
	constexpr __mmask8 kWritten = 0b00111100;
	constexpr __mmask8 kStart = 0b11000000;
	chosen = _mm512_mask_permutexvar_pd(chosen, kWritten, _mm512_setr_epi64(0, 0, 0, 1, 2, 3, 0, 0),
										_mm512_loadu_pd(numbers));
	chosen = _mm512_mask_mov_pd(chosen, kStart, _mm512_set1_pd(-0.0));
	const Row& row = kRows[IndexOf(isBy ? Step::cubicBy : Step::cubic)];
	return _mm512_add_pd(chosen, _mm512_permutex2var_pd(left, Load(row.before), fillers));
}
} // namespace

ORVAN_WIDE void PathMachine::Run(const PathPlan& plan, const NumberTape& tape)
{
	const __m512d fillers = _mm512_load_pd(kFillers.data());
	const std::size_t count = plan.GetCount();
	__m512d left = _mm512_load_pd(_left.data());
	__m512d control = _mm512_load_pd(_control.data());
	Step last = _last;
	PathSegment* segment = _segments.data();
	std::uint16_t* arcPlace = _arcPlaces.data();
	for (std::size_t i = 0; i != count; ++i)
	{
		const Step step = plan.GetStep(i);
		const double* const numbers = tape.values.data() + plan.GetFirstNumber(i);
		if (IndexOf(step) < kRows.size()) [[likely]]
		{
			const Row& row = kRows[IndexOf(step)];
			const __m512d chosen = _mm512_permutex2var_pd(_mm512_loadu_pd(numbers), Load(row.numbers), fillers);
			left = _mm512_add_pd(chosen, _mm512_permutex2var_pd(left, Load(row.before), fillers));
			Store(left, row.kind, *segment);
			// Of an arc, the rest of its room is written when it is bent.
			*arcPlace = static_cast<std::uint16_t>(segment - _segments.data());
			arcPlace += IsArc(step);
			segment += IsArc(step) ? BentArcs::kMostCubics : 1;
		}
		else
		{
			if (IsCubic(step))
				left = Smoothen(left, numbers, step, IsCubic(last), fillers);
			else
				left = BendQuadratic(left, numbers, step, IsQuadratic(last), control);
			Store(left, Kind::cubic, *segment++);
		}
		last = step;
	}
	_mm512_store_pd(_left.data(), left);
	_mm512_store_pd(_control.data(), control);
	_last = last;
	_count = static_cast<std::size_t>(segment - _segments.data());
}

#else

void PathMachine::Run(const PathPlan&, const NumberTape&)
{
}

#endif
} // namespace orvan::grammar
