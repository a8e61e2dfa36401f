// SPDX-License-Identifier: MIT
#include "stroke_bounds.h"

#include "stroke_parts.h"

namespace orvan::drawing
{
namespace
{

/// How much sharper a cubic is bent than a pen is wide, as polynomials of the parameter: positive where the inner edge
/// of the stroke runs backwards.
class ExcessOfBend
{
public:
	ExcessOfBend(const Curve& curve, double half) noexcept
	{
		// The speed is a + b t + c t², its change b + 2 c t; the product of both has no third power.
		const Vector2d step = curve.p[1] - curve.p[0];
		const Vector2d a = Times(step, 3.0);
		const Vector2d b = Times(curve.p[2] - curve.p[1] - step, 6.0);
		const Vector2d c = Times(curve.p[3] - curve.p[0] - Times(curve.p[2] - curve.p[1], 3.0), 3.0);
		_bend[0] = half * Cross(a, b);
		_bend[1] = half * 2.0 * Cross(a, c);
		_bend[2] = half * Cross(b, c);
		_speed[0] = Dot(a, a);
		_speed[1] = 2.0 * Dot(a, b);
		_speed[2] = Dot(b, b) + 2.0 * Dot(a, c);
		_speed[3] = 2.0 * Dot(b, c);
		_speed[4] = Dot(c, c);
	}

	double At(double t) const noexcept
	{
		const double bend = _bend[0] + t * (_bend[1] + t * _bend[2]);
		const double speed = _speed[0] + t * (_speed[1] + t * (_speed[2] + t * (_speed[3] + t * _speed[4])));
		return std::abs(bend) - speed * std::sqrt(std::max(speed, 0.0));
	}

	/// Between two places with excesses of different signs: regula falsi, where a side that stays counts half (the
	/// Illinois algorithm), which takes some six steps where halving takes twenty.
	double FindZero(double low, double atLow, double high, double atHigh) const noexcept
	{
		constexpr int kMostSteps = 40;
		constexpr double kNear = 1e-9;
		double at = low;
		for (int i = 0; i < kMostSteps; i++)
		{
			const double before = at;
			const double share = atLow / (atLow - atHigh);
			at = low + (high - low) * (share >= 0.0 && share <= 1.0 ? share : 0.5); // Both may be infinite.
			const double excess = At(at);
			if (std::abs(at - before) <= kNear || excess == 0.0)
				break;
			if ((excess > 0.0) != (atHigh > 0.0))
			{
				low = high;
				atLow = atHigh;
			}
			else
				atLow *= 0.5;
			high = at;
			atHigh = excess;
		}
		return at;
	}

private:
	double _bend[3];
	double _speed[5]; ///< Squared.
};

/// Collects the box of the parts of a stroke.
class BoundsOfParts
{
public:
	BoundsOfParts(const SVGStroke& stroke, const Matrix2d& target) noexcept
		: _stroke(stroke), _target(target),
		  _half(stroke.width / 2.0), _axes{{target.axis1.x, target.axis2.x}, {target.axis1.y, target.axis2.y}},
		  _disc{_half * LengthOf(_axes[0]), _half * LengthOf(_axes[1])}
	{
	}

	void Strip(const Curve& curve, const Vector2d& in, const Vector2d& out) noexcept
	{
		AddAcross(curve.p[0], in);
		AddAcross(curve.p[3], out);
		if (curve.isLine)
			return;
		// Edges of a stroke run as the curve does, so they turn where the curve turns …
		for (const Vector2d& axis : _axes)
		{
			const double steps[] = {Dot(curve.p[1] - curve.p[0], axis), Dot(curve.p[2] - curve.p[1], axis),
									Dot(curve.p[3] - curve.p[2], axis)};
			const bool isUp = steps[0] >= 0.0 && steps[1] >= 0.0 && steps[2] >= 0.0;
			if (isUp || (steps[0] <= 0.0 && steps[1] <= 0.0 && steps[2] <= 0.0))
				continue; // Mostly it does not.
			double at[2];
			for (int i = FindTurns(curve, axis, at); i-- > 0;)
			{
				if (IsCusp(curve, at[i]))
					AddDisc(curve.GetPoint(at[i]));
				else
					AddAcross(curve.GetPoint(at[i]), curve.GetDirection(at[i]));
			}
		}
		_mayHaveCusps = _mayHaveCusps || MayHaveCusps(curve);
	}

	void Join(const Vector2d& point, Vector2d in, Vector2d out) noexcept
	{
		if (_stroke.join == SVGLineJoin::round)
			AddDisc(point);
		else if (Vector2d tip; IsMitred(_stroke.join) && FindMiter(in, out, _stroke.miterLimit, tip))
			Add(point + Times(tip, _half));
	}

	void Cap(const Vector2d& point, const Vector2d& outwards) noexcept
	{
		if (_stroke.cap == SVGLineCap::round)
			AddDisc(point);
		else if (_stroke.cap == SVGLineCap::square)
			AddAcross(point + Times(outwards, _half), outwards);
	}

	void Point(const Vector2d& point) noexcept
	{
		Cap(point, {1.0, 0.0});
		Cap(point, {-1.0, 0.0});
	}

	/// … and where the curve is as sharply bent as the pen is wide: the inner edge turns back there, and may stick out
	/// on the other side. That takes long to find out, so it comes behind all else, for curves that may reach farther
	/// than the box that is known then. `outline` is what was visited.
	template <typename Commands>
	void AddCuspsOf(const Commands& outline, const Matrix2d& pen) noexcept
	{
		CuspVisitor cusps{*this};
		if (_mayHaveCusps)
			VisitSegments(outline, pen, cusps);
	}

	const Rectangle& GetBox() const noexcept
	{
		return _box;
	}

private:
	struct CuspVisitor
	{
		BoundsOfParts& parts;

		void Move(const Vector2d&) noexcept
		{
		}

		void Add(const Curve& curve) noexcept
		{
			if (!curve.isLine && parts.MayReachOut(curve) && parts.MayHaveCusps(curve))
				parts.AddCusps(curve);
		}

		void Close(const Curve&) noexcept
		{
		}
	};

	/// False when the stroke of a curve is plainly within the box already.
	bool MayReachOut(const Curve& curve) const noexcept
	{
		for (const Vector2d& point : curve.p)
		{
			const Vector2d center = _target.Apply(point);
			if (!_box.Contains(center - _disc) || !_box.Contains(center + _disc))
				return true;
		}
		return false;
	}

	void Add(const Vector2d& point) noexcept
	{
		_box.Add(_target.Apply(point));
	}

	void AddAcross(const Vector2d& point, const Vector2d& direction) noexcept
	{
		const Vector2d side = Times(Turn(direction), _half);
		Add(point + side);
		Add(point - side);
	}

	void AddDisc(const Vector2d& point) noexcept
	{
		const Vector2d center = _target.Apply(point);
		_box.Add(center - _disc);
		_box.Add(center + _disc);
	}

	/// False for curves that are plainly bent less sharply than the pen is wide.
	bool MayHaveCusps(const Curve& curve) const noexcept
	{
		const Vector2d chord = Normalize(curve.p[3] - curve.p[0]);
		double least = Dot(curve.p[1] - curve.p[0], chord);
		least = std::min(least, Dot(curve.p[2] - curve.p[1], chord));
		least = std::min(least, Dot(curve.p[3] - curve.p[2], chord)) * 3.0;
		const Vector2d first = curve.GetChange(0.0);
		const Vector2d last = curve.GetChange(1.0);
		const double change = std::sqrt(std::max(Dot(first, first), Dot(last, last)));
		return !(least > 0.0 && _half * change < least * least);
	}

	/// Looks for the places in steps, and then between two of them. The edge stands still at such a place: its point is
	/// as exact as the square of the distance from it.
	void AddCusps(const Curve& curve) noexcept
	{
		constexpr int kSteps = 16;
		const ExcessOfBend excess(curve, _half);
		double last = excess.At(0.0);
		for (int i = 1; i <= kSteps; i++)
		{
			const double low = static_cast<double>(i - 1) / kSteps;
			const double high = static_cast<double>(i) / kSteps;
			const double next = excess.At(high);
			if ((last > 0.0) != (next > 0.0) && MayReachOut(curve.GetPart(low, high)))
			{
				const double at = excess.FindZero(low, last, high, next);
				AddAcross(curve.GetPoint(at), curve.GetDirection(at));
			}
			last = next;
		}
	}

	const SVGStroke& _stroke;
	const Matrix2d& _target;
	double _half;
	Vector2d _axes[2]; ///< The directions along which the target's coordinates grow.
	Vector2d _disc;    ///< Half of the size of the pen's box in the target's coordinates.
	Rectangle _box;
	bool _mayHaveCusps = false;
};

} // namespace

Rectangle GetStrokeBounds(const Outline& outline, const SVGStroke& stroke, const Matrix2d& pen,
						  const Matrix2d& target) noexcept
{
	BoundsOfParts parts(stroke, target);
	VisitStroke(outline.GetCommands(), pen, parts);
	parts.AddCuspsOf(outline.GetCommands(), pen);
	return parts.GetBox();
}

} // namespace orvan::drawing
