// SPDX-License-Identifier: MIT
#include "filter_operation.h"

#include "drawing/lengths.h"
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
#include "svg_complete.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using filters::Alarm;
using filters::Box;
using filters::Raster;
using Inputs = std::span<const FilterInput>;
using Key = SVGImportAttribute;

/// A shift in whole pixels; the far end of the grid where it is none.
int ToShift(double pixels) noexcept
{
	constexpr double kFar = 1 << 28;
	return static_cast<int>(std::clamp(std::isnan(pixels) ? 0.0 : std::floor(pixels + 0.5), -kFar, kFar));
}

float ToFloat(double value) noexcept
{
	return static_cast<float>(value);
}

std::uint32_t ToPixel(const Color& color, double alpha) noexcept
{
	const auto toByte = [](double value)
	{
		return filters::ToByte(ToFloat(ClampToUnit(value) * 255.0));
	};
	return filters::MultiplyByAlpha({toByte(color.blue), toByte(color.green), toByte(color.red), toByte(alpha)});
}

// Operations ---------------------------------------------------------------------------------------------------------

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
	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm&) const noexcept override
	{
		Box box;
		for (const FilterInput& input : inputs)
			box = box.Unite(input.raster->GetBox().Intersect(area));
		Raster result = ORVAN_TRY(Check(Raster(box)));
		for (const FilterInput& input : inputs)
			filters::PutOver(*input.raster, result);
		return result;
	}
};

class Blend final : public FilterOperation
{
public:
	explicit Blend(filters::BlendMode mode) noexcept : _mode(mode)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Blend(*inputs[0].raster, *inputs[1].raster, _mode, area, alarm));
	}

private:
	filters::BlendMode _mode;
};

class Composite final : public FilterOperation
{
public:
	explicit Composite(filters::CompositeOperator operation) noexcept : _operation(operation)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Composite(*inputs[0].raster, *inputs[1].raster, _operation, area, alarm));
	}

private:
	filters::CompositeOperator _operation;
};

class CompositeArithmetic final : public FilterOperation
{
public:
	explicit CompositeArithmetic(const filters::ArithmeticFactors& factors) noexcept : _factors(factors)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::CompositeArithmetic(*inputs[0].raster, *inputs[1].raster, _factors, area, alarm));
	}

private:
	filters::ArithmeticFactors _factors;
};

class ColorMatrix final : public FilterOperation
{
public:
	explicit ColorMatrix(const filters::ColorMatrix& matrix) noexcept : _matrix(matrix)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::ApplyColorMatrix(*inputs[0].raster, _matrix, area, alarm));
	}

private:
	filters::ColorMatrix _matrix;
};

class Transfer final : public FilterOperation
{
public:
	explicit Transfer(const filters::TransferTables& tables) noexcept : _tables(tables)
	{
	}

	Result<Raster> Apply(Inputs inputs, const Box& area, const Alarm& alarm) const noexcept override
	{
		return Check(filters::Transfer(*inputs[0].raster, _tables, area, alarm));
	}

private:
	filters::TransferTables _tables;
};

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

// From primitives to operations --------------------------------------------------------------------------------------

MadeOperation Pass() noexcept
{
	MadeOperation made;
	made.isPassing = true;
	return made;
}

/// Nothing comes out of it.
MadeOperation Nothing() noexcept
{
	return {};
}

Result<MadeOperation> MakeBlend(const FilterPrimitive& primitive) noexcept
{
	const auto mode = primitive.GetKeyword(Key::mode, SVGBlendMode::normal);
	return MakeNew<Blend>(static_cast<filters::BlendMode>(mode));
}

Result<MadeOperation> MakeColorMatrix(const FilterPrimitive& primitive) noexcept
{
	const std::span<const Float> values = primitive.GetNumbers(Key::values);
	const bool saysOne = values.size() == 1;
	switch (primitive.GetKeyword(Key::type, SVGColorMatrixType::matrix))
	{
	case SVGColorMatrixType::matrix:
		break;
	case SVGColorMatrixType::saturate:
		return saysOne ? MakeNew<ColorMatrix>(filters::SaturationMatrix(ToFloat(values[0]))) : Pass();
	case SVGColorMatrixType::hueRotate:
		return saysOne ? MakeNew<ColorMatrix>(filters::HueRotationMatrix(ToFloat(values[0]))) : Pass();
	case SVGColorMatrixType::luminanceToAlpha:
		return MakeNew<ColorMatrix>(filters::LuminanceToAlphaMatrix());
	}
	filters::ColorMatrix matrix{};
	if (values.size() != matrix.size())
		return Pass();
	std::transform(values.begin(), values.end(), matrix.begin(), &ToFloat);
	return MakeNew<ColorMatrix>(matrix);
}

filters::TransferTable MakeTable(const SVGElementRef& function) noexcept
{
	const DataDictionary attributes = function->GetAttributeDictionary();
	const auto get = [&](Key key, double absent)
	{
		return attributes.GetOr(static_cast<std::int32_t>(key), absent);
	};
	const auto* array = attributes.Find<BaseArray<Float>>(static_cast<std::int32_t>(Key::tableValues));
	const std::span<const double> values =
		array != nullptr ? std::span(array->begin(), array->GetCount()) : std::span<const double>();
	switch (static_cast<SVGTransferType>(attributes.GetOr(static_cast<std::int32_t>(Key::type), std::int32_t{0})))
	{
	case SVGTransferType::identity:
		break;
	case SVGTransferType::table:
		return filters::TableTransfer(values);
	case SVGTransferType::discrete:
		return filters::DiscreteTransfer(values);
	case SVGTransferType::linear:
		return filters::LinearTransfer(get(Key::slope, 1.0), get(Key::intercept, 0.0));
	case SVGTransferType::gamma:
		return filters::GammaTransfer(get(Key::amplitude, 1.0), get(Key::exponent, 1.0), get(Key::offset, 0.0));
	}
	return filters::IdentityTransfer();
}

Result<MadeOperation> MakeTransfer(const FilterPrimitive& primitive) noexcept
{
	filters::TransferTables tables;
	const Borrowed<HierarchyObjectInterface> hierarchy(primitive.element);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		const auto function = Cast<SVGElementInterface>(child);
		if (!function)
			continue;
		// Of several functions for a channel the last one counts.
		switch (function->GetElementType())
		{
		case SVGImportElementKind::feFuncR:
			tables.red = MakeTable(function);
			break;
		case SVGImportElementKind::feFuncG:
			tables.green = MakeTable(function);
			break;
		case SVGImportElementKind::feFuncB:
			tables.blue = MakeTable(function);
			break;
		case SVGImportElementKind::feFuncA:
			tables.alpha = MakeTable(function);
			break;
		default:
			break;
		}
	}
	return MakeNew<Transfer>(tables);
}

Result<MadeOperation> MakeComposite(const FilterPrimitive& primitive) noexcept
{
	using filters::CompositeOperator;
	switch (primitive.GetKeyword(Key::operation, SVGCompositeOperator::over))
	{
	case SVGCompositeOperator::over:
		break;
	case SVGCompositeOperator::in:
		return MakeNew<Composite>(CompositeOperator::in);
	case SVGCompositeOperator::out:
		return MakeNew<Composite>(CompositeOperator::out);
	case SVGCompositeOperator::atop:
		return MakeNew<Composite>(CompositeOperator::atop);
	case SVGCompositeOperator::exclusiveOr:
		return MakeNew<Composite>(CompositeOperator::exclusiveOr);
	case SVGCompositeOperator::lighter:
		return MakeNew<Composite>(CompositeOperator::lighter);
	case SVGCompositeOperator::arithmetic:
		return MakeNew<CompositeArithmetic>(filters::ArithmeticFactors{
			ToFloat(primitive.GetNumber(Key::k1, 0.0)), ToFloat(primitive.GetNumber(Key::k2, 0.0)),
			ToFloat(primitive.GetNumber(Key::k3, 0.0)), ToFloat(primitive.GetNumber(Key::k4, 0.0))});
	}
	return MakeNew<Composite>(CompositeOperator::over);
}

/// What a kernel has for its side: a whole number, three where there is none.
int ToOrder(double order) noexcept
{
	constexpr double kLargest = 1000.0;
	return order >= 1.0 ? static_cast<int>(std::min(order, kLargest)) : 3;
}

double ToMiddle(int order) noexcept
{
	const int middle = order / 2;
	return middle;
}

Result<MadeOperation> MakeConvolution(const FilterPrimitive& primitive) noexcept
{
	const Vector2d order = primitive.GetPair(Key::order, {3.0, 3.0});
	const std::span<const Float> values = primitive.GetNumbers(Key::kernelMatrix);
	filters::Kernel kernel;
	kernel.width = ToOrder(order.x);
	kernel.height = ToOrder(order.y);
	kernel.targetX = ToShift(std::floor(primitive.GetNumber(Key::targetX, ToMiddle(kernel.width))));
	kernel.targetY = ToShift(std::floor(primitive.GetNumber(Key::targetY, ToMiddle(kernel.height))));
	const bool isWhole =
		values.size() == static_cast<std::size_t>(kernel.width) * static_cast<std::size_t>(kernel.height);
	if (!isWhole || kernel.targetX < 0 || kernel.targetX >= kernel.width || kernel.targetY < 0 ||
		kernel.targetY >= kernel.height)
		return Nothing();
	double sum = 0.0;
	for (const double value : values)
		sum += value;
	kernel.divisor = primitive.GetNumber(Key::divisor, 0.0);
	if (kernel.divisor == 0.0)
		kernel.divisor = sum != 0.0 ? sum : 1.0;
	kernel.bias = primitive.GetNumber(Key::bias, 0.0);
	kernel.edgeMode = static_cast<filters::EdgeMode>(primitive.GetKeyword(Key::edgeMode, SVGEdgeMode::duplicate));
	kernel.keepsAlpha = primitive.GetKeyword(Key::preserveAlpha, std::int32_t{0}) != 0;
	BaseArray<Float> copy;
	ORVAN_TRY(copy.AppendAll(values.data(), values.size()));
	return MakeNew<Convolution>(std::move(copy), kernel, primitive.edges);
}

Result<MadeOperation> MakeDisplacement(const FilterPrimitive& primitive) noexcept
{
	const double scale = primitive.GetNumber(Key::scale, 0.0);
	const Vector2d scales = primitive.ToPixels({scale, scale});
	const auto channel = [&](Key key)
	{
		return static_cast<filters::Channel>(primitive.GetKeyword(key, SVGChannel::alpha));
	};
	return MakeNew<Displacement>(
		filters::Displacement{scales.x, scales.y, channel(Key::xChannelSelector), channel(Key::yChannelSelector)});
}

/// Deviations in pixels; a negative one counts as none.
Vector2d GetDeviation(const FilterPrimitive& primitive, double absent) noexcept
{
	const Vector2d pixels = primitive.ToPixels(primitive.GetPair(Key::stdDeviation, {absent, absent}));
	return {std::max(pixels.x, 0.0), std::max(pixels.y, 0.0)};
}

Result<MadeOperation> MakeBlur(const FilterPrimitive& primitive) noexcept
{
	const Vector2d deviation = GetDeviation(primitive, 0.0);
	if (deviation.x == 0.0 && deviation.y == 0.0)
		return Pass();
	return MakeNew<Blur>(deviation);
}

Result<MadeOperation> MakeDropShadow(const FilterPrimitive& primitive) noexcept
{
	const Vector2d shift = primitive.ToPixels({primitive.GetNumber(Key::dx, 2.0), primitive.GetNumber(Key::dy, 2.0)});
	const double opacity = primitive.GetNumber(Key::floodOpacity, 1.0);
	return MakeNew<DropShadow>(GetDeviation(primitive, 2.0), shift,
							   primitive.GetColor(Key::floodColor, Color(), opacity));
}

Result<MadeOperation> MakeFlood(const FilterPrimitive& primitive) noexcept
{
	return MakeNew<Flood>(primitive.GetColor(Key::floodColor, Color(), primitive.GetNumber(Key::floodOpacity, 1.0)));
}

Result<MadeOperation> MakeMerge(const FilterPrimitive&) noexcept
{
	return MakeNew<Merge>();
}

Result<MadeOperation> MakeMorphology(const FilterPrimitive& primitive) noexcept
{
	const Vector2d radius = primitive.ToPixels(primitive.GetPair(Key::radius, {0.0, 0.0}));
	if (!(radius.x > 0.0) && !(radius.y > 0.0))
		return Pass();
	const auto operation = primitive.GetKeyword(Key::operation, SVGMorphologyOperator::erode);
	return MakeNew<Morphology>(operation == SVGMorphologyOperator::dilate ? filters::MorphologyOperator::dilate
																		  : filters::MorphologyOperator::erode,
							   radius);
}

Result<MadeOperation> MakeOffset(const FilterPrimitive& primitive) noexcept
{
	return MakeNew<Offset>(primitive.ToPixels({primitive.GetNumber(Key::dx, 0.0), primitive.GetNumber(Key::dy, 0.0)}));
}

Result<MadeOperation> MakeTile(const FilterPrimitive&) noexcept
{
	return MakeNew<Tile>();
}

Result<MadeOperation> MakeTurbulence(const FilterPrimitive& primitive) noexcept
{
	const Vector2d frequency = primitive.GetPair(Key::baseFrequency, {0.0, 0.0});
	const double octaves = primitive.GetNumber(Key::numOctaves, 1.0);
	if (frequency.x < 0.0 || frequency.y < 0.0 || octaves < 1.0)
		return Nothing();
	// A number of octaves that is not whole is none, which is one.
	const bool isWhole = octaves == std::floor(octaves);
	const FilterSpace& space = primitive.space;
	const Matrix2d toUser = Invert(space.userToPixels);
	filters::Turbulence turbulence;
	turbulence.frequencyX = frequency.x;
	turbulence.frequencyY = frequency.y;
	turbulence.octaves = isWhole ? ToShift(octaves) : 1;
	// Fractions of a seed are cut off.
	turbulence.seed = static_cast<int>(std::clamp(primitive.GetNumber(Key::seed, 0.0), -2147483647.0, 2147483647.0));
	turbulence.isFractal =
		primitive.GetKeyword(Key::type, SVGTurbulenceType::turbulence) == SVGTurbulenceType::fractalNoise;
	turbulence.isStitched = primitive.GetKeyword(Key::stitchTiles, std::int32_t{0}) != 0;
	turbulence.tileX = primitive.subregion.left;
	turbulence.tileY = primitive.subregion.top;
	turbulence.tileWidth = primitive.subregion.GetWidth();
	turbulence.tileHeight = primitive.subregion.GetHeight();
	turbulence.scaleX = toUser.axis1.x;
	turbulence.scaleY = toUser.axis2.y;
	turbulence.offsetX = toUser.offset.x;
	turbulence.offsetY = toUser.offset.y;
	return MakeNew<Turbulence>(turbulence);
}

Result<MadeOperation> MakeDiffuse(const FilterPrimitive& primitive) noexcept
{
	return MakeLightOperation(primitive, false);
}

Result<MadeOperation> MakeSpecular(const FilterPrimitive& primitive) noexcept
{
	return MakeLightOperation(primitive, true);
}

struct Row
{
	SVGImportElementKind kind;
	Result<MadeOperation> (*make)(const FilterPrimitive&) noexcept;
};

constexpr Row kRows[] = {
	{SVGImportElementKind::feBlend, &MakeBlend},
	{SVGImportElementKind::feColorMatrix, &MakeColorMatrix},
	{SVGImportElementKind::feComponentTransfer, &MakeTransfer},
	{SVGImportElementKind::feComposite, &MakeComposite},
	{SVGImportElementKind::feConvolveMatrix, &MakeConvolution},
	{SVGImportElementKind::feDiffuseLighting, &MakeDiffuse},
	{SVGImportElementKind::feDisplacementMap, &MakeDisplacement},
	{SVGImportElementKind::feDropShadow, &MakeDropShadow},
	{SVGImportElementKind::feFlood, &MakeFlood},
	{SVGImportElementKind::feGaussianBlur, &MakeBlur},
	{SVGImportElementKind::feImage, &MakeImageOperation},
	{SVGImportElementKind::feMerge, &MakeMerge},
	{SVGImportElementKind::feMorphology, &MakeMorphology},
	{SVGImportElementKind::feOffset, &MakeOffset},
	{SVGImportElementKind::feSpecularLighting, &MakeSpecular},
	{SVGImportElementKind::feTile, &MakeTile},
	{SVGImportElementKind::feTurbulence, &MakeTurbulence},
};

} // namespace

// What primitives ask about ------------------------------------------------------------------------------------------

std::span<const Float> FilterPrimitive::GetNumbers(Key key) const noexcept
{
	const auto* array = attributes.Find<BaseArray<Float>>(static_cast<std::int32_t>(key));
	return array != nullptr ? std::span(array->begin(), array->GetCount()) : std::span<const Float>();
}

Vector2d FilterPrimitive::GetPair(Key key, const Vector2d& absent) const noexcept
{
	const std::span<const Float> numbers = GetNumbers(key);
	return numbers.size() == 2 ? Vector2d{numbers[0], numbers[1]} : absent;
}

Vector2d FilterPrimitive::ToPixels(const Vector2d& lengths) const noexcept
{
	const bool isBox = stage.primitiveUnits == SVGUnits::objectBoundingBox;
	return {lengths.x * space.scale.x * (isBox ? stage.box.GetWidth() : 1.0),
			lengths.y * space.scale.y * (isBox ? stage.box.GetHeight() : 1.0)};
}

std::uint32_t FilterPrimitive::GetColor(Key key, const Color& absent, double opacity) const noexcept
{
	Color color = absent;
	double alpha = 1.0;
	if (const auto* paint = attributes.Find<SVGPaint>(static_cast<std::int32_t>(key)))
	{
		const bool isCurrent = paint->type == SVGPaintType::currentColor;
		color = isCurrent ? style.color : paint->color;
		alpha = isCurrent ? style.colorAlpha : paint->alpha;
	}
	const std::uint32_t pixel = ToPixel(color, ClampToUnit(alpha) * ClampToUnit(opacity));
	return filters::Convert(pixel, filters::ColorSpace::sRGB, colorSpace);
}

Box FilterOperation::GetNeeded(std::size_t, const Box& area, const Box&) const noexcept
{
	return area;
}

Result<Raster> Check(Raster raster) noexcept
{
	if (!raster.IsThere())
		return OutOfMemoryError();
	return raster;
}

Result<FilterOperationPtr> MakeCrop() noexcept
{
	return NewOperation<Crop>();
}

Result<FilterOperationPtr> MakeAlpha() noexcept
{
	return NewOperation<TakeAlpha>();
}

Result<MadeOperation> MakeOperation(const FilterPrimitive& primitive) noexcept
{
	const SVGImportElementKind kind = Borrowed<SVGElementInterface>(primitive.element)->GetElementType();
	for (const Row& row : kRows)
	{
		if (row.kind == kind)
			return row.make(primitive);
	}
	return Nothing();
}

Result<FilterOperationPtr> MakeOperation(const SVGFilterFunction& function, const Frame& user,
										 const FilterSpace& space) noexcept
{
	const float amount = ToFloat(function.amount);
	const float limited = std::min(amount, 1.0F);
	const double deviation = user.Resolve(function.deviation, Axis::other);
	const Vector2d deviations{deviation * space.scale.x, deviation * space.scale.y};
	const auto matrix = [](const filters::ColorMatrix& values)
	{
		return NewOperation<ColorMatrix>(values);
	};
	switch (function.type)
	{
	case SVGFilterFunctionType::reference:
		break;
	case SVGFilterFunctionType::blur:
		if (deviation > 0.0)
			return NewOperation<Blur>(deviations);
		break;
	case SVGFilterFunctionType::brightness:
		return matrix(filters::LinearMatrix(amount, 0.0F, 1.0F));
	case SVGFilterFunctionType::contrast:
		return matrix(filters::LinearMatrix(amount, 0.5F - 0.5F * amount, 1.0F));
	case SVGFilterFunctionType::dropShadow:
	{
		const bool isCurrent = function.color.type == SVGPaintType::currentColor;
		const Style& style = user.place.style;
		const std::uint32_t color = ToPixel(isCurrent ? style.color : function.color.color,
											ClampToUnit(isCurrent ? style.colorAlpha : function.color.alpha));
		const Vector2d shift{user.Resolve(function.x, Axis::horizontal) * space.scale.x,
							 user.Resolve(function.y, Axis::vertical) * space.scale.y};
		return NewOperation<DropShadow>(deviations, shift, color);
	}
	case SVGFilterFunctionType::grayscale:
		return matrix(filters::GrayscaleMatrix(limited));
	case SVGFilterFunctionType::hueRotate:
		return matrix(filters::HueRotationMatrix(amount));
	case SVGFilterFunctionType::invert:
		return matrix(filters::LinearMatrix(1.0F - 2.0F * limited, limited, 1.0F));
	case SVGFilterFunctionType::opacity:
		return matrix(filters::LinearMatrix(1.0F, 0.0F, limited));
	case SVGFilterFunctionType::saturate:
		return matrix(filters::SaturationMatrix(amount));
	case SVGFilterFunctionType::sepia:
		return matrix(filters::SepiaMatrix(limited));
	}
	return MakeCrop();
}

} // namespace orvan::cairo
