// SPDX-License-Identifier: MIT
#include "fast/tape_parser.h"

#include "fast/path_machine.h"
#include "fast/path_parser.h"

namespace orvan::grammar
{
namespace
{
template <PathDialect dialect>
class TapeParser
{
public:
	using DeliverArc = void (*)(const Arc&, PathSink&);

	TapeParser(std::string_view text, PathSink& sink, DeliverArc deliverArc)
		: _at(text.data()), _end(text.data() + text.size()), _sink(sink), _deliverArc(deliverArc)
	{
	}

	bool Parse()
	{
		// How many characters are read before the sink is told again.
		constexpr std::ptrdiff_t kStride = std::ptrdiff_t(64) << 10;
		const char* told = _at;
		for (;;)
		{
			_tape.Record(_at, _end, _going != Step::none, dialect);
			if (!_machine.HasRun() && !StartsWithMove())
				return ParseRest();
			_plan.Make(_tape, _at, _end, dialect, _going);
			_machine.Run(_plan, _tape);
			Deliver();
			_at = _plan.GetPlace();
			_going = _plan.GetGoing();
			if (_plan.IsStuck())
				return (_tape.isWhole && _at == _end) || ParseRest();
			if (_at - told >= kStride) [[unlikely]]
			{
				told = _at;
				_sink.Reach(_at);
			}
		}
	}

	std::size_t CountRest() const
	{
		return static_cast<std::size_t>(_end - _at);
	}

private:
	bool StartsWithMove() const
	{
		return _tape.markCount != 0 && _tape.numbersBefore[0] == 0 &&
			   (_tape.letters[0] == 'M' || _tape.letters[0] == 'm');
	}

	/// Hands on what the machine made.
	void Deliver()
	{
		PathSegment* const segments = _machine.GetSegments();
		std::size_t from = 0;
		for (std::size_t first = 0; first < _plan.GetArcCount(); first += ArcRow::kLanes)
		{
			ArcRows arcs;
			for (std::size_t i = first; i != _plan.GetArcCount() && arcs.count != ArcRow::kLanes; ++i)
				arcs.Add(_machine.GetArc(_plan, i));
			BentArcs bent;
			if (dialect == PathDialect::plain && arcs.count >= kFewest)
				BendArcs(arcs, bent);
			for (std::size_t lane = 0; lane != arcs.count; ++lane)
			{
				const std::size_t place = _machine.GetArcPlace(first + lane);
				if ((bent.areBent >> lane & 1) != 0)
				{
					bent.Put(lane, arcs, segments + place);
					continue;
				}
				_sink.AddSegments({segments + from, place - from});
				_deliverArc(_machine.GetArc(_plan, first + lane), _sink);
				from = place + BentArcs::kMostCubics;
			}
		}
		_sink.AddSegments({segments + from, _machine.GetCount() - from});
	}

	/// Has the other parser read what is left. What the tape can not hold may still be path data.
	[[gnu::noinline]] bool ParseRest()
	{
		PathParser<dialect> parser({_at, CountRest()}, _sink, _deliverArc);
		const bool isWhole =
			!_machine.HasRun() ? parser.Parse() : parser.Resume(_machine.GetState(), PathPlan::GetLetter(_going));
		_at = _end - parser.CountRest();
		return isWhole;
	}

	/// Of fewer arcs each by itself is quicker.
	static constexpr std::size_t kFewest = 2;

	const char* _at; ///< Everything before was delivered.
	const char* _end;
	PathSink& _sink;
	DeliverArc _deliverArc;
	Step _going = Step::none; ///< Whose numbers may follow.
	NumberTape _tape;
	PathPlan _plan;
	PathMachine _machine;
};
} // namespace

template <PathDialect dialect>
bool ParseTape(std::string_view text, PathSink& sink, void (*deliverArc)(const Arc&, PathSink&), std::size_t& rest)
{
	TapeParser<dialect> parser(text, sink, deliverArc);
	const bool isWhole = parser.Parse();
	rest = parser.CountRest();
	return isWhole;
}

template bool ParseTape<PathDialect::plain>(std::string_view, PathSink&, void (*)(const Arc&, PathSink&), std::size_t&);
template bool ParseTape<PathDialect::complete>(std::string_view, PathSink&, void (*)(const Arc&, PathSink&),
											   std::size_t&);
} // namespace orvan::grammar
