// SPDX-License-Identifier: MIT
/// The readers of the complete import: what each form of value does to an element. Which attribute has which form is
/// said in `attribute_rules.cpp`.
#pragma once

#include "importer/complete/attribute_rules.h"

namespace orvan::svg::complete
{

// Identity, links and texts.
Result<Reading> ReadNothing(const Application& application);
Result<Reading> ReadId(const Application& application);
Result<Reading> ReadLink(const Application& application);
Result<Reading> ReadText(const Application& application);    ///< Without the blanks around it.
Result<Reading> ReadRawText(const Application& application); ///< As written.
Result<Reading> ReadReference(const Application& application);
Result<Reading> ReadMarkers(const Application& application);
Result<Reading> ReadMask(const Application& application);     ///< Layers with a reference.
Result<Reading> ReadClipPath(const Application& application); ///< A reference, or a shape.

// Keywords.
Result<Reading> ReadKeyword(const Application& application);      ///< Of a property: in any case.
Result<Reading> ReadExactKeyword(const Application& application); ///< Of an attribute: as written.
Result<Reading> ReadDisplay(const Application& application);
Result<Reading> ReadType(const Application& application);     ///< Its keywords depend on the element.
Result<Reading> ReadOperator(const Application& application); ///< Likewise.
Result<Reading> ReadXmlSpace(const Application& application);

// Numbers and lengths.
Result<Reading> ReadNumber(const Application& application);
Result<Reading> ReadNotNegativeNumber(const Application& application);
Result<Reading> ReadNumbers(const Application& application);
Result<Reading> ReadNumberPair(const Application& application);
Result<Reading> ReadAlpha(const Application& application);
Result<Reading> ReadOffset(const Application& application);
Result<Reading> ReadLength(const Application& application);
Result<Reading> ReadNotNegativeLength(const Application& application);
Result<Reading> ReadSize(const Application& application);   ///< Not negative, or "auto".
Result<Reading> ReadRadius(const Application& application); ///< Likewise.
Result<Reading> ReadX(const Application& application);      ///< On text a list.
Result<Reading> ReadY(const Application& application);      ///< Likewise.
Result<Reading> ReadShift(const Application& application);  ///< "dx" and "dy": on text lists of lengths.
Result<Reading> ReadSpacing(const Application& application);
Result<Reading> ReadReferencePoint(const Application& application); ///< A length or a side of the viewport.
Result<Reading> ReadDashArray(const Application& application);
Result<Reading> ReadOrient(const Application& application);
Result<Reading> ReadBaselineShift(const Application& application);

// Geometry.
Result<Reading> ReadPathData(const Application& application);
Result<Reading> ReadPoints(const Application& application);
Result<Reading> ReadTextPathData(const Application& application); ///< Commands in the dictionary.
Result<Reading> ReadTransform(const Application& application);
/// Sets an element's transform to that of another, or to none.
Result<void> ResetTransform(const Application& application, const ElementBase* other) noexcept;
Result<Reading> ReadMatrix(const Application& application);
Result<Reading> ReadTransformOrigin(const Application& application);
Result<Reading> ReadViewBox(const Application& application);
Result<Reading> ReadAspectRatio(const Application& application);

// Paint and effects.
Result<Reading> ReadPaint(const Application& application);
Result<Reading> ReadColor(const Application& application);
Result<Reading> ReadStopColor(const Application& application);
Result<Reading> ReadBackground(const Application& application); ///< Of a shorthand the colour.
Result<Reading> ReadPaintOrder(const Application& application);
Result<Reading> ReadFilter(const Application& application);

// Fonts.
Result<Reading> ReadFontSize(const Application& application);
Result<Reading> ReadFontFamily(const Application& application);
Result<Reading> ReadFontStyle(const Application& application);
Result<Reading> ReadFontWeight(const Application& application);
Result<Reading> ReadFontStretch(const Application& application);
Result<Reading> ReadFont(const Application& application);
Result<Reading> ReadFontSizeAdjust(const Application& application); ///< A number for the height of an x, or "none".
Result<Reading> ReadTextDecoration(const Application& application);
Result<Reading> ReadThickness(const Application& application); ///< Of a line: a length, or the font's.

} // namespace orvan::svg::complete
