// SPDX-License-Identifier: MIT
#include "picture.h"

#include "drawing/document_size.h"
#include "drawing/lengths.h"
#include "drawing/limits.h"
#include "images/png_writer.h"

#include <cairo-pdf.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

constexpr double kPointsPerUnit = 72.0 / 96.0;

Result<void> ToResult(cairo_status_t status) noexcept
{
	if (status == CAIRO_STATUS_SUCCESS)
		return {};
	if (status == CAIRO_STATUS_NO_MEMORY)
		return OutOfMemoryError();
	return UnknownError("The picture could not be drawn: @.", std::string_view(cairo_status_to_string(status)));
}

bool IsSide(double side) noexcept
{
	return std::isfinite(side) && side >= 0.0;
}

/// The size of the viewport in user units, from what the host and the document say.
Result<Vector2d> GetViewportSize(const SVGRenderOptions& options, const Vector2d& natural) noexcept
{
	if (!IsSide(options.width) || !IsSide(options.height) || !IsSide(options.scale) || options.scale == 0.0)
	{
		return IllegalArgumentError("A picture of @ by @ at scale @ cannot be made.", options.width, options.height,
									options.scale);
	}
	if (!(natural.x > 0.0 && natural.y > 0.0 && std::isfinite(natural.x / natural.y)))
		return IllegalArgumentError("The document is @ by @ in size: there is nothing to draw.", natural.x, natural.y);
	Vector2d size{options.width, options.height};
	if (size.x == 0.0)
		size.x = size.y == 0.0 ? natural.x : size.y * natural.x / natural.y;
	if (size.y == 0.0)
		size.y = size.x * natural.y / natural.x;
	return size;
}

/// The surface of a picture of pixels, in the caller's memory where there is some.
Result<SurfacePtr> MakeSurface(const SVGRenderOptions& options, int width, int height) noexcept
{
	if (options.pixels == nullptr)
		return SurfacePtr(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
	const int alignment = static_cast<int>(reinterpret_cast<std::uintptr_t>(options.pixels) % 4);
	if (alignment != 0 || options.stride % 4 != 0 || std::abs(options.stride) / 4 < width)
	{
		return IllegalArgumentError("Pixels @ bytes apart from row to row cannot hold rows of @ pixels.",
									options.stride, width);
	}
	for (std::ptrdiff_t row = 0; row < height; row++)
		std::memset(options.pixels + row * options.stride, 0, static_cast<std::size_t>(width) * 4);
	return SurfacePtr(
		cairo_image_surface_create_for_data(options.pixels, CAIRO_FORMAT_ARGB32, width, height, options.stride));
}

cairo_status_t AppendToPage(void* page, const unsigned char* bytes, unsigned int count) noexcept
{
	const bool isOk = static_cast<BaseArray<unsigned char>*>(page)->AppendAll(bytes, count).IsOk();
	return isOk ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_NO_MEMORY;
}

} // namespace

Result<Picture> Picture::Create(const SVGDocumentRef& document, const SVGRenderOptions& options,
								const Rectangle* area) noexcept
{
	if (!document || !document->GetRootElement())
		return NullReferenceError("There is no document to draw.");
	if (!(options.deadline > 0.0 && options.memoryLimit > 0.0))
	{
		return IllegalArgumentError("A picture cannot be made in @ seconds and @ bytes.", options.deadline,
									options.memoryLimit);
	}
	Picture picture;
	picture._document = document;
	picture._output = options.output;
	picture._naturalSize = area != nullptr ? Vector2d{area->GetWidth(), area->GetHeight()}
										   : drawing::GetNaturalSize(document->GetRootElement());
	picture._viewportSize = ORVAN_TRY(cairo::GetViewportSize(options, picture._naturalSize));

	const bool isPage = options.output == SVGRenderOutput::page;
	picture._unit = options.scale * (isPage ? kPointsPerUnit : 1.0);
	Vector2d size{picture._viewportSize.x * picture._unit, picture._viewportSize.y * picture._unit};
	if (!isPage)
	{
		// Rounded up, so that nothing is cut off, but not for the sake of a rounding error.
		size = {std::max(1.0, std::ceil(size.x - 1e-6)), std::max(1.0, std::ceil(size.y - 1e-6))};
	}
	const double side = isPage ? kMaxPageSide : kMaxSide;
	if (!(size.x <= side && size.y <= side && (isPage || size.x * size.y <= kMaxPixels)))
	{
		return IllegalArgumentError("A picture of @ by @ is too large: at most @ on a side and @ pixels.", size.x,
									size.y, side, kMaxPixels);
	}
	picture._size = size;
	if (isPage)
	{
		picture._page.reset(new (std::nothrow) BaseArray<unsigned char>());
		if (picture._page == nullptr)
			return OutOfMemoryError();
		picture._surface.reset(cairo_pdf_surface_create_for_stream(&AppendToPage, picture._page.get(), size.x, size.y));
	}
	else
	{
		picture._surface = ORVAN_TRY(MakeSurface(options, static_cast<int>(size.x), static_cast<int>(size.y)));
	}
	ORVAN_TRY(ToResult(cairo_surface_status(picture._surface.get())));
	picture._drawing.reset(cairo_create(picture._surface.get()));
	ORVAN_TRY(ToResult(cairo_status(picture._drawing.get())));
	if (const double opacity = ClampToUnit(options.backgroundOpacity); opacity > 0.0)
	{
		const Color& color = options.background;
		cairo_set_source_rgba(picture._drawing.get(), ClampToUnit(color.red), ClampToUnit(color.green),
							  ClampToUnit(color.blue), opacity);
		cairo_paint(picture._drawing.get());
	}
	return picture;
}

Result<void> Picture::End() noexcept
{
	if (_surface == nullptr)
		return IllegalStateError("There is no picture: none was begun.");
	const cairo_status_t status = _drawing != nullptr ? cairo_status(_drawing.get()) : CAIRO_STATUS_SUCCESS;
	_drawing.reset();
	if (_output == SVGRenderOutput::page)
		cairo_surface_finish(_surface.get());
	else
		cairo_surface_flush(_surface.get());
	ORVAN_TRY(ToResult(status));
	return ToResult(cairo_surface_status(_surface.get()));
}

Result<void> Picture::Write(const String& path) noexcept
{
	ORVAN_TRY(End());
	const Url url = ORVAN_TRY(Url::FromPath(path));
	std::FILE* const file = std::fopen(path.CString(), "wb");
	if (file == nullptr)
		return IoError(url, "The file cannot be written: @.", std::string_view(std::strerror(errno)));
	bool isWritten = false;
	errno = 0;
	if (_output == SVGRenderOutput::page)
	{
		isWritten = std::fwrite(_page->begin(), 1, _page->GetCount(), file) == _page->GetCount();
	}
	else
	{
		cairo_surface_t* const surface = _surface.get();
		isWritten =
			images::WritePng(file, {cairo_image_surface_get_data(surface), cairo_image_surface_get_width(surface),
									cairo_image_surface_get_height(surface), cairo_image_surface_get_stride(surface)});
	}
	const bool isWithoutMemory = !isWritten && errno == ENOMEM;
	// Closing writes what is still in the buffer: a full disk may show only there.
	const bool isClosed = std::fclose(file) == 0;
	if (isWithoutMemory)
		return OutOfMemoryError();
	if (!isWritten || !isClosed)
		return IoError(url, "The file could not be written to its end.");
	return {};
}

Result<SVGRenderPixels> Picture::GetPixels() noexcept
{
	if (_output == SVGRenderOutput::page)
		return IllegalStateError("A page has no pixels.");
	ORVAN_TRY(End());
	return SVGRenderPixels{cairo_image_surface_get_data(_surface.get()), static_cast<std::int32_t>(_size.x),
						   static_cast<std::int32_t>(_size.y), cairo_image_surface_get_stride(_surface.get())};
}

} // namespace orvan::cairo
