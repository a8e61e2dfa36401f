// SPDX-License-Identifier: MIT
/// The document that is walked, and what it is fitted into.
#pragma once

#include "limits.h"
#include "svg_base.h"
#include "text_line.h"

namespace orvan::drawing
{

/// What all parts of one drawing share.
struct Scene
{
	SVGDocumentRef document;
	Vector2d naturalSize;  ///< The size in user units that the document gives itself.
	Vector2d viewportSize; ///< The size in user units that its outermost element is fitted into.
	Fonts& fonts;
	Limits limits;
};

} // namespace orvan::drawing
