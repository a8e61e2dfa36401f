// SPDX-License-Identifier: MIT
/// Text of an SVG document, where memory may run out with each piece.
#pragma once

#include "normalize.h"

#include <charconv>
#include <string_view>

namespace orvan::geometry
{

/// Collects text, and remembers whether that went well.
class SvgWriter
{
public:
	SvgWriter& Add(std::string_view piece) noexcept
	{
		isGood = isGood && text.AppendAll(piece.data(), piece.size()).IsOk();
		return *this;
	}

	/// The shortest text that reads back as the same number.
	SvgWriter& Add(double number) noexcept
	{
		char digits[32];
		const auto [end, error] = std::to_chars(digits, digits + sizeof(digits), number + 0.0); // No "-0".
		return Add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
	}

	SvgWriter& AddPoint(const Vector2d& point) noexcept
	{
		return Add(point.x).Add(" ").Add(point.y);
	}

	SvgWriter& AddAttribute(std::string_view name, double number) noexcept
	{
		return Add(" ").Add(name).Add("=\"").Add(number).Add("\"");
	}

	/// A value that needs no escapes.
	SvgWriter& AddAttribute(std::string_view name, std::string_view value) noexcept
	{
		return Add(" ").Add(name).Add("=\"").Add(value).Add("\"");
	}

	/// A value of whatever characters.
	SvgWriter& AddEscaped(std::string_view name, std::string_view value) noexcept
	{
		Add(" ").Add(name).Add("=\"");
		for (const char c : value)
		{
			if (c == '&' || c == '<' || c == '"')
				Add(c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&quot;");
			else if (static_cast<unsigned char>(c) >= ' ') // Others have no way into an attribute.
				Add(std::string_view(&c, 1));
		}
		return Add("\"");
	}

	SvgWriter& AddName(std::string_view kind, std::int64_t number) noexcept
	{
		char digits[24];
		const auto [end, error] = std::to_chars(digits, digits + sizeof(digits), number);
		return Add(kind).Add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
	}

	SvgWriter& AddReference(std::string_view name, std::string_view kind, std::int64_t number) noexcept
	{
		return Add(" ").Add(name).Add("=\"url(#").AddName(kind, number).Add(")\"");
	}

	SvgWriter& AddId(std::string_view kind, std::int64_t number) noexcept
	{
		return Add(" id=\"").AddName(kind, number).Add("\"");
	}

	/// "#rrggbb", as near as it comes.
	SvgWriter& AddColor(std::string_view name, const Color& color) noexcept
	{
		constexpr std::string_view kDigits = "0123456789abcdef";
		char value[8] = "#";
		char* at = value + 1;
		for (const double channel : {color.red, color.green, color.blue})
		{
			const auto byte = static_cast<std::size_t>(std::lround(std::clamp(channel, 0.0, 1.0) * 255.0));
			*at++ = kDigits[byte / 16];
			*at++ = kDigits[byte % 16];
		}
		return AddAttribute(name, std::string_view(value, 7));
	}

	SvgWriter& AddImageRendering(SVGImageRendering rendering) noexcept
	{
		constexpr std::string_view kNames[] = {"", "optimizeSpeed", "optimizeQuality", "pixelated", "crisp-edges"};
		const auto number = static_cast<std::size_t>(rendering);
		return number > 0 && number < std::size(kNames) ? AddAttribute("image-rendering", kNames[number]) : *this;
	}

	SvgWriter& AddMatrix(std::string_view name, const Matrix2d& m) noexcept
	{
		if (m == Matrix2d())
			return *this;
		Add(" ").Add(name).Add("=\"matrix(").AddPoint(m.axis1).Add(" ").AddPoint(m.axis2).Add(" ");
		return AddPoint(m.offset).Add(")\"");
	}

	/// A rectangle in numbers whose sums are exact, so that they are the same when they have been read.
	SvgWriter& AddArea(const Rectangle& area) noexcept
	{
		const double numbers[] = {area.left, area.top, area.GetWidth(), area.GetHeight()};
		double largest = 0.0;
		for (const double number : numbers)
			largest = std::max(largest, std::abs(number));
		constexpr int kBits = 40;
		const double step = largest > 0.0 ? std::ldexp(1.0, std::ilogb(largest) - kBits) : 1.0;
		constexpr std::string_view kNames[] = {"x", "y", "width", "height"};
		for (std::size_t i = 0; i < std::size(kNames); i++)
			AddAttribute(kNames[i], std::round(numbers[i] / step) * step);
		return *this;
	}

	SvgWriter& AddPathData(const PlainPath& path) noexcept
	{
		Add(" d=\"");
		std::size_t point = 0;
		for (const std::uint8_t command : path.commands)
		{
			constexpr std::string_view kLetters = "MLCZ";
			constexpr int kPoints[] = {1, 1, 3, 0};
			Add(kLetters.substr(command, 1));
			for (int i = 0; i < kPoints[command]; i++)
				(i > 0 ? Add(" ") : *this).AddPoint(path.points[point++]);
		}
		return Add("\"");
	}

	BaseArray<char> text;
	bool isGood = true;
};

} // namespace orvan::geometry
