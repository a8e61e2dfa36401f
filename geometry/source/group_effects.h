// SPDX-License-Identifier: MIT
/// What changes a group or a path of a written document as a whole, as attributes.
#pragma once

#include "record.h"
#include "svg_writer.h"

namespace orvan::geometry
{

/// Masks of one node, with numbers that follow on each other, the upper first.
struct MaskLayers
{
	std::int64_t first = 0;
	int count = 0;
	SVGMaskComposite composite = SVGMaskComposite::add;
};

/// What changes a node as a whole. Numbers of definitions are 0 for none.
struct GroupEffects
{
	double opacity = 1.0;
	std::int64_t clip = 0;
	MaskLayers masks{};
	SVGBlendMode blendMode = SVGBlendMode::normal;
	bool isIsolated = false;
	const RecordedFilter* filter = nullptr;
	std::int64_t firstFilter = 0; ///< The filter elements of it have the numbers from here on.

	bool IsNone() const noexcept
	{
		return opacity == 1.0 && clip == 0 && masks.count == 0 && blendMode == SVGBlendMode::normal && !isIsolated &&
			   filter == nullptr;
	}
};

/// Adds them to a tag that is being written.
void AddGroupEffects(const GroupEffects& effects, SvgWriter& writer) noexcept;

} // namespace orvan::geometry
