// SPDX-License-Identifier: MIT
#include "normalize.h"

#include "boxes.h"
#include "clip_areas.h"
#include "curve.h"
#include "stroke_edges.h"

namespace orvan::geometry
{
namespace
{

/// The parts of a shape, in the order in which they are painted.
enum class Part : std::uint8_t
{
	fill,
	stroke,
	markers,
};

/// By the numbers of `SVGPaintOrder`.
constexpr Part kOrders[][3] = {
	{Part::fill, Part::stroke, Part::markers}, {Part::fill, Part::markers, Part::stroke},
	{Part::stroke, Part::fill, Part::markers}, {Part::stroke, Part::markers, Part::fill},
	{Part::markers, Part::fill, Part::stroke}, {Part::markers, Part::stroke, Part::fill},
};

class Normalizer
{
public:
	Normalizer(const Record& record, const ContentPlace& place, const SVGNormalizeOptions& options,
			   SVGNormalizedClips clips, StrokeNeeds needs, NormalizedSink& sink) noexcept
		: _record(record), _options(options), _clips(clips), _needs(needs), _sink(sink), _place(place),
		  _areas(record, _place.toResult)
	{
	}

	Result<void> AddNode(std::int32_t index, bool isWhole) noexcept
	{
		const Node& node = _record.At(index);
		if (node.kind == NodeKind::apart)
			return _sink.AddApart(index);
		const bool isCut = node.clip >= 0 && _clips == SVGNormalizedClips::ignored;
		// A document has masks and blending, columns have neither.
		isWhole = isWhole && !isCut && !(_needs == StrokeNeeds::roundPens ? node.isFiltered : node.isChanged);
		if (node.shape >= 0)
			return AddShape(index, isWhole);
		ORVAN_TRY(_sink.Begin(index, false));
		ORVAN_TRY(AddChildren(index, isWhole));
		return _sink.End(index);
	}

private:
	Result<void> AddChildren(std::int32_t index, bool isWhole) noexcept
	{
		const std::int32_t end = _record.At(index).end;
		for (std::int32_t child = index + 1; child < end; child = _record.At(child).end)
		{
			const NodeKind kind = _record.At(child).kind;
			if (kind != NodeKind::content && kind != NodeKind::gone)
				ORVAN_TRY(AddNode(child, isWhole));
		}
		return {};
	}

	Result<void> AddShape(std::int32_t index, bool isWhole) noexcept
	{
		const Node& node = _record.At(index);
		const RecordedShape& shape = _record.ShapeOf(node);
		const bool fills = shape.style->isVisible && shape.style->fill.kind != SVGNormalizedPaint::none;
		const bool strokes = shape.style->isVisible && shape.style->HasStroke();
		const auto number = static_cast<std::size_t>(shape.style->paintOrder);
		const Part(&order)[3] = kOrders[number < std::size(kOrders) ? number : 0];
		// A path is filled before it is stroked: both go into one where nothing comes between.
		const bool isInOrder = (order[0] == Part::fill && order[1] == Part::stroke) ||
							   (order[1] == Part::fill && order[2] == Part::stroke);
		const bool keepsStroke = strokes && ORVAN_TRY(KeepsStroke(index, shape));
		const bool isOnePath = fills && isInOrder && keepsStroke;
		const bool isOne = node.end == index + 1 && (isOnePath || !fills || !strokes);
		ORVAN_TRY(_sink.Begin(index, isOne));
		for (const Part part : order)
		{
			if (part == Part::markers)
				ORVAN_TRY(AddChildren(index, isWhole));
			else if (shape.style->isImage)
				ORVAN_TRY(AddImage(index, part));
			else if (part == Part::fill && fills)
				ORVAN_TRY(AddOutline(index, isOnePath, isWhole));
			else if (part == Part::stroke && keepsStroke && !isOnePath)
				ORVAN_TRY(AddPath(index, shape.outline, ToResult(node.toView), {}, shape.style->stroke, isWhole));
			else if (part == Part::stroke && strokes && !keepsStroke)
				ORVAN_TRY(AddStroke(index, isWhole));
		}
		return _sink.End(index);
	}

	Result<void> AddImage(std::int32_t index, Part part) noexcept
	{
		const Node& node = _record.At(index);
		if (part != Part::fill || !_record.ShapeOf(node).style->isVisible)
			return {};
		return _sink.AddImage(index, ToResult(node.toView));
	}

	/// A fill, with the stroke where that goes into the same path.
	Result<void> AddOutline(std::int32_t index, bool hasStroke, bool isWhole) noexcept
	{
		const Node& node = _record.At(index);
		const RecordedShape& shape = _record.ShapeOf(node);
		const RecordedPaint stroke = hasStroke ? shape.style->stroke : RecordedPaint();
		const Matrix2d toResult = ToResult(node.toView);
		const bool isCut = _clips == SVGNormalizedClips::applied && !hasStroke &&
						   !IsWithinAreas(index, shape.outline.GetBounds(toResult));
		if (!isCut)
			return AddPath(index, shape.outline, toResult, shape.style->fill, stroke, isWhole);
		Outline outline;
		ORVAN_TRY(outline.Append(shape.outline, toResult));
		return AddCut(index, outline, shape.style->fillRule, shape.style->fill, isWhole);
	}

	/// A stroke as an area.
	Result<void> AddStroke(std::int32_t index, bool isWhole) noexcept
	{
		const Node& node = _record.At(index);
		const RecordedShape& shape = _record.ShapeOf(node);
		const Matrix2d pen = shape.style->isPenUnscaled ? _place.toView * node.toView : Matrix2d();
		const Matrix2d toResult = GetPenResult(node, shape);
		const double stretch = drawing::GetStretch(toResult);
		if (!(stretch > 0.0))
			return {};
		Outline edges;
		const Outline own = ORVAN_TRY(GetStrokeEdges(shape.outline, pen, shape.style->pen, shape.style->dashes,
													 _options.strokeTolerance / stretch));
		ORVAN_TRY(edges.Append(own, toResult));
		if (_clips == SVGNormalizedClips::applied && !IsWithinAreas(index, edges.GetBounds()))
			return AddCut(index, edges, SVGFillRule::nonzero, shape.style->stroke, isWhole);
		return Add(index, edges, {}, SVGFillRule::nonzero, shape.style->stroke, {}, isWhole);
	}

	/// What the areas leave of an outline in the result's coordinates.
	Result<void> AddCut(std::int32_t index, const Outline& outline, SVGFillRule rule, const RecordedPaint& fill,
						bool isWhole) noexcept
	{
		const Result<Outline> left = _areas.Cut(index, outline, rule);
		if (left.IsOk())
			return Add(index, left.GetValue(), {}, SVGFillRule::nonzero, fill, {}, isWhole);
		if (left.GetError().GetClass() == ErrorClass::illegalArgument)
			return Add(index, outline, {}, rule, fill, {}, false); // Too intricate.
		return left.GetError();
	}

	Result<void> AddPath(std::int32_t index, const Outline& outline, const Matrix2d& toResult,
						 const RecordedPaint& fill, const RecordedPaint& stroke, bool isWhole) noexcept
	{
		return Add(index, outline, toResult, _record.ShapeOf(_record.At(index)).style->fillRule, fill, stroke, isWhole);
	}

	Result<void> Add(std::int32_t index, const Outline& outline, const Matrix2d& toResult, SVGFillRule rule,
					 const RecordedPaint& fill, const RecordedPaint& stroke, bool isWhole) noexcept
	{
		if (outline.GetCommands().IsEmpty())
			return {};
		const Node& node = _record.At(index);
		const RecordedShape& shape = _record.ShapeOf(node);
		double width = 0.0;
		if (stroke.kind != SVGNormalizedPaint::none)
			width = shape.style->pen.width * drawing::GetMeanScale(GetPenResult(node, shape));
		return _sink.AddPath({index, outline, toResult, ToResult(node.toView), rule, fill, stroke, width, isWhole});
	}

	/// Dashes are outlined always, and strokes that are cut off: there is no other way to tell of them.
	Result<bool> KeepsStroke(std::int32_t index, const RecordedShape& shape) noexcept
	{
		const Node& node = _record.At(index);
		const Matrix2d toResult = GetPenResult(node, shape);
		if (_options.strokes != SVGNormalizedStrokes::kept || !shape.style->dashes.lengths.IsEmpty())
			return false;
		if (_needs == StrokeNeeds::roundPens && !KeepsCircles(toResult))
			return false;
		if (_clips != SVGNormalizedClips::applied)
			return true;
		return IsWithinAreas(index, GetStrokeBox(node, shape, ToResult(node.toView)));
	}

	bool IsWithinAreas(std::int32_t index, const Rectangle& bounds) noexcept
	{
		const Result<bool> isWhole = _areas.IsWhole(index, bounds);
		return isWhole.IsOk() && isWhole.GetValue();
	}

	Matrix2d ToResult(const Matrix2d& toView) const noexcept
	{
		return _place.toResult * toView;
	}

	/// From where the pen of a stroke is round.
	Matrix2d GetPenResult(const Node& node, const RecordedShape& shape) const noexcept
	{
		return ToResult(shape.style->isPenUnscaled ? InvertOrNot(_place.toView) : node.toView);
	}

	const Record& _record;
	const SVGNormalizeOptions& _options;
	const SVGNormalizedClips _clips;
	const StrokeNeeds _needs;
	NormalizedSink& _sink;
	const ContentPlace _place;
	ClipAreas _areas;
};

/// The visitor of an outline's segments.
class PlainWriter
{
public:
	PlainWriter(const SVGNormalizeOptions& options, PlainPath& to) noexcept : _options(options), _to(to)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		_pendingMove = point;
		_hasPendingMove = true;
	}

	void Add(const Curve& curve) noexcept
	{
		AddMove();
		const int count = _options.flattening > 0.0 ? curve.GetStepCount(_options.flattening) : 1;
		if (curve.isLine || _options.flattening > 0.0)
		{
			for (int i = 1; i < count; i++)
				AddPoint(SVGPathCommandType::line, curve.GetPoint(static_cast<double>(i) / count));
			AddPoint(SVGPathCommandType::line, curve.p[3]);
			return;
		}
		AddCommand(SVGPathCommandType::cubic);
		for (int i = 1; i < 4; i++)
			AddPoint(curve.p[i]);
	}

	void Close(const Curve&) noexcept
	{
		AddMove();
		AddCommand(SVGPathCommandType::close);
	}

	bool isGood = true;

private:
	/// A move counts only when something follows.
	void AddMove() noexcept
	{
		if (_hasPendingMove)
			AddPoint(SVGPathCommandType::move, _pendingMove);
		_hasPendingMove = false;
	}

	void AddCommand(SVGPathCommandType type) noexcept
	{
		isGood = isGood && _to.commands.Append(static_cast<std::uint8_t>(type)).IsOk();
	}

	void AddPoint(SVGPathCommandType type, const Vector2d& point) noexcept
	{
		AddCommand(type);
		AddPoint(point);
	}

	void AddPoint(const Vector2d& point) noexcept
	{
		isGood = isGood && _to.points.Append({Round(point.x), Round(point.y)}).IsOk();
	}

	double Round(double value) const noexcept
	{
		const double step = _options.precision;
		return step > 0.0 ? std::round(value / step) * step : value;
	}

	const SVGNormalizeOptions& _options;
	PlainPath& _to;
	Vector2d _pendingMove;
	bool _hasPendingMove = false;
};

} // namespace

Matrix2d GetViewResult(const Record& record, const SVGNormalizeOptions& options) noexcept
{
	const double side = std::max(record.viewSize.x, record.viewSize.y);
	const double scale = options.grid > 0.0 && side > 0.0 && std::isfinite(side) ? options.grid / side : 1.0;
	return drawing::Scaling(scale, scale);
}

Result<void> VisitNormalized(const Record& record, const SVGNormalizeOptions& options, SVGNormalizedClips clips,
							 StrokeNeeds needs, NormalizedSink& sink) noexcept
{
	if (record.pictureEnd == 0)
		return {};
	const ContentPlace place{GetViewResult(record, options), {}};
	return Normalizer(record, place, options, clips, needs, sink).AddNode(0, true);
}

Result<void> VisitContent(const Record& record, std::int32_t content, const ContentPlace& place,
						  const SVGNormalizeOptions& options, SVGNormalizedClips clips, StrokeNeeds needs,
						  NormalizedSink& sink) noexcept
{
	return Normalizer(record, place, options, clips, needs, sink).AddNode(content, true);
}

Result<void> AppendPlain(const Outline& outline, const Matrix2d& transform, const SVGNormalizeOptions& options,
						 PlainPath& to) noexcept
{
	PlainWriter writer(options, to);
	VisitSegments(outline.GetCommands(), transform, writer);
	if (!writer.isGood)
		return OutOfMemoryError();
	return {};
}

} // namespace orvan::geometry
