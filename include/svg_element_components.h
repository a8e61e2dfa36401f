// SPDX-License-Identifier: MIT
/// What elements of several kinds have in common: a view box, radii, a position, a size.
///
/// Which element has which is told in `svg_elements.h`.
#pragma once

#include "orvan/object.h"
#include "svg_types.h"

namespace orvan
{

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

ORVAN_DATA_TYPE(SVGFitToViewboxRef, "orvan::SVGFitToViewboxRef", "orvan::SVGFitToViewboxRef");
ORVAN_DATA_TYPE(SVGRadiusRef, "orvan::SVGRadiusRef", "orvan::SVGRadiusRef");
ORVAN_DATA_TYPE(SVGPositionRef, "orvan::SVGPositionRef", "orvan::SVGPositionRef");
ORVAN_DATA_TYPE(SVGSizeRef, "orvan::SVGSizeRef", "orvan::SVGSizeRef");

} // namespace orvan
