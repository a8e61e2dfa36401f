// SPDX-License-Identifier: MIT
#include "frame.h"

namespace orvan::drawing
{
namespace
{

/// The local transform around the point that "transform-origin" names.
Matrix2d GetTransform(const Frame& frame, const Matrix2d& local) noexcept
{
	const auto* origin =
		frame.attributes.Find<SVGLength2d>(static_cast<std::int32_t>(SVGImportAttribute::transformOrigin));
	if (origin == nullptr || local == Matrix2d())
		return local;
	const double x = frame.Resolve(origin->x, Axis::horizontal);
	const double y = frame.Resolve(origin->y, Axis::vertical);
	return Translation(x, y) * local * Translation(-x, -y);
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
	place.transform = place.transform * GetTransform(*this, svgElement->GetLocalTransform());
	canDraw = IsInvertible(place.transform);
}

} // namespace orvan::drawing
