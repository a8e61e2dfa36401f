// SPDX-License-Identifier: MIT
#include "files.h"

#include <strings.h>

namespace orvan::runtime
{
namespace
{

/// Cuts `prefix` off the front of `text`. Schemes and host names do not care for case.
bool Skip(std::string_view& text, std::string_view prefix) noexcept
{
	if (text.size() < prefix.size() || strncasecmp(text.data(), prefix.data(), prefix.size()) != 0)
		return false;
	text.remove_prefix(prefix.size());
	return true;
}

int HexDigit(char c) noexcept
{
	if (c >= '0' && c <= '9')
		return c - '0';
	const char lower = static_cast<char>(c | 0x20);
	return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

Result<String> DecodePath(std::string_view text, const Url& url) noexcept
{
	// As most paths are.
	if (!text.empty() && text.find('%') == text.npos && text.find('\0') == text.npos)
		return String::Create(text);
	BaseArray<char> path;
	ORVAN_TRY(path.Reserve(text.size()));
	for (std::size_t i = 0; i < text.size(); i++)
	{
		char c = text[i];
		if (c == '%')
		{
			const int high = i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
			const int low = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
			if (high < 0 || low < 0)
				return IoError(url, "URL '@' has a '%' that two hexadecimal digits do not follow.", url.GetText());
			c = static_cast<char>(high * 16 + low);
			i += 2;
		}
		// The system would take the path to end here and find another file than the one that was named.
		if (c == '\0')
			return IoError(url, "URL '@' has a zero byte in its path.", url.GetText());
		ORVAN_TRY(path.Append(c));
	}
	if (path.IsEmpty())
		return IoError(url, "URL '@' has no path.", url.GetText());
	return String::Create({path.begin(), path.GetCount()});
}

} // namespace

Result<Location> Locate(const Url& url) noexcept
{
	std::string_view text = url.GetText();
	if (Skip(text, "memory:"))
		return Location{Location::Scheme::memory, text, {}};
	if (!Skip(text, "file:"))
		return Location{Location::Scheme::unknown, {}, {}};
	if (Skip(text, "//"))
	{
		Skip(text, "localhost");
		if (!text.starts_with('/'))
			return IoError(url, "URL '@' does not name a file of this machine.", url.GetText());
	}
	text = text.substr(0, text.find_first_of("?#"));
	return Location{Location::Scheme::file, {}, ORVAN_TRY(DecodePath(text, url))};
}

} // namespace orvan::runtime
