// SPDX-License-Identifier: MIT
/// The images of one picture.
#pragma once

#include "drawing/images.h"
#include "drawing/scene.h"
#include "handles.h"

namespace orvan::cairo
{

/// An image of pixels, or a document of its own.
class StoredImage final : public drawing::Image
{
public:
	drawing::ImageSize GetSize() const noexcept override
	{
		return _size;
	}

	/// What is fitted into a viewport of this size: stretched, or in its proportions.
	Vector2d GetContentSize(const Vector2d& viewport, bool isStretched) const noexcept;

	/// True for a document with a view box of some size.
	bool HasViewbox() const noexcept
	{
		return _viewbox.x > 0.0 && _viewbox.y > 0.0;
	}

	/// The pixels; null for a document.
	cairo_surface_t* GetSurface() const noexcept
	{
		return _surface.get();
	}

	/// The document; null for pixels.
	const SVGDocumentRef& GetDocument() const noexcept
	{
		return _document;
	}

private:
	friend class ImageStore;

	drawing::ImageSize _size;
	Vector2d _viewbox; ///< The size of a document's view box; zero without one.
	SurfacePtr _surface;
	SVGDocumentRef _document;
};

/// Loads images: from `data:` URLs, and from files that stand in the folder of the document or below it, links
/// followed. Each link is loaded once. What a document that is an image names has to be in the document itself.
class ImageStore final : public drawing::ImageSource
{
public:
	/// `depth` is how many images the scene's document stands in.
	ImageStore(drawing::Scene& scene, int depth, bool keepsFiles) noexcept
		: _scene(scene), _depth(depth), _keepsFiles(keepsFiles)
	{
	}

	Result<const drawing::Image*> Find(const String& link) noexcept override;

	/// How many images the scene's document stands in.
	int GetDepth() const noexcept
	{
		return _depth;
	}

private:
	struct Entry
	{
		String link;
		std::unique_ptr<StoredImage> image; ///< Null for a link that leads to no image.
	};

	Result<std::unique_ptr<StoredImage>> Load(const String& link) noexcept;
	Result<BaseArray<unsigned char>> ReadLinked(std::string_view link) noexcept;
	Result<void> LoadPixels(const BaseArray<unsigned char>& file, StoredImage& image) noexcept;
	Result<void> LoadDocument(const BaseArray<unsigned char>& file, StoredImage& image) noexcept;

	drawing::Scene& _scene;
	int _depth;
	bool _keepsFiles; ///< A page holds files as they are where it can.
	BaseArray<Entry> _entries;
};

} // namespace orvan::cairo
