// SPDX-License-Identifier: MIT
/// Everything that is painted as plain paths.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// Commands and points of plain paths, one behind the other.
struct PlainPath
{
	BaseArray<std::uint8_t> commands;
	BaseArray<Vector2d> points;
};

/// A path that is painted. Good during the call that it is handed to.
struct NormalizedPath
{
	std::int32_t node;
	const Outline& outline;
	Matrix2d toResult;   ///< From the coordinates of the outline.
	Matrix2d nodeResult; ///< From those of the node, in which gradients are.
	SVGFillRule rule;
	RecordedPaint fill;
	RecordedPaint stroke;
	double strokeWidth; ///< In units of the result.
	bool isWhole;       ///< Nothing is left aside that would cut it off or change it.
};

/// Receives what is painted, in painting order.
class NormalizedSink
{
public:
	virtual ~NormalizedSink() = default;

	/// A node begins, with all that is painted in it up to the matching `End`. `isOne` says that there is one path in
	/// it at most.
	virtual Result<void> Begin(std::int32_t node, bool isOne) noexcept = 0;
	virtual Result<void> End(std::int32_t node) noexcept = 0;
	virtual Result<void> AddPath(const NormalizedPath& path) noexcept = 0;
	/// What is filtered, below a node apart.
	virtual Result<void> AddApart(std::int32_t node) noexcept = 0;
	virtual Result<void> AddImage(std::int32_t node, const Matrix2d& toResult) noexcept = 0;
};

/// What strokes become beside what the options say.
enum class StrokeNeeds : std::uint8_t
{
	meanWidth, ///< A pen that is wider one way has its mean width.
	roundPens, ///< A stroke with such a pen is outlined.
};

/// From the view to what is normalised.
Matrix2d GetViewResult(const Record& record, const SVGNormalizeOptions& options) noexcept;

/// Tells a sink all that is painted and visible.
Result<void> VisitNormalized(const Record& record, const SVGNormalizeOptions& options, SVGNormalizedClips clips,
							 StrokeNeeds needs, NormalizedSink& sink) noexcept;

/// Where contents are in the coordinates of what is normalised, and in the picture.
struct ContentPlace
{
	Matrix2d toResult;
	Matrix2d toView; ///< Strokes that are not scaled are as wide as there.
};

/// Tells a sink what stands in a mask or a tile, or is filtered.
Result<void> VisitContent(const Record& record, std::int32_t content, const ContentPlace& place,
						  const SVGNormalizeOptions& options, SVGNormalizedClips clips, StrokeNeeds needs,
						  NormalizedSink& sink) noexcept;

/// Appends an outline as the options want it: flattened, rounded, without moves that nothing follows.
Result<void> AppendPlain(const Outline& outline, const Matrix2d& transform, const SVGNormalizeOptions& options,
						 PlainPath& to) noexcept;

} // namespace orvan::geometry
