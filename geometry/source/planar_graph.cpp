// SPDX-License-Identifier: MIT
#include "planar_graph.h"

#include <limits>
#include <tuple>

namespace orvan::geometry
{
namespace
{

/// 0 for directions below the horizontal, 1 for the others; the way to the left comes last of all.
int GetHalf(const GridPoint& way) noexcept
{
	if (way.y == 0)
		return way.x < 0 ? 2 : 1;
	return way.y < 0 ? 0 : 1;
}

/// Counterclockwise from the way to the left on.
bool IsBefore(const GridPoint& a, const GridPoint& b) noexcept
{
	if (GetHalf(a) != GetHalf(b))
		return GetHalf(a) < GetHalf(b);
	return Cross(a, b) > 0;
}

} // namespace

Result<PlanarGraph> PlanarGraph::Create(const BaseArray<Piece>& pieces) noexcept
{
	PlanarGraph graph;
	ORVAN_TRY(graph.MakeVertices(pieces));
	ORVAN_TRY(graph.MakeEdges(pieces));
	ORVAN_TRY(graph.SortAroundVertices());
	ORVAN_TRY(graph.FindWindings());
	return graph;
}

Result<void> PlanarGraph::MakeVertices(const BaseArray<Piece>& pieces) noexcept
{
	ORVAN_TRY(_vertices.Reserve(pieces.GetCount() * 2));
	for (const Piece& piece : pieces)
	{
		ORVAN_TRY(_vertices.Append(piece.from));
		ORVAN_TRY(_vertices.Append(piece.to));
	}
	std::sort(_vertices.begin(), _vertices.end());
	const GridPoint* const end = std::unique(_vertices.begin(), _vertices.end());
	return _vertices.Resize(static_cast<std::size_t>(end - _vertices.begin()));
}

std::uint32_t PlanarGraph::FindVertex(const GridPoint& point) const noexcept
{
	return static_cast<std::uint32_t>(std::lower_bound(_vertices.begin(), _vertices.end(), point) - _vertices.begin());
}

Result<void> PlanarGraph::MakeEdges(const BaseArray<Piece>& pieces) noexcept
{
	BaseArray<GraphEdge> all;
	ORVAN_TRY(all.Reserve(pieces.GetCount()));
	for (const Piece& piece : pieces)
	{
		const std::uint32_t from = FindVertex(piece.from);
		const std::uint32_t to = FindVertex(piece.to);
		GraphEdge edge{from, to, {}, piece.source, piece.start, piece.end};
		edge.change.of[piece.operand] = 1;
		if (from > to)
		{
			std::swap(edge.low, edge.high);
			std::swap(edge.lowAt, edge.highAt);
			edge.change.of[piece.operand] = -1;
		}
		ORVAN_TRY(all.Append(edge));
	}
	std::sort(all.begin(), all.end(),
			  [](const GraphEdge& a, const GraphEdge& b)
			  { return std::tie(a.low, a.high, a.source, a.lowAt) < std::tie(b.low, b.high, b.source, b.lowAt); });
	for (std::size_t i = 0; i < all.GetCount();)
	{
		// Of curves that run along each other the first one stands for all, so that longer stretches stay whole.
		GraphEdge edge = all[i];
		for (i++; i < all.GetCount() && all[i].low == edge.low && all[i].high == edge.high; i++)
			edge.change.Add(all[i].change, 1);
		if (edge.change != Windings()) // Otherwise it makes no difference.
			ORVAN_TRY(_edges.Append(edge));
	}
	return {};
}

Result<void> PlanarGraph::SortAroundVertices() noexcept
{
	const auto count = static_cast<std::uint32_t>(GetHalfEdgeCount());
	ORVAN_TRY(_around.Reserve(count));
	for (HalfEdge half = 0; half < count; half++)
		ORVAN_TRY(_around.Append(half));
	std::sort(_around.begin(), _around.end(),
			  [this](HalfEdge a, HalfEdge b)
			  {
				  const std::uint32_t first = GetOrigin(a);
				  const std::uint32_t second = GetOrigin(b);
				  return first != second ? first < second : IsBefore(GetWay(a), GetWay(b));
			  });
	ORVAN_TRY(_placeOf.Resize(count));
	ORVAN_TRY(_firstAt.Resize(_vertices.GetCount() + 1));
	for (std::uint32_t place = 0; place < count; place++)
	{
		_placeOf[_around[place]] = place;
		_firstAt[GetOrigin(_around[place]) + 1]++;
	}
	for (std::size_t vertex = 0; vertex < _vertices.GetCount(); vertex++)
		_firstAt[vertex + 1] += _firstAt[vertex];
	return {};
}

HalfEdge PlanarGraph::GetNextClockwise(HalfEdge half) const noexcept
{
	const std::uint32_t place = _placeOf[half];
	const std::uint32_t vertex = GetOrigin(half);
	return _around[place > _firstAt[vertex] ? place - 1 : _firstAt[vertex + 1] - 1];
}

GridPoint PlanarGraph::GetWay(HalfEdge half) const noexcept
{
	return _vertices[GetTarget(half)] - _vertices[GetOrigin(half)];
}

/// From the leftmost vertex of what is connected: the place left of it is outside of that, and is known from the edge
/// that is next to the left, which was reached before. From there every edge tells what is different behind it.
Result<void> PlanarGraph::FindWindings() noexcept
{
	BaseArray<Rectangle> boxes;
	ORVAN_TRY(boxes.Reserve(_edges.GetCount()));
	for (const GraphEdge& edge : _edges)
	{
		Rectangle box;
		for (const std::uint32_t end : {edge.low, edge.high})
			box.Add({static_cast<double>(_vertices[end].x), static_cast<double>(_vertices[end].y)});
		ORVAN_TRY(boxes.Append(box));
	}
	const BoxTree tree = ORVAN_TRY(BoxTree::Create(boxes));

	constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
	ORVAN_TRY(_windings.Resize(GetHalfEdgeCount()));
	BaseArray<std::uint32_t> cameBy; // By vertex: the place in `_around` whose left side is known.
	ORVAN_TRY(cameBy.Reserve(_vertices.GetCount()));
	for (std::size_t i = 0; i < _vertices.GetCount(); i++)
		ORVAN_TRY(cameBy.Append(kNone));
	BaseArray<std::uint32_t> waiting;
	for (std::uint32_t vertex = 0; vertex < _vertices.GetCount(); vertex++)
	{
		if (cameBy[vertex] != kNone || _firstAt[vertex] == _firstAt[vertex + 1])
			continue;
		// All ways lead to the right or straight up; the place on the left is left of the last one.
		cameBy[vertex] = _firstAt[vertex + 1] - 1;
		_windings[_around[cameBy[vertex]]] = FindOutside(tree, vertex);
		ORVAN_TRY(waiting.Append(vertex));
		while (!waiting.IsEmpty())
		{
			const std::uint32_t at = waiting[waiting.GetCount() - 1];
			ORVAN_TRY(waiting.Resize(waiting.GetCount() - 1));
			const std::uint32_t first = _firstAt[at];
			const std::uint32_t count = _firstAt[at + 1] - first;
			Windings windings = _windings[_around[cameBy[at]]];
			for (std::uint32_t step = 1; step <= count; step++)
			{
				const HalfEdge half = _around[first + (cameBy[at] - first + step) % count];
				const HalfEdge twin = GetTwin(half);
				_windings[twin] = windings; // Its left side is the right side of the other one.
				AddChange(half, 1, windings);
				_windings[half] = windings;
				const std::uint32_t next = GetTarget(half);
				if (cameBy[next] == kNone)
				{
					cameBy[next] = _placeOf[twin];
					ORVAN_TRY(waiting.Append(next));
				}
			}
		}
	}
	return {};
}

Windings PlanarGraph::FindOutside(const BoxTree& tree, std::uint32_t vertex) const noexcept
{
	const GridPoint& point = _vertices[vertex];
	const auto x = static_cast<double>(point.x);
	const auto y = static_cast<double>(point.y);
	const double reach = x - static_cast<double>(_vertices[0].x);
	const GraphEdge* nearest = nullptr;
	// The edge is mostly near: look farther and farther.
	double width = std::max(1.0, reach / 1024.0);
	for (bool isWhole = false; nearest == nullptr && !isWhole; width *= 4.0)
	{
		isWhole = width > reach;
		tree.ForEachIn({x - width, y, x, y},
					   [&](std::uint32_t index)
					   {
						   const GraphEdge& edge = _edges[index];
						   const GridPoint& low = _vertices[edge.low];
						   const GridPoint& high = _vertices[edge.high];
						   const bool isUp = high.y > low.y;
						   const GridPoint& bottom = isUp ? low : high;
						   const GridPoint& top = isUp ? high : low;
						   // An edge owns its lower end and not its upper one.
						   if (bottom.y > point.y || top.y <= point.y || Cross(top - bottom, point - bottom) >= 0)
							   return;
						   // Farther to the left than was looked, others may be nearer.
						   const double share =
							   static_cast<double>(point.y - bottom.y) / static_cast<double>(top.y - bottom.y);
						   const double at =
							   static_cast<double>(bottom.x) + static_cast<double>(top.x - bottom.x) * share;
						   if (!isWhole && at < x - width)
							   return;
						   if (nearest == nullptr || IsNearer(edge, *nearest))
							   nearest = &edge;
					   });
	}
	if (nearest == nullptr)
		return {};
	const auto half = static_cast<HalfEdge>((nearest - _edges.begin()) * 2);
	const bool isUp = _vertices[nearest->high].y > _vertices[nearest->low].y;
	return _windings[isUp ? GetTwin(half) : half]; // The right side of the way up.
}

/// Of two edges that do not cross and both stand at some height, whether one is right of the other there.
bool PlanarGraph::IsNearer(const GraphEdge& edge, const GraphEdge& than) const noexcept
{
	const auto order = [&](const GraphEdge& of)
	{
		const GridPoint& low = _vertices[of.low];
		const GridPoint& high = _vertices[of.high];
		return low.y < high.y ? std::pair(low, high) : std::pair(high, low);
	};
	const auto [bottom, top] = order(edge);
	const auto [otherBottom, otherTop] = order(than);
	if (bottom.y < otherBottom.y)
	{
		const std::int64_t side = Cross(top - bottom, otherBottom - bottom);
		return side != 0 ? side > 0 : Cross(top - bottom, otherTop - otherBottom) > 0;
	}
	const std::int64_t side = Cross(otherTop - otherBottom, bottom - otherBottom);
	return side != 0 ? side < 0 : Cross(otherTop - otherBottom, top - bottom) < 0;
}

} // namespace orvan::geometry
