// SPDX-License-Identifier: MIT
#include "outline_object.h"

#include "combine.h"
#include "inside.h"
#include "stroke_edges.h"

namespace orvan::geometry
{
namespace
{

const ObjectFactory kFactory(kSVGOutlineClass);

Result<void> CheckTolerance(Float tolerance) noexcept
{
	if (!(tolerance > 0.0 && tolerance <= kLargest))
		return IllegalArgumentError("A tolerance of @ makes no sense.", tolerance);
	return {};
}

Result<void> CheckRule(SVGFillRule rule) noexcept
{
	if (rule != SVGFillRule::nonzero && rule != SVGFillRule::evenodd)
		return IllegalArgumentError("There is no fill rule @.", static_cast<int>(rule));
	return {};
}

} // namespace

Result<SVGOutlineRef> OutlineObject::Make(drawing::Outline outline) noexcept
{
	SVGOutlineRef made = ORVAN_TRY(kFactory.Create<SVGOutlineInterface>());
	static_cast<OutlineObject*>(made.GetObject())->_outline = std::move(outline);
	return made;
}

Result<void> OutlineObject::SetPath(const BaseArray<SVGPathCommand>& commands) noexcept
{
	BaseArray<SVGPathCommand> copy;
	ORVAN_TRY(copy.CopyFrom(commands));
	if (!copy.IsEmpty() && copy[0].type != SVGPathCommandType::close)
		copy[0].type = SVGPathCommandType::move;
	_outline = drawing::Outline(std::move(copy));
	_lengths.reset();
	return {};
}

Result<BaseArray<SVGPathCommand>> OutlineObject::GetPath() const noexcept
{
	BaseArray<SVGPathCommand> copy;
	ORVAN_TRY(copy.CopyFrom(_outline.GetCommands()));
	return copy;
}

SVGBox OutlineObject::GetBounds(const Matrix2d& transform) const noexcept
{
	const Rectangle bounds = _outline.GetBounds(transform);
	if (!bounds.IsFinite())
		return {};
	return {bounds.left, bounds.top, bounds.GetWidth(), bounds.GetHeight(), false};
}

Result<void> OutlineObject::Measure() noexcept
{
	if (!_lengths)
		_lengths = ORVAN_TRY(LengthTable::Create(_outline));
	return {};
}

Result<Float> OutlineObject::GetLength() noexcept
{
	ORVAN_TRY(Measure());
	return _lengths->GetLength();
}

Result<SVGOutlinePlace> OutlineObject::GetPlace(Float length) noexcept
{
	if (std::isnan(length))
		return IllegalArgumentError("There is no place at a length that is no number.");
	ORVAN_TRY(Measure());
	if (_lengths->IsEmpty())
		return NotFoundError("The outline has no points.");
	return _lengths->GetPlace(length);
}

Result<SVGOutlinePlace> OutlineObject::FindNearest(const Vector2d& point) noexcept
{
	if (!IsUsable(point))
		return IllegalArgumentError("Nothing is near to a point that is no point.");
	ORVAN_TRY(Measure());
	if (_lengths->IsEmpty())
		return NotFoundError("The outline has no points.");
	return _lengths->FindNearest(point);
}

bool OutlineObject::Contains(const Vector2d& point, SVGFillRule rule) const noexcept
{
	return IsInside(_outline, {}, rule, point);
}

Result<SVGOutlineRef> OutlineObject::Transform(const Matrix2d& transform) const noexcept
{
	drawing::Outline outline;
	ORVAN_TRY(outline.Append(_outline, transform));
	return Make(std::move(outline));
}

Result<SVGOutlineRef> OutlineObject::Flatten(Float tolerance) const noexcept
{
	ORVAN_TRY(CheckTolerance(tolerance));
	return Make(ORVAN_TRY(geometry::Flatten(_outline, {}, tolerance)));
}

Result<SVGOutlineRef> OutlineObject::GetStroke(const SVGStroke& stroke, Float tolerance) const noexcept
{
	ORVAN_TRY(CheckTolerance(tolerance));
	return Make(ORVAN_TRY(GetStrokeEdges(_outline, {}, stroke, {}, tolerance)));
}

Result<SVGOutlineRef> OutlineObject::Combine(const SVGOutlineRef& other, SVGOutlineOperation operation,
											 SVGFillRule rule, SVGFillRule otherRule, Float tolerance) const noexcept
{
	if (!(tolerance >= 0.0 && tolerance <= kLargest))
		return IllegalArgumentError("A tolerance of @ makes no sense.", tolerance);
	if (operation < SVGOutlineOperation::unite || operation > SVGOutlineOperation::exclude)
		return IllegalArgumentError("There is no operation @ on outlines.", static_cast<int>(operation));
	for (const SVGFillRule given : {rule, otherRule})
		ORVAN_TRY(CheckRule(given));
	if (!other)
		return Make(ORVAN_TRY(geometry::Combine(_outline, rule, {}, otherRule, operation, tolerance)));
	// Outlines come from this module, but whoever implements the interface may hand one in.
	const drawing::Outline second(ORVAN_TRY(other->GetPath()));
	return Make(ORVAN_TRY(geometry::Combine(_outline, rule, second, otherRule, operation, tolerance)));
}

Result<Float> OutlineObject::GetArea(SVGFillRule rule) const noexcept
{
	ORVAN_TRY(CheckRule(rule));
	return GetSignedArea(ORVAN_TRY(geometry::Combine(_outline, rule, {}, rule, SVGOutlineOperation::unite, 0.0)));
}

} // namespace orvan::geometry
