// SPDX-License-Identifier: MIT
#include "context.h"

#include "drawing/alone.h"
#include "drawing/document_size.h"
#include "drawing/measure.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "painter.h"
#include "svg_import.h"

#include <algorithm>
#include <dlfcn.h>

namespace orvan::cairo
{

using namespace drawing;

namespace
{

constexpr double kBytesPerPixel = 4.0;

/// The time for drawing: of the deadline, a second for ten million pixels is for writing the file, but no more than two
/// thirds of it.
double GetSecondsToDraw(double deadline, double pixels) noexcept
{
	constexpr double kPixelsPerSecond = 1e7;
	return std::max(deadline / 3.0, deadline - pixels / kPixelsPerSecond);
}

/// How many pixels for a unit it takes to find out what an element paints: as many as the picture has, or a multiple
/// of that, so that edges between pixels stay there.
double GetInkScale(const Rectangle& area, double scale) noexcept
{
	constexpr double kSide = 2048.0;
	const double most = kSide / std::max(area.GetWidth(), area.GetHeight());
	return most > scale ? scale * std::floor(most / scale) : most;
}

/// A box around the pixels that are not transparent; empty when all are.
Rectangle FindPaintedPixels(cairo_surface_t* surface) noexcept
{
	cairo_surface_flush(surface);
	const unsigned char* const data = cairo_image_surface_get_data(surface);
	const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
	const int width = cairo_image_surface_get_width(surface);
	const int height = cairo_image_surface_get_height(surface);
	Rectangle box;
	for (int y = 0; y < height; y++)
	{
		const auto* const row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
		const auto isPainted = [](std::uint32_t pixel)
		{
			return pixel >> 24 != 0;
		};
		const auto* const first = std::find_if(row, row + width, isPainted);
		if (first == row + width)
			continue;
		const auto* last = row + width - 1;
		while (!isPainted(*last))
			last--;
		box.Add({static_cast<double>(first - row), static_cast<double>(y)});
		box.Add({static_cast<double>(last - row + 1), static_cast<double>(y + 1)});
	}
	return box;
}

} // namespace

Result<void> Context::Initialize() noexcept
{
	// The font library registers its types with a library that never leaves the process, and cannot do so twice.
	dlopen("libpangocairo-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
	return {};
}

Result<void> Context::Begin(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept
{
	Drop();
	_picture = Picture();
	if (options.elementId.IsEmpty())
	{
		_picture = ORVAN_TRY(Picture::Create(document, options));
		const double unit = _picture.GetUnit();
		Prepare(document, options, _picture.GetNaturalSize(), _picture.GetViewportSize(), Scaling(unit, unit));
		return {};
	}
	const Rectangle ink = ORVAN_TRY(FindInk(document, options));
	_picture = ORVAN_TRY(Picture::Create(document, options, &ink));
	// A size that is given fits the ink, in its middle.
	const Vector2d& size = _picture.GetViewportSize();
	const double scale = std::min(size.x / ink.GetWidth(), size.y / ink.GetHeight());
	const Matrix2d fit =
		Translation((size.x - ink.GetWidth() * scale) / 2.0, (size.y - ink.GetHeight() * scale) / 2.0) *
		Scaling(scale, scale) * Translation(-ink.left, -ink.top);
	const Vector2d natural = GetNaturalSize(document->GetRootElement());
	_element = ORVAN_TRY(FindElement(document, options.elementId));
	Prepare(document, options, natural, natural, Scaling(_picture.GetUnit(), _picture.GetUnit()) * fit);
	return {};
}

void Context::Prepare(const SVGDocumentRef& document, const SVGRenderOptions& options, const Vector2d& natural,
					  const Vector2d& viewport, const Matrix2d& placement) noexcept
{
	_job.emplace(Job{{document, natural, viewport, _fonts}, options.output});
	if (options.output == SVGRenderOutput::pixels)
		_job->rasterizer = &_rasterizer;
	Scene& scene = _job->scene;
	scene.initialStyle.color = options.currentColor;
	scene.unit = placement.axis1.x;
	scene.placement = placement;
	_images.emplace(scene, 0, options.output == SVGRenderOutput::page);
	scene.images = &*_images;
	if (const auto import = Cast<SVGDocumentImportInterface>(document))
		scene.isComplete = import->GetImportOptions().isComplete;
	const double pixels = _picture.GetSize().x * _picture.GetSize().y;
	// A page has no pixels of its own.
	const double ownPixels = options.output == SVGRenderOutput::pixels ? pixels : 0.0;
	scene.limits =
		Limits(pixels, GetSecondsToDraw(options.deadline, ownPixels), options.memoryLimit - ownPixels * kBytesPerPixel);
}

Result<Rectangle> Context::FindInk(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept
{
	if (!document)
		return NullReferenceError("There is no document to draw.");
	_element = ORVAN_TRY(FindElement(document, options.elementId));
	if (!_element)
		return NotFoundError("SVG element with id '@' not found.", options.elementId);
	ObjectBase* const root = document->GetRootElement().GetObject();
	const Vector2d natural = GetNaturalSize(document->GetRootElement());
	const auto isNothing = [&](const Rectangle& area)
	{
		return !area.IsFinite() || !(area.GetArea() > 0.0);
	};
	// First roughly where it is, and then which pixels it paints.
	Prepare(document, options, natural, natural, {});
	MeasureSink measure(_job->scene, {});
	ORVAN_TRY(DrawInto(root, measure));
	Rectangle area = measure.GetTouched().RoundOut();
	if (!isNothing(area))
	{
		const bool isSized = options.width > 0.0 || options.height > 0.0;
		const double scale = GetInkScale(area, isSized ? 1.0 : options.scale);
		const Vector2d size{std::ceil(area.GetWidth() * scale), std::ceil(area.GetHeight() * scale)};
		const SurfacePtr surface(
			cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(size.x), static_cast<int>(size.y)));
		const CairoPtr drawing(cairo_create(surface.get()));
		if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS)
			return OutOfMemoryError();
		const Matrix2d placement = Scaling(scale, scale) * Translation(-area.left, -area.top);
		Prepare(document, options, natural, natural, placement);
		const Canvas canvas{*_job, drawing.get()};
		Painter painter(canvas);
		ORVAN_TRY(DrawInto(root, painter));
		area = Transform(Invert(placement), FindPaintedPixels(surface.get()));
	}
	Drop();
	if (isNothing(area))
		return IllegalArgumentError("Nothing is painted of the element with id '@'.", options.elementId);
	return area;
}

/// Drops the job with what was made for it.
void Context::Drop() noexcept
{
	_element = nullptr;
	_images.reset();
	_job.reset();
}

Vector2d Context::GetSize() const noexcept
{
	return _picture.GetSize();
}

Result<void> Context::Finish(const String& path) noexcept
{
	Drop();
	return _picture.Write(path);
}

Result<SVGRenderPixels> Context::GetPixels() noexcept
{
	Drop();
	return _picture.GetPixels();
}

/// Draws an element with everything below it; nothing when there is no picture.
Result<void> Context::Draw(ObjectBase* element) noexcept
{
	if (!_job)
		return {};
	const Canvas canvas{*_job, _picture.GetDrawing()};
	Painter painter(canvas);
	return DrawInto(element, painter);
}

Result<void> Context::DrawInto(ObjectBase* element, Sink& sink) noexcept
{
	Scene& scene = _job->scene;
	Place place;
	place.style = scene.initialStyle;
	place.transform = scene.placement;
	const Vector2d& size = scene.viewportSize;
	place.viewport = {size.x, size.y, {size.x, size.y}};
	if (!_element)
		return Walk(scene, sink).DrawElement(element, place, nullptr);
	AloneSink alone(sink, _element.GetObject());
	return Walk(scene, alone).DrawElement(element, place, nullptr);
}

Result<void> Context::DrawSVG(const SVGSVGElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawUse(const SVGUseElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawGroup(const SVGGroupElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawPath(const SVGPathElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawRectangle(const SVGRectElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawLine(const SVGLineElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawCircle(const SVGCircleElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

Result<void> Context::DrawText(const SVGTextElementRef& element) noexcept
{
	return Draw(element.GetObject());
}

} // namespace orvan::cairo
