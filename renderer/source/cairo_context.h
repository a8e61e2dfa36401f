// SPDX-License-Identifier: MIT
/// The drawing context: receives the elements of a tree and draws them into a picture.
#pragma once

#include "budget.h"
#include "outline.h"
#include "paint.h"
#include "picture.h"
#include "style.h"
#include "svg_render_target.h"
#include "text.h"
#include "viewbox.h"

#include <type_traits>

namespace orvan::cairo
{

/// What holds at one place of the tree; saved and restored around each element.
struct State
{
	Matrix2d transform; ///< From the element's coordinates to the drawing's.
	Viewport viewport;
	Style style;
};

/// A call that is made later, or not at all.
class Drawing
{
public:
	template <typename Draw>
	requires(!std::is_same_v<std::remove_cvref_t<Draw>, Drawing>) Drawing(Draw& draw)
	noexcept : _context(&draw), _call([](void* context) noexcept { return (*static_cast<Draw*>(context))(); })
	{
	}

	Result<void> operator()() const noexcept
	{
		return _call(_context);
	}

private:
	void* _context;
	Result<void> (*_call)(void*) noexcept;
};

/// The implementation of `SVGContextInterface` and `SVGRenderTargetInterface`.
///
/// The drawing library's own transform stays the identity: outlines are transformed on their way in, and only strokes
/// and text set a transform, for as long as they take. Clips are the library's, saved and restored with its own state.
class CairoContext : public ObjectBase
{
public:
	/// Keeps the font libraries in memory for the life of the process, since they cannot be loaded a second time.
	Result<void> Initialize() noexcept;

	// SVGRenderTargetInterface
	Result<void> Begin(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept;
	Vector2d GetSize() const noexcept;
	Result<void> Finish(const String& path) noexcept;
	Result<SVGRenderPixels> GetPixels() noexcept;

	// SVGContextInterface
	Result<void> DrawSVG(const SVGSVGElementRef& element) noexcept;
	Result<void> DrawUse(const SVGUseElementRef& element) noexcept;
	Result<void> DrawGroup(const SVGGroupElementRef& element) noexcept;
	Result<void> DrawPath(const SVGPathElementRef& element) noexcept;
	Result<void> DrawRectangle(const SVGRectElementRef& element) noexcept;
	Result<void> DrawLine(const SVGLineElementRef& element) noexcept;
	Result<void> DrawCircle(const SVGCircleElementRef& element) noexcept;
	Result<void> DrawText(const SVGTextElementRef& element) noexcept;

private:
	class ElementScope;
	class ReferenceScope;
	class LayerScope;

	enum class Mode
	{
		paint,
		clip,    ///< Collects the areas of shapes, whatever they are painted with.
		outline, ///< Leaves a shape's outline as the drawing's path.
		measure, ///< Draws nothing, but finds out what would be touched.
	};

	/// Where and how large something is, for effects; null pointers for what is not known.
	struct Extent
	{
		const Rectangle* user = nullptr;
		const Rectangle* device = nullptr;
	};

	// Containers.
	Result<void> DrawOutermost(const SVGSVGElementRef& element) noexcept;
	Result<void> DrawNested(const SVGSVGElementRef& element, const SVGViewport& viewport) noexcept;
	Result<void> DrawTarget(const SVGUseElementRef& use, const SVGElementRef& target) noexcept;
	template <typename I>
	Result<void> DrawChildrenIn(const Ref<I>& element, const Rectangle& clip, const ViewboxFit& fit) noexcept;
	template <typename I>
	Result<void> DrawChildren(const Ref<I>& element) noexcept
	{
		return DrawSVGChildren(SVGContextRef::From(this), element);
	}

	// Shapes.
	template <typename Build>
	Result<void> DrawShape(ObjectBase* element, Build build) noexcept;
	Result<void> PaintOutline(const Outline& outline, double opacity) noexcept;
	Result<void> PaintText(const TextLine& line, double opacity) noexcept;
	Result<bool> SetFill(const Rectangle& bounds, double opacity) noexcept;
	Result<bool> SetStroke(const Rectangle& bounds, double opacity) noexcept;
	void StrokePath() noexcept;
	bool HasFill() const noexcept;
	bool HasStroke() const noexcept;
	double GetStrokeWidth() const noexcept;
	bool SetDashes(double width) noexcept;
	double GetWork(const Rectangle& painted, double details) const noexcept;
	Rectangle GetPaintedBounds(const Rectangle& deviceBounds) const noexcept;
	double Resolve(const SVGLength& length, Axis axis) const noexcept;

	// Effects, in effects.cpp.
	template <typename Draw>
	Result<void> Compose(const Effects& effects, const Extent& extent, Draw draw) noexcept
	{
		return effects.IsNone() ? draw() : ComposeLayers(effects, extent, draw);
	}
	Result<void> ComposeLayers(const Effects& effects, const Extent& extent, Drawing draw) noexcept;
	Result<void> ComposeAlpha(double opacity, const SVGElementRef& mask, const SVGElementRef& clip,
							  const Extent& extent, Drawing draw) noexcept;
	Result<SVGElementRef> FindReferenced(const String* id, SVGImportElementKind kind) noexcept;
	Result<bool> ClipSimply(const SVGElementRef& clip) noexcept;
	Result<PatternPtr> DrawClip(const SVGElementRef& clip) noexcept;
	Result<PatternPtr> DrawMask(const SVGElementRef& mask, const Rectangle& area, const Extent& extent,
								double opacity) noexcept;
	void ClipToRegion(const SVGElementRef& mask, const Rectangle* bounds) noexcept;
	void ClipToRectangle(const Rectangle& rectangle, const Matrix2d& transform) noexcept;
	Result<void> EnterContent(const SVGElementRef& element) noexcept;
	double GetMaskDetail() const noexcept;
	Result<Rectangle> Measure(Drawing draw) noexcept;
	Rectangle GetClipExtents() const noexcept;

	/// Reports that something is left out; once a picture for each reason.
	void Omit(Omission omission) noexcept;
	/// Pays for work where the drawing is by reference; false when that is used up.
	bool PayInReference(double work) noexcept;

	Picture _picture;
	PangoContextPtr _fonts;
	cairo_t* _drawing = nullptr; ///< The picture's, or that of a mask being made.
	State _state;
	Mode _mode = Mode::paint;
	Budget _budget;
	const ElementScope* _innermost = nullptr;
	int _depth = 0;
	int _references = 0; ///< Number of references that lead to where the drawing is.
	int _layers = 0;     ///< Number of layers that are open.
	Rectangle _measured; ///< What the measuring has found so far, in the drawing's coordinates.
	std::uint32_t _omissions = 0;
};

} // namespace orvan::cairo
