// SPDX-License-Identifier: MIT
// The fast layer and the library, side by side over random texts that are nearly, or fully, values. The fuzz targets do
// the same in earnest; this is what every test run can afford.

#include "fast/paths.h"
#include "recording_sinks.h"
#include "shared/short_arc.h"
#include "svgpp/library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <span>
#include <utility>
#include <vector>

namespace orvan::grammar
{
namespace
{
constexpr int kTexts = 30000;

class Texts
{
public:
	/// Some of the tokens in a row, with numbers in place of "#".
	std::string Next(std::span<const std::string_view> tokens, std::size_t most)
	{
		std::string text;
		for (std::size_t count = Pick(most + 1); count != 0; --count)
		{
			const std::string_view token = tokens[Pick(tokens.size())];
			if (token == "#")
				AddNumber(text);
			else
				text += token;
		}
		return text;
	}

private:
	std::size_t Pick(std::size_t count)
	{
		return _random() % count;
	}

	void AddNumber(std::string& text)
	{
		static constexpr std::string_view kSigns[]{"", "", " ", "-", ",", " -"};
		static constexpr std::string_view kExponents[]{"e2", "e-3", "E+1", "e", "e400"};
		text += kSigns[Pick(std::size(kSigns))];
		text += std::to_string(_random() >> (Pick(8) == 0 ? 0 : 40 + Pick(24)));
		if (Pick(2) == 0)
			text += '.' + std::to_string(_random() >> (Pick(8) == 0 ? 0 : 30 + Pick(34)));
		if (Pick(16) == 0)
			text += kExponents[Pick(std::size(kExponents))];
	}

	std::mt19937_64 _random{11};
};

/// What a function makes of a text. `parse` gets a sink for paths or lengths.
template <typename Sink, typename Parse>
std::string Outcome(Parse parse)
{
	Sink sink;
	const Parsed parsed = parse(sink);
	return parsed == Parsed::value ? sink.text : parsed == Parsed::nothing ? "nothing" : "refused";
}

template <typename Sink, typename Fast, typename Library>
void ExpectAgreement(std::span<const std::string_view> tokens, std::size_t most, Fast fast, Library library)
{
	Texts texts;
	int accepted = 0;
	for (int i = 0; i != kTexts; ++i)
	{
		const std::string text = texts.Next(tokens, most);
		const std::string expected = Outcome<Sink>([&](Sink& sink) { return library(text, sink); });
		ASSERT_EQ(Outcome<Sink>([&](Sink& sink) { return fast(text, sink); }), expected) << text;
		accepted += expected != "refused";
	}
	// Texts that are all refused would show little.
	EXPECT_GT(accepted, kTexts / 50);
}

TEST(Layers, AgreeOnPaths)
{
	// clang-format off
	static constexpr std::string_view kTokens[]{
		"M1 1", "M1 1", "l#,#", "L # #", "h#", "V#", "c#,# #,# #,#", "S# #,# #", "q#.5 1,1 1", "t1 1", "#", "z", " ", ".",
		"a5 5 0 01#,#", "A1,2 3 1,0 4 5", "a1 2 # 0 1 #,#", "A # #,0,1,0# #", "a4 4 0 0 1-4 4", "a3 3 0 1 0 6 0",
		" 4 4 0 0 0 4-4 #", "a.5 1 0 1 00 2 2"};
	// clang-format on
	ExpectAgreement<RecordingPathSink>(
		kTokens, 7,
		[](std::string_view text, PathSink& sink) { return ParsePathWith(text, sink, &library::DeliverArc); },
		[](std::string_view text, PathSink& sink) { return library::ParsePath(text, sink); });
}

/// What an arc is made of by the library's formula in more digits than the library has.
std::vector<long double> BendExactly(const Arc& arc)
{
	using Long = long double;
	const Long halfX = (Long{arc.startX} - arc.endX) / 2;
	const Long halfY = (Long{arc.startY} - arc.endY) / 2;
	const Long radiusX = arc.radiusX;
	const Long radiusY = arc.radiusY;
	const Long part = std::pow(radiusX * halfY, 2.0L) + std::pow(radiusY * halfX, 2.0L);
	const Long distance = std::sqrt(std::pow(radiusX * radiusY, 2.0L) / part - 1) * (arc.isSweep ? 1 : -1);
	const Long fromMiddleX = distance * radiusX / radiusY * halfY;
	const Long fromMiddleY = -distance * radiusY / radiusX * halfX;
	const Long start = std::atan2((halfY - fromMiddleY) / radiusY, (halfX - fromMiddleX) / radiusX);
	const Long end = std::atan2((-halfY - fromMiddleY) / radiusY, (-halfX - fromMiddleX) / radiusX);
	const Long whole = std::remainder(end - start, 2 * std::numbers::pi_v<Long>);
	const int count = 1 + static_cast<int>(std::fabs(whole) / (std::numbers::pi_v<Long> / 2));
	const Long step = whole / count;
	const Long handle = std::sin(step) * (std::sqrt(4 + 3 * std::pow(std::tan(step / 2), 2.0L)) - 1) / 3;
	std::vector<long double> values;
	for (int i = 0; i != count; ++i)
	{
		for (const auto& [angle, side] :
			 {std::pair{start + i * step, handle}, std::pair{start + (i + 1) * step, -handle},
			  std::pair{start + (i + 1) * step, Long{0}}})
		{
			values.push_back((Long{arc.startX} + arc.endX) / 2 + fromMiddleX +
							 radiusX * (std::cos(angle) - side * std::sin(angle)));
			values.push_back((Long{arc.startY} + arc.endY) / 2 + fromMiddleY +
							 radiusY * (std::sin(angle) + side * std::cos(angle)));
		}
	}
	return values;
}

/// The numbers of cubics.
struct CubicSink final : PathSink
{
	void MoveTo(double, double) override
	{
	}

	void LineTo(double, double) override
	{
		ADD_FAILURE();
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		numbers.insert(numbers.end(), {x1, y1, x2, y2, x, y});
	}

	void Close() override
	{
	}

	std::vector<double> numbers;
};

TEST(Layers, ShortArcsHaveTheLibrarysCubicsButMoreExactly)
{
	std::mt19937_64 random{5};
	const auto pick = [&random](double from, double to)
	{
		return std::uniform_real_distribution<>(from, to)(random);
	};
	int taken = 0;
	for (int i = 0; i != kTexts; ++i)
	{
		const double radius = pick(1, 20);
		Arc arc{pick(-30, 30), pick(-30, 30), radius, radius, 0, false, i % 2 == 0, 0, 0};
		arc.endX = arc.startX + pick(-2, 2) * radius;
		arc.endY = arc.startY + pick(-2, 2) * radius;
		CubicSink fast, library;
		if (!DeliverShortArc(arc, fast))
			continue;
		++taken;
		library::DeliverArc(arc, library);
		ASSERT_EQ(fast.numbers.size(), library.numbers.size());
		const std::vector<long double> exact = BendExactly(arc);
		ASSERT_EQ(exact.size(), fast.numbers.size());
		EXPECT_EQ(fast.numbers.end()[-2], arc.endX);
		EXPECT_EQ(fast.numbers.end()[-1], arc.endY);
		double largest = std::max({radius, std::fabs(arc.startX), std::fabs(arc.startY)});
		for (double number : library.numbers)
			largest = std::max(largest, std::fabs(number));
		const double lastPlace = std::nextafter(largest, HUGE_VAL) - largest;
		for (std::size_t k = 0; k != exact.size(); ++k)
		{
			EXPECT_LE(std::fabs(fast.numbers[k] - exact[k]), 2 * lastPlace) << i << ' ' << k;
			EXPECT_NEAR(fast.numbers[k], library.numbers[k], 1e-12 * largest) << i << ' ' << k;
		}
	}
	EXPECT_GT(taken, kTexts / 2);
	// A quarter turn is one cubic or two as the library's angles are rounded, and half a turn two or three.
	CubicSink none;
	EXPECT_FALSE(DeliverShortArc({0, 1, 1, 1, 0, false, true, 1, 0}, none));
	EXPECT_FALSE(DeliverShortArc({0, 0, 1, 1, 0, false, true, 2, 0}, none));
	EXPECT_FALSE(DeliverShortArc({0, 0, 3, 3, 0, true, true, 2, 0}, none));
	EXPECT_FALSE(DeliverShortArc({0, 0, 3, 3, 10, false, true, 2, 0}, none));
	EXPECT_FALSE(DeliverShortArc({0, 0, 3, 2, 0, false, true, 2, 0}, none));
}

TEST(Layers, AgreeOnPoints)
{
	static constexpr std::string_view kTokens[]{"#", "#", "#", "1.", " ", "\n", ", ", ".5", "-", "1,2 "};
	ExpectAgreement<RecordingPathSink>(kTokens, 9, ParsePoints, library::ParsePoints);
}

TEST(Layers, AgreeOnLengths)
{
	static constexpr std::string_view kTokens[]{"#", "#", "px", "em", "%", "In", " ", ", ", ".5", "none", "e", "5ex"};
	for (Source source : {Source::attribute, Source::style})
		ExpectAgreement<RecordingLengthSink>(
			kTokens, 5,
			[source](std::string_view text, LengthSink& sink) { return ParseDashArray(text, source, sink); },
			[source](std::string_view text, LengthSink& sink) { return library::ParseDashArray(text, source, sink); });
}

TEST(Layers, AgreeOnTransforms)
{
	static constexpr std::string_view kTokens[]{"translate(1,2)",
												"scale(3 .5)",
												"scale(-2)",
												"rotate(30 1,2)",
												"(#)",
												"rotate ( 7 )",
												"matrix(1 2,3 4 5 6)",
												"skewX(5)",
												"translate",
												",",
												" "};
	struct MatrixSink
	{
		std::string text;
	};
	const auto run = [](Parsed (*parse)(std::string_view, Matrix&))
	{
		return [parse](std::string_view text, MatrixSink& sink)
		{
			Matrix m;
			const Parsed parsed = parse(text, m);
			for (double number : {m.a, m.b, m.c, m.d, m.e, m.f})
				AppendNumber(sink.text, number);
			return parsed;
		};
	};
	ExpectAgreement<MatrixSink>(kTokens, 5, run(ParseTransform), run(library::ParseTransform));
}
} // namespace
} // namespace orvan::grammar
