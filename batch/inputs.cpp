// SPDX-License-Identifier: MIT
#include "batch/inputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <glob.h>
#include <iterator>
#include <utility>

namespace orvan::batch
{
namespace
{
namespace fs = std::filesystem;

bool IsDrawing(const std::string& path)
{
	return path.ends_with(".svg") || path.ends_with(".svgz");
}

bool IsPattern(const std::string& source)
{
	return source.find_first_of("*?[") != source.npos;
}

/// What there is to open in a source's place; throws for what is none.
std::vector<std::string> Match(const std::string& pattern)
{
	if (pattern.find("**") != pattern.npos)
		throw MissingSource(pattern + ": a folder is searched with all below by its name alone.");
	glob_t found = {};
	const int status = glob(pattern.c_str(), 0, nullptr, &found);
	std::vector<std::string> paths;
	for (std::size_t i = 0; status == 0 && i < found.gl_pathc; i++)
		paths.emplace_back(found.gl_pathv[i]);
	globfree(&found);
	if (paths.empty())
		throw MissingSource("Nothing is called " + pattern + ".");
	std::ranges::sort(paths); // By bytes, whatever the language.
	return paths;
}

void Require(const std::string& source)
{
	const std::string path = source.starts_with('@') ? source.substr(1) : source;
	std::error_code ignored;
	if (fs::exists(path, ignored))
	{
		if (source.starts_with('@') && fs::is_directory(path, ignored))
			throw MissingSource(path + " is a folder and no list.");
		return;
	}
	if (source.starts_with('@') || !IsPattern(path))
		throw MissingSource("There is no " + path + ".");
	Match(path);
}

/// Absolute, because whoever reads it may stand in another folder.
std::string MakeAbsolute(const std::string& path)
{
	return fs::absolute(path).lexically_normal();
}

/// What stands in the place of something that cannot be read.
Input MakeUnreadable(const std::string& path, const std::string& why)
{
	return {path, path, '!' + why};
}

} // namespace

std::string PackInputs(const std::vector<Input>& inputs)
{
	std::string bytes;
	for (const Input& input : inputs)
	{
		for (const std::string* text : {&input.name, &input.path, &input.place})
			bytes.append(*text) += '\0';
	}
	return bytes;
}

std::vector<Input> UnpackInputs(std::string_view bytes)
{
	const auto take = [&bytes]
	{
		const std::size_t end = bytes.find('\0');
		if (end == bytes.npos)
			throw std::invalid_argument("These are no inputs.");
		std::string text(bytes.substr(0, end));
		bytes.remove_prefix(end + 1);
		return text;
	};
	std::vector<Input> inputs;
	while (!bytes.empty())
	{
		Input& input = inputs.emplace_back();
		for (std::string* text : {&input.name, &input.path, &input.place})
			*text = take();
	}
	return inputs;
}

InputList::InputList(const std::vector<std::string>& sources)
{
	for (const std::string& source : sources)
		Require(source);
	AddPending(sources, Kind::asked);
}

void InputList::AddPending(const std::vector<std::string>& sources, Kind kind)
{
	std::transform(sources.rbegin(), sources.rend(), std::back_inserter(_pending),
				   [kind](const std::string& source) {
					   return Pending{source, kind};
				   });
}

std::optional<Input> InputList::Next()
{
	while (true)
	{
		while (_archive)
		{
			std::optional<ArchiveMember> member = _archive->Next();
			if (!member)
				_archive.reset();
			else if (member->name.empty())
				return Input{_archivePath, _archivePath, std::move(member->place)};
			else if (IsDrawing(member->name))
				return Input{_archivePath + '/' + member->name, _archivePath, std::move(member->place)};
		}
		if (_pending.empty())
			return std::nullopt;
		const Pending next = std::move(_pending.back());
		_pending.pop_back();
		try
		{
			Open(next);
		}
		catch (const std::runtime_error& error)
		{
			return MakeUnreadable(next.source, error.what());
		}
		if (_found)
			return std::exchange(_found, std::nullopt);
	}
}

std::vector<Input> InputList::Take(std::size_t count)
{
	std::vector<Input> inputs;
	while (inputs.size() < count)
	{
		std::optional<Input> input = Next();
		if (!input)
			break;
		inputs.push_back(std::move(*input));
	}
	return inputs;
}

void InputList::Open(const Pending& pending)
{
	const std::string& source = pending.source;
	const bool isAsked = pending.kind == Kind::asked;
	if (isAsked && source.starts_with('@'))
		return OpenList(source.substr(1));
	if (pending.kind == Kind::drawing)
	{
		_found = Input{source, source};
		return;
	}
	std::error_code ignored;
	const fs::file_status status = fs::status(source, ignored);
	if (fs::is_directory(status))
		return OpenFolder(source);
	// Links that lead nowhere have a row, too: somebody put them there.
	if (isAsked && !fs::exists(status) && !fs::is_symlink(fs::symlink_status(source, ignored)))
	{
		if (!IsPattern(source))
			throw MissingSource("There is no " + source + ".");
		return OpenPattern(source);
	}
	const std::string path = MakeAbsolute(source);
	if (!Archive::IsArchive(path))
		_found = Input{path, path};
	else if (fs::exists(status) && !fs::is_regular_file(status))
		_found = MakeUnreadable(path, "It is not an ordinary file."); // A pipe would have the whole run wait.
	else
		OpenArchive(path);
}

void InputList::OpenArchive(const std::string& path)
{
	try
	{
		_archive = std::make_unique<Archive>(path);
		_archivePath = path;
	}
	catch (const std::runtime_error& error)
	{
		_found = MakeUnreadable(path, error.what());
	}
}

void InputList::OpenFolder(const std::string& folder)
{
	const std::string path = MakeAbsolute(folder);
	std::vector<Pending> entries;
	std::error_code error;
	for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error))
	{
		std::error_code ignored;
		const std::string& entry = at->path().native();
		const bool isFolder = at->is_directory(ignored);
		if (isFolder ? !at->is_symlink(ignored) : Archive::IsArchive(entry))
			entries.push_back({entry, Kind::found});
		else if (!isFolder && IsDrawing(entry))
			entries.push_back({entry, Kind::drawing});
	}
	if (error)
		_found = MakeUnreadable(path, error.message());
	std::ranges::sort(entries, std::greater<>(), &Pending::source);
	std::ranges::move(entries, std::back_inserter(_pending));
}

void InputList::OpenPattern(const std::string& pattern)
{
	AddPending(Match(pattern), Kind::found);
}

void InputList::OpenList(const std::string& path)
{
	std::ifstream file(path);
	std::vector<std::string> lines;
	for (std::string line; std::getline(file, line);)
	{
		if (line.find_first_not_of(" \t\r") != line.npos)
			lines.push_back(line);
	}
	if (!file.eof())
		throw std::runtime_error(path + " cannot be read.");
	AddPending(lines, Kind::asked);
}

std::string InputReader::Read(const Input& input)
{
	if (input.place.empty())
		return ReadWholeFile(input.path);
	if (input.place.starts_with('!'))
		throw std::runtime_error(input.place.substr(1));
	if (!_archive || _path != input.path)
	{
		_archive = std::make_unique<Archive>(input.path);
		_path = input.path;
	}
	return _archive->Read(input.place);
}

} // namespace orvan::batch
