// SPDX-License-Identifier: MIT
#pragma once

#include "fast/path_reader.h"
#include "fast/path_state.h"
#include "shared/path_context.h"

namespace orvan::grammar
{
/// Reads path data and feeds the library's path adapter just as the library's own grammar would. In the complete
/// dialect it stops at the first segment that is not finite, and all before a fault was delivered.
template <PathDialect dialect>
class PathParser
{
public:
	/// `deliverArc` is what arcs are handed to.
	PathParser(std::string_view text, PathSink& sink, void (*deliverArc)(const Arc&, PathSink&))
		: _sink(sink), _reader(text, &sink), _context(sink, deliverArc), _adapter(_context)
	{
	}

	/// How many characters stand behind the place where the parser stopped.
	std::size_t CountRest() const
	{
		return _reader.CountRest();
	}

	bool Parse()
	{
		char command;
		const bool hasCommand = _reader.TakeCommand(command);
		// Every path starts with a move; that a later one may follow anything needs no remembering.
		if (hasCommand && command != 'M' && command != 'm')
		{
			_reader.PutBack();
			return false;
		}
		return ParseCommands(hasCommand, command);
	}

	/// Reads the rest of a path. `going` is the command whose numbers may follow; zero where another one must.
	bool Resume(const PathState& state, char going)
	{
		Prepare(state);
		if (going != '\0' && _reader.HasNumbers() && !ParseCommand<After::number>(going))
			return false;
		char command;
		const bool hasCommand = _reader.TakeCommand(command);
		return ParseCommands(hasCommand, command);
	}

private:
	using Absolute = svgpp::tag::coordinate::absolute;
	using Relative = svgpp::tag::coordinate::relative;

	bool ParseCommands(bool hasCommand, char command)
	{
		for (; hasCommand; hasCommand = _reader.TakeCommand(command))
		{
			if (!ParseCommand<After::command>(command))
				return false;
		}
		return _context.IsFinite();
	}

	/// Has the adapter know what came before.
	void Prepare(const PathState& state)
	{
		NoPathSink nothing;
		_context.SetSink(nothing);
		PathEvents::path_move_to(_adapter, state.startX, state.startY, Absolute());
		switch (state.curve)
		{
		case PathState::Curve::none:
			PathEvents::path_line_to(_adapter, state.currentX, state.currentY, Absolute());
			break;
		case PathState::Curve::cubic:
			PathEvents::path_cubic_bezier_to(_adapter, 0, 0, state.controlX, state.controlY, state.currentX,
											 state.currentY, Absolute());
			break;
		case PathState::Curve::quadratic:
			PathEvents::path_quadratic_bezier_to(_adapter, state.controlX, state.controlY, state.currentX,
												 state.currentY, Absolute());
			break;
		}
		_context.SetSink(_sink);
	}

	/// `after` is what the command's numbers stand behind.
	template <After after>
	bool ParseCommand(char command)
	{
		switch (command)
		{
		case 'M':
			return ParseMove<Absolute>();
		case 'm':
			return ParseMove<Relative>();
		case 'L':
			return ParseLines<Absolute, after>();
		case 'l':
			return ParseLines<Relative, after>();
		case 'H':
			return ParseStraightLines<Absolute, after>(true);
		case 'h':
			return ParseStraightLines<Relative, after>(true);
		case 'V':
			return ParseStraightLines<Absolute, after>(false);
		case 'v':
			return ParseStraightLines<Relative, after>(false);
		case 'C':
			return ParseCubics<Absolute, after>();
		case 'c':
			return ParseCubics<Relative, after>();
		case 'S':
			return ParseSmoothCubics<Absolute, after>();
		case 's':
			return ParseSmoothCubics<Relative, after>();
		case 'Q':
			return ParseQuadratics<Absolute, after>();
		case 'q':
			return ParseQuadratics<Relative, after>();
		case 'T':
			return ParseSmoothQuadratics<Absolute, after>();
		case 't':
			return ParseSmoothQuadratics<Relative, after>();
		case 'A':
			return ParseArcs<Absolute, after>();
		case 'a':
			return ParseArcs<Relative, after>();
		case 'Z':
		case 'z':
			PathEvents::path_close_subpath(_adapter);
			return true;
		default:
			_reader.PutBack();
			return false;
		}
	}

	/// Whether reading goes on behind a segment.
	bool IsDelivered() const
	{
		return dialect == PathDialect::plain || _context.IsFinite();
	}

	/// Reads groups of numbers up to the next command and hands each to `deliver`.
	template <std::size_t count, After after, typename Deliver>
	bool ParseGroups(Deliver deliver)
	{
		std::array<double, count> numbers;
		if (!_reader.template ReadNumbers<after>(numbers))
			return false;
		deliver(numbers);
		while (IsDelivered() && _reader.HasNumbers())
		{
			if (!_reader.template ReadNumbers<After::number>(numbers))
				return false;
			deliver(numbers);
		}
		return IsDelivered();
	}

	template <typename Coordinates>
	bool ParseMove()
	{
		std::array<double, 2> point;
		if (!_reader.template ReadNumbers<After::command>(point))
			return false;
		PathEvents::path_move_to(_adapter, point[0], point[1], Coordinates());
		return IsDelivered() && (!_reader.HasNumbers() || ParseLines<Coordinates, After::number>());
	}

	template <typename Coordinates, After after>
	bool ParseLines()
	{
		return ParseGroups<2, after>([this](const auto& n)
									 { PathEvents::path_line_to(_adapter, n[0], n[1], Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseStraightLines(bool isHorizontal)
	{
		return ParseGroups<1, after>([this, isHorizontal](const auto& n)
									 { PathEvents::path_line_to_ortho(_adapter, n[0], isHorizontal, Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseCubics()
	{
		return ParseGroups<6, after>(
			[this](const auto& n)
			{ PathEvents::path_cubic_bezier_to(_adapter, n[0], n[1], n[2], n[3], n[4], n[5], Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseSmoothCubics()
	{
		return ParseGroups<4, after>(
			[this](const auto& n)
			{ PathEvents::path_cubic_bezier_to(_adapter, n[0], n[1], n[2], n[3], Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseQuadratics()
	{
		return ParseGroups<4, after>(
			[this](const auto& n)
			{ PathEvents::path_quadratic_bezier_to(_adapter, n[0], n[1], n[2], n[3], Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseSmoothQuadratics()
	{
		return ParseGroups<2, after>([this](const auto& n)
									 { PathEvents::path_quadratic_bezier_to(_adapter, n[0], n[1], Coordinates()); });
	}

	template <typename Coordinates, After after>
	bool ParseArc()
	{
		ArcValues arc;
		if (!_reader.template ReadArc<after>(arc))
			return false;
		PathEvents::path_elliptical_arc_to(_adapter, arc.radiusX, arc.radiusY, arc.rotation, arc.isLarge, arc.isSweep,
										   arc.x, arc.y, Coordinates());
		return IsDelivered();
	}

	template <typename Coordinates, After after>
	bool ParseArcs()
	{
		if (!ParseArc<Coordinates, after>())
			return false;
		while (_reader.HasNumbers())
		{
			if (!ParseArc<Coordinates, After::number>())
				return false;
		}
		return true;
	}

	PathSink& _sink;
	PathReader<dialect> _reader;
	PathContext _context;
	PathAdapter _adapter;
};
} // namespace orvan::grammar
