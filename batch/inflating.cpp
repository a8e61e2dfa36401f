// SPDX-License-Identifier: MIT
#include "batch/inflating.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <zlib.h>

namespace orvan::batch
{

std::string Inflate(std::string_view packed)
{
	constexpr int kGzipOnly = 16 + MAX_WBITS;
	z_stream stream = {};
	if (packed.size() > kMostBytes || inflateInit2(&stream, kGzipOnly) != Z_OK)
		throw std::bad_alloc();
	// The library does not write there.
	stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
	stream.avail_in = static_cast<uInt>(packed.size());
	std::string bytes;
	int status = Z_OK;
	try
	{
		while (status == Z_OK && bytes.size() < kMostBytes)
		{
			const std::size_t size = bytes.size();
			const std::size_t piece = std::max<std::size_t>(std::size_t(1) << 14, size);
			bytes.resize(size + piece);
			stream.next_out = reinterpret_cast<Bytef*>(bytes.data() + size);
			stream.avail_out = static_cast<uInt>(piece);
			status = inflate(&stream, Z_NO_FLUSH);
			bytes.resize(size + piece - stream.avail_out);
		}
	}
	catch (...)
	{
		inflateEnd(&stream);
		throw;
	}
	inflateEnd(&stream);
	if (status == Z_OK)
		throw std::runtime_error("It is too large when it is unpacked.");
	if (status != Z_STREAM_END)
		throw std::runtime_error("It cannot be unpacked.");
	return bytes;
}

} // namespace orvan::batch
