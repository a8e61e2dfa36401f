// SPDX-License-Identifier: MIT
#include "complete/shapes.h"

#include "complete/value_cursor.h"

#include <array>

namespace orvan::grammar::complete
{
namespace
{
constexpr Length kNothing{0, LengthUnit::px};
constexpr Length kWhole{1, LengthUnit::percent};

struct BoxRow
{
	std::string_view name;
	ReferenceBox value;
};

constexpr BoxRow kBoxes[]{
	{"border-box", ReferenceBox::strokeBox}, {"padding-box", ReferenceBox::fillBox},
	{"content-box", ReferenceBox::fillBox},  {"margin-box", ReferenceBox::strokeBox},
	{"fill-box", ReferenceBox::fillBox},     {"stroke-box", ReferenceBox::strokeBox},
	{"view-box", ReferenceBox::viewBox},
};

bool HasMore(const ValueCursor& cursor) noexcept
{
	return !cursor.IsAtEnd() && cursor.Peek() != ')';
}

bool TakeDistance(ValueCursor& cursor, Range range, Length& length) noexcept
{
	const bool isTaken = cursor.TakeLength(range, cursor.GetSource() == Source::attribute, length);
	cursor.SkipSpaces();
	return isTaken;
}

// Positions ----------------------------------------------------------------------------------------------------------

enum class Side
{
	none, ///< A length.
	center,
	left,
	right,
	top,
	bottom
};

struct SideRow
{
	std::string_view name;
	Side value;
};

constexpr SideRow kSides[]{
	{"center", Side::center}, {"left", Side::left},     {"right", Side::right},
	{"top", Side::top},       {"bottom", Side::bottom},
};

/// A word or a length of a position.
struct Step
{
	Side side = Side::none;
	Length length;

	bool IsHorizontal() const noexcept
	{
		return side == Side::left || side == Side::right;
	}

	bool IsVertical() const noexcept
	{
		return side == Side::top || side == Side::bottom;
	}
};

/// A place on one axis: two lengths, which are added.
struct AxisPlace
{
	Length from{0.5, LengthUnit::percent};
	Length offset = kNothing;
};

AxisPlace ToPlace(const Step& step) noexcept
{
	if (step.side == Side::none)
		return {step.length};
	const bool isFar = step.side == Side::right || step.side == Side::bottom;
	return {{step.side == Side::center ? 0.5 : isFar ? 1.0 : 0.0, LengthUnit::percent}};
}

AxisPlace ToPlace(const Step& side, const Step& distance) noexcept
{
	AxisPlace place = ToPlace(side);
	place.offset = distance.length;
	if (side.side == Side::right || side.side == Side::bottom)
		place.offset.value = -place.offset.value;
	return place;
}

bool TakePosition(ValueCursor& cursor, AxisPlace& x, AxisPlace& y) noexcept
{
	std::array<Step, 4> steps;
	std::size_t count = 0;
	for (; HasMore(cursor); ++count)
	{
		if (count == steps.size())
			return false;
		Step& step = steps[count];
		if (!cursor.TakeKeyword(kSides, step.side) && !TakeDistance(cursor, Range::any, step.length))
			return false;
	}
	const auto& [first, second, third, fourth] = steps;
	if (count == 1)
	{
		(first.IsVertical() ? y : x) = ToPlace(first);
		return true;
	}
	if (count == 2)
	{
		const bool isSwapped = first.IsVertical() || second.IsHorizontal();
		const bool areWords = first.side != Side::none && second.side != Side::none;
		const Step& horizontal = isSwapped ? second : first;
		const Step& vertical = isSwapped ? first : second;
		x = ToPlace(horizontal);
		y = ToPlace(vertical);
		return (areWords || !isSwapped) && !horizontal.IsVertical() && !vertical.IsHorizontal();
	}
	const bool isSwapped = first.IsVertical();
	x = isSwapped ? ToPlace(third, fourth) : ToPlace(first, second);
	y = isSwapped ? ToPlace(first, second) : ToPlace(third, fourth);
	const bool areSides = isSwapped ? third.IsHorizontal() : first.IsHorizontal() && third.IsVertical();
	return count == 4 && areSides && second.side == Side::none && fourth.side == Side::none;
}

// The shapes ---------------------------------------------------------------------------------------------------------

bool TakeRadius(ValueCursor& cursor, Length& radius) noexcept
{
	if (cursor.TakeWord("closest-side"))
		radius = kClosestSide;
	else if (cursor.TakeWord("farthest-side"))
		radius = kFarthestSide;
	else
		return TakeDistance(cursor, Range::notNegative, radius);
	return true;
}

/// A circle or an ellipse: as many radii, or none, and a centre, or none.
bool TakeRound(ValueCursor& cursor, std::size_t radii, LengthSink& lengths)
{
	std::array<Length, 2> radius;
	radius.fill(kClosestSide);
	const auto isAtPosition = [&]
	{
		return EqualsIgnoreCase(cursor.PeekWord(), "at");
	};
	for (std::size_t i = 0; i != radii && HasMore(cursor) && (i != 0 || !isAtPosition()); ++i)
	{
		if (!TakeRadius(cursor, radius[i]) || (i + 1 != radii && !HasMore(cursor)))
			return false;
	}
	AxisPlace x;
	AxisPlace y;
	if (cursor.TakeWord("at") && (!HasMore(cursor) || !TakePosition(cursor, x, y)))
		return false;
	for (std::size_t i = 0; i != radii; ++i)
		lengths.Append(radius[i]);
	for (const Length& length : {x.from, x.offset, y.from, y.offset})
		lengths.Append(length);
	return true;
}

/// One to four lengths, which stand for four as those of margins do.
bool TakeFour(ValueCursor& cursor, Range range, std::array<Length, 4>& four) noexcept
{
	std::size_t count = 0;
	while (count != four.size() && HasMore(cursor) && cursor.Peek() != '/' &&
		   !EqualsIgnoreCase(cursor.PeekWord(), "round"))
	{
		if (!TakeDistance(cursor, range, four[count]))
			return false;
		++count;
	}
	if (count == 0)
		return false;
	for (std::size_t i = count; i != four.size(); ++i)
		four[i] = four[i == 3 && count > 1 ? 1 : 0];
	return true;
}

/// What corners of insets and their kin say behind "round".
bool TakeCorners(ValueCursor& cursor, LengthSink& lengths)
{
	if (!cursor.TakeWord("round"))
		return true;
	std::array<Length, 4> horizontal;
	if (!TakeFour(cursor, Range::notNegative, horizontal))
		return false;
	std::array<Length, 4> vertical = horizontal;
	if (cursor.TakeMark('/') && !TakeFour(cursor, Range::notNegative, vertical))
		return false;
	for (const auto& radii : {horizontal, vertical})
	{
		for (const Length& radius : radii)
			lengths.Append(radius);
	}
	return true;
}

bool TakeInset(ValueCursor& cursor, LengthSink& lengths)
{
	std::array<Length, 4> edges;
	if (!TakeFour(cursor, Range::any, edges))
		return false;
	for (const Length& edge : edges)
		lengths.Append(edge);
	return TakeCorners(cursor, lengths);
}

/// Edges or a position and a size: four lengths, of which those of `rect` may be "auto".
bool TakeRectangle(ValueCursor& cursor, bool isEdges, LengthSink& lengths)
{
	for (int i = 0; i != 4; ++i)
	{
		Length length = i == 1 || i == 2 ? kWhole : kNothing;
		const bool isAutomatic = isEdges && cursor.TakeWord("auto");
		if (!isAutomatic && !TakeDistance(cursor, !isEdges && i >= 2 ? Range::notNegative : Range::any, length))
			return false;
		lengths.Append(length);
	}
	return TakeCorners(cursor, lengths);
}

/// A rule for filling and a comma, or nothing.
bool TakeRule(ValueCursor& cursor, bool& isEvenOdd) noexcept
{
	isEvenOdd = cursor.TakeWord("evenodd");
	return (!isEvenOdd && !cursor.TakeWord("nonzero")) || cursor.TakeComma();
}

bool TakePolygon(ValueCursor& cursor, ClipShape& shape, LengthSink& lengths)
{
	if (!TakeRule(cursor, shape.isEvenOdd))
		return false;
	do
	{
		for (int axis = 0; axis != 2; ++axis)
		{
			Length length;
			if (!TakeDistance(cursor, Range::any, length))
				return false;
			lengths.Append(length);
		}
	} while (cursor.TakeComma());
	return true;
}

bool TakeShape(ValueCursor& cursor, ClipShape& shape, LengthSink& lengths)
{
	const auto take = [&](std::string_view name, ClipShapeKind kind)
	{
		if (!cursor.TakeFunction(name))
			return false;
		shape.kind = kind;
		return true;
	};
	bool isTaken = false;
	if (take("inset", ClipShapeKind::inset))
		isTaken = TakeInset(cursor, lengths);
	else if (take("circle", ClipShapeKind::circle))
		isTaken = TakeRound(cursor, 1, lengths);
	else if (take("ellipse", ClipShapeKind::ellipse))
		isTaken = TakeRound(cursor, 2, lengths);
	else if (take("polygon", ClipShapeKind::polygon))
		isTaken = TakePolygon(cursor, shape, lengths);
	else if (take("rect", ClipShapeKind::rect))
		isTaken = TakeRectangle(cursor, true, lengths);
	else if (take("xywh", ClipShapeKind::xywh))
		isTaken = TakeRectangle(cursor, false, lengths);
	else if (take("path", ClipShapeKind::path))
		isTaken = TakeRule(cursor, shape.isEvenOdd) && cursor.TakeString(shape.path.data, shape.path.hasEscapes);
	return isTaken && cursor.TakeClose();
}
} // namespace

Parsed ParseClipShape(std::string_view text, Source source, ClipShape& shape, LengthSink& lengths)
{
	ValueCursor cursor(text, source);
	ClipShape result;
	const bool hasBox = cursor.TakeKeyword(kBoxes, result.box);
	if (cursor.IsAtEnd() ? !hasBox : !TakeShape(cursor, result, lengths))
		return Parsed::refused;
	if (!hasBox && !cursor.IsAtEnd() && !cursor.TakeKeyword(kBoxes, result.box))
		return Parsed::refused;
	if (!cursor.IsAtEnd())
		return Parsed::refused;
	shape = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
