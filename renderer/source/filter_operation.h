// SPDX-License-Identifier: MIT
/// What a node of a filter's graph does, and how it comes from a primitive.
#pragma once

#include "canvas.h"
#include "drawing/filters.h"
#include "filter_space.h"
#include "filters/color_space.h"

#include <span>

namespace orvan::cairo
{

/// A picture that goes into an operation.
struct FilterInput
{
	const filters::Raster* raster = nullptr;
	filters::Box subregion; ///< Where the picture has its edges.
};

/// What a node does with pixels.
class FilterOperation
{
public:
	virtual ~FilterOperation() = default;

	/// False when colours go through unchanged, so that it does not matter which space they are in.
	virtual bool WorksOnColors() const noexcept
	{
		return true;
	}

	/// The part of the `index`th input that is needed for `area` of the result.
	virtual filters::Box GetNeeded(std::size_t index, const filters::Box& area,
								   const filters::Box& subregion) const noexcept;

	/// The pixels of `area`, or of as much of it as is not transparent.
	virtual Result<filters::Raster> Apply(std::span<const FilterInput> inputs, const filters::Box& area,
										  const filters::Alarm& alarm) const noexcept = 0;
};

using FilterOperationPtr = std::unique_ptr<FilterOperation>;

/// A primitive of a filter, with all that its operation may ask about.
struct FilterPrimitive
{
	const Canvas& canvas;
	const drawing::Frame& user; ///< The filtered element.
	const drawing::FilterStage& stage;
	const FilterSpace& space;
	ObjectBase* element;
	const DataDictionary& attributes;
	const drawing::Style& style;  ///< With the primitive's own properties.
	drawing::Rectangle subregion; ///< In user units.
	filters::Box edges;           ///< The same in pixels, within the filter's region.
	filters::ColorSpace colorSpace;

	double GetNumber(SVGImportAttribute key, double absent) const noexcept
	{
		return attributes.GetOr(static_cast<std::int32_t>(key), absent);
	}

	template <typename T>
	T GetKeyword(SVGImportAttribute key, T absent) const noexcept
	{
		return static_cast<T>(attributes.GetOr(static_cast<std::int32_t>(key), static_cast<std::int32_t>(absent)));
	}

	std::span<const Float> GetNumbers(SVGImportAttribute key) const noexcept;
	/// Two numbers, as they stand.
	Vector2d GetPair(SVGImportAttribute key, const Vector2d& absent) const noexcept;
	/// Two lengths in the primitive's units, in pixels.
	Vector2d ToPixels(const Vector2d& lengths) const noexcept;
	/// A colour of the primitive in its colour space, with an opacity.
	std::uint32_t GetColor(SVGImportAttribute key, const Color& absent, double opacity) const noexcept;
};

/// The operation of a primitive; null when the primitive passes its input on, for which `isPassing` is set, or, without
/// that, when it gives nothing. Fails for want of memory only.
struct MadeOperation
{
	FilterOperationPtr operation;
	bool isPassing = false;
};

Result<MadeOperation> MakeOperation(const FilterPrimitive& primitive) noexcept;

/// The operation of a function of the Filter Effects module.
Result<FilterOperationPtr> MakeOperation(const SVGFilterFunction& function, const drawing::Frame& user,
										 const FilterSpace& space) noexcept;

/// feImage.
Result<MadeOperation> MakeImageOperation(const FilterPrimitive& primitive) noexcept;
/// feDiffuseLighting and feSpecularLighting.
Result<MadeOperation> MakeLightOperation(const FilterPrimitive& primitive, bool isSpecular) noexcept;

/// Nodes that every graph has: the part of a picture in a region, and its alpha.
Result<FilterOperationPtr> MakeCrop() noexcept;
Result<FilterOperationPtr> MakeAlpha() noexcept;

/// An operation on the heap.
template <typename T, typename... Values>
Result<FilterOperationPtr> NewOperation(Values&&... values) noexcept
{
	FilterOperationPtr operation(new (std::nothrow) T(std::forward<Values>(values)...));
	if (operation == nullptr)
		return OutOfMemoryError();
	return operation;
}

template <typename T, typename... Values>
Result<MadeOperation> MakeNew(Values&&... values) noexcept
{
	MadeOperation made;
	made.operation = ORVAN_TRY(NewOperation<T>(std::forward<Values>(values)...));
	return made;
}

/// A raster, or the out-of-memory error where it is not there.
Result<filters::Raster> Check(filters::Raster raster) noexcept;

} // namespace orvan::cairo
