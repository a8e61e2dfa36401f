// SPDX-License-Identifier: MIT
#pragma once

#include "fast/number_tape.h"
#include "fast/path_reader.h"

#include <cmath>

namespace orvan::grammar
{
/// Reads path data as `PathReader` does, from a tape that is recorded as reading goes on. What the tape does not hold
/// is read by a `PathReader`, a group of numbers at a time.
template <PathDialect dialect>
class TapeReader
{
public:
	/// `sink` is told how far a long text was read.
	TapeReader(std::string_view text, PathSink& sink)
		: _at(text.data()), _end(text.data() + text.size()), _base(_at), _told(_at), _sink(sink), _reader(text, sink)
	{
		_tape.Clear();
	}

	/// How many characters are left.
	std::size_t CountRest() const
	{
		return static_cast<std::size_t>(_end - Place());
	}

	/// As PathReader has it, and so are the others.
	bool TakeCommand(char& command)
	{
		if (!HasMark()) [[unlikely]]
		{
			if (IsAtEnd())
				return false;
			if (HasNumbersOnTape(1) || !Record(After::command) || !HasMark())
				return ByReader([&command](auto& reader) { return reader.TakeCommand(command); });
		}
		_at = _base + _tape.marks[_mark++];
		command = *_at++;
		return true;
	}

	void PutBack()
	{
		LeaveTape();
		--_at;
	}

	bool HasNumbers()
	{
		if (HasNumbersOnTape(1))
			return true;
		if (HasMark()) [[likely]]
			return PathReader<dialect>::IsBeginning(_base[_tape.marks[_mark]]);
		if (IsAtEnd())
			return false;
		if (Record(After::number) && (HasNumbersOnTape(1) || HasMark()))
			return HasNumbers();
		return ByReader([](auto& reader) { return reader.HasNumbers(); });
	}

	template <After after, std::size_t count>
	[[gnu::always_inline]] bool ReadNumbers(std::array<double, count>& numbers)
	{
		if (!HasNumbersOnTape(count) && !(Record(after) && HasNumbersOnTape(count))) [[unlikely]]
			return ByReader([&numbers](auto& reader) { return reader.template ReadNumbers<after>(numbers); });
		std::copy_n(_tape.values.data() + _next, count, numbers.data());
		_next += count;
		return true;
	}

	template <After after>
	bool ReadArc(ArcValues& arc)
	{
		// Flags that run together are seen as one number, and together with the abscissa.
		constexpr std::size_t kFewest = 5;
		if (!HasNumbersOnTape(NumberTape::kGroup))
			Record(after);
		if (HasNumbersOnTape(kFewest) && TakeArc(arc)) [[likely]]
			return true;
		return ByReader([&arc](auto& reader) { return reader.template ReadArc<after>(arc); });
	}

private:
	/// Whether as many numbers stand on the tape, in front of the next mark.
	bool HasNumbersOnTape(std::size_t count) const
	{
		return _tape.starts[_next + count - 1] < _tape.marks[_mark];
	}

	/// Whether a mark is what stands next on the tape.
	bool HasMark() const
	{
		return !HasNumbersOnTape(1) && _mark != _tape.markCount;
	}

	/// Whether nothing but blanks is known to be left.
	bool IsAtEnd() const
	{
		return _tape.isWhole && _mark == _tape.markCount && _next == _tape.numberCount;
	}

	/// Where the last thing that was taken ends.
	const char* Place() const
	{
		return _next == 0 ? _at : std::max(_at, BehindNumber(_base + _tape.starts[_next - 1]));
	}

	/// Where a number of the tape ends.
	const char* BehindNumber(const char* at) const
	{
		at = std::find_if_not(at, _end, IsDigit);
		return at != _end && *at == '.' ? std::find_if_not(at + 1, _end, IsDigit) : at;
	}

	bool IsInNumber(const char* at) const
	{
		return at != _end && (IsDigit(*at) || *at == '.');
	}

	/// Records the tape anew from where reading stands, when that is of use.
	[[gnu::noinline]] bool Record(After after)
	{
		// How many characters are read before the sink is told again.
		constexpr std::ptrdiff_t kStride = std::ptrdiff_t(64) << 10;
		// Tapes that end soon, again and again, take longer than they save.
		constexpr std::size_t kFewNumbers = 8;

		if (_mark != _tape.markCount || _tape.isAtEnd)
			return false;
		_base = _at = Place();
		if (_at - _told >= kStride) [[unlikely]]
		{
			_told = _at;
			_sink.Reach(_at);
		}
		_tape.Record(_at, _end, IsNumber(after), dialect == PathDialect::plain);
		_next = _mark = 0;
		_isGivenUp = _tape.isAtEnd && _tape.numberCount < kFewNumbers;
		return true;
	}

	/// Goes on without the tape until one is recorded again.
	void LeaveTape()
	{
		_at = Place();
		_tape.Clear();
		_tape.isAtEnd = _isGivenUp;
		_next = _mark = 0;
	}

	/// Has the reader do what the tape can not. Behind that a tape is recorded again.
	template <typename Read>
	[[gnu::noinline]] bool ByReader(Read read)
	{
		LeaveTape();
		_reader.GoTo(CountRest());
		const bool isRead = read(_reader);
		_at = _end - _reader.CountRest();
		return isRead;
	}

	/// Takes an arc, of which enough stands on the tape for it to be there; false, and nothing is taken, if it is not.
	bool TakeArc(ArcValues& arc)
	{
		const double* const values = _tape.values.data() + _next;
		if (dialect == PathDialect::plain && (std::signbit(values[0]) || std::signbit(values[1])))
			return false;

		// Flags need not be separated from anything, so that their numbers are looked at character by character.
		std::size_t index = _next + 3;
		if (std::signbit(_tape.values[index]))
			return false;
		const char* at = _base + _tape.starts[index];
		const char large = *at++;
		if (!IsInNumber(at))
		{
			if (std::signbit(_tape.values[++index]))
				return false;
			at = _base + _tape.starts[index];
		}
		const char sweep = *at++;
		if ((large != '0' && large != '1') || (sweep != '0' && sweep != '1'))
			return false;

		// What runs on behind them is the abscissa.
		double abscissa;
		if (!IsInNumber(at))
			abscissa = _tape.values[++index];
		else if (!ReadDecimal(at, _end, false, abscissa))
			return false;
		++index;
		if (!HasNumbersOnTape(index - _next + 1))
			return false;
		arc = {values[0], values[1], values[2], large == '1', sweep == '1', abscissa, _tape.values[index]};
		_next = index + 1;
		return true;
	}

	const char* _at; ///< What comes before it was taken, and so were the numbers of the tape up to `_next`.
	const char* _end;
	const char* _base; ///< Where the tape begins.
	const char* _told; ///< How far the sink knows of.
	PathSink& _sink;
	PathReader<dialect> _reader;
	NumberTape _tape;
	std::size_t _next = 0;
	std::size_t _mark = 0;
	bool _isGivenUp = false; ///< Whether the rest is left to the reader.
};
} // namespace orvan::grammar
