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

	/// Appends a command for which there is room, or nothing if it is not there, without a branch that depends on
	/// either: of a row of commands nobody foresees the next. The coordinates that the type has stand first.
	void AppendInRoom(SVGPathCommandType type, const std::array<double, 6>& coordinates, bool isThere) noexcept
	{
		constexpr std::array<std::uint8_t, 4> kWords{2, 2, kMostWords, 0};
		const std::uint32_t position = _count % kRun;
		if (position == 0 && isThere)
			BeginRun();
		_words[_kindsAt] |= static_cast<std::uint64_t>(isThere ? type : SVGPathCommandType::move) << (2 * position);
		_count += isThere;
		const std::size_t words = isThere ? kWords[static_cast<std::size_t>(type)] : 0;
		std::memcpy(_words.AppendUninitialized(words), coordinates.data(), sizeof coordinates);
	}

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
