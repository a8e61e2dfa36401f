// SPDX-License-Identifier: MIT
#include "clip_shapes.h"

#include "shapes.h"
#include "strokes.h"
#include "svg_elements.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvan::drawing
{
namespace
{

/// The box that a shape's lengths refer to.
Result<Rectangle> GetReferenceBox(SVGReferenceBox reference, const Frame& frame, Extent& extent) noexcept
{
	if (reference == SVGReferenceBox::viewBox)
		return Rectangle{0.0, 0.0, frame.place.viewport.width, frame.place.viewport.height};
	const bool isStroked = reference == SVGReferenceBox::strokeBox;
	Rectangle box;
	if (const ShapeKind kind = GetShapeKind(frame.element); isStroked && kind != ShapeKind::none)
		box = GetStrokeBox(frame.place, ORVAN_TRY(GetOutline(kind, frame.element, frame)), {});
	else
		box = isStroked ? ORVAN_TRY(extent.GetStrokeBox()) : ORVAN_TRY(extent.GetBox());
	if (!box.IsFinite())
		box = {0.0, 0.0, 0.0, 0.0};
	if (isStroked && Borrowed<SVGTextElementInterface>(frame.element) && HasStroke(frame.place))
		box = box.Grow(GetStrokeWidth(frame.place) / 2.0);
	return box;
}

/// Makes one shape in its box.
class ClipOutline
{
public:
	ClipOutline(const SVGClipShape& shape, const Frame& frame, const Rectangle& box) noexcept
		: _shape(shape), _frame(frame), _box(box), _size{box.GetWidth(), box.GetHeight()}
	{
	}

	Result<Outline> Make() const noexcept
	{
		// The numbers of lengths that there must be at least.
		static constexpr std::array<std::size_t, 8> kLeast = {0, 4, 5, 6, 2, 0, 4, 4};
		const auto type = static_cast<std::size_t>(_shape.type);
		Outline outline;
		if (type >= kLeast.size() || _shape.lengths.GetCount() < kLeast[type])
			return outline;
		switch (_shape.type)
		{
		case SVGClipShapeType::box:
			ORVAN_TRY(outline.AddRectangle(_box, 0.0, 0.0));
			break;
		case SVGClipShapeType::inset:
			ORVAN_TRY(AddRectangle(
				outline, {_box.left + Along(3), _box.top + Across(0), _box.right - Along(1), _box.bottom - Across(2)}));
			break;
		case SVGClipShapeType::rect:
			ORVAN_TRY(AddRectangle(
				outline, {_box.left + Along(3), _box.top + Across(0), _box.left + Along(1), _box.top + Across(2)}));
			break;
		case SVGClipShapeType::xywh:
			ORVAN_TRY(AddRectangle(outline, {_box.left + Along(0), _box.top + Across(1),
											 _box.left + Along(0) + Along(2), _box.top + Across(1) + Across(3)}));
			break;
		case SVGClipShapeType::circle:
		case SVGClipShapeType::ellipse:
			ORVAN_TRY(AddRound(outline));
			break;
		case SVGClipShapeType::polygon:
			ORVAN_TRY(AddPolygon(outline));
			break;
		case SVGClipShapeType::path:
		{
			BaseArray<SVGPathCommand> commands;
			ORVAN_TRY(commands.CopyFrom(_shape.path));
			ORVAN_TRY(outline.Append(Outline(std::move(commands)), Translation(_box.left, _box.top)));
			break;
		}
		}
		return outline;
	}

private:
	double Resolve(std::size_t index, double whole) const noexcept
	{
		const SVGLength& length = _shape.lengths[index];
		return length.unit == SVGLengthUnit::percent ? length.value * whole : _frame.Resolve(length, Axis::other);
	}

	double Along(std::size_t index) const noexcept
	{
		return Resolve(index, _size.x);
	}

	double Across(std::size_t index) const noexcept
	{
		return Resolve(index, _size.y);
	}

	/// A corner that is cut off by an ellipse's quarter, from where the outline is already.
	static Result<void> AddCorner(Outline& outline, const Vector2d& from, const Vector2d& corner,
								  const Vector2d& to) noexcept
	{
		constexpr double kQuarter = 0.5522847498;
		const auto towards = [&corner](const Vector2d& end)
		{
			return Vector2d{end.x + (corner.x - end.x) * kQuarter, end.y + (corner.y - end.y) * kQuarter};
		};
		ORVAN_TRY(outline.LineTo(from));
		return outline.CurveTo(towards(from), towards(to), to);
	}

	Result<void> AddRectangle(Outline& outline, const Rectangle& rectangle) const noexcept
	{
		const double width = rectangle.GetWidth();
		const double height = rectangle.GetHeight();
		if (!(width > 0.0 && height > 0.0))
			return {};
		if (_shape.lengths.GetCount() < 12)
			return outline.AddRectangle(rectangle, 0.0, 0.0);
		std::array<Vector2d, 4> radii;
		for (std::size_t i = 0; i < radii.size(); i++)
			radii[i] = {Along(4 + i), Across(8 + i)};
		// Neighbours that overlap are made smaller, all in one proportion.
		double scale = 1.0;
		const auto fit = [&](double side, double both)
		{
			if (both > side)
				scale = std::min(scale, side / both);
		};
		fit(width, radii[0].x + radii[1].x);
		fit(width, radii[2].x + radii[3].x);
		fit(height, radii[0].y + radii[3].y);
		fit(height, radii[1].y + radii[2].y);
		for (Vector2d& radius : radii)
			radius = {radius.x * scale, radius.y * scale};
		const auto& [left, top, right, bottom] = rectangle;
		ORVAN_TRY(outline.MoveTo({left + radii[0].x, top}));
		ORVAN_TRY(AddCorner(outline, {right - radii[1].x, top}, {right, top}, {right, top + radii[1].y}));
		ORVAN_TRY(AddCorner(outline, {right, bottom - radii[2].y}, {right, bottom}, {right - radii[2].x, bottom}));
		ORVAN_TRY(AddCorner(outline, {left + radii[3].x, bottom}, {left, bottom}, {left, bottom - radii[3].y}));
		ORVAN_TRY(AddCorner(outline, {left, top + radii[0].y}, {left, top}, {left + radii[0].x, top}));
		return outline.Close();
	}

	/// How far it is from the centre to a side on one axis, or, for the one radius of a circle, on both.
	static double GetSide(bool isFarthest, std::initializer_list<double> distances) noexcept
	{
		return isFarthest ? std::max(distances) : std::min(distances);
	}

	Result<void> AddRound(Outline& outline) const noexcept
	{
		const bool isCircle = _shape.type == SVGClipShapeType::circle;
		const std::size_t place = isCircle ? 1 : 2;
		if (_shape.lengths.GetCount() < place + 4)
			return {};
		const Vector2d center{Along(place) + Along(place + 1), Across(place + 2) + Across(place + 3)};
		const double left = std::abs(center.x);
		const double right = std::abs(_size.x - center.x);
		const double top = std::abs(center.y);
		const double bottom = std::abs(_size.y - center.y);
		const auto getRadius = [&](std::size_t index, double whole, bool isAlong)
		{
			const SVGLength& length = _shape.lengths[index];
			if (length.value >= 0.0)
				return Resolve(index, whole);
			const bool isFarthest = length.value == SVGClipShape::kFarthestSide;
			return isCircle  ? GetSide(isFarthest, {left, right, top, bottom})
				   : isAlong ? GetSide(isFarthest, {left, right})
							 : GetSide(isFarthest, {top, bottom});
		};
		const double diagonal = std::hypot(_size.x, _size.y) / std::sqrt(2.0);
		const double rx = getRadius(0, isCircle ? diagonal : _size.x, true);
		const double ry = isCircle ? rx : getRadius(1, _size.y, false);
		if (!(rx > 0.0 && ry > 0.0))
			return {};
		return outline.AddEllipse({_box.left + center.x, _box.top + center.y}, rx, ry);
	}

	Result<void> AddPolygon(Outline& outline) const noexcept
	{
		for (std::size_t i = 0; i + 1 < _shape.lengths.GetCount(); i += 2)
		{
			const Vector2d point{_box.left + Along(i), _box.top + Across(i + 1)};
			ORVAN_TRY(i == 0 ? outline.MoveTo(point) : outline.LineTo(point));
		}
		return outline.Close();
	}

	const SVGClipShape& _shape;
	const Frame& _frame;
	const Rectangle& _box;
	Vector2d _size;
};

} // namespace

Result<Outline> GetClipOutline(const SVGClipShape& shape, const Frame& frame, Extent& extent) noexcept
{
	const Rectangle box = ORVAN_TRY(GetReferenceBox(shape.box, frame, extent));
	return ClipOutline(shape, frame, box).Make();
}

} // namespace orvan::drawing
