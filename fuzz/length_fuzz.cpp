// SPDX-License-Identifier: MIT
// The scanner of plain lengths, beside its rules as they would be read aloud.

#include "importer/attributes/length_scanner.h"
#include "require.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace orvan;

namespace
{
SVGLength ReadLength(const std::string& text)
{
	constexpr std::string_view kDigits = "0123456789";
	std::string number;
	std::size_t at = 0;
	const auto takeDigits = [&]
	{
		const std::size_t before = at;
		for (; at < text.size() && kDigits.find(text[at]) != kDigits.npos; at++)
			number += text[at];
		return at - before;
	};

	if (text[0] == '-' || text[0] == '+')
		number += text[at++];
	std::size_t mantissa = takeDigits();
	if (text[at] == '.')
	{
		number += text[at++];
		const std::size_t decimals = takeDigits();
		if (decimals == 0)
			return {};
		mantissa += decimals;
	}
	if (mantissa == 0)
		return {};
	if ((text[at] == 'e' || text[at] == 'E') && text[at + 1] >= '0' && text[at + 1] <= '9')
	{
		number += text[at++];
		takeDigits();
	}

	const Float value = std::strtod(number.c_str(), nullptr);
	const std::string unit = text.substr(at, 2);
	constexpr const char* kUnits[] = {"em", "ex", "px", "in", "cm", "mm", "pt", "pc"};
	for (int i = 0; i < 8; i++)
	{
		if (unit == kUnits[i])
			return {value, static_cast<SVGLengthUnit>(i)};
	}
	if (at == text.size())
		return {value, SVGLengthUnit::number};
	return unit[0] == '%' ? SVGLength{value / 100, SVGLengthUnit::percent} : SVGLength();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	std::vector<char> text(data, data + size);
	text.shrink_to_fit();
	const SVGLength scanned = svg::ScanLength({text.data(), text.size()});
	const std::string copy(text.begin(), text.end());
	const SVGLength read = ReadLength(copy);
	fuzz::Require(std::bit_cast<std::uint64_t>(scanned.value) == std::bit_cast<std::uint64_t>(read.value) &&
					  scanned.unit == read.unit,
				  "the scanner reads what the rules say", copy);
	return 0;
}
