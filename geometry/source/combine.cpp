// SPDX-License-Identifier: MIT
#include "combine.h"

#include "curve.h"
#include "outline_writer.h"
#include "planar_graph.h"

namespace orvan::geometry
{
namespace
{

/// By the numbers of `SVGOutlineOperation`: whether a place is inside that is in neither, in the first one alone, in
/// the second one alone, in both.
constexpr bool kInside[][4] = {
	{false, true, true, true},
	{false, false, false, true},
	{false, true, false, false},
	{false, true, true, false},
};

/// Brings a parameter to the place of its curve that is nearest to a point, from near there.
double Adjust(const Curve& curve, double t, const Vector2d& point) noexcept
{
	constexpr int kSteps = 3;
	for (int step = 0; step < kSteps; step++)
	{
		const Vector2d speed = curve.GetSpeed(t);
		const double squared = Dot(speed, speed);
		if (!(squared > 0.0))
			break;
		t = std::clamp(t + Dot(point - curve.GetPoint(t), speed) / squared, 0.0, 1.0);
	}
	return t;
}

/// Twice the area between curves and the origin, piece by piece.
struct AreaSum
{
	void Move(const Vector2d& point) noexcept
	{
		Finish();
		start = current = point;
	}

	void Add(const Curve& curve) noexcept
	{
		const auto& p = curve.p;
		doubled += curve.isLine ? Cross(p[0], p[3])
								: (3.0 * (2.0 * Cross(p[0], p[1]) + Cross(p[0], p[2]) + Cross(p[1], p[2]) +
										  Cross(p[1], p[3]) + 2.0 * Cross(p[2], p[3])) +
								   Cross(p[0], p[3])) /
									  10.0;
		current = p[3];
	}

	void Close(const Curve& line) noexcept
	{
		Add(line);
	}

	void Finish() noexcept
	{
		doubled += Cross(current, start);
		current = start;
	}

	double doubled = 0.0;
	Vector2d start;
	Vector2d current;
};

/// Finds the border of the result in the graph, and writes it.
class Combiner
{
public:
	Combiner(const Pieces& pieces, const PlanarGraph& graph, const SVGFillRule (&rules)[2],
			 SVGOutlineOperation operation) noexcept
		: _pieces(pieces), _graph(graph), _rules{rules[0], rules[1]}, _inside(kInside[static_cast<int>(operation)]),
		  _tolerance(pieces.tolerance)
	{
	}

	Result<drawing::Outline> Run() noexcept
	{
		const auto count = static_cast<HalfEdge>(_graph.GetHalfEdgeCount());
		ORVAN_TRY(_isDone.Resize(count));
		for (HalfEdge half = 0; half < count; half++)
		{
			if (!_isDone[half] && IsBorder(half))
				ORVAN_TRY(FollowBorder(half));
		}
		return _writer.Take();
	}

private:
	bool IsInside(const Windings& windings) const noexcept
	{
		int number = 0;
		for (int i = 0; i < 2; i++)
		{
			const std::int32_t times = windings.of[i];
			const bool isIn = _rules[i] == SVGFillRule::evenodd ? (times & 1) != 0 : times != 0;
			number |= isIn ? 1 << i : 0;
		}
		return _inside[number];
	}

	/// True when the result is on the left and not on the right.
	bool IsBorder(HalfEdge half) const noexcept
	{
		return IsInside(_graph.GetWindings(half)) && !IsInside(_graph.GetWindings(PlanarGraph::GetTwin(half)));
	}

	/// Goes around one area, or around one hole, with the area on the left.
	Result<void> FollowBorder(HalfEdge first) noexcept
	{
		_border.Clear();
		HalfEdge half = first;
		do
		{
			_isDone[half] = true;
			ORVAN_TRY(_border.Append(half));
			const HalfEdge back = PlanarGraph::GetTwin(half);
			half = _graph.GetNextClockwise(back);
			while (half != back && !IsBorder(half))
				half = _graph.GetNextClockwise(half);
		} while (!_isDone[half]);
		return Write();
	}

	std::uint32_t GetSource(HalfEdge half) const noexcept
	{
		return _graph.GetEdge(half).source;
	}

	double GetStart(HalfEdge half) const noexcept
	{
		const GraphEdge& edge = _graph.GetEdge(half);
		return (half & 1u) != 0 ? edge.highAt : edge.lowAt;
	}

	double GetEnd(HalfEdge half) const noexcept
	{
		return GetStart(PlanarGraph::GetTwin(half));
	}

	/// True when the second half-edge goes on along the curve of the first.
	bool GoesOn(HalfEdge before, HalfEdge half) const noexcept
	{
		return GetSource(before) == GetSource(half) && GetEnd(before) == GetStart(half) &&
			   (GetEnd(before) > GetStart(before)) == (GetEnd(half) > GetStart(half));
	}

	/// The border as lines and parts of curves.
	Result<void> Write() noexcept
	{
		const std::size_t count = _border.GetCount();
		std::size_t first = 0;
		while (first < count && GoesOn(_border[(first + count - 1) % count], _border[first]))
			first++;
		_parts.Clear();
		for (std::size_t i = 0; i < count;)
		{
			const HalfEdge start = _border[(first + i) % count];
			HalfEdge end = start;
			for (i++; i < count && GoesOn(end, _border[(first + i) % count]); i++)
				end = _border[(first + i) % count];
			ORVAN_TRY(_parts.Append(MakePart(start, end)));
		}
		ORVAN_TRY(JoinLines());
		if (_parts.GetCount() < 2 && (_parts.IsEmpty() || _parts[0].isLine))
			return {};
		if (IsThin())
			return {};
		_writer.Move(_parts[0].p[0]);
		for (std::size_t i = 0; i < _parts.GetCount(); i++)
		{
			if (i + 1 < _parts.GetCount() || !_parts[i].isLine) // Closing draws the last line.
				_writer.Add(_parts[i]);
		}
		_writer.Close();
		return {};
	}

	/// True for what is thinner than the tolerance: what is left between curves that run along each other.
	bool IsThin() const noexcept
	{
		AreaSum sum;
		double length = 0.0;
		for (const Curve& part : _parts)
		{
			const Vector2d origin = _parts[0].p[0];
			sum.Add({{part.p[0] - origin, part.p[1] - origin, part.p[2] - origin, part.p[3] - origin}, part.isLine});
			length += LengthOf(part.p[3] - part.p[0]);
		}
		return std::abs(sum.doubled) <= std::max(length, _tolerance) * _tolerance;
	}

	Curve MakePart(HalfEdge start, HalfEdge end) const noexcept
	{
		const Curve& curve = _pieces.curves[GetSource(start)].curve;
		const Vector2d from = FindPlace(_graph.GetOrigin(start));
		const Vector2d to = FindPlace(_graph.GetTarget(end));
		if (curve.isLine)
			return Curve::Line(from, to);
		const double startAt = Adjust(curve, GetStart(start), from);
		const double endAt = Adjust(curve, GetEnd(end), to);
		Curve part = curve.GetPart(startAt, endAt);
		part.p[1] = part.p[1] + (from - part.p[0]);
		part.p[2] = part.p[2] + (to - part.p[3]);
		part.p[0] = from;
		part.p[3] = to;
		return part;
	}

	/// Where a vertex is: at an end of a curve, or where two curves meet.
	Vector2d FindPlace(std::uint32_t vertex) const noexcept
	{
		const Vector2d rough = _pieces.grid.GetPlace(_graph.GetVertices()[vertex]);
		struct On
		{
			const Curve* curve = nullptr;
			double at = 0.0;
		};
		On on[2];
		int count = 0;
		const Vector2d* corner = nullptr;
		_graph.ForEachFrom(vertex,
						   [&](HalfEdge half)
						   {
							   const Curve& curve = _pieces.curves[GetSource(half)].curve;
							   const double at = GetStart(half);
							   if (at == 0.0 || at == 1.0)
							   {
								   const Vector2d* const end = &curve.p[at == 0.0 ? 0 : 3];
								   // Of several ends in one cell always the same, whichever comes first.
								   if (corner == nullptr || end->x < corner->x ||
									   (end->x == corner->x && end->y < corner->y))
									   corner = end;
							   }
							   else if (count == 0 || (count == 1 && (on[0].curve != &curve || on[0].at != at)))
								   on[count++] = {&curve, at};
						   });
		if (corner != nullptr)
			return *corner;
		if (count == 0)
			return rough;
		if (count == 1)
			return on[0].curve->GetPoint(Adjust(*on[0].curve, on[0].at, rough));
		return Meet(*on[0].curve, on[0].at, *on[1].curve, on[1].at, rough);
	}

	/// Where two curves meet near a place, by Newton's way; the place itself where they only touch.
	Vector2d Meet(const Curve& a, double s, const Curve& b, double t, const Vector2d& near) const noexcept
	{
		constexpr int kSteps = 8;
		for (int step = 0; step < kSteps; step++)
		{
			const Vector2d gap = b.GetPoint(t) - a.GetPoint(s);
			const Vector2d along = a.GetSpeed(s);
			const Vector2d other = b.GetSpeed(t);
			const double turn = Cross(along, other);
			if (std::abs(turn) <= 1e-9 * LengthOf(along) * LengthOf(other))
				break;
			s = std::clamp(s + Cross(gap, other) / turn, 0.0, 1.0);
			t = std::clamp(t + Cross(gap, along) / turn, 0.0, 1.0);
		}
		const Vector2d place = a.GetPoint(s);
		const double reach = 4.0 * _tolerance;
		return LengthOf(place - near) <= reach && LengthOf(b.GetPoint(t) - place) <= _tolerance ? place : near;
	}

	/// Makes one of lines that go on in the same direction.
	Result<void> JoinLines() noexcept
	{
		const auto goesStraight = [](const Curve& a, const Curve& b)
		{
			const Vector2d first = a.p[3] - a.p[0];
			const Vector2d second = b.p[3] - b.p[0];
			return a.isLine && b.isLine && Dot(first, second) >= 0.0 &&
				   std::abs(Cross(first, second)) <= 1e-12 * LengthOf(first) * LengthOf(second);
		};
		std::size_t kept = 0;
		for (const Curve& part : _parts)
		{
			if (kept > 0 && goesStraight(_parts[kept - 1], part))
				_parts[kept - 1] = Curve::Line(_parts[kept - 1].p[0], part.p[3]);
			else
				_parts[kept++] = part;
		}
		if (kept > 2 && goesStraight(_parts[kept - 1], _parts[0]))
			_parts[0] = Curve::Line(_parts[--kept].p[0], _parts[0].p[3]);
		return _parts.Resize(kept);
	}

	const Pieces& _pieces;
	const PlanarGraph& _graph;
	const SVGFillRule _rules[2];
	const bool (&_inside)[4];
	const double _tolerance;
	OutlineWriter _writer;
	BaseArray<bool> _isDone;
	BaseArray<HalfEdge> _border;
	BaseArray<Curve> _parts;
};

} // namespace

Result<drawing::Outline> Combine(const drawing::Outline& first, SVGFillRule firstRule, const drawing::Outline& second,
								 SVGFillRule secondRule, SVGOutlineOperation operation, double tolerance) noexcept
{
	const Pieces pieces = ORVAN_TRY(CutIntoPieces(first, second, tolerance));
	const PlanarGraph graph = ORVAN_TRY(PlanarGraph::Create(pieces.pieces));
	return Combiner(pieces, graph, {firstRule, secondRule}, operation).Run();
}

double GetSignedArea(const drawing::Outline& outline) noexcept
{
	// From near the outline: far from the origin, differences of large numbers would be left.
	const Rectangle& bounds = outline.GetBounds();
	AreaSum sum;
	if (bounds.IsFinite())
		VisitSegments(outline.GetCommands(), drawing::Translation(-bounds.left, -bounds.top), sum);
	sum.Finish();
	return sum.doubled / 2.0;
}

} // namespace orvan::geometry
