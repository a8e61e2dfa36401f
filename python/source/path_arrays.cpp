// SPDX-License-Identifier: MIT
#include "path_arrays.h"

#include <array>

namespace orvan::python
{
namespace
{

/// How many points a command has, by its code.
constexpr std::array<std::size_t, 4> kPointCounts = {1, 1, 3, 0};

std::size_t CountPoints(const SVGPathCommand& command)
{
	return kPointCounts[static_cast<std::size_t>(command.type)];
}

} // namespace

py::tuple ToArrays(const BaseArray<SVGPathCommand>& commands)
{
	std::size_t pointCount = 0;
	for (const SVGPathCommand& command : commands)
		pointCount += CountPoints(command);
	py::array_t<std::uint8_t> codes(static_cast<py::ssize_t>(commands.GetCount()));
	py::array_t<double> points({static_cast<py::ssize_t>(pointCount), py::ssize_t{2}});
	std::uint8_t* code = codes.mutable_data();
	double* coordinate = points.mutable_data();
	for (const SVGPathCommand& command : commands)
	{
		*code++ = static_cast<std::uint8_t>(command.type);
		for (std::size_t i = 3 - CountPoints(command); i < 3; i++)
		{
			*coordinate++ = command.points[i].x;
			*coordinate++ = command.points[i].y;
		}
	}
	return py::make_tuple(codes, points);
}

BaseArray<SVGPathCommand> ToCommands(const CodeArray& codes, const PointArray& points)
{
	const bool hasRows = points.ndim() == 2 && points.shape(1) == 2;
	if (codes.ndim() != 1 || (!hasRows && points.size() != 0))
		throw py::value_error("A path is a code for each command, and a row x, y for each point.");
	BaseArray<SVGPathCommand> commands;
	Unwrap(commands.Reserve(static_cast<std::size_t>(codes.size())));
	const double* coordinate = points.data();
	auto left = static_cast<std::size_t>(points.size()) / 2;
	for (py::ssize_t at = 0; at < codes.size(); at++)
	{
		const std::uint8_t code = codes.data()[at];
		if (code >= kPointCounts.size() || kPointCounts[code] > left)
			throw py::value_error("The codes of a path are 0 to 3, with one, one, three and no points.");
		left -= kPointCounts[code];
		SVGPathCommand command{static_cast<SVGPathCommandType>(code), {}};
		for (std::size_t i = 3 - kPointCounts[code]; i < 3; i++, coordinate += 2)
			command.points[i] = {coordinate[0], coordinate[1]};
		Unwrap(commands.Append(command));
	}
	if (left != 0)
		throw py::value_error("The path has more points than its commands take.");
	return commands;
}

} // namespace orvan::python
