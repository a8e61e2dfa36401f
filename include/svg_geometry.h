// SPDX-License-Identifier: MIT
/// Asking a picture: where elements lie, what is at a point, how long an outline is, and everything as plain paths.
///
/// The geometry module (`net.orvan.svg.geometry`) implements this header. An object of the class `kSVGGeometryClass`
/// answers for one document:
///
///     SVGGeometryRef geometry = ORVAN_TRY(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
///     ORVAN_TRY(geometry->SetDocument(document, SVGGeometryOptions()));
///     SVGBox box = ORVAN_TRY(geometry->GetBox(element, SVGBoxKind::fill, SVGCoordinates::view));
///     for (const SVGHit& hit : ORVAN_TRY(geometry->FindAt({12.0, 30.0}, SVGHitOptions())).hits) …
///
/// **Coordinates.** Everything is in user units as 64-bit floats; y goes down. An element's *own* coordinates are those
/// in which its attributes are: below its transform. Of an svg element they are those of its content, so behind its
/// view box. *Parent* coordinates are the own coordinates of the element around it, *document* coordinates those of the
/// root's content, and *view* coordinates are what a picture of the document is drawn in: one unit is one pixel at
/// scale 1, and the origin is its upper left corner.
///
/// **Elements that stand for others.** What a use shows belongs to the use's boxes. An element that is shown by uses
/// and stands in the document itself is asked for where it stands itself. Elements in definitions, which are drawn
/// nowhere in place (in defs, symbols, clip paths, masks, markers and patterns), have boxes as if their definition
/// stood in place; `FindAt` never finds them there.
///
/// **What is asked is a record of the tree**, made by the first question after `SetDocument` or `Update`. It keeps the
/// elements alive. Where the document tells of its changes (`SVGDocumentEditInterface`), questions after a change are
/// answered by the changed tree; for others, call `Update` after changes. A document that was loaded anew is noticed.
/// What was set on single elements, and elements that came, went or moved, cost the next question no more than what
/// stands in these, unless other elements refer to them or depend on their boxes. Everything is recorded anew where an
/// element came while content stands in clip paths, masks, patterns, markers or symbols that are used, and now and then
/// when many have come.
///
/// **Errors.** All questions fail with the illegal-state error when there is no document, with the out-of-memory error,
/// and with those that are named beside them. Coordinates that are not finite, or too large to calculate with (beyond
/// 10^100), count as if they were not there.
///
/// **Threads.** Questions write caches: one thread at a time may use an object, and nothing may change the document
/// meanwhile. Outlines that were handed out stand by themselves.
#pragma once

#include "svg_base.h"

#include <cstdint>

namespace orvan
{

/// The class of geometry objects, for `CreateObject`.
inline constexpr const char* kSVGGeometryClass = "net.orvan.image.class.svggeometry";
/// The class of outlines, for `CreateObject`.
inline constexpr const char* kSVGOutlineClass = "net.orvan.image.class.svgoutline";

// Boxes --------------------------------------------------------------------------------------------------------------

/// A rectangle with sides along the axes.
struct SVGBox
{
	Float x = 0.0; ///< Its left edge.
	Float y = 0.0; ///< Its upper edge.
	Float width = 0.0;
	Float height = 0.0;
	/// There is nothing, and the numbers are 0. A box around a straight line is not empty, although a side of it is 0.
	bool isEmpty = true;
};

/// What a box is around. All are as tight as the curves are, also when they are transformed.
enum class SVGBoxKind : std::int32_t
{
	/// The outlines, whatever they are painted with, hidden ones included: what `getBBox` of browsers gives. Texts
	/// count with the cells of their characters. Clips, markers and strokes are left aside.
	fill = 0,
	/// The outlines and the strokes that there are, without regard to dashes; texts with the strokes of their letters.
	stroke = 1,
	/// What can be seen: painted and visible outlines and strokes, letters and markers, cut off by the boxes of clip
	/// paths, regions of masks and edges of viewports. What filters add is left aside.
	visual = 2,
};

/// In which coordinates something is given; see the top of this header.
enum class SVGCoordinates : std::int32_t
{
	element = 0,
	parent = 1,
	document = 2,
	view = 3,
};

/// How a document is looked at.
struct SVGGeometryOptions
{
	/// Size of the view in pixels, which the outermost element is fitted into. Zero stands for "not given": the side
	/// follows from the other one in the document's proportions, or both from the document's own size. Negative ones
	/// and such that are not finite are illegal.
	Float viewWidth = 0.0;
	Float viewHeight = 0.0;
	/// Seconds that recording the tree may take. What is not recorded then is left out, with a warning. Must be greater
	/// than 0.
	Float deadline = 10.0;
};

// Hits ---------------------------------------------------------------------------------------------------------------

/// What is looked for at a place.
struct SVGHitOptions
{
	/// How far off things may lie, in units of the view. 0 or greater, and finite.
	Float tolerance = 0.0;
	/// Find everything that is there, topmost first; otherwise only what is topmost.
	bool findsAll = false;
	/// Find what is visible and painted, without regard to "pointer-events".
	bool ignoresPointerEvents = false;
};

/// Which part of an element was hit.
enum class SVGHitPart : std::int32_t
{
	fill = 0,
	stroke = 1,
	text = 2, ///< The cell of a character.
	box = 3,  ///< The bounding box ("pointer-events: bounding-box"), or what a rectangle met.
};

/// An element at a place.
struct SVGHit
{
	SVGElementRef element; ///< A shape, a text or a tspan.
	SVGHitPart part = SVGHitPart::fill;
	/// Number of uses through which the element is shown there; they stand in `SVGHits::uses`.
	std::int32_t useCount = 0;
	std::int32_t firstUse = 0; ///< Where in `SVGHits::uses` the first of them stands.
};

/// What was found. Move only.
struct SVGHits
{
	BaseArray<SVGHit> hits; ///< The topmost first.
	/// The uses of all hits; of each hit the outermost use first. Browsers name that one as the element at a point.
	BaseArray<SVGElementRef> uses;
};

// Outlines -----------------------------------------------------------------------------------------------------------

/// How a line is drawn along an outline.
struct SVGStroke
{
	Float width = 1.0; ///< In the outline's units. Must be greater than 0 and finite for there to be a stroke.
	SVGLineCap cap = SVGLineCap::butt;
	SVGLineJoin join = SVGLineJoin::miter;
	Float miterLimit = 4.0; ///< Less than 1 counts as 1.
};

/// A place on an outline.
struct SVGOutlinePlace
{
	Vector2d point;
	Vector2d direction;   ///< Of length 1, the way the outline goes; (0, 0) when it goes nowhere.
	Float length = 0.0;   ///< From the start of the outline.
	Float distance = 0.0; ///< Of `FindNearest`: from the point asked for.
};

/// What becomes of two areas.
enum class SVGOutlineOperation : std::int32_t
{
	unite = 0,     ///< What is in one or both.
	intersect = 1, ///< What is in both.
	subtract = 2,  ///< What is in the first and not in the second.
	exclude = 3,   ///< What is in one and not in both.
};

class SVGOutlineInterface;
using SVGOutlineRef = Ref<SVGOutlineInterface>;

/// A path by itself: made with `CreateObject` and `SetPath`, or handed out by `SVGGeometryInterface`. It belongs to no
/// document. Lengths are measured to 10^-9 of the outline's size or better.
class SVGOutlineInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgoutline";
	static constexpr const char* kName = "orvan.SVGOutlineInterface";
	static constexpr int kSlotCount = 12;

	/// Sets the commands, which are copied. The first one counts as a move.
	ORVAN_METHOD(1, Result<void>, SetPath, (const BaseArray<SVGPathCommand>& commands), commands)
	/// A copy of the commands.
	ORVAN_METHOD(2, Result<BaseArray<SVGPathCommand>>, GetPath, ())
	/// The box around the outline once it is transformed by `transform`, tight around the transformed curves.
	ORVAN_METHOD(3, SVGBox, GetBounds, (const Matrix2d& transform), transform)
	/// The length of all lines and curves; moves have none.
	ORVAN_METHOD(4, Result<Float>, GetLength, ())
	/// The place at a length from the start: at a negative one the start, beyond the end the end. Illegal for NaN; not
	/// found when the outline has no points.
	ORVAN_METHOD(5, Result<SVGOutlinePlace>, GetPlace, (Float length), length)
	/// The place that is nearest to a point; of several as near the first. Not found as above.
	ORVAN_METHOD(6, Result<SVGOutlinePlace>, FindNearest, (const Vector2d& point), point)
	/// True when the point is inside, or on an edge, by the rule given.
	ORVAN_METHOD(7, bool, Contains, (const Vector2d& point, SVGFillRule rule), point, rule)
	/// The same outline, transformed.
	ORVAN_METHOD(8, Result<SVGOutlineRef>, Transform, (const Matrix2d& transform), transform)
	/// The same outline in straight lines only, none of which is farther from its curve than `tolerance`. Illegal for a
	/// tolerance that is not greater than 0 and finite.
	ORVAN_METHOD(9, Result<SVGOutlineRef>, Flatten, (Float tolerance), tolerance)
	/// The edges of a stroke along this outline, to be filled by the nonzero rule, no farther off than `tolerance`.
	/// Edges may cross where the line turns more sharply than it is wide. Illegal as above.
	ORVAN_METHOD(10, Result<SVGOutlineRef>, GetStroke, (const SVGStroke& stroke, Float tolerance), stroke, tolerance)
	/// The area of this outline, by `rule`, and that of another one, by `otherRule`, put together; null stands for an
	/// outline of nothing, so that uniting with it takes crossings out. All subpaths count as closed.
	///
	/// Curves stay curves, and where they cross the result is as exact as they are; what runs along each other nearer
	/// than `tolerance` counts as the same, and parts that are thinner may be left out. 0 stands for a millionth of the
	/// size of both, which is also about as exact as can be asked for (the limit is 10^-8 of the size). The result has
	/// no crossings, and is the same by both fill rules: areas go around clockwise as seen on a screen, holes the other
	/// way. Illegal for a tolerance that is negative or not finite, an operation or rule that there is none of, and for
	/// outlines that are too intricate: of several millions of pieces and crossings.
	ORVAN_METHOD(11, Result<SVGOutlineRef>, Combine,
				 (const SVGOutlineRef& other, SVGOutlineOperation operation, SVGFillRule rule, SVGFillRule otherRule,
				  Float tolerance),
				 other, operation, rule, otherRule, tolerance)
	/// How large the area is that a fill by this rule covers, in the outline's units. Fails as `Combine` does.
	ORVAN_METHOD(12, Result<Float>, GetArea, (SVGFillRule rule), rule)
};

// Everything as plain paths ------------------------------------------------------------------------------------------

/// What becomes of strokes in normalised paths.
enum class SVGNormalizedStrokes : std::int32_t
{
	kept = 0,     ///< A path has a stroke of a width.
	outlined = 1, ///< Each stroke is a path of its own, which is filled.
};

/// How a document is normalised. The defaults keep curves and strokes, in units of the view.
struct SVGNormalizeOptions
{
	SVGNormalizedStrokes strokes = SVGNormalizedStrokes::kept;
	/// Greater than 0: curves become lines that are no farther off than this, in units of the result. 0 keeps curves.
	Float flattening = 0.0;
	/// How exactly outlined strokes follow, in units of the result.
	Float strokeTolerance = 0.01;
	/// Greater than 0: what is painted is scaled and moved so that the view fits into a square of this side, from 0 to
	/// `grid`, with the proportions kept.
	Float grid = 0.0;
	/// Greater than 0: coordinates are rounded to multiples of this, after all else.
	Float precision = 0.0;
};

/// What becomes of clip paths, and of the edges of viewports, in what is normalised.
enum class SVGNormalizedClips : std::int32_t
{
	/// They are left aside. Paths that they would cut off are counted as unclipped.
	ignored = 0,
	/// Paths end where they are cut off. Strokes that are cut off are outlined. Exact to a thousandth of a unit of the
	/// result. What is too intricate for that is left whole, and counted as unclipped.
	applied = 1,
	/// A document has clip paths of plain paths. In columns there is no place for them; as `ignored` there.
	kept = 2,
};

/// How one of a path's two paints is to be understood.
enum class SVGNormalizedPaint : std::uint8_t
{
	none = 0,
	color = 1,
	/// A gradient or pattern; the colour is the mean of the gradient's stops, or grey for what has none.
	server = 2,
};

/// Everything that is painted, in painting order, as columns: path `i` has the commands from `commandOffsets[i]` up to
/// `commandOffsets[i + 1]` and the points from `pointOffsets[i]`. All columns of paths have the same count; the offsets
/// have one more. The arrays are the caller's. Move only.
struct SVGNormalizedPaths
{
	BaseArray<std::uint8_t> commands; ///< 0 move, 1 line, 2 cubic, 3 close: with one, one, three and no points.
	BaseArray<Vector2d> points;       ///< Absolute; a cubic's control points first.
	BaseArray<std::int64_t> commandOffsets;
	BaseArray<std::int64_t> pointOffsets;
	BaseArray<SVGNormalizedPaint> fillKinds;
	BaseArray<SVGNormalizedPaint> strokeKinds;
	BaseArray<Color> fills;
	BaseArray<Color> strokes;
	/// 0 to 1: the paint's, the properties' and the groups' opacities multiplied. Where things in a group overlap, this
	/// is an approximation.
	BaseArray<Float> fillOpacities;
	BaseArray<Float> strokeOpacities;
	BaseArray<Float> strokeWidths; ///< In units of the result; of strokes that are wider one way, the mean.
	BaseArray<SVGFillRule> fillRules;
	BaseArray<SVGLineCap> strokeCaps;
	BaseArray<SVGLineJoin> strokeJoins;
	BaseArray<Float> strokeMiterLimits;
	BaseArray<SVGElementRef> elements; ///< What the path comes from.
	Vector2d size;                     ///< Width and height of the view, in units of the result.
	/// Paths of which clip paths, masks or filters are left aside: they show more than the picture does.
	std::int64_t unclippedCount = 0;
};

// The interface ------------------------------------------------------------------------------------------------------

/// Answers for one document.
class SVGGeometryInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svggeometry";
	static constexpr const char* kName = "orvan.SVGGeometryInterface";
	static constexpr int kSlotCount = 12;

	/// Sets the document that questions are about, which is kept alive; null for none. Illegal for options that make no
	/// sense; then nothing changes.
	ORVAN_METHOD(1, Result<void>, SetDocument, (const SVGDocumentRef& document, const SVGGeometryOptions& options),
				 document, options)
	/// The document; null when there is none.
	ORVAN_METHOD(2, SVGDocumentRef, GetDocument, ())
	/// Has the tree recorded anew by the next question.
	ORVAN_METHOD(3, void, Update, ())
	/// Width and height of the view.
	ORVAN_METHOD(4, Result<Vector2d>, GetViewSize, ())

	/// The box of an element with all below it. Empty when there is nothing, when the element is not displayed, and for
	/// elements that are no pictures, such as gradients. Not found when the element is not in the document's tree.
	ORVAN_METHOD(5, Result<SVGBox>, GetBox, (const SVGElementRef& element, SVGBoxKind kind, SVGCoordinates coordinates),
				 element, kind, coordinates)
	/// The transform from an element's own coordinates to others. Not found when the element is not in the tree or
	/// nothing is drawn for it.
	ORVAN_METHOD(6, Result<Matrix2d>, GetTransform, (const SVGElementRef& element, SVGCoordinates coordinates), element,
				 coordinates)
	/// What is at a point of the view. What clip paths cut off is not there; masks and opacity make no difference.
	/// Illegal for a tolerance that makes no sense. The first call makes an index; each takes microseconds then.
	ORVAN_METHOD(7, Result<SVGHits>, FindAt, (const Vector2d& point, const SVGHitOptions& options), point, options)
	/// What a rectangle of the view meets, by the boxes of what is painted: all of it, the topmost first, those only
	/// that lie inside of it as a whole where `isInside` says so.
	ORVAN_METHOD(8, Result<SVGHits>, FindIn, (const SVGBox& rectangle, bool isInside), rectangle, isInside)
	/// The outline of a shape, or of a text's letters; of other elements all outlines at and below them. Not found as
	/// for `GetTransform`.
	ORVAN_METHOD(9, Result<SVGOutlineRef>, GetOutline, (const SVGElementRef& element, SVGCoordinates coordinates),
				 element, coordinates)
	/// Everything that is painted and visible as plain paths; clip paths are left aside. Illegal for options that make
	/// no sense.
	ORVAN_METHOD(10, Result<SVGNormalizedPaths>, Normalize, (const SVGNormalizeOptions& options), options)
	/// The same, with a say in what becomes of clip paths.
	ORVAN_METHOD(11, Result<SVGNormalizedPaths>, NormalizeWith,
				 (const SVGNormalizeOptions& options, SVGNormalizedClips clips), options, clips)
	/// Everything that is painted and visible as a document of plain paths, which was loaded from its own text and can
	/// be saved. It looks like the picture: beside paths there are gradients, patterns, images, masks, and groups where
	/// a group has an opacity, a clip path, a mask, a filter or is blended; dashed strokes, and strokes whose pen is
	/// wider one way than the other, are outlined. What is filtered stands in a group with the transform that it has,
	/// since filters work in its coordinates, and clip paths around filters and images are kept. Normalising the result
	/// by the same options, the grid apart, gives the same text. Fails as `Normalize` does.
	ORVAN_METHOD(12, Result<SVGDocumentRef>, NormalizeToDocument,
				 (const SVGNormalizeOptions& options, SVGNormalizedClips clips), options, clips)
};
using SVGGeometryRef = Ref<SVGGeometryInterface>;

ORVAN_DATA_TYPE(SVGGeometryRef, "orvan::SVGGeometryRef", "orvan::SVGGeometryRef");
ORVAN_DATA_TYPE(SVGOutlineRef, "orvan::SVGOutlineRef", "orvan::SVGOutlineRef");

} // namespace orvan
