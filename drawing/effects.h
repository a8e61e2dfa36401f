// SPDX-License-Identifier: MIT
/// The properties that elements do not inherit: what applies to an element with all below it, as one picture.
#pragma once

#include "svg_elements.h"

namespace orvan::drawing
{

/// What applies to an element together with all below it, as one picture.
struct Effects
{
	double opacity = 1.0;
	const String* mask = nullptr;
	const String* clipPath = nullptr;
	const BaseArray<SVGFilterFunction>* filter = nullptr;
	SVGBlendMode blendMode = SVGBlendMode::normal;
	bool isIsolated = false;

	Effects() noexcept = default;
	/// What an element says.
	explicit Effects(const DataDictionary& attributes) noexcept;

	bool IsNone() const noexcept
	{
		return opacity == 1.0 && mask == nullptr && clipPath == nullptr && filter == nullptr &&
			   blendMode == SVGBlendMode::normal && !isIsolated;
	}
};

} // namespace orvan::drawing
