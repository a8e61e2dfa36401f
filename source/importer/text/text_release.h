// SPDX-License-Identifier: MIT
/// The memory of a text, given back while paths are made of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvan::svg
{

/// Paths take about as much room as the text that they are read from. So that there need not be room for both, the text
/// goes back to the system from its front on, as paths grow beyond an eighth of its size. What has gone reads as zeros:
/// whoever needs it after all, to tell what was refused and where, reads the text anew.
///
/// Only memory that is new to the process goes, as it would at the end of the load. What the C library keeps from one
/// load to the next stays: getting it back page by page would cost more than reading the paths.
class TextRelease
{
public:
	/// Lets nothing go.
	TextRelease() noexcept = default;

	/// Whether room for a text, which nothing was written to yet, is large and new to the process.
	static bool IsNew(std::span<const char> room) noexcept;

	/// For a text that can be read anew, in room that was new.
	explicit TextRelease(std::span<char> text) noexcept;

	/// Paths have grown by as many bytes, and nothing before `place` is needed to go on. A place that is not in the
	/// text, as in a value whose references were replaced, counts when the next one does.
	void NoteGrowth(std::size_t bytes, const char* place) noexcept
	{
		_grown += bytes;
		if (_grown > _allowed) [[unlikely]]
			Release(place);
	}

	/// From now on nothing more goes.
	void Stop() noexcept
	{
		_allowed = SIZE_MAX;
	}

	bool HasReleased() const noexcept
	{
		return _hasReleased;
	}

private:
	void Release(const char* place) noexcept;

	std::span<char> _text;
	std::size_t _next = 0; ///< Where in the text what has not been looked at begins.
	std::size_t _grown = 0;
	std::size_t _allowed = SIZE_MAX;
	bool _hasReleased = false;
};

} // namespace orvan::svg
