// SPDX-License-Identifier: MIT
// Every attribute value function beside the grammar library's own reading of the same values.
//
// Path data comes in three styles: as icon optimisers write it (relative, no blank that can be spared), as drawing
// programs write it (absolute, pairs with a comma), and as maps have it (long chains of lines).

#include "grammar.h"
#include "svgpp/library.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <random>
#include <span>
#include <string>

namespace
{
using namespace orvan::grammar;

constexpr std::size_t kTextSize = 1 << 20;

class SummingSink final : public PathSink, public LengthSink
{
public:
	void MoveTo(double x, double y) override
	{
		sum += x + y;
	}

	void LineTo(double x, double y) override
	{
		sum += x + y;
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		sum += x1 + y1 + x2 + y2 + x + y;
	}

	void Close() override
	{
		sum += 1;
	}

	void Append(const Length& length) override
	{
		sum += length.value;
	}

	double sum = 0;
};

class Writer
{
public:
	double Uniform(double from, double to)
	{
		return std::uniform_real_distribution<double>(from, to)(_random);
	}

	int Pick(int count)
	{
		return std::uniform_int_distribution<int>(0, count - 1)(_random);
	}

	void Add(std::string_view part)
	{
		text += part;
	}

	void AddNumber(double number, int decimals)
	{
		std::array<char, 32> buffer;
		text.append(buffer.data(),
					static_cast<std::size_t>(std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, number)));
	}

	/// A number as an optimiser leaves it: no trailing zeros, no zero before the point, no blank before a minus or
	/// before a point that follows another.
	void AddTerse(double number, int decimals)
	{
		std::array<char, 32> buffer;
		const int size = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, number);
		std::string digits(buffer.data(), static_cast<std::size_t>(size));
		if (digits.find('.') != std::string::npos)
		{
			digits.erase(digits.find_last_not_of('0') + 1);
			if (digits.back() == '.')
				digits.pop_back();
		}
		if (digits == "-0")
			digits = "0";
		if (digits.starts_with("0."))
			digits.erase(0, 1);
		else if (digits.starts_with("-0."))
			digits.erase(1, 1);
		const char last = text.empty() ? ' ' : text.back();
		const bool needsBlank =
			((last >= '0' && last <= '9') || last == '.') && digits[0] != '-' && !(digits[0] == '.' && _lastHadPoint);
		if (needsBlank)
			text += ' ';
		_lastHadPoint = digits.find('.') != std::string::npos;
		text += digits;
	}

	std::string text;

private:
	std::mt19937_64 _random{20240229};
	bool _lastHadPoint = false;
};

std::string MakeIconPath()
{
	static constexpr std::string_view kCommands = "cccccclllhvsszm";
	Writer writer;
	writer.Add("M12 2");
	while (writer.text.size() < kTextSize)
	{
		const char command = kCommands[static_cast<std::size_t>(writer.Pick(static_cast<int>(kCommands.size())))];
		writer.text += command;
		const int count = command == 'c' ? 6 : command == 's' ? 4 : command == 'h' || command == 'v' ? 1 : 2;
		for (int i = 0; command != 'z' && i != count; ++i)
			writer.AddTerse(writer.Uniform(-9, 9), writer.Pick(4));
	}
	return writer.text;
}

std::string MakeIconArcs()
{
	Writer writer;
	writer.Add("M12 2");
	while (writer.text.size() < kTextSize)
	{
		writer.text += 'a';
		writer.AddTerse(writer.Uniform(1, 9), 1);
		writer.AddTerse(writer.Uniform(1, 9), 1);
		writer.Add(" 0 0 1");
		writer.AddTerse(writer.Uniform(-9, 9), 2);
		writer.AddTerse(writer.Uniform(-9, 9), 2);
		writer.text += 'h';
		writer.AddTerse(writer.Uniform(-9, 9), 2);
	}
	return writer.text;
}

std::string MakeEditorPath()
{
	Writer writer;
	writer.Add("M 10,10");
	while (writer.text.size() < kTextSize)
	{
		const bool isLine = writer.Pick(4) == 0;
		writer.Add(isLine ? " L" : " C");
		for (int i = 0; i != (isLine ? 1 : 3); ++i)
		{
			writer.Add(" ");
			writer.AddNumber(writer.Uniform(-20, 900), 3 + writer.Pick(4));
			writer.Add(",");
			writer.AddNumber(writer.Uniform(-20, 900), 3 + writer.Pick(4));
		}
		if (writer.Pick(20) == 0)
			writer.Add(" Z M 5,5");
	}
	return writer.text;
}

std::string MakeMapPath()
{
	Writer writer;
	writer.Add("M100 100");
	while (writer.text.size() < kTextSize)
	{
		writer.Add("L");
		writer.AddNumber(writer.Uniform(0, 999), 2);
		writer.Add(" ");
		writer.AddNumber(writer.Uniform(0, 999), 2);
	}
	return writer.text;
}

std::string MakePoints()
{
	Writer writer;
	while (writer.text.size() < kTextSize)
	{
		writer.AddNumber(writer.Uniform(-50, 900), 1 + writer.Pick(4));
		writer.Add(",");
		writer.AddNumber(writer.Uniform(-50, 900), 1 + writer.Pick(4));
		writer.Add(" ");
	}
	return writer.text;
}

void BenchText(benchmark::State& state, const std::string& text, Parsed (*parse)(std::string_view, PathSink&))
{
	for (auto _ : state)
	{
		SummingSink sink;
		if (parse(text, sink) != Parsed::value)
			state.SkipWithError("refused");
		benchmark::DoNotOptimize(sink.sum);
	}
	state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void RegisterText(const std::string& name, std::string text, Parsed (*fast)(std::string_view, PathSink&),
				  Parsed (*library)(std::string_view, PathSink&))
{
	for (auto [layer, parse] : {std::pair{"fast", fast}, std::pair{"library", library}})
	{
		benchmark::RegisterBenchmark((name + "/" + layer).c_str(),
									 [text, parse = parse](benchmark::State& state) { BenchText(state, text, parse); });
	}
}

/// Time for one value, over some typical ones.
template <typename Parse>
void RegisterValues(const char* name, const char* layer, std::span<const std::string_view> values, Parse parse)
{
	benchmark::RegisterBenchmark(
		(std::string(name) + "/" + layer).c_str(),
		[values, parse](benchmark::State& state)
		{
			for (auto _ : state)
			{
				for (std::string_view value : values)
				{
					if (parse(value) == Parsed::refused)
						state.SkipWithError("refused");
				}
			}
			state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
			state.counters["per value"] =
				benchmark::Counter(static_cast<double>(values.size()),
								   benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
		});
}

template <typename Value, std::size_t count>
void RegisterLayer(const char* name, const char* layer, const std::array<std::string_view, count>& values,
				   Parsed (*parse)(std::string_view, Value&))
{
	RegisterValues(name, layer, values,
				   [parse](std::string_view text)
				   {
					   Value value{};
					   const Parsed parsed = parse(text, value);
					   benchmark::DoNotOptimize(value);
					   return parsed;
				   });
}

template <typename Value, std::size_t count>
void RegisterPair(const char* name, const std::array<std::string_view, count>& values,
				  Parsed (*fast)(std::string_view, Value&), Parsed (*library)(std::string_view, Value&))
{
	RegisterLayer(name, "fast", values, fast);
	RegisterLayer(name, "library", values, library);
}

template <typename Value, std::size_t count>
void RegisterPair(const char* name, const std::array<std::string_view, count>& values,
				  Parsed (*fast)(std::string_view, Source, Value&), Parsed (*library)(std::string_view, Source, Value&))
{
	for (auto [layer, parse] : {std::pair{"fast", fast}, std::pair{"library", library}})
	{
		RegisterValues(name, layer, values,
					   [parse = parse](std::string_view text)
					   {
						   Value value{};
						   const Parsed parsed = parse(text, Source::style, value);
						   benchmark::DoNotOptimize(value);
						   return parsed;
					   });
	}
}

constexpr std::array<std::string_view, 4> kNumbers{"1", "0.5", ".85", "0.12345"};
constexpr std::array<std::string_view, 4> kLengths{"1", "2.5", "0.75px", "10%"};
constexpr std::array<std::string_view, 3> kFontSizes{"12px", "9.5pt", "medium"};
constexpr std::array<std::string_view, 3> kDashArrays{"none", "5,3", "1.5 2 0.25 4"};
constexpr std::array<std::string_view, 3> kOffsets{"0", "0.35", "85%"};
constexpr std::array<std::string_view, 4> kColors{"#fff", "#1a2b3c", "red", "lightgoldenrodyellow"};
constexpr std::array<std::string_view, 6> kPaints{
	"none", "#000", "#1a2b3c", "white", "url(#linearGradient123)", "rgb(12, 34, 56)"};
constexpr std::array<std::string_view, 2> kIris{"#linearGradient3456", "#a"};
constexpr std::array<std::string_view, 2> kMasks{"url(#clipPath123)", "none"};
constexpr std::array<std::string_view, 3> kDisplays{"none", "inline", "block"};
constexpr std::array<std::string_view, 2> kFillRules{"nonzero", "evenodd"};
constexpr std::array<std::string_view, 3> kFontWeights{"normal", "bold", "600"};
constexpr std::array<std::string_view, 3> kViewBoxes{"0 0 24 24", "0 0 512 512", "0,0,128.5,64.25"};
constexpr std::array<std::string_view, 2> kAspects{"xMidYMid meet", "none"};
constexpr std::array<std::string_view, 4> kTransforms{"translate(10,20)", "matrix(1,0,0,1,-23.5,12.25)",
													  "rotate(45 12 12)", "translate(-1.5 2) scale(0.5)"};
constexpr std::array<std::string_view, 1> kStyles{
	"fill:#1a2b3c;fill-opacity:1;fill-rule:evenodd;stroke:none;stroke-width:1.5;stroke-linecap:butt;opacity:0.5"};

Parsed SplitFast(std::string_view text, std::size_t& total)
{
	StyleSplitter splitter(text);
	for (std::string_view name, value; splitter.Next(name, value);)
		total += name.size() + value.size();
	return Parsed::value;
}

Parsed SplitLibrary(std::string_view text, std::size_t& total)
{
	for (std::string_view name, value; library::NextDeclaration(text, name, value);)
		total += name.size() + value.size();
	return Parsed::value;
}

Parsed DashesFast(std::string_view text, SummingSink& sink)
{
	return ParseDashArray(text, Source::attribute, sink);
}

Parsed DashesLibrary(std::string_view text, SummingSink& sink)
{
	return library::ParseDashArray(text, Source::attribute, sink);
}

void RegisterAll()
{
	RegisterText("path/icon", MakeIconPath(), ParsePath, library::ParsePath);
	RegisterText("path/arcs", MakeIconArcs(), ParsePath, library::ParsePath);
	RegisterText("path/editor", MakeEditorPath(), ParsePath, library::ParsePath);
	RegisterText("path/map", MakeMapPath(), ParsePath, library::ParsePath);
	RegisterText("points", MakePoints(), ParsePoints, library::ParsePoints);

	RegisterPair("number", kNumbers, ParseNumber, library::ParseNumber);
	RegisterPair("length", kLengths, ParseLength, library::ParseLength);
	RegisterPair("font-size", kFontSizes, ParseFontSize, library::ParseFontSize);
	RegisterPair("dasharray", kDashArrays, DashesFast, DashesLibrary);
	RegisterPair("offset", kOffsets, ParseOffset, library::ParseOffset);
	RegisterPair("color", kColors, ParseColor, library::ParseColor);
	RegisterPair("paint", kPaints, ParsePaint, library::ParsePaint);
	RegisterPair("iri", kIris, ParseIri, library::ParseIri);
	RegisterPair("mask", kMasks, ParseMaskReference, library::ParseMaskReference);
	RegisterLayer("display", "library", kDisplays, ParseDisplay);
	RegisterLayer("fill-rule", "library", kFillRules, ParseFillRule);
	RegisterLayer("font-weight", "library", kFontWeights, ParseFontWeight);
	RegisterPair("viewBox", kViewBoxes, ParseViewBox, library::ParseViewBox);
	RegisterLayer("aspect ratio", "library", kAspects, ParsePreserveAspectRatio);
	RegisterPair("transform", kTransforms, ParseTransform, library::ParseTransform);
	RegisterPair("style of seven", kStyles, SplitFast, SplitLibrary);
}
} // namespace

int main(int argc, char** argv)
{
	RegisterAll();
	benchmark::Initialize(&argc, argv);
	if (benchmark::ReportUnrecognizedArguments(argc, argv))
		return 1;
	benchmark::RunSpecifiedBenchmarks();
}
