// SPDX-License-Identifier: MIT
/// The value types of the SVG framework: plain records that elements carry and renderers read.
///
/// Every type has usable defaults, is owned by whoever holds it and is registered with the host as a data type, so that
/// it can stand in a `Data`, a `DataDictionary` or an array. None of them supports comparison or hashing through the
/// host; code that needs equality compares the fields. Values have no synchronisation of their own.
///
///     SVGPaint paint = element->GetFill();
///     if (paint.type == SVGPaintType::color)
///         UseColor(paint.color.red, paint.color.green, paint.color.blue);
///
/// This header stands for all of them:
///
/// | header | holds |
/// |---|---|
/// | svg_element_kinds.h | the kinds of elements, by number |
/// | svg_attributes.h | the attributes, by number and name, and which type each has in a dictionary |
/// | svg_keywords.h | the keywords of attributes, as enumerations |
/// | svg_length_unit.h | the units of lengths |
/// | svg_values.h | lengths, paints, path commands, gradients, boxes |
/// | svg_complete_values.h | the records that only the complete import stores |
#pragma once

#include "svg_attributes.h"
#include "svg_complete_values.h"
#include "svg_element_kinds.h"
#include "svg_keywords.h"
#include "svg_length_unit.h"
#include "svg_values.h"
