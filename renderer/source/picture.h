// SPDX-License-Identifier: MIT
/// The picture that is being made: its size, its surface and its file.
#pragma once

#include "drawing/geometry.h"
#include "handles.h"
#include "svg_render_target.h"

namespace orvan::cairo
{

class Picture
{
public:
	/// A picture of no size, into which nothing is drawn.
	Picture() noexcept = default;

	/// Works the size out, refuses what is too large, and makes the surface with its background.
	/// `area` is the part of the document, in its user units, that the picture is of; null for all of it.
	static Result<Picture> Create(const SVGDocumentRef& document, const SVGRenderOptions& options,
								  const drawing::Rectangle* area = nullptr) noexcept;

	/// What to draw with, its transform the identity; null when the picture is ended or was never begun.
	cairo_t* GetDrawing() const noexcept
	{
		return _drawing.get();
	}

	const SVGDocumentRef& GetDocument() const noexcept
	{
		return _document;
	}

	/// Size of what is shown in user units, and the size that it would have by itself.
	const Vector2d& GetViewportSize() const noexcept
	{
		return _viewportSize;
	}

	const Vector2d& GetNaturalSize() const noexcept
	{
		return _naturalSize;
	}

	/// Pixels, or points of a page, for one unit of the viewport.
	double GetUnit() const noexcept
	{
		return _unit;
	}

	/// Width and height in pixels or points.
	const Vector2d& GetSize() const noexcept
	{
		return _size;
	}

	/// Ends the drawing and writes the file.
	Result<void> Write(const String& path) noexcept;
	/// Ends the drawing and shows the pixels.
	Result<SVGRenderPixels> GetPixels() noexcept;

private:
	Result<void> End() noexcept;

	SVGDocumentRef _document;
	SVGRenderOutput _output = SVGRenderOutput::pixels;
	Vector2d _naturalSize;
	Vector2d _viewportSize;
	Vector2d _size;
	double _unit = 1.0;
	std::unique_ptr<BaseArray<unsigned char>> _page; ///< Where the surface of a page writes to.
	SurfacePtr _surface;
	CairoPtr _drawing;
};

} // namespace orvan::cairo
