// SPDX-License-Identifier: MIT
/// Image files that are whole, damaged and out of bounds, and the URLs that hold them.
#include "filters/arrange.h"
#include "images/data_url.h"
#include "images/image_data.h"
#include "images/orientation.h"
#include "images/png_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

namespace orvan::images
{
namespace
{

using namespace std::string_literals;

std::string Decoded(std::string_view url)
{
	const auto bytes = DecodeDataUrl(url);
	if (!bytes.IsOk())
		return "error";
	return {bytes.GetValue().begin(), bytes.GetValue().end()};
}

TEST(ImagePixels, DataUrlsHoldTextOrBase64)
{
	EXPECT_EQ("abc", Decoded("data:image/png;base64,YWJj"));
	EXPECT_EQ("abcd", Decoded("DATA:;charset=utf-8;BASE64 , YW\nJj Z A=="));
	EXPECT_EQ("abc>?", Decoded("data:;base64,YWJjPj8"));
	EXPECT_EQ("\xFB\xFF", Decoded("data:;base64,-_8"));
	EXPECT_EQ("+/8", Decoded("data:;base6,%2B/8"));
	EXPECT_EQ("<svg/>%", Decoded("data:image/svg+xml,%3csvg/%3E%"));
	EXPECT_EQ("ab", Decoded("data:;base64,YW%49=!JjZA"));
	EXPECT_EQ("abc", Decoded("data:;base64,YWJj#view"));
	EXPECT_EQ("<a b='#c'/>", Decoded("data:,%3Ca b='#c'/%3E#d"));
	EXPECT_EQ("<a b='#c'/>", Decoded("data:,<a b='#c'/>#d#e"));
	EXPECT_EQ("", Decoded("data:image/png"));
	EXPECT_EQ("", Decoded("dota:,abc"));
}

/// A GIF of 4 by 2 pixels with two colours, the second transparent: clear, then eight codes of the colours.
const std::string kGif("GIF89a\x04\0\x02\0\x80\0\0\xFF\0\0\0\xFF\0!\xF9\x04\x01\0\0\x01\0,\0\0\0\0\x04\0\x02\0\0"
					   "\x02\x04\x04\x82\x19\x05\0;"s);

filters::Raster DecodeText(const std::string& text, const Bounds& bounds)
{
	return Decode({reinterpret_cast<const unsigned char*>(text.data()), text.size()}, bounds);
}

/// The PNG file of a picture of 2 by 2 pixels.
std::string Written(const std::uint32_t* first, std::ptrdiff_t stride)
{
	const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
	EXPECT_TRUE(WritePng(file.get(), {reinterpret_cast<const unsigned char*>(first), 2, 2, stride}));
	std::string bytes(static_cast<std::size_t>(std::ftell(file.get())), '\0');
	std::rewind(file.get());
	EXPECT_EQ(bytes.size(), std::fread(bytes.data(), 1, bytes.size(), file.get()));
	return bytes;
}

TEST(ImagePixels, PngFilesHoldWhatWasWritten)
{
	constexpr std::size_t kColorType = 25;
	// A row of three words, of which the last does not belong to the picture.
	const std::array<std::uint32_t, 6> seeThrough{0x80402010, 0, 7, 0xFF112233, 0x01010000, 7};
	const std::string file = Written(seeThrough.data(), 12);
	const filters::Raster read = DecodeText(file, {100.0});
	ASSERT_EQ(4u, read.GetCount());
	EXPECT_EQ(0x80402010u, read.At(0, 0));
	EXPECT_EQ(0u, read.At(1, 0));
	EXPECT_EQ(0xFF112233u, read.At(0, 1));
	EXPECT_EQ(0x01010000u, read.At(1, 1));
	EXPECT_EQ(6, file[kColorType]) << "with alpha";

	const std::array<std::uint32_t, 4> opaque{0xFF000001, 0xFF000200, 0xFF030000, 0xFFFFFFFF};
	const std::string upsideDown = Written(opaque.data() + 2, -8);
	EXPECT_EQ(2, upsideDown[kColorType]) << "without alpha";
	EXPECT_EQ(0xFF030000u, DecodeText(upsideDown, {100.0}).At(0, 0));
	EXPECT_EQ(0xFF000200u, DecodeText(upsideDown, {100.0}).At(1, 1));

	const std::unique_ptr<std::FILE, int (*)(std::FILE*)> full(std::fopen("/dev/full", "wb"), &std::fclose);
	std::setbuf(full.get(), nullptr);
	EXPECT_FALSE(WritePng(full.get(), {reinterpret_cast<const unsigned char*>(opaque.data()), 2, 2, 8}));
}

TEST(ImagePixels, WhatIsDamagedOrTooLargeIsNothing)
{
	const Bounds bounds{1e6};
	const filters::Raster picture = DecodeText(kGif, bounds);
	ASSERT_EQ(8u, picture.GetCount());
	EXPECT_EQ(0xFFFF0000u, picture.At(0, 0));
	EXPECT_TRUE(DecodeText(kGif, {7.0}).GetBox().IsEmpty());
	EXPECT_TRUE(DecodeText(kGif, {1e6, 3}).GetBox().IsEmpty());
	// Cut off anywhere and with any byte changed, it is decoded to its size or refused.
	for (std::size_t i = 0; i < kGif.size(); i++)
	{
		EXPECT_LE(DecodeText(kGif.substr(0, i), bounds).GetCount(), 8u);
		for (const int byte : {0, 1, 127, 255})
		{
			std::string changed = kGif;
			changed[i] = static_cast<char>(byte);
			EXPECT_LE(DecodeText(changed, bounds).GetCount(), 1000000u);
		}
	}
	for (const std::string text :
		 {"\x89PNG\r\n\x1A\n____", "\xFF\xD8\xFF____", "RIFF____WEBPVP8 ____", "GIF89a", "<svg/>", ""})
		EXPECT_TRUE(DecodeText(text, bounds).GetBox().IsEmpty()) << text;
}

TEST(ImagePixels, GifFilesShowTheRowsBeforeTheyAreCutOff)
{
	const filters::Raster whole = DecodeText(kGif, {1e6});
	// Two of four bytes: the code to clear, and the four pixels of the first row.
	const filters::Raster part = DecodeText(kGif.substr(0, kGif.size() - 4), {1e6});
	ASSERT_EQ(8u, part.GetCount());
	for (int x = 0; x < 4; x++)
	{
		EXPECT_EQ(whole.At(x, 0), part.At(x, 0)) << x;
		EXPECT_EQ(0u, part.At(x, 1)) << x;
	}
	EXPECT_EQ(0xFFFF0000u, part.At(0, 0));
}

TEST(ImagePixels, PngFilesShowAsFarAsTheyGo)
{
	// Two rows of two pixels, stored unpacked: red and green, then blue and white.
	const std::string rows("\0\xFF\0\0\0\xFF\0\0\0\0\xFF\xFF\xFF\xFF"s);
	const std::string packed = "\x78\x01\x01\x0E\0\xF1\xFF"s + rows;
	const auto chunk = [](const std::string& name, const std::string& content)
	{
		return std::string("\0\0\0"s) + static_cast<char>(content.size()) + name + content + "\0\0\0\0"s;
	};
	const std::string file = "\x89PNG\r\n\x1A\n"s + chunk("IHDR", "\0\0\0\x02\0\0\0\x02\x08\x02\0\0\0"s) +
							 chunk("IDAT", packed + "\0\0\0\0"s);
	// None of its sums is right.
	const filters::Raster picture = DecodeText(file, {1e6});
	ASSERT_EQ(4u, picture.GetCount());
	EXPECT_EQ(0xFFFF0000u, picture.At(0, 0));
	EXPECT_EQ(0xFFFFFFFFu, picture.At(1, 1));
	EXPECT_TRUE(DecodeText(file, {3.0}).GetBox().IsEmpty());
	EXPECT_TRUE(DecodeText(file.substr(0, 20), {1e6}).GetBox().IsEmpty());
	const filters::Raster part = DecodeText(file.substr(0, file.size() - 12), {1e6});
	ASSERT_EQ(4u, part.GetCount());
	EXPECT_EQ(0u, part.At(1, 1));
}

TEST(ImagePixels, PicturesOfTurnedCamerasAreMadeUpright)
{
	// Two rows of three pixels, and where each of them goes, as the corners of the results say.
	filters::Raster raster({0, 0, 3, 2});
	for (std::uint32_t i = 0; i < 6; i++)
		raster.GetPixels()[i] = i;
	constexpr std::uint32_t kCorners[][4] = {{0, 2, 3, 5}, {2, 0, 5, 3}, {5, 3, 2, 0}, {3, 5, 0, 2},
											 {0, 3, 2, 5}, {3, 0, 5, 2}, {5, 2, 3, 0}, {2, 5, 0, 3}};
	for (int orientation = 1; orientation <= 8; orientation++)
	{
		const filters::Raster upright = MakeUpright(filters::Crop(raster, raster.GetBox()), orientation);
		const filters::Box& box = upright.GetBox();
		EXPECT_EQ(orientation < 5 ? 3 : 2, box.right);
		const std::uint32_t corners[] = {upright.At(0, 0), upright.At(box.right - 1, 0), upright.At(0, box.bottom - 1),
										 upright.At(box.right - 1, box.bottom - 1)};
		EXPECT_TRUE(std::equal(std::begin(corners), std::end(corners), kCorners[orientation - 1])) << orientation;
	}

	const auto find = [](const std::string& text)
	{
		return FindOrientation({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
	};
	const std::string little(
		"\xFF\xD8\xFF\xE0\0\4ab\xFF\xE1\0\36Exif\0\0II*\0\10\0\0\0\1\0\x12\1\3\0\1\0\0\0\6\0\0\0"s);
	const std::string big("\xFF\xD8\xFF\xE1\0\36Exif\0\0MM\0*\0\0\0\10\0\1\1\x12\0\3\0\0\0\1\0\10\0\0"s);
	EXPECT_EQ(6, find(little));
	EXPECT_EQ(8, find(big));
	for (std::size_t i = 0; i < little.size(); i++)
		EXPECT_EQ(1, find(little.substr(0, i))) << i;
}

TEST(ImagePixels, FormatsShowInTheirFirstBytes)
{
	const auto find = [](std::string_view text)
	{
		return FindFormat({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
	};
	EXPECT_EQ(Format::svg, find(" \n<?xml"));
	EXPECT_EQ(Format::svg, find("\xEF\xBB\xBF<svg"));
	EXPECT_EQ(Format::svg, find("\x1F\x8B"));
	EXPECT_EQ(Format::gif, find(kGif));
	EXPECT_EQ(Format::unknown, find("RIFF____WAVE"));
	EXPECT_EQ(Format::unknown, find("svg"));
}

} // namespace
} // namespace orvan::images
