// SPDX-License-Identifier: MIT
#include "png_writer.h"

#include "filters/pixel.h"

#include <png.h>

#include <csetjmp>
#include <cstdlib>
#include <cstring>

namespace orvan::images
{
namespace
{

std::uint32_t GetPixel(const unsigned char* row, int x) noexcept
{
	std::uint32_t pixel;
	std::memcpy(&pixel, row + static_cast<std::ptrdiff_t>(x) * 4, sizeof pixel);
	return pixel;
}

bool IsOpaque(const PixelRows& picture) noexcept
{
	for (int y = 0; y < picture.height; y++)
	{
		const unsigned char* row = picture.first + y * picture.stride;
		for (int x = 0; x < picture.width; x++)
		{
			if (GetPixel(row, x) >> 24 != 255)
				return false;
		}
	}
	return true;
}

class Writer
{
public:
	explicit Writer(const PixelRows& picture) noexcept : _picture(picture), _isOpaque(IsOpaque(picture))
	{
		_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, &Ignore);
		_info = _png != nullptr ? png_create_info_struct(_png) : nullptr;
		_row = static_cast<unsigned char*>(std::malloc(static_cast<std::size_t>(picture.width) * 4));
	}

	Writer(const Writer&) = delete;

	~Writer()
	{
		png_destroy_write_struct(&_png, &_info);
		std::free(_row);
	}

	// The library leaves its functions by a jump to here: nothing that has to be destroyed may stand in between.
	bool Write(std::FILE* file) noexcept
	{
		if (_info == nullptr || _row == nullptr || setjmp(png_jmpbuf(_png)) != 0)
			return false;
		png_init_io(_png, file);
		png_set_IHDR(_png, _info, static_cast<png_uint_32>(_picture.width), static_cast<png_uint_32>(_picture.height),
					 8, _isOpaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
					 PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
		// Drawings are areas of one colour: rows as they stand pack as well as filtered ones, in a quarter of the time.
		constexpr int kLevel = 4;
		png_set_filter(_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
		png_set_compression_level(_png, kLevel);
		png_write_info(_png, _info);
		for (int y = 0; y < _picture.height; y++)
		{
			FillRow(_picture.first + y * _picture.stride);
			png_write_row(_png, _row);
		}
		png_write_end(_png, nullptr);
		return true;
	}

private:
	void FillRow(const unsigned char* from) noexcept
	{
		unsigned char* to = _row;
		for (int x = 0; x < _picture.width; x++)
		{
			const filters::Channels color = filters::Unmultiply(GetPixel(from, x));
			*to++ = static_cast<unsigned char>(color.red);
			*to++ = static_cast<unsigned char>(color.green);
			*to++ = static_cast<unsigned char>(color.blue);
			if (!_isOpaque)
				*to++ = static_cast<unsigned char>(color.alpha);
		}
	}

	[[noreturn]] static void Fail(png_structp png, png_const_charp)
	{
		png_longjmp(png, 1);
	}

	static void Ignore(png_structp, png_const_charp)
	{
	}

	const PixelRows& _picture;
	bool _isOpaque;
	png_structp _png = nullptr;
	png_infop _info = nullptr;
	unsigned char* _row = nullptr;
};

} // namespace

bool WritePng(std::FILE* file, const PixelRows& picture) noexcept
{
	return Writer(picture).Write(file);
}

} // namespace orvan::images
