// SPDX-License-Identifier: MIT
/// Small capitals: which letters become them, and which fonts have them.
#pragma once

#include "fonts.h"

namespace orvan::drawing
{

/// True when capitals become small ones.
constexpr bool TakesCapitals(SVGFontVariant variant) noexcept
{
	return variant == SVGFontVariant::allSmallCaps || variant == SVGFontVariant::allPetiteCaps ||
		   variant == SVGFontVariant::unicase;
}

/// True for what is drawn as small capitals where the font has none: small letters or all the rest, or both, figures
/// and blanks included, as browsers have it.
constexpr bool IsSmall(SVGFontVariant variant, bool isSmallLetter) noexcept
{
	return isSmallLetter ? variant != SVGFontVariant::unicase : TakesCapitals(variant);
}

/// True when a font has the letters of a variant, or nothing is asked of it. Where it has none, capitals of another
/// size stand for them; petite capitals are made from small ones.
inline bool HasCapitals(const Font& font, SVGFontVariant variant) noexcept
{
	switch (variant)
	{
	case SVGFontVariant::normal:
	case SVGFontVariant::titlingCaps:
		return true;
	case SVGFontVariant::smallCaps:
	case SVGFontVariant::petiteCaps:
		return font.hasSmallCapitals;
	case SVGFontVariant::allSmallCaps:
	case SVGFontVariant::allPetiteCaps:
	case SVGFontVariant::unicase:
		return font.hasSmallCapitalsOfAll;
	}
	return false;
}

} // namespace orvan::drawing
