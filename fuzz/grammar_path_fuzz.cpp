// SPDX-License-Identifier: MIT
// Path data and "points".

#include "agreement.h"
#include "fast/paths.h"

#include <algorithm>

using namespace orvan::grammar;

namespace
{
/// The numbers of cubics and lines.
class Numbers final : public PathSink
{
public:
	void MoveTo(double, double) override
	{
	}

	void LineTo(double x, double y) override
	{
		values.insert(values.end(), {x, y});
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		values.insert(values.end(), {x1, y1, x2, y2, x, y});
	}

	void Close() override
	{
	}

	std::vector<double> values;
};

/// Delivers the library's cubics after comparing them with those of the fast conversion, which are closer to the
/// library's formula than they. The flattest arcs that it takes cost the library three digits.
void DeliverComparedArc(const Arc& arc, PathSink& sink)
{
	Numbers fast, library;
	DeliverArc(arc, fast);
	library::DeliverArc(arc, library);
	double largest = std::max(std::fabs(arc.startX), std::fabs(arc.startY));
	for (double value : library.values)
		largest = std::max(largest, std::fabs(value));
	const bool areClose =
		std::equal(fast.values.begin(), fast.values.end(), library.values.begin(), library.values.end(),
				   [largest](double a, double b) { return std::fabs(a - b) <= 1e-11 * largest; });
	if (!areClose)
	{
		std::fprintf(stderr, "an arc differs: from %a,%a, radii %a, %a, rotation %a, flags %d%d, to %a,%a\n",
					 arc.startX, arc.startY, arc.radiusX, arc.radiusY, arc.rotation, arc.isLarge, arc.isSweep, arc.endX,
					 arc.endY);
		std::abort();
	}
	library::DeliverArc(arc, sink);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	fuzz::ExpectAgreement("ParsePath", text,
						  [text](bool isFast, fuzz::Trace& trace) {
							  return isFast ? ParsePathWith(text, trace, &DeliverComparedArc)
											: library::ParsePath(text, trace);
						  });
	fuzz::ExpectAgreement("ParsePoints", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  { return isFast ? ParsePoints(text, trace) : library::ParsePoints(text, trace); });
	return 0;
}
