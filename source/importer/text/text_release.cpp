// SPDX-License-Identifier: MIT
#include "importer/text/text_release.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace orvan::svg
{
namespace
{

/// Smaller texts stay.
constexpr std::size_t kSmallest = std::size_t(512) << 10;

/// What goes at a time, and how it is aligned: a multiple of every system's pages.
constexpr std::size_t kStride = std::size_t(64) << 10;

/// Both namespaces that the import knows hold these characters. Nodes point at the declaration that they are in, to the
/// end of the text, so that it must stay.
constexpr std::string_view kNamespacePart = "www.w3.org/";
constexpr std::size_t kLongestNamespace = 64;

} // namespace

bool TextRelease::IsNew(std::span<const char> room) noexcept
{
	if (room.size() < kSmallest)
		return false;
	// The last page tells: what the C library keeps was written to there, as text or by the library itself.
	const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
	const std::uintptr_t last = reinterpret_cast<std::uintptr_t>(room.data() + room.size() - 1) / pageSize * pageSize;
	unsigned char isThere = 0;
	return mincore(reinterpret_cast<void*>(last), 1, &isThere) == 0 && (isThere & 1) == 0;
}

TextRelease::TextRelease(std::span<char> text) noexcept : _text(text)
{
	_next = (kStride - reinterpret_cast<std::uintptr_t>(text.data()) % kStride) % kStride;
	_allowed = text.size() / 8;
}

void TextRelease::Release(const char* place) noexcept
{
	if (std::less<>()(place, _text.data()) || std::less<>()(_text.data() + _text.size(), place))
		return;
	const auto reached = static_cast<std::size_t>(place - _text.data());
	const std::string_view text(_text.data(), _text.size());
	for (; _grown > _allowed && _next + kStride <= reached; _next += kStride)
	{
		const std::size_t first = _next - std::min(_next, kLongestNamespace);
		if (text.substr(first, _next + kStride + kLongestNamespace - first).find(kNamespacePart) != text.npos)
			continue;
		// Of private memory the system makes zeros; where it can not, the text stays.
		madvise(_text.data() + _next, kStride, MADV_DONTNEED);
		_hasReleased = true;
		_allowed += kStride;
	}
}

} // namespace orvan::svg
