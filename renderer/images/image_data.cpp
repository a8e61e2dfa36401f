// SPDX-License-Identifier: MIT
#include "image_data.h"

#include "filters/pixel.h"

#include <string_view>

namespace orvan::images
{

using filters::Raster;

Format FindFormat(Bytes file) noexcept
{
	const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
	if (text.starts_with("\x89PNG\r\n\x1A\n"))
		return Format::png;
	if (text.starts_with("\xFF\xD8\xFF"))
		return Format::jpeg;
	if (text.starts_with("GIF87a") || text.starts_with("GIF89a"))
		return Format::gif;
	if (text.starts_with("RIFF") && text.size() >= 12 && text.substr(8, 4) == "WEBP")
		return Format::webp;
	const std::size_t start = text.find_first_not_of(" \t\r\n");
	const bool isText = start != std::string_view::npos && text[start] == '<';
	const bool hasMark =
		text.starts_with("\xEF\xBB\xBF") || text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
	const bool isPacked = text.starts_with("\x1F\x8B");
	return isText || hasMark || isPacked ? Format::svg : Format::unknown;
}

Raster Decode(Bytes file, const Bounds& bounds) noexcept
{
	switch (FindFormat(file))
	{
	case Format::png:
		return DecodePng(file, bounds);
	case Format::jpeg:
		return DecodeJpeg(file, bounds);
	case Format::gif:
		return DecodeGif(file, bounds);
	case Format::webp:
		return DecodeWebp(file, bounds);
	case Format::svg:
	case Format::unknown:
		break;
	}
	return {};
}

Raster MakePixels(std::int64_t width, std::int64_t height, const Bounds& bounds) noexcept
{
	if (!bounds.Allow(width, height))
		return {};
	Raster raster(filters::Box{0, 0, static_cast<int>(width), static_cast<int>(height)});
	return raster.IsThere() ? std::move(raster) : Raster();
}

void MultiplyAll(Raster& raster) noexcept
{
	std::uint32_t* const pixels = raster.GetPixels();
	for (std::size_t i = 0; i < raster.GetCount(); i++)
	{
		if (pixels[i] >> 24 != 255)
			pixels[i] = filters::MultiplyByAlpha(filters::Split(pixels[i]));
	}
}

} // namespace orvan::images
