// SPDX-License-Identifier: MIT
/// The fonts that texts are measured with.
#pragma once

#include "drawing/fonts.h"

namespace orvan::geometry
{

/// Makes the font library's context, without hinting: letters are as wide as the fonts say.
drawing::PangoContextPtr MakeFontContext() noexcept;

/// Keeps the font libraries in memory for the life of the process, since they cannot be loaded a second time.
void KeepFontLibraries() noexcept;

} // namespace orvan::geometry
