// SPDX-License-Identifier: MIT
#pragma once

#include "fast/path_plan.h"
#include "fast/path_state.h"
#include "fast/wide_arcs.h"
#include "grammar.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
/// Makes segments of the steps of a plan, one vector operation each: all coordinates of a segment, and the points that
/// the next one may start from, are sums of a number of the tape and of a part of what the last segment left. Which of
/// both goes where stands in a table. Of `h5` behind a segment that ended at 3 4, in a subpath that started at 1 2,
///
///     left      . .   . .   3 4   1 2
///     numbers   5 0   . .   5 0   . .
///     before    3 4   . .   3 4   1 2
///     segment   8 4   . .   8 4   1 2        a line to 8 4
///
/// The sums are those of the library's path adapter, operand by operand, so that no bit of the results is another.
class PathMachine
{
public:
	/// Replaces the segments. An arc leaves room for as many as it may be bent to, and holds its ends in the first.
	void Run(const PathPlan& plan, const NumberTape& tape);

	std::size_t GetCount() const
	{
		return _count;
	}

	PathSegment* GetSegments()
	{
		return _segments.data();
	}

	/// Where the room for an arc begins.
	std::size_t GetArcPlace(std::size_t arc) const
	{
		return _arcPlaces[arc];
	}

	/// An arc of the plan that ran, as long as nothing else is in its room.
	Arc GetArc(const PathPlan& plan, std::size_t arc) const
	{
		const std::array<double, 6>& points = _segments[_arcPlaces[arc]].coordinates;
		const PathPlan::Arc& values = plan.GetArc(arc);
		return {points[0],      points[1],      values.radiusX, values.radiusY, values.rotation,
				values.isLarge, values.isSweep, points[4],      points[5]};
	}

	/// Whether any step was run.
	bool HasRun() const
	{
		return _last != Step::none;
	}

	PathState GetState() const;

private:
	static constexpr std::size_t kMostSegments =
		PathPlan::kMostSteps + (BentArcs::kMostCubics - 1) * PathPlan::kMostArcs;

	std::size_t _count = 0;
	Step _last = Step::none;
	alignas(64) std::array<double, 8> _left{};    ///< What the last segment left, as the rows have it.
	alignas(64) std::array<double, 8> _control{}; ///< The control point of the last quadratic curve, four times.
	std::array<std::uint16_t, PathPlan::kMostArcs + 1> _arcPlaces;
	std::array<PathSegment, kMostSegments> _segments;
};
} // namespace orvan::grammar
