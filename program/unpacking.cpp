// SPDX-License-Identifier: MIT
#include "unpacking.h"

#include "console.h"

#include <filesystem>
#include <zlib.h>

namespace orvan::program
{
namespace
{
constexpr std::size_t kMaxSize = std::size_t(256) << 20;

std::string Unpack(std::string& packed)
{
	constexpr int kGzipOnly = 16 + MAX_WBITS;
	z_stream stream = {};
	stream.next_in = reinterpret_cast<Bytef*>(packed.data());
	stream.avail_in = static_cast<uInt>(packed.size());
	if (inflateInit2(&stream, kGzipOnly) != Z_OK)
		throw Failure("There is no memory to unpack the file.");
	std::string bytes;
	int status = Z_OK;
	while (status == Z_OK && bytes.size() < kMaxSize)
	{
		constexpr std::size_t kPiece = 1 << 16;
		const std::size_t size = bytes.size();
		bytes.resize(size + kPiece);
		stream.next_out = reinterpret_cast<Bytef*>(bytes.data() + size);
		stream.avail_out = kPiece;
		status = inflate(&stream, Z_NO_FLUSH);
		bytes.resize(size + kPiece - stream.avail_out);
	}
	inflateEnd(&stream);
	if (status == Z_OK)
		throw Failure("The file is too large when it is unpacked.");
	if (status != Z_STREAM_END)
		throw Failure("The file cannot be unpacked.");
	return bytes;
}
} // namespace

bool IsPacked(const std::string& file)
{
	return std::filesystem::path(file).extension() == ".svgz";
}

std::string ReadPacked(const Url& url)
{
	InputStream stream = Unwrap(url.OpenInputStream());
	std::string packed(static_cast<std::size_t>(Unwrap(stream.GetStreamLength())), '\0');
	if (packed.size() > kMaxSize)
		throw Failure("The file is too large.");
	Unwrap(stream.ReadBytes(packed.data(), static_cast<std::int64_t>(packed.size())));
	return Unpack(packed);
}

} // namespace orvan::program
