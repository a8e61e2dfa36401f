// SPDX-License-Identifier: MIT
/// Paths that are replaced as a whole, and path data as a text.
#include "complete/paths.h"
#include "elements/element_classes.h"
#include "importer/path_element_sink.h"
#include "shared/decimal_text.h"

#include <cmath>
#include <new>
#include <string>

namespace orvan::svg
{

namespace
{

/// Appends a number, and a blank before it where it would run on from the one before.
void AppendNumber(std::string& text, Float number)
{
	const bool followsNumber = text.back() == '.' || (text.back() >= '0' && text.back() <= '9');
	const std::size_t start = text.size();
	grammar::AppendDecimal(text, number, true);
	if (followsNumber && text[start] != '-')
		text.insert(start, 1, ' ');
}

/// Appends path data; false when there is a coordinate that has no text.
bool AppendPath(std::string& text, const SVGPathView& path)
{
	constexpr char kLetters[] = {'M', 'L', 'C', 'Z'};
	for (const SVGPathCommand& command : path)
	{
		text += kLetters[static_cast<std::size_t>(command.type)];
		if (command.type == SVGPathCommandType::close)
			continue;
		for (int i = command.type == SVGPathCommandType::cubic ? 0 : 2; i < 3; i++)
		{
			const Vector2d& point = command.points[i];
			if (!std::isfinite(point.x) || !std::isfinite(point.y))
				return false;
			AppendNumber(text, point.x);
			AppendNumber(text, point.y);
		}
	}
	return true;
}

} // namespace

Result<void> PathElement::SetPath(const BaseArray<SVGPathCommand>& commands) noexcept
{
	PathData path;
	for (const SVGPathCommand& command : commands)
	{
		if (!ORVAN_TRY(path.AppendCommand(command)))
			return IllegalArgumentError("There is no path command of kind @.", static_cast<std::int64_t>(command.type));
	}
	path.Compact();
	return ReplacePath(std::move(path));
}

Result<void> PathElement::CopyPath(const PathElement& source) noexcept
{
	PathData path;
	ORVAN_TRY(path.CopyFrom(source._path));
	return ReplacePath(std::move(path));
}

Result<String> PathElement::GetPathData() const noexcept
{
	try
	{
		std::string text;
		if (!AppendPath(text, GetPathView()))
			return IllegalArgumentError("A path with coordinates that are not finite has no text.");
		return String::Create(text);
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
}

Result<void> PathElement::SetPathData(const String& data) noexcept
{
	PathData path;
	PathElementSink sink(path);
	try
	{
		const grammar::complete::Progress progress = grammar::complete::ParsePath(data.View(), sink);
		ORVAN_TRY(sink.Exit());
		if (!progress.isWhole)
			return IllegalArgumentError("Path data has a fault at character @.",
										static_cast<std::int64_t>(progress.offset) + 1);
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
	return ReplacePath(std::move(path));
}

} // namespace orvan::svg
