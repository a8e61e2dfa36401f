// SPDX-License-Identifier: MIT
/// The drawing context: what a host hands a tree to.
#pragma once

#include "canvas.h"
#include "drawing/sink.h"
#include "glyphs.h"
#include "image_store.h"
#include "picture.h"
#include "rasterizer.h"

#include <optional>

namespace orvan::cairo
{

/// The implementation of `SVGContextInterface` and `SVGRenderTargetInterface`. It owns the picture; drawing is a walk
/// with a painter.
class Context : public ObjectBase
{
public:
	/// Keeps the font libraries in memory for the life of the process, since they cannot be loaded a second time.
	Result<void> Initialize() noexcept;

	// SVGRenderTargetInterface
	Result<void> Begin(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept;
	Vector2d GetSize() const noexcept;
	Result<void> Finish(const String& path) noexcept;
	Result<SVGRenderPixels> GetPixels() noexcept;

	// SVGContextInterface: a host hands over elements one at a time, most often just the root.
	Result<void> DrawSVG(const SVGSVGElementRef& element) noexcept;
	Result<void> DrawUse(const SVGUseElementRef& element) noexcept;
	Result<void> DrawGroup(const SVGGroupElementRef& element) noexcept;
	Result<void> DrawPath(const SVGPathElementRef& element) noexcept;
	Result<void> DrawRectangle(const SVGRectElementRef& element) noexcept;
	Result<void> DrawLine(const SVGLineElementRef& element) noexcept;
	Result<void> DrawCircle(const SVGCircleElementRef& element) noexcept;
	Result<void> DrawText(const SVGTextElementRef& element) noexcept;

private:
	void Drop() noexcept;
	/// Gets ready to draw a document into a viewport, both of these sizes, which `placement` leads to the picture.
	void Prepare(const SVGDocumentRef& document, const SVGRenderOptions& options, const Vector2d& natural,
				 const Vector2d& viewport, const Matrix2d& placement) noexcept;
	/// What the element of the options paints, in the document's user units.
	Result<drawing::Rectangle> FindInk(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept;
	/// Draws an element, of which `_element` alone when that is not null.
	Result<void> DrawInto(ObjectBase* element, drawing::Sink& sink) noexcept;
	Result<void> Draw(ObjectBase* element) noexcept;

	Picture _picture;
	drawing::Fonts _fonts{&MakeFontContext};
	Rasterizer _rasterizer;
	std::optional<Job> _job; ///< Between `Begin` and the end of the picture.
	std::optional<ImageStore> _images;
	SVGElementRef _element; ///< The one that is drawn alone, or null.
};

} // namespace orvan::cairo
