// SPDX-License-Identifier: MIT
/// What the parts of one picture share, and where they draw.
#pragma once

#include "drawing/frame.h"
#include "drawing/scene.h"
#include "handles.h"
#include "svg_render_target.h"

namespace orvan::cairo
{

class GradientCache;
class Rasterizer;

/// Deletes the cache where its type is known.
struct DeleteCache
{
	void operator()(GradientCache* cache) const noexcept;
};

/// A picture being drawn.
struct Job
{
	drawing::Scene scene;
	SVGRenderOutput output = SVGRenderOutput::pixels;
	std::unique_ptr<GradientCache, DeleteCache> gradients{}; ///< Made when the first gradient is used.
	Rasterizer* rasterizer = nullptr;                        ///< What the pictures of one context share; null for none.
};

/// Where a part draws: the picture, or a surface that is made for it. All surfaces of a picture have its coordinates,
/// and outlines are transformed to these on their way in; strokes and text set a further transform only for as long as
/// they take. The drawing library's own transform leads from there to the surface: it is the identity but where a
/// filter works on a grid that lies otherwise. Clips are the library's.
struct Canvas
{
	Job& job;
	cairo_t* drawing;

	/// What can still be drawn on, in the picture's coordinates; empty when everything is clipped away.
	drawing::Rectangle GetClipExtents() const noexcept;
	/// Clips to a rectangle in the coordinates of `transform`.
	void ClipTo(const drawing::Rectangle& rectangle, const Matrix2d& transform) const noexcept;
};

/// Keeps the drawing library's own state, clips included, and brings it back.
class SavedDrawing
{
public:
	explicit SavedDrawing(const Canvas& canvas) noexcept : _drawing(canvas.drawing)
	{
		cairo_save(_drawing);
	}

	SavedDrawing(const SavedDrawing&) = delete;

	~SavedDrawing()
	{
		cairo_restore(_drawing);
	}

private:
	cairo_t* _drawing;
};

/// Draws in the coordinates of a transform on top of the drawing's own, for as long as it lives.
class TransformedDrawing
{
public:
	TransformedDrawing(cairo_t* drawing, const Matrix2d& transform) noexcept : _drawing(drawing)
	{
		cairo_get_matrix(drawing, &_before);
		const cairo_matrix_t matrix = ToCairo(transform);
		cairo_transform(drawing, &matrix);
	}

	TransformedDrawing(const TransformedDrawing&) = delete;

	~TransformedDrawing()
	{
		cairo_set_matrix(_drawing, &_before);
	}

private:
	cairo_t* _drawing;
	cairo_matrix_t _before;
};

} // namespace orvan::cairo
