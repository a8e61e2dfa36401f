// SPDX-License-Identifier: MIT
#pragma once

#include "fast/path_reader.h"
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
		: _reader(text, sink), _context(sink, deliverArc), _adapter(_context)
	{
	}

	/// How many characters stand behind the place where the parser stopped.
	std::size_t CountRest() const
	{
		return _reader.CountRest();
	}

	bool Parse()
	{
		_reader.SkipSpaces();
		// Every path starts with a move; that a later one may follow anything needs no remembering.
		if (!_reader.IsAtEnd() && _reader.Peek() != 'M' && _reader.Peek() != 'm')
			return false;
		while (!_reader.IsAtEnd())
		{
			const char command = _reader.Peek();
			_reader.Take();
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
			_reader.SkipSpaces();
			return true;
		default:
			_reader.PutBack();
			return false;
		}
	}

	/// Whether another group of numbers follows instead of a command or the end.
	bool HasMore()
	{
		// All that numbers are made of, and all that separates them, comes before the letters. What is neither fails to
		// be a number, or to be a command, later.
		_reader.SkipSpaces();
		if (dialect == PathDialect::complete && _reader.Peek() == ',')
			_reader.SkipLastComma();
		const char next = _reader.Peek();
		return next < 'A' && !_reader.IsAtEnd();
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
		if (!ReadNumbers<after>(numbers))
			return false;
		deliver(numbers);
		while (IsDelivered() && HasMore())
		{
			if (!ReadNumbers<After::number>(numbers))
				return false;
			deliver(numbers);
		}
		return IsDelivered();
	}

	template <After after, std::size_t count>
	bool ReadNumbers(std::array<double, count>& numbers)
	{
		if constexpr (count == 1)
			return _reader.template ReadNumber<after>(numbers[0]);
		else
		{
			if (!_reader.template ReadPair<after, After::number>(numbers[0], numbers[1]))
				return false;
			for (std::size_t i = 2; i != count; i += 2)
			{
				if (!_reader.template ReadPair<After::number, After::number>(numbers[i], numbers[i + 1]))
					return false;
			}
			return true;
		}
	}

	template <typename Coordinates>
	bool ParseMove()
	{
		std::array<double, 2> point;
		if (!_reader.template ReadPair<After::command, After::number>(point[0], point[1]))
			return false;
		PathEvents::path_move_to(_adapter, point[0], point[1], Coordinates());
		return IsDelivered() && (!HasMore() || ParseLines<Coordinates, After::number>());
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

	/// Arcs have flags between their numbers, and, but in the complete dialect, radii without signs.
	template <typename Coordinates, After after>
	bool ParseArc()
	{
		ArcValues arc;
		if (!_reader.template ReadArc<after>(arc) && !ReadArcSlowly<after>(arc))
			return false;
		PathEvents::path_elliptical_arc_to(_adapter, arc.radiusX, arc.radiusY, arc.rotation, arc.isLarge, arc.isSweep,
										   arc.x, arc.y, Coordinates());
		return IsDelivered();
	}

	template <After after>
	bool ReadArcSlowly(ArcValues& arc)
	{
		return _reader.template ReadRadius<after>(arc.radiusX) &&
			   _reader.template ReadRadius<After::number>(arc.radiusY) &&
			   _reader.template ReadNumber<After::number>(arc.rotation) && _reader.ReadFlag(arc.isLarge) &&
			   _reader.ReadFlag(arc.isSweep) && _reader.template ReadPair<After::number, After::number>(arc.x, arc.y);
	}

	template <typename Coordinates>
	bool ParseArcs()
	{
		if (!ParseArc<Coordinates, After::command>())
			return false;
		while (HasMore())
		{
			if (!ParseArc<Coordinates, After::number>())
				return false;
		}
		return true;
	}

	PathReader<dialect> _reader;
	PathContext _context;
	PathAdapter _adapter;
};
} // namespace orvan::grammar
