// SPDX-License-Identifier: MIT
#pragma once

#include "fast/path_reader.h"
#include "shared/path_context.h"

namespace orvan::grammar
{
/// Reads path data and feeds the library's path adapter just as the library's own grammar would. In the complete
/// dialect it stops at the first segment that is not finite, and all before a fault was delivered. `Reader` is a
/// `PathReader` or a `TapeReader`.
template <PathDialect dialect, typename Reader>
class PathParser
{
public:
	/// `arcs` is what arcs are handed to, as PathContext has it.
	template <typename Arcs>
	PathParser(std::string_view text, PathSink& sink, Arcs&& arcs)
		: _reader(text, sink), _context(sink, arcs), _adapter(_context)
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
		bool hasCommand = _reader.TakeCommand(command);
		// Every path starts with a move; that a later one may follow anything needs no remembering.
		if (hasCommand && command != 'M' && command != 'm')
		{
			_reader.PutBack();
			return false;
		}
		for (; hasCommand; hasCommand = _reader.TakeCommand(command))
		{
			if (!ParseCommand(command))
				return false;
		}
		return _context.IsFinite();
	}

private:
	using Absolute = svgpp::tag::coordinate::absolute;
	using Relative = svgpp::tag::coordinate::relative;

	bool ParseCommand(char command)
	{
		switch (command)
		{
		case 'M':
			return ParseMove<Absolute>();
		case 'm':
			return ParseMove<Relative>();
		case 'L':
			return ParseLines<Absolute, After::command>();
		case 'l':
			return ParseLines<Relative, After::command>();
		case 'H':
			return ParseStraightLines<Absolute>(true);
		case 'h':
			return ParseStraightLines<Relative>(true);
		case 'V':
			return ParseStraightLines<Absolute>(false);
		case 'v':
			return ParseStraightLines<Relative>(false);
		case 'C':
			return ParseCubics<Absolute>();
		case 'c':
			return ParseCubics<Relative>();
		case 'S':
			return ParseSmoothCubics<Absolute>();
		case 's':
			return ParseSmoothCubics<Relative>();
		case 'Q':
			return ParseQuadratics<Absolute>();
		case 'q':
			return ParseQuadratics<Relative>();
		case 'T':
			return ParseSmoothQuadratics<Absolute>();
		case 't':
			return ParseSmoothQuadratics<Relative>();
		case 'A':
			return ParseArcs<Absolute>();
		case 'a':
			return ParseArcs<Relative>();
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
	template <std::size_t count, After after = After::command, typename Deliver>
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

	template <typename Coordinates>
	bool ParseStraightLines(bool isHorizontal)
	{
		return ParseGroups<1>([this, isHorizontal](const auto& n)
							  { PathEvents::path_line_to_ortho(_adapter, n[0], isHorizontal, Coordinates()); });
	}

	template <typename Coordinates>
	bool ParseCubics()
	{
		return ParseGroups<6>(
			[this](const auto& n)
			{ PathEvents::path_cubic_bezier_to(_adapter, n[0], n[1], n[2], n[3], n[4], n[5], Coordinates()); });
	}

	template <typename Coordinates>
	bool ParseSmoothCubics()
	{
		return ParseGroups<4>([this](const auto& n)
							  { PathEvents::path_cubic_bezier_to(_adapter, n[0], n[1], n[2], n[3], Coordinates()); });
	}

	template <typename Coordinates>
	bool ParseQuadratics()
	{
		return ParseGroups<4>(
			[this](const auto& n)
			{ PathEvents::path_quadratic_bezier_to(_adapter, n[0], n[1], n[2], n[3], Coordinates()); });
	}

	template <typename Coordinates>
	bool ParseSmoothQuadratics()
	{
		return ParseGroups<2>([this](const auto& n)
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

	template <typename Coordinates>
	bool ParseArcs()
	{
		if (!ParseArc<Coordinates, After::command>())
			return false;
		while (_reader.HasNumbers())
		{
			if (!ParseArc<Coordinates, After::number>())
				return false;
		}
		return true;
	}

	Reader _reader;
	PathContext _context;
	PathAdapter _adapter;
};
} // namespace orvan::grammar
