// SPDX-License-Identifier: MIT
#include "shared/arc.h"

#include <svgpp/utility/arc_endpoint_to_center.hpp>
#include <svgpp/utility/arc_to_bezier.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace orvan::grammar
{
namespace
{
constexpr double kQuarterTurn = boost::math::constants::half_pi<double>();
constexpr double kFullTurn = boost::math::constants::two_pi<double>();

struct Cubic
{
	double x1, y1, x2, y2, x, y;
};

bool IsFinite(const Cubic& cubic)
{
	// Zero times a number is zero just when the number is finite.
	return (cubic.x1 * 0 + cubic.y1 * 0) + (cubic.x2 * 0 + cubic.y2 * 0) + (cubic.x * 0 + cubic.y * 0) == 0;
}

// A full turn makes four cubics, and rounding may add one.
struct Cubics
{
	std::array<Cubic, 6> items;
	std::size_t count = 0;
};

/// An arc as the library's conversion wants it.
struct CenteredArc
{
	double centerX, centerY;
	double radiusX, radiusY;
	double rotation; ///< In radians, like the angles, which are those on the circle that the ellipse was.
	double startAngle, endAngle;
};

/// False when the arc leaves the range of finite numbers.
bool FindCenter(const Arc& arc, CenteredArc& result)
{
	result.radiusX = arc.radiusX;
	result.radiusY = arc.radiusY;
	result.rotation = arc.rotation * boost::math::constants::degree<double>();
	svgpp::arc_endpoint_to_center(arc.startX, arc.startY, arc.endX, arc.endY, result.radiusX, result.radiusY,
								  result.rotation, arc.isLarge, arc.isSweep, result.centerX, result.centerY,
								  result.startAngle, result.endAngle);
	if (arc.isSweep && result.endAngle < result.startAngle)
		result.endAngle += kFullTurn;
	else if (!arc.isSweep && result.endAngle > result.startAngle)
		result.endAngle -= kFullTurn;

	// The product of the squared radii stands in the middle of the conversion. When it overflows, the centre may come
	// out finite, and wrong by the size of the radii.
	const double squares = (result.radiusX * result.radiusX) * (result.radiusY * result.radiusY);
	return std::isfinite(squares) && std::isfinite(result.centerX) && std::isfinite(result.centerY) &&
		   std::isfinite(result.startAngle) && std::isfinite(result.endAngle);
}

/// How far the control points of a cubic stand from its ends.
double ControlDistance(double angle)
{
	const double tangent = std::tan(angle * 0.5);
	return std::sin(angle) * (std::sqrt(4 + 3 * tangent * tangent) - 1) * boost::math::constants::third<double>();
}

/// An eighth of a turn, which a quarter is cut into.
constexpr double kEighth = kQuarterTurn / 2;

/// Its distance, which comes from the C library when the module is loaded, as it would for each arc.
const double g_eighthDistance = []
{
	// The compiler must not know the angle: what it makes of a sine may differ in the last bit.
	const volatile double angle = kEighth;
	return ControlDistance(angle);
}();

/// What the library's arc_to_bezier does: the same operations in the same order, so that the results are the same to
/// the last bit. Left out is only what is known already: an ellipse that is not turned, and an eighth of a turn.
class CubicMaker
{
public:
	explicit CubicMaker(const CenteredArc& arc)
		: _arc(arc), _sine(arc.rotation == 0 ? arc.rotation : std::sin(arc.rotation)),
		  _cosine(arc.rotation == 0 ? 1 : std::cos(arc.rotation))
	{
	}

	/// False when there would be none, or too many.
	bool Make(Cubics& cubics) const
	{
		double step = _arc.endAngle - _arc.startAngle;
		const int count = static_cast<int>(std::fabs(step) / kQuarterTurn + 1.0);
		if (count < 1 || count > static_cast<int>(cubics.items.size()))
			return false;
		step /= count;
		const double distance = step == kEighth    ? g_eighthDistance
								: step == -kEighth ? -g_eighthDistance
												   : ControlDistance(step);
		double angle = _arc.startAngle;
		Place from = PlaceAt(angle, distance);
		for (int i = 0; i != count; ++i)
		{
			angle += step;
			const Place to = PlaceAt(angle, distance);
			cubics.items[cubics.count++] = {
				from.x + from.alongX, from.y + from.alongY, to.x - to.alongX, to.y - to.alongY, to.x, to.y};
			from = to;
		}
		return true;
	}

private:
	/// A point of the arc, and the way from there to a control point.
	struct Place
	{
		double x, y;
		double alongX, alongY;
	};

	Place PlaceAt(double angle, double distance) const
	{
		const double sine = std::sin(angle);
		const double cosine = std::cos(angle);
		const double rightX = _arc.radiusX * cosine;
		const double upY = _arc.radiusY * sine;
		const double rightSlope = _arc.radiusX * sine;
		const double upSlope = _arc.radiusY * cosine;
		return {_arc.centerX + rightX * _cosine - upY * _sine, _arc.centerY + rightX * _sine + upY * _cosine,
				(-rightSlope * _cosine - upSlope * _sine) * distance,
				(-rightSlope * _sine + upSlope * _cosine) * distance};
	}

	const CenteredArc& _arc;
	double _sine, _cosine;
};

bool MakeCubics(const CenteredArc& arc, Cubics& cubics)
{
	return CubicMaker(arc).Make(cubics);
}

bool MakeCubicsByLibrary(const CenteredArc& arc, Cubics& cubics)
{
	using ArcToBezier = svgpp::arc_to_bezier<double>;

	const ArcToBezier converter(arc.centerX, arc.centerY, arc.radiusX, arc.radiusY, arc.rotation,
								ArcToBezier::circle_angle_tag(), arc.startAngle, arc.endAngle,
								ArcToBezier::max_angle_tag(), kQuarterTurn);
	if (converter.size() < 1 || converter.size() > static_cast<int>(cubics.items.size()))
		return false;
	for (ArcToBezier::iterator it(converter); !it.eof(); it.advance())
		cubics.items[cubics.count++] = {it.p1x(), it.p1y(), it.p2x(), it.p2y(), it.p3x(), it.p3y()};
	return true;
}

/// Delivers an arc by way of a function that makes cubics of it.
template <auto makeCubics>
void Deliver(const Arc& arc, PathSink& sink)
{
	if (arc.startX == arc.endX && arc.startY == arc.endY)
		return;

	Cubics cubics;
	CenteredArc centered;
	const bool areMade =
		arc.radiusX != 0 && arc.radiusY != 0 && FindCenter(arc, centered) && makeCubics(centered, cubics);
	if (!areMade || !std::all_of(cubics.items.begin(), cubics.items.begin() + cubics.count, IsFinite))
	{
		sink.LineTo(arc.endX, arc.endY);
		return;
	}

	// The converter ends where sine and cosine land; whatever follows must start on the point that was written.
	cubics.items[cubics.count - 1].x = arc.endX;
	cubics.items[cubics.count - 1].y = arc.endY;
	for (std::size_t i = 0; i != cubics.count; ++i)
	{
		const Cubic& cubic = cubics.items[i];
		sink.CubicTo(cubic.x1, cubic.y1, cubic.x2, cubic.y2, cubic.x, cubic.y);
	}
}
} // namespace

void DeliverArc(const Arc& arc, PathSink& sink)
{
	Deliver<&MakeCubics>(arc, sink);
}

void library::DeliverArc(const Arc& arc, PathSink& sink)
{
	Deliver<&MakeCubicsByLibrary>(arc, sink);
}
} // namespace orvan::grammar
