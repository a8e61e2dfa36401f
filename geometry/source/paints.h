// SPDX-License-Identifier: MIT
/// What something is painted with.
#pragma once

#include "drawing/frame.h"
#include "drawing/scene.h"
#include "record.h"

namespace orvan::geometry
{

/// Writes down what stands in patterns.
class ContentRecorder
{
public:
	/// Records what stands in an element whose frame is `frame`; the result is the node that has it below.
	virtual Result<std::int32_t> RecordContent(const drawing::Frame& frame) noexcept = 0;
	/// Records an element by itself, reached from `outer`; likewise.
	virtual Result<std::int32_t> RecordElement(ObjectBase* element, const drawing::Place& place,
											   const drawing::Frame& outer) noexcept = 0;

protected:
	~ContentRecorder() = default;
};

/// The paint that fills, or strokes, an element. A paint server that cannot be found or shows nothing is none, unless
/// the paint names something to fall back to. Gradients are written into the record, and patterns where there is a
/// recorder for what stands in them; `box` is what they refer to.
Result<RecordedPaint> GetPaint(drawing::Scene& scene, Record& record, const drawing::Frame& frame,
							   const drawing::LazyBox& box, bool isFill, ContentRecorder* contents) noexcept;

} // namespace orvan::geometry
