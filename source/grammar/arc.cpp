#include "arc.h"

#include <svgpp/utility/arc_endpoint_to_center.hpp>
#include <svgpp/utility/arc_to_bezier.hpp>

#include <array>
#include <cmath>
#include <cstddef>

namespace orvan::grammar
{
namespace
{
using ArcToBezier = svgpp::arc_to_bezier<double>;

constexpr double kQuarterTurn = boost::math::constants::half_pi<double>();
constexpr double kFullTurn = boost::math::constants::two_pi<double>();

struct Cubic
{
	double x1, y1, x2, y2, x, y;
};

bool IsFinite(const Cubic& cubic)
{
	return std::isfinite(cubic.x1) && std::isfinite(cubic.y1) && std::isfinite(cubic.x2) && std::isfinite(cubic.y2) &&
		   std::isfinite(cubic.x) && std::isfinite(cubic.y);
}

// A full turn makes four cubics, and rounding may add one.
struct Cubics
{
	std::array<Cubic, 6> items;
	std::size_t count = 0;
};

bool Convert(const Arc& arc, Cubics& cubics)
{
	const double rotation = arc.rotation * boost::math::constants::degree<double>();
	double radiusX = arc.radiusX;
	double radiusY = arc.radiusY;
	double centerX, centerY, startAngle, endAngle;
	svgpp::arc_endpoint_to_center(arc.startX, arc.startY, arc.endX, arc.endY, radiusX, radiusY, rotation, arc.isLarge,
								  arc.isSweep, centerX, centerY, startAngle, endAngle);
	if (arc.isSweep && endAngle < startAngle)
		endAngle += kFullTurn;
	else if (!arc.isSweep && endAngle > startAngle)
		endAngle -= kFullTurn;

	// The product of the squared radii stands in the middle of the conversion. When it overflows, the centre may come
	// out finite, and wrong by the size of the radii.
	const double squares = (radiusX * radiusX) * (radiusY * radiusY);
	if (!std::isfinite(squares) || !std::isfinite(centerX) || !std::isfinite(centerY) || !std::isfinite(startAngle) ||
		!std::isfinite(endAngle))
		return false;

	const ArcToBezier converter(centerX, centerY, radiusX, radiusY, rotation, ArcToBezier::circle_angle_tag(),
								startAngle, endAngle, ArcToBezier::max_angle_tag(), kQuarterTurn);
	if (converter.size() < 1 || converter.size() > static_cast<int>(cubics.items.size()))
		return false;
	for (ArcToBezier::iterator it(converter); !it.eof(); it.advance())
	{
		const Cubic cubic{it.p1x(), it.p1y(), it.p2x(), it.p2y(), it.p3x(), it.p3y()};
		if (!IsFinite(cubic))
			return false;
		cubics.items[cubics.count++] = cubic;
	}
	return true;
}
} // namespace

void DeliverArc(const Arc& arc, PathSink& sink)
{
	if (arc.startX == arc.endX && arc.startY == arc.endY)
		return;

	Cubics cubics;
	if (arc.radiusX == 0 || arc.radiusY == 0 || !Convert(arc, cubics))
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
} // namespace orvan::grammar
