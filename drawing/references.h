// SPDX-License-Identifier: MIT
/// Following what references name.
#pragma once

#include "frame.h"
#include "scene.h"

namespace orvan::drawing
{

/// The element with this id, or null: a reference that leads nowhere is no error. An id that is not found as it is
/// written may have characters that stand for others ("%20").
Result<SVGElementRef> FindElement(const SVGDocumentRef& document, const String& id) noexcept;
/// The same for a reference that a walk follows; the scene takes down where it leads.
Result<SVGElementRef> FindElement(Scene& scene, const String& id) noexcept;

/// The element that an effect of `frame` names, when it is an `I`; null for no reference (`id` null), for one that
/// leads to nothing, and, with a report, for one that leads back to where it comes from.
template <typename I>
Result<SVGElementRef> FindEffect(Scene& scene, const String* id, const Frame& frame) noexcept
{
	if (id == nullptr)
		return SVGElementRef();
	SVGElementRef found = ORVAN_TRY(FindElement(scene, *id));
	if (!Borrowed<I>(found))
		return SVGElementRef();
	if (frame.IsWithin(found.GetObject()))
	{
		scene.limits.Omit(Omission::cycle);
		return SVGElementRef();
	}
	return found;
}

/// The masks that `effects` and the attributes of `frame` name, the upper first. A reference that leads to nothing, or
/// back to where it comes from, counts as none.
Result<BaseArray<SVGElementRef>> FindMasks(Scene& scene, const Effects& effects, const Frame& frame) noexcept;

/// The viewport that percentages of an element refer to where it stands in the document, whatever it is drawn for: that
/// of the nearest svg element around it.
Result<Viewport> GetViewportAround(const Scene& scene, ObjectBase* element) noexcept;

/// What holds around content that stands elsewhere in the document and is drawn for `user`: the user's coordinates, and
/// the viewport and the properties that are inherited where the content stands.
inline Result<Place> GetContentPlace(const Scene& scene, ObjectBase* content, const Frame& user) noexcept
{
	Place place = user.place;
	place.viewport = ORVAN_TRY(GetViewportAround(scene, content));
	place.style = ORVAN_TRY(GetInheritedStyle(SVGElementRef::From(content), place.viewport, scene.initialStyle));
	place.isByReference = true;
	place.context = nullptr;
	return place;
}

} // namespace orvan::drawing
