// SPDX-License-Identifier: MIT
#include "orientation.h"

#include <string_view>

namespace orvan::images
{
namespace
{

constexpr int kUpright = 1;

/// Whole numbers in a part of a file; 0 beyond its end.
class Numbers
{
public:
	Numbers(Bytes bytes, bool isLittleEndian) noexcept : _bytes(bytes), _isLittleEndian(isLittleEndian)
	{
	}

	std::uint32_t Get(std::size_t offset, std::size_t size) const noexcept
	{
		std::uint32_t number = 0;
		if (offset > _bytes.size() || size > _bytes.size() - offset)
			return 0;
		for (std::size_t i = 0; i < size; i++)
			number = number << 8 | _bytes[offset + (_isLittleEndian ? size - 1 - i : i)];
		return number;
	}

private:
	Bytes _bytes;
	bool _isLittleEndian;
};

/// The orientation in Exif data, which are those of a TIFF file: a list of tags of twelve bytes each.
int FindInExif(Bytes exif) noexcept
{
	constexpr std::uint32_t kOrientationTag = 0x112;
	if (exif.size() < 8)
		return kUpright;
	const Numbers numbers(exif, exif[0] == 'I');
	const std::size_t list = numbers.Get(4, 4);
	const std::size_t count = numbers.Get(list, 2);
	for (std::size_t i = 0; i < count; i++)
	{
		const std::size_t entry = list + 2 + i * 12;
		if (numbers.Get(entry, 2) != kOrientationTag)
			continue;
		const std::uint32_t value = numbers.Get(entry + 8, 2);
		return value >= 1 && value <= 8 ? static_cast<int>(value) : kUpright;
	}
	return kUpright;
}

} // namespace

int FindOrientation(Bytes file) noexcept
{
	constexpr std::string_view kExif("Exif\0\0", 6);
	// A file is a row of segments, each with a mark and a length; those that matter stand before the picture.
	const Numbers numbers(file, false);
	for (std::size_t at = 2; numbers.Get(at, 1) == 0xFF;)
	{
		const std::uint32_t mark = numbers.Get(at + 1, 1);
		const std::size_t length = numbers.Get(at + 2, 2);
		const bool isPicture = mark == 0xDA || mark == 0xD9;
		if (isPicture || length < 2 || at + 2 + length > file.size())
			break;
		const Bytes content = file.subspan(at + 4, length - 2);
		const std::string_view text(reinterpret_cast<const char*>(content.data()), content.size());
		if (mark == 0xE1 && text.starts_with(kExif))
			return FindInExif(content.subspan(kExif.size()));
		at += 2 + length;
	}
	return kUpright;
}

filters::Raster MakeUpright(filters::Raster raster, int orientation) noexcept
{
	if (orientation == kUpright)
		return raster;
	const int width = raster.GetBox().GetWidth();
	const int height = raster.GetBox().GetHeight();
	// From 5 on rows are columns.
	const bool isTurned = orientation >= 5;
	filters::Raster upright(isTurned ? filters::Box{0, 0, height, width} : filters::Box{0, 0, width, height});
	if (!upright.IsThere())
		return {};
	const bool isFromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
	const bool isFromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
	for (int y = 0; y < upright.GetBox().bottom; y++)
	{
		std::uint32_t* const row = upright.GetRow(y);
		for (int x = 0; x < upright.GetBox().right; x++)
		{
			const int fromX = isTurned ? y : x;
			const int fromY = isTurned ? x : y;
			row[x] = raster.GetRow(isFromBottom ? height - 1 - fromY : fromY)[isFromRight ? width - 1 - fromX : fromX];
		}
	}
	return upright;
}

} // namespace orvan::images
