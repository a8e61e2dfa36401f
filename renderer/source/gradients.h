// SPDX-License-Identifier: MIT
/// Gradients as sources of the drawing library.
#pragma once

#include "drawing/gradients.h"
#include "paint_servers.h"

namespace orvan::cairo
{

/// The gradients that a picture has used, read once: shapes share them. Two that fall on the same slot take turns.
class GradientCache
{
public:
	struct Entry
	{
		ObjectBase* element = nullptr;
		drawing::GradientDefinition definition;
		drawing::GradientGeometry geometry; ///< What `pattern` was made for, together with `opacity`.
		double opacity = 0.0;
		PatternPtr pattern;
	};

	/// The entry of an element; its `element` differs when it is to be filled.
	Entry& Find(const ObjectBase* element) noexcept
	{
		return _entries[(reinterpret_cast<std::uintptr_t>(element) >> 5) % kSlots];
	}

private:
	static constexpr std::size_t kSlots = 64;

	Entry _entries[kSlots];
};

/// Makes the gradient `element` the source of the canvas.
Result<PaintResult> SetGradient(const Canvas& canvas, ObjectBase* element, double opacity,
								const PaintPlace& at) noexcept;

} // namespace orvan::cairo
