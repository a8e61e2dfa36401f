// SPDX-License-Identifier: MIT
/// The interfaces of the elements of an SVG tree.
///
/// Every element implements `SVGElementInterface` (identity, presentation, transforms) and the host's
/// `HierarchyObjectInterface` (parent and children), the interface of its own kind, and the component interfaces that
/// make sense for it. `Cast` leads from one to another:
///
///     SVGElementRef element = ORVAN_TRY(document->GetElementById(id));
///     if (SVGPathElementRef path = Cast<SVGPathElementInterface>(element))
///         Draw(ORVAN_TRY(path->GetPath()));
///
/// | element | component interfaces |
/// |---|---|
/// | svg | fit-to-viewbox, position, size |
/// | symbol | fit-to-viewbox |
/// | use | position, size |
/// | rect | position, size, radius |
/// | circle (and ellipse) | position (the centre), radius |
/// | text | position |
/// | mask | position, size |
///
/// Beside the interface of each kind stands the id of its class, by which an element is made:
///
///     SVGElementRef rect = ORVAN_TRY(CreateObject<SVGElementInterface>(kSVGRectElementClass));
///
/// Properties stand in the element's attribute dictionary under the numbers of `SVGImportAttribute`; components,
/// setters and the importer all use the same entries, so a value is the same whichever way it is reached. A getter of
/// an absent property returns SVG's initial value; `HasAttribute` tells absent from set. Nothing is inherited here:
/// that is the renderer's business.
///
/// `CloneObject` copies an element with its id, its kind and all that was set. The copy shares the attributes until one
/// of the two writes. It stands where any new element stands: in no tree, without children, in no document's id table,
/// with a dirty world transform.
///
/// Setters fail for want of memory only, unless they say otherwise, and then change nothing. Elements do no locking.
/// Reading one element from several threads is safe, except that `GetWorldTransform` writes a cache.
#pragma once

#include "orvan/data_dictionary.h"
#include "orvan/hierarchy.h"
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

// Components ---------------------------------------------------------------------------------------------------------

/// Elements that fit their content into a viewport: svg and symbol.
class SVGFitToViewboxInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgfittoviewbox";
	static constexpr const char* kName = "orvan.SVGFitToViewboxInterface";
	static constexpr int kSlotCount = 3;

	/// Sets the view box as it stands, its default flag included.
	ORVAN_METHOD(1, Result<void>, SetViewbox, (const SVGViewbox& viewbox), viewbox)
	/// The view box; a default one (`isDefault`) when none was given.
	ORVAN_METHOD(2, SVGViewbox, GetViewbox, ())
	/// How the view box is fitted; xMidYMid meet when nothing was said. Set it with `SetAttribute`.
	ORVAN_METHOD(3, SVGPreserveAspectRatio, GetPreserveAspectRatio, ())
};
using SVGFitToViewboxRef = Ref<SVGFitToViewboxInterface>;

/// Elements with radii: circles, ellipses and rounded rectangles.
class SVGRadiusInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgradius";
	static constexpr const char* kName = "orvan.SVGRadiusInterface";
	static constexpr int kSlotCount = 6;

	/// Sets the horizontal radius ("rx").
	ORVAN_METHOD(1, Result<void>, SetRadiusX, (const SVGLength& radius), radius)
	/// The horizontal radius. When absent: of a circle its radius, of a rectangle its vertical radius; else 0 px.
	ORVAN_METHOD(2, SVGLength, GetRadiusX, ())
	/// Sets the vertical radius ("ry").
	ORVAN_METHOD(3, Result<void>, SetRadiusY, (const SVGLength& radius), radius)
	/// The vertical radius. When absent: of a circle its radius, of a rectangle its horizontal radius; else 0 px.
	ORVAN_METHOD(4, SVGLength, GetRadiusY, ())
	/// Sets the radius ("r") of a circle. Of a rectangle it sets both radii too.
	ORVAN_METHOD(5, Result<void>, SetRadius, (const SVGLength& radius), radius)
	/// What `SetRadius` or the file's "r" said; 0 px when absent, as for an ellipse.
	ORVAN_METHOD(6, SVGLength, GetRadius, ())
};
using SVGRadiusRef = Ref<SVGRadiusInterface>;

/// Elements with a position: the upper left corner, or the centre of a circle. Absent coordinates are 0 px.
class SVGPositionInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgposition";
	static constexpr const char* kName = "orvan.SVGPositionInterface";
	static constexpr int kSlotCount = 6;

	/// Sets the horizontal coordinate ("x", "cx" of a circle). The length keeps its unit, as everywhere.
	ORVAN_METHOD(1, Result<void>, SetX, (const SVGLength& x), x)
	/// The horizontal coordinate; 0 px when absent.
	ORVAN_METHOD(2, SVGLength, GetX, ())
	/// Sets the vertical coordinate ("y", "cy" of a circle).
	ORVAN_METHOD(3, Result<void>, SetY, (const SVGLength& y), y)
	/// The vertical coordinate; 0 px when absent.
	ORVAN_METHOD(4, SVGLength, GetY, ())
	/// Sets both coordinates or, when it fails, none.
	ORVAN_METHOD(5, Result<void>, SetPosition, (const SVGLength2d& position), position)
	/// Both coordinates.
	ORVAN_METHOD(6, SVGLength2d, GetPosition, ())
};
using SVGPositionRef = Ref<SVGPositionInterface>;

/// Elements with a width and a height. Absent ones are 0 px; for an svg element see `SVGSVGElementInterface`.
class SVGSizeInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgsize";
	static constexpr const char* kName = "orvan.SVGSizeInterface";
	static constexpr int kSlotCount = 6;

	/// Sets the width ("width"). Its sign is not looked at.
	ORVAN_METHOD(1, Result<void>, SetWidth, (const SVGLength& width), width)
	/// The width; 0 px when absent.
	ORVAN_METHOD(2, SVGLength, GetWidth, ())
	/// Sets the height ("height"). Its sign is not looked at.
	ORVAN_METHOD(3, Result<void>, SetHeight, (const SVGLength& height), height)
	/// The height; 0 px when absent.
	ORVAN_METHOD(4, SVGLength, GetHeight, ())
	/// Sets both or, when it fails, none.
	ORVAN_METHOD(5, Result<void>, SetSize, (const SVGLength2d& size), size)
	/// Width and height.
	ORVAN_METHOD(6, SVGLength2d, GetSize, ())
};
using SVGSizeRef = Ref<SVGSizeInterface>;

// Elements -----------------------------------------------------------------------------------------------------------

/// The svg element, outermost or nested.
class SVGSVGElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgsvgelement";
	static constexpr const char* kName = "orvan.SVGSVGElementInterface";
	static constexpr int kSlotCount = 2;

	/// Sets "x", "y", "width" and "height".
	ORVAN_METHOD(1, Result<void>, SetViewport, (const SVGViewport& viewport), viewport)
	/// Put together from "x", "y", "width" and "height"; absent ones as in a default viewport.
	ORVAN_METHOD(2, SVGViewport, GetViewport, ())
};
using SVGSVGElementRef = Ref<SVGSVGElementInterface>;
inline constexpr const char* kSVGSVGElementClass = "net.orvan.image.class.svgsvgelement";

/// An element that stands for another one.
class SVGUseElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svguseelement";
	static constexpr const char* kName = "orvan.SVGUseElementInterface";
	static constexpr int kSlotCount = 4;

	/// Sets the link: the id of an element of the same document (without "#"), or a whole IRI. The link is dirty then.
	ORVAN_METHOD(1, Result<void>, SetLink, (const String& link), link)
	/// The link's text; empty when there is none.
	ORVAN_METHOD(2, String, GetLink, ())
	/// True when a link was set and no element that is still alive was given for it.
	ORVAN_METHOD(3, bool, IsLinkDirty, ())
	/// Says which element the link stands for. The element is not kept alive. Fails when it is empty, is the use
	/// element itself or contains it.
	ORVAN_METHOD(4, Result<void>, SetShadowRoot, (const SVGElementRef& element), element)
};
using SVGUseElementRef = Ref<SVGUseElementInterface>;
inline constexpr const char* kSVGUseElementClass = "net.orvan.image.class.svguseelement";

/// Definitions: nothing in it is drawn in place.
class SVGDefsElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdefselement";
	static constexpr const char* kName = "orvan.SVGDefsElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGDefsElementRef = Ref<SVGDefsElementInterface>;
inline constexpr const char* kSVGDefsElementClass = "net.orvan.image.class.svgdefselement";

/// A template for use elements: not drawn in place.
class SVGSymbolElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgsymbolelement";
	static constexpr const char* kName = "orvan.SVGSymbolElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGSymbolElementRef = Ref<SVGSymbolElementInterface>;
inline constexpr const char* kSVGSymbolElementClass = "net.orvan.image.class.svgsymbolelement";

/// A group, or an element of an unknown tag.
class SVGGroupElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svggroupelement";
	static constexpr const char* kName = "orvan.SVGGroupElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGGroupElementRef = Ref<SVGGroupElementInterface>;
inline constexpr const char* kSVGGroupElementClass = "net.orvan.image.class.svggroupelement";

/// A linear gradient.
class SVGLinearGradientElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svglineargradientelement";
	static constexpr const char* kName = "orvan.SVGLinearGradientElementInterface";
	static constexpr int kSlotCount = 1;

	/// Put together from the attributes and the stop children as they are now. Percentages count as fractions; units of
	/// coordinates are not converted. Stop offsets are clamped to 0 … 1 and never run backwards.
	ORVAN_METHOD(1, Result<SVGLinearGradient>, GetLinearGradient, ())
};
using SVGLinearGradientElementRef = Ref<SVGLinearGradientElementInterface>;
inline constexpr const char* kSVGLinearGradientElementClass = "net.orvan.image.class.svglineargradientelement";

/// A radial gradient.
class SVGRadialGradientElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgradialgradientelement";
	static constexpr const char* kName = "orvan.SVGRadialGradientElementInterface";
	static constexpr int kSlotCount = 1;

	/// Put together like a linear gradient; an absent focus coordinate follows the centre.
	ORVAN_METHOD(1, Result<SVGRadialGradient>, GetRadialGradient, ())
};
using SVGRadialGradientElementRef = Ref<SVGRadialGradientElementInterface>;
inline constexpr const char* kSVGRadialGradientElementClass = "net.orvan.image.class.svgradialgradientelement";

/// A stop of a gradient.
class SVGStopElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgstopelement";
	static constexpr const char* kName = "orvan.SVGStopElementInterface";
	static constexpr int kSlotCount = 3;

	/// The position along the gradient, clamped to 0 … 1; 0 when absent.
	ORVAN_METHOD(1, Float, GetOffset, ())
	/// Black when absent.
	ORVAN_METHOD(2, Color, GetColor, ())
	/// The stop's own opacity ("stop-opacity") as it stands; 1 when absent.
	ORVAN_METHOD(3, Float, GetOpacity, ())
};
using SVGStopElementRef = Ref<SVGStopElementInterface>;
inline constexpr const char* kSVGStopElementClass = "net.orvan.image.class.svgstopelement";

/// A path, polygon or polyline.
class SVGPathElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgpathelement";
	static constexpr const char* kName = "orvan.SVGPathElementInterface";
	static constexpr int kSlotCount = 6;

	/// The commands from the first `MoveTo` on, in an array of the caller's.
	ORVAN_METHOD(1, Result<BaseArray<SVGPathCommand>>, GetPath, ())
	/// Starts a subpath. This and the next three append a command; coordinates are absolute, in user units.
	ORVAN_METHOD(2, Result<void>, MoveTo, (const Vector2d& point), point)
	/// A straight line from the current point.
	ORVAN_METHOD(3, Result<void>, LineTo, (const Vector2d& point), point)
	/// A cubic Bézier curve from the current point.
	ORVAN_METHOD(4, Result<void>, CubicBezierTo,
				 (const Vector2d& control1, const Vector2d& control2, const Vector2d& point), control1, control2, point)
	/// A straight line back to where the subpath began, joined to its start.
	ORVAN_METHOD(5, Result<void>, CloseSubpath, ())
	/// Ends a sequence of commands: gives unused memory back. More commands may follow.
	ORVAN_METHOD(6, Result<void>, PathExit, ())
};
using SVGPathElementRef = Ref<SVGPathElementInterface>;
inline constexpr const char* kSVGPathElementClass = "net.orvan.image.class.svgpathelement";

/// A rectangle; see its position, size and radius interfaces.
class SVGRectElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgrectelement";
	static constexpr const char* kName = "orvan.SVGRectElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGRectElementRef = Ref<SVGRectElementInterface>;
inline constexpr const char* kSVGRectElementClass = "net.orvan.image.class.svgrectelement";

/// A circle or ellipse; see its position and radius interfaces.
class SVGCircleElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgcircleelement";
	static constexpr const char* kName = "orvan.SVGCircleElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGCircleElementRef = Ref<SVGCircleElementInterface>;
inline constexpr const char* kSVGCircleElementClass = "net.orvan.image.class.svgcircleelement";

/// A line between two points. Absent coordinates are 0 px.
class SVGLineElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svglineelement";
	static constexpr const char* kName = "orvan.SVGLineElementInterface";
	static constexpr int kSlotCount = 12;

	/// Sets the horizontal coordinate of the start ("x1").
	ORVAN_METHOD(1, Result<void>, SetX1, (const SVGLength& x1), x1)
	/// Sets the horizontal coordinate of the end ("x2").
	ORVAN_METHOD(2, Result<void>, SetX2, (const SVGLength& x2), x2)
	/// Sets the vertical coordinate of the start ("y1").
	ORVAN_METHOD(3, Result<void>, SetY1, (const SVGLength& y1), y1)
	/// Sets the vertical coordinate of the end ("y2").
	ORVAN_METHOD(4, Result<void>, SetY2, (const SVGLength& y2), y2)
	/// The horizontal coordinate of the start.
	ORVAN_METHOD(5, SVGLength, GetX1, ())
	/// The horizontal coordinate of the end.
	ORVAN_METHOD(6, SVGLength, GetX2, ())
	/// The vertical coordinate of the start.
	ORVAN_METHOD(7, SVGLength, GetY1, ())
	/// The vertical coordinate of the end.
	ORVAN_METHOD(8, SVGLength, GetY2, ())
	/// Sets both coordinates of the start or, when it fails, none.
	ORVAN_METHOD(9, Result<void>, SetPt1, (const SVGLength2d& point), point)
	/// Sets both coordinates of the end or, when it fails, none.
	ORVAN_METHOD(10, Result<void>, SetPt2, (const SVGLength2d& point), point)
	/// The start.
	ORVAN_METHOD(11, SVGLength2d, GetPt1, ())
	/// The end.
	ORVAN_METHOD(12, SVGLength2d, GetPt2, ())
};
using SVGLineElementRef = Ref<SVGLineElementInterface>;
inline constexpr const char* kSVGLineElementClass = "net.orvan.image.class.svglineelement";

/// A run of text.
class SVGTextElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgtextelement";
	static constexpr const char* kName = "orvan.SVGTextElementInterface";
	static constexpr int kSlotCount = 10;

	/// Sets the characters, which are kept as they are.
	ORVAN_METHOD(1, Result<void>, SetText, (const String& text), text)
	/// The characters as the file has them, white space included.
	ORVAN_METHOD(2, String, GetText, ())
	/// Sets the size of the font.
	ORVAN_METHOD(3, Result<void>, SetFontSize, (const SVGLength& size), size)
	/// Initially 16 px.
	ORVAN_METHOD(4, SVGLength, GetFontSize, ())
	/// Sets the font family, or a list of families separated by commas.
	ORVAN_METHOD(5, Result<void>, SetFont, (const String& family), family)
	/// Initially empty: the renderer's choice.
	ORVAN_METHOD(6, String, GetFont, ())
	/// Sets the slant of the font.
	ORVAN_METHOD(7, Result<void>, SetFontStyle, (SVGFontStyle style), style)
	/// Initially normal.
	ORVAN_METHOD(8, SVGFontStyle, GetFontStyle, ())
	/// Sets the weight of the font.
	ORVAN_METHOD(9, Result<void>, SetFontWeight, (SVGFontWeight weight), weight)
	/// Initially normal.
	ORVAN_METHOD(10, SVGFontWeight, GetFontWeight, ())
};
using SVGTextElementRef = Ref<SVGTextElementInterface>;
inline constexpr const char* kSVGTextElementClass = "net.orvan.image.class.svgtextelement";

/// A mask: not drawn in place, but used by elements that name it.
class SVGMaskElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgmaskelement";
	static constexpr const char* kName = "orvan.SVGMaskElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGMaskElementRef = Ref<SVGMaskElementInterface>;
inline constexpr const char* kSVGMaskElementClass = "net.orvan.image.class.svgmaskelement";

/// A clip path: not drawn in place, but used by elements that name it.
class SVGClipPathElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgclippathelement";
	static constexpr const char* kName = "orvan.SVGClipPathElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGClipPathElementRef = Ref<SVGClipPathElementInterface>;
inline constexpr const char* kSVGClipPathElementClass = "net.orvan.image.class.svgclippathelement";

ORVAN_DATA_TYPE(SVGElementRef, "orvan::SVGElementRef", "orvan::SVGElementRef");
ORVAN_DATA_TYPE(SVGFitToViewboxRef, "orvan::SVGFitToViewboxRef", "orvan::SVGFitToViewboxRef");
ORVAN_DATA_TYPE(SVGRadiusRef, "orvan::SVGRadiusRef", "orvan::SVGRadiusRef");
ORVAN_DATA_TYPE(SVGPositionRef, "orvan::SVGPositionRef", "orvan::SVGPositionRef");
ORVAN_DATA_TYPE(SVGSizeRef, "orvan::SVGSizeRef", "orvan::SVGSizeRef");
ORVAN_DATA_TYPE(SVGSVGElementRef, "orvan::SVGSVGElementRef", "orvan::SVGSVGElementRef");
ORVAN_DATA_TYPE(SVGUseElementRef, "orvan::SVGUseElementRef", "orvan::SVGUseElementRef");
ORVAN_DATA_TYPE(SVGDefsElementRef, "orvan::SVGDefsElementRef", "orvan::SVGDefsElementRef");
ORVAN_DATA_TYPE(SVGSymbolElementRef, "orvan::SVGSymbolElementRef", "orvan::SVGSymbolElementRef");
ORVAN_DATA_TYPE(SVGGroupElementRef, "orvan::SVGGroupElementRef", "orvan::SVGGroupElementRef");
ORVAN_DATA_TYPE(SVGLinearGradientElementRef, "orvan::SVGLinearGradientElementRef",
				"orvan::SVGLinearGradientElementRef");
ORVAN_DATA_TYPE(SVGRadialGradientElementRef, "orvan::SVGRadialGradientElementRef",
				"orvan::SVGRadialGradientElementRef");
ORVAN_DATA_TYPE(SVGStopElementRef, "orvan::SVGStopElementRef", "orvan::SVGStopElementRef");
ORVAN_DATA_TYPE(SVGPathElementRef, "orvan::SVGPathElementRef", "orvan::SVGPathElementRef");
ORVAN_DATA_TYPE(SVGRectElementRef, "orvan::SVGRectElementRef", "orvan::SVGRectElementRef");
ORVAN_DATA_TYPE(SVGCircleElementRef, "orvan::SVGCircleElementRef", "orvan::SVGCircleElementRef");
ORVAN_DATA_TYPE(SVGLineElementRef, "orvan::SVGLineElementRef", "orvan::SVGLineElementRef");
ORVAN_DATA_TYPE(SVGTextElementRef, "orvan::SVGTextElementRef", "orvan::SVGTextElementRef");
ORVAN_DATA_TYPE(SVGMaskElementRef, "orvan::SVGMaskElementRef", "orvan::SVGMaskElementRef");
ORVAN_DATA_TYPE(SVGClipPathElementRef, "orvan::SVGClipPathElementRef", "orvan::SVGClipPathElementRef");

} // namespace orvan
