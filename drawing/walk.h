// SPDX-License-Identifier: MIT
/// The walk through a tree: what is visited, in which order, with what in force.
#pragma once

#include "scene.h"
#include "shapes.h"
#include "sink.h"
#include "viewbox.h"

namespace orvan::drawing
{

/// True when what stands in a viewport, or in a marker, is cut off at its edges: "overflow" says so, or nothing.
bool IsClippedToViewport(const Frame& frame) noexcept;

/// Visits elements and tells a sink about them. It follows uses, sets viewports up and bounds the depth; effects are
/// the sink's. A walk holds no state of its own, so that any number of them may be under way, one inside another.
class Walk
{
public:
	Walk(Scene& scene, Sink& sink) noexcept : _scene(scene), _sink(sink)
	{
	}

	/// Visits an element with everything below it. `outer` is the frame that it is reached from; null for the first
	/// element, which, when it is an svg element, is the outermost one.
	Result<void> DrawElement(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	/// Visits the children of `parent` in document order.
	Result<void> DrawChildren(ObjectBase* parent, const Place& place, const Frame& frame) noexcept;

private:
	/// Visits an element whose transform refers to its own box.
	Result<void> DrawInOwnBox(ObjectBase* element, SVGTransformBox reference, const Place& outside,
							  const Frame* outer) noexcept;
	/// Visits an element that is filtered, apart from what stands around it where the sink wants that.
	Result<void> DrawApart(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawByKind(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawShape(ShapeKind kind, ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawText(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawImage(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawGroup(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawSwitch(const Frame& frame, const Place& place) noexcept;
	Result<void> DrawUse(ObjectBase* element, const Place& outside, const Frame* outer) noexcept;
	Result<void> DrawTarget(const Frame& use, ObjectBase* target) noexcept;
	Result<void> DrawTargetAt(const Frame& use, ObjectBase* target, const Place& inside) noexcept;
	Result<void> DrawOutermost(ObjectBase* element, const Place& outside) noexcept;
	/// An svg element or a symbol, in a viewport given in the coordinates outside of it.
	Result<void> DrawViewport(ObjectBase* element, const SVGViewport& viewport, const Place& outside,
							  const Frame* outer) noexcept;

	Scene& _scene;
	Sink& _sink;
};

} // namespace orvan::drawing
