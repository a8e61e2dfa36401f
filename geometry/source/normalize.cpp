// SPDX-License-Identifier: MIT
#include "normalize.h"

#include "boxes.h"
#include "segments.h"
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
	Normalizer(const Record& record, const SVGNormalizeOptions& options) noexcept : _record(record), _options(options)
	{
		const double side = std::max(record.viewSize.x, record.viewSize.y);
		if (options.grid > 0.0 && side > 0.0 && std::isfinite(side))
			_scale = options.grid / side;
		_paths.size = Times(record.viewSize, _scale);
	}

	Result<SVGNormalizedPaths> Run() noexcept
	{
		ORVAN_TRY(_paths.commandOffsets.Append(0));
		ORVAN_TRY(_paths.pointOffsets.Append(0));
		if (_record.pictureEnd > 0)
			ORVAN_TRY(AddNode(0, false));
		return std::move(_paths);
	}

	// The visitor of a path's segments.

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

private:
	/// What is painted of one path.
	struct Paints
	{
		RecordedPaint fill;
		RecordedPaint stroke;
		double strokeWidth = 0.0;
		SVGFillRule rule = SVGFillRule::nonzero;
	};

	Result<void> AddNode(std::int32_t index, bool isCut) noexcept
	{
		const Node& node = _record.At(index);
		const bool isCutHere = isCut || node.clip >= 0 || node.isChanged;
		if (node.shape >= 0)
			return AddShape(index, isCutHere);
		return AddChildren(index, isCutHere);
	}

	Result<void> AddChildren(std::int32_t index, bool isCut) noexcept
	{
		const std::int32_t end = _record.At(index).end;
		for (std::int32_t child = index + 1; child < end; child = _record.At(child).end)
			ORVAN_TRY(AddNode(child, isCut));
		return {};
	}

	Result<void> AddShape(std::int32_t index, bool isCut) noexcept
	{
		const Node& node = _record.At(index);
		const RecordedShape& shape = _record.ShapeOf(node);
		if (shape.isImage)
			return {}; // Its pixels are no paths.
		const bool fills = shape.isVisible && shape.fill.kind != SVGNormalizedPaint::none;
		const bool strokes = shape.isVisible && shape.HasStroke();
		const auto number = static_cast<std::size_t>(shape.paintOrder);
		const Part(&order)[3] = kOrders[number < std::size(kOrders) ? number : 0];
		// A path is filled before it is stroked: both go into one where nothing comes between.
		const bool isOnePath = (order[0] == Part::fill && order[1] == Part::stroke) ||
							   (order[1] == Part::fill && order[2] == Part::stroke);
		bool isStrokeDone = false;
		for (const Part part : order)
		{
			if (part == Part::markers)
				ORVAN_TRY(AddChildren(index, isCut));
			else if (part == Part::fill && fills)
			{
				const bool isWhole = isOnePath && strokes && KeepsStroke(shape);
				ORVAN_TRY(
					AddPath(node, shape.outline, ToResult(node.toView), MakePaints(node, shape, true, isWhole), isCut));
				isStrokeDone = isWhole;
			}
			else if (part == Part::stroke && strokes && !isStrokeDone)
				ORVAN_TRY(AddStroke(node, shape, isCut));
		}
		return {};
	}

	/// Dashes are outlined always: there is no column for them.
	bool KeepsStroke(const RecordedShape& shape) const noexcept
	{
		return _options.strokes == SVGNormalizedStrokes::kept && shape.dashes.lengths.IsEmpty();
	}

	Paints MakePaints(const Node& node, const RecordedShape& shape, bool fills, bool strokes) const noexcept
	{
		Paints paints;
		paints.rule = shape.fillRule;
		if (fills)
			paints.fill = shape.fill;
		if (strokes)
		{
			paints.stroke = shape.stroke;
			const Matrix2d m = shape.isPenUnscaled ? Matrix2d() : node.toView;
			paints.strokeWidth = shape.pen.width * std::sqrt(std::abs(Cross(m.axis1, m.axis2))) * _scale;
		}
		paints.fill.opacity *= node.opacity;
		paints.stroke.opacity *= node.opacity;
		return paints;
	}

	Result<void> AddStroke(const Node& node, const RecordedShape& shape, bool isCut) noexcept
	{
		if (KeepsStroke(shape))
			return AddPath(node, shape.outline, ToResult(node.toView), MakePaints(node, shape, false, true), isCut);
		const Matrix2d pen = shape.isPenUnscaled ? node.toView : Matrix2d();
		const Matrix2d toResult = ToResult(shape.isPenUnscaled ? Matrix2d() : node.toView);
		const double stretch = drawing::GetStretch(toResult);
		if (!(stretch > 0.0))
			return {};
		const Outline edges =
			ORVAN_TRY(GetStrokeEdges(shape.outline, pen, shape.pen, shape.dashes, _options.strokeTolerance / stretch));
		Paints paints;
		paints.fill = shape.stroke;
		paints.fill.opacity *= node.opacity;
		return AddPath(node, edges, toResult, paints, isCut);
	}

	Matrix2d ToResult(const Matrix2d& toView) const noexcept
	{
		return drawing::Scaling(_scale, _scale) * toView;
	}

	Result<void> AddPath(const Node& node, const Outline& outline, const Matrix2d& toResult, const Paints& paints,
						 bool isCut) noexcept
	{
		const std::size_t before = _paths.commands.GetCount();
		_hasPendingMove = false;
		VisitSegments(outline.GetCommands(), toResult, *this);
		if (!_isGood)
			return OutOfMemoryError();
		if (_paths.commands.GetCount() == before)
			return {};
		const RecordedShape& shape = _record.ShapeOf(node);
		ORVAN_TRY(_paths.commandOffsets.Append(static_cast<std::int64_t>(_paths.commands.GetCount())));
		ORVAN_TRY(_paths.pointOffsets.Append(static_cast<std::int64_t>(_paths.points.GetCount())));
		ORVAN_TRY(_paths.fillKinds.Append(paints.fill.kind));
		ORVAN_TRY(_paths.strokeKinds.Append(paints.stroke.kind));
		ORVAN_TRY(_paths.fills.Append(paints.fill.color));
		ORVAN_TRY(_paths.strokes.Append(paints.stroke.color));
		ORVAN_TRY(_paths.fillOpacities.Append(paints.fill.opacity));
		ORVAN_TRY(_paths.strokeOpacities.Append(paints.stroke.opacity));
		ORVAN_TRY(_paths.strokeWidths.Append(paints.strokeWidth));
		ORVAN_TRY(_paths.fillRules.Append(paints.rule));
		ORVAN_TRY(_paths.strokeCaps.Append(shape.pen.cap));
		ORVAN_TRY(_paths.strokeJoins.Append(shape.pen.join));
		ORVAN_TRY(_paths.strokeMiterLimits.Append(std::max(1.0, shape.pen.miterLimit)));
		ORVAN_TRY(_paths.elements.Append(node.element));
		_paths.unclippedCount += isCut ? 1 : 0;
		return {};
	}

	/// A move counts only when something follows.
	void AddMove() noexcept
	{
		if (_hasPendingMove)
			AddPoint(SVGPathCommandType::move, _pendingMove);
		_hasPendingMove = false;
	}

	void AddCommand(SVGPathCommandType type) noexcept
	{
		_isGood = _isGood && _paths.commands.Append(static_cast<std::uint8_t>(type)).IsOk();
	}

	void AddPoint(SVGPathCommandType type, const Vector2d& point) noexcept
	{
		AddCommand(type);
		AddPoint(point);
	}

	void AddPoint(const Vector2d& point) noexcept
	{
		_isGood = _isGood && _paths.points.Append({Round(point.x), Round(point.y)}).IsOk();
	}

	double Round(double value) const noexcept
	{
		const double step = _options.precision;
		return step > 0.0 ? std::round(value / step) * step : value;
	}

	const Record& _record;
	const SVGNormalizeOptions& _options;
	SVGNormalizedPaths _paths;
	double _scale = 1.0;
	Vector2d _pendingMove;
	bool _hasPendingMove = false;
	bool _isGood = true;
};

} // namespace

Result<SVGNormalizedPaths> NormalizeRecord(const Record& record, const SVGNormalizeOptions& options) noexcept
{
	return Normalizer(record, options).Run();
}

} // namespace orvan::geometry
