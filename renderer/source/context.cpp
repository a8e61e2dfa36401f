// SPDX-License-Identifier: MIT
#include "context.h"

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
	_picture = ORVAN_TRY(Picture::Create(document, options));
	const double pixels = _picture.GetSize().x * _picture.GetSize().y;
	_job.emplace(Job{{document, _picture.GetNaturalSize(), _picture.GetViewportSize(), _fonts}, options.output});
	Scene& scene = _job->scene;
	scene.initialStyle.color = options.currentColor;
	scene.unit = _picture.GetUnit();
	scene.placement = Scaling(scene.unit, scene.unit);
	_images.emplace(scene, 0, options.output == SVGRenderOutput::page);
	scene.images = &*_images;
	if (const auto import = Cast<SVGDocumentImportInterface>(document))
		scene.isComplete = import->GetImportOptions().isComplete;
	// A page has no pixels of its own.
	const double ownPixels = options.output == SVGRenderOutput::pixels ? pixels : 0.0;
	scene.limits =
		Limits(pixels, GetSecondsToDraw(options.deadline, ownPixels), options.memoryLimit - ownPixels * kBytesPerPixel);
	return {};
}

/// Drops the job with what was made for it.
void Context::Drop() noexcept
{
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
	Place place;
	place.style = _job->scene.initialStyle;
	place.transform = Scaling(_picture.GetUnit(), _picture.GetUnit());
	const Vector2d& size = _picture.GetViewportSize();
	place.viewport = {size.x, size.y, {size.x, size.y}};
	const Canvas canvas{*_job, _picture.GetDrawing()};
	Painter painter(canvas);
	return Walk(_job->scene, painter).DrawElement(element, place, nullptr);
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
