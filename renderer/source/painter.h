// SPDX-License-Identifier: MIT
/// Painting: the sink that makes pictures.
#pragma once

#include "canvas.h"
#include "drawing/sink.h"
#include "drawing/text_layout.h"

#include <span>

namespace orvan::cairo
{

cairo_fill_rule_t ToCairo(SVGFillRule rule) noexcept;

/// Fills and strokes what it is told onto a canvas, with all effects. The canvas must outlive it.
class Painter final : public drawing::Sink
{
public:
	explicit Painter(const Canvas& canvas) noexcept : _canvas(canvas)
	{
	}

	Result<void> DrawShape(const drawing::Frame& frame, drawing::Outline& outline) noexcept override;
	Result<void> DrawText(const drawing::Frame& frame, const drawing::TextLayout& text) noexcept override;
	Result<void> DrawImage(const drawing::Frame& frame, const drawing::PlacedImage& image) noexcept override;
	Result<void> DrawGroup(const drawing::Frame& frame, const drawing::Content& content) noexcept override;
	Result<void> DrawClipped(const drawing::Place& place, const drawing::Rectangle& clip,
							 const drawing::Content& content) noexcept override;

private:
	Result<void> PaintPath(const drawing::Frame& frame, const drawing::Outline& outline,
						   const drawing::Rectangle& bounds, double opacity) noexcept;
	/// Draws fragments as the picture of their text, or of a part of it. `opacity` is that of what is around the part,
	/// where a paint takes it. All that the text may touch lies in `painted`.
	Result<void> PaintPart(const drawing::Frame& frame, const drawing::TextLayout& text,
						   std::span<const drawing::TextFragment> fragments, const drawing::Rectangle& painted,
						   double opacity) noexcept;
	/// Paints fragments of a text that stand in `around`. Parts with effects of their own are composed first.
	Result<void> PaintFragments(const drawing::Frame& around, const drawing::TextLayout& text,
								std::span<const drawing::TextFragment> fragments, const drawing::Rectangle& painted,
								double opacity) noexcept;
	Result<bool> SetFill(const drawing::Frame& frame, const drawing::LazyBox& box, double opacity) noexcept;
	Result<bool> SetStroke(const drawing::Frame& frame, const drawing::LazyBox& box, double opacity) noexcept;
	/// Pays for painting a box and going through `details`, where that is to be paid for.
	bool Pay(const drawing::Place& place, const drawing::Rectangle& painted, double details) noexcept;

	const Canvas& _canvas;
};

} // namespace orvan::cairo
