// SPDX-License-Identifier: MIT
#include "path_text.h"

#include <charconv>

namespace orvan::program
{
namespace
{

void AddPoint(std::string& text, const Vector2d& point)
{
	text += ToShortestText(point.x) + ' ' + ToShortestText(point.y);
}

} // namespace

std::string ToShortestText(double number)
{
	char text[32];
	const auto [end, error] = std::to_chars(text, text + sizeof(text), number + 0.0);
	return std::string(text, end);
}

std::string ToPathData(const BaseArray<SVGPathCommand>& commands)
{
	std::string text;
	for (const SVGPathCommand& command : commands)
	{
		text += "MLCZ"[static_cast<std::size_t>(command.type)];
		if (command.type == SVGPathCommandType::close)
			continue;
		if (command.type == SVGPathCommandType::cubic)
		{
			AddPoint(text, command.points[0]);
			text += ' ';
			AddPoint(text, command.points[1]);
			text += ' ';
		}
		AddPoint(text, command.points[2]);
	}
	return text;
}

std::string ToPathData(const SVGNormalizedPaths& paths, std::size_t path)
{
	std::string text;
	auto point = static_cast<std::size_t>(paths.pointOffsets[path]);
	for (auto at = static_cast<std::size_t>(paths.commandOffsets[path]);
		 at < static_cast<std::size_t>(paths.commandOffsets[path + 1]); at++)
	{
		const std::uint8_t command = paths.commands[at];
		text += "MLCZ"[command];
		const int count = command == 3 ? 0 : command == 2 ? 3 : 1;
		for (int i = 0; i < count; i++)
		{
			text += i > 0 ? " " : "";
			AddPoint(text, paths.points[point++]);
		}
	}
	return text;
}

} // namespace orvan::program
