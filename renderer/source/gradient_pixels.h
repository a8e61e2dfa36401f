// SPDX-License-Identifier: MIT
/// Gradients as pixels.
#pragma once

#include "handles.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace orvan::cairo
{

/// The colours of a gradient of the drawing library's, pixel by pixel. They are looked up in a table, which is several
/// times as fast as the library's own way and differs from it by less than what can be seen.
class GradientPixels
{
public:
	/// Reads a gradient that is the source of a drawing without a transform; false when the pattern is none. For about
	/// this many pixels.
	bool Read(cairo_pattern_t* pattern, double pixels) noexcept;

	/// Calls `put` with the column and the colour (multiplied by its opacity) of each pixel of a row; both are counted
	/// from the picture's origin.
	template <typename Put>
	void ForRow(int y, int start, int end, Put put) const noexcept
	{
		Vector2d at = _toGradient.Apply({start + 0.5, y + 0.5});
		const Vector2d& step = _toGradient.axis1;
		for (int x = start; x < end; x++, at = at + step)
			put(x, Look(_isRadial ? GetRadial(at) : at.x));
	}

private:
	static constexpr std::size_t kMostColors = 1024;

	void FillTable(cairo_pattern_t* pattern) noexcept;
	void ReadLinear(cairo_pattern_t* pattern, const Matrix2d& toPattern) noexcept;
	void ReadRadial(cairo_pattern_t* pattern, const Matrix2d& toPattern) noexcept;
	double GetRadial(const Vector2d& at) const noexcept;

	/// The colour at a place, 0 to 1 between the first and the last stop; transparent where there is none (NaN).
	std::uint32_t Look(double place) const noexcept
	{
		const double last = static_cast<double>(_count - 1);
		if (_extend == CAIRO_EXTEND_REPEAT)
			place -= std::floor(place);
		else if (_extend == CAIRO_EXTEND_REFLECT)
			place = 1.0 - std::abs(place - 2.0 * std::floor(place * 0.5) - 1.0);
		if (!(place > 0.0))
			return place <= 0.0 ? _colors[0] : 0;
		// NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative, and the quickest way.
		return _colors[place < 1.0 ? static_cast<std::size_t>(place * last + 0.5) : _count - 1];
	}

	std::array<std::uint32_t, kMostColors> _colors;
	std::size_t _count = 0;
	cairo_extend_t _extend = CAIRO_EXTEND_PAD;
	bool _isRadial = false;
	/// From pixels to the gradient: of a linear one x is the place, a radial one has its first circle at the origin.
	Matrix2d _toGradient;
	Vector2d _between;          ///< From the centre of the first circle to that of the second.
	double _radius = 0.0;       ///< Of the first circle, ...
	double _growth = 0.0;       ///< ... and how much larger the second is.
	double _quadratic = 0.0;    ///< Of the equation for the place: its highest coefficient, ...
	bool _isConcentric = false; ///< ... unless the place is just a distance.
};

} // namespace orvan::cairo
