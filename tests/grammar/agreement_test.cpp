// SPDX-License-Identifier: MIT
// The fast layer and the library, side by side over random texts that are nearly, or fully, values. The fuzz targets do
// the same in earnest; this is what every test run can afford.

#include "complete/paths.h"
#include "fast/number_tape.h"
#include "fast/paths.h"
#include "recording_sinks.h"
#include "svgpp/library.h"

#include <gtest/gtest.h>

#include <random>
#include <span>

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
	ExpectAgreement<RecordingPathSink>(kTokens, 7, ParsePathByNumbers, library::ParsePath);
	if (NumberTape::IsAvailable())
		ExpectAgreement<RecordingPathSink>(kTokens, 7, ParsePathFromTape, library::ParsePath);
}

// Long enough for tapes to be recorded anew, with little in them that is refused.
TEST(Layers, AgreeOnLongPaths)
{
	// clang-format off
	static constexpr std::string_view kTokens[]{
		"l1,2", "L1.5 -3", "h.5", "V 12345.678901", "c.1.2.3.4-.5 6", "S1 2,3\n 4", "z", "m7-7", "L 1234567.25 -.5 1e1,2",
		"a5 5 0 013,4", "a5,5 0 1 0-3.5.5", "A1 2 3 0 0 4 5", "H12345678901234567", "Z M 3 , 4", "                      ",
		"L.123456789-12345678.12345678", "q1 1 2 2 3 3 4 4", "v0.000000000000001"};
	// clang-format on
	Texts texts;
	for (int i = 0; i != kTexts / 10; ++i)
	{
		const std::string text = "M0 0" + texts.Next(kTokens, 400);
		const auto outcome = [&text](Parsed (*parse)(std::string_view, PathSink&))
		{
			return Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return parse(text, sink); });
		};
		const std::string expected = outcome(library::ParsePath);
		ASSERT_NE(expected, "refused") << text;
		ASSERT_EQ(outcome(ParsePathByNumbers), expected) << text;
		if (NumberTape::IsAvailable())
		{
			ASSERT_EQ(outcome(ParsePathFromTape), expected) << text;
			// The complete dialect, with a fault somewhere.
			std::string broken = text + ",z";
			broken.insert(broken.size() / 2, kTokens[static_cast<std::size_t>(i) % std::size(kTokens)].substr(1));
			RecordingPathSink taped, numbered;
			const complete::Progress tapedProgress = complete::ParsePathFromTape(broken, taped);
			const complete::Progress progress = complete::ParsePathByNumbers(broken, numbered);
			ASSERT_EQ(taped.text, numbered.text) << broken;
			ASSERT_EQ(tapedProgress.offset, progress.offset) << broken;
		}
	}
}

TEST(Layers, AgreeOnSignsOfZeros)
{
	static constexpr std::string_view kTokens[]{
		"M-0-0",     "m-0-0", "l-0-0",     "L-0-0",          "h-0",           "v-0",
		"H-0",       "V-0",   "z",         "c-0-0-0-0-0-0",  "C-0-0-0-0-0-0", "s-0-0-0-0",
		"S-0-0-0-0", "t-0-0", "Q-0-0-0-0", "a1 1 0 0 0-0-0", "L0-0",          "M-0 0"};
	ExpectAgreement<RecordingPathSink>(kTokens, 7, ParsePath, library::ParsePath);
}

TEST(Layers, AgreeOnPathsWithMuchRoomBetween)
{
	for (const std::size_t blanks : {65470U, 65500U, 65530U, 65535U, 65536U, 70000U})
	{
		const std::string room(blanks, ' ');
		for (const std::string& text : {"M1 2" + room + "a5 5 0 01 3 4" + room + "L5 6", "M1 2," + room + "3 4h5",
										"M1 2L3 4" + room + "a5 5 0" + room + "0 13 4z5"})
		{
			EXPECT_EQ(
				Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return ParsePath(text, sink); }),
				Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return library::ParsePath(text, sink); }))
				<< blanks;
		}
	}
}

// What no tape holds, here the plus, leaves all behind it to the other reader, which must know what came before.
TEST(Layers, AgreeOnWhatIsHandedOver)
{
	if (!NumberTape::IsAvailable())
		GTEST_SKIP() << "This processor records no tapes.";
	static constexpr std::string_view kBefore[]{"L3 4", "c1 2 3 4 5 6",   "S 5 6 7 9", "q1 2 3 5", "T1 -2",
												"z",    "a5 5 0 0 1 3 4", "m1 2",      "V7"};
	static constexpr std::string_view kBehind[]{"s+1 2 3 4",     "S1 2 +3 4", "t+1 2", "T+1 2",
												"L+3 4",         "l1 2 3+4",  "z+1",   "a5 5 0 0 1 3+4",
												" +1 2 3 4 5 6", "H+1",       "m+1 2"};
	for (std::string_view before : kBefore)
		for (std::string_view behind : kBehind)
			for (std::string_view last : {"", "z", "s1 2 3 4", "t 3 4", "l1 2z"})
			{
				const std::string text = "M7 8 9 10" + std::string(before) + std::string(behind) + std::string(last);
				EXPECT_EQ(
					Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return ParsePathFromTape(text, sink); }),
					Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return library::ParsePath(text, sink); }))
					<< text;
			}
}

/// Path data of many arcs, some of which no conversion can take.
class ArcTexts
{
public:
	std::string Next(std::size_t count)
	{
		static constexpr std::string_view kOthers[]{"h1v2",
													"z",
													"M3 4",
													"c1 2 3 4 5 6",
													"s1 2 3 4",
													"a0 3 0 0 1 2 2",
													"a1 1 0 0 1 0 0",
													"a1e80 1e80 0 0 1 1e80 1e79M2 2",
													"A1e80 2 0 0 0 1 1",
													"M0 0a1 1 0 0 1 1e-200 1e-200M2 2",
													"A 1e-200 1 0 0 0 1 2",
													"a5 5 0 0 1 5 5",
													"a2 2 0 1 1 4 0"};
		std::string text;
		for (; count != 0; --count)
		{
			if (_random() % 4 == 0)
			{
				text += kOthers[_random() % std::size(kOthers)];
				continue;
			}
			text += 'a' + Hundredths(1, 2000) + ' ' + Hundredths(1, 2000) + (_random() % 8 == 0 ? " 30 " : " 0 ");
			text += _random() % 2 == 0 ? "0 " : "1 ";
			text += _random() % 2 == 0 ? "0 " : "1 ";
			text += Hundredths(-1500, 1500) + ' ' + Hundredths(-1500, 1500);
		}
		return text;
	}

private:
	std::string Hundredths(int from, int to)
	{
		std::string text;
		AppendNumber(text, std::uniform_int_distribution<int>(from, to)(_random) / 100.0);
		return text;
	}

	std::mt19937_64 _random{12};
};

// Arcs wait for one another on a tape, and so does what stands between them.
TEST(Layers, AgreeOnManyArcs)
{
	if (!NumberTape::IsAvailable())
		GTEST_SKIP() << "This processor records no tapes.";
	ArcTexts texts;
	for (int i = 0; i != kTexts; ++i)
	{
		std::string text = "M1 1" + texts.Next(i % 16 == 0 ? 50 : 4);
		if (i % 128 == 0)
			for (int j = 0; j != 80; ++j)
				text += "h1v2";
		text += texts.Next(2);
		const std::string expected =
			Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return library::ParsePath(text, sink); });
		ASSERT_NE(expected, "refused") << text;
		ASSERT_EQ(Outcome<RecordingPathSink>([&](RecordingPathSink& sink) { return ParsePathFromTape(text, sink); }),
				  expected)
			<< text;
	}
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
