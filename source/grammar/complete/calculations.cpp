// SPDX-License-Identifier: MIT
#include "complete/calculations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace orvan::grammar::complete
{
namespace
{
using Kind = Quantity::Kind;

constexpr int kMostNesting = 32;

// What depends on a font is taken as in the one that browsers start with: which one is there shows when it is drawn.
constexpr double kCapitalHeight = 0.655;
constexpr double kLineHeight = 1.125;

bool IsZeroLength(const Quantity& quantity) noexcept
{
	return quantity.kind == Kind::length && quantity.value == 0;
}

/// Gives two quantities the same unit. False when they have none in common.
bool Unite(Quantity& a, Quantity& b) noexcept
{
	if (a.kind != b.kind)
		return false;
	if (a.kind != Kind::length || a.unit == b.unit)
		return true;
	// Nothing is nothing in every unit.
	if (IsZeroLength(a))
		a.unit = b.unit;
	else if (IsZeroLength(b))
		b.unit = a.unit;
	return a.unit == b.unit;
}

/// Pixels in one of a unit; zero where that is not known.
double PixelsIn(LengthUnit unit, const LengthUnits& units) noexcept
{
	switch (unit)
	{
	case LengthUnit::px:
		return 1;
	case LengthUnit::in:
		return 96;
	case LengthUnit::cm:
		return 96 / 2.54;
	case LengthUnit::mm:
		return 96 / 25.4;
	case LengthUnit::q:
		return 96 / 101.6;
	case LengthUnit::pt:
		return 96.0 / 72;
	case LengthUnit::pc:
		return 16;
	case LengthUnit::percent:
		return units.whole;
	case LengthUnit::em:
		return units.fontSize;
	case LengthUnit::ex:
	case LengthUnit::ch:
		return units.fontSize / 2;
	case LengthUnit::cap:
		return units.fontSize * kCapitalHeight;
	case LengthUnit::ic:
		return units.fontSize;
	case LengthUnit::lh:
		return units.fontSize * kLineHeight;
	case LengthUnit::rem:
		return units.rootFontSize;
	case LengthUnit::rlh:
		return units.rootFontSize * kLineHeight;
	default:
		return 0;
	}
}

/// A function of one number or angle.
struct UnaryFunction
{
	std::string_view name;
	double (*calculate)(double);
	bool takesAngle = false;
	bool givesAngle = false;
};

constexpr double kRadian = 180 / std::numbers::pi;

constexpr UnaryFunction kUnary[]{
	{"sqrt",
	 [](double x)
	 {
		 return std::sqrt(x);
	 }},
	{"exp",
	 [](double x)
	 {
		 return std::exp(x);
	 }},
	{"sin", [](double x) { return std::sin(x); }, true},
	{"cos", [](double x) { return std::cos(x); }, true},
	{"tan", [](double x) { return std::tan(x); }, true},
	{"asin", [](double x) { return std::asin(x) * kRadian; }, false, true},
	{"acos", [](double x) { return std::acos(x) * kRadian; }, false, true},
	{"atan", [](double x) { return std::atan(x) * kRadian; }, false, true},
};

/// A function of two quantities of one kind, or of numbers alone.
struct BinaryFunction
{
	std::string_view name;
	double (*calculate)(double, double);
	Kind (*kindOf)(Kind);
	bool takesNumbers;
	double second; ///< What the second is where it may be absent; else not a number.
};

constexpr double kNeeded = std::numeric_limits<double>::quiet_NaN();

constexpr BinaryFunction kBinary[]{
	{"pow", [](double x, double y) { return std::pow(x, y); }, [](Kind kind) { return kind; }, true, kNeeded},
	{"log", [](double x, double y) { return std::log(x) / std::log(y); }, [](Kind kind) { return kind; }, true,
	 std::numbers::e},
	{"hypot", [](double x, double y) { return std::hypot(x, y); }, [](Kind kind) { return kind; }, false, 0},
	{"mod", [](double x, double y) { return x - y * std::floor(x / y); }, [](Kind kind) { return kind; }, false,
	 kNeeded},
	{"rem", [](double x, double y) { return std::fmod(x, y); }, [](Kind kind) { return kind; }, false, kNeeded},
	{"atan2", [](double y, double x) { return std::atan2(y, x) * kRadian; }, [](Kind) { return Kind::angle; }, false,
	 kNeeded},
	{"sign", [](double x, double) { return x > 0   ? 1.0
										   : x < 0 ? -1.0
												   : x; }, [](Kind) { return Kind::number; }, false,
	 0},
};

/// How "round()" rounds.
struct Rounding
{
	std::string_view name;
	double (*value)(double);
};

constexpr Rounding kRoundings[]{
	{"nearest",
	 [](double x)
	 {
		 return std::floor(x + 0.5);
	 }},
	{"up",
	 [](double x)
	 {
		 return std::ceil(x);
	 }},
	{"down",
	 [](double x)
	 {
		 return std::floor(x);
	 }},
	{"to-zero",
	 [](double x)
	 {
		 return std::trunc(x);
	 }},
};

class Calculator
{
public:
	Calculator(ValueCursor& cursor, std::span<const NamedNumber> names, const LengthUnits& units = {}) noexcept
		: _cursor(cursor), _names(names), _units(units)
	{
	}

	/// Takes a function with its parentheses.
	bool TakeFunction(Quantity& result) noexcept
	{
		if (_nesting == kMostNesting)
			return false;
		_nesting++;
		const bool isTaken = TakeCalc(result) || TakeClamp(result) || TakeExtreme(result) || TakeAbs(result) ||
							 TakeRounded(result) || TakeOfOne(result) || TakeOfTwo(result);
		_nesting--;
		return isTaken && !_isBroken && std::isfinite(result.value);
	}

private:
	bool TakeCalc(Quantity& result) noexcept
	{
		return _cursor.TakeFunction("calc") && Need(TakeSum(result) && _cursor.TakeClose());
	}

	bool TakeAbs(Quantity& result) noexcept
	{
		if (!_cursor.TakeFunction("abs") || !Need(TakeSum(result) && _cursor.TakeClose()))
			return false;
		result.value = std::fabs(result.value);
		return true;
	}

	bool TakeOfOne(Quantity& result) noexcept
	{
		for (const UnaryFunction& function : kUnary)
		{
			if (!_cursor.TakeFunction(function.name))
				continue;
			if (!Need(TakeSum(result) && _cursor.TakeClose()))
				return false;
			const bool isAngle = function.takesAngle && result.kind == Kind::angle;
			if (!Need(isAngle || result.kind == Kind::number))
				return false;
			result.value = function.calculate(isAngle ? result.value / kRadian : result.value);
			result.kind = function.givesAngle ? Kind::angle : Kind::number;
			return true;
		}
		return false;
	}

	bool TakeOfTwo(Quantity& result) noexcept
	{
		for (const BinaryFunction& function : kBinary)
		{
			if (!_cursor.TakeFunction(function.name))
				continue;
			if (!Need(TakeSum(result)))
				return false;
			Quantity second = result;
			second.value = function.second;
			if (_cursor.TakeComma() && !Need(function.name != "sign" && TakeSum(second)))
				return false;
			if (!Need(Unite(result, second) && (!function.takesNumbers || result.kind == Kind::number)))
				return false;
			result.value = function.calculate(result.value, second.value);
			while (function.name == "hypot" && _cursor.TakeComma())
			{
				if (!Need(TakeSum(second) && Unite(result, second)))
					return false;
				result.value = function.calculate(result.value, second.value);
			}
			result.kind = function.kindOf(result.kind);
			return Need(_cursor.TakeClose());
		}
		return false;
	}

	/// The multiple of the second that the first comes to; of one where there is none and the first is a number.
	bool TakeRounded(Quantity& result) noexcept
	{
		if (!_cursor.TakeFunction("round"))
			return false;
		auto round = kRoundings[0].value;
		if (_cursor.TakeKeyword(kRoundings, round) && !Need(_cursor.TakeComma()))
			return false;
		Quantity step{Kind::number, 1};
		if (!Need(TakeSum(result) && (!_cursor.TakeComma() || TakeSum(step)) && Unite(result, step) &&
				  _cursor.TakeClose()))
			return false;
		result.value = round(result.value / step.value) * step.value;
		return true;
	}

	bool TakeExtreme(Quantity& result) noexcept
	{
		const bool isLeast = _cursor.TakeFunction("min");
		if ((!isLeast && !_cursor.TakeFunction("max")) || !Need(TakeSum(result)))
			return false;
		while (_cursor.TakeComma())
		{
			Quantity next;
			if (!Need(TakeSum(next) && Unite(result, next)))
				return false;
			result.value = isLeast ? std::min(result.value, next.value) : std::max(result.value, next.value);
		}
		return Need(_cursor.TakeClose());
	}

	/// The lower bound counts more than the upper one; either may be "none".
	bool TakeClamp(Quantity& result) noexcept
	{
		if (!_cursor.TakeFunction("clamp"))
			return false;
		std::optional<Quantity> low, high;
		if (!Need(TakeBound(low) && _cursor.TakeComma() && TakeSum(result) && _cursor.TakeComma() && TakeBound(high) &&
				  (!low || Unite(result, *low)) && (!high || Unite(result, *high)) && _cursor.TakeClose()))
			return false;
		if (high)
			result.value = std::min(result.value, high->value);
		if (low)
			result.value = std::max(result.value, low->value);
		return true;
	}

	bool TakeBound(std::optional<Quantity>& bound) noexcept
	{
		if (_cursor.TakeWord("none"))
			return true;
		bound.emplace();
		return TakeSum(*bound);
	}

	/// Blanks stand on both sides of a plus and a minus.
	bool TakeSum(Quantity& sum) noexcept
	{
		if (!TakeProduct(sum))
			return false;
		while (IsBlankBehind())
		{
			const bool isMinus = _cursor.Peek() == '-';
			if (!_cursor.Take(isMinus ? '-' : '+'))
				break;
			Quantity term;
			if (!_cursor.SkipSpaces() || !TakeProduct(term) || !Unite(sum, term))
				return false;
			sum.value += isMinus ? -term.value : term.value;
		}
		return true;
	}

	bool TakeProduct(Quantity& product) noexcept
	{
		if (!TakeTerm(product))
			return false;
		_cursor.SkipSpaces();
		for (;;)
		{
			const bool isQuotient = _cursor.Peek() == '/';
			if (!_cursor.TakeMark(isQuotient ? '/' : '*'))
				return true;
			Quantity factor;
			if (!TakeTerm(factor))
				return false;
			if (product.kind == Kind::number && !isQuotient)
				std::swap(product, factor);
			if (factor.kind != Kind::number)
				return false;
			product.value = isQuotient ? product.value / factor.value : product.value * factor.value;
			_cursor.SkipSpaces();
		}
	}

	bool TakeTerm(Quantity& term) noexcept
	{
		if (_cursor.TakeMark('('))
		{
			if (_nesting == kMostNesting)
				return false;
			_nesting++;
			const bool isTaken = TakeSum(term) && _cursor.TakeClose();
			_nesting--;
			return isTaken;
		}
		if (IsLetter(_cursor.Peek()))
			return TakeConstant(term) || TakeFunction(term);
		const char* const begin = _cursor.At();
		Length length;
		if (_cursor.TakeLength(length))
			term = ToQuantity(length);
		else
		{
			_cursor.MoveTo(begin);
			term.kind = Kind::angle;
			if (!_cursor.TakeAngle(false, term.value))
				return false;
		}
		return true;
	}

	bool TakeConstant(Quantity& term) noexcept
	{
		for (const NamedNumber& number : _names)
		{
			if (!_cursor.TakeWord(number.name))
				continue;
			term = {Kind::number, number.value};
			return true;
		}
		const bool isPi = _cursor.TakeWord("pi");
		if (!isPi && !_cursor.TakeWord("e"))
			return false;
		term = {Kind::number, isPi ? std::numbers::pi : std::numbers::e};
		return true;
	}

	Quantity ToQuantity(const Length& length) const noexcept
	{
		if (length.unit == LengthUnit::number)
			return {Kind::number, length.value};
		if (length.unit == LengthUnit::percent && _units.whole == 0)
			return {Kind::percentage, length.value};
		const double pixels = PixelsIn(length.unit, _units);
		return pixels != 0 ? Quantity{Kind::length, length.value * pixels}
						   : Quantity{Kind::length, length.value, length.unit};
	}

	bool IsBlankBehind() const noexcept
	{
		return IsSpace(_cursor.At()[-1]) || _cursor.At()[-1] == '/';
	}

	/// What comes behind the name of a function must be right: nothing else can begin so.
	bool Need(bool isRight) noexcept
	{
		_isBroken = _isBroken || !isRight;
		return isRight;
	}

	ValueCursor& _cursor;
	const std::span<const NamedNumber> _names;
	const LengthUnits _units;
	int _nesting = 0;
	bool _isBroken = false;
};
} // namespace

bool TakeCalculation(ValueCursor& cursor, Quantity& quantity, std::span<const NamedNumber> names) noexcept
{
	return Calculator(cursor, names).TakeFunction(quantity);
}

bool MayHaveCalculations(std::string_view text) noexcept
{
	return text.find('(') != text.npos;
}

bool ResolveCalculations(std::string_view text, const LengthUnits& units, std::string& resolved)
{
	ValueCursor cursor(text);
	const char* copied = text.data();
	std::string result;
	bool isChanged = false;
	while (!cursor.IsAtEnd())
	{
		const char* const begin = cursor.At();
		const std::string_view word = cursor.PeekWord();
		if (word.empty())
		{
			cursor.MoveTo(begin + 1);
			continue;
		}
		Quantity quantity;
		if (!IsLetter(word[0]) || !Calculator(cursor, {}, units).TakeFunction(quantity))
		{
			cursor.MoveTo(begin + word.size());
			continue;
		}
		if (quantity.kind != Kind::length || quantity.unit != LengthUnit::px)
			continue;
		std::array<char, 32> digits;
		const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), quantity.value).ptr;
		result.append(copied, begin).append("calc(").append(digits.data(), end).append("px)");
		copied = cursor.At();
		// What closes the function takes the blanks behind it along.
		result += ' ';
		isChanged = true;
	}
	if (!isChanged)
		return false;
	resolved = result.append(copied, text.data() + text.size());
	return true;
}
} // namespace orvan::grammar::complete
