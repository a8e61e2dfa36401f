// SPDX-License-Identifier: MIT
#include "straighten.h"

#include "box_tree.h"

namespace orvan::geometry
{
namespace
{

/// A part of a curve between two parameters.
struct Part
{
	std::uint32_t source = 0;
	bool isSettled = false; ///< Short enough, or away from all others.
	double start = 0.0;
	double end = 1.0;
	Vector2d from;
	Vector2d to;
	Rectangle hull;
};

class Straightener
{
public:
	Straightener(const Pieces& pieces, double tolerance) noexcept : _pieces(pieces), _tolerance(tolerance)
	{
	}

	Result<void> Run() noexcept
	{
		for (std::uint32_t source = 0; source < _pieces.curves.GetCount(); source++)
			ORVAN_TRY(AddMonotoneParts(source));
		while (_unsettledCount > 0)
			ORVAN_TRY(HalveWhereOthersAreNear());
		return {};
	}

	/// By source, and along each from its start to its end.
	BaseArray<Part> parts;

private:
	const Curve& CurveOf(const Part& part) const noexcept
	{
		return _pieces.curves[part.source].curve;
	}

	/// How far a part may be off its chord: in proportion to the square of its share of the curve.
	bool IsShort(const Part& part) const noexcept
	{
		const Curve& curve = CurveOf(part);
		if (curve.isLine)
			return true;
		const Vector2d first = curve.p[2] - curve.p[1] - (curve.p[1] - curve.p[0]);
		const Vector2d second = curve.p[3] - curve.p[2] - (curve.p[2] - curve.p[1]);
		const double share = part.end - part.start;
		constexpr double kLeast = 1.0 / (1 << 20);
		return 0.75 * std::max(LengthOf(first), LengthOf(second)) * share * share <= _tolerance || share < kLeast;
	}

	Part MakePart(std::uint32_t source, double start, double end) const noexcept
	{
		Part part{source, false, start, end, {}, {}, {}};
		const Curve curve = CurveOf(part).GetPart(start, end);
		part.from = start > 0.0 ? curve.p[0] : CurveOf(part).p[0];
		part.to = end < 1.0 ? curve.p[3] : CurveOf(part).p[3];
		// Ends move to the grid, and the hull has to hold them there as well.
		part.hull = curve.GetHull().Grow(2.0 * _pieces.grid.cell);
		part.isSettled = IsShort(part);
		return part;
	}

	/// The parts between the places where the curve turns back along an axis.
	Result<void> AddMonotoneParts(std::uint32_t source) noexcept
	{
		const Curve& curve = _pieces.curves[source].curve;
		double turns[5] = {0.0, 0.0, 0.0, 0.0, 1.0};
		if (!curve.isLine)
		{
			double across[2] = {0.0, 0.0};
			double along[2] = {0.0, 0.0};
			FindTurns(curve, {1.0, 0.0}, across);
			FindTurns(curve, {0.0, 1.0}, along);
			std::sort(across, across + 2);
			std::sort(along, along + 2);
			std::merge(across, across + 2, along, along + 2, turns);
		}
		double start = 0.0;
		for (const double end : turns)
		{
			if (end <= start)
				continue;
			ORVAN_TRY(Append(parts, MakePart(source, start, end)));
			start = end;
		}
		return {};
	}

	Result<void> Append(BaseArray<Part>& to, const Part& part) noexcept
	{
		if (to.GetCount() >= kMostPieces)
			return IllegalArgumentError("The outlines are too intricate to be combined.");
		_unsettledCount += part.isSettled ? 0 : 1;
		return to.Append(part);
	}

	/// True when one follows the other along a curve that goes on in the same direction: then they meet there only.
	static bool AreNeighbours(const Part& a, const Part& b) noexcept
	{
		if (a.source != b.source || (a.end != b.start && b.end != a.start))
			return false;
		const Vector2d first = a.to - a.from;
		const Vector2d second = b.to - b.from;
		return first.x * second.x > 0.0 || first.y * second.y > 0.0;
	}

	Result<void> HalveWhereOthersAreNear() noexcept
	{
		BaseArray<Rectangle> hulls;
		ORVAN_TRY(hulls.Reserve(parts.GetCount()));
		for (const Part& part : parts)
			ORVAN_TRY(hulls.Append(part.hull));
		const BoxTree tree = ORVAN_TRY(BoxTree::Create(hulls));
		BaseArray<Part> halved;
		ORVAN_TRY(halved.Reserve(parts.GetCount() + _unsettledCount));
		_unsettledCount = 0;
		for (std::size_t i = 0; i < parts.GetCount(); i++)
		{
			const Part& part = parts[i];
			bool isNear = false;
			if (!part.isSettled)
			{
				tree.ForEachIn(part.hull, [&](std::uint32_t other)
							   { isNear = isNear || (other != i && !AreNeighbours(part, parts[other])); });
			}
			if (!isNear)
			{
				Part settled = part;
				settled.isSettled = true;
				ORVAN_TRY(Append(halved, settled));
				continue;
			}
			const double middle = (part.start + part.end) / 2.0;
			ORVAN_TRY(Append(halved, MakePart(part.source, part.start, middle)));
			ORVAN_TRY(Append(halved, MakePart(part.source, middle, part.end)));
		}
		parts = std::move(halved);
		return {};
	}

	const Pieces& _pieces;
	const double _tolerance;
	std::size_t _unsettledCount = 0;
};

} // namespace

Result<void> Straighten(Pieces& pieces, double tolerance) noexcept
{
	Straightener straightener(pieces, tolerance);
	ORVAN_TRY(straightener.Run());
	pieces.pieces.Clear();
	Piece piece;
	for (const Part& part : straightener.parts)
	{
		if (part.start == 0.0)
		{
			piece.from = pieces.grid.GetPoint(part.from);
			piece.start = 0.0;
			piece.source = part.source;
			piece.operand = pieces.curves[part.source].operand;
		}
		piece.to = pieces.grid.GetPoint(part.to);
		piece.end = part.end;
		if (piece.from == piece.to)
			continue;
		ORVAN_TRY(pieces.pieces.Append(piece));
		piece.from = piece.to;
		piece.start = piece.end;
	}
	return {};
}

} // namespace orvan::geometry
