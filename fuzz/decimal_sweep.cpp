// SPDX-License-Identifier: MIT
// Compares the numbers of the fast layer with those of the library, over random short texts: decimal_sweep [millions].
// What stops the conversion short is compared as well: where a number ends, and what is no number at all.

#include "fast/path_reader.h"

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

using LibraryNumber = bool (*)(const char*&, const char*, double&);

template <After after>
void Compare(const std::string& text, LibraryNumber readLibrary)
{
	PathReader<PathDialect::plain> reader(text);
	double fast = 0;
	const bool isFast = reader.ReadNumber<after>(fast);
	const char* at = text.data();
	const char* const end = at + text.size();
	double library = 0;
	const bool isLibrary = readLibrary(at, end, library);

	std::ptrdiff_t rest = 0;
	for (; isFast && !reader.IsAtEnd(); reader.Take())
		++rest;
	const bool isSame =
		isFast == isLibrary &&
		(!isFast || (std::bit_cast<std::uint64_t>(fast) == std::bit_cast<std::uint64_t>(library) && rest == end - at));
	if (isSame)
		return;
	std::fprintf(stderr, "\"%s\": fast %d %.17g, library %d %.17g\n", text.c_str(), isFast, fast, isLibrary, library);
	std::exit(1);
}
} // namespace

int main(int argc, char** argv)
{
	const long millions = argc > 1 ? std::atol(argv[1]) : 10;
	Generator generator;
	for (long i = 0; i != millions * 1000000; ++i)
	{
		const std::string& text = generator.Next();
		Compare<After::command>(text, library::ReadPathNumber);
		Compare<After::start>(text, library::ReadPointsNumber);
	}
	std::printf("%ld million texts: no difference\n", millions);
}
