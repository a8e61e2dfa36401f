// SPDX-License-Identifier: MIT
/// Pieces that meet at their ends only, as a graph in the plane: how often both outlines go around each of its faces.
#pragma once

#include "box_tree.h"
#include "pieces.h"

namespace orvan::geometry
{

/// How often each of the two outlines goes around a place.
struct Windings
{
	std::int32_t of[2] = {0, 0};

	friend bool operator==(const Windings&, const Windings&) noexcept = default;

	void Add(const Windings& other, std::int32_t times) noexcept
	{
		of[0] += other.of[0] * times;
		of[1] += other.of[1] * times;
	}
};

/// A line between two vertices, `low` before `high` in the order of vertices, with what runs along it.
struct GraphEdge
{
	std::uint32_t low = 0;
	std::uint32_t high = 0;
	Windings change;          ///< What is left of the way from low to high, less what is right of it.
	std::uint32_t source = 0; ///< One of the curves that run along it.
	double lowAt = 0.0;       ///< Its parameters at both ends.
	double highAt = 0.0;
};

/// One of the two ways along an edge: `2 * edge` leads from low to high, the next number back.
using HalfEdge = std::uint32_t;

/// The graph. Left and right are meant as if y went up.
class PlanarGraph
{
public:
	static Result<PlanarGraph> Create(const BaseArray<Piece>& pieces) noexcept;

	const BaseArray<GridPoint>& GetVertices() const noexcept
	{
		return _vertices;
	}

	std::size_t GetHalfEdgeCount() const noexcept
	{
		return _edges.GetCount() * 2;
	}

	const GraphEdge& GetEdge(HalfEdge half) const noexcept
	{
		return _edges[half / 2];
	}

	static HalfEdge GetTwin(HalfEdge half) noexcept
	{
		return half ^ 1u;
	}

	std::uint32_t GetOrigin(HalfEdge half) const noexcept
	{
		const GraphEdge& edge = GetEdge(half);
		return (half & 1u) != 0 ? edge.high : edge.low;
	}

	std::uint32_t GetTarget(HalfEdge half) const noexcept
	{
		return GetOrigin(GetTwin(half));
	}

	/// Of the face on the left.
	const Windings& GetWindings(HalfEdge half) const noexcept
	{
		return _windings[half];
	}

	/// The next half-edge from the same vertex, clockwise.
	HalfEdge GetNextClockwise(HalfEdge half) const noexcept;

	/// Calls `visit` with each half-edge that leaves a vertex.
	template <typename Visit>
	void ForEachFrom(std::uint32_t vertex, Visit visit) const noexcept
	{
		for (std::uint32_t i = _firstAt[vertex]; i < _firstAt[vertex + 1]; i++)
			visit(_around[i]);
	}

private:
	Result<void> MakeVertices(const BaseArray<Piece>& pieces) noexcept;
	Result<void> MakeEdges(const BaseArray<Piece>& pieces) noexcept;
	Result<void> SortAroundVertices() noexcept;
	Result<void> FindWindings() noexcept;
	/// Of the place directly left of a vertex that is the leftmost of what is connected with it.
	Windings FindOutside(const BoxTree& tree, std::uint32_t vertex) const noexcept;
	bool IsNearer(const GraphEdge& edge, const GraphEdge& than) const noexcept;
	std::uint32_t FindVertex(const GridPoint& point) const noexcept;
	GridPoint GetWay(HalfEdge half) const noexcept;

	/// Of the left side of a half-edge, less that of its right side.
	void AddChange(HalfEdge half, std::int32_t times, Windings& windings) const noexcept
	{
		windings.Add(GetEdge(half).change, (half & 1u) != 0 ? -times : times);
	}

	BaseArray<GridPoint> _vertices; ///< From left to right, at the same place from low to high.
	BaseArray<GraphEdge> _edges;
	BaseArray<HalfEdge> _around;       ///< By origin, counterclockwise from the way to the left on.
	BaseArray<std::uint32_t> _firstAt; ///< Where those of a vertex begin in `_around`.
	BaseArray<std::uint32_t> _placeOf; ///< Where a half-edge stands in `_around`.
	BaseArray<Windings> _windings;     ///< By half-edge.
};

} // namespace orvan::geometry
