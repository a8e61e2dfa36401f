// SPDX-License-Identifier: MIT
/// The document that is walked, and what it is fitted into.
#pragma once

#include "fonts.h"
#include "limits.h"
#include "style.h"
#include "svg_base.h"

namespace orvan::drawing
{

/// What all parts of one drawing share.
struct Scene
{
	SVGDocumentRef document;
	Vector2d naturalSize;  ///< The size in user units that the document gives itself.
	Vector2d viewportSize; ///< The size in user units that its outermost element is fitted into.
	Fonts& fonts;
	Style initialStyle{};    ///< What holds outside of the document.
	double unit = 1.0;       ///< Pixels, or points of a page, for one unit of the viewport.
	bool isComplete = false; ///< The document was imported completely: what it does not say has its initial value.
	std::string_view language = "en"; ///< Of whoever looks at the picture.
	Limits limits{};
};

} // namespace orvan::drawing
