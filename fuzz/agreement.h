// SPDX-License-Identifier: MIT
#pragma once

/// What the fuzz targets have in common: both layers of the grammar read the input, and the process ends with a report
/// when they do not agree to the last bit.

#include "grammar.h"
#include "svgpp/library.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace orvan::grammar::fuzz
{
/// The words that a result consists of; numbers as their bits.
class Trace final : public PathSink, public LengthSink
{
public:
	void Add(std::uint64_t word)
	{
		words.push_back(word);
	}

	void Add(double number)
	{
		if (!std::isfinite(number))
		{
			std::fputs("a number that is not finite was delivered\n", stderr);
			std::abort();
		}
		words.push_back(std::bit_cast<std::uint64_t>(number));
	}

	void Add(std::string_view text)
	{
		words.push_back(reinterpret_cast<std::uintptr_t>(text.data()));
		words.push_back(text.size());
	}

	void Add(const Reference& reference)
	{
		Add(reference.text);
		Add(std::uint64_t{reference.isLocal});
	}

	void Append(const Length& length) override
	{
		Add(length.value);
		Add(static_cast<std::uint64_t>(length.unit));
	}

	void MoveTo(double x, double y) override
	{
		AddSegment('M', {x, y});
	}

	void LineTo(double x, double y) override
	{
		AddSegment('L', {x, y});
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		AddSegment('C', {x1, y1, x2, y2, x, y});
	}

	void Close() override
	{
		AddSegment('Z', {});
	}

	std::vector<std::uint64_t> words;

private:
	void AddSegment(char kind, std::initializer_list<double> numbers)
	{
		Add(static_cast<std::uint64_t>(kind));
		for (double number : numbers)
			Add(number);
	}
};

/// Runs both layers of one function. `read` takes the function's layer as `fast` or not, and a trace for the value.
template <typename Read>
void ExpectAgreement(const char* function, std::string_view text, Read read)
{
	Trace fastTrace;
	Trace libraryTrace;
	const Parsed fast = read(true, fastTrace);
	const Parsed library = read(false, libraryTrace);
	if (fast == library && (fast != Parsed::value || fastTrace.words == libraryTrace.words))
		return;
	std::fprintf(stderr, "%s: the layers disagree (%d, %d) about \"%.*s\"\n", function, static_cast<int>(fast),
				 static_cast<int>(library), static_cast<int>(text.size()), text.data());
	std::abort();
}

/// As above for a function that fills a value, which `describe` puts into the trace. The arguments go before the value.
template <typename Value, typename Fast, typename Library, typename Describe, typename... Arguments>
void ExpectAgreement(const char* function, std::string_view text, Fast fast, Library library, Describe describe,
					 Arguments... arguments)
{
	ExpectAgreement(function, text,
					[&](bool isFast, Trace& trace)
					{
						Value value{};
						const Parsed parsed =
							isFast ? fast(text, arguments..., value) : library(text, arguments..., value);
						if (parsed == Parsed::value)
							describe(trace, value);
						return parsed;
					});
}

/// The text of one run, in a block of its own size, so that a read beyond it is noticed.
class Input
{
public:
	Input(const std::uint8_t* data, std::size_t size) : _bytes(data, data + size)
	{
		_bytes.shrink_to_fit();
	}

	std::string_view Text() const
	{
		return {reinterpret_cast<const char*>(_bytes.data()), _bytes.size()};
	}

private:
	std::vector<std::uint8_t> _bytes;
};
} // namespace orvan::grammar::fuzz
