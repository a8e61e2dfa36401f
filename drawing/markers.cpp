// SPDX-License-Identifier: MIT
#include "markers.h"

#include "references.h"
#include "shapes.h"
#include "strokes.h"
#include "svg_complete.h"
#include "walk.h"

#include <numbers>

namespace orvan::drawing
{
namespace
{

constexpr double kDegrees = std::numbers::pi / 180.0;

/// A vertex of an outline, with the directions of the lines that meet there; zero where there is none.
struct Vertex
{
	Vector2d point;
	Vector2d in;
	Vector2d out;
};

bool IsZero(const Vector2d& v) noexcept
{
	return v.x == 0.0 && v.y == 0.0;
}

/// The first of some directions that leads anywhere.
Vector2d FirstDirection(const Vector2d& a, const Vector2d& b, const Vector2d& c) noexcept
{
	return !IsZero(a) ? a : !IsZero(b) ? b : c;
}

/// The vertices in the order of the path. A subpath that is closed ends with a vertex at its start.
Result<BaseArray<Vertex>> GetVertices(const Outline& outline) noexcept
{
	BaseArray<Vertex> vertices;
	std::size_t start = 0; // Of the subpath.
	Vector2d current;
	const auto leave = [&](const Vector2d& direction)
	{
		if (!vertices.IsEmpty() && !IsZero(direction))
			vertices[vertices.GetCount() - 1].out = direction;
	};
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		const auto& [c1, c2, end] = command.points;
		switch (command.type)
		{
		case SVGPathCommandType::move:
			start = vertices.GetCount();
			ORVAN_TRY(vertices.Append({end, {}, {}}));
			current = end;
			break;
		case SVGPathCommandType::line:
			leave(end - current);
			ORVAN_TRY(vertices.Append({end, end - current, {}}));
			current = end;
			break;
		case SVGPathCommandType::cubic:
			leave(FirstDirection(c1 - current, c2 - current, end - current));
			ORVAN_TRY(vertices.Append({end, FirstDirection(end - c2, end - c1, end - current), {}}));
			current = end;
			break;
		case SVGPathCommandType::close:
			if (start < vertices.GetCount())
			{
				const Vertex first = vertices[start];
				const Vector2d back = first.point - current;
				leave(back);
				const Vector2d in = IsZero(back) ? vertices[vertices.GetCount() - 1].in : back;
				vertices[start].in = in;
				ORVAN_TRY(vertices.Append({first.point, in, first.out}));
				current = first.point;
			}
			break;
		}
	}
	return vertices;
}

double AngleOf(const Vector2d& direction) noexcept
{
	return std::atan2(direction.y, direction.x);
}

/// The direction of the path at a vertex: halfway between those of the two lines that meet there.
double GetAngle(const Vertex& vertex) noexcept
{
	if (IsZero(vertex.in))
		return IsZero(vertex.out) ? 0.0 : AngleOf(vertex.out);
	if (IsZero(vertex.out))
		return AngleOf(vertex.in);
	const double in = AngleOf(vertex.in);
	double out = AngleOf(vertex.out);
	if (out - in > std::numbers::pi)
		out -= 2.0 * std::numbers::pi;
	else if (in - out > std::numbers::pi)
		out += 2.0 * std::numbers::pi;
	return (in + out) / 2.0;
}

/// One marker, found once for all vertices that show it.
class Marker
{
public:
	static Result<Marker> Find(Scene& scene, const String* id, const Frame& frame) noexcept
	{
		Marker marker;
		marker._element = ORVAN_TRY(
			FindEffect<SVGMarkerElementInterface>(scene, id != nullptr && !id->IsEmpty() ? id : nullptr, frame));
		return marker;
	}

	explicit operator bool() const noexcept
	{
		return static_cast<bool>(_element);
	}

	Result<void> Draw(Scene& scene, const Frame& shape, const ContextPaints& context, const Vertex& vertex,
					  bool isStart, Sink& sink) const noexcept
	{
		ObjectBase* const element = _element.GetObject();
		const Borrowed<SVGMarkerElementInterface> marker(element);
		Place place = ORVAN_TRY(GetContentPlace(scene, element, shape));
		Frame frame(element, place, &shape, scene.limits);
		if (!frame.canDraw)
			return {};
		const Rectangle area{0.0, 0.0, frame.Resolve(marker->GetMarkerWidth(), Axis::horizontal),
							 frame.Resolve(marker->GetMarkerHeight(), Axis::vertical)};
		const Borrowed<SVGFitToViewboxInterface> fitting(element);
		const auto fit = FitViewbox(area, fitting->GetViewbox(), fitting->GetPreserveAspectRatio());
		if (!fit)
			return {};
		// The frame's transform is not that of a marker: it has none of its own.
		place.viewport.Resize(fit->size);
		const Vector2d reference = fit->transform.Apply(
			{ToUserUnits(marker->GetRefX(), Axis::horizontal, place.viewport, frame.place.style.fontSize),
			 ToUserUnits(marker->GetRefY(), Axis::vertical, place.viewport, frame.place.style.fontSize)});
		const SVGOrient orient = marker->GetOrient();
		double angle = orient.type == SVGOrientType::angle ? orient.angle * kDegrees : GetAngle(vertex);
		if (orient.type == SVGOrientType::autoStartReverse && isStart)
			angle += std::numbers::pi;
		const double scale =
			marker->GetMarkerUnits() == SVGMarkerUnits::strokeWidth ? GetStrokeWidth(shape.place) : 1.0;
		const Matrix2d turn{{}, {std::cos(angle), std::sin(angle)}, {-std::sin(angle), std::cos(angle)}};
		frame.place.transform = place.transform * Translation(vertex.point.x, vertex.point.y) * turn *
								Scaling(scale, scale) * Translation(-reference.x, -reference.y);
		frame.place.viewport = place.viewport;
		frame.place.context = &context;
		if (!IsInvertible(frame.place.transform))
			return {};
		Place inside = frame.place;
		inside.transform = inside.transform * fit->transform;
		const auto draw = [&](Sink& inner) noexcept
		{
			return Walk(scene, inner).DrawChildren(element, inside, frame);
		};
		const auto drawClipped = [&](Sink& inner) noexcept
		{
			return IsClippedToViewport(frame) ? inner.DrawClipped(frame.place, area, draw) : draw(inner);
		};
		return sink.DrawGroup(frame, drawClipped);
	}

private:
	SVGElementRef _element;
};

} // namespace

bool HasMarkers(const Frame& frame) noexcept
{
	const Style& style = frame.place.style;
	if (style.markerStart == nullptr && style.markerMid == nullptr && style.markerEnd == nullptr)
		return false;
	const ShapeKind kind = GetShapeKind(frame.element);
	return kind == ShapeKind::path || kind == ShapeKind::line;
}

Result<void> DrawMarkers(Scene& scene, const Frame& frame, const Outline& outline, Sink& sink) noexcept
{
	if (!HasMarkers(frame))
		return {};
	const Style& style = frame.place.style;
	const Marker start = ORVAN_TRY(Marker::Find(scene, style.markerStart, frame));
	const Marker middle = ORVAN_TRY(Marker::Find(scene, style.markerMid, frame));
	const Marker end = ORVAN_TRY(Marker::Find(scene, style.markerEnd, frame));
	if (!start && !middle && !end)
		return {};
	const BaseArray<Vertex> vertices = ORVAN_TRY(GetVertices(outline));
	const ContextPaints context{frame, outline};
	const auto draw = [&](const Marker& marker, const Vertex& vertex, bool isStart) noexcept
	{
		return marker ? marker.Draw(scene, frame, context, vertex, isStart, sink) : Result<void>();
	};
	const std::size_t count = vertices.GetCount();
	if (count == 0)
		return {};
	ORVAN_TRY(draw(start, vertices[0], true));
	for (std::size_t i = 1; i + 1 < count; i++)
		ORVAN_TRY(draw(middle, vertices[i], false));
	return draw(end, vertices[count - 1], false);
}

} // namespace orvan::drawing
