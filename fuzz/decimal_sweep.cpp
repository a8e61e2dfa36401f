// SPDX-License-Identifier: MIT
// Compares the numbers of the fast layer with those of the library, over random short texts: decimal_sweep [millions].
// What stops the conversion short is compared as well: where a number ends, and what is no number at all. Numbers stand
// in path data and in "points", at one more place than the time before, since the fast layer reads several at once.

#include "agreement.h"
#include "fast/number_tape.h"
#include "fast/paths.h"

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

using namespace orvan::grammar;

namespace
{
class Generator
{
public:
	/// A text that starts with something like a number and goes on with something else.
	const std::string& Next()
	{
		_text.clear();
		constexpr std::string_view kSigns[]{"", "", "", "-", "-", "+"};
		_text += kSigns[Pick(std::size(kSigns))];
		AddDigits();
		if (Pick(4) != 0)
		{
			_text += '.';
			AddDigits();
		}
		if (Pick(8) == 0)
		{
			constexpr std::string_view kExponents[]{"e", "E", "e-", "e+", "E-0", "em"};
			_text += kExponents[Pick(std::size(kExponents))];
			for (std::size_t count = Pick(4); count != 0; --count)
				_text += Digit();
		}
		// The fast layer takes what parts a number from the one before as well; here there is nothing to take.
		if (_text.empty())
			_text += Digit();
		constexpr std::string_view kEnds[]{"", " ", ",", "-", ".", "z", "e", " 12.5-3.25 7,8 9 10 11 12 13 14"};
		_text += kEnds[Pick(std::size(kEnds))];
		return _text;
	}

private:
	std::size_t Pick(std::size_t count)
	{
		// A few bits of a product are random enough for shapes and cheaper than a distribution.
		return static_cast<std::size_t>((_random() >> 32) * count >> 32);
	}

	char Digit()
	{
		return static_cast<char>('0' + Pick(10));
	}

	void AddDigits()
	{
		std::size_t count = Pick(Pick(8) == 0 ? 24 : 9);
		// Zeros in front take a turn of their own in the library.
		for (std::size_t zeros = Pick(8) == 0 ? Pick(12) : 0; zeros != 0; --zeros)
			_text += '0';
		for (; count != 0; --count)
			_text += Digit();
	}

	std::mt19937_64 _random{7};
	std::string _text;
};

} // namespace

int main(int argc, char** argv)
{
	const long millions = argc > 1 ? std::atol(argv[1]) : 10;
	Generator generator;
	std::string text;
	for (long i = 0; i != millions * 1000000; ++i)
	{
		text = i % 2 == 0 ? "" : "M";
		for (long before = i / 2 % 16; before != 0; --before)
			text += "1.5 ";
		text += generator.Next();
		const auto compare = [&text](const char* name, Parsed (*fast)(std::string_view, PathSink&),
									 Parsed (*library)(std::string_view, PathSink&))
		{
			fuzz::ExpectAgreement(name, text,
								  [&](bool isFast, fuzz::Trace& trace)
								  { return isFast ? fast(text, trace) : library(text, trace); });
		};
		if (text[0] != 'M')
			compare("ParsePoints", ParsePoints, library::ParsePoints);
		else
		{
			compare("ParsePathByNumbers", ParsePathByNumbers, library::ParsePath);
			if (NumberTape::IsAvailable())
				compare("ParsePathFromTape", ParsePathFromTape, library::ParsePath);
		}
	}
	std::printf("%ld million texts: no difference\n", millions);
}
