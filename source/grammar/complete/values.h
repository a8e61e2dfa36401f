// SPDX-License-Identifier: MIT
#pragma once

/// Attribute values and declarations as browsers read them: everything that the complete import takes beyond the plain
/// one. `grammar.h` is untouched by it, in what it takes and in what it refuses.
///
///     complete::Paint paint;
///     if (const auto wide = complete::ParseCssWide(text); wide != complete::CssWideKeyword::none)
///         ApplyWide(wide);
///     else if (complete::ParsePaint(" URL('#a') rgb(0 50% 0 / .5) /* sic */", paint) == Parsed::refused)
///         Report("fill", text);
///
/// Calls name the namespace, as here: many functions have the name and the arguments of their plain kin.
///
/// What holds for all functions of the room:
///
/// - Each reads one whole value. Blanks around it are skipped, and in CSS values also comments, wherever CSS lets them
///   stand. Keywords, names of functions, units and hexadecimal digits are matched in any case, in ASCII alone.
/// - A result argument is written only when the answer is `Parsed::value`.
/// - The CSS-wide keywords ("inherit" and its kin) are values of every property; ask `ParseCssWide` first. All other
///   functions refuse them.
/// - Views in results point into the text that was parsed. No function keeps a pointer beyond its return.
/// - No number that is not finite is delivered: a value that overflows is refused. The time is linear in the text.
/// - Nothing depends on the locale, nothing throws but what a sink or an allocation throws, and all functions may run
///   side by side in any number of threads.
///
/// `Source` tells the kinds of values apart. `attribute` is a presentation attribute or an attribute that is no
/// property: a length needs no unit, and a number may end with its decimal point ("13."). `style` and `sheet` are
/// declarations, where CSS decides: "13." is refused, and a length without a unit is one only where SVG's own
/// properties allow it, and in "style" for the sizes of fonts and their spacing as well.

#include "complete/colors.h"
#include "complete/filters.h"
#include "complete/numbers.h"
#include "complete/paths.h"
#include "complete/shapes.h"
#include "complete/text.h"
#include "complete/transforms.h"
