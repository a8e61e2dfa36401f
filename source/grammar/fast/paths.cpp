// SPDX-License-Identifier: MIT
#include "fast/paths.h"

#include "fast/arc_queue.h"
#include "fast/path_parser.h"
#include "fast/tape_reader.h"

#include <cmath>

namespace orvan::grammar
{
// Nothing goes back to the library from here: what this parser refuses, the library's grammar refuses as well, and
// starting again would deliver segments twice.

namespace
{
// With the tape on the stack of its own call: room for arcs between what is used all the time costs paths without any
// arcs up to some per cent.
[[gnu::noinline]] bool ReadTape(std::string_view text, PathSink& sink, ArcSink& arcs)
{
	return PathParser<PathDialect::plain, TapeReader<PathDialect::plain>>(text, sink, arcs).Parse();
}
} // namespace

Parsed ParsePathFromTape(std::string_view text, PathSink& sink)
{
	ArcQueue arcs(sink);
	const bool isWhole = ReadTape(text, sink, arcs);
	arcs.Finish();
	return isWhole ? Parsed::value : Parsed::refused;
}

Parsed ParsePathByNumbers(std::string_view text, PathSink& sink)
{
	PathParser<PathDialect::plain, PathReader<PathDialect::plain>> parser(text, sink, &DeliverArc);
	return parser.Parse() ? Parsed::value : Parsed::refused;
}

Parsed ParsePath(std::string_view text, PathSink& sink)
{
	return NumberTape::IsAvailable() ? ParsePathFromTape(text, sink) : ParsePathByNumbers(text, sink);
}

Parsed ParsePoints(std::string_view text, PathSink& sink)
{
	PathReader<PathDialect::plain> reader(text, sink);
	if (!reader.HasMore())
		return Parsed::nothing;

	double x, y;
	if (!reader.ReadPair<After::start, After::abscissa>(x, y))
		return Parsed::refused;
	if (!std::isfinite(x) || !std::isfinite(y))
		return Parsed::refused;
	sink.MoveTo(x, y);
	while (reader.HasMore())
	{
		if (!reader.ReadPair<After::pair, After::abscissa>(x, y))
			return Parsed::refused;
		if (!std::isfinite(x) || !std::isfinite(y))
			return Parsed::refused;
		sink.LineTo(x, y);
	}
	return Parsed::value;
}
} // namespace orvan::grammar
