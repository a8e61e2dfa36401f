// SPDX-License-Identifier: MIT
/// From the primitives of a filter element to operations.
#include "pixel_operations.h"

#include "svg_complete.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;

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
	if (octaves < 0.0)
		return Nothing();
	// A number of octaves that is not whole is none, which is one. Of no octave at all noise has its mean.
	const bool isWhole = octaves == std::floor(octaves);
	const FilterSpace& space = primitive.space;
	const Matrix2d toUser = Invert(space.userToPixels);
	filters::Turbulence turbulence;
	// As in browsers, a frequency below zero is none, also for the other axis.
	if (frequency.x >= 0.0 && frequency.y >= 0.0)
	{
		turbulence.frequencyX = frequency.x;
		turbulence.frequencyY = frequency.y;
	}
	turbulence.octaves = isWhole ? ToShift(octaves) : 1;
	// Fractions of a seed are cut off.
	turbulence.seed = static_cast<int>(std::clamp(primitive.GetNumber(Key::seed, 0.0), -2147483647.0, 2147483647.0));
	turbulence.isFractal =
		primitive.GetKeyword(Key::type, SVGTurbulenceType::turbulence) == SVGTurbulenceType::fractalNoise;
	turbulence.isStitched = primitive.GetKeyword(Key::stitchTiles, std::int32_t{0}) != 0;
	// Browsers take the tile as if it began at the origin.
	turbulence.tileWidth = primitive.subregion.GetWidth();
	turbulence.tileHeight = primitive.subregion.GetHeight();
	turbulence.scaleX = toUser.axis1.x;
	turbulence.scaleY = toUser.axis2.y;
	// As in browsers, the noise begins half a unit before the origin.
	turbulence.offsetX = toUser.offset.x + 0.5;
	turbulence.offsetY = toUser.offset.y + 0.5;
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

} // namespace orvan::cairo
