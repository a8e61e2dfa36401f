// SPDX-License-Identifier: MIT
#include "media.h"

#include "conditions.h"
#include "text.h"
#include "value_scanner.h"
#include "words.h"

#include <charconv>

namespace orvan::css
{
namespace
{
/// A feature that has one of several words.
struct WordFeature
{
	std::string_view name;
	std::string_view here;   ///< The word that it has here.
	std::string_view others; ///< All the others.
	bool holdsAlone;         ///< Whether "(name)" holds.
};

constexpr WordFeature kWordFeatures[]{
	{"prefers-color-scheme", "light", "dark", true},
	{"prefers-reduced-motion", "no-preference", "reduce", false},
	{"prefers-reduced-transparency", "no-preference", "reduce", false},
	{"prefers-contrast", "no-preference", "more less custom", false},
	{"forced-colors", "none", "active", false},
	{"hover", "none", "hover", false},
	{"any-hover", "none", "hover", false},
	{"pointer", "none", "coarse fine", false},
	{"any-pointer", "none", "coarse fine", false},
	{"scripting", "none", "enabled initial-only", false},
	{"update", "fast", "slow none", true},
	{"color-gamut", "srgb", "p3 rec2020", true},
	{"dynamic-range", "standard", "high", true},
	{"overflow-block", "scroll", "none paged", true},
	{"overflow-inline", "scroll", "none", true},
	{"display-mode", "browser", "fullscreen standalone minimal-ui picture-in-picture", true},
};

/// A feature that has a number: bits of a colour, dots to a pixel.
struct NumberFeature
{
	std::string_view name;
	double here;
	bool isRange; ///< Whether it may be compared.
	std::string_view units;
};

constexpr NumberFeature kNumberFeatures[]{
	{"color", 8, true, ""},
	{"color-index", 0, true, ""},
	{"monochrome", 0, true, ""},
	{"grid", 0, false, ""},
	{"resolution", 1, true, "dppx x dpi dpcm"},
	{"-webkit-device-pixel-ratio", 1, true, ""},
	{"-webkit-transform-3d", 1, false, ""},
};

/// The factors of the units of resolutions.
double DotsToPixel(std::string_view unit)
{
	return EqualsIgnoringCase(unit, "dpi") ? 1.0 / 96 : EqualsIgnoringCase(unit, "dpcm") ? 2.54 / 96 : 1;
}

bool IsAmong(std::string_view words, std::string_view word)
{
	for (std::string_view each; TakeWord(words, each);)
	{
		if (EqualsIgnoringCase(each, word))
			return true;
	}
	return false;
}

Truth ToTruth(bool holds)
{
	return holds ? Truth::yes : Truth::no;
}

/// What stands in the parentheses of a query: "(color)", "(min-color: 2)", "(1 < color <= 8)".
class MediaTest final : public ConditionTest
{
public:
	Truth WhenNotUnderstood() const override
	{
		return Truth::unknown;
	}

	bool Test(Tokenizer& tokens, Truth& truth) override
	{
		if (tokens.Current().type != TokenType::openRound)
			return false;
		tokens.Advance();
		tokens.SkipWhitespace();
		if (tokens.Current().type != TokenType::ident)
			return TestRange(tokens, truth);
		const std::string_view name = tokens.Current().text;
		tokens.Advance();
		tokens.SkipWhitespace();
		for (const WordFeature& feature : kWordFeatures)
		{
			if (EqualsIgnoringCase(feature.name, name))
				return TestWord(tokens, feature, truth);
		}
		return TestNumber(tokens, name, truth);
	}

private:
	enum class Order
	{
		less,
		lessOrEqual,
		equal,
		greaterOrEqual,
		greater
	};

	static bool IsAtClose(Tokenizer& tokens)
	{
		tokens.SkipWhitespace();
		return tokens.Current().type == TokenType::closeRound || tokens.Current().type == TokenType::end;
	}

	static bool TestWord(Tokenizer& tokens, const WordFeature& feature, Truth& truth)
	{
		truth = ToTruth(feature.holdsAlone);
		if (IsAtClose(tokens))
			return true;
		if (!TakeColon(tokens) || tokens.Current().type != TokenType::ident)
			return false;
		const std::string_view word = tokens.Current().text;
		tokens.Advance();
		truth = ToTruth(EqualsIgnoringCase(word, feature.here));
		return IsAtClose(tokens) && (truth == Truth::yes || IsAmong(feature.others, word));
	}

	static bool TestNumber(Tokenizer& tokens, std::string_view name, Truth& truth)
	{
		Order order = Order::equal;
		const NumberFeature* const feature = FindNumber(name, order);
		if (!feature)
			return false;
		if (order == Order::equal && IsAtClose(tokens))
		{
			truth = ToTruth(feature->here != 0);
			return true;
		}
		double number;
		const bool isCompared = order == Order::equal && feature->isRange && TakeOrder(tokens, order);
		if ((!isCompared && !TakeColon(tokens)) || !TakeNumber(tokens, *feature, number))
			return false;
		truth = ToTruth(Holds(feature->here, order, number));
		return IsAtClose(tokens);
	}

	/// Reads "1 < color" and "1 < color < 9".
	static bool TestRange(Tokenizer& tokens, Truth& truth)
	{
		Tokenizer left = tokens;
		tokens.Advance();
		tokens.SkipWhitespace();
		Order order;
		if (!TakeOrder(tokens, order) || tokens.Current().type != TokenType::ident)
			return false;
		Order none = Order::equal;
		const NumberFeature* const feature = FindNumber(tokens.Current().text, none);
		double number;
		if (!feature || none != Order::equal || !feature->isRange || !TakeNumber(left, *feature, number))
			return false;
		bool holds = Holds(number, order, feature->here);
		tokens.Advance();
		tokens.SkipWhitespace();
		Order second;
		if (TakeOrder(tokens, second))
		{
			if (!TakeNumber(tokens, *feature, number))
				return false;
			holds = holds && Holds(feature->here, second, number);
		}
		truth = ToTruth(holds);
		return IsAtClose(tokens);
	}

	/// The feature of a name that may begin with "min-" or "max-".
	static const NumberFeature* FindNumber(std::string_view name, Order& order)
	{
		constexpr std::string_view kWebkit = "-webkit-";
		for (const NumberFeature& feature : kNumberFeatures)
		{
			if (EqualsIgnoringCase(feature.name, name))
				return &feature;
			const bool isPrefixed = feature.name.starts_with(kWebkit);
			const std::string_view prefix = isPrefixed ? kWebkit : std::string_view();
			constexpr std::size_t kBound = 4; // "min-"
			if (!feature.isRange || name.size() != feature.name.size() + kBound ||
				!EqualsIgnoringCase(name.substr(0, prefix.size()), prefix) ||
				!EqualsIgnoringCase(name.substr(prefix.size() + kBound), feature.name.substr(prefix.size())))
				continue;
			const std::string_view bound = name.substr(prefix.size(), kBound);
			order = EqualsIgnoringCase(bound, "min-") ? Order::greaterOrEqual : Order::lessOrEqual;
			if (order == Order::greaterOrEqual || EqualsIgnoringCase(bound, "max-"))
				return &feature;
		}
		return nullptr;
	}

	static bool TakeColon(Tokenizer& tokens)
	{
		if (tokens.Current().type != TokenType::colon)
			return false;
		tokens.Advance();
		tokens.SkipWhitespace();
		return true;
	}

	static bool TakeOrder(Tokenizer& tokens, Order& order)
	{
		const bool isLess = tokens.Current().IsDelimiter('<');
		const bool isGreater = tokens.Current().IsDelimiter('>');
		if (!isLess && !isGreater && !tokens.Current().IsDelimiter('='))
			return false;
		order = isLess ? Order::less : isGreater ? Order::greater : Order::equal;
		const char* const end = tokens.Current().End();
		tokens.Advance();
		if (order != Order::equal && tokens.Current().IsDelimiter('=') && tokens.Current().Begin() == end)
		{
			order = isLess ? Order::lessOrEqual : Order::greaterOrEqual;
			tokens.Advance();
		}
		tokens.SkipWhitespace();
		return true;
	}

	static bool TakeNumber(Tokenizer& tokens, const NumberFeature& feature, double& number)
	{
		const Token& token = tokens.Current();
		const bool hasUnit = token.type == TokenType::dimension;
		if ((!hasUnit && token.type != TokenType::number) || hasUnit == feature.units.empty() ||
			(hasUnit && !IsAmong(feature.units, token.Name())))
			return false;
		std::string_view digits = token.text;
		digits.remove_prefix(digits[0] == '+' ? 1 : 0);
		if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc())
			return false;
		if (hasUnit)
			number *= DotsToPixel(token.Name());
		tokens.Advance();
		return true;
	}

	static bool Holds(double left, Order order, double right)
	{
		switch (order)
		{
		case Order::less:
			return left < right;
		case Order::lessOrEqual:
			return left <= right;
		case Order::equal:
			return left == right;
		case Order::greaterOrEqual:
			return left >= right;
		case Order::greater:
			return left > right;
		}
		return false;
	}
};

bool IsAtEnd(const Tokenizer& tokens)
{
	const TokenType type = tokens.Current().type;
	return type == TokenType::end || type == TokenType::semicolon || type == TokenType::openCurly ||
		   type == TokenType::closeCurly;
}

/// Whether a word of several follows that are no names of media.
bool IsReserved(const Tokenizer& tokens)
{
	return IsAmong("not only and or layer", tokens.Current().text);
}

/// Reads "screen", "not print and (color)" and the like, from a word on.
bool ReadTypedQuery(Tokenizer& tokens, MediaTest& test)
{
	const bool isNegated = TakeWord(tokens, "not");
	if (!isNegated)
		TakeWord(tokens, "only");
	if (tokens.Current().type != TokenType::ident || IsReserved(tokens))
		return false;
	const bool isShown = IsAmong("all screen", tokens.Current().text);
	tokens.Advance();
	tokens.SkipWhitespace();
	Truth truth = Truth::yes;
	if (TakeWord(tokens, "and") && !ReadCondition(tokens, test, truth, false))
		return false;
	if (!isShown)
		truth = Truth::no;
	return truth == (isNegated ? Truth::no : Truth::yes);
}

/// Reads a query up to its end, if it holds; else to anywhere.
bool ReadQuery(Tokenizer& tokens)
{
	MediaTest test;
	Tokenizer ahead = tokens;
	TakeWord(ahead, "not");
	Truth truth = Truth::no;
	const bool holds = ahead.Current().type == TokenType::ident
						   ? ReadTypedQuery(tokens, test)
						   : ReadCondition(tokens, test, truth) && truth == Truth::yes;
	return holds && (tokens.Current().type == TokenType::comma || IsAtEnd(tokens));
}
} // namespace

bool ReadMediaCondition(Tokenizer& tokens)
{
	tokens.SkipWhitespace();
	bool holds = IsAtEnd(tokens);
	while (!IsAtEnd(tokens))
	{
		Tokenizer query = tokens;
		holds = ReadQuery(query) || holds;
		for (ValueScanner scanner; !IsAtEnd(tokens) && tokens.Current().type != TokenType::comma;)
			scanner.TakeComponent(tokens);
		if (tokens.Current().type == TokenType::comma)
			tokens.Advance();
		tokens.SkipWhitespace();
	}
	return holds;
}

bool HoldsForMedia(std::string_view list)
{
	Tokenizer tokens(list);
	return ReadMediaCondition(tokens) && tokens.Current().type == TokenType::end;
}
} // namespace orvan::css
