// SPDX-License-Identifier: MIT
#include "orientation.h"

#include <libexif/exif-data.h>
#include <memory>

namespace orvan::images
{
namespace
{

constexpr int kUpright = 1;

struct ReleaseData
{
	void operator()(ExifData* data) const noexcept
	{
		exif_data_unref(data);
	}
};

} // namespace

int FindOrientation(Bytes file) noexcept
{
	const std::unique_ptr<ExifData, ReleaseData> data(
		exif_data_new_from_data(file.data(), static_cast<unsigned>(file.size())));
	const ExifEntry* const entry = data ? exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION) : nullptr;
	if (entry == nullptr || entry->format != EXIF_FORMAT_SHORT || entry->size < 2)
		return kUpright;
	const int orientation = exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
	return orientation >= 1 && orientation <= 8 ? orientation : kUpright;
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
