// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <array>

namespace orvan::images
{
namespace
{

using Palette = std::array<std::uint32_t, 256>;

/// The bytes of a file in their order; zeros behind its end.
class Reader
{
public:
	explicit Reader(Bytes file) noexcept : _rest(file)
	{
	}

	bool IsAtEnd() const noexcept
	{
		return _rest.empty();
	}

	int Byte() noexcept
	{
		if (_rest.empty())
			return 0;
		const int byte = _rest[0];
		_rest = _rest.subspan(1);
		return byte;
	}

	int Word() noexcept
	{
		const int low = Byte();
		return low | Byte() << 8;
	}

	Bytes Take(std::size_t count) noexcept
	{
		const Bytes taken = _rest.first(std::min(count, _rest.size()));
		_rest = _rest.subspan(taken.size());
		return taken;
	}

	/// The next of the blocks that data come in; empty at their end.
	Bytes Block() noexcept
	{
		return Take(static_cast<std::size_t>(Byte()));
	}

	void SkipBlocks() noexcept
	{
		while (!Block().empty())
			continue;
	}

private:
	Bytes _rest;
};

void ReadPalette(Reader& reader, int packed, Palette& palette) noexcept
{
	const int count = 2 << (packed & 7);
	for (int i = 0; i < count; i++)
	{
		const auto red = static_cast<std::uint32_t>(reader.Byte());
		const auto green = static_cast<std::uint32_t>(reader.Byte());
		const auto blue = static_cast<std::uint32_t>(reader.Byte());
		palette[static_cast<std::size_t>(i)] = 0xFF000000 | red << 16 | green << 8 | blue;
	}
}

/// Codes of 2 to 12 bits out of a sequence of blocks.
class Codes
{
public:
	explicit Codes(Reader& reader) noexcept : _reader(reader)
	{
	}

	/// The next code, or -1 at the end.
	int Next(int size) noexcept
	{
		while (_count < size)
		{
			if (_block.empty())
				_block = _reader.Block();
			if (_block.empty())
				return -1;
			_bits |= static_cast<std::uint32_t>(_block[0]) << _count;
			_count += 8;
			_block = _block.subspan(1);
		}
		const auto code = static_cast<int>(_bits & ((1U << size) - 1));
		_bits >>= size;
		_count -= size;
		return code;
	}

	/// Passes over what is left of the blocks.
	void Finish() noexcept
	{
		if (_block.empty())
			return;
		_reader.SkipBlocks();
	}

private:
	Reader& _reader;
	Bytes _block;
	std::uint32_t _bits = 0;
	int _count = 0;
};

/// Calls `put` with the number of each pixel's colour, until it returns false or the data end.
template <typename Put>
void Unpack(Reader& reader, Put put) noexcept
{
	constexpr int kMostCodes = 4096;
	const int rootSize = reader.Byte();
	if (rootSize < 1 || rootSize > 8)
		return;
	// A string of colours is that of another code and one more colour.
	std::array<std::uint16_t, kMostCodes> prefixes{};
	std::array<std::uint8_t, kMostCodes> suffixes{};
	std::array<std::uint8_t, kMostCodes + 1> reversed{};
	const int clear = 1 << rootSize;
	int size = rootSize + 1;
	int next = clear + 2;
	int before = -1;
	std::uint8_t first = 0;
	Codes codes(reader);
	for (int code = codes.Next(size); code >= 0 && code != clear + 1; code = codes.Next(size))
	{
		if (code == clear)
		{
			size = rootSize + 1;
			next = clear + 2;
			before = -1;
			continue;
		}
		if (code > next || (code == next && before < 0) || (before < 0 && code >= clear))
			return;
		std::size_t count = 0;
		int at = code;
		// A code that is about to be defined is the string before and that one's first colour.
		if (code == next)
		{
			reversed[count++] = first;
			at = before;
		}
		while (at > clear)
		{
			reversed[count++] = suffixes[static_cast<std::size_t>(at)];
			at = prefixes[static_cast<std::size_t>(at)];
		}
		first = static_cast<std::uint8_t>(at);
		reversed[count++] = first;
		while (count > 0)
		{
			if (!put(reversed[--count]))
				return;
		}
		if (before >= 0 && next < kMostCodes)
		{
			prefixes[static_cast<std::size_t>(next)] = static_cast<std::uint16_t>(before);
			suffixes[static_cast<std::size_t>(next)] = first;
			next++;
			if (next == 1 << size && size < 12)
				size++;
		}
		before = code;
	}
}

/// The picture that follows, onto the whole.
void ReadPicture(Reader& reader, Palette palette, int transparent, filters::Raster& raster) noexcept
{
	const int left = reader.Word();
	const int top = reader.Word();
	const int width = reader.Word();
	const int height = reader.Word();
	const int packed = reader.Byte();
	if ((packed & 0x80) != 0)
		ReadPalette(reader, packed, palette);
	if (width == 0 || height == 0)
		return;
	if (transparent >= 0)
		palette[static_cast<std::size_t>(transparent)] = 0;
	const bool isInterlaced = (packed & 0x40) != 0;
	constexpr std::array kStarts = {0, 4, 2, 1};
	constexpr std::array kSteps = {8, 8, 4, 2};
	std::size_t pass = 0;
	int x = 0;
	int y = 0;
	const auto put = [&](std::uint8_t color)
	{
		if (raster.GetBox().Contains(left + x, top + y))
			raster.GetRow(top + y)[left + x] = palette[color];
		if (++x < width)
			return true;
		x = 0;
		y += isInterlaced ? kSteps[pass] : 1;
		while (isInterlaced && y >= height && pass + 1 < kStarts.size())
			y = kStarts[++pass];
		return y < height;
	};
	Unpack(reader, put);
}

} // namespace

filters::Raster DecodeGif(Bytes file, const Bounds& bounds) noexcept
{
	Reader reader(file);
	reader.Take(6);
	const int width = reader.Word();
	const int height = reader.Word();
	const int packed = reader.Byte();
	reader.Take(2);
	Palette palette{};
	if ((packed & 0x80) != 0)
		ReadPalette(reader, packed, palette);
	int transparent = -1;
	while (!reader.IsAtEnd())
	{
		switch (reader.Byte())
		{
		case 0x21: // An extension.
			if (reader.Byte() == 0xF9)
			{
				const Bytes control = reader.Block();
				if (control.size() >= 4 && (control[0] & 1) != 0)
					transparent = control[3];
			}
			reader.SkipBlocks();
			break;
		case 0x2C: // A picture; the first one is enough.
		{
			filters::Raster raster = MakePixels(width, height, bounds);
			if (!raster.GetBox().IsEmpty())
				ReadPicture(reader, palette, transparent, raster);
			return raster;
		}
		default:
			return {};
		}
	}
	return {};
}

} // namespace orvan::images
