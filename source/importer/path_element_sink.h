// SPDX-License-Identifier: MIT
/// From what the grammar reads of path data to a path element.
#pragma once

#include "elements/element_classes.h"
#include "grammar.h"

#include <utility>

namespace orvan::svg
{

/// Hands the segments of a path to a path element, which fails for want of memory only.
class PathElementSink : public grammar::PathSink
{
public:
	explicit PathElementSink(PathElement& path) noexcept : _path(path)
	{
	}

	void MoveTo(double x, double y) override
	{
		Note(_path.MoveTo({x, y}));
	}

	void LineTo(double x, double y) override
	{
		Note(_path.LineTo({x, y}));
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		Note(_path.CubicBezierTo({x1, y1}, {x2, y2}, {x, y}));
	}

	void Close() override
	{
		Note(_path.CloseSubpath());
	}

	/// The end of the attribute.
	Result<void> Exit() noexcept
	{
		Note(_path.PathExit());
		return std::move(_result);
	}

private:
	void Note(Result<void> result) noexcept
	{
		if (!result.IsOk()) [[unlikely]]
			_result = std::move(result);
	}

	PathElement& _path;
	Result<void> _result;
};

/// Where nothing is made of a path: elements that have none, and data that is only looked at.
class NoPathSink final : public grammar::PathSink
{
public:
	void MoveTo(double, double) override
	{
	}

	void LineTo(double, double) override
	{
	}

	void CubicTo(double, double, double, double, double, double) override
	{
	}

	void Close() override
	{
	}
};

} // namespace orvan::svg
