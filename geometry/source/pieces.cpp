// SPDX-License-Identifier: MIT
#include "pieces.h"

#include "box_tree.h"
#include "curve.h"
#include "straighten.h"

namespace orvan::geometry
{
namespace
{

/// More pairs of pieces to look at are too many.
constexpr std::int64_t kMostPairs = 1'000'000'000;
/// Cutting moves pieces by parts of a cell, so that they may meet others that have to be cut then. Mostly the second
/// round finds little and the third nothing.
constexpr int kMostRounds = 24;
constexpr double kCellsAcross = 268'435'456.0; // 2^28

/// Takes the lines and curves of an outline, and closes its subpaths.
class CurveCollector
{
public:
	CurveCollector(BaseArray<SourceCurve>& curves, std::uint8_t operand) noexcept : _curves(curves), _operand(operand)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		Finish();
		_start = _current = point;
	}

	void Add(const Curve& curve) noexcept
	{
		isGood = isGood && _curves.Append({curve, _operand}).IsOk();
		_current = curve.p[3];
	}

	void Close(const Curve&) noexcept
	{
		Finish();
	}

	void Finish() noexcept
	{
		if (_current != _start)
			Add(Curve::Line(_current, _start));
	}

	bool isGood = true;

private:
	BaseArray<SourceCurve>& _curves;
	std::uint8_t _operand;
	Vector2d _start;
	Vector2d _current;
};

Result<void> Collect(const drawing::Outline& outline, std::uint8_t operand, BaseArray<SourceCurve>& curves) noexcept
{
	CurveCollector collector(curves, operand);
	VisitSegments(outline.GetCommands(), {}, collector);
	collector.Finish();
	if (!collector.isGood)
		return OutOfMemoryError();
	return {};
}

/// Where a piece is to be cut.
struct Cut
{
	std::uint32_t piece;
	double share; ///< Along the piece, 0 to 1.
	GridPoint at;
};

class Cutter
{
public:
	explicit Cutter(BaseArray<Piece>& pieces) noexcept : _pieces(pieces)
	{
	}

	/// False when pieces still meet after the last round.
	Result<bool> Run() noexcept
	{
		_firstNew = 0;
		for (int round = 0; round < kMostRounds; round++)
		{
			ORVAN_TRY(FindCuts());
			if (_cuts.IsEmpty())
				return true;
			ORVAN_TRY(MakeCuts());
		}
		return false;
	}

private:
	const Piece& At(std::uint32_t piece) const noexcept
	{
		return _pieces[piece];
	}

	static Rectangle GetBox(const Piece& piece) noexcept
	{
		Rectangle box;
		for (const GridPoint& end : {piece.from, piece.to})
			box.Add({static_cast<double>(end.x), static_cast<double>(end.y)});
		return box;
	}

	/// Looks at all pairs one of which is new.
	Result<void> FindCuts() noexcept
	{
		BaseArray<Rectangle> boxes;
		ORVAN_TRY(boxes.Reserve(_pieces.GetCount()));
		for (const Piece& piece : _pieces)
			ORVAN_TRY(boxes.Append(GetBox(piece)));
		const BoxTree tree = ORVAN_TRY(BoxTree::Create(boxes));
		const auto count = static_cast<std::uint32_t>(_pieces.GetCount());
		for (std::uint32_t i = _firstNew; i < count; i++)
		{
			tree.ForEachIn(boxes[i].Grow(1.0),
						   [&](std::uint32_t other)
						   {
							   // Two new ones meet once: the second one is passed over when the first looks for it.
							   if (other <= i && other >= _firstNew)
								   return;
							   _pairs++;
							   Compare(i, other);
						   });
			if (!_isGood)
				return OutOfMemoryError();
			if (_pairs > kMostPairs || _cuts.GetCount() > kMostPieces)
				return IllegalArgumentError("The outlines are too intricate to be combined.");
		}
		return {};
	}

	void Compare(std::uint32_t i, std::uint32_t j) noexcept
	{
		const Piece& a = At(i);
		const Piece& b = At(j);
		CutAt(i, b.from);
		CutAt(i, b.to);
		CutAt(j, a.from);
		CutAt(j, a.to);
		const GridPoint way = a.to - a.from;
		const std::int64_t side0 = Cross(way, b.from - a.from);
		const std::int64_t side1 = Cross(way, b.to - a.from);
		if ((side0 > 0) == (side1 > 0) || side0 == 0 || side1 == 0)
			return;
		const GridPoint otherWay = b.to - b.from;
		const std::int64_t side2 = Cross(otherWay, a.from - b.from);
		const std::int64_t side3 = Cross(otherWay, a.to - b.from);
		if ((side2 > 0) == (side3 > 0) || side2 == 0 || side3 == 0)
			return;
		const double share = static_cast<double>(side2) / static_cast<double>(side2 - side3);
		const double otherShare = static_cast<double>(side0) / static_cast<double>(side0 - side1);
		const GridPoint at{a.from.x + std::llround(static_cast<double>(way.x) * share),
						   a.from.y + std::llround(static_cast<double>(way.y) * share)};
		AddCut(i, share, at);
		AddCut(j, otherShare, at);
	}

	/// Cuts a piece where it runs through the cell around a point.
	void CutAt(std::uint32_t index, const GridPoint& point) noexcept
	{
		const Piece& piece = At(index);
		const GridPoint way = piece.to - piece.from;
		const GridPoint offset = point - piece.from;
		if (2 * std::abs(Cross(way, offset)) > std::max(std::abs(way.x), std::abs(way.y)))
			return;
		const std::int64_t along = Dot(way, offset);
		const std::int64_t whole = Dot(way, way);
		if (along > 0 && along < whole)
			AddCut(index, static_cast<double>(along) / static_cast<double>(whole), point);
	}

	void AddCut(std::uint32_t index, double share, const GridPoint& at) noexcept
	{
		if (at != At(index).from && at != At(index).to)
			_isGood = _isGood && _cuts.Append({index, share, at}).IsOk();
	}

	/// Replaces the pieces that are cut by their parts, which stand behind all others.
	Result<void> MakeCuts() noexcept
	{
		std::sort(_cuts.begin(), _cuts.end(),
				  [](const Cut& a, const Cut& b)
				  {
					  if (a.piece != b.piece)
						  return a.piece < b.piece;
					  return a.share != b.share ? a.share < b.share : a.at < b.at;
				  });
		BaseArray<Piece> parts;
		ORVAN_TRY(parts.Reserve(_cuts.GetCount() * 2));
		for (std::size_t i = 0; i < _cuts.GetCount();)
		{
			const std::uint32_t index = _cuts[i].piece;
			const Piece whole = At(index);
			Piece rest = whole;
			for (; i < _cuts.GetCount() && _cuts[i].piece == index; i++)
			{
				if (_cuts[i].at == rest.from)
					continue;
				Piece part = rest;
				part.to = _cuts[i].at;
				part.end = rest.start = whole.start + (whole.end - whole.start) * _cuts[i].share;
				rest.from = part.to;
				ORVAN_TRY(parts.Append(part));
			}
			ORVAN_TRY(parts.Append(rest));
			_pieces[index].to = _pieces[index].from; // Without a length: to be taken out.
		}
		std::size_t kept = 0;
		for (const Piece& piece : _pieces)
		{
			if (piece.from != piece.to)
				_pieces[kept++] = piece;
		}
		ORVAN_TRY(_pieces.Resize(kept));
		_firstNew = static_cast<std::uint32_t>(kept);
		for (const Piece& part : parts)
		{
			if (part.from != part.to)
				ORVAN_TRY(_pieces.Append(part));
		}
		if (_pieces.GetCount() > kMostPieces)
			return IllegalArgumentError("The outlines are too intricate to be combined.");
		_cuts.Clear();
		return {};
	}

	BaseArray<Piece>& _pieces;
	BaseArray<Cut> _cuts;
	std::uint32_t _firstNew = 0; ///< The pieces before it have been compared with each other.
	std::int64_t _pairs = 0;
	bool _isGood = true;
};

} // namespace

Result<Pieces> CutIntoPieces(const drawing::Outline& first, const drawing::Outline& second, double tolerance) noexcept
{
	Pieces pieces;
	ORVAN_TRY(Collect(first, 0, pieces.curves));
	ORVAN_TRY(Collect(second, 1, pieces.curves));
	Rectangle hull;
	for (const SourceCurve& source : pieces.curves)
		hull.Include(source.curve.GetHull());
	if (hull.IsEmpty())
		return pieces;
	const double size = std::max(hull.GetWidth(), hull.GetHeight());
	if (!(size > 0.0))
		return pieces; // All of it is one point.
	if (tolerance <= 0.0)
		tolerance = size * 1e-6;
	pieces.grid.origin = {hull.left + hull.GetWidth() / 2.0, hull.top + hull.GetHeight() / 2.0};
	// Coordinates far from the origin do not tell places apart that are nearer to each other than this.
	const double reach =
		std::max({std::abs(hull.left), std::abs(hull.right), std::abs(hull.top), std::abs(hull.bottom)});
	pieces.grid.cell = std::max({tolerance / 8.0, size / kCellsAcross, reach * 1e-15});
	constexpr int kTries = 3;
	for (int attempt = 0; attempt < kTries; attempt++)
	{
		pieces.tolerance = std::max(tolerance, pieces.grid.cell * 8.0);
		ORVAN_TRY(Straighten(pieces, pieces.tolerance / 4.0));
		if (ORVAN_TRY(Cutter(pieces.pieces).Run()))
			return pieces;
		pieces.grid.cell *= 8.0; // On a coarser grid there is less that meets.
	}
	return IllegalArgumentError("The outlines are too intricate to be combined.");
}

} // namespace orvan::geometry
