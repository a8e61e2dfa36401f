// SPDX-License-Identifier: MIT
#include "chains.h"

#include "references.h"

namespace orvan::drawing
{
namespace
{

/// Links beyond these many are not followed: no document has such chains but to take time.
constexpr std::size_t kMaxLinks = 64;

} // namespace

Result<Chain> Chain::Follow(Scene& scene, ObjectBase* element, bool (*isWanted)(ObjectBase*) noexcept) noexcept
{
	Chain chain;
	while (element != nullptr && isWanted(element) && chain._links.GetCount() < kMaxLinks)
	{
		for (const Link& link : chain._links)
		{
			if (link.element == element)
			{
				scene.limits.Omit(Omission::cycle);
				return chain;
			}
		}
		ORVAN_TRY(chain._links.Append({element, Borrowed<SVGElementInterface>(element)->GetAttributeDictionary()}));
		const DataDictionary& attributes = chain._links[chain._links.GetCount() - 1].attributes;
		const auto* link = attributes.Find<String>(static_cast<std::int32_t>(SVGImportAttribute::link));
		if (link == nullptr)
			break;
		// The document keeps the element alive.
		element = ORVAN_TRY(FindElement(scene, *link)).GetObject();
	}
	return chain;
}

Matrix2d Chain::GetTransform(SVGImportAttribute key, const Place& place) const noexcept
{
	for (const Link& link : _links)
	{
		const auto* transform = link.attributes.Find<Matrix2d>(static_cast<std::int32_t>(key));
		if (transform == nullptr)
			continue;
		const auto* origin =
			link.attributes.Find<SVGLength2d>(static_cast<std::int32_t>(SVGImportAttribute::transformOrigin));
		if (origin == nullptr)
			return *transform;
		return Around({place.Resolve(origin->x, Axis::horizontal), place.Resolve(origin->y, Axis::vertical)},
					  *transform);
	}
	return {};
}

bool Chain::Has(SVGImportAttribute key) const noexcept
{
	for (const Link& link : _links)
	{
		if (link.attributes.Has(static_cast<std::int32_t>(key)))
			return true;
	}
	return false;
}

Rectangle Chain::GetArea(bool isInBox, const Place& place, const Rectangle& box) const noexcept
{
	using Key = SVGImportAttribute;
	const auto get = [&](Key key, Axis axis)
	{
		const SVGLength length = GetOr(key, SVGLength{0.0, SVGLengthUnit::number});
		return isInBox && length.unit == SVGLengthUnit::percent ? length.value : place.Resolve(length, axis);
	};
	const double x = get(Key::x, Axis::horizontal);
	const double y = get(Key::y, Axis::vertical);
	const Rectangle area{x, y, x + get(Key::width, Axis::horizontal), y + get(Key::height, Axis::vertical)};
	return isInBox ? Transform(BoxTransform(box), area) : area;
}

} // namespace orvan::drawing
