// SPDX-License-Identifier: MIT
/// What a batch works through, as one list that is the same every time.
#pragma once

#include "batch/archive.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::batch
{

/// One drawing.
struct Input
{
	std::string name;       ///< What rows call it: its path, or that of its archive, a slash, and its name there.
	std::string path;       ///< The file, or the archive.
	std::string place = {}; ///< Where in the archive; empty for a file by itself; "!" and why for what cannot be read.
};

/// Inputs as bytes that another process makes inputs of again: texts, each with a zero behind it, which none of them
/// has inside.
std::string PackInputs(const std::vector<Input>& inputs);

/// Throws `std::invalid_argument` for bytes that `PackInputs` has not made.
std::vector<Input> UnpackInputs(std::string_view bytes);

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
/// What has gone when its turn comes, a line of a list that names nothing, a list or folder that cannot be read and an
/// archive that is no ordinary file are inputs that cannot be read. Used by one thread at a time.
class InputList
{
public:
	/// Throws `MissingSource` for sources that are none; those in lists are looked at when their turn comes.
	explicit InputList(const std::vector<std::string>& sources);

	/// The next input; none at the end.
	std::optional<Input> Next();

	/// The next inputs, so many unless the end comes before.
	std::vector<Input> Take(std::size_t count);

private:
	enum class Kind
	{
		asked,   ///< Anything that a source may be.
		found,   ///< A path of something that was there.
		drawing, ///< A drawing in a folder: nobody looks at it before it is read.
	};

	/// A source to come.
	struct Pending
	{
		std::string source;
		Kind kind;
	};

	void Open(const Pending& pending);
	void OpenFolder(const std::string& path);
	void OpenPattern(const std::string& pattern);
	void OpenList(const std::string& path);
	void OpenArchive(const std::string& path);
	void AddPending(const std::vector<std::string>& sources, Kind kind);

	std::vector<Pending> _pending;     ///< The next one last.
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
