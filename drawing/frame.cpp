// SPDX-License-Identifier: MIT
#include "frame.h"

#include <utility>

namespace orvan::drawing
{
namespace
{

/// The local transform, whose percentages are those of `box`, or of the viewport where there is none.
Matrix2d ResolvePercentages(const Frame& frame, const Matrix2d& local, const Rectangle* box) noexcept
{
	constexpr std::size_t kCount = 8;
	const auto* values =
		frame.attributes.Find<BaseArray<Float>>(static_cast<std::int32_t>(SVGImportAttribute::transformPercentages));
	if (values == nullptr || values->GetCount() != kCount)
		return local;
	const BaseArray<Float>& v = *values;
	if (local.offset != Vector2d{v[6], v[7]})
		return local;
	const double width = (box != nullptr ? box->GetWidth() : frame.place.viewport.width) - v[4];
	const double height = (box != nullptr ? box->GetHeight() : frame.place.viewport.height) - v[5];
	Matrix2d resolved = local;
	resolved.offset = local.offset + Vector2d{v[0] * width + v[2] * height, v[1] * width + v[3] * height};
	return resolved;
}

/// The local transform around the point that "transform-origin" names.
Matrix2d GetTransform(const Frame& frame, const Matrix2d& given, const Rectangle* box) noexcept
{
	const Matrix2d local = ResolvePercentages(frame, given, box);
	if (local == Matrix2d())
		return local;
	const auto* origin =
		frame.attributes.Find<SVGLength2d>(static_cast<std::int32_t>(SVGImportAttribute::transformOrigin));
	if (box == nullptr)
	{
		return origin == nullptr
				   ? local
				   : Around({frame.Resolve(origin->x, Axis::horizontal), frame.Resolve(origin->y, Axis::vertical)},
							local);
	}
	const auto resolve = [&](const SVGLength& length, double side)
	{
		return length.unit == SVGLengthUnit::percent ? length.value * side : frame.Resolve(length, Axis::other);
	};
	const SVGLength2d point = origin != nullptr ? *origin : SVGLength2d{};
	return Around({box->left + resolve(point.x, box->GetWidth()), box->top + resolve(point.y, box->GetHeight())},
				  local);
}

} // namespace

Frame::Frame(ObjectBase* visited, const Place& outside, const Frame* outerFrame, Limits& limits) noexcept
	: element(visited), outer(outerFrame), depth(outerFrame != nullptr ? outerFrame->depth + 1 : 1), place(outside)
{
	if (depth > kMaxDepth)
	{
		limits.Omit(Omission::depth);
		return;
	}
	if (limits.IsOver() || (place.isByReference && !limits.Pay(kElementWork)))
		return;
	const Borrowed<SVGElementInterface> svgElement(element);
	attributes = svgElement->GetAttributeDictionary();
	place.style.Apply(attributes, place.viewport);
	effects = Effects(attributes);
	local = GetTransform(*this, svgElement->GetLocalTransform(), std::exchange(place.referenceBox, nullptr));
	if (!std::exchange(place.isTransformTaken, false))
		place.transform = place.transform * local;
	canDraw = IsInvertible(place.transform);
}

} // namespace orvan::drawing
