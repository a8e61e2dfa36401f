// SPDX-License-Identifier: MIT
/// Growth: files in which one thing becomes two, four and eight times as many, and what that does to the time of a
/// load. `growth_bench [PART OF A NAME]` prints a table; it fails when a time grows clearly faster than the thing does.
#include "orvan/hash.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "svg_base.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <string>
#include <vector>

namespace
{

using namespace orvan;

/// The slope of time over count, both as logarithms: 1 is linear, 2 quadratic. What is linear comes out a little above
/// 1 when the tree outgrows the processor's caches.
constexpr double kSteepest = 1.15;

std::string Repeat(std::string_view text, int count)
{
	std::string all;
	all.reserve(text.size() * static_cast<std::size_t>(count));
	for (int i = 0; i < count; i++)
		all += text;
	return all;
}

/// As above, with "@" standing for the number of the copy.
std::string RepeatNumbered(const std::string& text, int count)
{
	const std::size_t mark = text.find('@');
	std::string all;
	for (int i = 0; i < count; i++)
		all += text.substr(0, mark) + std::to_string(i) + text.substr(mark + 1);
	return all;
}

std::string Svg(const std::string& content, const std::string& attributes = {})
{
	return "<svg xmlns='http://www.w3.org/2000/svg'" + attributes + '>' + content + "</svg>";
}

std::string Rects(const std::vector<std::string>& ids)
{
	std::string all;
	for (const std::string& id : ids)
		all += "<rect id='" + id + "'/>";
	return Svg(all);
}

/// Ids that fall into one bucket of any table of up to 2^15 buckets.
std::string IdsOfOneBucket(int count)
{
	static std::vector<std::string> ids;
	for (static int number = 0; ids.size() < static_cast<std::size_t>(count); number++)
	{
		std::string id = "n" + std::to_string(number);
		if ((HashBytes(id) & 0x7fff) == 0)
			ids.push_back(std::move(id));
	}
	return Rects({ids.begin(), ids.begin() + count});
}

/// Ids that have one hash, all 64 bits of it: the second eight bytes cancel what the first have done to the state.
std::string IdsOfOneHash(int count)
{
	constexpr std::size_t kSize = 17;
	std::vector<std::string> ids;
	for (int number = 0; ids.size() < static_cast<std::size_t>(count); number++)
	{
		std::string id = std::to_string(10'000'000 + number);
		const std::uint64_t state =
			detail::MixProduct(0xa0761d6478bd642f ^ kSize ^ detail::ReadBytes(id.data(), 8), 0xe7037ed1a0b428db);
		char bytes[8];
		std::memcpy(bytes, &state, 8);
		id.append(bytes, 8).push_back('x');
		// Not every byte can stand in an attribute.
		if (id.find('\0') == id.npos && id.find('\'') == id.npos && id.find('&') == id.npos)
			ids.push_back(id);
	}
	if (HashBytes(ids.front()) != HashBytes(ids.back()))
	{
		std::fputs("the hash is another one: these ids do not collide any more\n", stderr);
		std::exit(1);
	}
	return Rects(ids);
}

/// The full number of prefixes, and attributes that use the one that is found last.
std::string PrefixedAttributes(int count)
{
	return Svg("<g" + RepeatNumbered(" p0:a@='1'", count) + "/>", RepeatNumbered(" xmlns:p@='u'", 256));
}

struct Row
{
	const char* name;
	int count; ///< At its smallest.
	std::string (*generate)(int count);
};

constexpr Row kRows[] = {
	// Few enough to stay below 8 MiB of XML tree, beyond which the importer gives pages back early: a step as well.
	{"elements", 1500,
	 [](int n)
	 {
		 return Svg(Repeat("<rect x='1' y='2' width='3' height='4' fill='red'/>", n));
	 }},
	{"depth, to the bound", 127,
	 [](int n)
	 {
		 return Svg(Repeat("<g fill='red'>", n) + Repeat("</g>", n));
	 }},
	{"depth, in many nests", 127,
	 [](int n)
	 {
		 return Svg(Repeat(Repeat("<g transform='scale(2)'>", n) + Repeat("</g>", n), 20));
	 }},
	{"unknown attributes", 8000,
	 [](int n)
	 {
		 return Svg("<g" + RepeatNumbered(" a@='1'", n) + "/>");
	 }},
	{"the same attribute again", 8000,
	 [](int n)
	 {
		 return Svg("<g" + Repeat(" fill='url(#a)'", n) + "/>");
	 }},
	{"prefixed attributes", 2000, &PrefixedAttributes},
	{"default namespaces", 4000,
	 [](int n)
	 {
		 return Svg(Repeat("<g/>", n), Repeat(" xmlns='http://www.w3.org/2000/svg'", n));
	 }},
	{"ids", 4000,
	 [](int n)
	 {
		 return Svg(RepeatNumbered("<rect id='r@'/>", n));
	 }},
	{"the same id", 4000,
	 [](int n)
	 {
		 return Svg(Repeat("<rect id='r'/>", n));
	 }},
	{"ids of one bucket", 250, &IdsOfOneBucket},
	{"ids of one hash", 4000, &IdsOfOneHash},
	{"path commands", 20000,
	 [](int n)
	 {
		 return Svg("<path d='M0 0" + Repeat("c1 2 3.5-4 5 .6", n) + "'/>");
	 }},
	{"arcs", 4000,
	 [](int n)
	 {
		 return Svg("<path d='M0 0" + Repeat("a5 6 7 1 0 8 9", n) + "'/>");
	 }},
	{"the path again", 1000,
	 [](int n)
	 {
		 return Svg("<path" + Repeat(" d='M0 0c1 2 3 4 5 6l1 2'", n) + "/>");
	 }},
	// What is allocated between keeps the path from growing where it is.
	{"the path again, between ids", 1000,
	 [](int n)
	 {
		 return Svg("<path style='" + RepeatNumbered("d:M0 0c1 2 3 4 5 6l1 2;id:a@;", n) + "'/>");
	 }},
	{"points", 20000,
	 [](int n)
	 {
		 return Svg("<polygon points='" + Repeat("1,2 3,4 ", n) + "'/>");
	 }},
	{"transforms", 8000,
	 [](int n)
	 {
		 return Svg("<g transform='" + Repeat("rotate(1 2 3) ", n) + "'/>");
	 }},
	{"declarations", 8000,
	 [](int n)
	 {
		 return Svg("<g style='" + Repeat("fill:red;stroke:#123;", n) + "'/>");
	 }},
	{"different styles", 4000,
	 [](int n)
	 {
		 return Svg(RepeatNumbered("<g style='stroke-width:@'/>", n));
	 }},
	{"dashes", 20000,
	 [](int n)
	 {
		 return Svg("<g stroke-dasharray='" + Repeat("1 2px,", n) + "3'/>");
	 }},
	{"stops", 2000,
	 [](int n)
	 {
		 return Svg("<linearGradient>" + Repeat("<stop offset='0'/>", n) + "</linearGradient>");
	 }},
	{"a text", 40000,
	 [](int n)
	 {
		 return Svg("<text>" + Repeat("a", n) + "</text>");
	 }},
	{"a text of references", 40000,
	 [](int n)
	 {
		 return Svg("<text>" + Repeat("&amp;&#233;", n) + "</text>");
	 }},
	{"a comment", 400000,
	 [](int n)
	 {
		 return Svg("<!--" + Repeat("-&lt; ", n) + "-->");
	 }},
	{"a digit run", 100000,
	 [](int n)
	 {
		 return Svg("<g opacity='0." + Repeat("1", n) + "'/>");
	 }},
	{"an id's length", 40000,
	 [](int n)
	 {
		 return Svg("<g id='" + Repeat("a", n) + "'/>");
	 }},
};

double Now()
{
	timespec time;
	clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
	return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Loads and releases; the result is the processor's time in milliseconds.
double Load()
{
	static const Url url = Url::Create("memory:growth.svg").GetValue();
	const double start = Now();
	{
		const SVGDocumentRef document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
		if (!document->Init(url).IsOk() || document->GetElementsByIdWithPrefix({}).GetValue().GetCount() > 1u << 24)
			std::abort();
	}
	return Now() - start;
}

/// The best of many loads, which is what the least disturbed one took.
double Measure(const std::string& text)
{
	if (!MemoryFiles::Publish("growth.svg", text).IsOk())
		std::abort();
	double best = Load();
	double spent = best;
	for (int i = 0; i < 5 || (spent < 60 && i < 1000); i++)
	{
		const double time = Load();
		spent += time;
		best = std::min(best, time);
	}
	MemoryFiles::Withdraw("growth.svg");
	return best;
}

/// Least squares over the logarithms of the times at 1, 2, 4 and 8 times the count.
double SlopeOf(const std::array<double, 4>& times)
{
	double slope = 0;
	for (int i = 0; i < 4; i++)
		slope += (i - 1.5) * std::log2(times[static_cast<std::size_t>(i)]) / 5;
	return slope;
}

void FailOnDiagnostic(const Diagnostic& diagnostic, void*)
{
	std::fprintf(stderr, "a file that should load: %s\n", FormatDiagnostic(diagnostic).c_str());
	std::exit(1);
}

} // namespace

int main(int argc, char** argv)
{
	// Otherwise loads beyond some size give all memory back to the system and pay for getting it again: a step in the
	// times that says nothing about growth.
	mallopt(M_MMAP_THRESHOLD, 1 << 25);
	mallopt(M_TRIM_THRESHOLD, 1 << 30);
	if (!Module::Load(ORVAN_SVG_MODULE).IsOk())
		return 1;
	SetDiagnosticSink(&FailOnDiagnostic, nullptr);
	std::printf("%-26s %9s %9s %9s %9s %9s %7s\n", "what grows", "count", "1x ms", "2x", "4x", "8x", "slope");
	bool isLinear = true;
	for (const Row& row : kRows)
	{
		if (argc > 1 && std::strstr(row.name, argv[1]) == nullptr)
			continue;
		std::array<double, 4> times{};
		for (std::size_t i = 0; i < times.size(); i++)
			times[i] = Measure(row.generate(row.count << i));
		const double slope = SlopeOf(times);
		isLinear &= slope <= kSteepest;
		std::printf("%-26s %9d %9.3f %9.3f %9.3f %9.3f %7.2f%s\n", row.name, row.count, times[0], times[1], times[2],
					times[3], slope, slope > kSteepest ? " !" : "");
		std::fflush(stdout);
	}
	return isLinear ? 0 : 1;
}
