// SPDX-License-Identifier: MIT
#include "data_url.h"

#include <algorithm>
#include <array>

namespace orvan::images
{
namespace
{

constexpr std::string_view kScheme = "data:";
constexpr std::string_view kBase64 = ";base64";

constexpr char ToLower(char c) noexcept
{
	return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view lower) noexcept
{
	if (a.size() != lower.size())
		return false;
	for (std::size_t i = 0; i < a.size(); i++)
	{
		if (ToLower(a[i]) != lower[i])
			return false;
	}
	return true;
}

constexpr int HexDigit(char c) noexcept
{
	if (c >= '0' && c <= '9')
		return c - '0';
	const char lower = ToLower(c);
	return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

constexpr int kBlank = -1;
constexpr int kRefused = -2;

/// The value of each character in base 64; the alphabet for URLs counts as well.
constexpr auto kDigits = []
{
	constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
	std::array<int, 256> digits{};
	for (int& digit : digits)
		digit = kRefused;
	for (int i = 0; i < 64; i++)
		digits[static_cast<unsigned char>(kAlphabet[i])] = i;
	digits['-'] = 62;
	digits['_'] = 63;
	for (const char blank : {' ', '\t', '\n', '\r', '\f', '='})
		digits[static_cast<unsigned char>(blank)] = kBlank;
	return digits;
}();

Result<BaseArray<unsigned char>> DecodeBase64(std::span<const unsigned char> text) noexcept
{
	BaseArray<unsigned char> bytes;
	ORVAN_TRY(bytes.Reserve(text.size() / 4 * 3 + 3));
	std::uint32_t bits = 0;
	int count = 0;
	for (const unsigned char c : text)
	{
		const int digit = kDigits[c];
		if (digit == kBlank)
			continue;
		if (digit == kRefused)
			break;
		bits = bits << 6 | static_cast<std::uint32_t>(digit);
		count += 6;
		if (count < 8)
			continue;
		count -= 8;
		ORVAN_TRY(bytes.Append(static_cast<unsigned char>(bits >> count & 255)));
	}
	return bytes;
}

/// What stands before the end of the last tag is content, whose "#" somebody has forgotten to escape.
std::string_view WithoutFragment(std::string_view content) noexcept
{
	std::size_t tail = 0;
	for (const std::string_view end : {">", "%3e", "%3E"})
	{
		const std::size_t at = content.rfind(end);
		tail = at != std::string_view::npos ? std::max(tail, at) : tail;
	}
	return content.substr(0, content.find('#', tail));
}

} // namespace

bool IsDataUrl(std::string_view url) noexcept
{
	return EqualsIgnoringCase(url.substr(0, kScheme.size()), kScheme);
}

Result<BaseArray<unsigned char>> DecodePercents(std::string_view text) noexcept
{
	BaseArray<unsigned char> bytes;
	ORVAN_TRY(bytes.Reserve(text.size()));
	for (std::size_t i = 0; i < text.size(); i++)
	{
		const int high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
		const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
		if (low >= 0)
			i += 2;
		ORVAN_TRY(bytes.Append(static_cast<unsigned char>(low >= 0 ? high << 4 | low : text[i])));
	}
	return bytes;
}

Result<BaseArray<unsigned char>> DecodeDataUrl(std::string_view url) noexcept
{
	const std::size_t comma = url.find(',');
	if (!IsDataUrl(url) || comma == std::string_view::npos)
		return BaseArray<unsigned char>();
	std::string_view type = url.substr(kScheme.size(), comma - kScheme.size());
	while (!type.empty() && type.back() == ' ')
		type.remove_suffix(1);
	BaseArray<unsigned char> bytes = ORVAN_TRY(DecodePercents(WithoutFragment(url.substr(comma + 1))));
	const bool isBase64 =
		type.size() >= kBase64.size() && EqualsIgnoringCase(type.substr(type.size() - kBase64.size()), kBase64);
	if (!isBase64)
		return bytes;
	return DecodeBase64({bytes.begin(), bytes.GetCount()});
}

} // namespace orvan::images
