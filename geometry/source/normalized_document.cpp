// SPDX-License-Identifier: MIT
#include "normalized_document.h"

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
		: _record(record), _options(options), _clips(clips), _viewResult(GetViewResult(record, options))
	{
	}

	Result<BaseArray<char>> Run() noexcept
	{
		const Vector2d size = _viewResult.Apply(_record.viewSize);
		_writer.Add("<svg xmlns=\"http://www.w3.org/2000/svg\"");
		_writer.AddAttribute("width", size.x).AddAttribute("height", size.y);
		_writer.Add(" viewBox=\"0 0 ").AddPoint(size).Add("\">\n");
		ORVAN_TRY(_regionIds.Resize(_record.regions.GetCount()));
		ORVAN_TRY(VisitNormalized(_record, _options, _clips, StrokeNeeds::roundPens, *this));
		_writer.Add("</svg>\n");
		if (!_writer.isGood)
			return OutOfMemoryError();
		if (_changedCount > 0)
			WarningOutput("Clip paths, masks, filters, blending or patterns of @ paths are left aside.", _changedCount);
		return std::move(_writer.text);
	}

	/// What changes a node as a whole goes to a group, or to the path where there is only one.
	Result<void> Begin(std::int32_t index, bool isOne) noexcept override
	{
		const Node& node = _record.At(index);
		const bool keepsClips = _clips == SVGNormalizedClips::kept;
		const NodeEdges* const edges = _record.EdgesOf(node);
		std::int64_t clip = 0;
		if (keepsClips && node.clip >= 0)
			clip = ORVAN_TRY(DefineRegion(node.clip));
		const double opacity = std::clamp(node.opacity, 0.0, 1.0);
		Opened opened;
		if (isOne)
			opened = {0, opacity, clip};
		else if (clip != 0 || opacity != 1.0)
			OpenGroup(opened, opacity, clip);
		// The outermost viewport is that of the document that is written.
		if (keepsClips && edges != nullptr && edges->hasViewport && index > 0)
			OpenGroup(opened, 1.0, ORVAN_TRY(DefineViewport(node, *edges)));
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
		_plain.commands.Clear();
		_plain.points.Clear();
		ORVAN_TRY(AppendPlain(path.outline, path.toResult, _options, _plain));
		if (_plain.commands.IsEmpty())
			return {};
		const std::int64_t fill = ORVAN_TRY(DefineGradient(path.fill, path.nodeResult));
		const std::int64_t stroke = ORVAN_TRY(DefineGradient(path.stroke, path.nodeResult));
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
		_writer.AddPathData(_plain).Add("/>\n");
		const bool isPainted = !IsPattern(path.fill) && !IsPattern(path.stroke);
		_changedCount += path.isWhole && isPainted ? 0 : 1;
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
		if (box.GetWidth() > 0.0)
			_writer.AddAttribute("width", box.GetWidth());
		if (box.GetHeight() > 0.0)
			_writer.AddAttribute("height", box.GetHeight());
		const SVGPreserveAspectRatio rule = Borrowed<SVGImageElementInterface>(node.element)->GetPreserveAspectRatio();
		const auto align = static_cast<std::size_t>(rule.align);
		const bool isSlice = rule.meetOrSlice == SVGMeetOrSlice::slice;
		if ((align != 0 || isSlice) && align < std::size(kAligns))
			_writer.Add(" preserveAspectRatio=\"").Add(kAligns[align]).Add(isSlice ? " slice\"" : "\"");
		_writer.AddMatrix("transform", toResult);
		const String target = link->GetLink();
		_writer.AddEscaped("href", target.View()).Add("/>\n");
		return {};
	}

private:
	/// A node that has begun.
	struct Opened
	{
		int groupCount = 0;
		double opacity = 1.0;  ///< That the one path in it gets.
		std::int64_t clip = 0; ///< Likewise; 0 for none.
	};

	void OpenGroup(Opened& opened, double opacity, std::int64_t clip) noexcept
	{
		_writer.Add("<g");
		AddEffects(opacity, clip);
		_writer.Add(">\n");
		opened.groupCount++;
	}

	void AddEffects() noexcept
	{
		const Opened& opened = _opened[_opened.GetCount() - 1];
		AddEffects(opened.opacity, opened.clip);
	}

	void AddEffects(double opacity, std::int64_t clip) noexcept
	{
		if (opacity != 1.0)
			_writer.AddAttribute("opacity", opacity);
		if (clip != 0)
			_writer.AddReference("clip-path", "c", clip);
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

	static bool IsPattern(const RecordedPaint& paint) noexcept
	{
		return paint.kind == SVGNormalizedPaint::server && paint.gradient < 0;
	}

	/// Writes the gradient of a paint; 0 where it has none.
	Result<std::int64_t> DefineGradient(const RecordedPaint& paint, const Matrix2d& nodeResult) noexcept
	{
		if (paint.gradient < 0)
			return std::int64_t{0};
		constexpr std::string_view kSpreads[] = {"", "reflect", "repeat"};
		const RecordedGradient& gradient = _record.gradients[static_cast<std::size_t>(paint.gradient)];
		const drawing::GradientGeometry& at = gradient.geometry;
		const std::string_view tag = gradient.isRadial ? "radialGradient" : "linearGradient";
		_writer.Add("<").Add(tag).AddId("p", ++_gradientCount).AddAttribute("gradientUnits", "userSpaceOnUse");
		if (gradient.isRadial)
		{
			_writer.AddAttribute("cx", at.to.x).AddAttribute("cy", at.to.y).AddAttribute("r", at.toRadius);
			if (at.from != at.to)
				_writer.AddAttribute("fx", at.from.x).AddAttribute("fy", at.from.y);
			if (at.fromRadius != 0.0)
				_writer.AddAttribute("fr", at.fromRadius);
		}
		else
		{
			_writer.AddAttribute("x1", at.from.x).AddAttribute("y1", at.from.y);
			_writer.AddAttribute("x2", at.to.x).AddAttribute("y2", at.to.y);
		}
		if (gradient.spread == SVGSpreadMethod::reflect || gradient.spread == SVGSpreadMethod::repeat)
			_writer.AddAttribute("spreadMethod", kSpreads[static_cast<std::size_t>(gradient.spread)]);
		_writer.AddMatrix("gradientTransform", nodeResult * gradient.toNode).Add(">");
		for (const drawing::Stop& stop : gradient.stops)
		{
			_writer.Add("<stop").AddAttribute("offset", stop.offset).AddColor("stop-color", stop.color);
			if (stop.alpha != 1.0)
				_writer.AddAttribute("stop-opacity", stop.alpha);
			_writer.Add("/>");
		}
		_writer.Add("</").Add(tag).Add(">\n");
		return _gradientCount;
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
			ORVAN_TRY(AddClipShape(shape.outline, _viewResult * shape.toView, shape.rule, inner[i]));
		}
		_writer.Add("</clipPath>\n");
		_regionIds[static_cast<std::size_t>(index)] = id;
		return id;
	}

	Result<std::int64_t> DefineViewport(const Node& node, const NodeEdges& edges) noexcept
	{
		const std::int64_t id = BeginClipPath(0);
		Outline rectangle;
		if (!edges.viewport.IsEmpty())
			ORVAN_TRY(rectangle.AddRectangle(edges.viewport, 0.0, 0.0));
		ORVAN_TRY(AddClipShape(rectangle, _viewResult * node.toView, SVGFillRule::nonzero, 0));
		_writer.Add("</clipPath>\n");
		return id;
	}

	std::int64_t BeginClipPath(std::int64_t around) noexcept
	{
		_writer.Add("<clipPath").AddId("c", ++_clipCount);
		AddEffects(1.0, around);
		_writer.Add(">");
		return _clipCount;
	}

	Result<void> AddClipShape(const Outline& outline, const Matrix2d& toResult, SVGFillRule rule,
							  std::int64_t clip) noexcept
	{
		_plain.commands.Clear();
		_plain.points.Clear();
		ORVAN_TRY(AppendPlain(outline, toResult, _options, _plain));
		if (_plain.commands.IsEmpty())
			return {};
		_writer.Add("<path");
		AddEffects(1.0, clip);
		if (rule == SVGFillRule::evenodd)
			_writer.AddAttribute("clip-rule", "evenodd");
		_writer.AddPathData(_plain).Add("/>");
		return {};
	}

	const Record& _record;
	const SVGNormalizeOptions& _options;
	const SVGNormalizedClips _clips;
	const Matrix2d _viewResult;
	SvgWriter _writer;
	PlainPath _plain;
	BaseArray<Opened> _opened;
	BaseArray<std::int64_t> _regionIds; ///< By region; 0 for those that are not written yet.
	std::int64_t _clipCount = 0;
	std::int64_t _gradientCount = 0;
	std::int64_t _changedCount = 0;
};

} // namespace

Result<BaseArray<char>> WriteNormalized(const Record& record, const SVGNormalizeOptions& options,
										SVGNormalizedClips clips) noexcept
{
	return DocumentSink(record, options, clips).Run();
}

} // namespace orvan::geometry
