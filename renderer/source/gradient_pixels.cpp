// SPDX-License-Identifier: MIT
#include "gradient_pixels.h"

#include <algorithm>
#include <limits>

namespace orvan::cairo
{
namespace
{

struct ColorStop
{
	double offset = 0.0;
	double red = 0.0;
	double green = 0.0;
	double blue = 0.0;
	double alpha = 0.0;
};

ColorStop GetStop(cairo_pattern_t* pattern, int index) noexcept
{
	ColorStop stop;
	cairo_pattern_get_color_stop_rgba(pattern, index, &stop.offset, &stop.red, &stop.green, &stop.blue, &stop.alpha);
	return stop;
}

std::uint32_t ToPixel(const ColorStop& color) noexcept
{
	const auto channel = [](double value)
	{
		// NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative, and the quickest way.
		return static_cast<std::uint32_t>(value * 255.0 + 0.5);
	};
	return channel(color.alpha) << 24 | channel(color.red * color.alpha) << 16 |
		   channel(color.green * color.alpha) << 8 | channel(color.blue * color.alpha);
}

ColorStop Mix(const ColorStop& a, const ColorStop& b, double offset) noexcept
{
	const double t = b.offset > a.offset ? (offset - a.offset) / (b.offset - a.offset) : 1.0;
	const auto mix = [t](double from, double to)
	{
		return from + (to - from) * t;
	};
	return {offset, mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.alpha, b.alpha)};
}

} // namespace

bool GradientPixels::Read(cairo_pattern_t* pattern, double pixels) noexcept
{
	const cairo_pattern_type_t type = cairo_pattern_get_type(pattern);
	if (type != CAIRO_PATTERN_TYPE_LINEAR && type != CAIRO_PATTERN_TYPE_RADIAL)
		return false;
	cairo_matrix_t m;
	cairo_pattern_get_matrix(pattern, &m);
	const Matrix2d toPattern{{m.x0, m.y0}, {m.xx, m.yx}, {m.xy, m.yy}};
	_isRadial = type == CAIRO_PATTERN_TYPE_RADIAL;
	_extend = cairo_pattern_get_extend(pattern);
	if (_isRadial)
		ReadRadial(pattern, toPattern);
	else
		ReadLinear(pattern, toPattern);
	// A table of more colours than there are pixels would take longer than it saves.
	constexpr double kFewPixels = 4096.0;
	constexpr std::size_t kFewColors = 256;
	_count = pixels < kFewPixels ? kFewColors : kMostColors;
	FillTable(pattern);
	return true;
}

void GradientPixels::FillTable(cairo_pattern_t* pattern) noexcept
{
	int count = 0;
	cairo_pattern_get_color_stop_count(pattern, &count);
	ColorStop before = GetStop(pattern, 0);
	ColorStop after = before;
	int next = 1;
	for (std::size_t i = 0; i < _count; i++)
	{
		const double offset = static_cast<double>(i) / static_cast<double>(_count - 1);
		while (after.offset <= offset && next < count)
		{
			before = after;
			after = GetStop(pattern, next++);
		}
		const bool isBetween = offset > before.offset && offset < after.offset;
		_colors[i] = ToPixel(isBetween ? Mix(before, after, offset) : offset >= after.offset ? after : before);
	}
	// The ends have the colours of the first and the last stop, also when there are several at one place.
	_colors[0] = ToPixel(GetStop(pattern, 0));
	_colors[_count - 1] = ToPixel(GetStop(pattern, count - 1));
}

void GradientPixels::ReadLinear(cairo_pattern_t* pattern, const Matrix2d& toPattern) noexcept
{
	Vector2d from;
	Vector2d to;
	cairo_pattern_get_linear_points(pattern, &from.x, &from.y, &to.x, &to.y);
	const Vector2d along = to - from;
	const double square = along.x * along.x + along.y * along.y;
	// The place is how far along the line a point is.
	const Matrix2d toPlace{
		{-(from.x * along.x + from.y * along.y) / square, 0.0}, {along.x / square, 0.0}, {along.y / square, 0.0}};
	_toGradient = toPlace * toPattern;
}

void GradientPixels::ReadRadial(cairo_pattern_t* pattern, const Matrix2d& toPattern) noexcept
{
	Vector2d from;
	Vector2d to;
	double toRadius = 0.0;
	cairo_pattern_get_radial_circles(pattern, &from.x, &from.y, &_radius, &to.x, &to.y, &toRadius);
	_toGradient = Matrix2d{{-from.x, -from.y}, {1.0, 0.0}, {0.0, 1.0}} * toPattern;
	_between = to - from;
	_growth = toRadius - _radius;
	// A focus on the circle is rarely there to the last bit; beside it all colours would be crowded at the focus.
	constexpr double kUnseen = 1e-9;
	const double growth = _growth * _growth;
	_quadratic = _between.x * _between.x + _between.y * _between.y - growth;
	if (std::abs(_quadratic) < kUnseen * growth)
		_quadratic = 0.0;
	_isConcentric = _between == Vector2d() && _growth > 0.0;
}

/// The largest place whose circle goes through a point, and is one; NaN when there is none.
double GradientPixels::GetRadial(const Vector2d& at) const noexcept
{
	const double square = at.x * at.x + at.y * at.y;
	if (_isConcentric)
		return (std::sqrt(square) - _radius) / _growth;
	constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
	const double linear = at.x * _between.x + at.y * _between.y + _radius * _growth;
	const double constant = square - _radius * _radius;
	const auto isCircle = [&](double place)
	{
		return _radius + place * _growth >= 0.0;
	};
	if (_quadratic == 0.0)
	{
		const double place = linear != 0.0 ? 0.5 * constant / linear : kNowhere;
		return isCircle(place) ? place : kNowhere;
	}
	const double discriminant = linear * linear - _quadratic * constant;
	if (discriminant < 0.0)
		return kNowhere;
	const double root = std::sqrt(discriminant);
	const double first = (linear + root) / _quadratic;
	const double second = (linear - root) / _quadratic;
	const double larger = std::max(first, second);
	const double smaller = std::min(first, second);
	return isCircle(larger) ? larger : isCircle(smaller) ? smaller : kNowhere;
}

} // namespace orvan::cairo
