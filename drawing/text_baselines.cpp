// SPDX-License-Identifier: MIT
#include "text_baselines.h"

#include "svg_complete.h"

namespace orvan::drawing
{

double GetBaselineShift(const Frame& frame, const Font* font, double size) noexcept
{
	const auto* shift =
		frame.attributes.Find<SVGBaselineShift>(static_cast<std::int32_t>(SVGImportAttribute::baselineShift));
	if (shift == nullptr)
		return 0.0;
	const FontMetrics metrics = font != nullptr ? font->metrics : FontMetrics();
	switch (shift->type)
	{
	case SVGBaselineShiftType::baseline:
		break;
	case SVGBaselineShiftType::sub:
		return metrics.subscript * size;
	case SVGBaselineShiftType::super:
		return metrics.superscript * size;
	case SVGBaselineShiftType::length:
		return shift->length.unit == SVGLengthUnit::percent ? shift->length.value * size
															: frame.Resolve(shift->length, Axis::other);
	}
	return 0.0;
}

double GetBaseline(SVGBaseline baseline, const FontMetrics& metrics, bool isUpright) noexcept
{
	switch (baseline)
	{
	case SVGBaseline::middle:
		return metrics.xHeight / 2.0;
	case SVGBaseline::central:
		return (metrics.ascent + metrics.descent) / 2.0;
	case SVGBaseline::mathematical:
		return metrics.ascent * 0.5;
	case SVGBaseline::hanging:
		return metrics.ascent * 0.8;
	case SVGBaseline::textBeforeEdge:
	case SVGBaseline::beforeEdge:
		return metrics.ascent;
	case SVGBaseline::ideographic:
	case SVGBaseline::textAfterEdge:
	case SVGBaseline::afterEdge:
		return metrics.descent;
	case SVGBaseline::alphabetic:
		return 0.0;
	case SVGBaseline::automatic:
	case SVGBaseline::useScript:
	case SVGBaseline::noChange:
	case SVGBaseline::resetSize:
	case SVGBaseline::baseline:
		break;
	}
	return isUpright ? (metrics.ascent + metrics.descent) / 2.0 : 0.0;
}

} // namespace orvan::drawing
