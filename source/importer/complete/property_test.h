// SPDX-License-Identifier: MIT
/// What @supports asks.
#pragma once

#include "css/supports.h"

namespace orvan::svg::complete
{

/// Says which declarations are read: those that the complete import understands, and those of properties that say
/// nothing about drawings, which browsers know by name.
class PropertyTest final : public css::FeatureTest
{
public:
	/// Throws std::bad_alloc.
	bool Understands(const css::Declaration& declaration) override;
};

} // namespace orvan::svg::complete
