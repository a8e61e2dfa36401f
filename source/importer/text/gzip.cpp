// SPDX-License-Identifier: MIT
#include "importer/text/gzip.h"

#include "importer/xml/xml_guard.h"
#include "orvan/services.h"

#include <algorithm>
#include <limits>

#include <zlib.h>

namespace orvan::svg
{
namespace
{

/// The library's state of one unpacking, in host memory.
class Inflater
{
public:
	Inflater() noexcept
	{
		_stream.zalloc = [](void*, uInt count, uInt size) -> void*
		{
			return Host().allocate(static_cast<std::size_t>(count) * size);
		};
		_stream.zfree = [](void*, void* memory)
		{
			Host().free(memory);
		};
		constexpr int kGzipOnly = 16;
		_isReady = inflateInit2(&_stream, MAX_WBITS + kGzipOnly) == Z_OK;
	}

	Inflater(const Inflater&) = delete;

	~Inflater()
	{
		if (_isReady)
			inflateEnd(&_stream);
	}

	bool IsReady() const noexcept
	{
		return _isReady;
	}

	z_stream* operator->() noexcept
	{
		return &_stream;
	}

	int Inflate() noexcept
	{
		return inflate(&_stream, Z_NO_FLUSH);
	}

	/// For the next member; keeps input and output.
	void Restart() noexcept
	{
		inflateReset(&_stream);
	}

private:
	z_stream _stream{};
	bool _isReady = false;
};

} // namespace

bool IsGzip(std::string_view bytes) noexcept
{
	return bytes.starts_with("\x1f\x8b");
}

Result<BaseArray<char>> Gunzip(std::string_view bytes, std::size_t limit)
{
	Inflater inflater;
	if (!inflater.IsReady())
		return OutOfMemoryError();
	BaseArray<char> unpacked;
	// Drawings shrink to a fifth or so.
	ORVAN_TRY(unpacked.ResizeUninitialized(std::min(limit, bytes.size() * 6 + 1024) + 1));
	std::size_t count = 0;
	while (true)
	{
		constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
		inflater->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
		inflater->avail_in = static_cast<uInt>(std::min(bytes.size(), kMost));
		inflater->next_out = reinterpret_cast<Bytef*>(unpacked.begin() + count);
		const auto room = static_cast<uInt>(std::min(unpacked.GetCount() - count, kMost));
		inflater->avail_out = room;
		const std::size_t input = inflater->avail_in;
		const int status = inflater.Inflate();
		bytes.remove_prefix(input - inflater->avail_in);
		count += room - inflater->avail_out;
		if (count > limit)
			throw XmlError("the packed file is larger than 256 MiB when it is unpacked", nullptr);
		if (status == Z_MEM_ERROR)
			return OutOfMemoryError();
		if (status == Z_STREAM_END)
		{
			if (!IsGzip(bytes))
				break;
			inflater.Restart();
		}
		else if (status != Z_OK && status != Z_BUF_ERROR)
			throw XmlError("the packed file is damaged", nullptr);
		else if (bytes.empty() && inflater->avail_out != 0)
			throw XmlError("the packed file is cut short", nullptr);
		if (count == unpacked.GetCount())
			ORVAN_TRY(unpacked.ResizeUninitialized(std::min(limit, count * 2) + 1));
	}
	ORVAN_TRY(unpacked.ResizeUninitialized(count));
	return unpacked;
}

} // namespace orvan::svg
