// SPDX-License-Identifier: MIT
#include "fast/arc_queue.h"

namespace orvan::grammar
{
PathSegment& ArcQueue::Hold(Kind kind, std::size_t count)
{
	if (_heldCount + count > kMostHeld)
		Finish();
	PathSegment& held = _held[_heldCount];
	held.kind = kind;
	_heldCount += count;
	return held;
}

void ArcQueue::MoveTo(double x, double y)
{
	if (!IsHolding())
		_sink.MoveTo(x, y);
	else
		Hold(Kind::move).coordinates = {x, y};
}

void ArcQueue::LineTo(double x, double y)
{
	if (!IsHolding())
		_sink.LineTo(x, y);
	else
		Hold(Kind::line).coordinates = {x, y};
}

void ArcQueue::CubicTo(double x1, double y1, double x2, double y2, double x, double y)
{
	if (!IsHolding())
		_sink.CubicTo(x1, y1, x2, y2, x, y);
	else
		Hold(Kind::cubic).coordinates = {x1, y1, x2, y2, x, y};
}

void ArcQueue::Close()
{
	if (!IsHolding())
		_sink.Close();
	else
		Hold(Kind::close);
}

void ArcQueue::ArcTo(const Arc& arc)
{
	if (arc.radiusX == 0 || arc.radiusY == 0 || (arc.startX == arc.endX && arc.startY == arc.endY))
	{
		DeliverArc(arc, *this);
		return;
	}
	if (_arcs.count == ArcRow::kLanes)
		Finish();
	const PathSegment* const room = &Hold(Kind::none, BentArcs::kMostCubics);
	const std::size_t lane = _arcs.count++;
	_places[lane] = static_cast<std::size_t>(room - _held.data());
	_arcs.areLarge |= static_cast<std::uint8_t>(arc.isLarge << lane);
	_arcs.areSweep |= static_cast<std::uint8_t>(arc.isSweep << lane);
	_arcs.startX[lane] = arc.startX;
	_arcs.startY[lane] = arc.startY;
	_arcs.radiusX[lane] = arc.radiusX;
	_arcs.radiusY[lane] = arc.radiusY;
	_arcs.rotation[lane] = arc.rotation;
	_arcs.endX[lane] = arc.endX;
	_arcs.endY[lane] = arc.endY;
}

void ArcQueue::Finish()
{
	if (!IsHolding())
		return;
	BentArcs bent;
	if (_arcs.count >= kFewest)
		BendArcs(_arcs, bent);
	std::size_t from = 0;
	for (std::size_t lane = 0; lane != _arcs.count; ++lane)
	{
		if ((bent.areBent >> lane & 1) != 0)
		{
			Fill(bent, lane);
			continue;
		}
		_sink.AddSegments({_held.data() + from, _places[lane] - from});
		DeliverArc(ArcAt(lane), _sink);
		from = _places[lane] + BentArcs::kMostCubics;
	}
	_sink.AddSegments({_held.data() + from, _heldCount - from});
	_heldCount = 0;
	_arcs.count = 0;
	_arcs.areLarge = _arcs.areSweep = 0;
}

void ArcQueue::Fill(const BentArcs& bent, std::size_t lane)
{
	PathSegment* const room = _held.data() + _places[lane];
	const std::size_t count = static_cast<std::size_t>(bent.counts[lane]);
	for (std::size_t i = 0; i != BentArcs::kMostCubics; ++i)
	{
		const auto& [x1, y1, x2, y2, x, y] = bent.cubics[i];
		room[i] = {i < count ? Kind::cubic : Kind::none, {x1[lane], y1[lane], x2[lane], y2[lane], x[lane], y[lane]}};
	}
	room[count - 1].coordinates[4] = _arcs.endX[lane];
	room[count - 1].coordinates[5] = _arcs.endY[lane];
}

Arc ArcQueue::ArcAt(std::size_t lane) const
{
	return {_arcs.startX[lane],
			_arcs.startY[lane],
			_arcs.radiusX[lane],
			_arcs.radiusY[lane],
			_arcs.rotation[lane],
			(_arcs.areLarge >> lane & 1) != 0,
			(_arcs.areSweep >> lane & 1) != 0,
			_arcs.endX[lane],
			_arcs.endY[lane]};
}
} // namespace orvan::grammar
