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
	const SVGClipShape* clipShape = nullptr; ///< What clips instead of a clip path.
	const BaseArray<SVGFilterFunction>* filter = nullptr;
	SVGBlendMode blendMode = SVGBlendMode::normal;
	bool isIsolated = false;

	Effects() noexcept = default;
	/// What an element says.
	explicit Effects(const DataDictionary& attributes) noexcept;

	/// True for what cannot be mixed into the paints of what it applies to.
	bool NeedsPicture() const noexcept
	{
		return mask != nullptr || clipPath != nullptr || clipShape != nullptr || filter != nullptr ||
			   blendMode != SVGBlendMode::normal;
	}

	bool IsNone() const noexcept
	{
		return opacity == 1.0 && mask == nullptr && clipPath == nullptr && clipShape == nullptr && filter == nullptr &&
			   blendMode == SVGBlendMode::normal && !isIsolated;
	}
};

} // namespace orvan::drawing
