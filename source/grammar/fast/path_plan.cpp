// SPDX-License-Identifier: MIT
#include "fast/path_plan.h"

#include "fast/wide_registers.h"
#include "shared/decimal.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace orvan::grammar
{
namespace
{
/// The letters of the steps, in their order.
constexpr std::string_view kLetters = "MmLlHhVvCcAaZSsQqTt";

static_assert(kLetters.size() == IndexOf(Step::none) && kLetters[IndexOf(Step::close)] == 'Z');

/// The steps of all characters.
constexpr auto kSteps = []
{
	std::array<Step, 256> steps;
	steps.fill(Step::none);
	for (std::size_t i = 0; i != kLetters.size(); ++i)
		steps[static_cast<unsigned char>(kLetters[i])] = static_cast<Step>(i);
	steps['z'] = Step::close;
	return steps;
}();

/// What is known of a step.
struct StepFacts
{
	std::uint32_t reciprocal = 0; ///< Division by `numbers` is multiplication with that, and sixteen bits less.
	std::uint8_t numbers = 0;     ///< How many it takes.
	std::uint8_t least = 0;       ///< How many of it a command makes without any numbers.
	Step next = Step::none;       ///< What follows when more numbers do.
};

constexpr auto kFacts = []
{
	constexpr std::array<std::uint8_t, kLetters.size()> kNumbers{2, 2, 2, 2, 1, 1, 1, 1, 6, 6,
																 7, 7, 0, 4, 4, 4, 4, 2, 2};
	std::array<StepFacts, kStepKinds> facts;
	for (std::size_t i = 0; i != kLetters.size(); ++i)
	{
		const std::uint32_t numbers = kNumbers[i];
		facts[i] = {numbers == 0 ? 0 : 0x10000 / numbers + 1, kNumbers[i], 0, static_cast<Step>(i)};
	}
	facts[IndexOf(Step::move)].next = Step::line;
	facts[IndexOf(Step::moveBy)].next = Step::lineBy;
	facts[IndexOf(Step::close)] = {.least = 1};
	return facts;
}();

/// Of each count of numbers, how far apart steps of as many are.
alignas(32) constexpr auto kStrides = []
{
	std::array<std::array<std::uint16_t, 16>, 8> strides{};
	for (std::size_t numbers = 0; numbers != strides.size(); ++numbers)
	{
		for (std::size_t i = 0; i != strides[numbers].size(); ++i)
			strides[numbers][i] = static_cast<std::uint16_t>(i * numbers * kStepKinds);
	}
	return strides;
}();
} // namespace

char PathPlan::GetLetter(Step step)
{
	return step == Step::none ? '\0' : kLetters[IndexOf(step)];
}

#if defined(__x86_64__)

class PathPlan::Planner
{
public:
	Planner(PathPlan& plan, NumberTape& tape, const char* base, const char* end, PathDialect dialect)
		: _plan(plan), _tape(tape), _base(base), _end(end), _dialect(dialect)
	{
	}

	ORVAN_WIDE void Plan(Step going)
	{
		_plan._arcCount = 0;
		const char* const letters = _tape.letters.data();
		const std::uint16_t* const ends = _tape.numbersBefore.data();
		const std::size_t markCount = _tape.markCount;
		std::uint16_t* const begin = _plan._steps.data();
		std::uint16_t* room = begin;
		Step step = going;
		std::size_t from = 0;
		std::size_t to = ends[0];
		if (to != 0 && !AddRun(step, from, to, room)) [[unlikely]]
		{
			_plan._count = static_cast<std::size_t>(room - begin);
			return Stop(_base, going, step, from, _plan._count != 0);
		}
		for (std::size_t mark = 0; mark != markCount; ++mark)
		{
			const std::uint16_t* const start = room;
			const Step before = step;
			step = kSteps[static_cast<unsigned char>(letters[mark])];
			from = to;
			to = ends[mark + 1];
			if (!AddRun(step, from, to, room)) [[unlikely]]
			{
				_plan._count = static_cast<std::size_t>(room - begin);
				return Stop(_base + _tape.marks[mark], before, step, from, room != start);
			}
		}
		_plan._count = static_cast<std::size_t>(room - begin);
		_plan._place = _tape.behind;
		_plan._going = kFacts[IndexOf(step)].next;
		_plan._isStuck = _tape.isAtEnd;
	}

private:
	/// Adds the steps of a command whose numbers stand at [from, to); false, with `from` behind those that are used,
	/// when there are none or too many of them.
	[[gnu::always_inline]] ORVAN_WIDE bool AddRun(Step step, std::size_t& from, std::size_t to, std::uint16_t*& room)
	{
		if (step == Step::arc || step == Step::arcBy)
		{
			const std::size_t first = from;
			_plan._count = static_cast<std::size_t>(room - _plan._steps.data());
			from = AddArcs(step, from, to);
			room = _plan._steps.data() + _plan._count;
			return from == to && from != first;
		}
		const StepFacts& facts = kFacts[IndexOf(step)];
		const std::size_t count = ((to - from) * facts.reciprocal >> 16) + facts.least;
		const auto first = static_cast<std::uint16_t>(from * kStepKinds);
		const __m256i next = _mm256_set1_epi16(static_cast<short>(first + IndexOf(facts.next)));
		const __m256i strides = _mm256_load_si256(reinterpret_cast<const __m256i*>(kStrides[facts.numbers].data()));
		_mm256_storeu_si256(reinterpret_cast<__m256i*>(room), _mm256_add_epi16(next, strides));
		for (std::size_t i = kAtOnce; i < count; i += kAtOnce)
		{
			const __m256i further = _mm256_set1_epi16(static_cast<short>(i * facts.numbers * kStepKinds));
			_mm256_storeu_si256(reinterpret_cast<__m256i*>(room + i),
								_mm256_add_epi16(_mm256_add_epi16(next, strides), further));
		}
		*room = static_cast<std::uint16_t>(first + IndexOf(step));
		room += count;
		from += count * facts.numbers;
		return from == to && count != 0;
	}

	/// Adds arcs as long as there are any; returns where numbers are left.
	[[gnu::noinline]] std::size_t AddArcs(Step step, std::size_t from, std::size_t to)
	{
		while (from != to && AddArc(step, from, to))
		{
		}
		return from;
	}

	/// Adds an arc and moves behind its numbers; false, and nothing is added, if it is not all there or unusual.
	bool AddArc(Step step, std::size_t& from, std::size_t to)
	{
		// Flags that run together are seen as one number, and together with the abscissa.
		constexpr std::size_t kFewest = 5;
		if (to - from < kFewest)
			return false;
		const double* const values = _tape.values.data() + from;
		if (_dialect == PathDialect::plain && (HasSign(from) || HasSign(from + 1)))
			return false;

		// Flags need not be separated from anything, so that their numbers are looked at character by character.
		std::size_t index = from + 3;
		const char* at = _base + _tape.starts[index];
		bool isLarge, isSweep;
		if (std::signbit(_tape.values[index]) || !TakeFlag(at, isLarge))
			return false;
		if (!IsInNumber(at))
		{
			at = _base + _tape.starts[++index];
			if (std::signbit(_tape.values[index]))
				return false;
		}
		if (!TakeFlag(at, isSweep))
			return false;

		// What runs on behind them is the abscissa.
		if (!IsInNumber(at))
			++index;
		else
		{
			const char* const first = at;
			if (!ReadDecimal(at, _end, false, _tape.values[index]) || IsExponent(at) ||
				(_dialect == PathDialect::complete && !HasFewDigits(first, at)))
				return false;
		}
		if (index + 2 > to)
			return false;
		_plan._arcs[_plan._arcCount++] = {values[0], values[1], values[2], isLarge, isSweep};
		_plan._steps[_plan._count++] = static_cast<std::uint16_t>(index * kStepKinds + IndexOf(step));
		from = index + 2;
		return true;
	}

	bool HasSign(std::size_t index) const
	{
		return std::signbit(_tape.values[index]) || _base[_tape.starts[index]] == '+';
	}

	/// Takes a flag, which no exponent may follow.
	bool TakeFlag(const char*& at, bool& flag) const
	{
		flag = *at == '1';
		const bool isFlag = flag || *at == '0';
		++at;
		return isFlag && !IsExponent(at);
	}

	bool IsInNumber(const char* at) const
	{
		return at != _end && (IsDigit(*at) || *at == '.');
	}

	bool IsExponent(const char* at) const
	{
		return at != _end && (*at == 'e' || *at == 'E');
	}

	/// Ends the plan in front of what was not used of a step's numbers, or, when nothing was, at the place of its
	/// command, behind the step `before`.
	void Stop(const char* place, Step before, Step step, std::size_t from, bool isUsed)
	{
		if (isUsed)
		{
			place = _base + _tape.starts[from];
			if (std::signbit(_tape.values[from]) && *place != '-')
				--place;
		}
		_plan._place = place;
		_plan._going = kFacts[IndexOf(isUsed ? step : before)].next;
		_plan._isStuck = _tape.isAtEnd || _plan._count == 0;
	}

	PathPlan& _plan;
	NumberTape& _tape;
	const char* _base;
	const char* _end;
	PathDialect _dialect;
};

void PathPlan::Make(NumberTape& tape, const char* base, const char* end, PathDialect dialect, Step going)
{
	Planner(*this, tape, base, end, dialect).Plan(going);
}

#else

void PathPlan::Make(NumberTape&, const char*, const char*, PathDialect, Step)
{
}

#endif
} // namespace orvan::grammar
