/// The storage of a path.
#pragma once

#include "svg_types.h"

namespace orvan::svg
{

/// A sequence of path commands: one byte a command, and the coordinates that the command uses and no others. That is 17
/// bytes for a line and 49 for a curve, where an `SVGPathCommand` takes 56.
class PathData
{
public:
	Result<void> Append(SVGPathCommandType type, std::initializer_list<Vector2d> points) noexcept
	{
		if (_kinds.GetCount() == _kinds.GetCapacity())
			ORVAN_TRY(_kinds.Reserve(std::max(kFirstCommands, 2 * _kinds.GetCount())));
		if (_points.GetCapacity() - _points.GetCount() < points.size())
			ORVAN_TRY(_points.Reserve(std::max(2 * kFirstCommands, 2 * _points.GetCount())));
		IgnoreResult(_kinds.Append(static_cast<std::uint8_t>(type)));
		return _points.AppendAll(points.begin(), points.size());
	}

	/// Gives unused memory back.
	void Compact() noexcept
	{
		_kinds.Compact();
		_points.Compact();
	}

	Result<void> CopyFrom(const PathData& other) noexcept
	{
		PathData copy;
		ORVAN_TRY(copy._kinds.CopyFrom(other._kinds));
		ORVAN_TRY(copy._points.CopyFrom(other._points));
		*this = std::move(copy);
		return {};
	}

	/// The commands in the public form.
	Result<BaseArray<SVGPathCommand>> GetCommands() const noexcept
	{
		BaseArray<SVGPathCommand> commands;
		ORVAN_TRY(commands.Resize(_kinds.GetCount()));
		const Vector2d* point = _points.begin();
		for (std::size_t i = 0; i < _kinds.GetCount(); i++)
		{
			SVGPathCommand& command = commands[i];
			command.type = static_cast<SVGPathCommandType>(_kinds[i]);
			if (command.type == SVGPathCommandType::cubic)
			{
				command.points[0] = *point++;
				command.points[1] = *point++;
			}
			if (command.type != SVGPathCommandType::close)
				command.points[2] = *point++;
		}
		return commands;
	}

private:
	static constexpr std::size_t kFirstCommands = 16;

	BaseArray<std::uint8_t> _kinds;
	BaseArray<Vector2d> _points;
};

} // namespace orvan::svg
