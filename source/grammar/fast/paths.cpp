// SPDX-License-Identifier: MIT
#include "fast/paths.h"

#include "fast/number_tape.h"
#include "fast/path_parser.h"
#include "fast/tape_parser.h"

#include <cmath>

namespace orvan::grammar
{
// Nothing goes back to the library from here: what this parser refuses, the library's grammar refuses as well, and
// starting again would deliver segments twice.

Parsed ParsePathFromTape(std::string_view text, PathSink& sink)
{
	std::size_t rest;
	return ParseTape<PathDialect::plain>(text, sink, &DeliverArc, rest) ? Parsed::value : Parsed::refused;
}

Parsed ParsePathByNumbers(std::string_view text, PathSink& sink)
{
	return PathParser<PathDialect::plain>(text, sink, &DeliverArc).Parse() ? Parsed::value : Parsed::refused;
}

Parsed ParsePath(std::string_view text, PathSink& sink)
{
	return NumberTape::IsAvailable() ? ParsePathFromTape(text, sink) : ParsePathByNumbers(text, sink);
}

Parsed ParsePoints(std::string_view text, PathSink& sink)
{
	PathReader<PathDialect::plain> reader(text, &sink);
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
