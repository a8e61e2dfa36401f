// SPDX-License-Identifier: MIT
/// What "filter" says about an element, followed and measured: which filter elements and functions come one after the
/// other, and which regions they work in.
#pragma once

#include "measure.h"
#include "svg_complete.h"

namespace orvan::drawing
{

/// One step of "filter".
struct FilterStage
{
	const SVGFilterFunction* function = nullptr;

	// What follows is for steps that name a filter element.

	SVGElementRef filter; ///< Null for functions.
	Place place;          ///< What holds around the primitives; its coordinates are the filtered element's.
	Rectangle box;        ///< The filtered element's bounding box in its own coordinates.
	Rectangle region;     ///< In the filtered element's coordinates; empty where nothing is drawn at all.
	SVGUnits primitiveUnits = SVGUnits::userSpaceOnUse;
};

/// The filters of the element of `user` in their order. References that lead to nothing are passed over, as browsers
/// do. `extent` is that of the element's content.
Result<BaseArray<FilterStage>> GetFilterStages(Scene& scene, const Frame& user, Extent& extent) noexcept;

/// A box around what can show of the element of `user` after its filters, when `touched` is what its content touches;
/// both in the picture's coordinates.
Rectangle GetFilteredBounds(const BaseArray<FilterStage>& stages, const Frame& user, const Rectangle& touched) noexcept;

/// A rectangle of four lengths: in fractions of `box`, or in the user's units. What `get` does not know is taken from
/// `absent`, which is a rectangle in the user's units. A side without a size makes it empty.
Rectangle ResolveRegion(const DataDictionary& attributes, SVGUnits units, const Place& place, const Rectangle& box,
						const Rectangle& absent) noexcept;

/// How much larger an element of the document becomes that goes into a filter ("feImage"): what is given in parts of
/// the viewport is fitted into the region. The corner of the region is the element's origin.
Matrix2d GetPictureScale(const SVGElementRef& element, const Viewport& viewport, const Rectangle& region) noexcept;

/// A side of such a rectangle by itself: in fractions of `size` from `start`, or in the user's units.
double ResolveSide(const SVGLength& length, Axis axis, SVGUnits units, const Place& place, double start,
				   double size) noexcept;

} // namespace orvan::drawing
