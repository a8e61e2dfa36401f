// SPDX-License-Identifier: MIT
/// What is in force around and in an element while it is visited.
#pragma once

#include "effects.h"
#include "geometry.h"
#include "lengths.h"
#include "limits.h"
#include "outline.h"
#include "style.h"

namespace orvan::drawing
{

/// What holds at one place of the tree. Handed on by value: a change is in force for what it is handed to and no
/// longer.
struct ContextPaints;
struct Frame;

struct Place
{
	Matrix2d transform; ///< From the coordinates in force to those of the picture.
	Viewport viewport;
	Style style;
	bool isByReference = false; ///< The place was reached by a use, a mask or the like: work there is paid for.
	/// What the origin of the next element's transform refers to, in that element's coordinates; null for the viewport.
	const Rectangle* referenceBox = nullptr;
	const ContextPaints* context = nullptr; ///< What context-fill and context-stroke stand for; null for nothing.
	bool isTransformTaken = false;          ///< The next element's own transform is no part of its coordinates.

	double Resolve(const SVGLength& length, Axis axis) const noexcept
	{
		return ToUserUnits(length, axis, viewport, style);
	}
};

/// The box of something, found out when it is asked for.
class LazyBox
{
public:
	LazyBox(const Outline& outline) noexcept : _outline(&outline)
	{
	}

	LazyBox(const Rectangle& rectangle) noexcept : _rectangle(&rectangle)
	{
	}

	/// A box that `measure` finds out.
	LazyBox(void* measured, Rectangle (*measure)(void*) noexcept) noexcept : _measured(measured), _measure(measure)
	{
	}

	Rectangle Get() const noexcept
	{
		if (_measure != nullptr)
			return _measure(_measured);
		return _outline != nullptr ? _outline->GetBounds() : *_rectangle;
	}

private:
	const Outline* _outline = nullptr;
	const Rectangle* _rectangle = nullptr;
	void* _measured = nullptr;
	Rectangle (*_measure)(void*) noexcept = nullptr;
};

/// The element whose paints context-fill and context-stroke stand for, where it stands.
struct ContextPaints
{
	const Frame& frame;
	LazyBox box;
};

/// An element being visited. Frames stand on the stack and form a chain from the element outwards, references followed:
/// that is how references in circles are found.
struct Frame
{
	/// Enters an element from `outside`: its properties and its transform are in force then. `outer` is the frame that
	/// the element is reached from, null for the first.
	Frame(ObjectBase* visited, const Place& outside, const Frame* outerFrame, Limits& limits) noexcept;

	Frame(const Frame&) = delete;

	/// True when the element is this one's or stands around it, references followed.
	bool IsWithin(const ObjectBase* other) const noexcept
	{
		for (const Frame* frame = this; frame != nullptr; frame = frame->outer)
		{
			if (frame->element == other)
				return true;
		}
		return false;
	}

	/// What the element itself says about an attribute, or `absent`.
	template <typename T>
	T GetOr(SVGImportAttribute key, T absent) const noexcept
	{
		return attributes.GetOr(static_cast<std::int32_t>(key), absent);
	}

	template <typename T>
	T GetKeyword(SVGImportAttribute key, T absent) const noexcept
	{
		return static_cast<T>(GetOr(key, static_cast<std::int32_t>(absent)));
	}

	/// True when the element itself says something about an attribute.
	bool Has(SVGImportAttribute key) const noexcept
	{
		return attributes.Has(static_cast<std::int32_t>(key));
	}

	double Resolve(const SVGLength& length, Axis axis) const noexcept
	{
		return place.Resolve(length, axis);
	}

	ObjectBase* element;
	const Frame* outer;
	int depth;
	Place place; ///< In the element: its own transform and properties are in force.
	DataDictionary attributes;
	Effects effects;
	/// The element's own transform, around its origin, and, behind it, that of what stands in it: by a view box, or by
	/// the position of a use. `place` has both in it.
	Matrix2d local;
	Matrix2d inner;
	/// False when the element is out of bounds in some way, or flattened to nothing by its transform.
	bool canDraw = false;
};

} // namespace orvan::drawing
