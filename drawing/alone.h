// SPDX-License-Identifier: MIT
/// One element of a document by itself.
#pragma once

#include "sink.h"

namespace orvan::drawing
{

/// Tells another sink about one element with everything below it, wherever a walk comes across it, where it stands. Of
/// the elements around it coordinates and inherited properties count, but no effects and no edges.
class AloneSink final : public Sink
{
public:
	AloneSink(Sink& sink, const ObjectBase* element) noexcept : _sink(sink), _element(element)
	{
	}

	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override
	{
		return frame.IsWithin(_element) ? _sink.DrawShape(frame, outline) : Result<void>();
	}

	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override
	{
		return frame.IsWithin(_element) ? _sink.DrawText(frame, text) : Result<void>();
	}

	Result<void> DrawImage(const Frame& frame, const PlacedImage& image) noexcept override
	{
		return frame.IsWithin(_element) ? _sink.DrawImage(frame, image) : Result<void>();
	}

	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override
	{
		return frame.IsWithin(_element) ? _sink.DrawGroup(frame, content) : content.DrawInto(*this);
	}

	/// What is within the element goes to the other sink directly, so these are the edges of something around it.
	Result<void> DrawClipped(const Place&, const Rectangle&, const Content& content) noexcept override
	{
		return content.DrawInto(*this);
	}

private:
	Sink& _sink;
	const ObjectBase* _element;
};

} // namespace orvan::drawing
