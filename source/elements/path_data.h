// SPDX-License-Identifier: MIT
/// The storage of a path.
#pragma once

#include "svg_edit.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

namespace orvan::svg
{

/// A sequence of path commands in one array of 64-bit words. Before each run of 32 commands stands a word with their
/// kinds, two bits each; behind it, the coordinates that the commands use and no others. That is some 16 bytes for a
/// line and 48 for a curve, where an `SVGPathCommand` takes 56.
class PathData
{
public:
	template <typename... Points>
	Result<void> Append(SVGPathCommandType type, const Points&... points) noexcept
	{
		constexpr std::size_t kNeeded = 1 + 2 * sizeof...(points);
		if (_words.GetCapacity() - _words.GetCount() < kNeeded) [[unlikely]]
			ORVAN_TRY(Grow(kNeeded));
		const std::uint32_t position = _count++ % kRun;
		if (position == 0)
			BeginRun();
		_words[_kindsAt] |= static_cast<std::uint64_t>(type) << (2 * position);
		[[maybe_unused]] std::uint64_t* word = _words.AppendUninitialized(2 * sizeof...(points));
		((*word++ = std::bit_cast<std::uint64_t>(points.x), *word++ = std::bit_cast<std::uint64_t>(points.y)), ...);
		return {};
	}

	/// Makes room for as many more commands.
	Result<void> Reserve(std::size_t commands) noexcept
	{
		// Behind the last command, as many words as a cubic takes are written whatever it is.
		const std::size_t needed = (1 + kMostWords) * commands + kMostWords;
		return _words.GetCapacity() - _words.GetCount() < needed ? Grow(needed) : Result<void>();
	}

	/// Appends commands for which there is room, without a branch for each: of a row of commands nobody foresees the
	/// next.
	class Writer
	{
	public:
		explicit Writer(PathData& path) noexcept
			: _path(path), _word(path._words.end()), _kindsAt(path._words.begin() + path._kindsAt), _count(path._count)
		{
			_kinds = _count != 0 ? *_kindsAt : 0;
		}

		Writer(const Writer&) = delete;
		Writer& operator=(const Writer&) = delete;

		~Writer()
		{
			if (_count == 0)
				return;
			*_kindsAt = _kinds;
			std::uint64_t* const begin = _path._words.begin();
			_path._kindsAt = static_cast<std::uint32_t>(_kindsAt - begin);
			_path._count = _count;
			_path._words.AppendUninitialized(static_cast<std::size_t>(_word - _path._words.end()));
		}

		/// `kind` is that of an `SVGPathCommandType`, or the number behind those for nothing at all. The coordinates
		/// that the kind has stand first.
		void Append(std::size_t kind, const std::array<double, 6>& coordinates) noexcept
		{
			const bool isThere = kind != kNothing;
			const std::uint32_t position = _count % kRun;
			if (position == 0 && isThere) [[unlikely]]
			{
				if (_count != 0)
					*_kindsAt = _kinds;
				_kindsAt = _word++;
				_kinds = 0;
			}
			_kinds |= static_cast<std::uint64_t>(kind % kNothing) << (2 * position);
			_count += isThere;
			std::memcpy(_word, coordinates.data(), sizeof coordinates);
			_word += kWords[kind];
		}

	private:
		static constexpr std::size_t kNothing = 4;
		static constexpr std::array<std::uint8_t, kNothing + 1> kWords{2, 2, 6, 0, 0};

		PathData& _path;
		std::uint64_t* _word;    ///< Where the next goes.
		std::uint64_t* _kindsAt; ///< Where the kinds of the last run go.
		std::uint64_t _kinds;
		std::uint32_t _count;
	};

	/// Gives unused memory back.
	void Compact() noexcept
	{
		_words.Compact();
	}

	Result<void> CopyFrom(const PathData& other) noexcept
	{
		ORVAN_TRY(_words.CopyFrom(other._words));
		_kindsAt = other._kindsAt;
		_count = other._count;
		return {};
	}

	/// The room that the commands take.
	std::size_t CountBytes() const noexcept
	{
		return _words.GetCount() * sizeof(std::uint64_t);
	}

	/// A hash of the commands.
	std::uint64_t GetHash() const noexcept
	{
		return HashBytes({reinterpret_cast<const char*>(_words.begin()), CountBytes()});
	}

	/// The commands where they stand; good until the next change.
	SVGPathView GetView() const noexcept
	{
		return {_words.begin(), _count};
	}

	/// The commands in an array.
	Result<BaseArray<SVGPathCommand>> GetCommands() const noexcept
	{
		BaseArray<SVGPathCommand> commands;
		ORVAN_TRY(commands.Reserve(_count));
		for (const SVGPathCommand& command : GetView())
			IgnoreResult(commands.Append(command));
		return commands;
	}

	/// Adds a command in the public form; false when it is of no kind.
	Result<bool> AppendCommand(const SVGPathCommand& command) noexcept
	{
		switch (command.type)
		{
		case SVGPathCommandType::move:
		case SVGPathCommandType::line:
			ORVAN_TRY(Append(command.type, command.points[2]));
			return true;
		case SVGPathCommandType::cubic:
			ORVAN_TRY(Append(command.type, command.points[0], command.points[1], command.points[2]));
			return true;
		case SVGPathCommandType::close:
			ORVAN_TRY(Append(command.type));
			return true;
		}
		return false;
	}

private:
	static constexpr std::uint32_t kRun = SVGPathView::kRun;
	static constexpr std::size_t kFirstWords = 64;

	static constexpr std::size_t kMostWords = 6;

	void BeginRun() noexcept
	{
		_kindsAt = static_cast<std::uint32_t>(_words.GetCount());
		*_words.AppendUninitialized(1) = 0;
	}

	/// Makes room for that many more words.
	Result<void> Grow(std::size_t needed) noexcept
	{
		// Positions are kept in 32 bits; a path that large would take 32 GiB.
		const std::size_t count = _words.GetCount();
		if (count > std::numeric_limits<std::uint32_t>::max() / 2)
			return OutOfMemoryError();
		return _words.Reserve(std::max({kFirstWords, 2 * count, count + needed}));
	}

	BaseArray<std::uint64_t> _words;
	std::uint32_t _kindsAt = 0; ///< Where the kinds of the last run stand.
	std::uint32_t _count = 0;
};

} // namespace orvan::svg
