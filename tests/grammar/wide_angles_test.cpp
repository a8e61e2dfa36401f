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

ORVAN_WIDE Doubles Load(const Numbers& numbers)
{
	return _mm512_load_pd(numbers.items.data());
}

/// What was found, in the order of its lanes.
struct Found
{
	ORVAN_WIDE explicit Found(const Rounded& rounded) : inDoubt(rounded.inDoubt)
	{
		_mm512_store_pd(values.items.data(), rounded.values);
		_mm512_store_pd(others.items.data(), rounded.others);
	}

	Numbers values;
	Numbers others;
	Lanes inDoubt;
};

ORVAN_WIDE std::pair<Found, Found> SineAndCosineOf(const Numbers& angles)
{
	const auto [sine, cosine] = RoundSineAndCosine(Load(angles));
	return {Found(sine), Found(cosine)};
}

ORVAN_WIDE std::pair<Found, Found> TangentAndSineOf(const Numbers& halves)
{
	const auto [tangent, sine] = RoundTangentAndSine(Load(halves));
	return {Found(tangent), Found(sine)};
}

ORVAN_WIDE Found AngleOf(const Numbers& y, const Numbers& x)
{
	return Found(RoundAngle(Load(y), Load(x)));
}

std::uint64_t BitsOf(double value)
{
	return std::bit_cast<std::uint64_t>(value);
}

/// Of what was found for the arguments: the C library's results, unless in doubt, and then one of two. Returns how many
/// are in doubt.
template <typename Compute>
int ExpectTheCLibrarys(const Found& found, const Numbers& arguments, Compute compute)
{
	int inDoubt = 0;
	for (std::size_t lane = 0; lane != 8; ++lane)
	{
		const double expected = compute(arguments.items[lane]);
		const bool isInDoubt = (found.inDoubt >> lane & 1) != 0;
		const bool isValue = BitsOf(found.values.items[lane]) == BitsOf(expected);
		const bool isOther = BitsOf(found.others.items[lane]) == BitsOf(expected);
		EXPECT_TRUE(isInDoubt ? isValue || isOther : isValue && isOther)
			<< std::hexfloat << found.values.items[lane] << " or " << found.others.items[lane] << " instead of "
			<< expected << " for " << arguments.items[lane] << (isInDoubt ? ", in doubt" : "");
		inDoubt += isInDoubt;
	}
	return inDoubt;
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
	int inDoubt = 0;
	for (int i = 0; i != kTimes && !HasFailure(); ++i)
	{
		const Numbers angles = Fill([this] { return Angle(3 * kTurn); });
		const auto [sines, cosines] = SineAndCosineOf(angles);
		inDoubt += ExpectTheCLibrarys(sines, angles, [](double angle) { return std::sin(angle); });
		inDoubt += ExpectTheCLibrarys(cosines, angles, [](double angle) { return std::cos(angle); });
	}
	EXPECT_LT(inDoubt, 2 * 8 * kTimes / 10);
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
			const auto [sines, cosines] = SineAndCosineOf(angles);
			ExpectTheCLibrarys(sines, angles, [](double one) { return std::sin(one); });
			ExpectTheCLibrarys(cosines, angles, [](double one) { return std::cos(one); });
		}
	}
}

TEST_F(WideAngles, TangentsAreTheCLibrarys)
{
	int inDoubt = 0;
	for (int i = 0; i != kTimes && !HasFailure(); ++i)
	{
		// Not of zero, whose sign is lost.
		const Numbers halves = Fill(
			[this]
			{
				const double half = Angle(kTurn / 8);
				return half == 0 ? 1e-3 : half;
			});
		const auto [tangents, sines] = TangentAndSineOf(halves);
		inDoubt += ExpectTheCLibrarys(tangents, halves, [](double half) { return std::tan(half); });
		inDoubt += ExpectTheCLibrarys(sines, halves, [](double half) { return std::sin(2 * half); });
	}
	EXPECT_LT(inDoubt, 2 * 8 * kTimes / 4);
}

/// As for one argument. Far from one, where all is in doubt, the result may be neither of two.
int ExpectAngles(const Numbers& y, const Numbers& x, bool areFar)
{
	const Found found = AngleOf(y, x);
	int inDoubt = 0;
	for (std::size_t lane = 0; lane != 8; ++lane)
	{
		const double expected = std::atan2(y.items[lane], x.items[lane]);
		const bool isInDoubt = (found.inDoubt >> lane & 1) != 0;
		const bool isValue = BitsOf(found.values.items[lane]) == BitsOf(expected);
		const bool isOther = BitsOf(found.others.items[lane]) == BitsOf(expected);
		EXPECT_TRUE(isInDoubt ? areFar || isValue || isOther : isValue && isOther)
			<< std::hexfloat << found.values.items[lane] << " or " << found.others.items[lane] << " instead of "
			<< expected << " for " << y.items[lane] << " and " << x.items[lane] << (isInDoubt ? ", in doubt" : "");
		inDoubt += isInDoubt;
	}
	return inDoubt;
}

TEST_F(WideAngles, AnglesOfPlacesAreTheCLibrarys)
{
	int inDoubt = 0;
	for (int i = 0; i != kTimes && !HasFailure(); ++i)
	{
		// Nearly on a circle, mostly the unit circle.
		const bool areFar = i % 16 == 0;
		const double radius = areFar ? std::ldexp(1, static_cast<int>(Uniform(-1100, 1020))) : 1;
		const Numbers angles = Fill([this] { return Angle(kTurn); });
		Numbers y, x;
		for (std::size_t lane = 0; lane != 8; ++lane)
		{
			y.items[lane] = radius * std::sin(angles.items[lane]) * Uniform(1, 1.0000001);
			x.items[lane] = radius * std::cos(angles.items[lane]);
		}
		inDoubt += ExpectAngles(y, x, areFar);
	}
	EXPECT_LT(inDoubt, 8 * kTimes / 4);
}

TEST_F(WideAngles, ZerosAndTheAxesAreTheCLibrarys)
{
	constexpr double kHuge = std::numeric_limits<double>::max();
	constexpr double kInfinity = std::numeric_limits<double>::infinity();
	constexpr double kUps[]{0.0, -0.0, 1.0, -1.0, 1e-320, kHuge, 1e-200, -3.0};
	constexpr double kAsides[]{0.0, -0.0, 1.0, -1.0, kHuge, kInfinity, 1e-320, -1e-150};
	for (const double aside : kAsides)
	{
		Numbers y, x;
		std::copy(std::begin(kUps), std::end(kUps), y.items.begin());
		x.items.fill(aside);
		ExpectAngles(y, x, true);
	}
	const Numbers angles{{0.0, -0.0, kTurn / 4, -kTurn / 4, kTurn / 2, kTurn, -kTurn, 5e-324}};
	const auto [sines, cosines] = SineAndCosineOf(angles);
	ExpectTheCLibrarys(sines, angles, [](double angle) { return std::sin(angle); });
	ExpectTheCLibrarys(cosines, angles, [](double angle) { return std::cos(angle); });
}
} // namespace
} // namespace orvan::grammar::wide

#endif
