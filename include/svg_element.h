// SPDX-License-Identifier: MIT
/// The interface that all elements of an SVG tree share: identity, presentation, transforms.
///
/// What holds for all elements' interfaces is told in `svg_elements.h`.
#pragma once

#include "orvan/data_dictionary.h"
#include "orvan/object.h"
#include "svg_types.h"

namespace orvan
{

/// What all elements share.
class SVGElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgelement";
	static constexpr const char* kName = "orvan.SVGElementInterface";
	static constexpr int kSlotCount = 54;

	/// Sets the id. The document's id table does not follow: it keeps the ids of the file.
	ORVAN_METHOD(1, Result<void>, SetId, (const String& id), id)
	/// The id; empty when there is none.
	ORVAN_METHOD(2, String, GetId, ())
	/// Sets the number that `GetElementType` returns. The class, and what it implements, stays.
	ORVAN_METHOD(3, Result<void>, SetElementType, (SVGImportElementKind type), type)
	/// The kind of element; that of its class unless it was set.
	ORVAN_METHOD(4, SVGImportElementKind, GetElementType, ())

	/// The attributes. The result shares the element's content; writing to it does not change the element.
	ORVAN_METHOD(5, DataDictionary, GetAttributeDictionary, ())
	/// Stores a value under a key. Fails when the value is empty.
	ORVAN_METHOD(6, Result<void>, SetAttribute, (SVGImportAttribute key, const Data& value), key, value)
	/// True when the attribute dictionary has a value under the key: one of the file, or one that was set.
	ORVAN_METHOD(7, bool, HasAttribute, (SVGImportAttribute key), key)

	/// Sets the transform from the element's to its parent's coordinates, and marks the world transforms of the element
	/// and of everything below as dirty. Does not change translation, rotation, pivot and scale. Fails also as
	/// `MarkTransformDirty` does; the transform is set then nevertheless. So do the seven setters further down.
	ORVAN_METHOD(8, Result<void>, SetLocalTransform, (const Matrix2d& transform), transform)
	/// The transform from the element's to its parent's coordinates; initially the identity.
	ORVAN_METHOD(9, Matrix2d, GetLocalTransform, ())
	/// The transform from the element's to the root's coordinates: the product of the local transforms from the root
	/// down. Cached until something above changes. Writes the cache, so it must not overlap other use of the tree.
	ORVAN_METHOD(10, Result<Matrix2d>, GetWorldTransform, ())

	/// Sets whether the element is drawn; what is below it may say otherwise for itself.
	ORVAN_METHOD(11, Result<void>, SetVisibility, (SVGVisibility visibility), visibility)
	/// Initially visible.
	ORVAN_METHOD(12, SVGVisibility, GetVisibility, ())
	/// Sets whether the element and everything below it is drawn at all.
	ORVAN_METHOD(13, Result<void>, SetDisplay, (SVGDisplay display), display)
	/// Initially inherit (nothing was said).
	ORVAN_METHOD(14, SVGDisplay, GetDisplay, ())
	/// Sets the opacity, clamped to 0 … 1. NaN is an illegal argument, as for the other opacities.
	ORVAN_METHOD(15, Result<void>, SetOpacity, (Float opacity), opacity)
	/// Initially 1. A file's opacity is kept as written and may lie outside of 0 … 1; renderers clamp.
	ORVAN_METHOD(16, Float, GetOpacity, ())

	/// Sets what fills the element: nothing, a colour or a paint server.
	ORVAN_METHOD(17, Result<void>, SetFill, (const SVGPaint& fill), fill)
	/// Initially black.
	ORVAN_METHOD(18, SVGPaint, GetFill, ())
	/// Sets which parts of a path with crossings or holes are inside.
	ORVAN_METHOD(19, Result<void>, SetFillRule, (SVGFillRule rule), rule)
	/// Initially nonzero.
	ORVAN_METHOD(20, SVGFillRule, GetFillRule, ())
	/// Sets the opacity of the fill, clamped to 0 … 1.
	ORVAN_METHOD(21, Result<void>, SetFillOpacity, (Float opacity), opacity)
	/// Initially 1; a file's value is kept as written.
	ORVAN_METHOD(22, Float, GetFillOpacity, ())

	/// Sets what the outline is drawn with: nothing, a colour or a paint server.
	ORVAN_METHOD(23, Result<void>, SetStroke, (const SVGPaint& stroke), stroke)
	/// Initially none.
	ORVAN_METHOD(24, SVGPaint, GetStroke, ())
	/// Sets the opacity of the stroke, clamped to 0 … 1.
	ORVAN_METHOD(25, Result<void>, SetStrokeOpacity, (Float opacity), opacity)
	/// Initially 1; a file's value is kept as written.
	ORVAN_METHOD(26, Float, GetStrokeOpacity, ())
	/// Sets the width of the outline, in the unit given.
	ORVAN_METHOD(27, Result<void>, SetStrokeWidth, (const SVGLength& width), width)
	/// Initially 1 (user unit).
	ORVAN_METHOD(28, SVGLength, GetStrokeWidth, ())
	/// Sets how open ends of an outline look.
	ORVAN_METHOD(29, Result<void>, SetStrokeLineCap, (SVGLineCap cap), cap)
	/// Initially butt.
	ORVAN_METHOD(30, SVGLineCap, GetStrokeLineCap, ())
	/// Sets how corners of an outline look.
	ORVAN_METHOD(31, Result<void>, SetStrokeLineJoin, (SVGLineJoin join), join)
	/// Initially miter.
	ORVAN_METHOD(32, SVGLineJoin, GetStrokeLineJoin, ())
	/// Sets how many times the stroke's width a mitred corner may be long before it is cut off.
	ORVAN_METHOD(33, Result<void>, SetStrokeMiterLimit, (Float limit), limit)
	/// Initially 4. Not clamped: SVG calls limits below 1 an error.
	ORVAN_METHOD(34, Float, GetStrokeMiterLimit, ())
	/// Sets the lengths of dashes and gaps; an empty array draws a solid line.
	ORVAN_METHOD(35, Result<void>, SetStrokeDashArray, (const BaseArray<SVGLength>& dashes), dashes)
	/// Initially empty.
	ORVAN_METHOD(36, Result<BaseArray<SVGLength>>, GetStrokeDashArray, ())
	/// Sets how far into the dashes an outline begins.
	ORVAN_METHOD(37, Result<void>, SetStrokeDashOffset, (const SVGLength& offset), offset)
	/// Initially 0 (user units).
	ORVAN_METHOD(38, SVGLength, GetStrokeDashOffset, ())

	/// Marks the cached world transforms of the element and of everything below as out of date. When an element of
	/// another module fails to mark itself, all others are marked, and its error is the result.
	ORVAN_METHOD(39, Result<void>, MarkTransformDirty, ())
	/// True when the world transform is not cached: before it is first asked for, and after a change above.
	ORVAN_METHOD(40, bool, IsTransformDirty, ())

	// Translation, rotation, pivot and scale. Each of the seven setters overwrites the local transform with
	// T(translation) · P(pivot) · R(rotation) · S(scale) · P(-pivot); the getters return the fields as they were set.
	// Rotation is in radians, from the x axis towards the y axis.

	/// Sets the translation, in units of the parent.
	ORVAN_METHOD(41, Result<void>, SetTranslation, (const Vector2d& translation), translation)
	/// Sets the rotation about the pivot.
	ORVAN_METHOD(42, Result<void>, SetRotation, (Float radians), radians)
	/// Sets the point that rotation and scale leave where it is, in units of the element. It has no getter.
	ORVAN_METHOD(43, Result<void>, SetRotationPivot, (const Vector2d& pivot), pivot)
	/// Sets the factors along the element's axes.
	ORVAN_METHOD(44, Result<void>, SetScale, (const Vector2d& scale), scale)
	/// Initially (0, 0).
	ORVAN_METHOD(45, Vector2d, GetTranslation, ())
	/// Initially 0.
	ORVAN_METHOD(46, Float, GetRotation, ())
	/// Initially (1, 1).
	ORVAN_METHOD(47, Vector2d, GetScale, ())
	/// Adds to the translation.
	ORVAN_METHOD(48, Result<void>, AddTranslation, (const Vector2d& translation), translation)
	/// Adds to the rotation, without bringing it back into one turn.
	ORVAN_METHOD(49, Result<void>, AddRotation, (Float radians), radians)
	/// Adds to the scale component by component; it does not multiply.
	ORVAN_METHOD(50, Result<void>, AddScale, (const Vector2d& scale), scale)

	/// Sets the id (without "#") of the mask element; the empty id is "none".
	ORVAN_METHOD(51, Result<void>, SetMask, (const String& id), id)
	/// Initially empty: no mask.
	ORVAN_METHOD(52, String, GetMask, ())
	/// Sets the id (without "#") of the clip path element; the empty id is "none".
	ORVAN_METHOD(53, Result<void>, SetClipPath, (const String& id), id)
	/// Initially empty: no clip path.
	ORVAN_METHOD(54, String, GetClipPath, ())
};
using SVGElementRef = Ref<SVGElementInterface>;
/// The class of plain elements, which are of no kind (`unknown`). No import makes them.
inline constexpr const char* kSVGElementClass = "net.orvan.image.class.svgelement";

ORVAN_DATA_TYPE(SVGElementRef, "orvan::SVGElementRef", "orvan::SVGElementRef");

} // namespace orvan
