// SPDX-License-Identifier: MIT
#include "orvan/geometry.h"

#include <gtest/gtest.h>

namespace orvan
{
namespace
{

constexpr Matrix2d kMove{{10, 20}, {1, 0}, {0, 1}};
constexpr Matrix2d kQuarterTurn{{0, 0}, {0, 1}, {-1, 0}};

TEST(Matrix2d, DefaultIsTheIdentity)
{
	EXPECT_EQ((Vector2d{3, 4}), Matrix2d().Apply({3, 4}));
	EXPECT_EQ(kMove, Matrix2d() * kMove);
}

TEST(Matrix2d, ProductAppliesTheRightHandSideFirst)
{
	const Vector2d p{1, 2};
	EXPECT_EQ((Vector2d{8, 21}), (kMove * kQuarterTurn).Apply(p));
	EXPECT_EQ((Vector2d{-22, 11}), (kQuarterTurn * kMove).Apply(p));
	EXPECT_EQ(kQuarterTurn.Apply(kMove.Apply(p)), (kQuarterTurn * kMove).Apply(p));
}

TEST(Matrix2d, DirectionsAreNotMoved)
{
	EXPECT_EQ((Vector2d{1, 2}), kMove.ApplyToDirection({1, 2}));
}

} // namespace
} // namespace orvan
