// SPDX-License-Identifier: MIT
/// The document that is walked, and what it is fitted into.
#pragma once

#include "fonts.h"
#include "images.h"
#include "limits.h"
#include "style.h"
#include "svg_base.h"

#include <optional>
#include <span>

namespace orvan::drawing
{

/// What all parts of one drawing share.
struct Scene
{
	SVGDocumentRef document;
	Vector2d naturalSize;  ///< The size in user units that the document gives itself.
	Vector2d viewportSize; ///< The size in user units that its outermost element is fitted into.
	Fonts& fonts;
	Style initialStyle{};                ///< What holds outside of the document.
	double unit = 1.0;                   ///< Pixels, or points of a page, for one unit of the viewport.
	std::optional<bool> hasBlendModes{}; ///< Found out when it is first asked for.
	Viewport viewport{};                 ///< That of the outermost element; of no size until it is visited.
	Matrix2d placement{};                ///< From the coordinates around the outermost element to those of the picture.
	ImageSource* images = nullptr;       ///< Null where no images are drawn.
	bool isComplete = false; ///< The document was imported completely: what it does not say has its initial value.
	bool drawsFilteredApart = false;  ///< Sinks are asked about what is filtered before it is drawn (`BeginApart`).
	std::string_view language = "en"; ///< Of whoever looks at the picture.
	Limits limits{};
	/// The way from the outermost element down to the only one that is wanted; empty where all are.
	std::span<ObjectBase* const> route{};
	/// Gets every element that a reference leads to, some of them more than once; null where nobody asks.
	BaseArray<ObjectBase*>* referenced = nullptr;
	bool hasMissing = false; ///< There was a reference that leads nowhere.

	/// The only child of an element that is visited, or null where all are. `depth` is that of the element's frame.
	ObjectBase* GetNextOnRoute(const ObjectBase* element, int depth) const noexcept
	{
		const auto next = static_cast<std::size_t>(depth);
		return next < route.size() && route[next - 1] == element ? route[next] : nullptr;
	}
};

/// True when any element of the document is blended with what lies below it. Only then it matters whether a group is a
/// picture of its own.
Result<bool> HasBlendModes(Scene& scene) noexcept;

} // namespace orvan::drawing
