// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <png.h>

#include <csetjmp>
#include <cstring>

namespace orvan::images
{
namespace
{

/// Reads a damaged or truncated file as far as it goes, a row at a time. Colours are taken as they stand: profiles and
/// exponents that say otherwise are those of the file's undamaged kin alone.
class PatientReader
{
public:
	explicit PatientReader(Bytes file) noexcept : _rest(file)
	{
		_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, &Ignore);
		_info = _png != nullptr ? png_create_info_struct(_png) : nullptr;
	}

	PatientReader(const PatientReader&) = delete;

	~PatientReader()
	{
		png_destroy_read_struct(&_png, &_info, nullptr);
	}

	filters::Raster Read(const Bounds& bounds) noexcept
	{
		if (_info == nullptr || !ReadHeader())
			return {};
		filters::Raster raster =
			MakePixels(png_get_image_width(_png, _info), png_get_image_height(_png, _info), bounds);
		if (!raster.GetBox().IsEmpty())
			ReadRows(raster);
		return raster;
	}

private:
	// The library leaves its functions by a jump to here: nothing that has to be destroyed may stand in between.
	bool ReadHeader() noexcept
	{
		if (setjmp(png_jmpbuf(_png)) != 0)
			return false;
		png_set_read_fn(_png, this, &TakeBytes);
		// What the library asks for in one go it gets as a whole, or not at all.
		constexpr std::size_t kPortion = 64;
		png_set_compression_buffer_size(_png, kPortion);
		png_set_crc_action(_png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
#ifdef PNG_IGNORE_ADLER32
		png_set_option(_png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
#endif
		png_read_info(_png, _info);
		png_set_expand(_png);
		png_set_strip_16(_png);
		png_set_gray_to_rgb(_png);
		png_set_add_alpha(_png, 0xFF, PNG_FILLER_AFTER);
		png_set_bgr(_png);
		_passes = png_set_interlace_handling(_png);
		png_read_update_info(_png, _info);
		return png_get_rowbytes(_png, _info) == png_get_image_width(_png, _info) * sizeof(std::uint32_t);
	}

	void ReadRows(filters::Raster& raster) noexcept
	{
		if (setjmp(png_jmpbuf(_png)) != 0)
			return;
		const auto width = static_cast<std::size_t>(raster.GetBox().GetWidth());
		const auto height = static_cast<std::size_t>(raster.GetBox().GetHeight());
		for (int pass = 0; pass < _passes; pass++)
		{
			for (std::size_t row = 0; row < height; row++)
				png_read_row(_png, reinterpret_cast<png_bytep>(raster.GetPixels() + row * width), nullptr);
		}
	}

	static void TakeBytes(png_structp png, png_bytep to, std::size_t count)
	{
		auto& reader = *static_cast<PatientReader*>(png_get_io_ptr(png));
		if (count > reader._rest.size())
			png_error(png, "The file ends here.");
		std::memcpy(to, reader._rest.data(), count);
		reader._rest = reader._rest.subspan(count);
	}

	[[noreturn]] static void Fail(png_structp png, png_const_charp)
	{
		png_longjmp(png, 1);
	}

	static void Ignore(png_structp, png_const_charp)
	{
	}

	Bytes _rest;
	png_structp _png = nullptr;
	png_infop _info = nullptr;
	int _passes = 0;
};

filters::Raster DecodeDamaged(Bytes file, const Bounds& bounds) noexcept
{
	filters::Raster raster = PatientReader(file).Read(bounds);
	if (!raster.GetBox().IsEmpty())
		MultiplyAll(raster);
	return raster;
}

} // namespace

filters::Raster DecodePng(Bytes file, const Bounds& bounds) noexcept
{
	png_image image{};
	image.version = PNG_IMAGE_VERSION;
	if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
		return DecodeDamaged(file, bounds);
	// Files that do not say otherwise hold colours as they are shown.
	image.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
	filters::Raster raster = MakePixels(image.width, image.height, bounds);
	// The bytes of a pixel in the order of a little-endian number with alpha on top.
	image.format = PNG_FORMAT_BGRA;
	const bool isRead =
		!raster.GetBox().IsEmpty() && png_image_finish_read(&image, nullptr, raster.GetPixels(), 0, nullptr) != 0;
	png_image_free(&image);
	if (!isRead)
		return raster.GetBox().IsEmpty() ? filters::Raster() : DecodeDamaged(file, bounds);
	MultiplyAll(raster);
	return raster;
}

} // namespace orvan::images
