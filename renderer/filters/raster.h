// SPDX-License-Identifier: MIT
/// Pixels of filters: plain memory, and places in it. What is done with them knows neither trees nor a drawing library.
///
/// All rasters of one filter share one grid of pixels, whose coordinates may be negative. A raster covers a box of it;
/// outside of the box everything is transparent.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

namespace orvan::filters
{

/// A box of pixels by its edges; empty when a side is not positive.
struct Box
{
	int left = 0;
	int top = 0;
	int right = 0;
	int bottom = 0;

	bool IsEmpty() const noexcept
	{
		return right <= left || bottom <= top;
	}

	int GetWidth() const noexcept
	{
		return std::max(0, right - left);
	}

	int GetHeight() const noexcept
	{
		return std::max(0, bottom - top);
	}

	double GetArea() const noexcept
	{
		return static_cast<double>(GetWidth()) * GetHeight();
	}

	Box Intersect(const Box& other) const noexcept
	{
		return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
				std::min(bottom, other.bottom)};
	}

	/// The smallest box around both.
	Box Unite(const Box& other) const noexcept
	{
		if (other.IsEmpty())
			return *this;
		if (IsEmpty())
			return other;
		return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
				std::max(bottom, other.bottom)};
	}

	Box Grow(int x, int y) const noexcept
	{
		return {left - x, top - y, right + x, bottom + y};
	}

	Box Move(int x, int y) const noexcept
	{
		return {left + x, top + y, right + x, bottom + y};
	}

	bool Contains(int x, int y) const noexcept
	{
		return x >= left && x < right && y >= top && y < bottom;
	}
};

/// Tells long work when to stop. What was not worked out by then is transparent.
struct Alarm
{
	bool (*isOver)(void* context) noexcept = nullptr;
	void* context = nullptr;

	bool IsOver() const noexcept
	{
		return isOver != nullptr && isOver(context);
	}
};

/// Pixels of a box: 32-bit numbers with alpha in the highest 8 bits, then red, green and blue, which are multiplied by
/// alpha. Rows follow each other without gaps.
class Raster
{
public:
	/// Nothing at all.
	Raster() noexcept = default;

	/// A transparent box. Whether there was memory for it, `IsThere` says.
	explicit Raster(const Box& box) noexcept : _box(box)
	{
		if (!box.IsEmpty())
			_pixels.reset(static_cast<std::uint32_t*>(std::calloc(GetCount(), sizeof(std::uint32_t))));
	}

	/// One for which memory was not to be had.
	static Raster Missing() noexcept
	{
		Raster missing;
		missing._box = {0, 0, 1, 1};
		return missing;
	}

	Raster(Raster&& other) noexcept : _box(std::exchange(other._box, Box())), _pixels(std::move(other._pixels))
	{
	}

	Raster& operator=(Raster&& other) noexcept
	{
		_box = std::exchange(other._box, Box());
		_pixels = std::move(other._pixels);
		return *this;
	}

	/// False when memory for the pixels was not to be had.
	bool IsThere() const noexcept
	{
		return _pixels != nullptr || _box.IsEmpty();
	}

	const Box& GetBox() const noexcept
	{
		return _box;
	}

	std::size_t GetCount() const noexcept
	{
		return _box.IsEmpty() ? 0
							  : static_cast<std::size_t>(_box.GetWidth()) * static_cast<std::size_t>(_box.GetHeight());
	}

	std::uint32_t* GetPixels() noexcept
	{
		return _pixels.get();
	}

	const std::uint32_t* GetPixels() const noexcept
	{
		return _pixels.get();
	}

	/// The row `y` of the grid, which must be in the box; its first pixel is that at the box's left edge.
	std::uint32_t* GetRow(int y) noexcept
	{
		return _pixels.get() + GetOffset(y);
	}

	const std::uint32_t* GetRow(int y) const noexcept
	{
		return _pixels.get() + GetOffset(y);
	}

	/// The pixel at a place of the grid; transparent outside of the box.
	std::uint32_t At(int x, int y) const noexcept
	{
		return _pixels != nullptr && _box.Contains(x, y) ? GetRow(y)[x - _box.left] : 0;
	}

private:
	struct Free
	{
		void operator()(std::uint32_t* pixels) const noexcept
		{
			std::free(pixels);
		}
	};

	std::ptrdiff_t GetOffset(int y) const noexcept
	{
		return static_cast<std::ptrdiff_t>(y - _box.top) * _box.GetWidth();
	}

	Box _box;
	std::unique_ptr<std::uint32_t, Free> _pixels;
};

} // namespace orvan::filters
