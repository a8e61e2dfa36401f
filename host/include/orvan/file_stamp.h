// SPDX-License-Identifier: MIT
/// What tells one content of a file from another without reading it.
///
///     const InputStream stream = ORVAN_TRY(url.OpenInputStream());
///     const FileStamp loaded = stream.GetStamp(); // Of the file that is read, whatever becomes of its name.
///     …
///     FileWatch::Start(url, &Reload, this, {.loaded = &loaded}); // A change since the opening counts as one.
#pragma once

#include <cstdint>

namespace orvan
{

/// A file at one moment: which file it is, how long, and when it was last changed. All zero when there is no file on
/// disk, as for files in memory. A plain value of 48 bytes.
struct FileStamp
{
	std::uint64_t device = 0;
	std::uint64_t inode = 0;
	std::int64_t size = 0;     ///< Bytes.
	std::int64_t modified = 0; ///< When the content was last written, in nanoseconds since 1970.
	std::int64_t changed = 0;  ///< When content or attributes were last changed, in nanoseconds since 1970.
	/// The file had been changed so short a time before that a further change may leave all of the above as it is: file
	/// systems take their time from a clock that moves in steps.
	bool isUncertain = false;

	/// True when the file may have other content than at the moment of `earlier`. Never false for a file that was
	/// changed in between; sometimes true for one that was not.
	bool MayDifferFrom(const FileStamp& earlier) const noexcept
	{
		return earlier.isUncertain || device != earlier.device || inode != earlier.inode || size != earlier.size ||
			   modified != earlier.modified || changed != earlier.changed;
	}
};

} // namespace orvan
