// SPDX-License-Identifier: MIT
#include "image_store.h"

#include "drawing/document_size.h"
#include "image_files.h"
#include "images/data_url.h"
#include "images/image_data.h"
#include "images/orientation.h"
#include "svg_import.h"

#include <cstring>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

using Bytes = BaseArray<unsigned char>;

/// Images within images within images …
constexpr int kMaxImageDepth = 6;
constexpr double kBytesPerPixel = 4.0;

/// Gives a surface a copy of the file that it was made from, for pages that can hold that.
Result<void> KeepFile(cairo_surface_t* surface, const Bytes& file) noexcept
{
	auto* const copy = static_cast<unsigned char*>(std::malloc(file.GetCount()));
	if (copy == nullptr)
		return OutOfMemoryError();
	std::memcpy(copy, file.begin(), file.GetCount());
	if (cairo_surface_set_mime_data(surface, CAIRO_MIME_TYPE_JPEG, copy, file.GetCount(), &std::free, copy) !=
		CAIRO_STATUS_SUCCESS)
		std::free(copy);
	return {};
}

} // namespace

Vector2d StoredImage::GetContentSize(const Vector2d& viewport, bool isStretched) const noexcept
{
	// A view box is fitted by the rule of the image alone, whatever size the document states.
	if (HasViewbox() && !isStretched)
		return _viewbox;
	// A document without a size and without proportions takes the viewport's.
	const bool hasShape = (_size.width > 0.0 && _size.height > 0.0) || _size.ratio > 0.0;
	return hasShape ? _size.Complete(0.0, 0.0) : _size.Complete(viewport.x, viewport.y);
}

Result<const Image*> ImageStore::Find(const String& link) noexcept
{
	for (const Entry& entry : _entries)
	{
		if (entry.link.View() == link.View())
			return static_cast<const Image*>(entry.image.get());
	}
	std::unique_ptr<StoredImage> image = ORVAN_TRY(Load(link));
	if (image == nullptr)
		_scene.limits.Omit(Omission::images);
	ORVAN_TRY(_entries.Append({link, std::move(image)}));
	return static_cast<const Image*>(_entries[_entries.GetCount() - 1].image.get());
}

/// Null when there is no image.
Result<std::unique_ptr<StoredImage>> ImageStore::Load(const String& link) noexcept
{
	std::unique_ptr<StoredImage> image;
	if (_scene.limits.IsOver())
		return image;
	const Bytes file = ORVAN_TRY(ReadLinked(link.View()));
	image.reset(new (std::nothrow) StoredImage());
	if (image == nullptr)
		return OutOfMemoryError();
	if (images::FindFormat({file.begin(), file.GetCount()}) == images::Format::svg)
		ORVAN_TRY(LoadDocument(file, *image));
	else
		ORVAN_TRY(LoadPixels(file, *image));
	if (image->_surface == nullptr && !image->_document)
		image.reset();
	return image;
}

Result<Bytes> ImageStore::ReadLinked(std::string_view link) noexcept
{
	if (images::IsDataUrl(link))
		return images::DecodeDataUrl(link);
	// A document that is an image itself is all there is to it.
	if (_depth > 0)
		return Bytes();
	return ReadFileBeside(_scene.document->GetUrl(), link, _scene.limits.GetFreeBytes());
}

Result<void> ImageStore::LoadPixels(const Bytes& file, StoredImage& image) noexcept
{
	images::Bounds bounds;
	bounds.pixels = std::min(kMaxPixels, _scene.limits.GetFreeBytes() / kBytesPerPixel / 2.0);
	const images::Bytes bytes{file.begin(), file.GetCount()};
	const filters::Raster raster = images::Decode(bytes, bounds);
	const filters::Box& box = raster.GetBox();
	if (box.IsEmpty() || !_scene.limits.Hold(box.GetArea() * kBytesPerPixel))
		return {};
	SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, box.GetWidth(), box.GetHeight()));
	unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
	if (pixels == nullptr)
		return OutOfMemoryError();
	std::memcpy(pixels, raster.GetPixels(), raster.GetCount() * sizeof(std::uint32_t));
	cairo_surface_mark_dirty(surface.get());
	// A page would show a file as it lies in there.
	if (_keepsFiles && images::FindFormat(bytes) == images::Format::jpeg && images::FindOrientation(bytes) == 1)
		ORVAN_TRY(KeepFile(surface.get(), file));
	const auto width = static_cast<double>(box.GetWidth());
	const auto height = static_cast<double>(box.GetHeight());
	image._size = {width, height, width / height};
	image._surface = std::move(surface);
	return {};
}

Result<void> ImageStore::LoadDocument(const Bytes& file, StoredImage& image) noexcept
{
	if (_depth >= kMaxImageDepth)
		return {};
	const SVGDocumentRef document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	const auto import = Cast<SVGDocumentImportInterface>(document);
	if (!import)
		return {};
	SVGImportOptions options;
	options.isComplete = options.isTolerant = true;
	ORVAN_TRY(import->SetImportOptions(options));
	ORVAN_TRY(import->InitFromMemory(file.begin(), static_cast<std::int64_t>(file.GetCount()), Url()));
	const SVGImportReport report = ORVAN_TRY(import->GetImportReport());
	if (report.outcome != SVGImportOutcome::loaded && report.outcome != SVGImportOutcome::loadedWithFindings)
		return {};
	const NaturalSize size = GetStatedSize(document->GetRootElement());
	// A size of nothing shows nothing.
	if (size.width.value_or(1.0) > 0.0 && size.height.value_or(1.0) > 0.0)
	{
		image._size = {size.width.value_or(0.0), size.height.value_or(0.0), size.ratio.value_or(0.0)};
		image._document = document;
		if (const auto fit = Cast<SVGFitToViewboxInterface>(document->GetRootElement()))
		{
			const SVGViewbox box = fit->GetViewbox();
			if (!box.isDefault)
				image._viewbox = {box.width.value, box.height.value};
		}
	}
	return {};
}

} // namespace orvan::cairo
