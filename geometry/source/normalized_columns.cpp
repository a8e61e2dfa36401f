// SPDX-License-Identifier: MIT
#include "normalized_columns.h"

#include "normalize.h"

namespace orvan::geometry
{
namespace
{

class ColumnSink final : public NormalizedSink
{
public:
	ColumnSink(const Record& record, const SVGNormalizeOptions& options) noexcept : _record(record), _options(options)
	{
	}

	Result<void> Begin(std::int32_t node, bool) noexcept override
	{
		const double around = _opacities.IsEmpty() ? 1.0 : _opacities[_opacities.GetCount() - 1];
		return _opacities.Append(around * _record.At(node).opacity);
	}

	Result<void> End(std::int32_t) noexcept override
	{
		return _opacities.Resize(_opacities.GetCount() - 1);
	}

	/// Nothing stands apart where contents are not recorded.
	Result<void> AddApart(std::int32_t) noexcept override
	{
		return {};
	}

	/// Its pixels are no paths.
	Result<void> AddImage(std::int32_t, const Matrix2d&) noexcept override
	{
		return {};
	}

	Result<void> AddPath(const NormalizedPath& path) noexcept override
	{
		const std::size_t before = _plain.commands.GetCount();
		ORVAN_TRY(AppendPlain(path.outline, path.toResult, _options, _plain));
		if (_plain.commands.GetCount() == before)
			return {};
		const Node& node = _record.At(path.node);
		const RecordedShape& shape = _record.ShapeOf(node);
		const double opacity = _opacities[_opacities.GetCount() - 1];
		ORVAN_TRY(_paths.commandOffsets.Append(static_cast<std::int64_t>(_plain.commands.GetCount())));
		ORVAN_TRY(_paths.pointOffsets.Append(static_cast<std::int64_t>(_plain.points.GetCount())));
		ORVAN_TRY(_paths.fillKinds.Append(path.fill.kind));
		ORVAN_TRY(_paths.strokeKinds.Append(path.stroke.kind));
		ORVAN_TRY(_paths.fills.Append(path.fill.color));
		ORVAN_TRY(_paths.strokes.Append(path.stroke.color));
		ORVAN_TRY(_paths.fillOpacities.Append(path.fill.opacity * opacity));
		ORVAN_TRY(_paths.strokeOpacities.Append(path.stroke.opacity * opacity));
		ORVAN_TRY(_paths.strokeWidths.Append(path.strokeWidth));
		ORVAN_TRY(_paths.fillRules.Append(path.rule));
		ORVAN_TRY(_paths.strokeCaps.Append(shape.style->pen.cap));
		ORVAN_TRY(_paths.strokeJoins.Append(shape.style->pen.join));
		ORVAN_TRY(_paths.strokeMiterLimits.Append(std::max(1.0, shape.style->pen.miterLimit)));
		ORVAN_TRY(_paths.elements.Append(node.element));
		_paths.unclippedCount += path.isWhole ? 0 : 1;
		return {};
	}

	Result<SVGNormalizedPaths> Run(SVGNormalizedClips clips) noexcept
	{
		ORVAN_TRY(_paths.commandOffsets.Append(0));
		ORVAN_TRY(_paths.pointOffsets.Append(0));
		ORVAN_TRY(VisitNormalized(_record, _options, clips, StrokeNeeds::meanWidth, *this));
		_paths.commands = std::move(_plain.commands);
		_paths.points = std::move(_plain.points);
		_paths.size = GetViewResult(_record, _options).Apply(_record.viewSize);
		return std::move(_paths);
	}

private:
	const Record& _record;
	const SVGNormalizeOptions& _options;
	SVGNormalizedPaths _paths;
	PlainPath _plain;
	BaseArray<double> _opacities; ///< Of the nodes that have begun, those around them counted in.
};

} // namespace

Result<SVGNormalizedPaths> MakeColumns(const Record& record, const SVGNormalizeOptions& options,
									   SVGNormalizedClips clips) noexcept
{
	// Columns have no place for clip paths.
	if (clips == SVGNormalizedClips::kept)
		clips = SVGNormalizedClips::ignored;
	return ColumnSink(record, options).Run(clips);
}

} // namespace orvan::geometry
