// SPDX-License-Identifier: MIT
/// What filters do with pixels, beside the plainest way to say it.
#include "filters/arrange.h"
#include "filters/blend.h"
#include "filters/blur.h"
#include "filters/color_space.h"
#include "filters/composite.h"
#include "filters/convolve.h"
#include "filters/displacement.h"
#include "filters/lighting.h"
#include "filters/morphology.h"
#include "filters/pixel.h"
#include "filters/turbulence.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace orvan::filters
{

inline bool operator==(const Channels& a, const Channels& b)
{
	return a.blue == b.blue && a.green == b.green && a.red == b.red && a.alpha == b.alpha;
}

inline void PrintTo(const Channels& c, std::ostream* out)
{
	*out << c.red << ' ' << c.green << ' ' << c.blue << ' ' << c.alpha;
}

namespace
{

const Alarm kNoAlarm;

/// Random pixels, whose colours are no larger than their alpha.
Raster MakeNoise(const Box& box)
{
	std::mt19937 random(7);
	Raster raster(box);
	for (std::size_t i = 0; i < raster.GetCount(); i++)
	{
		const auto pixel = static_cast<std::uint32_t>(random());
		raster.GetPixels()[i] = random() % 4 == 0 ? 0 : MultiplyByAlpha(Split(pixel));
	}
	return raster;
}

/// Calls `check` with each place of a box.
template <typename Check>
void ForEach(const Box& box, Check check)
{
	for (int y = box.top; y < box.bottom; y++)
	{
		for (int x = box.left; x < box.right; x++)
			check(x, y);
	}
}

/// How far a blur is from the normal distribution, at most, for a large square.
double GetBlurFault(double deviation)
{
	const int side = static_cast<int>(deviation * 4.0) + 5;
	const Box square{-side / 2, 3, side - side / 2, 3 + side};
	const int reach = GetBlurReach(deviation);
	const Raster blurred = Blur(Flood(0xFF00FF00, square), deviation, deviation, square.Grow(reach, reach), kNoAlarm);
	const auto share = [&](int at, int start, int end)
	{
		const auto below = [&](double edge)
		{
			return 0.5 * std::erfc((at + 0.5 - edge) / (deviation * std::sqrt(2.0)));
		};
		return below(end) - below(start);
	};
	double fault = 0.0;
	double sum = 0.0;
	ForEach(square.Grow(reach, reach),
			[&](int x, int y)
			{
				const double exact = 255.0 * share(x, square.left, square.right) * share(y, square.top, square.bottom);
				const Channels c = Split(blurred.At(x, y));
				EXPECT_EQ(c.alpha, c.green);
				EXPECT_EQ(0, c.red);
				fault = std::max(fault, std::abs(exact - c.alpha));
				sum += c.alpha;
				// Grids and even boxes do not move it.
				const Channels opposite = Split(blurred.At(square.left + square.right - 1 - x, y));
				EXPECT_NEAR(c.alpha, opposite.alpha, 2) << deviation << " at " << x << ' ' << y;
			});
	// Nothing gets lost.
	EXPECT_NEAR(1.0, sum / 255.0 / square.GetArea(), 0.002) << deviation;
	return fault;
}

TEST(FilterPixels, BlursAreNormalDistributionsWhateverTheyAreWorkedOutWith)
{
	for (const double deviation : {0.4, 1.0, 1.9})
		EXPECT_LE(GetBlurFault(deviation), 2.0) << deviation;
	// Boxes, odd and even ones, stand for it within three per cent a direction, also on coarser grids.
	for (const double deviation : {2.0, 2.7, 5.0, 15.0, 16.0, 40.0, 70.0})
		EXPECT_LE(GetBlurFault(deviation), 11.0) << deviation;
}

TEST(FilterPixels, ABlurInOneDirectionLeavesTheOtherAlone)
{
	const Raster line = Flood(0xFFFFFFFF, {0, 0, 1, 20});
	const Raster wide = Blur(line, 3.0, 0.0, {-20, -20, 20, 40}, kNoAlarm);
	EXPECT_EQ((Box{0, 0, 0, 20}.bottom), wide.GetBox().bottom);
	EXPECT_EQ(wide.At(2, 0), wide.At(-2, 19));
	EXPECT_GT(wide.At(2, 10) >> 24, 10u);
	const Raster high = Blur(line, 0.0, 3.0, {-20, -20, 20, 40}, kNoAlarm);
	EXPECT_EQ(255u, high.At(0, 10) >> 24);
	EXPECT_EQ(0u, high.At(1, 10));
	EXPECT_EQ(high.At(0, -1), high.At(0, 20));
	// A source that is far away or not there at all gives nothing.
	EXPECT_TRUE(Blur(line, 3.0, 3.0, {500, 500, 510, 510}, kNoAlarm).GetBox().IsEmpty());
	EXPECT_EQ(0u, Blur(line, 1e9, 1e9, {0, 0, 5, 5}, kNoAlarm).At(2, 2) >> 24);
}

TEST(FilterPixels, MorphologyTakesTheExtremesOfWholeWindows)
{
	const Raster noise = MakeNoise({-3, 2, 14, 15});
	const Box area{-20, -20, 30, 30};
	struct Case
	{
		int x;
		int y;
	};
	for (const auto [x, y] : {Case{1, 1}, {2, 0}, {0, 3}, {3, 5}, {12, 1}, {1000, 1000}})
	{
		for (const MorphologyOperator operation : {MorphologyOperator::erode, MorphologyOperator::dilate})
		{
			const bool isErosion = operation == MorphologyOperator::erode;
			const Raster morphed = Morph(noise, operation, x, y, area, kNoAlarm);
			for (int row = area.top; row < area.bottom; row += 3)
			{
				for (int column = area.left; column < area.right; column++)
				{
					Channels extreme = isErosion ? Channels{255, 255, 255, 255} : Channels{0, 0, 0, 0};
					const int stepX = std::min(x, 60);
					const int stepY = std::min(y, 60);
					for (int j = row - stepY; j <= row + stepY; j++)
					{
						for (int i = column - stepX; i <= column + stepX; i++)
						{
							const Channels c = Split(noise.At(i, j));
							for (int Channels::*channel :
								 {&Channels::blue, &Channels::green, &Channels::red, &Channels::alpha})
								extreme.*channel = isErosion ? std::min(extreme.*channel, c.*channel)
															 : std::max(extreme.*channel, c.*channel);
						}
					}
					ASSERT_EQ(extreme, Split(morphed.At(column, row)))
						<< x << ' ' << y << " at " << column << ' ' << row;
				}
			}
		}
	}
}

TEST(FilterPixels, NoiseIsThatOfTheStandardsProgram)
{
	// Worked out with the standard's program, put into another language.
	const auto at = [](Turbulence turbulence, int x, int y)
	{
		return Unmultiply(MakeTurbulence(turbulence, {x, y, x + 1, y + 1}, kNoAlarm).At(x, y));
	};
	const auto isNear = [](const Channels& c, int red, int green, int blue, int alpha)
	{
		// The colour was multiplied by alpha and divided again.
		return c.alpha == alpha && std::abs(c.red - red) <= 4 && std::abs(c.green - green) <= 4 &&
			   std::abs(c.blue - blue) <= 4;
	};
	EXPECT_TRUE(isNear(at({.frequencyX = 0.1, .frequencyY = 0.1}, 3, 4), 36, 77, 8, 32));
	EXPECT_TRUE(isNear(at({.frequencyX = 0.05, .frequencyY = 0.3, .octaves = 4, .seed = 5, .isFractal = true}, 10, 7),
					   102, 116, 133, 64));
	EXPECT_TRUE(isNear(at({.frequencyX = 0.1, .frequencyY = 0.1, .octaves = 2, .seed = -5}, -21, 33), 51, 16, 101, 54));
	Turbulence stitched{.frequencyX = 0.11, .frequencyY = 0.13, .octaves = 3, .seed = 2, .isFractal = true};
	stitched.isStitched = true;
	stitched.tileX = 10.0;
	stitched.tileY = 5.0;
	stitched.tileWidth = 30.0;
	stitched.tileHeight = 20.0;
	EXPECT_TRUE(isNear(at(stitched, 37, 18), 86, 77, 100, 102));
	// Numbers that leave every range end as well.
	at({.frequencyX = 1e300, .frequencyY = 1e300, .octaves = 1000000, .seed = 2147483647}, -1000000, 1000000);
}

TEST(FilterPixels, KernelsAreTurnedAndMeetEdgesAsTheyAreTold)
{
	Raster noise = MakeNoise({0, 0, 6, 6});
	noise.GetRow(5)[5] = 0xFF123456;
	const std::array<double, 9> first = {1, 0, 0, 0, 0, 0, 0, 0, 0};
	Kernel kernel{.values = first, .width = 3, .height = 3, .targetX = 1, .targetY = 1};
	const Box box = noise.GetBox();
	struct Case
	{
		EdgeMode mode;
		std::uint32_t corner;
	};
	// The first value of the matrix meets the pixel at the lower right.
	for (const auto [mode, corner] :
		 {Case{EdgeMode::duplicate, noise.At(5, 5)}, {EdgeMode::wrap, noise.At(0, 0)}, {EdgeMode::none, 0}})
	{
		kernel.edgeMode = mode;
		const Raster result = Convolve(noise, box, kernel, box, kNoAlarm);
		EXPECT_EQ(noise.At(3, 4), result.At(2, 3));
		EXPECT_EQ(corner, result.At(5, 5));
	}
	const std::array<double, 9> last = {0, 0, 0, 0, 0, 0, 0, 0, 1};
	kernel.values = last;
	kernel.edgeMode = EdgeMode::wrap;
	EXPECT_EQ(noise.At(5, 5), Convolve(noise, box, kernel, box, kNoAlarm).At(0, 0));
	kernel.values = first;
	kernel.keepsAlpha = true;
	kernel.bias = 1.0;
	// The bias raises colours by as much as is opaque.
	const Channels from = Unmultiply(noise.At(3, 4));
	const int alpha = Split(noise.At(2, 3)).alpha;
	const auto raise = [&](int color)
	{
		return std::min(color + alpha, 255);
	};
	EXPECT_EQ(MultiplyByAlpha({raise(from.blue), raise(from.green), raise(from.red), alpha}),
			  Convolve(noise, box, kernel, box, kNoAlarm).At(2, 3));
}

TEST(FilterPixels, ColorSpacesFollowTheirCurveAndKeepAlpha)
{
	EXPECT_EQ(0xFF370DFFu, Convert(0xFF8040FFu, ColorSpace::sRGB, ColorSpace::linear));
	EXPECT_EQ(0xFFBC89FFu, Convert(0xFF8040FFu, ColorSpace::linear, ColorSpace::sRGB));
	// Half transparent: the colour is divided before and multiplied after.
	EXPECT_EQ(0x80808000u, Convert(0x80808000u, ColorSpace::sRGB, ColorSpace::linear));
	EXPECT_EQ(0x801C1C00u, Convert(0x80404000u, ColorSpace::sRGB, ColorSpace::linear));
	EXPECT_EQ(0x80404000u, Convert(0x80404000u, ColorSpace::linear, ColorSpace::linear));
	Raster raster = Flood(0xFF8040FF, {0, 0, 3, 1});
	raster.GetPixels()[1] = 0x80404000;
	Convert(raster, ColorSpace::sRGB, ColorSpace::linear);
	EXPECT_EQ(0xFF370DFFu, raster.At(0, 0));
	EXPECT_EQ(0x801C1C00u, raster.At(1, 0));
	EXPECT_EQ(0xFF370DFFu, raster.At(2, 0));
}

TEST(FilterPixels, LightFallsOnSlopesAndFadesAtTheConesEdge)
{
	// A ramp that rises to the right, one level a pixel.
	Raster ramp({0, 0, 50, 10});
	ForEach(ramp.GetBox(), [&](int x, int y) { ramp.GetRow(y)[x] = static_cast<std::uint32_t>(x) << 24; });
	Surface surface;
	surface.heightX = surface.heightY = surface.height = 255.0F;
	Light light;
	light.color = 0xFFFFFFFF;
	light.direction = {-1.0F, 0.0F, 0.0F};
	const auto lit = [&](int x, int y)
	{
		return Split(Illuminate(ramp, ramp.GetBox(), surface, light, ramp.GetBox(), kNoAlarm).At(x, y)).red;
	};
	// The standard counts a slope of one twice, at the edges as well.
	for (const int x : {0, 20, 49})
	{
		EXPECT_EQ(228, lit(x, 5)) << x;
		EXPECT_EQ(228, lit(x, 0)) << x;
		EXPECT_EQ(228, lit(x, 9)) << x;
	}
	light.direction = {1.0F, 0.0F, 0.0F};
	EXPECT_EQ(0, lit(20, 5));
	// The pixel's own row counts as much as those beside it together.
	for (const int row : {4, 6})
		std::fill_n(ramp.GetRow(row), 50, 0u);
	light.direction = {-1.0F, 0.0F, 0.0F};
	EXPECT_EQ(180, lit(20, 5));
	for (const int row : {4, 6})
		std::copy_n(ramp.GetRow(5), 50, ramp.GetRow(row));
	surface.isSpecular = true;
	light.direction = {0.0F, 0.0F, 1.0F};
	EXPECT_EQ(114, lit(20, 5));
	surface = Surface();
	light.kind = LightKind::spot;
	light.position = {25.0F, 5.0F, 10.0F};
	light.target = {25.0F, 5.0F, 0.0F};
	light.coneCosine = std::sqrt(0.5F);
	EXPECT_GT(lit(25, 5), 250);
	EXPECT_GT(lit(33, 5), 100);
	EXPECT_EQ(0, lit(36, 5));
}

TEST(FilterPixels, BlendingKeepsWhatOnlyOneOfTwoPicturesHas)
{
	const Box area{0, 0, 3, 1};
	const Raster top = Flood(0xFF804020, {0, 0, 2, 1});
	const Raster backdrop = Flood(0x80404040, {1, 0, 3, 1});
	const auto blend = [&](BlendMode mode, int x)
	{
		return Blend(top, backdrop, mode, area, kNoAlarm).At(x, 0);
	};
	for (int mode = 0; mode <= static_cast<int>(BlendMode::luminosity); mode++)
	{
		EXPECT_EQ(0xFF804020u, blend(static_cast<BlendMode>(mode), 0)) << mode;
		EXPECT_EQ(0x80404040u, blend(static_cast<BlendMode>(mode), 2)) << mode;
		EXPECT_EQ(255u, blend(static_cast<BlendMode>(mode), 1) >> 24) << mode;
	}
	// Half of the product with the backdrop's colour, and half of the colour alone.
	EXPECT_EQ(0xFF603018u, blend(BlendMode::multiply, 1));
	EXPECT_EQ(0x80402010u, Composite(top, backdrop, CompositeOperator::in, area, kNoAlarm).At(1, 0));
	// Colours are brought back into their range around their brightness.
	const auto shine = [&](std::uint32_t light, std::uint32_t below)
	{
		const Box one{0, 0, 1, 1};
		return Split(Blend(Flood(light, one), Flood(below, one), BlendMode::luminosity, one, kNoAlarm).At(0, 0));
	};
	EXPECT_EQ((Channels{255, 227, 227, 255}), shine(0xFFE6E6E6, 0xFF0000FF));
	EXPECT_EQ((Channels{0, 15, 15, 255}), shine(0xFF0D0D0D, 0xFFFFFF00));
	EXPECT_EQ(0x40404040u,
			  CompositeArithmetic(top, backdrop, {0.0F, 0.0F, 0.0F, 0.25F}, {0, 0, 9, 1}, kNoAlarm).At(8, 0));
	const Raster both = CompositeArithmetic(top, backdrop, {0.0F, 1.0F, -1.0F, 0.0F}, area, kNoAlarm);
	EXPECT_EQ(0x7F400000u, both.At(1, 0));
}

TEST(FilterPixels, TilesKeepTheirFractionsAndTheAlarmEndsEverything)
{
	Raster two({0, 0, 2, 1});
	two.GetPixels()[0] = 0xFFFF0000;
	two.GetPixels()[1] = 0xFF0000FF;
	const Raster tiled = Repeat(two, {0.0, 0.0, 2.5, 1.0}, {-5, 0, 10, 1});
	// Five pixels hold two tiles.
	for (int x = 0; x < 5; x++)
		EXPECT_EQ(tiled.At(x, 0), tiled.At(x + 5, 0)) << x;
	EXPECT_EQ(tiled.At(0, 0), tiled.At(-5, 0));
	EXPECT_EQ(0xFFFF0000u, tiled.At(2, 0));
	EXPECT_EQ(0u, tiled.At(4, 0));
	// Red moves by half the scale at full strength, and by half of it the other way where there is nothing.
	const Displacement by{4.0, 0.0, Channel::red, Channel::red};
	EXPECT_EQ(0xFF0000FFu, Displace(two, Flood(0xFFFF0000, {-9, 0, 9, 1}), by, {-9, 0, 9, 1}, kNoAlarm).At(-1, 0));
	EXPECT_EQ(0xFFFF0000u, Displace(two, Raster(), by, {-9, 0, 9, 1}, kNoAlarm).At(2, 0));
	EXPECT_EQ(0xFFFF0000u, Offset(two, 3, 4, {0, 0, 9, 9}).At(3, 4));

	const Alarm over{[](void*) noexcept { return true; }, nullptr};
	const Box area{0, 0, 9, 9};
	EXPECT_EQ(0u, MakeTurbulence({.frequencyX = 0.1, .frequencyY = 0.1, .isFractal = true}, area, over).At(4, 4));
	EXPECT_EQ(0u, Blur(Flood(0xFFFFFFFF, area), 2.0, 2.0, area, over).At(4, 4));
	EXPECT_EQ(0u, Morph(Flood(0xFFFFFFFF, area), MorphologyOperator::dilate, 1, 1, area, over).At(4, 4));
}

} // namespace
} // namespace orvan::filters
