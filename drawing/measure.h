// SPDX-License-Identifier: MIT
/// What would be touched by drawing something.
#pragma once

#include "sink.h"

namespace orvan::drawing
{

/// A box around what fill and stroke of a shape touch, soft edges included, when its outline lies in `bounds`. Both are
/// in the picture's coordinates.
Rectangle GetPaintedBounds(const Place& place, const Rectangle& bounds) noexcept;

/// A sink that draws nothing and finds out what would be touched, effects left aside.
class MeasureSink final : public Sink
{
public:
	Result<void> DrawShape(const Frame& frame, const Outline& outline) noexcept override;
	Result<void> DrawText(const Frame& frame, const TextLine& line) noexcept override;
	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override;
	Result<void> DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept override;

	/// A box around everything so far, in the picture's coordinates.
	const Rectangle& GetTouched() const noexcept
	{
		return _touched;
	}

private:
	Rectangle _touched;
};

} // namespace orvan::drawing
