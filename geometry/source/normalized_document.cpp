// SPDX-License-Identifier: MIT
#include "normalized_document.h"

#include "boxes.h"
#include "gradient_writer.h"
#include "group_effects.h"
#include "orvan/diagnostics.h"
#include "svg_complete.h"
#include "svg_writer.h"

namespace orvan::geometry
{
namespace
{

constexpr std::string_view kCaps[] = {"", "butt", "round", "square"};
constexpr std::string_view kJoins[] = {"", "miter", "round", "bevel"};
/// By the numbers of `SVGAlign`.
constexpr std::string_view kAligns[] = {"xMidYMid", "none",     "xMinYMin", "xMidYMin", "xMaxYMin",
										"xMinYMid", "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax"};
class DocumentSink final : public NormalizedSink
{
public:
	DocumentSink(const Record& record, const SVGNormalizeOptions& options, SVGNormalizedClips clips) noexcept
		: _record(record), _options(&options), _clips(clips), _place{GetViewResult(record, options), {}}
	{
	}

	Result<BaseArray<char>> Run() noexcept
	{
		const Vector2d size = _place.toResult.Apply(_record.viewSize);
		_writer.Add("<svg xmlns=\"http://www.w3.org/2000/svg\"");
		_writer.AddAttribute("width", size.x).AddAttribute("height", size.y);
		_writer.Add(" viewBox=\"0 0 ").AddPoint(size).Add("\">\n");
		ORVAN_TRY(_regionIds.Resize(_record.regions.GetCount()));
		for (std::size_t i = 0; i < _record.nodes.GetCount(); i++)
			_hasBlending = _hasBlending || _record.nodes[i].blendMode != SVGBlendMode::normal;
		ORVAN_TRY(_patternIds.Resize(_record.patterns.GetCount()));
		ORVAN_TRY(VisitNormalized(_record, *_options, _clips, StrokeNeeds::roundPens, *this));
		_writer.Add("</svg>\n");
		if (!_writer.isGood)
			return OutOfMemoryError();
		if (_changedCount > 0)
			WarningOutput("What cuts off or changes @ paths is left aside.", _changedCount);
		return std::move(_writer.text);
	}

	/// What changes a node as a whole goes to a group, or to the path where there is only one.
	Result<void> Begin(std::int32_t index, bool isOne) noexcept override
	{
		const Node& node = _record.At(index);
		const bool keepsClips =
			_clips == SVGNormalizedClips::kept || (_clips == SVGNormalizedClips::applied && node.hasPixels);
		const NodeEdges* const edges = _record.EdgesOf(node);
		std::int64_t clip = 0;
		if (keepsClips && node.clip >= 0)
			clip = ORVAN_TRY(DefineRegion(node.clip));
		const MaskLayers masks = ORVAN_TRY(DefineMasks(index));
		// What is clipped is a picture of its own, also where its paths end at the clip path instead.
		const bool isIsolated = node.isIsolated || (_hasBlending && clip == 0 && node.clip >= 0);
		GroupEffects effects{std::clamp(node.opacity, 0.0, 1.0), clip, masks, node.blendMode, isIsolated};
		if (node.filter >= 0)
		{
			effects.filter = &_record.filters[static_cast<std::size_t>(node.filter)];
			effects.firstFilter = ORVAN_TRY(DefineFilter(*effects.filter));
		}
		// An image has a transform of its own, with which these would go. A filter shows also where no path is painted.
		const bool isPlaced =
			(clip != 0 || masks.count != 0) && node.shape >= 0 && _record.ShapeOf(node).style->isImage;
		Opened opened;
		if (isOne && !isPlaced && node.filter < 0)
			opened.effects = effects;
		else if (!effects.IsNone())
			OpenGroup(opened, effects);
		// The outermost viewport is that of the document that is written.
		if (keepsClips && edges != nullptr && edges->hasViewport && index > 0)
			OpenGroup(opened, {1.0, ORVAN_TRY(DefineViewport(node, *edges))});
		return _opened.Append(opened);
	}

	Result<void> End(std::int32_t) noexcept override
	{
		for (int count = _opened[_opened.GetCount() - 1].groupCount; count > 0; count--)
			_writer.Add("</g>\n");
		return _opened.Resize(_opened.GetCount() - 1);
	}

	Result<void> AddPath(const NormalizedPath& path) noexcept override
	{
		// Patterns have paths in them.
		PlainPath plain = std::move(_plain);
		plain.commands.Clear();
		plain.points.Clear();
		ORVAN_TRY(AppendPlain(path.outline, path.toResult, *_options, plain));
		if (plain.commands.IsEmpty())
			return {};
		const std::int64_t fill = ORVAN_TRY(DefineServer(path.fill, path.nodeResult));
		const std::int64_t stroke = ORVAN_TRY(DefineServer(path.stroke, path.nodeResult));
		const RecordedShape& shape = _record.ShapeOf(_record.At(path.node));
		_writer.Add("<path");
		AddEffects();
		AddPaint("fill", "fill-opacity", path.fill, fill);
		if (path.rule == SVGFillRule::evenodd)
			_writer.AddAttribute("fill-rule", "evenodd");
		if (path.stroke.kind != SVGNormalizedPaint::none)
		{
			AddPaint("stroke", "stroke-opacity", path.stroke, stroke);
			_writer.AddAttribute("stroke-width", path.strokeWidth);
			if (shape.style->pen.cap != SVGLineCap::butt)
				_writer.AddAttribute("stroke-linecap", kCaps[static_cast<std::size_t>(shape.style->pen.cap)]);
			if (shape.style->pen.join != SVGLineJoin::miter)
				_writer.AddAttribute("stroke-linejoin", kJoins[static_cast<std::size_t>(shape.style->pen.join)]);
			else if (shape.style->pen.miterLimit != 4.0)
				_writer.AddAttribute("stroke-miterlimit", std::max(1.0, shape.style->pen.miterLimit));
		}
		_writer.AddPathData(plain).Add("/>\n");
		_changedCount += path.isWhole ? 0 : 1;
		_plain = std::move(plain);
		return {};
	}

	/// What is filtered is written in its own coordinates, in which the filter works.
	Result<void> AddApart(std::int32_t index) noexcept override
	{
		const Node& apart = _record.At(index);
		if (apart.end == index + 1)
			return {};
		const Node& filtered = _record.At(index + 1);
		const Matrix2d toResult = _place.toResult * apart.toView * filtered.toView;
		if (toResult != Matrix2d())
			_writer.Add("<g").AddMatrix("transform", toResult).Add(">\n");
		const ContentPlace place{InvertOrNot(filtered.toView), _place.toView * apart.toView};
		ORVAN_TRY(WriteContent(index + 1, place, GetOptionsIn(toResult)));
		if (toResult != Matrix2d())
			_writer.Add("</g>\n");
		return {};
	}

	Result<void> AddImage(std::int32_t index, const Matrix2d& toResult) noexcept override
	{
		const Node& node = _record.At(index);
		const Rectangle& box = _record.ShapeOf(node).outline.GetBounds();
		const Borrowed<SVGLinkInterface> link(node.element);
		if (!link || box.IsEmpty())
			return {};
		_writer.Add("<image");
		AddEffects();
		_writer.AddAttribute("x", box.left).AddAttribute("y", box.top);
		// A side that is not given follows from the image.
		if (node.element->HasAttribute(SVGImportAttribute::width))
			_writer.AddAttribute("width", box.GetWidth());
		if (node.element->HasAttribute(SVGImportAttribute::height))
			_writer.AddAttribute("height", box.GetHeight());
		const SVGPreserveAspectRatio rule = Borrowed<SVGImageElementInterface>(node.element)->GetPreserveAspectRatio();
		const auto align = static_cast<std::size_t>(rule.align);
		const bool isSlice = rule.meetOrSlice == SVGMeetOrSlice::slice;
		if ((align != 0 || isSlice) && align < std::size(kAligns))
			_writer.Add(" preserveAspectRatio=\"").Add(kAligns[align]).Add(isSlice ? " slice\"" : "\"");
		_writer.AddImageRendering(_record.ShapeOf(node).style->imageRendering).AddMatrix("transform", toResult);
		const String target = link->GetLink();
		_writer.AddEscaped("href", target.View()).Add("/>\n");
		return {};
	}

private:
	/// A node that has begun.
	struct Opened
	{
		int groupCount = 0;
		GroupEffects effects; ///< That the one path in it gets.
	};

	void OpenGroup(Opened& opened, const GroupEffects& effects) noexcept
	{
		_writer.Add("<g");
		AddGroupEffects(effects, _writer);
		_writer.Add(">\n");
		opened.groupCount++;
	}

	void AddEffects() noexcept
	{
		AddGroupEffects(_opened[_opened.GetCount() - 1].effects, _writer);
	}

	void AddPaint(std::string_view name, std::string_view opacityName, const RecordedPaint& paint,
				  std::int64_t gradient) noexcept
	{
		if (paint.kind == SVGNormalizedPaint::none)
		{
			_writer.AddAttribute(name, "none");
			return;
		}
		if (gradient != 0)
			_writer.AddReference(name, "p", gradient);
		else
			_writer.AddColor(name, paint.color);
		const double opacity = gradient != 0 ? paint.gradientOpacity : paint.opacity;
		if (opacity != 1.0)
			_writer.AddAttribute(opacityName, opacity);
	}

	/// Writes the elements of a filter, what goes into them first; the result is the first one's number.
	Result<std::int64_t> DefineFilter(const RecordedFilter& filter) noexcept
	{
		BaseArray<std::int64_t> pictures;
		for (const RecordedFilter::Step& step : filter.steps)
		{
			for (const RecordedFilter::Picture& picture : step.pictures)
			{
				ORVAN_TRY(pictures.Append(++_pictureCount));
				_writer.Add("<defs>\n<g").AddId("i", _pictureCount).Add(">\n");
				ORVAN_TRY(WriteContent(picture.content, {{}, _place.toView}, *_options));
				_writer.Add("</g>\n</defs>\n");
			}
		}
		const std::int64_t first = _filterCount + 1;
		const std::int64_t* picture = pictures.begin();
		for (const RecordedFilter::Step& step : filter.steps)
		{
			if (!step.isElement)
				continue;
			const std::string_view text(step.text.begin(), step.text.GetCount());
			std::size_t written = 0;
			_writer.Add("<filter").AddId("f", ++_filterCount);
			for (const RecordedFilter::Picture& place : step.pictures)
			{
				_writer.Add(text.substr(written, place.place - written)).AddName("i", *picture++);
				written = place.place;
			}
			_writer.Add(text.substr(written));
		}
		return first;
	}

	/// Writes what stands in a mask or tile, or is filtered, in coordinates of its own.
	Result<void> WriteContent(std::int32_t content, const ContentPlace& place,
							  const SVGNormalizeOptions& options) noexcept
	{
		const ContentPlace outerPlace = std::exchange(_place, place);
		const SVGNormalizeOptions* const outer = std::exchange(_options, &options);
		const Result<void> written =
			VisitContent(_record, content, place, options, _clips, StrokeNeeds::roundPens, *this);
		_place = outerPlace;
		_options = outer;
		if (!written.IsOk())
			return written.GetError();
		return {};
	}

	/// The options for what is written in coordinates from which `toResult` leads to those in force.
	SVGNormalizeOptions GetOptionsIn(const Matrix2d& toResult) const noexcept
	{
		SVGNormalizeOptions options = *_options;
		const double scale = drawing::GetMeanScale(toResult);
		for (double* const value : {&options.flattening, &options.strokeTolerance, &options.precision})
			*value /= scale > 0.0 ? scale : 1.0;
		options.grid = 0.0;
		return options;
	}

	/// Writes the masks of a node. They have the coordinates of the result.
	Result<MaskLayers> DefineMasks(std::int32_t index) noexcept
	{
		const Node& node = _record.At(index);
		MaskLayers masks{_maskCount + 1};
		for (std::int32_t at = node.mask; at >= 0; masks.count++)
		{
			masks.composite = MaskAt(at).composite; // The same in all.
			at = MaskAt(at).lower;
		}
		_maskCount += masks.count; // What stands in them may have masks, too.
		std::int64_t id = masks.first;
		for (std::int32_t at = node.mask; at >= 0; at = MaskAt(at).lower)
			ORVAN_TRY(DefineMask(node, MaskAt(at), id++));
		return masks;
	}

	const RecordedMask& MaskAt(std::int32_t index) const noexcept
	{
		return _record.masks[static_cast<std::size_t>(index)];
	}

	Result<void> DefineMask(const Node& node, const RecordedMask& mask, std::int64_t id) noexcept
	{
		const Matrix2d toResult = _place.toResult * node.toView;
		const Rectangle region = drawing::Transform(toResult, mask.region);
		_writer.Add("<mask").AddId("m", id).AddAttribute("maskUnits", "userSpaceOnUse");
		_writer.AddArea(region);
		if (mask.isAlpha)
			_writer.AddAttribute("mask-type", "alpha");
		if (mask.isLinear)
			_writer.AddAttribute("color-interpolation", "linearRGB");
		_writer.Add(">\n");
		ORVAN_TRY(WriteContent(mask.content, _place, *_options));
		_writer.Add("</mask>\n");
		return {};
	}

	/// Writes a pattern. Its tile has coordinates of its own.
	Result<std::int64_t> DefinePattern(std::int32_t index) noexcept
	{
		std::int64_t& id = _patternIds[static_cast<std::size_t>(index)];
		if (id != 0)
			return id;
		const RecordedPattern& pattern = _record.patterns[static_cast<std::size_t>(index)];
		const Matrix2d toResult = _place.toResult * pattern.toView;
		id = ++_serverCount;
		_writer.Add("<pattern").AddId("p", id).AddAttribute("patternUnits", "userSpaceOnUse");
		_writer.AddArea(pattern.tile);
		_writer.AddMatrix("patternTransform", toResult).Add(">\n");
		const std::int64_t written = id;
		ORVAN_TRY(WriteContent(pattern.content, {}, GetOptionsIn(toResult)));
		_writer.Add("</pattern>\n");
		return written;
	}

	/// Writes the gradient or pattern of a paint; 0 where it has none.
	Result<std::int64_t> DefineServer(const RecordedPaint& paint, const Matrix2d& nodeResult) noexcept
	{
		if (paint.pattern >= 0)
			return DefinePattern(paint.pattern);
		if (paint.gradient < 0)
			return std::int64_t{0};
		return _gradients.Write(_record.gradients[static_cast<std::size_t>(paint.gradient)], nodeResult, _writer,
								_serverCount);
	}

	/// Writes a region as a clip path, what cuts it off in turn first.
	Result<std::int64_t> DefineRegion(std::int32_t index) noexcept
	{
		if (const std::int64_t known = _regionIds[static_cast<std::size_t>(index)]; known != 0)
			return known;
		const ClipRegion& region = _record.RegionAt(index);
		const std::int64_t around = region.next >= 0 ? ORVAN_TRY(DefineRegion(region.next)) : 0;
		BaseArray<std::int64_t> inner;
		for (const ClipShape& shape : region.shapes)
			ORVAN_TRY(inner.Append(shape.clip >= 0 ? ORVAN_TRY(DefineRegion(shape.clip)) : 0));
		const std::int64_t id = BeginClipPath(around);
		for (std::size_t i = 0; i < region.shapes.GetCount(); i++)
		{
			const ClipShape& shape = region.shapes[i];
			ORVAN_TRY(AddClipShape(shape.outline, _place.toResult * shape.toView, shape.rule, inner[i]));
		}
		_writer.Add("</clipPath>\n");
		_regionIds[static_cast<std::size_t>(index)] = id;
		return id;
	}

	Result<std::int64_t> DefineViewport(const Node& node, const NodeEdges& edges) noexcept
	{
		return DefineRectangle(edges.viewport, _place.toResult * node.toView);
	}

	Result<std::int64_t> DefineRectangle(const Rectangle& area, const Matrix2d& toResult) noexcept
	{
		const std::int64_t id = BeginClipPath(0);
		Outline rectangle;
		if (!area.IsEmpty())
			ORVAN_TRY(rectangle.AddRectangle(area, 0.0, 0.0));
		ORVAN_TRY(AddClipShape(rectangle, toResult, SVGFillRule::nonzero, 0));
		_writer.Add("</clipPath>\n");
		return id;
	}

	std::int64_t BeginClipPath(std::int64_t around) noexcept
	{
		_writer.Add("<clipPath").AddId("c", ++_clipCount);
		AddGroupEffects({1.0, around}, _writer);
		_writer.Add(">");
		return _clipCount;
	}

	Result<void> AddClipShape(const Outline& outline, const Matrix2d& toResult, SVGFillRule rule,
							  std::int64_t clip) noexcept
	{
		_plain.commands.Clear();
		_plain.points.Clear();
		ORVAN_TRY(AppendPlain(outline, toResult, *_options, _plain));
		if (_plain.commands.IsEmpty())
			return {};
		_writer.Add("<path");
		AddGroupEffects({1.0, clip}, _writer);
		if (rule == SVGFillRule::evenodd)
			_writer.AddAttribute("clip-rule", "evenodd");
		_writer.AddPathData(_plain).Add("/>");
		return {};
	}

	const Record& _record;
	const SVGNormalizeOptions* _options;
	const SVGNormalizedClips _clips;
	ContentPlace _place;
	SvgWriter _writer;
	GradientWriter _gradients;
	PlainPath _plain;
	BaseArray<Opened> _opened;
	BaseArray<std::int64_t> _regionIds;  ///< By region; 0 for those that are not written yet.
	BaseArray<std::int64_t> _patternIds; ///< Likewise by pattern.
	bool _hasBlending = false;           ///< Only then it matters what is a picture of its own.
	std::int64_t _clipCount = 0;
	std::int64_t _serverCount = 0;
	std::int64_t _maskCount = 0;
	std::int64_t _filterCount = 0;
	std::int64_t _pictureCount = 0;
	std::int64_t _changedCount = 0;
};

} // namespace

Result<BaseArray<char>> WriteNormalized(const Record& record, const SVGNormalizeOptions& options,
										SVGNormalizedClips clips) noexcept
{
	return DocumentSink(record, options, clips).Run();
}

} // namespace orvan::geometry
