// SPDX-License-Identifier: MIT
#include "paths.h"

#include "drawing/limits.h"

namespace orvan::cairo
{

using namespace drawing;

namespace
{

/// Half of what the library's fixed-point coordinates hold, so that strokes still fit.
constexpr double kFarthest = 4e6;

} // namespace

Vector2d PathWriter::ToDevice(const Vector2d& point) noexcept
{
	Vector2d device = _transform.Apply(point);
	_extent.isFinite = _extent.isFinite && std::isfinite(device.x) && std::isfinite(device.y);
	device = {std::clamp(device.x, -kFarthest, kFarthest), std::clamp(device.y, -kFarthest, kFarthest)};
	_extent.bounds.Add(device);
	return device;
}

/// The same for a point that a line leads to.
Vector2d PathWriter::Follow(const Vector2d& point) noexcept
{
	const Vector2d device = ToDevice(point);
	_extent.rows += std::min(std::abs(device.y - _row), drawing::kMaxSide);
	_row = device.y;
	return device;
}

/// A subpath without length still shows its round or square caps. The library knows only half of that, so such a
/// subpath gets a length that cannot be seen, along the x axis.
void PathWriter::EndSubpath() noexcept
{
	if (_hasSegments && !_hasLength)
	{
		constexpr double kUnseen = 1.0 / 64.0;
		const Vector2d device = ToDevice(_start);
		const Vector2d& axis = _transform.axis1;
		const double scale = kUnseen / std::hypot(axis.x, axis.y);
		cairo_line_to(_drawing, device.x + axis.x * scale, device.y + axis.y * scale);
	}
	_hasSegments = _hasLength = false;
}

void PathWriter::MoveTo(const Vector2d& point) noexcept
{
	EndSubpath();
	const Vector2d device = ToDevice(point);
	cairo_move_to(_drawing, device.x, device.y);
	_row = device.y;
	_start = _current = point;
}

void PathWriter::LineTo(const Vector2d& point) noexcept
{
	const Vector2d device = Follow(point);
	cairo_line_to(_drawing, device.x, device.y);
	_extent.segmentCount++;
	_hasSegments = true;
	_hasLength = _hasLength || !(point == _current);
	_current = point;
}

void PathWriter::CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept
{
	const Vector2d c1 = Follow(control1);
	const Vector2d c2 = Follow(control2);
	const Vector2d end = Follow(point);
	cairo_curve_to(_drawing, c1.x, c1.y, c2.x, c2.y, end.x, end.y);
	_extent.segmentCount++;
	_hasSegments = true;
	_hasLength = _hasLength || !(control1 == _current && control2 == _current && point == _current);
	_current = point;
}

void PathWriter::Close() noexcept
{
	_current = _start;
	_extent.segmentCount++;
	_hasSegments = true;
	// Closing would replace the caps by a join.
	if (_hasLength)
		cairo_close_path(_drawing);
	EndSubpath();
}

const PathExtent& PathWriter::Finish() noexcept
{
	EndSubpath();
	return _extent;
}

PathExtent MeasurePath(const Outline& outline, const Matrix2d& transform) noexcept
{
	PathExtent extent;
	double row = 0.0;
	const auto add = [&](const Vector2d& point)
	{
		const Vector2d device = transform.Apply(point);
		extent.isFinite = extent.isFinite && std::isfinite(device.x) && std::isfinite(device.y);
		extent.bounds.Add({std::clamp(device.x, -kFarthest, kFarthest), std::clamp(device.y, -kFarthest, kFarthest)});
		extent.rows += std::min(std::abs(device.y - row), kMaxSide);
		row = device.y;
	};
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		extent.segmentCount += command.type != SVGPathCommandType::move;
		const double rows = extent.rows;
		if (command.type == SVGPathCommandType::cubic)
		{
			add(command.points[0]);
			add(command.points[1]);
		}
		if (command.type != SVGPathCommandType::close)
			add(command.points[2]);
		if (command.type == SVGPathCommandType::move)
			extent.rows = rows;
	}
	return extent;
}

PathExtent SetPath(cairo_t* drawing, const drawing::Outline& outline, const Matrix2d& transform) noexcept
{
	PathWriter writer(drawing, transform);
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		switch (command.type)
		{
		case SVGPathCommandType::move:
			writer.MoveTo(command.points[2]);
			break;
		case SVGPathCommandType::line:
			writer.LineTo(command.points[2]);
			break;
		case SVGPathCommandType::cubic:
			writer.CurveTo(command.points[0], command.points[1], command.points[2]);
			break;
		case SVGPathCommandType::close:
			writer.Close();
			break;
		}
	}
	return writer.Finish();
}

} // namespace orvan::cairo
