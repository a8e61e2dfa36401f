// SPDX-License-Identifier: MIT
#include "rasterizer.h"

#include <new>

namespace orvan::cairo
{
namespace
{

/// Sums of floats that differ by less are the same.
constexpr float kLittle = 1.0f / 64.0f;

/// The next whole number, of what is not negative.
template <typename Number>
int RoundUp(Number number) noexcept
{
	const int whole = static_cast<int>(number);
	return whole + (static_cast<Number>(whole) < number ? 1 : 0);
}

} // namespace

using namespace drawing;

bool Rasterizer::Prepare(int width, int height) noexcept
{
	_width = width;
	_height = height;
	_top = height;
	_bottom = 0;
	_work = 0;
	_upmost = height;
	_downmost = 0.0;
	_travel = 0.0;
	_stride = static_cast<std::size_t>(width) + 1;
	_words = _stride / 64 + 1;
	const std::size_t cellCount = _stride * static_cast<std::size_t>(height);
	const std::size_t bitCount = _words * static_cast<std::size_t>(height);
	if (cellCount > _cellCount)
	{
		_cells.reset(new (std::nothrow) float[cellCount]());
		_cellCount = _cells != nullptr ? cellCount : 0;
	}
	if (bitCount > _bitCount)
	{
		_bits.reset(new (std::nothrow) std::uint64_t[bitCount]());
		_bitCount = _bits != nullptr ? bitCount : 0;
	}
	return _cells != nullptr && _bits != nullptr;
}

void Rasterizer::Add(const Outline& outline, const Matrix2d& transform) noexcept
{
	Vector2d start;
	Vector2d current;
	const auto apply = [&](const Vector2d& point)
	{
		return transform.Apply(point);
	};
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		const Vector2d end = apply(command.points[2]);
		switch (command.type)
		{
		case SVGPathCommandType::move:
			AddLine(current, start);
			start = current = end;
			break;
		case SVGPathCommandType::line:
			AddLine(current, end);
			current = end;
			break;
		case SVGPathCommandType::cubic:
			AddCurve(current, apply(command.points[0]), apply(command.points[1]), end);
			current = end;
			break;
		case SVGPathCommandType::close:
			AddLine(current, start);
			current = start;
			break;
		}
	}
	AddLine(current, start);
}

void Rasterizer::AddCurve(const Vector2d& from, const Vector2d& c1, const Vector2d& c2, const Vector2d& to) noexcept
{
	// As many lines as keep it within a sixteenth of a pixel; the second differences say how far it bends.
	constexpr double kPieces = 0.75 * 16.0;
	constexpr double kMostPieces = 512.0;
	const double top = std::min({from.y, c1.y, c2.y, to.y});
	const double bottom = std::max({from.y, c1.y, c2.y, to.y});
	if (bottom <= 0.0 || top >= _height)
		return;
	const Vector2d first{from.x - 2.0 * c1.x + c2.x, from.y - 2.0 * c1.y + c2.y};
	const Vector2d second{c1.x - 2.0 * c2.x + to.x, c1.y - 2.0 * c2.y + to.y};
	const double bend =
		std::sqrt(std::max(first.x * first.x + first.y * first.y, second.x * second.x + second.y * second.y));
	const int count = std::max(RoundUp(std::min(std::sqrt(bend * kPieces), kMostPieces)), 1);
	const double step = 1.0 / count;
	const Vector2d a{to.x - from.x + 3.0 * (c1.x - c2.x), to.y - from.y + 3.0 * (c1.y - c2.y)};
	const Vector2d b{3.0 * first.x, 3.0 * first.y};
	const Vector2d c{3.0 * (c1.x - from.x), 3.0 * (c1.y - from.y)};
	Vector2d last = from;
	for (int i = 1; i < count; i++)
	{
		const double t = i * step;
		const Vector2d next{((a.x * t + b.x) * t + c.x) * t + from.x, ((a.y * t + b.y) * t + c.y) * t + from.y};
		AddLine(last, next);
		last = next;
	}
	AddLine(last, to);
}

void Rasterizer::AddLine(const Vector2d& from, const Vector2d& to) noexcept
{
	const double direction = from.y < to.y ? 1.0 : -1.0;
	const Vector2d& upper = from.y < to.y ? from : to;
	const Vector2d& lower = from.y < to.y ? to : from;
	if (!(upper.y < _height && lower.y > 0.0 && upper.y < lower.y))
		return;
	double y = std::max(upper.y, 0.0);
	const double bottom = std::min(lower.y, static_cast<double>(_height));
	const double slope = (lower.x - upper.x) / (lower.y - upper.y);
	const double least = std::min(from.x, to.x);
	const double most = std::max(from.x, to.x);
	double x = std::clamp(upper.x + (y - upper.y) * slope, least, most);
	const int firstRow = static_cast<int>(y);
	const int lastRow = RoundUp(bottom);
	_top = std::min(_top, firstRow);
	_bottom = std::max(_bottom, lastRow);
	_work += lastRow - firstRow;
	_upmost = std::min(_upmost, y);
	_downmost = std::max(_downmost, bottom);
	_travel += bottom - y;
	const bool isInside = least >= 0.0 && most <= _width;
	for (int row = firstRow; row < lastRow; row++)
	{
		const double nextY = std::min(row + 1.0, bottom);
		const double height = nextY - y;
		const double nextX = std::clamp(x + height * slope, least, most);
		const double left = std::min(x, nextX);
		const double right = std::max(x, nextX);
		if (isInside)
			AddPiece(row, static_cast<float>(height * direction), static_cast<float>(left), static_cast<float>(right));
		else
			AddClippedPiece(row, height * direction, left, right);
		x = nextX;
		y = nextY;
	}
}

/// What lies left of the area counts for the whole row, and what lies right of it for nothing.
void Rasterizer::AddClippedPiece(int y, double change, double left, double right) noexcept
{
	const double width = _width;
	if (left < 0.0)
	{
		const double part = right > 0.0 ? -left / (right - left) : 1.0;
		AddCell(y, 0, static_cast<float>(change * part));
		if (!(right > 0.0))
			return;
		change *= 1.0 - part;
		left = 0.0;
	}
	if (left >= width)
		return;
	if (right > width)
	{
		change *= (width - left) / (right - left);
		right = width;
	}
	AddPiece(y, static_cast<float>(change), static_cast<float>(left), static_cast<float>(right));
}

/// Adds a line within one row, which changes by `change` evenly between two columns.
void Rasterizer::AddPiece(int y, float change, float left, float right) noexcept
{
	const int first = static_cast<int>(left);
	const int last = RoundUp(right);
	if (last <= first + 1)
	{
		// Within one pixel: what is right of the line's middle is covered.
		const float part = change * (0.5f * (left + right) - static_cast<float>(first));
		AddCell(y, first, change - part);
		if (first < _width)
			AddCell(y, first + 1, part);
		return;
	}
	// The covered part of each pixel grows as a parabola in the first, evenly, and as one again in the last.
	const float slope = 1.0f / (right - left);
	const float inFirst = 1.0f - (left - static_cast<float>(first));
	const float inLast = right - static_cast<float>(last - 1);
	const float firstArea = 0.5f * slope * inFirst * inFirst;
	const float lastArea = 0.5f * slope * inLast * inLast;
	AddCell(y, first, change * firstArea);
	if (last == first + 2)
		AddCell(y, first + 1, change * (1.0f - firstArea - lastArea));
	else
	{
		const float secondArea = slope * (inFirst + 0.5f);
		AddCell(y, first + 1, change * (secondArea - firstArea));
		for (int x = first + 2; x < last - 1; x++)
			AddCell(y, x, change * slope);
		const float before = secondArea + static_cast<float>(last - first - 3) * slope;
		AddCell(y, last - 1, change * (1.0f - before - lastArea));
	}
	AddCell(y, last, change * lastArea);
}

bool Rasterizer::FindMixedRows(SVGFillRule rule, double width, BaseArray<Rows>& rows) const noexcept
{
	// With so many lines it takes the drawing library long. What two of them make of a pixel does not show then, unless
	// they are thinner than pixels: a coast of such lines would turn black.
	constexpr int kMuchWork = 24000;
	constexpr double kThin = 1.0;
	if (_work > kMuchWork && width >= kThin)
		return true;
	// What a line alone can cover of a pixel, at most.
	const auto most = static_cast<float>(std::min(width * 1.5, 1.0));
	// What goes down once and up once lies over nothing.
	if (most == 1.0f && _travel <= 2.0 * (_downmost - _upmost) + kLittle)
		return true;
	for (int y = _top; y < _bottom; y++)
	{
		if (GetSpread(y) <= most + kLittle)
			continue;
		if (!(rule == SVGFillRule::evenodd ? IsParityMixed(y) : IsMixed(y, most)))
			continue;
		// Areas that end together in one row often begin or end in the rows beside it, too.
		const Rows found{std::max(y - 1, _top), std::min(y + 2, _bottom)};
		if (!rows.IsEmpty() && (rows.end() - 1)->bottom >= found.top)
			(rows.end() - 1)->bottom = found.bottom;
		else if (!rows.Append(found).IsOk())
			return false;
	}
	return true;
}

/// How far apart the least and the most covered pixels of a row are; what is bare counts.
float Rasterizer::GetSpread(int y) const noexcept
{
	float least = 0.0f;
	float most = 0.0f;
	ForEachStep(y,
				[&](float cover, int, int)
				{
					least = std::min(least, cover);
					most = std::max(most, cover);
				});
	return most - least;
}

/// Whether several areas end in pixels in which they do not add up. Looks at two stretches of pixels that no line
/// passes through, and at what is between them: where one stretch is bare, neither the other nor a pixel between them
/// may have more than one area covers at `most`; and not one may be covered to the right and the other to the left.
bool Rasterizer::IsMixed(int y, float most) const noexcept
{
	float last = 0.0f; // How much the last such stretch is covered.
	float peak = 0.0f; // The most in the pixels since then.
	bool result = false;
	const auto enter = [&](float cover)
	{
		const float less = std::min(std::abs(last), std::abs(cover));
		const float more = std::max(std::abs(last), std::abs(cover));
		const bool isBare = less < 1.0f - kLittle;
		const bool isTooMuch = more > most + kLittle || peak > std::max(more, most) + kLittle;
		result = result || last * cover < -kLittle || (isBare && isTooMuch);
		last = cover;
		peak = 0.0f;
	};
	ForEachStep(y,
				[&](float cover, int start, int end)
				{
					// A line that ends in a pixel has its say in the next one, too.
					if (end - start > 1)
						enter(cover);
					else
						peak = std::max(peak, std::abs(cover));
				});
	enter(0.0f);
	return result;
}

/// The same where what is covered twice is bare again.
bool Rasterizer::IsParityMixed(int y) const noexcept
{
	float last = 0.0f;
	bool result = false;
	const auto enter = [&](float cover)
	{
		result = result || std::abs(last - cover) > 1.0f + kLittle;
		last = cover;
	};
	ForEachStep(y,
				[&](float cover, int start, int end)
				{
					if (end - start > 1)
						enter(cover);
				});
	enter(0.0f);
	return result;
}

} // namespace orvan::cairo
