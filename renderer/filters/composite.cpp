// SPDX-License-Identifier: MIT
#include "composite.h"

#include "pixel.h"

namespace orvan::filters
{
namespace
{

std::uint32_t Over(std::uint32_t s, std::uint32_t b) noexcept
{
	const std::uint32_t alpha = s >> 24;
	if (alpha == 255 || b == 0)
		return s;
	if (s == 0)
		return b;
	const Channels top = Split(s);
	const Channels below = Split(b);
	const int rest = 255 - top.alpha;
	return Join({std::min(top.blue + Multiply(below.blue, rest), 255),
				 std::min(top.green + Multiply(below.green, rest), 255),
				 std::min(top.red + Multiply(below.red, rest), 255), top.alpha + Multiply(below.alpha, rest)});
}

/// A pixel times a value of 0 to 255, where 255 stands for 1.
std::uint32_t Scale(std::uint32_t pixel, int by) noexcept
{
	const Channels c = Split(pixel);
	return Join({Multiply(c.blue, by), Multiply(c.green, by), Multiply(c.red, by), Multiply(c.alpha, by)});
}

/// The sum of two pixels.
std::uint32_t Add(std::uint32_t a, std::uint32_t b) noexcept
{
	const Channels c = Split(a);
	const Channels d = Split(b);
	return Join({std::min(c.blue + d.blue, 255), std::min(c.green + d.green, 255), std::min(c.red + d.red, 255),
				 std::min(c.alpha + d.alpha, 255)});
}

int AlphaOf(std::uint32_t pixel) noexcept
{
	return static_cast<int>(pixel >> 24);
}

template <typename Combine>
Raster CombineIn(const Raster& top, const Raster& backdrop, const Box& box, const Alarm& alarm,
				 Combine combine) noexcept
{
	Raster result(box);
	for (int y = box.top; y < box.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = box.left; x < box.right; x++)
			row[x - box.left] = combine(top.At(x, y), backdrop.At(x, y));
	}
	return result;
}

} // namespace

Raster Composite(const Raster& top, const Raster& backdrop, CompositeOperator operation, const Box& area,
				 const Alarm& alarm) noexcept
{
	const Box both = area.Intersect(top.GetBox().Unite(backdrop.GetBox()));
	const Box inTop = area.Intersect(top.GetBox());
	const Box inBackdrop = area.Intersect(backdrop.GetBox());
	switch (operation)
	{
	case CompositeOperator::over:
		break;
	case CompositeOperator::in:
		return CombineIn(top, backdrop, inTop.Intersect(inBackdrop), alarm,
						 [](std::uint32_t s, std::uint32_t b) { return Scale(s, AlphaOf(b)); });
	case CompositeOperator::out:
		return CombineIn(top, backdrop, inTop, alarm,
						 [](std::uint32_t s, std::uint32_t b) { return Scale(s, 255 - AlphaOf(b)); });
	case CompositeOperator::atop:
		return CombineIn(top, backdrop, inBackdrop, alarm,
						 [](std::uint32_t s, std::uint32_t b)
						 { return Add(Scale(s, AlphaOf(b)), Scale(b, 255 - AlphaOf(s))); });
	case CompositeOperator::exclusiveOr:
		return CombineIn(top, backdrop, both, alarm,
						 [](std::uint32_t s, std::uint32_t b)
						 { return Add(Scale(s, 255 - AlphaOf(b)), Scale(b, 255 - AlphaOf(s))); });
	case CompositeOperator::lighter:
		return CombineIn(top, backdrop, both, alarm, &Add);
	}
	return CombineIn(top, backdrop, both, alarm, &Over);
}

void PutOver(const Raster& top, Raster& backdrop) noexcept
{
	const Box box = top.GetBox().Intersect(backdrop.GetBox());
	for (int y = box.top; y < box.bottom; y++)
	{
		const std::uint32_t* const from = top.GetRow(y) + (box.left - top.GetBox().left);
		std::uint32_t* const to = backdrop.GetRow(y) + (box.left - backdrop.GetBox().left);
		for (int x = 0; x < box.GetWidth(); x++)
			to[x] = Over(from[x], to[x]);
	}
}

Raster CompositeArithmetic(const Raster& top, const Raster& backdrop, const ArithmeticFactors& factors, const Box& area,
						   const Alarm& alarm) noexcept
{
	const Box box = factors.k4 > 0.0F ? area : area.Intersect(top.GetBox().Unite(backdrop.GetBox()));
	const float k1 = factors.k1 / 255.0F;
	const float k4 = factors.k4 * 255.0F;
	const auto mix = [&](int s, int b)
	{
		const auto source = static_cast<float>(s);
		const auto below = static_cast<float>(b);
		return ToByte(k1 * source * below + factors.k2 * source + factors.k3 * below + k4);
	};
	return CombineIn(top, backdrop, box, alarm,
					 [&](std::uint32_t s, std::uint32_t b)
					 {
						 const Channels c = Split(s);
						 const Channels d = Split(b);
						 const int alpha = mix(c.alpha, d.alpha);
						 // A colour that is multiplied by alpha is never larger than that.
						 return Join({std::min(mix(c.blue, d.blue), alpha), std::min(mix(c.green, d.green), alpha),
									  std::min(mix(c.red, d.red), alpha), alpha});
					 });
}

} // namespace orvan::filters
