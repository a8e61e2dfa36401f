// SPDX-License-Identifier: MIT
#include "clip_areas.h"

#include "combine.h"

namespace orvan::geometry
{
namespace
{

/// How exactly areas are put together, in units of the result.
constexpr double kTolerance = 1e-3;

/// The rectangle that an outline is, or nothing.
Rectangle FindRectangle(const Outline& outline) noexcept
{
	const BaseArray<SVGPathCommand>& commands = outline.GetCommands();
	constexpr std::size_t kCorners = 4;
	std::size_t lines = commands.GetCount();
	if (lines > 0 && commands[lines - 1].type == SVGPathCommandType::close)
		lines--;
	if (lines != kCorners)
		return {};
	for (std::size_t i = 1; i < kCorners; i++)
	{
		const Vector2d way = commands[i].points[2] - commands[i - 1].points[2];
		const bool isAlongAxis = way.x == 0.0 || way.y == 0.0;
		if (commands[i].type != SVGPathCommandType::line || !isAlongAxis)
			return {};
	}
	const Rectangle& bounds = outline.GetBounds();
	// Four corners with a right angle at two of them, which go around the whole box.
	const Vector2d across = commands[2].points[2] - commands[0].points[2];
	const bool isAround =
		std::abs(across.x) == bounds.GetWidth() && std::abs(across.y) == bounds.GetHeight() &&
		(commands[3].points[2].x == commands[0].points[2].x || commands[3].points[2].y == commands[0].points[2].y);
	return isAround ? bounds : Rectangle();
}

Result<Outline> Intersect(const Outline& outline, SVGFillRule rule, const Outline& area) noexcept
{
	return Combine(outline, rule, area, SVGFillRule::nonzero, SVGOutlineOperation::intersect, kTolerance);
}

} // namespace

template <typename Visit>
Result<void> ClipAreas::ForEachArea(std::int32_t node, Visit visit) noexcept
{
	// What masks and tiles hold, or is filtered, is cut off by nothing beyond.
	bool isInside = true;
	for (std::int32_t at = node; at >= 0 && isInside; at = _record.At(at).parent)
	{
		isInside = _record.At(at).kind != NodeKind::content && _record.At(at).kind != NodeKind::apart;
		if (_record.At(at).hasPixels)
			continue; // Keeps what cuts it off.
		const NodeEdges* const edges = _record.EdgesOf(_record.At(at));
		// The view itself ends where the outermost viewport does.
		if (edges != nullptr && edges->hasViewport && at > 0)
			ORVAN_TRY(visit(*ORVAN_TRY(GetViewport(at))));
		if (_record.At(at).clip >= 0)
			ORVAN_TRY(visit(*ORVAN_TRY(GetRegion(_record.At(at).clip))));
	}
	return {};
}

Result<bool> ClipAreas::IsWhole(std::int32_t node, const Rectangle& bounds) noexcept
{
	bool isWhole = true;
	const auto look = [&](const Area& area) noexcept -> Result<void>
	{
		const Rectangle& inside = area.inside;
		isWhole = isWhole && bounds.left >= inside.left && bounds.right <= inside.right && bounds.top >= inside.top &&
				  bounds.bottom <= inside.bottom;
		return {};
	};
	ORVAN_TRY(ForEachArea(node, look));
	return isWhole;
}

Result<Outline> ClipAreas::Cut(std::int32_t node, const Outline& outline, SVGFillRule rule) noexcept
{
	Outline left;
	ORVAN_TRY(left.Append(outline, {}));
	const auto cut = [&](const Area& area) noexcept -> Result<void>
	{
		if (left.GetBounds().Intersect(area.outline.GetBounds()).IsEmpty())
		{
			left = Outline();
			return {};
		}
		left = ORVAN_TRY(Intersect(left, rule, area.outline));
		rule = SVGFillRule::nonzero;
		return {};
	};
	ORVAN_TRY(ForEachArea(node, cut));
	return left;
}

Result<const ClipAreas::Area*> ClipAreas::GetViewport(std::int32_t node) noexcept
{
	if (_viewports.IsEmpty())
		ORVAN_TRY(_viewports.Resize(_record.edges.GetCount()));
	Area& area = _viewports[static_cast<std::size_t>(_record.At(node).edges)];
	if (!area.isKnown)
	{
		const Node& owner = _record.At(node);
		Outline rectangle;
		if (!_record.EdgesOf(owner)->viewport.IsEmpty())
			ORVAN_TRY(rectangle.AddRectangle(_record.EdgesOf(owner)->viewport, 0.0, 0.0));
		ORVAN_TRY(area.outline.Append(rectangle, _toResult * owner.toView));
		area.inside = FindRectangle(area.outline);
		area.isKnown = true;
	}
	return &area;
}

Result<Outline> ClipAreas::UniteShapes(const ClipRegion& region) noexcept
{
	Outline all;
	const bool isOne = region.shapes.GetCount() == 1;
	for (const ClipShape& shape : region.shapes)
	{
		Outline outline;
		ORVAN_TRY(outline.Append(shape.outline, _toResult * shape.toView));
		if (shape.clip >= 0)
			outline = ORVAN_TRY(Intersect(outline, shape.rule, ORVAN_TRY(GetRegion(shape.clip))->outline));
		else if (!isOne || shape.rule != SVGFillRule::nonzero)
			// All go around their areas the same way then, so that none takes another one away.
			outline = ORVAN_TRY(Combine(outline, shape.rule, {}, shape.rule, SVGOutlineOperation::unite, kTolerance));
		ORVAN_TRY(all.Append(outline, {}));
	}
	return all;
}

Result<Outline> ClipAreas::MakeRegion(const ClipRegion& region) noexcept
{
	Outline outline = ORVAN_TRY(UniteShapes(region));
	if (region.next >= 0)
		return Intersect(outline, SVGFillRule::nonzero, ORVAN_TRY(GetRegion(region.next))->outline);
	return outline;
}

Result<const ClipAreas::Area*> ClipAreas::GetRegion(std::int32_t index) noexcept
{
	if (_regions.IsEmpty())
		ORVAN_TRY(_regions.Resize(_record.regions.GetCount()));
	Area& area = _regions[static_cast<std::size_t>(index)];
	if (area.isIntricate)
		return IllegalArgumentError("The clip path is too intricate.");
	if (!area.isKnown)
	{
		Result<Outline> made = MakeRegion(_record.RegionAt(index));
		area.isIntricate = !made.IsOk() && made.GetError().GetClass() == ErrorClass::illegalArgument;
		area.outline = ORVAN_TRY(std::move(made));
		area.inside = FindRectangle(area.outline);
		area.isKnown = true;
	}
	return &area;
}

} // namespace orvan::geometry
