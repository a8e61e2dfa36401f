// SPDX-License-Identifier: MIT
/// The interfaces of the elements of an SVG tree. What they all share is in `svg_element.h`, what several have in
/// common in `svg_element_components.h`; this header brings both.
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

#include "orvan/hierarchy.h"
#include "orvan/object.h"
#include "svg_element.h"
#include "svg_element_components.h"
#include "svg_types.h"

namespace orvan
{

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
