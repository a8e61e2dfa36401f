// SPDX-License-Identifier: MIT
#include "frame.h"

namespace orvan::drawing
{

Frame::Frame(ObjectBase* visited, const Place& outside, const Frame* outerFrame, Limits& limits) noexcept
	: element(visited), outer(outerFrame), depth(outerFrame != nullptr ? outerFrame->depth + 1 : 1), place(outside)
{
	if (depth > kMaxDepth)
	{
		limits.Omit(Omission::depth);
		return;
	}
	if (place.isByReference && !limits.Pay(kElementWork))
		return;
	const Borrowed<SVGElementInterface> svgElement(element);
	attributes = svgElement->GetAttributeDictionary();
	place.style.Apply(attributes, place.viewport);
	effects = Effects(attributes);
	place.transform = place.transform * svgElement->GetLocalTransform();
	canDraw = IsInvertible(place.transform);
}

} // namespace orvan::drawing
