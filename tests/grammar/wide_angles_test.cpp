// SPDX-License-Identifier: MIT
// Eight sines at once beside the C library's, bit for bit. To sweep more of them than every test run can afford:
// orvan_svg_grammar_test --gtest_filter='WideAngles.*' --gtest_shuffle --gtest_repeat=1000

#include "fast/number_tape.h"
#include "fast/wide_angles.h"

#include <gtest/gtest.h>

#if defined(__x86_64__)

#include <array>
#include <bit>
#include <cstdint>
#include <numbers>
#include <random>

namespace orvan::grammar::wide
{
namespace
{
constexpr int kTimes = 20000;
constexpr double kTurn = 2 * std::numbers::pi;

struct alignas(64) Numbers
{
	std::array<double, 8> items;
};

ORVAN_WIDE void SineAndCosineOf(const Numbers& angles, Numbers& sines, Numbers& cosines)
{
	Doubles sine, cosine;
	FindSineAndCosine(_mm512_load_pd(angles.items.data()), kAllLanes, sine, cosine);
	_mm512_store_pd(sines.items.data(), sine);
	_mm512_store_pd(cosines.items.data(), cosine);
}

ORVAN_WIDE void TangentAndSineOf(const Numbers& halves, Numbers& tangents, Numbers& sines)
{
	Doubles tangent, sine;
	FindTangentAndSine(_mm512_load_pd(halves.items.data()), kAllLanes, tangent, sine);
	_mm512_store_pd(tangents.items.data(), tangent);
	_mm512_store_pd(sines.items.data(), sine);
}

ORVAN_WIDE void AngleOf(const Numbers& y, const Numbers& x, Numbers& angles)
{
	const Doubles angle = FindAngle(_mm512_load_pd(y.items.data()), _mm512_load_pd(x.items.data()), kAllLanes);
	_mm512_store_pd(angles.items.data(), angle);
}

void ExpectSame(double actual, double expected, double argument, double other = 0)
{
	ASSERT_EQ(std::bit_cast<std::uint64_t>(actual), std::bit_cast<std::uint64_t>(expected))
		<< std::hexfloat << actual << " instead of " << expected << " for " << argument << " and " << other;
}

class WideAngles : public testing::Test
{
protected:
	void SetUp() override
	{
		if (!NumberTape::IsAvailable())
			GTEST_SKIP() << "This processor has no wide registers.";
	}

	double Uniform(double from, double to)
	{
		return std::uniform_real_distribution<double>(from, to)(_random);
	}

	/// Now and then near a multiple of an eighth of a turn, or on it, or near zero.
	double Angle(double most)
	{
		const double angle = Uniform(-most, most);
		const double step = kTurn / 8;
		switch (_random() % 8)
		{
		case 0:
			return std::round(angle / step) * step;
		case 1:
			return std::round(angle / step) * step + angle * Uniform(0, 1e-9);
		case 2:
			return std::ldexp(angle, -static_cast<int>(_random() % 1060));
		default:
			return angle;
		}
	}

	template <typename Next>
	static Numbers Fill(Next next)
	{
		Numbers numbers;
		for (double& number : numbers.items)
			number = next();
		return numbers;
	}

private:
	std::mt19937_64 _random{static_cast<std::uint64_t>(testing::UnitTest::GetInstance()->random_seed())};
};

TEST_F(WideAngles, SinesAndCosinesAreTheCLibrarys)
{
	for (int i = 0; i != kTimes; ++i)
	{
		const Numbers angles = Fill([this] { return Angle(3 * kTurn); });
		Numbers sines, cosines;
		SineAndCosineOf(angles, sines, cosines);
		for (std::size_t lane = 0; lane != 8; ++lane)
		{
			ASSERT_NO_FATAL_FAILURE(ExpectSame(sines.items[lane], std::sin(angles.items[lane]), angles.items[lane]));
			ASSERT_NO_FATAL_FAILURE(ExpectSame(cosines.items[lane], std::cos(angles.items[lane]), angles.items[lane]));
		}
	}
}

// Where a sine or a cosine is next to nothing, the C library is less exact than anywhere else.
TEST_F(WideAngles, AnglesNextToQuarterTurnsAreTheCLibrarys)
{
	constexpr int kQuarters = 12;
	constexpr int kNeighbours = 64;
	for (int quarter = -kQuarters; quarter <= kQuarters; ++quarter)
	{
		double angle = quarter * kTurn / 4;
		for (int i = 0; i != kNeighbours; ++i)
			angle = std::nextafter(angle, -100.0);
		for (int i = 0; i != 2 * kNeighbours / 8; ++i)
		{
			const Numbers angles = Fill([&angle] { return angle = std::nextafter(angle, 100.0); });
			Numbers sines, cosines;
			SineAndCosineOf(angles, sines, cosines);
			for (std::size_t lane = 0; lane != 8; ++lane)
			{
				ASSERT_NO_FATAL_FAILURE(
					ExpectSame(sines.items[lane], std::sin(angles.items[lane]), angles.items[lane]));
				ASSERT_NO_FATAL_FAILURE(
					ExpectSame(cosines.items[lane], std::cos(angles.items[lane]), angles.items[lane]));
			}
		}
	}
}

TEST_F(WideAngles, TangentsAreTheCLibrarys)
{
	for (int i = 0; i != kTimes; ++i)
	{
		// Not of zero, whose sign is lost.
		const Numbers halves = Fill(
			[this]
			{
				const double half = Angle(kTurn / 8);
				return half == 0 ? 1e-3 : half;
			});
		Numbers tangents, sines;
		TangentAndSineOf(halves, tangents, sines);
		for (std::size_t lane = 0; lane != 8; ++lane)
		{
			ASSERT_NO_FATAL_FAILURE(ExpectSame(tangents.items[lane], std::tan(halves.items[lane]), halves.items[lane]));
			ASSERT_NO_FATAL_FAILURE(
				ExpectSame(sines.items[lane], std::sin(2 * halves.items[lane]), halves.items[lane]));
		}
	}
}

TEST_F(WideAngles, AnglesOfPlacesAreTheCLibrarys)
{
	for (int i = 0; i != kTimes; ++i)
	{
		// Nearly on a circle, mostly the unit circle.
		const double radius = i % 16 == 0 ? std::ldexp(1, static_cast<int>(Uniform(-1100, 1020))) : 1;
		const Numbers angles = Fill([this] { return Angle(kTurn); });
		Numbers y, x, found;
		for (std::size_t lane = 0; lane != 8; ++lane)
		{
			y.items[lane] = radius * std::sin(angles.items[lane]) * Uniform(1, 1.0000001);
			x.items[lane] = radius * std::cos(angles.items[lane]);
		}
		AngleOf(y, x, found);
		for (std::size_t lane = 0; lane != 8; ++lane)
			ASSERT_NO_FATAL_FAILURE(
				ExpectSame(found.items[lane], std::atan2(y.items[lane], x.items[lane]), y.items[lane], x.items[lane]));
	}
}

TEST_F(WideAngles, ZerosAndTheAxesAreTheCLibrarys)
{
	constexpr double kHuge = std::numeric_limits<double>::max();
	constexpr double kInfinity = std::numeric_limits<double>::infinity();
	constexpr double kUps[]{0.0, -0.0, 1.0, -1.0, 1e-320, kHuge, 1e-200, -3.0};
	constexpr double kAsides[]{0.0, -0.0, 1.0, -1.0, kHuge, kInfinity, 1e-320, -1e-150};
	for (const double aside : kAsides)
	{
		Numbers y, x, found;
		std::copy(std::begin(kUps), std::end(kUps), y.items.begin());
		x.items.fill(aside);
		AngleOf(y, x, found);
		for (std::size_t lane = 0; lane != 8; ++lane)
			ASSERT_NO_FATAL_FAILURE(
				ExpectSame(found.items[lane], std::atan2(y.items[lane], aside), y.items[lane], aside));
	}
	const Numbers angles{{0.0, -0.0, kTurn / 4, -kTurn / 4, kTurn / 2, kTurn, -kTurn, 5e-324}};
	Numbers sines, cosines;
	SineAndCosineOf(angles, sines, cosines);
	for (std::size_t lane = 0; lane != 8; ++lane)
	{
		ASSERT_NO_FATAL_FAILURE(ExpectSame(sines.items[lane], std::sin(angles.items[lane]), angles.items[lane]));
		ASSERT_NO_FATAL_FAILURE(ExpectSame(cosines.items[lane], std::cos(angles.items[lane]), angles.items[lane]));
	}
}
} // namespace
} // namespace orvan::grammar::wide

#endif
