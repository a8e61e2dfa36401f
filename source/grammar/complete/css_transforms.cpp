// SPDX-License-Identifier: MIT
#include "complete/space_matrix.h"
#include "complete/transforms.h"
#include "complete/value_cursor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace orvan::grammar::complete
{
namespace
{
constexpr std::size_t kMostArguments = 16;
constexpr double kPixelsPerInch = 96;

/// What arguments a function takes.
enum class Argument
{
	number,  ///< Numbers without a unit.
	factor,  ///< Numbers, or percentages as fractions.
	length,  ///< Lengths; percentages but for the third.
	angle,   ///< Angles.
	axis,    ///< Three numbers and an angle.
	distance ///< A length that is not negative, or "none".
};

/// An argument of any of these kinds; the unit is that of a length.
using Values = std::array<Length, kMostArguments>;

/// A length in user units; percentages are none.
double ToUserUnits(const Length& length, const RelativeUnits& units) noexcept
{
	const double smaller = std::min(units.viewportWidth, units.viewportHeight);
	const double larger = std::max(units.viewportWidth, units.viewportHeight);
	const std::array<double, 21> factors{units.em,
										 units.ex,
										 1,
										 kPixelsPerInch,
										 kPixelsPerInch / 2.54,
										 kPixelsPerInch / 25.4,
										 kPixelsPerInch / 72,
										 kPixelsPerInch / 6,
										 0,
										 1,
										 kPixelsPerInch / 101.6,
										 units.rem,
										 units.ch,
										 units.viewportWidth / 100,
										 units.viewportHeight / 100,
										 smaller / 100,
										 larger / 100,
										 units.cap,
										 units.ic,
										 units.lh,
										 units.rlh};
	return length.value * factors[static_cast<std::size_t>(length.unit)];
}

/// The list that is being read, as one matrix, and what percentages of the box add to its translation.
class Accumulator
{
public:
	explicit Accumulator(const RelativeUnits& units) noexcept : _units(units)
	{
	}

	void Translate(const Length& x, const Length& y, const Length& z) noexcept
	{
		const auto percent = [](const Length& length)
		{
			return length.unit == LengthUnit::percent ? length.value : 0;
		};
		const SpaceMatrix::Column ofWidth = _matrix.Apply({percent(x), 0, 0, 0});
		const SpaceMatrix::Column ofHeight = _matrix.Apply({0, percent(y), 0, 0});
		for (std::size_t row = 0; row != ofWidth.size(); ++row)
		{
			_ofWidth[row] += ofWidth[row];
			_ofHeight[row] += ofHeight[row];
		}
		SpaceMatrix translation;
		translation.columns[3] = {ToUserUnits(x, _units), ToUserUnits(y, _units), ToUserUnits(z, _units), 1};
		Append(translation);
	}

	void Append(const SpaceMatrix& matrix) noexcept
	{
		_matrix = _matrix * matrix;
	}

	bool Finish(Transform& transform) const noexcept
	{
		const auto& [x, y, z, translation] = _matrix.columns;
		const Transform result{{x[0], x[1], y[0], y[1], translation[0], translation[1]},
							   _ofWidth[0],
							   _ofWidth[1],
							   _ofHeight[0],
							   _ofHeight[1]};
		const Matrix& m = result.matrix;
		const std::array numbers{
			m.a, m.b, m.c, m.d, m.e, m.f, result.eOfWidth, result.fOfWidth, result.eOfHeight, result.fOfHeight};
		if (!std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); }))
			return false;
		transform = result;
		return true;
	}

private:
	RelativeUnits _units;
	SpaceMatrix _matrix;
	SpaceMatrix::Column _ofWidth{};
	SpaceMatrix::Column _ofHeight{};
};

/// Sine and cosine; exact for whole quarters of a turn.
std::array<double, 2> SineAndCosine(double degrees) noexcept
{
	const double angle = std::fmod(degrees, 360);
	const double quarters = angle / 90;
	if (quarters == std::trunc(quarters))
	{
		constexpr std::array<double, 4> kSines{0, 1, 0, -1};
		const auto quarter = static_cast<std::size_t>(static_cast<int>(quarters) + 4);
		return {kSines[quarter % 4], kSines[(quarter + 1) % 4]};
	}
	const double radians = angle * (std::numbers::pi / 180);
	return {std::sin(radians), std::cos(radians)};
}

SpaceMatrix Rotation(double x, double y, double z, double degrees) noexcept
{
	const double length = std::hypot(x, y, z);
	SpaceMatrix result;
	if (length == 0 || !std::isfinite(length))
		return result;
	x /= length;
	y /= length;
	z /= length;
	const auto [sine, cosine] = SineAndCosine(degrees);
	const double rest = 1 - cosine;
	result.columns[0] = {cosine + x * x * rest, y * x * rest + z * sine, z * x * rest - y * sine, 0};
	result.columns[1] = {x * y * rest - z * sine, cosine + y * y * rest, z * y * rest + x * sine, 0};
	result.columns[2] = {x * z * rest + y * sine, y * z * rest - x * sine, cosine + z * z * rest, 0};
	return result;
}

SpaceMatrix Scaling(double x, double y, double z) noexcept
{
	SpaceMatrix result;
	result.columns[0][0] = x;
	result.columns[1][1] = y;
	result.columns[2][2] = z;
	return result;
}

SpaceMatrix Skew(double x, double y) noexcept
{
	const auto tangent = [](double degrees)
	{
		return std::tan(std::fmod(degrees, 180) * (std::numbers::pi / 180));
	};
	SpaceMatrix result;
	result.columns[0][1] = tangent(y);
	result.columns[1][0] = tangent(x);
	return result;
}

/// One function: what it is written with, and what it does. Lengths that were left out are zero.
struct FunctionRow
{
	std::string_view name;
	Argument argument;
	std::size_t least;
	std::size_t most;
	void (*apply)(Accumulator&, const Values&, std::size_t count) noexcept;
};

constexpr Length kZero{0, LengthUnit::px};

constexpr FunctionRow kFunctions[]{
	{"translate", Argument::length, 1, 2,
	 [](Accumulator& to, const Values& n, std::size_t count) noexcept
	 {
		 to.Translate(n[0], count == 2 ? n[1] : kZero, kZero);
	 }},
	{"translatex", Argument::length, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Translate(n[0], kZero, kZero);
	 }},
	{"translatey", Argument::length, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Translate(kZero, n[0], kZero);
	 }},
	{"translatez", Argument::distance, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Translate(kZero, kZero, n[0]);
	 }},
	{"translate3d", Argument::length, 3, 3,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Translate(n[0], n[1], n[2]);
	 }},
	{"scale", Argument::factor, 1, 2,
	 [](Accumulator& to, const Values& n, std::size_t count) noexcept
	 {
		 to.Append(Scaling(n[0].value, n[count - 1].value, 1));
	 }},
	{"scalex", Argument::factor, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Scaling(n[0].value, 1, 1));
	 }},
	{"scaley", Argument::factor, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Scaling(1, n[0].value, 1));
	 }},
	{"scalez", Argument::factor, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Scaling(1, 1, n[0].value));
	 }},
	{"scale3d", Argument::factor, 3, 3,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Scaling(n[0].value, n[1].value, n[2].value));
	 }},
	{"rotate", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Rotation(0, 0, 1, n[0].value));
	 }},
	{"rotatex", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Rotation(1, 0, 0, n[0].value));
	 }},
	{"rotatey", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Rotation(0, 1, 0, n[0].value));
	 }},
	{"rotatez", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Rotation(0, 0, 1, n[0].value));
	 }},
	{"rotate3d", Argument::axis, 4, 4,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Rotation(n[0].value, n[1].value, n[2].value, n[3].value));
	 }},
	{"skew", Argument::angle, 1, 2,
	 [](Accumulator& to, const Values& n, std::size_t count) noexcept
	 {
		 to.Append(Skew(n[0].value, count == 2 ? n[1].value : 0));
	 }},
	{"skewx", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Skew(n[0].value, 0));
	 }},
	{"skewy", Argument::angle, 1, 1,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 to.Append(Skew(0, n[0].value));
	 }},
	{"matrix", Argument::number, 6, 6,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 SpaceMatrix matrix;
		 matrix.columns[0] = {n[0].value, n[1].value, 0, 0};
		 matrix.columns[1] = {n[2].value, n[3].value, 0, 0};
		 matrix.columns[3] = {n[4].value, n[5].value, 0, 1};
		 to.Append(matrix);
	 }},
	{"matrix3d", Argument::number, 16, 16,
	 [](Accumulator& to, const Values& n, std::size_t) noexcept
	 {
		 SpaceMatrix matrix;
		 for (std::size_t i = 0; i != n.size(); ++i)
			 matrix.columns[i / 4][i % 4] = n[i].value;
		 to.Append(matrix);
	 }},
	{"perspective", Argument::distance, 1, 1,
	 [](Accumulator&, const Values&, std::size_t) noexcept {
	 }},
};

bool TakeArgument(ValueCursor& cursor, const FunctionRow& row, std::size_t place, Length& value) noexcept
{
	bool isPercentage;
	switch (row.argument)
	{
	case Argument::number:
		return cursor.TakePlainNumber(value.value);
	case Argument::factor:
		return cursor.TakeNumberOrPercentage(value.value, isPercentage);
	case Argument::length:
		return cursor.TakeLength(Range::any, false, value) && (place != 2 || value.unit != LengthUnit::percent);
	case Argument::angle:
		return cursor.TakeAngle(false, value.value);
	case Argument::axis:
		return place == 3 ? cursor.TakeAngle(false, value.value) : cursor.TakePlainNumber(value.value);
	case Argument::distance:
		return cursor.TakeWord("none") ||
			   (cursor.TakeLength(Range::any, false, value) && value.unit != LengthUnit::percent);
	}
	return false;
}

bool TakeArguments(ValueCursor& cursor, const FunctionRow& row, Values& values, std::size_t& count) noexcept
{
	count = 0;
	do
	{
		if (count == row.most || !TakeArgument(cursor, row, count, values[count]))
			return false;
		++count;
	} while (cursor.TakeComma());
	return count >= row.least && cursor.TakeClose();
}

bool TakeTransform(ValueCursor& cursor, Accumulator& accumulator) noexcept
{
	const std::string_view word = cursor.PeekWord();
	for (const FunctionRow& row : kFunctions)
	{
		if (row.name.size() != word.size() || !cursor.TakeFunction(row.name))
			continue;
		Values values;
		std::size_t count;
		if (!TakeArguments(cursor, row, values, count))
			return false;
		row.apply(accumulator, values, count);
		return true;
	}
	return false;
}

/// "rotate": an angle, and before or behind it the axis, unless that is the one out of the plane.
bool TakeRotation(ValueCursor& cursor, Accumulator& accumulator) noexcept
{
	double degrees = 0;
	std::array<double, 3> axis{0, 0, 1};
	const char* const start = cursor.At();
	bool isAngleFirst = cursor.TakeAngle(false, degrees);
	// A zero without a unit may begin the axis.
	const bool mayBeAxis = isAngleFirst && !IsLetter(cursor.At()[-1]);
	cursor.SkipSpaces();
	if (isAngleFirst && cursor.IsAtEnd())
	{
		accumulator.Append(Rotation(0, 0, 1, degrees));
		return true;
	}
	isAngleFirst = isAngleFirst && !mayBeAxis;
	if (!isAngleFirst)
		cursor.MoveTo(start);
	if (cursor.TakeWord("x"))
		axis = {1, 0, 0};
	else if (cursor.TakeWord("y"))
		axis = {0, 1, 0};
	else if (!cursor.TakeWord("z"))
	{
		for (double& number : axis)
		{
			if (!cursor.TakePlainNumber(number))
				return false;
			cursor.SkipSpaces();
		}
	}
	if (!isAngleFirst && !cursor.TakeAngle(false, degrees))
		return false;
	accumulator.Append(Rotation(axis[0], axis[1], axis[2], degrees));
	return true;
}

/// A keyword of "transform-origin", and the axes that it may stand for.
struct OriginRow
{
	std::string_view name;
	double fraction;
	bool isHorizontal;
	bool isVertical;
};

constexpr OriginRow kOrigins[]{
	{"left", 0, true, false},   {"right", 1, true, false},   {"top", 0, false, true},
	{"bottom", 1, false, true}, {"center", 0.5, true, true},
};

/// One value of "transform-origin".
struct OriginValue
{
	Length length{0.5, LengthUnit::percent};
	bool isHorizontal = true;
	bool isVertical = true;
	bool isKeyword = true; ///< What is left out is "center".
};

bool TakeOriginValue(ValueCursor& cursor, OriginValue& value) noexcept
{
	for (const OriginRow& row : kOrigins)
	{
		if (cursor.TakeWord(row.name))
		{
			value = {{row.fraction, LengthUnit::percent}, row.isHorizontal, row.isVertical, true};
			return true;
		}
	}
	value.isKeyword = false;
	const bool isTaken = cursor.TakeLength(Range::any, cursor.GetSource() == Source::attribute, value.length);
	cursor.SkipSpaces();
	return isTaken;
}
} // namespace

Parsed ParseTransformProperty(std::string_view text, const RelativeUnits& units, Transform& transform) noexcept
{
	ValueCursor cursor(text);
	Accumulator accumulator(units);
	if (!cursor.TakeWord("none"))
	{
		do
		{
			if (!TakeTransform(cursor, accumulator))
				return Parsed::refused;
		} while (!cursor.IsAtEnd());
	}
	return cursor.IsAtEnd() && accumulator.Finish(transform) ? Parsed::value : Parsed::refused;
}

Parsed ParseSingleTransform(std::string_view text, SingleTransform property, const RelativeUnits& units,
							Transform& transform) noexcept
{
	ValueCursor cursor(text);
	Accumulator accumulator(units);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() && accumulator.Finish(transform) ? Parsed::value : Parsed::refused;
	if (property == SingleTransform::rotate)
	{
		if (!TakeRotation(cursor, accumulator))
			return Parsed::refused;
	}
	else
	{
		std::array<Length, 3> n{kZero, kZero, kZero};
		std::size_t count = 0;
		for (; count != n.size() && !cursor.IsAtEnd(); ++count)
		{
			bool isPercentage;
			const bool isTaken = property == SingleTransform::scale
									 ? cursor.TakeNumberOrPercentage(n[count].value, isPercentage)
									 : cursor.TakeLength(Range::any, false, n[count]) &&
										   (count != 2 || n[count].unit != LengthUnit::percent);
			if (!isTaken)
				return Parsed::refused;
			cursor.SkipSpaces();
		}
		if (count == 0)
			return Parsed::refused;
		if (property == SingleTransform::scale)
			accumulator.Append(Scaling(n[0].value, n[count == 1 ? 0 : 1].value, count == 3 ? n[2].value : 1));
		else
			accumulator.Translate(n[0], n[1], n[2]);
	}
	return cursor.IsAtEnd() && accumulator.Finish(transform) ? Parsed::value : Parsed::refused;
}

Parsed ParseTransformOrigin(std::string_view text, Source source, TransformOrigin& origin) noexcept
{
	ValueCursor cursor(text, source);
	OriginValue first;
	OriginValue second;
	if (!TakeOriginValue(cursor, first))
		return Parsed::refused;
	if (!cursor.IsAtEnd())
	{
		if (!TakeOriginValue(cursor, second))
			return Parsed::refused;
		// Two keywords may stand in either order; beside a length, the first is the horizontal one.
		if (Length depth; !cursor.IsAtEnd() && (!cursor.TakeLength(Range::any, source == Source::attribute, depth) ||
												depth.unit == LengthUnit::percent))
			return Parsed::refused;
	}
	const bool isSwapped = first.isKeyword && second.isKeyword && (!first.isHorizontal || !second.isVertical);
	const OriginValue& x = isSwapped ? second : first;
	const OriginValue& y = isSwapped ? first : second;
	if (!x.isHorizontal || !y.isVertical || Finish(cursor) != Parsed::value)
		return Parsed::refused;
	origin = {x.length, y.length};
	return Parsed::value;
}
} // namespace orvan::grammar::complete
