// SPDX-License-Identifier: MIT
#pragma once

#include "shared/arc.h"

#include <svgpp/adapter/path.hpp>

namespace orvan::grammar
{
/// Reduces path data to moves, lines, cubics and closes in absolute coordinates. Arcs stay arcs up to PathContext: the
/// adapter's own conversion never ends on degenerate arcs, misses the end point by rounding, and lets a smooth command
/// after an arc reflect a control point that it must not.
struct CustomSVGPathPolicy
{
	static constexpr bool absolute_coordinates_only = true;
	static constexpr bool no_ortho_line_to = true;
	static constexpr bool no_quadratic_bezier_shorthand = true;
	static constexpr bool no_cubic_bezier_shorthand = true;
	static constexpr bool quadratic_bezier_as_cubic = true;
	static constexpr bool arc_as_cubic_bezier = false;
};

/// Stands behind the library's path adapter, hands its events to a sink and holds back what is not finite. The names of
/// the events are the library's.
class PathContext
{
public:
	using Absolute = svgpp::tag::coordinate::absolute;

	/// `deliverArc` is what arcs are handed to.
	PathContext(PathSink& sink, void (*deliverArc)(const Arc&, PathSink&)) : _sink(&sink), _deliverArc(deliverArc)
	{
	}

	PathContext(const PathContext&) = delete;
	PathContext& operator=(const PathContext&) = delete;

	/// Hands what follows to another sink.
	void SetSink(PathSink& sink)
	{
		_sink = &sink;
	}

	/// Whether every event so far was delivered.
	bool IsFinite() const
	{
		return _isFinite;
	}

	void path_move_to(double x, double y, Absolute)
	{
		if (Reach(x, y))
			_sink->MoveTo(x, y);
		_startX = x;
		_startY = y;
	}

	void path_line_to(double x, double y, Absolute)
	{
		if (Reach(x, y))
			_sink->LineTo(x, y);
	}

	void path_cubic_bezier_to(double x1, double y1, double x2, double y2, double x, double y, Absolute)
	{
		const bool areControlsFinite = Check(x1, y1) && Check(x2, y2);
		if (Reach(x, y) && areControlsFinite)
			_sink->CubicTo(x1, y1, x2, y2, x, y);
	}

	void path_elliptical_arc_to(double radiusX, double radiusY, double rotation, bool isLarge, bool isSweep, double x,
								double y, Absolute)
	{
		const Arc arc{_currentX, _currentY, radiusX, radiusY, rotation, isLarge, isSweep, x, y};
		if (!Check(radiusX, radiusY) || !Check(rotation, 0) || !Reach(x, y) || !_isFinite)
			return;
		_deliverArc(arc, *_sink);
	}

	void path_close_subpath()
	{
		_currentX = _startX;
		_currentY = _startY;
		_sink->Close();
	}

	void path_exit()
	{
	}

private:
	bool Check(double x, double y)
	{
		// Zero times a number is zero just when the number is finite.
		if (x * 0 + y * 0 == 0)
			return true;
		_isFinite = false;
		return false;
	}

	bool Reach(double x, double y)
	{
		_currentX = x;
		_currentY = y;
		return Check(x, y);
	}

	PathSink* _sink;
	void (*_deliverArc)(const Arc&, PathSink&);
	double _currentX = 0;
	double _currentY = 0;
	double _startX = 0;
	double _startY = 0;
	bool _isFinite = true;
};

using PathAdapter = svgpp::path_adapter<PathContext, CustomSVGPathPolicy, double>;

/// How the library's grammar, or anything in its stead, calls the adapter.
using PathEvents = svgpp::detail::path_adapter_path_events_policy<PathAdapter, CustomSVGPathPolicy, double>;
} // namespace orvan::grammar
