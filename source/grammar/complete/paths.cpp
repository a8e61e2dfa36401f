// SPDX-License-Identifier: MIT
#include "complete/paths.h"

#include "complete/quarter_arc.h"
#include "complete/value_cursor.h"
#include "fast/path_parser.h"
#include "fast/tape_reader.h"

namespace orvan::grammar::complete
{
namespace
{
template <typename Reader>
Progress Parse(std::string_view text, PathSink& sink)
{
	PathParser<PathDialect::complete, Reader> parser(text, sink, &DeliverArc);
	const bool isWhole = parser.Parse();
	return {isWhole, isWhole ? text.size() : text.size() - parser.CountRest()};
}
} // namespace

Progress ParsePath(std::string_view text, PathSink& sink)
{
	if (EqualsIgnoreCase(text, "none"))
		return {true, text.size()};
	constexpr auto kDialect = PathDialect::complete;
	return NumberTape::IsAvailable() ? Parse<TapeReader<kDialect>>(text, sink)
									 : Parse<PathReader<kDialect>>(text, sink);
}

Progress ParsePoints(std::string_view text, PathSink& sink)
{
	PathReader<PathDialect::complete> reader(text, sink);
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
