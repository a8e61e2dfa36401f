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

struct Cubic
{
	Vector2d start;
	Vector2d c1;
	Vector2d c2;
	Vector2d end;
};

/// True when two cubics are parts of one elliptical arc as the import of documents divides them: into equal angles, and
/// to the last digits. Curves that somebody wrote down come near to that, but not as near.
bool AreOneArc(const Cubic& a, const Cubic& b) noexcept
{
	const auto measure = [](const Vector2d& v)
	{
		return std::abs(v.x) + std::abs(v.y);
	};
	// The ellipse is a circle seen at an angle, and the second part the first one mirrored where they meet: what is
	// across from each other there lies along the tangent, in proportions that the angle gives.
	const Vector2d tangent = b.c1 - a.c2;
	const Vector2d inner = b.c2 - a.c1;
	const Vector2d outer = b.end - a.start;
	const double square = tangent.x * tangent.x + tangent.y * tangent.y;
	if (square == 0.0)
		return false;
	const double tolerance = 1e-10 * (measure(a.end) + measure(tangent));
	const auto alongTangent = [&](const Vector2d& v)
	{
		return (v.x * tangent.x + v.y * tangent.y) / square;
	};
	const auto isAlong = [&](const Vector2d& v, double ratio)
	{
		return measure({v.x - tangent.x * ratio, v.y - tangent.y * ratio}) <= tolerance;
	};
	const double outerRatio = alongTangent(outer);
	const double innerRatio = alongTangent(inner);
	const double cosine = outerRatio - innerRatio;
	constexpr double kNearlyOne = 0.9; // Arcs are divided into larger angles.
	if (!(std::abs(cosine) < kNearlyOne) || !isAlong(inner, innerRatio) || !isAlong(a.end - a.c2, 0.5))
		return false;
	const double angle = std::acos(cosine);
	return isAlong(outer, std::sin(angle) / (4.0 / 3.0 * std::tan(angle / 4.0)));
}

/// Collects vertices in the order of the path. A subpath that is closed ends with a vertex at its start.
class VertexFinder
{
public:
	Result<void> MoveTo(const Vector2d& point) noexcept
	{
		_start = _vertices.GetCount();
		_isAfterCubic = false;
		_current = point;
		return _vertices.Append({point, {}, {}});
	}

	Result<void> LineTo(const Vector2d& point) noexcept
	{
		const Vector2d direction = point - _current;
		_isAfterCubic = false;
		Leave(direction);
		return Arrive(point, direction);
	}

	Result<void> CurveTo(const Vector2d& c1, const Vector2d& c2, const Vector2d& end) noexcept
	{
		const Cubic cubic{_current, c1, c2, end};
		const Vector2d in = FirstDirection(end - c2, end - c1, end - _current);
		const bool isContinued = _isAfterCubic && AreOneArc(_last, cubic);
		_isAfterCubic = true;
		_last = cubic;
		if (isContinued && !IsFullCircle(end))
		{
			_parts++;
			if (_parts == kHalfCircle)
				_half = {end, in, in};
			_vertices[_vertices.GetCount() - 1] = {end, in, {}};
			_current = end;
			return {};
		}
		if (isContinued)
		{
			// No arc goes all the way round: what does is a circle made of two halves.
			_vertices[_vertices.GetCount() - 1] = _half;
			_isAfterCubic = false;
			return Arrive(end, in);
		}
		_parts = 1;
		_arcStart = _current;
		Leave(FirstDirection(c1 - _current, c2 - _current, end - _current));
		return Arrive(end, in);
	}

	Result<void> Close() noexcept
	{
		_isAfterCubic = false;
		if (_start >= _vertices.GetCount())
			return {};
		const Vertex first = _vertices[_start];
		const Vector2d back = first.point - _current;
		Leave(back);
		ORVAN_TRY(Arrive(first.point, back));
		Vertex& last = _vertices[_vertices.GetCount() - 1];
		last.out = first.out;
		_vertices[_start].in = last.in;
		return {};
	}

	BaseArray<Vertex> Take() noexcept
	{
		return std::move(_vertices);
	}

private:
	static constexpr int kHalfCircle = 2; ///< Parts of an arc.
	static constexpr int kCircle = 4;

	/// True when a part that continues an arc leads back to where the arc began.
	bool IsFullCircle(const Vector2d& end) const noexcept
	{
		const double size = std::abs(_half.point.x - _arcStart.x) + std::abs(_half.point.y - _arcStart.y);
		const Vector2d gap = end - _arcStart;
		return _parts + 1 == kCircle && std::abs(gap.x) + std::abs(gap.y) <= 1e-9 * size;
	}

	void Leave(const Vector2d& direction) noexcept
	{
		if (!_vertices.IsEmpty() && !IsZero(direction))
			_vertices[_vertices.GetCount() - 1].out = direction;
	}

	/// A line without length has the direction of the one before.
	Result<void> Arrive(const Vector2d& point, const Vector2d& direction) noexcept
	{
		const bool hasDirection = !IsZero(direction) || _vertices.IsEmpty();
		const Vector2d in = hasDirection ? direction : _vertices[_vertices.GetCount() - 1].in;
		_current = point;
		return _vertices.Append({point, in, {}});
	}

	BaseArray<Vertex> _vertices;
	std::size_t _start = 0; ///< Of the subpath.
	Vector2d _current;
	Cubic _last;
	bool _isAfterCubic = false; ///< `_last` has led to the current point.
	int _parts = 0;             ///< How many cubics the arc at hand has had.
	Vector2d _arcStart;
	Vertex _half; ///< Where half a circle of it ended.
};

Result<BaseArray<Vertex>> GetVertices(const Outline& outline) noexcept
{
	VertexFinder finder;
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		const auto& [c1, c2, end] = command.points;
		switch (command.type)
		{
		case SVGPathCommandType::move:
			ORVAN_TRY(finder.MoveTo(end));
			break;
		case SVGPathCommandType::line:
			ORVAN_TRY(finder.LineTo(end));
			break;
		case SVGPathCommandType::cubic:
			ORVAN_TRY(finder.CurveTo(c1, c2, end));
			break;
		case SVGPathCommandType::close:
			ORVAN_TRY(finder.Close());
			break;
		}
	}
	return finder.Take();
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
	// Where the path turns right back, both sides are halfway; browsers take this one.
	if (std::abs(std::abs(out - in) - std::numbers::pi) < 1e-9)
		return in - std::numbers::pi / 2.0;
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
		// The frame's transform is not that of a marker: it has none of its own. Its percentages are those of where it
		// stands, but for those of the point that is put onto the vertex: they are of what the marker shows.
		const SVGViewbox viewbox = fitting->GetViewbox();
		const auto resolve = [&](const SVGLength& length, Axis axis, const SVGLength& start, double size)
		{
			return length.unit == SVGLengthUnit::percent ? (viewbox.isDefault ? 0.0 : start.value) + length.value * size
														 : ToUserUnits(length, axis, place.viewport, frame.place.style);
		};
		const Vector2d reference =
			fit->transform.Apply({resolve(marker->GetRefX(), Axis::horizontal, viewbox.x, fit->size.x),
								  resolve(marker->GetRefY(), Axis::vertical, viewbox.y, fit->size.y)});
		const SVGOrient orient = marker->GetOrient();
		double angle = orient.type == SVGOrientType::angle ? orient.angle * kDegrees : GetAngle(vertex);
		if (orient.type == SVGOrientType::autoStartReverse && isStart)
			angle += std::numbers::pi;
		double scale = marker->GetMarkerUnits() == SVGMarkerUnits::strokeWidth ? GetStrokeWidth(shape.place) : 1.0;
		if (IsStrokeUnscaled(shape))
			scale *= scene.unit / GetMeanScale(shape.place.transform);
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
