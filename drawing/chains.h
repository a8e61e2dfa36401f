// SPDX-License-Identifier: MIT
/// Definitions that take what they do not say from others: gradients and patterns that name one.
#pragma once

#include "frame.h"
#include "scene.h"

namespace orvan::drawing
{

/// An element with the elements that its link leads to, one after the other, the nearest first.
class Chain
{
public:
	/// Follows links from `element` as long as `isWanted` holds for what they lead to; a link that leads back is not
	/// followed, and reported.
	static Result<Chain> Follow(Scene& scene, ObjectBase* element, bool (*isWanted)(ObjectBase*) noexcept) noexcept;

	/// The nearest element's value of an attribute, or `absent`.
	template <typename T>
	T GetOr(SVGImportAttribute key, T absent) const noexcept
	{
		for (const Link& link : _links)
		{
			if (const T* value = link.attributes.Find<T>(static_cast<std::int32_t>(key)))
				return *value;
		}
		return absent;
	}

	template <typename T>
	T GetKeyword(SVGImportAttribute key, T absent) const noexcept
	{
		return static_cast<T>(GetOr(key, static_cast<std::int32_t>(absent)));
	}

	bool Has(SVGImportAttribute key) const noexcept;

	/// The transform under `key`, around the origin that the element with the transform names. `place` is where what is
	/// defined is used.
	Matrix2d GetTransform(SVGImportAttribute key, const Place& place) const noexcept;

	/// What `x`, `y`, `width` and `height` say: fractions of `box` when `isInBox`, otherwise lengths where it is used.
	Rectangle GetArea(bool isInBox, const Place& place, const Rectangle& box) const noexcept;

	/// The nearest element that has a child with the interface `I`; null when none has.
	template <typename I>
	ObjectBase* FindParentOf() const noexcept
	{
		for (const Link& link : _links)
		{
			const Borrowed<HierarchyObjectInterface> hierarchy(link.element);
			for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
			{
				if (Borrowed<I>(child))
					return link.element;
			}
		}
		return nullptr;
	}

private:
	struct Link
	{
		ObjectBase* element;
		DataDictionary attributes;
	};

	BaseArray<Link> _links;
};

} // namespace orvan::drawing
