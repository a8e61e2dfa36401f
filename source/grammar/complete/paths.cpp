// SPDX-License-Identifier: MIT
#include "complete/paths.h"

#include "complete/quarter_arc.h"
#include "complete/value_cursor.h"
#include "fast/number_tape.h"
#include "fast/path_parser.h"
#include "fast/tape_parser.h"

namespace orvan::grammar::complete
{
Progress ParsePathFromTape(std::string_view text, PathSink& sink)
{
	std::size_t rest;
	const bool isWhole = ParseTape<PathDialect::complete>(text, sink, &DeliverArc, rest);
	return {isWhole, isWhole ? text.size() : text.size() - rest};
}

Progress ParsePathByNumbers(std::string_view text, PathSink& sink)
{
	PathParser<PathDialect::complete> parser(text, sink, &DeliverArc);
	const bool isWhole = parser.Parse();
	return {isWhole, isWhole ? text.size() : text.size() - parser.CountRest()};
}

Progress ParsePath(std::string_view text, PathSink& sink)
{
	if (EqualsIgnoreCase(text, "none"))
		return {true, text.size()};
	return NumberTape::IsAvailable() ? ParsePathFromTape(text, sink) : ParsePathByNumbers(text, sink);
}

Progress ParsePoints(std::string_view text, PathSink& sink)
{
	PathReader<PathDialect::complete> reader(text, &sink);
	const auto fail = [&reader, text]
	{
		return Progress{false, text.size() - reader.CountRest()};
	};
	for (bool isFirst = true; reader.HasMore(); isFirst = false)
	{
		double x, y;
		const bool isRead = isFirst ? reader.ReadPair<After::command, After::number>(x, y)
									: reader.ReadPair<After::number, After::number>(x, y);
		if (!isRead)
			return fail();
		if (isFirst)
			sink.MoveTo(x, y);
		else
			sink.LineTo(x, y);
	}
	return {true, text.size()};
}

Parsed ParsePathFunction(std::string_view text, PathFunction& path) noexcept
{
	ValueCursor cursor(text);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() ? Parsed::nothing : Parsed::refused;
	PathFunction result;
	if (!cursor.TakeFunction("path") || !cursor.TakeString(result.data, result.hasEscapes) || !cursor.TakeClose() ||
		!cursor.IsAtEnd())
		return Parsed::refused;
	path = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
