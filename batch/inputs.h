// SPDX-License-Identifier: MIT
/// What a batch works through, as one list that is the same every time.
#pragma once

#include "batch/archive.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvan::batch
{

/// One drawing.
struct Input
{
	std::string name;       ///< What rows call it: its path, or that of its archive, a slash, and its name there.
	std::string path;       ///< The file, or the archive.
	std::string place = {}; ///< Where in the archive; empty for a file by itself.
};

/// A source that is none.
class MissingSource : public std::runtime_error
{
public:
	using std::runtime_error::runtime_error;
};

/// Lists inputs one at a time, however many there are. A source is
/// - a folder: all drawings (".svg", ".svgz") and archives in it and below, by name; links to folders are not followed,
/// - an archive: its drawings, in its order; one that is damaged is itself an input, which cannot be read, behind those
///   that can be listed,
/// - any other file: a drawing,
/// - a pattern with "*", "?" or "[": what it matches, by name,
/// - "@FILE": the sources that stand in a file, one a line.
///
/// Used by one thread at a time.
class InputList
{
public:
	/// Throws `MissingSource` for sources that are none; those in lists are looked at when their turn comes.
	explicit InputList(const std::vector<std::string>& sources);

	/// The next input; none at the end. Throws `MissingSource`, and `std::runtime_error` for folders and
	/// lists that cannot be read.
	std::optional<Input> Next();

private:
	void Open(const std::string& source);
	void OpenFolder(const std::string& path);
	void OpenPattern(const std::string& pattern);
	void OpenList(const std::string& path);

	std::vector<std::string> _pending; ///< Sources to come, the next one last.
	std::unique_ptr<Archive> _archive; ///< The one that is being listed.
	std::string _archivePath;
	std::optional<Input> _found;
};

/// The bytes of inputs. Keeps the last archive open, because inputs of one come together. Throws `std::runtime_error`.
/// Used by one thread at a time.
class InputReader
{
public:
	std::string Read(const Input& input);

private:
	std::unique_ptr<Archive> _archive;
	std::string _path;
};

} // namespace orvan::batch
