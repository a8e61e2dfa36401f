// SPDX-License-Identifier: MIT
#include "shapes.h"

namespace orvan::drawing
{
namespace
{

Result<Outline> GetPath(ObjectBase* element, const Frame&) noexcept
{
	return Outline(ORVAN_TRY(Borrowed<SVGPathElementInterface>(element)->GetPath()));
}

/// The radii of a rectangle's corners or of an ellipse. Each is measured by its own side of the viewport; one that is
/// not given, or makes no sense, is as long as the other.
Vector2d GetRadii(ObjectBase* element, const Frame& frame) noexcept
{
	const Borrowed<SVGRadiusInterface> radius(element);
	const double rx = frame.Has(SVGImportAttribute::rx) ? frame.Resolve(radius->GetRadiusX(), Axis::horizontal) : -1.0;
	const double ry = frame.Has(SVGImportAttribute::ry) ? frame.Resolve(radius->GetRadiusY(), Axis::vertical) : -1.0;
	return {rx >= 0.0 ? rx : std::max(ry, 0.0), ry >= 0.0 ? ry : std::max(rx, 0.0)};
}

Result<Outline> GetRectangle(ObjectBase* element, const Frame& frame) noexcept
{
	const SVGLength2d position = Borrowed<SVGPositionInterface>(element)->GetPosition();
	const SVGLength2d size = Borrowed<SVGSizeInterface>(element)->GetSize();
	const double width = frame.Resolve(size.x, Axis::horizontal);
	const double height = frame.Resolve(size.y, Axis::vertical);
	Outline outline;
	if (width > 0.0 && height > 0.0)
	{
		const double x = frame.Resolve(position.x, Axis::horizontal);
		const double y = frame.Resolve(position.y, Axis::vertical);
		const Vector2d radii = GetRadii(element, frame);
		ORVAN_TRY(outline.AddRectangle({x, y, x + width, y + height}, radii.x, radii.y));
	}
	return outline;
}

Result<Outline> GetCircle(ObjectBase* element, const Frame& frame) noexcept
{
	const SVGLength2d center = Borrowed<SVGPositionInterface>(element)->GetPosition();
	const Borrowed<SVGRadiusInterface> radius(element);
	// A circle's one radius is measured by both sides of the viewport.
	const bool isCircle = frame.Has(SVGImportAttribute::r);
	const double r = isCircle ? frame.Resolve(radius->GetRadius(), Axis::other) : 0.0;
	const auto [rx, ry] = isCircle ? Vector2d{r, r} : GetRadii(element, frame);
	Outline outline;
	if (rx > 0.0 && ry > 0.0)
	{
		ORVAN_TRY(outline.AddEllipse(
			{frame.Resolve(center.x, Axis::horizontal), frame.Resolve(center.y, Axis::vertical)}, rx, ry));
	}
	return outline;
}

Result<Outline> GetLine(ObjectBase* element, const Frame& frame) noexcept
{
	const Borrowed<SVGLineElementInterface> line(element);
	Outline outline;
	ORVAN_TRY(
		outline.MoveTo({frame.Resolve(line->GetX1(), Axis::horizontal), frame.Resolve(line->GetY1(), Axis::vertical)}));
	ORVAN_TRY(
		outline.LineTo({frame.Resolve(line->GetX2(), Axis::horizontal), frame.Resolve(line->GetY2(), Axis::vertical)}));
	return outline;
}

} // namespace

ShapeKind GetShapeKind(ObjectBase* element) noexcept
{
	if (Borrowed<SVGPathElementInterface>(element))
		return ShapeKind::path;
	if (Borrowed<SVGRectElementInterface>(element))
		return ShapeKind::rectangle;
	if (Borrowed<SVGCircleElementInterface>(element))
		return ShapeKind::circle;
	if (Borrowed<SVGLineElementInterface>(element))
		return ShapeKind::line;
	return ShapeKind::none;
}

Result<Outline> GetOutline(ShapeKind kind, ObjectBase* element, const Frame& frame) noexcept
{
	switch (kind)
	{
	case ShapeKind::path:
		return GetPath(element, frame);
	case ShapeKind::rectangle:
		return GetRectangle(element, frame);
	case ShapeKind::circle:
		return GetCircle(element, frame);
	case ShapeKind::line:
		return GetLine(element, frame);
	case ShapeKind::none:
		break;
	}
	return Outline();
}

} // namespace orvan::drawing
