// SPDX-License-Identifier: MIT
/// What the nodes of a filter's graph do with pixels: the operations that `filters/` has, each with the part of its
/// inputs that it needs for a part of its result. Images and light stand in files of their own.
#pragma once

#include "filter_operation.h"
#include "filters/arrange.h"
#include "filters/blend.h"
#include "filters/blur.h"
#include "filters/color_matrix.h"
#include "filters/composite.h"
#include "filters/convolve.h"
#include "filters/displacement.h"
#include "filters/morphology.h"
#include "filters/pixel.h"
#include "filters/transfer.h"
#include "filters/turbulence.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orvan::cairo
{

using filters::Alarm;
using filters::Box;
using filters::Raster;
using Inputs = std::span<const FilterInput>;

/// A shift in whole pixels; the far end of the grid where it is none.
inline int ToShift(double pixels) noexcept
{
	constexpr double kFar = 1 << 28;
	return static_cast<int>(std::clamp(std::isnan(pixels) ? 0.0 : std::floor(pixels + 0.5), -kFar, kFar));
}

inline float ToFloat(double value) noexcept
{
	return static_cast<float>(value);
}

/// A colour as a pixel, in sRGB.
inline std::uint32_t ToPixel(const Color& color, double alpha) noexcept
{
	const auto toByte = [](double value)
	{
		return filters::ToByte(ToFloat(drawing::ClampToUnit(value) * 255.0));
	};
	return filters::MultiplyByAlpha({toByte(color.blue), toByte(color.green), toByte(color.red), toByte(alpha)});
}

class Crop final : public FilterOperation
{
public:
	bool WorksOnColors() const noexcept override
	{
		return false;
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm&) const noexcept override
	{
		return Check(filters::Crop(*inputs[0].raster, area));
	}
};

class TakeAlpha final : public FilterOperation
{
public:
	bool WorksOnColors() const noexcept override
	{
		return false;
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm&) const noexcept override
	{
		return Check(filters::TakeAlpha(*inputs[0].raster, area));
	}
};

class Flood final : public FilterOperation
{
public:
	explicit Flood(std::uint32_t pixel) noexcept : _pixel(pixel)
	{
	}

	Result<Raster> Apply(Inputs, const Box& area, const Alarm&) const noexcept override
	{
		return Check(filters::Flood(_pixel, area));
	}

private:
	std::uint32_t _pixel;
};

class Offset final : public FilterOperation
{
public:
	explicit Offset(const Vector2d& shift) noexcept : _x(ToShift(shift.x)), _y(ToShift(shift.y))
	{
	}

	bool WorksOnColors() const noexcept override
	{
		return false;
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		return area.Move(-_x, -_y);
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm&) const noexcept override
	{
		return Check(filters::Offset(*inputs[0].raster, _x, _y, area));
	}

private:
	int _x;
	int _y;
};

class Tile final : public FilterOperation
{
public:
	bool WorksOnColors() const noexcept override
	{
		return false;
	}

	Box GetNeeded(std::size_t, const Box&, const Box& subregion) const noexcept override
	{
		return subregion;
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm&) const noexcept override
	{
		const Box& tile = inputs[0].subregion;
		return Check(filters::Repeat(*inputs[0].raster,
									 {static_cast<double>(tile.left), static_cast<double>(tile.top),
									  static_cast<double>(tile.GetWidth()), static_cast<double>(tile.GetHeight())},
									 area));
	}
};

class Merge final : public FilterOperation
{
public:
	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		Box box;
		for (const FilterInput& input : inputs)
			box = box.Unite(input.raster->GetBox().Intersect(area));
		Raster result = ORVAN_TRY(Check(Raster(box)));
		for (const FilterInput& input : inputs)
		{
			if (alarm.IsOver())
				break;
			filters::PutOver(*input.raster, result);
		}
		return result;
	}
};

/// What takes one picture, pixel by pixel, with a setting.
template <typename Setting, auto apply>
class PointOperation final : public FilterOperation
{
public:
	explicit PointOperation(const Setting& setting) noexcept : _setting(setting)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(apply(*inputs[0].raster, _setting, area, alarm));
	}

private:
	Setting _setting;
};

using ColorMatrix = PointOperation<filters::ColorMatrix, &filters::ApplyColorMatrix>;
using Transfer = PointOperation<filters::TransferTables, &filters::Transfer>;

/// What takes two pictures, pixel by pixel, with a setting.
template <typename Setting, auto apply>
class JoiningOperation final : public FilterOperation
{
public:
	explicit JoiningOperation(const Setting& setting) noexcept : _setting(setting)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(apply(*inputs[0].raster, *inputs[1].raster, _setting, area, alarm));
	}

private:
	Setting _setting;
};

using Blend = JoiningOperation<filters::BlendMode, &filters::Blend>;
using Composite = JoiningOperation<filters::CompositeOperator, &filters::Composite>;
using CompositeArithmetic = JoiningOperation<filters::ArithmeticFactors, &filters::CompositeArithmetic>;

class Blur final : public FilterOperation
{
public:
	explicit Blur(const Vector2d& deviation) noexcept : _deviation(deviation)
	{
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		return area.Grow(filters::GetBlurReach(_deviation.x), filters::GetBlurReach(_deviation.y));
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Blur(*inputs[0].raster, _deviation.x, _deviation.y, area, alarm));
	}

private:
	Vector2d _deviation;
};

/// A picture over its shadow: its alpha, blurred, moved and coloured.
class DropShadow final : public FilterOperation
{
public:
	DropShadow(const Vector2d& deviation, const Vector2d& shift, std::uint32_t color) noexcept
		: _deviation(deviation), _x(ToShift(shift.x)), _y(ToShift(shift.y)), _color(color)
	{
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		const Box blurred = area.Move(-_x, -_y);
		const int reachX = filters::GetBlurReach(_deviation.x);
		const int reachY = filters::GetBlurReach(_deviation.y);
		return area.Unite(blurred.Grow(reachX, reachY));
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		const Raster& input = *inputs[0].raster;
		const Box before = area.Move(-_x, -_y);
		const Raster blurred = ORVAN_TRY(Check(filters::Blur(input, _deviation.x, _deviation.y, before, alarm)));
		const Raster moved = ORVAN_TRY(Check(filters::Offset(blurred, _x, _y, area)));
		const Raster color = ORVAN_TRY(Check(filters::Flood(_color, moved.GetBox())));
		const Raster shadow =
			ORVAN_TRY(Check(filters::Composite(color, moved, filters::CompositeOperator::in, area, alarm)));
		return Check(filters::Composite(input, shadow, filters::CompositeOperator::over, area, alarm));
	}

private:
	Vector2d _deviation;
	int _x;
	int _y;
	std::uint32_t _color;
};

class Morphology final : public FilterOperation
{
public:
	Morphology(filters::MorphologyOperator operation, const Vector2d& radius) noexcept
		: _operation(operation), _x(std::max(ToShift(radius.x), 0)), _y(std::max(ToShift(radius.y), 0))
	{
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		return area.Grow(_x, _y);
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Morph(*inputs[0].raster, _operation, _x, _y, area, alarm));
	}

private:
	filters::MorphologyOperator _operation;
	int _x;
	int _y;
};

class Displacement final : public FilterOperation
{
public:
	explicit Displacement(const filters::Displacement& by) noexcept : _by(by)
	{
	}

	Box GetNeeded(std::size_t index, const Box& area, const Box&) const noexcept override
	{
		if (index != 0)
			return area;
		return area.Grow(ToShift(std::abs(_by.scaleX)) / 2 + 1, ToShift(std::abs(_by.scaleY)) / 2 + 1);
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Displace(*inputs[0].raster, *inputs[1].raster, _by, area, alarm));
	}

private:
	filters::Displacement _by;
};

class Convolution final : public FilterOperation
{
public:
	Convolution(BaseArray<Float> values, const filters::Kernel& kernel, const Box& edges) noexcept
		: _values(std::move(values)), _kernel(kernel), _edges(edges)
	{
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		// What is repeated beyond the edges may come from anywhere.
		if (_kernel.edgeMode == filters::EdgeMode::wrap)
			return _edges;
		return area.Grow(_kernel.width, _kernel.height);
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		filters::Kernel kernel = _kernel;
		kernel.values = {_values.begin(), _values.GetCount()};
		return Check(filters::Convolve(*inputs[0].raster, _edges, kernel, area, alarm));
	}

private:
	BaseArray<Float> _values;
	filters::Kernel _kernel;
	Box _edges;
};

class Turbulence final : public FilterOperation
{
public:
	explicit Turbulence(const filters::Turbulence& turbulence) noexcept : _turbulence(turbulence)
	{
	}

	Result<Raster> Apply(Inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::MakeTurbulence(_turbulence, area, alarm));
	}

private:
	filters::Turbulence _turbulence;
};

} // namespace orvan::cairo
