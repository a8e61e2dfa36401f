// SPDX-License-Identifier: MIT
/// The interfaces of the elements that only the complete import makes: patterns, markers, images, text in parts,
/// filters.
///
/// As for all elements, `SVGElementInterface` and `HierarchyObjectInterface` come first, properties stand in the
/// attribute dictionary, and a getter of an absent one returns SVG's initial value. Setters fail for want of memory
/// only, unless they say otherwise, and then change nothing. `GetElementType` tells the kinds apart that share an
/// interface.
///
/// | element | interfaces beside the element interface |
/// |---|---|
/// | pattern | pattern, link, fit-to-viewbox, position, size |
/// | marker | marker, fit-to-viewbox |
/// | image | image, link, position, size |
/// | switch | switch, group |
/// | a | anchor, group, text content, link |
/// | tspan | text content |
/// | textPath | text path, text content, link |
/// | text | text content, beside those that it always had |
/// | filter | filter, link, position, size |
/// | a filter primitive | filter primitive, position, size; feImage also link |
/// | light sources, transfer functions, feMergeNode | filter part |
/// | title, desc, style, metadata | description |
/// | foreignObject | foreign object, position, size |
/// | characters of a text | text run |
/// | linearGradient, radialGradient | link, beside those that they always had |
#pragma once

#include "svg_elements.h"

namespace orvan
{

// The classes, for `CreateObject`. ------------------------------------------------------------------------------------

inline constexpr const char* kSVGPatternElementClass = "net.orvan.image.class.svgpatternelement";
inline constexpr const char* kSVGMarkerElementClass = "net.orvan.image.class.svgmarkerelement";
inline constexpr const char* kSVGImageElementClass = "net.orvan.image.class.svgimageelement";
inline constexpr const char* kSVGSwitchElementClass = "net.orvan.image.class.svgswitchelement";
inline constexpr const char* kSVGAnchorElementClass = "net.orvan.image.class.svganchorelement";
inline constexpr const char* kSVGTspanElementClass = "net.orvan.image.class.svgtspanelement";
inline constexpr const char* kSVGTextPathElementClass = "net.orvan.image.class.svgtextpathelement";
inline constexpr const char* kSVGFilterElementClass = "net.orvan.image.class.svgfilterelement";
inline constexpr const char* kSVGFeBlendElementClass = "net.orvan.image.class.svgfeblendelement";
inline constexpr const char* kSVGFeColorMatrixElementClass = "net.orvan.image.class.svgfecolormatrixelement";
inline constexpr const char* kSVGFeComponentTransferElementClass =
	"net.orvan.image.class.svgfecomponenttransferelement";
inline constexpr const char* kSVGFeCompositeElementClass = "net.orvan.image.class.svgfecompositeelement";
inline constexpr const char* kSVGFeConvolveMatrixElementClass = "net.orvan.image.class.svgfeconvolvematrixelement";
inline constexpr const char* kSVGFeDiffuseLightingElementClass = "net.orvan.image.class.svgfediffuselightingelement";
inline constexpr const char* kSVGFeDisplacementMapElementClass = "net.orvan.image.class.svgfedisplacementmapelement";
inline constexpr const char* kSVGFeDropShadowElementClass = "net.orvan.image.class.svgfedropshadowelement";
inline constexpr const char* kSVGFeFloodElementClass = "net.orvan.image.class.svgfefloodelement";
inline constexpr const char* kSVGFeGaussianBlurElementClass = "net.orvan.image.class.svgfegaussianblurelement";
inline constexpr const char* kSVGFeImageElementClass = "net.orvan.image.class.svgfeimageelement";
inline constexpr const char* kSVGFeMergeElementClass = "net.orvan.image.class.svgfemergeelement";
inline constexpr const char* kSVGFeMorphologyElementClass = "net.orvan.image.class.svgfemorphologyelement";
inline constexpr const char* kSVGFeOffsetElementClass = "net.orvan.image.class.svgfeoffsetelement";
inline constexpr const char* kSVGFeSpecularLightingElementClass = "net.orvan.image.class.svgfespecularlightingelement";
inline constexpr const char* kSVGFeTileElementClass = "net.orvan.image.class.svgfetileelement";
inline constexpr const char* kSVGFeTurbulenceElementClass = "net.orvan.image.class.svgfeturbulenceelement";
inline constexpr const char* kSVGFeDistantLightElementClass = "net.orvan.image.class.svgfedistantlightelement";
inline constexpr const char* kSVGFePointLightElementClass = "net.orvan.image.class.svgfepointlightelement";
inline constexpr const char* kSVGFeSpotLightElementClass = "net.orvan.image.class.svgfespotlightelement";
inline constexpr const char* kSVGFeFuncRElementClass = "net.orvan.image.class.svgfefuncrelement";
inline constexpr const char* kSVGFeFuncGElementClass = "net.orvan.image.class.svgfefuncgelement";
inline constexpr const char* kSVGFeFuncBElementClass = "net.orvan.image.class.svgfefuncbelement";
inline constexpr const char* kSVGFeFuncAElementClass = "net.orvan.image.class.svgfefuncaelement";
inline constexpr const char* kSVGFeMergeNodeElementClass = "net.orvan.image.class.svgfemergenodeelement";
inline constexpr const char* kSVGTitleElementClass = "net.orvan.image.class.svgtitleelement";
inline constexpr const char* kSVGDescElementClass = "net.orvan.image.class.svgdescelement";
inline constexpr const char* kSVGStyleElementClass = "net.orvan.image.class.svgstyleelement";
inline constexpr const char* kSVGMetadataElementClass = "net.orvan.image.class.svgmetadataelement";
inline constexpr const char* kSVGForeignObjectElementClass = "net.orvan.image.class.svgforeignobjectelement";
inline constexpr const char* kSVGTextRunElementClass = "net.orvan.image.class.svgtextrunelement";

// Interfaces ---------------------------------------------------------------------------------------------------------

/// Elements that name another one, or a file, by "href".
class SVGLinkInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svglink";
	static constexpr const char* kName = "orvan.SVGLinkInterface";
	static constexpr int kSlotCount = 2;

	/// Sets the link: the id of an element of the same document (without "#"), or a whole IRI.
	ORVAN_METHOD(1, Result<void>, SetLink, (const String& link), link)
	/// The link's text; empty when there is none.
	ORVAN_METHOD(2, String, GetLink, ())
};
using SVGLinkRef = Ref<SVGLinkInterface>;

/// A pattern: a paint server that repeats a tile.
class SVGPatternElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgpatternelement";
	static constexpr const char* kName = "orvan.SVGPatternElementInterface";
	static constexpr int kSlotCount = 6;

	/// Sets what position and size of the tile refer to.
	ORVAN_METHOD(1, Result<void>, SetPatternUnits, (SVGUnits units), units)
	/// Initially objectBoundingBox.
	ORVAN_METHOD(2, SVGUnits, GetPatternUnits, ())
	/// Sets what the tile's content refers to; without effect where there is a view box.
	ORVAN_METHOD(3, Result<void>, SetPatternContentUnits, (SVGUnits units), units)
	/// Initially userSpaceOnUse.
	ORVAN_METHOD(4, SVGUnits, GetPatternContentUnits, ())
	/// Sets the transform from the pattern's coordinates to those that the units name.
	ORVAN_METHOD(5, Result<void>, SetPatternTransform, (const Matrix2d& transform), transform)
	/// Initially the identity.
	ORVAN_METHOD(6, Matrix2d, GetPatternTransform, ())
};
using SVGPatternElementRef = Ref<SVGPatternElementInterface>;

/// A marker: what is drawn at the vertices of a shape.
class SVGMarkerElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgmarkerelement";
	static constexpr const char* kName = "orvan.SVGMarkerElementInterface";
	static constexpr int kSlotCount = 12;

	/// Sets the coordinate of the content that comes to lie on the vertex.
	ORVAN_METHOD(1, Result<void>, SetRefX, (const SVGLength& x), x)
	/// Initially 0.
	ORVAN_METHOD(2, SVGLength, GetRefX, ())
	/// Sets the coordinate of the content that comes to lie on the vertex.
	ORVAN_METHOD(3, Result<void>, SetRefY, (const SVGLength& y), y)
	/// Initially 0.
	ORVAN_METHOD(4, SVGLength, GetRefY, ())
	/// Sets the width of the marker's viewport.
	ORVAN_METHOD(5, Result<void>, SetMarkerWidth, (const SVGLength& width), width)
	/// Initially 3.
	ORVAN_METHOD(6, SVGLength, GetMarkerWidth, ())
	/// Sets the height of the marker's viewport.
	ORVAN_METHOD(7, Result<void>, SetMarkerHeight, (const SVGLength& height), height)
	/// Initially 3.
	ORVAN_METHOD(8, SVGLength, GetMarkerHeight, ())
	/// Sets whether the marker grows with the stroke's width.
	ORVAN_METHOD(9, Result<void>, SetMarkerUnits, (SVGMarkerUnits units), units)
	/// Initially strokeWidth.
	ORVAN_METHOD(10, SVGMarkerUnits, GetMarkerUnits, ())
	/// Sets how the marker turns with the path.
	ORVAN_METHOD(11, Result<void>, SetOrient, (const SVGOrient& orient), orient)
	/// Initially an angle of 0.
	ORVAN_METHOD(12, SVGOrient, GetOrient, ())
};
using SVGMarkerElementRef = Ref<SVGMarkerElementInterface>;

/// A raster or SVG image; its link is a `data:` URL or names a file.
class SVGImageElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgimageelement";
	static constexpr const char* kName = "orvan.SVGImageElementInterface";
	static constexpr int kSlotCount = 2;

	/// Sets how the image is fitted into its rectangle.
	ORVAN_METHOD(1, Result<void>, SetPreserveAspectRatio, (const SVGPreserveAspectRatio& ratio), ratio)
	/// Initially xMidYMid meet.
	ORVAN_METHOD(2, SVGPreserveAspectRatio, GetPreserveAspectRatio, ())
};
using SVGImageElementRef = Ref<SVGImageElementInterface>;

/// A switch: the first of its children that passes the tests of its conditional attributes is drawn. It is a group too,
/// for renderers that know no more.
class SVGSwitchElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgswitchelement";
	static constexpr const char* kName = "orvan.SVGSwitchElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGSwitchElementRef = Ref<SVGSwitchElementInterface>;

/// An anchor ("a"): a group with a link, also around parts of a text.
class SVGAnchorElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svganchorelement";
	static constexpr const char* kName = "orvan.SVGAnchorElementInterface";
	static constexpr int kSlotCount = 2;

	/// Sets where the link opens: "_blank", "_self", a name.
	ORVAN_METHOD(1, Result<void>, SetTarget, (const String& target), target)
	/// Initially empty.
	ORVAN_METHOD(2, String, GetTarget, ())
};
using SVGAnchorElementRef = Ref<SVGAnchorElementInterface>;

/// What text, tspan, textPath and an anchor inside a text share. Their characters are children: text runs, beside
/// further elements of these kinds.
class SVGTextContentInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgtextcontent";
	static constexpr const char* kName = "orvan.SVGTextContentInterface";
	static constexpr int kSlotCount = 11;

	/// All characters at and below the element, in document order. Fails for want of memory only.
	ORVAN_METHOD(1, Result<String>, GetCharacters, ())
	/// Sets the absolute positions of the first characters, one each. `GetX` of the position interface has the first.
	ORVAN_METHOD(2, Result<void>, SetXList, (const BaseArray<SVGLength>& positions), positions)
	/// Initially empty.
	ORVAN_METHOD(3, Result<BaseArray<SVGLength>>, GetXList, ())
	/// Sets the absolute positions of the first characters, one each.
	ORVAN_METHOD(4, Result<void>, SetYList, (const BaseArray<SVGLength>& positions), positions)
	/// Initially empty.
	ORVAN_METHOD(5, Result<BaseArray<SVGLength>>, GetYList, ())
	/// Sets the shifts of the first characters, one each.
	ORVAN_METHOD(6, Result<void>, SetDxList, (const BaseArray<SVGLength>& shifts), shifts)
	/// Initially empty.
	ORVAN_METHOD(7, Result<BaseArray<SVGLength>>, GetDxList, ())
	/// Sets the shifts of the first characters, one each.
	ORVAN_METHOD(8, Result<void>, SetDyList, (const BaseArray<SVGLength>& shifts), shifts)
	/// Initially empty.
	ORVAN_METHOD(9, Result<BaseArray<SVGLength>>, GetDyList, ())
	/// Sets the rotations of the first characters in degrees, one each; the last holds for all that follow.
	ORVAN_METHOD(10, Result<void>, SetRotations, (const BaseArray<Float>& rotations), rotations)
	/// Initially empty.
	ORVAN_METHOD(11, Result<BaseArray<Float>>, GetRotations, ())
};
using SVGTextContentRef = Ref<SVGTextContentInterface>;

/// Text along a path, which its link names.
class SVGTextPathElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgtextpathelement";
	static constexpr const char* kName = "orvan.SVGTextPathElementInterface";
	static constexpr int kSlotCount = 2;

	/// Sets where on the path the text starts; a percentage is of the path's length.
	ORVAN_METHOD(1, Result<void>, SetStartOffset, (const SVGLength& offset), offset)
	/// Initially 0.
	ORVAN_METHOD(2, SVGLength, GetStartOffset, ())
};
using SVGTextPathElementRef = Ref<SVGTextPathElementInterface>;

/// Characters of a text, with white space as "xml:space" and "white-space" want it. It has no attributes.
class SVGTextRunInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgtextrun";
	static constexpr const char* kName = "orvan.SVGTextRunInterface";
	static constexpr int kSlotCount = 2;

	ORVAN_METHOD(1, Result<void>, SetText, (const String& text), text)
	/// The characters; initially empty.
	ORVAN_METHOD(2, String, GetText, ())
};
using SVGTextRunRef = Ref<SVGTextRunInterface>;

/// A filter: a graph of primitives, which are its children.
class SVGFilterElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgfilterelement";
	static constexpr const char* kName = "orvan.SVGFilterElementInterface";
	static constexpr int kSlotCount = 4;

	/// Sets what position and size of the filter's region refer to.
	ORVAN_METHOD(1, Result<void>, SetFilterUnits, (SVGUnits units), units)
	/// Initially objectBoundingBox.
	ORVAN_METHOD(2, SVGUnits, GetFilterUnits, ())
	/// Sets what lengths and regions of the primitives refer to.
	ORVAN_METHOD(3, Result<void>, SetPrimitiveUnits, (SVGUnits units), units)
	/// Initially userSpaceOnUse.
	ORVAN_METHOD(4, SVGUnits, GetPrimitiveUnits, ())
};
using SVGFilterElementRef = Ref<SVGFilterElementInterface>;

/// A filter primitive ("feBlend" to "feTurbulence"). What it does is said by its attributes.
class SVGFilterPrimitiveInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgfilterprimitive";
	static constexpr const char* kName = "orvan.SVGFilterPrimitiveInterface";
	static constexpr int kSlotCount = 6;

	/// Sets the name of the (first) input: that of an earlier result, or a keyword such as "SourceGraphic".
	ORVAN_METHOD(1, Result<void>, SetInput, (const String& name), name)
	/// Initially empty: the result of the primitive before, or the source graphic.
	ORVAN_METHOD(2, String, GetInput, ())
	/// Sets the name of the second input, of primitives that have one.
	ORVAN_METHOD(3, Result<void>, SetSecondInput, (const String& name), name)
	/// Initially empty.
	ORVAN_METHOD(4, String, GetSecondInput, ())
	/// Sets the name by which later primitives reach the result.
	ORVAN_METHOD(5, Result<void>, SetResult, (const String& name), name)
	/// Initially empty.
	ORVAN_METHOD(6, String, GetResult, ())
};
using SVGFilterPrimitiveRef = Ref<SVGFilterPrimitiveInterface>;

/// A part of a filter primitive: a light source, a transfer function or a node of feMerge.
class SVGFilterPartInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgfilterpart";
	static constexpr const char* kName = "orvan.SVGFilterPartInterface";
	static constexpr int kSlotCount = 0;
};
using SVGFilterPartRef = Ref<SVGFilterPartInterface>;

/// Text about the document that is not drawn: title, desc, style, metadata.
class SVGDescriptionInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdescription";
	static constexpr const char* kName = "orvan.SVGDescriptionInterface";
	static constexpr int kSlotCount = 2;

	/// Sets the text. Changing that of a style element does not change how the document looks.
	ORVAN_METHOD(1, Result<void>, SetText, (const String& text), text)
	/// The element's characters as the file has them; initially empty.
	ORVAN_METHOD(2, String, GetText, ())
};
using SVGDescriptionRef = Ref<SVGDescriptionInterface>;

/// Content of another language; not drawn.
class SVGForeignObjectElementInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgforeignobjectelement";
	static constexpr const char* kName = "orvan.SVGForeignObjectElementInterface";
	static constexpr int kSlotCount = 0;
};
using SVGForeignObjectElementRef = Ref<SVGForeignObjectElementInterface>;

ORVAN_DATA_TYPE(SVGLinkRef, "orvan::SVGLinkRef", "orvan::SVGLinkRef");
ORVAN_DATA_TYPE(SVGPatternElementRef, "orvan::SVGPatternElementRef", "orvan::SVGPatternElementRef");
ORVAN_DATA_TYPE(SVGMarkerElementRef, "orvan::SVGMarkerElementRef", "orvan::SVGMarkerElementRef");
ORVAN_DATA_TYPE(SVGImageElementRef, "orvan::SVGImageElementRef", "orvan::SVGImageElementRef");
ORVAN_DATA_TYPE(SVGSwitchElementRef, "orvan::SVGSwitchElementRef", "orvan::SVGSwitchElementRef");
ORVAN_DATA_TYPE(SVGAnchorElementRef, "orvan::SVGAnchorElementRef", "orvan::SVGAnchorElementRef");
ORVAN_DATA_TYPE(SVGTextContentRef, "orvan::SVGTextContentRef", "orvan::SVGTextContentRef");
ORVAN_DATA_TYPE(SVGTextPathElementRef, "orvan::SVGTextPathElementRef", "orvan::SVGTextPathElementRef");
ORVAN_DATA_TYPE(SVGTextRunRef, "orvan::SVGTextRunRef", "orvan::SVGTextRunRef");
ORVAN_DATA_TYPE(SVGFilterElementRef, "orvan::SVGFilterElementRef", "orvan::SVGFilterElementRef");
ORVAN_DATA_TYPE(SVGFilterPrimitiveRef, "orvan::SVGFilterPrimitiveRef", "orvan::SVGFilterPrimitiveRef");
ORVAN_DATA_TYPE(SVGFilterPartRef, "orvan::SVGFilterPartRef", "orvan::SVGFilterPartRef");
ORVAN_DATA_TYPE(SVGDescriptionRef, "orvan::SVGDescriptionRef", "orvan::SVGDescriptionRef");
ORVAN_DATA_TYPE(SVGForeignObjectElementRef, "orvan::SVGForeignObjectElementRef", "orvan::SVGForeignObjectElementRef");

} // namespace orvan
