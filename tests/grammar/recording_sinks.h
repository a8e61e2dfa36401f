// SPDX-License-Identifier: MIT
#pragma once

/// Sinks that write down what they are given, each number in the fewest digits that tell it from every other.

#include "grammar.h"

#include <array>
#include <charconv>
#include <initializer_list>
#include <string>

namespace orvan::grammar
{
inline void AppendNumber(std::string& text, double number)
{
	std::array<char, 32> buffer;
	text.append(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr);
}

class RecordingPathSink final : public PathSink
{
public:
	void MoveTo(double x, double y) override
	{
		Append('M', {x, y});
	}

	void LineTo(double x, double y) override
	{
		Append('L', {x, y});
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		Append('C', {x1, y1, x2, y2, x, y});
	}

	void Close() override
	{
		Append('Z', {});
	}

	std::string text;

private:
	void Append(char command, std::initializer_list<double> numbers)
	{
		if (!text.empty())
			text += ' ';
		text += command;
		std::size_t written = 0;
		for (double number : numbers)
		{
			if (written != 0)
				text += written % 2 == 0 ? ' ' : ',';
			AppendNumber(text, number);
			++written;
		}
	}
};

class RecordingLengthSink final : public LengthSink
{
public:
	void Append(const Length& length) override
	{
		static constexpr std::array kUnits{"em", "ex", "px", "in", "cm", "mm", "pt", "pc", "%", ""};
		if (!text.empty())
			text += ' ';
		AppendNumber(text, length.value);
		text += kUnits[static_cast<std::size_t>(length.unit)];
	}

	std::string text;
};
} // namespace orvan::grammar
