// SPDX-License-Identifier: MIT
/// Gradients of a written document.
#pragma once

#include "record.h"
#include "svg_writer.h"

namespace orvan::geometry
{

/// Writes gradients, but not again those that were written shortly before: markers take such from their context.
class GradientWriter
{
public:
	/// Writes a gradient, unless one like it is known, and returns its number. `count` is how many paint servers there
	/// are, whose numbers begin at 1. `toResult` leads from the coordinates of the node that is painted to the
	/// result's.
	Result<std::int64_t> Write(const RecordedGradient& gradient, const Matrix2d& toResult, SvgWriter& writer,
							   std::int64_t& count) noexcept;

private:
	/// A gradient that was written; its tag is at the end of the text as well.
	struct Known
	{
		BaseArray<char> body;
		std::int64_t id = 0;
	};

	Known _known[8];
};

} // namespace orvan::geometry
