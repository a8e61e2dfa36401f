// SPDX-License-Identifier: MIT
/// What a walk tells about a tree.
#pragma once

#include "frame.h"
#include "images.h"
#include "outline.h"

#include <type_traits>

namespace orvan::drawing
{

class Sink;
class TextLayout;

/// Something that can be told to a sink once, several times or not at all: what stands in a group, for example. Refers
/// to the callable that it was made from, which must outlive it.
class Content
{
public:
	template <typename Draw>
	requires(!std::is_same_v<std::remove_cvref_t<Draw>, Content>) Content(const Draw& draw)
	noexcept
		: _context(&draw), _call([](const void* context, Sink& sink) noexcept -> Result<void>
								 { return (*static_cast<const Draw*>(context))(sink); })
	{
	}

	Result<void> DrawInto(Sink& sink) const noexcept
	{
		return _call(_context, sink);
	}

private:
	const void* _context;
	Result<void> (*_call)(const void*, Sink&) noexcept;
};

/// Receives what a walk meets, in painting order. Painting is one sink, measuring another. What is not displayed is not
/// told; hidden shapes and texts (visibility) are.
class Sink
{
public:
	virtual ~Sink() = default;

	/// False when shapes, texts and uses alone count, as in clip paths; the walk then leaves containers out.
	virtual bool TakesContainers() const noexcept
	{
		return true;
	}

	/// An element that is filtered comes next. When the result is true, it comes in coordinates of its own, from which
	/// `toPicture` leads to those that were in force. Asked where the scene says so.
	virtual Result<bool> BeginApart(const Frame& /*frame*/, const Matrix2d& /*toPicture*/) noexcept
	{
		return false;
	}

	/// Behind what came apart, unless that ended with an error.
	virtual void EndApart() noexcept
	{
	}

	/// A shape with its effects. The outline is the sink's, which may take it away.
	virtual Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept = 0;
	/// A text with its effects.
	virtual Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept = 0;
	/// An image with its effects.
	virtual Result<void> DrawImage(const Frame& frame, const PlacedImage& image) noexcept = 0;
	/// A container or a use: `content` with the frame's effects.
	virtual Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept = 0;
	/// Content that is cut off at the edges of a rectangle in the coordinates of `place`.
	virtual Result<void> DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept = 0;
};

} // namespace orvan::drawing
