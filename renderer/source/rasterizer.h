// SPDX-License-Identifier: MIT
/// From outlines to coverage.
#pragma once

#include "drawing/outline.h"
#include "orvan/array.h"

#include <bit>
#include <cstdint>
#include <memory>
#include <utility>

namespace orvan::cairo
{

/// Rows of pixels, from one to before another.
struct Rows
{
	int top = 0;
	int bottom = 0;
};

/// Finds out how much of each pixel an outline covers, exactly but for where its lines cross inside of a pixel.
///
/// Each line adds to the cells that it passes through how much of the row it lies in changes there: the sum of a row's
/// cells up to a pixel is the pixel's coverage. A bit for each cell says whether a line was there, so that rows are
/// read, and their cells set back to zero, without looking at what lies in between.
///
/// (This is an accumulation buffer of signed areas. It holds the mean winding number of a pixel, which is its coverage
/// as long as no more than one area ends in it. Two areas that lie over each other and cover the same half of a pixel
/// give one, though half of it stays bare; one to the right and one to the left give nothing. `FindMixedRows` finds
/// where.)
class Rasterizer
{
public:
	/// Makes room for outlines in an area of this size in pixels; false when there is no memory. What was added before
	/// must have been swept.
	bool Prepare(int width, int height) noexcept;

	/// Adds an outline, each subpath closed. `transform` leads to the area, out of which it may reach in any direction;
	/// coordinates must be finite.
	void Add(const drawing::Outline& outline, const Matrix2d& transform) noexcept;

	/// Adds one line. All lines together must lead back to where they come from.
	void AddLine(const Vector2d& from, const Vector2d& to) noexcept;

	/// Adds a polygon of at least three points, in their order or the other way round.
	void AddPolygon(const Vector2d* points, int count, bool isReversed) noexcept
	{
		for (int i = 0; i < count; i++)
		{
			const Vector2d& from = points[i];
			const Vector2d& to = points[i + 1 < count ? i + 1 : 0];
			isReversed ? AddLine(to, from) : AddLine(from, to);
		}
	}

	/// Appends the rows that would show what is covered twice, or to both sides, right beside what is bare. `width` is
	/// that of the lines that are drawn, in pixels; infinite for areas. Finds none in what takes too long to be drawn
	/// otherwise. False when there is no memory for their list.
	bool FindMixedRows(SVGFillRule rule, double width, BaseArray<Rows>& rows) const noexcept;

	/// Calls `span` with row, first column, column past the last and coverage (1 to 255), from the top and the left,
	/// but for the rows that are left out, which must stand in their order. Leaves nothing behind.
	template <typename Span>
	void Sweep(SVGFillRule rule, const BaseArray<Rows>& leftOut, Span span) noexcept
	{
		const Rows* next = leftOut.begin();
		for (int y = _top; y < _bottom; y++)
		{
			while (next != leftOut.end() && next->bottom <= y)
				next++;
			if (next != leftOut.end() && next->top <= y)
				SweepRow<&GetNothing>(y, span);
			else if (rule == SVGFillRule::evenodd)
				SweepRow<&GetEvenOdd>(y, span);
			else
				SweepRow<&GetNonzero>(y, span);
		}
		_top = _height;
		_bottom = 0;
	}

private:
	static int GetNothing(float) noexcept
	{
		return 0;
	}

	static int GetNonzero(float cover) noexcept
	{
		// NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative, and the quickest way.
		return static_cast<int>(std::min(std::abs(cover), 1.0f) * 255.0f + 0.5f);
	}

	static int GetEvenOdd(float cover) noexcept
	{
		const float turn = std::abs(cover) - 2.0f * std::floor(std::abs(cover) * 0.5f);
		// NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative, and the quickest way.
		return static_cast<int>((turn > 1.0f ? 2.0f - turn : turn) * 255.0f + 0.5f);
	}

	template <int (*kGetCoverage)(float) noexcept, typename Span>
	void SweepRow(int y, Span span) noexcept
	{
		float* const cells = _cells.get() + static_cast<std::size_t>(y) * _stride;
		std::uint64_t* const bits = _bits.get() + static_cast<std::size_t>(y) * _words;
		float cover = 0.0f;
		int coverage = 0;
		int start = 0; // Of what has this coverage.
		const auto flush = [&](int end)
		{
			if (coverage != 0 && end > start)
				span(y, start, end, coverage);
			start = end;
		};
		for (std::size_t word = 0; word < _words; word++)
		{
			for (std::uint64_t set = std::exchange(bits[word], 0); set != 0; set &= set - 1)
			{
				const int x = static_cast<int>(word * 64) + std::countr_zero(set);
				cover += std::exchange(cells[x], 0.0f);
				const int next = kGetCoverage(cover);
				if (next == coverage)
					continue;
				flush(std::min(x, _width));
				coverage = next;
			}
		}
		flush(_width);
	}

	/// Calls `visit` with how much a row is covered from one column to before the next, from the left.
	template <typename Visit>
	void ForEachStep(int y, Visit visit) const noexcept
	{
		const float* const cells = _cells.get() + static_cast<std::size_t>(y) * _stride;
		const std::uint64_t* const bits = _bits.get() + static_cast<std::size_t>(y) * _words;
		float cover = 0.0f;
		int start = 0;
		for (std::size_t word = 0; word < _words; word++)
		{
			for (std::uint64_t set = bits[word]; set != 0; set &= set - 1)
			{
				const int x = static_cast<int>(word * 64) + std::countr_zero(set);
				visit(cover, start, x);
				cover += cells[x];
				start = x;
			}
		}
		visit(cover, start, _width);
	}

	float GetSpread(int y) const noexcept;
	bool IsMixed(int y, float most) const noexcept;
	bool IsParityMixed(int y) const noexcept;
	void AddClippedPiece(int y, double change, double left, double right) noexcept;
	void AddCurve(const Vector2d& from, const Vector2d& c1, const Vector2d& c2, const Vector2d& to) noexcept;
	void AddPiece(int y, float change, float left, float right) noexcept;

	void AddCell(int y, int x, float change) noexcept
	{
		const auto row = static_cast<std::size_t>(y);
		const auto column = static_cast<std::size_t>(x);
		_cells[row * _stride + column] += change;
		_bits[row * _words + column / 64] |= std::uint64_t{1} << (column % 64);
	}

	std::unique_ptr<float[]> _cells; ///< All zero but between `Add` and `Sweep`.
	std::unique_ptr<std::uint64_t[]> _bits;
	std::size_t _cellCount = 0;
	std::size_t _bitCount = 0;
	std::size_t _stride = 0; ///< Cells a row: one more than pixels.
	std::size_t _words = 0;  ///< Words of bits a row.
	int _width = 0;
	int _height = 0;
	int _top = 0; ///< The rows with lines in them.
	int _bottom = 0;
	int _work = 0;          ///< Rows that lines were added to, each line counted.
	double _upmost = 0.0;   ///< Where the first line begins, ...
	double _downmost = 0.0; ///< ... and the last one ends.
	double _travel = 0.0;   ///< How far all lines lead up and down.
};

} // namespace orvan::cairo
