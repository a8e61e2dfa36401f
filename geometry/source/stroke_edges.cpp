// SPDX-License-Identifier: MIT
#include "stroke_edges.h"

#include "dashes.h"
#include "outline_writer.h"

namespace orvan::geometry
{
namespace
{

/// Builds both edges of each subpath, and puts them together at its end.
class EdgeBuilder
{
public:
	EdgeBuilder(const SVGStroke& stroke, double tolerance) noexcept
		: _stroke(stroke), _half(stroke.width / 2.0), _tolerance(tolerance)
	{
	}

	void Strip(const Curve& curve) noexcept
	{
		AddParallel(_sides[0], curve, _half);
		AddParallel(_sides[1], curve, -_half);
		const auto addDisc = [&](const Vector2d& point)
		{
			// Around the way the strips go.
			_writer.Move(point + Vector2d{_half, 0.0});
			_writer.Arc(point, {_half, 0.0}, -2.0 * std::numbers::pi);
			_writer.Close();
		};
		ForEachCusp(curve, addDisc);
	}

	void Join(const Vector2d& point, Vector2d in, Vector2d out) noexcept
	{
		const bool turnsRight = Cross(in, out) > 0.0; // On a screen, where y goes down.
		JoinOutside(_sides[turnsRight ? 1 : 0], point, in, out, turnsRight ? -_half : _half);
		// The inner edges cross somewhere, or not at all where lines are short. By way of the corner all is covered.
		BaseArray<Curve>& inner = _sides[turnsRight ? 0 : 1];
		const double side = turnsRight ? _half : -_half;
		const Vector2d from = point + Times(Turn(in), side);
		const Vector2d to = point + Times(Turn(out), side);
		Append(inner, Curve::Line(from, point));
		Append(inner, Curve::Line(point, to));
	}

	void Cap(const Vector2d& point, const Vector2d& outwards) noexcept
	{
		if (!_hasStartCap)
		{
			_hasStartCap = true;
			_startCap = {point, outwards};
			return;
		}
		const auto& [start, backwards] = _startCap;
		_writer.Move(start + Times(Turn(backwards), -_half));
		WriteForwards(_sides[0]);
		WriteCap(point, outwards, false);
		WriteBackwards(_sides[1]);
		WriteCap(start, backwards, true);
		_writer.Close();
		StartAnew();
	}

	void Ring() noexcept
	{
		if (!_sides[0].IsEmpty() && !_sides[1].IsEmpty())
		{
			_writer.Move(_sides[0][0].p[0]);
			WriteForwards(_sides[0]);
			_writer.Close();
			_writer.Move((_sides[1].end() - 1)->p[3]);
			WriteBackwards(_sides[1]);
			_writer.Close();
		}
		StartAnew();
	}

	void Point(const Vector2d& point) noexcept
	{
		if (_stroke.cap == SVGLineCap::butt)
			return;
		_writer.Move(point + Vector2d{0.0, _half});
		WriteCap(point, {1.0, 0.0}, false);
		WriteCap(point, {-1.0, 0.0}, true);
		_writer.Close();
	}

	Result<Outline> Take() noexcept
	{
		if (!_isGood)
			return OutOfMemoryError();
		return _writer.Take();
	}

private:
	struct End
	{
		Vector2d point;
		Vector2d outwards;
	};

	/// A curve at a distance from another: its place and its speed there.
	struct Parallel
	{
		Vector2d point;
		Vector2d speed;
	};

	static Parallel GetParallel(const Curve& curve, double t, double distance) noexcept
	{
		const Vector2d direction = curve.GetDirection(t);
		const Vector2d speed = curve.GetSpeed(t);
		const double squared = Dot(speed, speed);
		const double length = std::sqrt(squared);
		const double bend = squared > 0.0 ? Cross(speed, curve.GetChange(t)) / squared : 0.0;
		return {curve.GetPoint(t) + Times(Turn(direction), distance), Times(direction, length - distance * bend)};
	}

	void AddParallel(BaseArray<Curve>& side, const Curve& curve, double distance) noexcept
	{
		if (curve.isLine)
		{
			const Vector2d shift = Times(Turn(curve.GetDirection(0.0)), distance);
			Append(side, Curve::Line(curve.p[0] + shift, curve.p[3] + shift));
			return;
		}
		constexpr int kDepth = 10;
		AddParallelPart(side, curve, distance, {0.0, GetParallel(curve, 0.0, distance)},
						{1.0, GetParallel(curve, 1.0, distance)}, kDepth);
	}

	struct Station
	{
		double t;
		Parallel at;
	};

	/// Halves the part until a cubic with the same ends and directions is near enough.
	void AddParallelPart(BaseArray<Curve>& side, const Curve& curve, double distance, const Station& from,
						 const Station& to, int depth) noexcept
	{
		const double third = (to.t - from.t) / 3.0;
		const Curve fitted{{from.at.point, from.at.point + Times(from.at.speed, third),
							to.at.point - Times(to.at.speed, third), to.at.point}};
		const auto isNear = [&](double share)
		{
			const double t = from.t + (to.t - from.t) * share;
			const Vector2d wanted = curve.GetPoint(t) + Times(Turn(curve.GetDirection(t)), distance);
			return LengthOf(fitted.GetPoint(share) - wanted) <= _tolerance;
		};
		if (depth == 0 || (isNear(0.25) && isNear(0.5) && isNear(0.75)))
		{
			Append(side, fitted);
			return;
		}
		const double middle = (from.t + to.t) / 2.0;
		const Station station{middle, GetParallel(curve, middle, distance)};
		AddParallelPart(side, curve, distance, from, station, depth - 1);
		AddParallelPart(side, curve, distance, station, to, depth - 1);
	}

	void JoinOutside(BaseArray<Curve>& side, const Vector2d& point, const Vector2d& in, const Vector2d& out,
					 double distance) noexcept
	{
		const Vector2d from = Times(Turn(in), distance);
		const Vector2d to = Times(Turn(out), distance);
		if (_stroke.join == SVGLineJoin::round)
		{
			OutlineWriter arc;
			arc.Move(point + from);
			// Right back the turn is as much to the left as to the right: it goes around the side that was chosen.
			arc.Arc(point, from, std::copysign(std::atan2(std::abs(Cross(in, out)), Dot(in, out)), -distance));
			Result<Outline> made = arc.Take();
			_isGood = _isGood && made.IsOk();
			if (!_isGood)
				return;
			Vector2d current;
			for (const SVGPathCommand& command : made.GetValue().GetCommands())
			{
				if (command.type == SVGPathCommandType::cubic)
					Append(side, {{current, command.points[0], command.points[1], command.points[2]}});
				current = command.points[2];
			}
			return;
		}
		Vector2d tip;
		if (IsMitred(_stroke.join) && FindMiter(in, out, _stroke.miterLimit, tip))
		{
			const Vector2d corner = point + Times(tip, _half);
			Append(side, Curve::Line(point + from, corner));
			Append(side, Curve::Line(corner, point + to));
			return;
		}
		Append(side, Curve::Line(point + from, point + to));
	}

	void Append(BaseArray<Curve>& side, const Curve& curve) noexcept
	{
		_isGood = _isGood && side.Append(curve).IsOk();
	}

	void WriteForwards(const BaseArray<Curve>& side) noexcept
	{
		for (const Curve& curve : side)
			_writer.Add(curve);
	}

	void WriteBackwards(const BaseArray<Curve>& side) noexcept
	{
		for (std::size_t i = side.GetCount(); i-- > 0;)
		{
			const Curve& curve = side[i];
			_writer.Add({{curve.p[3], curve.p[2], curve.p[1], curve.p[0]}, curve.isLine});
		}
	}

	/// From one edge to the other. The last line of a subpath is drawn by closing it.
	void WriteCap(const Vector2d& point, const Vector2d& outwards, bool isLast) noexcept
	{
		const Vector2d side = Times(Turn(outwards), _half);
		if (_stroke.cap == SVGLineCap::round)
		{
			_writer.Arc(point, side, -std::numbers::pi);
			return;
		}
		if (_stroke.cap == SVGLineCap::square)
		{
			const Vector2d forwards = Times(outwards, _half);
			_writer.Line(point + side + forwards);
			_writer.Line(point - side + forwards);
		}
		if (!isLast)
			_writer.Line(point - side);
	}

	void StartAnew() noexcept
	{
		_sides[0].Clear();
		_sides[1].Clear();
		_hasStartCap = false;
	}

	const SVGStroke& _stroke;
	double _half;
	double _tolerance;
	OutlineWriter _writer;
	BaseArray<Curve> _sides[2]; ///< At the distances +half and -half.
	End _startCap{};
	bool _hasStartCap = false;
	bool _isGood = true;
};

/// Writes dashes as subpaths.
class DashWriter
{
public:
	void Strip(const Curve& curve) noexcept
	{
		if (!_isOpen)
			writer.Move(curve.p[0]);
		_isOpen = true;
		_isEmpty = false;
		writer.Add(curve);
	}

	void Join(const Vector2d&, Vector2d, Vector2d) noexcept
	{
	}

	void Cap(const Vector2d& point, const Vector2d&) noexcept
	{
		// Two caps with nothing between them are a dash of no length: a dot.
		if (!_isOpen && _isEmpty)
		{
			writer.Move(point);
			writer.Line(point);
		}
		_isEmpty = !_isOpen && !_isEmpty;
		_isOpen = false;
	}

	void Ring() noexcept
	{
		_isOpen = _isEmpty = false;
	}

	OutlineWriter writer;

private:
	bool _isOpen = false;
	bool _isEmpty = false; ///< A dash has begun, and nothing of it was told.
};

class Flattener
{
public:
	explicit Flattener(double tolerance) noexcept : _tolerance(tolerance)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		writer.Move(point);
	}

	void Add(const Curve& curve) noexcept
	{
		const int count = curve.GetStepCount(_tolerance);
		for (int i = 1; i < count; i++)
			writer.Line(curve.GetPoint(static_cast<double>(i) / count));
		writer.Line(curve.p[3]);
	}

	void Close(const Curve&) noexcept
	{
		writer.Close();
	}

	OutlineWriter writer;

private:
	double _tolerance;
};

} // namespace

Result<Outline> GetStrokeEdges(const Outline& outline, const Matrix2d& pen, const SVGStroke& stroke,
							   const RecordedDashes& dashes, double tolerance) noexcept
{
	EdgeBuilder builder(stroke, tolerance);
	if (!(stroke.width > 0.0 && stroke.width <= kLargest))
		return Outline();
	if (dashes.lengths.IsEmpty())
	{
		VisitStroke(outline.GetCommands(), pen, builder);
		return builder.Take();
	}
	DashWriter dashed;
	VisitDashes(outline.GetCommands(), pen, dashes, dashed);
	const Outline lines = ORVAN_TRY(dashed.writer.Take());
	VisitStroke(lines.GetCommands(), {}, builder);
	return builder.Take();
}

Result<Outline> Flatten(const Outline& outline, const Matrix2d& transform, double tolerance) noexcept
{
	Flattener flattener(tolerance);
	VisitSegments(outline.GetCommands(), transform, flattener);
	return flattener.writer.Take();
}

} // namespace orvan::geometry
