// SPDX-License-Identifier: MIT
#include "filters.h"

#include "references.h"

namespace orvan::drawing
{
namespace
{

using Key = SVGImportAttribute;

/// A blur is not seen farther away than this many deviations.
constexpr double kBlurReach = 3.0;

/// The box of what has none: a point.
Rectangle GetBoxOrNothing(const Rectangle& box) noexcept
{
	return box.IsFinite() ? box : Rectangle{0.0, 0.0, 0.0, 0.0};
}

/// The outermost element has the area that the document is fitted into for its box.
Result<Rectangle> GetFilteredBox(const Scene& scene, const Frame& user, Extent& extent) noexcept
{
	if (user.outer == nullptr && Borrowed<SVGSVGElementInterface>(user.element))
	{
		const Rectangle area{0.0, 0.0, scene.viewportSize.x, scene.viewportSize.y};
		return Transform(Invert(user.place.transform) * scene.placement, area);
	}
	return GetBoxOrNothing(ORVAN_TRY(extent.GetBox()));
}

/// Fills a stage in; false when its reference leads to no filter.
Result<bool> FindFilter(Scene& scene, const Frame& user, Extent& extent, FilterStage& stage) noexcept
{
	stage.filter = ORVAN_TRY(FindEffect<SVGFilterElementInterface>(scene, &stage.function->reference, user));
	if (!stage.filter)
		return false;
	const Borrowed<SVGFilterElementInterface> filter(stage.filter);
	const DataDictionary attributes = stage.filter->GetAttributeDictionary();
	stage.place = ORVAN_TRY(GetContentPlace(scene, stage.filter.GetObject(), user));
	// Unlike elsewhere, percentages are of the viewport of what is filtered.
	stage.place.viewport = user.place.viewport;
	stage.place.style.Apply(attributes, stage.place.viewport);
	stage.primitiveUnits = filter->GetPrimitiveUnits();
	stage.box = ORVAN_TRY(GetFilteredBox(scene, user, extent));
	const SVGUnits units = filter->GetFilterUnits();
	// By default a tenth more on each side than the box, or than the viewport.
	const Rectangle whole = units == SVGUnits::objectBoundingBox
								? stage.box
								: Rectangle{0.0, 0.0, user.place.viewport.width, user.place.viewport.height};
	const double x = whole.GetWidth() / 10.0;
	const double y = whole.GetHeight() / 10.0;
	const Rectangle absent{whole.left - x, whole.top - y, whole.right + x, whole.bottom + y};
	stage.region = ResolveRegion(attributes, units, stage.place, stage.box, absent);
	return true;
}

} // namespace

double ResolveSide(const SVGLength& length, Axis axis, SVGUnits units, const Place& place, double start,
				   double size) noexcept
{
	if (units != SVGUnits::objectBoundingBox)
		return place.Resolve(length, axis);
	const bool isFraction = length.unit == SVGLengthUnit::percent;
	return start + size * (isFraction ? length.value : place.Resolve(length, axis));
}

Rectangle ResolveRegion(const DataDictionary& attributes, SVGUnits units, const Place& place, const Rectangle& box,
						const Rectangle& absent) noexcept
{
	const auto get = [&](Key key, Axis axis, double start, double size, double otherwise)
	{
		const auto* length = attributes.Find<SVGLength>(static_cast<std::int32_t>(key));
		return length != nullptr ? ResolveSide(*length, axis, units, place, start, size) : otherwise;
	};
	const double left = get(Key::x, Axis::horizontal, box.left, box.GetWidth(), absent.left);
	const double top = get(Key::y, Axis::vertical, box.top, box.GetHeight(), absent.top);
	const double width = get(Key::width, Axis::horizontal, 0.0, box.GetWidth(), absent.GetWidth());
	const double height = get(Key::height, Axis::vertical, 0.0, box.GetHeight(), absent.GetHeight());
	const Rectangle region{left, top, left + width, top + height};
	return width > 0.0 && height > 0.0 && region.IsFinite() ? region : Rectangle();
}

Result<BaseArray<FilterStage>> GetFilterStages(Scene& scene, const Frame& user, Extent& extent) noexcept
{
	BaseArray<FilterStage> stages;
	if (user.effects.filter == nullptr)
		return stages;
	for (const SVGFilterFunction& function : *user.effects.filter)
	{
		FilterStage stage;
		stage.function = &function;
		if (function.type == SVGFilterFunctionType::reference && !ORVAN_TRY(FindFilter(scene, user, extent, stage)))
			continue;
		ORVAN_TRY(stages.Append(std::move(stage)));
	}
	return stages;
}

Matrix2d GetPictureScale(const SVGElementRef& element, const Viewport& viewport, const Rectangle& region) noexcept
{
	if (!(viewport.width > 0.0 && viewport.height > 0.0))
		return {};
	const DataDictionary attributes = element->GetAttributeDictionary();
	for (const Key key : {Key::x, Key::y, Key::width, Key::height, Key::cx, Key::cy, Key::r, Key::rx, Key::ry, Key::x1,
						  Key::y1, Key::x2, Key::y2})
	{
		const auto* length = attributes.Find<SVGLength>(static_cast<std::int32_t>(key));
		if (length != nullptr && length->unit == SVGLengthUnit::percent)
			return Scaling(region.GetWidth() / viewport.width, region.GetHeight() / viewport.height);
	}
	return {};
}

Rectangle GetFilteredBounds(const BaseArray<FilterStage>& stages, const Frame& user, const Rectangle& touched) noexcept
{
	const Matrix2d& transform = user.place.transform;
	Rectangle bounds = touched;
	for (const FilterStage& stage : stages)
	{
		const SVGFilterFunction& function = *stage.function;
		const double reach = user.Resolve(function.deviation, Axis::other) * kBlurReach * GetStretch(transform) + 1.0;
		if (function.type == SVGFilterFunctionType::reference)
			bounds = stage.region.IsEmpty() ? Rectangle() : Transform(transform, stage.region);
		else if (bounds.IsEmpty())
			continue;
		else if (function.type == SVGFilterFunctionType::blur)
			bounds = bounds.Grow(reach);
		else if (function.type == SVGFilterFunctionType::dropShadow)
		{
			const Vector2d shift = transform.ApplyToDirection(
				{user.Resolve(function.x, Axis::horizontal), user.Resolve(function.y, Axis::vertical)});
			const Rectangle shadow = Transform(Translation(shift.x, shift.y), bounds).Grow(reach);
			bounds.Include(shadow);
		}
	}
	return bounds;
}

} // namespace orvan::drawing
