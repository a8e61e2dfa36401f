// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <gif_lib.h>
#include <memory>

namespace orvan::images
{
namespace
{

struct CloseDecoder
{
	void operator()(GifFileType* decoder) const noexcept
	{
		DGifCloseFile(decoder, nullptr);
	}
};

using Decoder = std::unique_ptr<GifFileType, CloseDecoder>;

/// What the decoder was opened with.
struct File
{
	Bytes rest;
	bool isInPicture = false; ///< What follows are blocks, with a byte in front of each that says how long it is.
};

/// Hands over the next bytes. The block at whose inside a file is cut off is said to end there: the decoder takes whole
/// ones only.
int ReadNext(GifFileType* decoder, GifByteType* to, int size) noexcept
{
	auto& [rest, isInPicture] = *static_cast<File*>(decoder->UserData);
	if (isInPicture && size == 1 && !rest.empty() && rest[0] >= rest.size())
	{
		*to = static_cast<GifByteType>(rest.size() - 1);
		rest = rest.subspan(1);
		return 1;
	}
	const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(size));
	std::copy_n(rest.begin(), count, to);
	rest = rest.subspan(count);
	return static_cast<int>(count);
}

/// Goes to the first picture. False when there is none; else `transparent` is the colour that is none, or -1.
bool FindPicture(GifFileType* decoder, int& transparent) noexcept
{
	transparent = NO_TRANSPARENT_COLOR;
	for (GifRecordType type{}; DGifGetRecordType(decoder, &type) == GIF_OK;)
	{
		if (type == IMAGE_DESC_RECORD_TYPE)
			return DGifGetImageDesc(decoder) == GIF_OK;
		int code = 0;
		GifByteType* content = nullptr; // Its length, and then as many bytes.
		if (type != EXTENSION_RECORD_TYPE || DGifGetExtension(decoder, &code, &content) != GIF_OK)
			return false;
		GraphicsControlBlock control{};
		if (code == GRAPHICS_EXT_FUNC_CODE && content != nullptr &&
			DGifExtensionToGCB(content[0], content + 1, &control) == GIF_OK)
			transparent = control.TransparentColor;
		while (content != nullptr)
		{
			if (DGifGetExtensionNext(decoder, &content) != GIF_OK)
				return false;
		}
	}
	return false;
}

std::uint32_t GetPixel(const ColorMapObject* colors, int number) noexcept
{
	if (colors == nullptr || number >= colors->ColorCount)
		return 0;
	const GifColorType& color = colors->Colors[number];
	return 0xFF000000U | static_cast<std::uint32_t>(color.Red) << 16 | static_cast<std::uint32_t>(color.Green) << 8 |
		   color.Blue;
}

/// Unpacks the picture that was found into the place that it has in the whole. Of damaged ones the whole rows
/// before that are there.
bool DecodePicture(GifFileType* decoder, int transparent, filters::Raster& raster) noexcept
{
	const GifImageDesc& picture = decoder->Image;
	const std::unique_ptr<GifPixelType[]> row(new (std::nothrow) GifPixelType[static_cast<std::size_t>(picture.Width)]);
	if (row == nullptr)
		return false;
	const ColorMapObject* const colors = picture.ColorMap != nullptr ? picture.ColorMap : decoder->SColorMap;
	struct Pass
	{
		int first;
		int step;
	};
	constexpr Pass kWhole[] = {{0, 1}};
	constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
	for (const Pass& pass : picture.Interlace ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kWhole))
	{
		for (int y = pass.first; y < picture.Height; y += pass.step)
		{
			if (DGifGetLine(decoder, row.get(), picture.Width) != GIF_OK)
				return true;
			for (int x = 0; x < picture.Width; x++)
			{
				if (row[static_cast<std::size_t>(x)] == transparent)
					continue;
				if (raster.GetBox().Contains(picture.Left + x, picture.Top + y))
					raster.GetRow(picture.Top + y)[picture.Left + x] =
						GetPixel(colors, row[static_cast<std::size_t>(x)]);
			}
		}
	}
	return true;
}

} // namespace

filters::Raster DecodeGif(Bytes file, const Bounds& bounds) noexcept
{
	File source{file};
	const Decoder decoder(DGifOpen(&source, &ReadNext, nullptr));
	int transparent = NO_TRANSPARENT_COLOR;
	if (decoder == nullptr || !FindPicture(decoder.get(), transparent))
		return {};
	source.isInPicture = true;
	filters::Raster raster = MakePixels(decoder->SWidth, decoder->SHeight, bounds);
	if (raster.GetBox().IsEmpty() || !DecodePicture(decoder.get(), transparent, raster))
		return {};
	return raster;
}

} // namespace orvan::images
