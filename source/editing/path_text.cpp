// SPDX-License-Identifier: MIT
/// Paths that are replaced as a whole, and path data as a text.
#include "complete/paths.h"
#include "elements/element_classes.h"
#include "importer/path_element_sink.h"
#include "writer/number_text.h"

#include <new>
#include <string>

namespace orvan::svg
{

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
		const BaseArray<SVGPathCommand> commands = ORVAN_TRY(GetPath());
		std::string text;
		if (!AppendPath(text, {commands.begin(), commands.GetCount()}, {}))
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
