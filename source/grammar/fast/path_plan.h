// SPDX-License-Identifier: MIT
#pragma once

#include "fast/number_tape.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
/// What a segment of a path is made by; those whose names end with "By" count from the current point.
enum class Step : std::uint8_t
{
	move,
	moveBy,
	line,
	lineBy,
	horizontal,
	horizontalBy,
	vertical,
	verticalBy,
	cubic,
	cubicBy,
	arc,
	arcBy,
	close,
	smoothCubic,
	smoothCubicBy,
	quadratic,
	quadraticBy,
	smoothQuadratic,
	smoothQuadraticBy,
	none
};

/// Where tables hold what belongs to a step.
constexpr std::size_t IndexOf(Step step)
{
	return static_cast<std::size_t>(step);
}

/// As many kinds of steps as the bits of one tell apart.
inline constexpr std::size_t kStepKinds = 32;

/// The steps that the numbers and marks of a tape make. Of `M1 2 3 4h5`, whose numbers are 1 2 3 4 5,
///
///     steps         move  line  horizontalBy
///     first number  0     2     4
///
/// A step is found without a branch for each kind of command: of a row of commands nobody foresees the next.
class PathPlan
{
public:
	/// Plans what stands on a tape that was recorded from `base` on, in a text that ends at `end`. `going` is the step
	/// whose numbers may stand before the first mark. Abscissas that run on behind the flags of an arc are put on the
	/// tape.
	void Make(NumberTape& tape, const char* base, const char* end, PathDialect dialect, Step going);

	std::size_t GetCount() const
	{
		return _count;
	}

	Step GetStep(std::size_t index) const
	{
		return static_cast<Step>(_steps[index] % kStepKinds);
	}

	/// Where on the tape the first number of a step stands; of an arc, that of its end point.
	std::size_t GetFirstNumber(std::size_t index) const
	{
		return _steps[index] / kStepKinds;
	}

	/// What an arc is written with, but for its end point.
	struct Arc
	{
		double radiusX, radiusY, rotation;
		bool isLarge, isSweep;
	};

	std::size_t GetArcCount() const
	{
		return _arcCount;
	}

	/// The arcs among the steps, in their order.
	const Arc& GetArc(std::size_t index) const
	{
		return _arcs[index];
	}

	/// Where what follows begins.
	const char* GetPlace() const
	{
		return _place;
	}

	/// The step whose numbers may follow there; none where a command must.
	Step GetGoing() const
	{
		return _going;
	}

	/// Whether a tape from there on would be of no use.
	bool IsStuck() const
	{
		return _isStuck;
	}

	/// As many steps as can come of a tape, and as many arcs.
	static constexpr std::size_t kMostSteps =
		NumberTape::kMostNumbers + NumberTape::kMostMarks + 3 * NumberTape::kMostAtOnce;
	static constexpr std::size_t kMostArcs = (NumberTape::kMostNumbers + NumberTape::kMostAtOnce) / 5;

	/// The letter of a step; zero for none.
	static char GetLetter(Step step);

private:
	static constexpr std::size_t kAtOnce = 16;

	class Planner;

	std::size_t _count;
	std::size_t _arcCount;
	const char* _place;
	Step _going;
	bool _isStuck;
	std::array<std::uint16_t, kMostSteps + kAtOnce> _steps;
	std::array<Arc, kMostArcs> _arcs;
};
} // namespace orvan::grammar
