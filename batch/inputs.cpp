// SPDX-License-Identifier: MIT
#include "batch/inputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <glob.h>
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
		return;
	if (source.starts_with('@') || !IsPattern(path))
		throw MissingSource("There is no " + path + ".");
	Match(path);
}

} // namespace

InputList::InputList(const std::vector<std::string>& sources) : _pending(sources)
{
	for (const std::string& source : sources)
		Require(source);
	std::ranges::reverse(_pending);
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
		const std::string source = std::move(_pending.back());
		_pending.pop_back();
		Open(source);
		if (_found)
			return std::exchange(_found, std::nullopt);
	}
}

void InputList::Open(const std::string& source)
{
	if (source.starts_with('@'))
		return OpenList(source.substr(1));
	std::error_code ignored;
	const fs::file_status status = fs::status(source, ignored);
	if (fs::is_directory(status))
		return OpenFolder(source);
	// Links that lead nowhere have a row, too: somebody put them there.
	if (!fs::exists(status) && !fs::is_symlink(fs::symlink_status(source, ignored)))
	{
		if (!IsPattern(source))
			throw MissingSource("There is no " + source + ".");
		return OpenPattern(source);
	}
	// Absolute, because whoever reads it may stand in another folder.
	const std::string path = fs::absolute(source).lexically_normal();
	if (!Archive::IsArchive(path))
	{
		_found = Input{path, path};
		return;
	}
	try
	{
		_archive = std::make_unique<Archive>(path);
		_archivePath = path;
	}
	catch (const std::runtime_error&)
	{
		_found = Input{path, path, "0"}; // Whoever reads it says why.
	}
}

void InputList::OpenFolder(const std::string& path)
{
	std::vector<std::string> entries;
	std::error_code error;
	for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error))
	{
		std::error_code ignored;
		const std::string& entry = at->path().native();
		const bool isFolder = at->is_directory(ignored);
		if (isFolder ? !at->is_symlink(ignored) : IsDrawing(entry) || Archive::IsArchive(entry))
			entries.push_back(entry);
	}
	if (error)
		throw std::runtime_error(path + ": " + error.message());
	std::ranges::sort(entries, std::greater<>());
	_pending.insert(_pending.end(), entries.begin(), entries.end());
}

void InputList::OpenPattern(const std::string& pattern)
{
	const std::vector<std::string> paths = Match(pattern);
	_pending.insert(_pending.end(), paths.rbegin(), paths.rend());
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
	_pending.insert(_pending.end(), lines.rbegin(), lines.rend());
}

std::string InputReader::Read(const Input& input)
{
	if (input.place.empty())
		return ReadWholeFile(input.path);
	if (!_archive || _path != input.path)
	{
		_archive = std::make_unique<Archive>(input.path);
		_path = input.path;
	}
	return _archive->Read(input.place);
}

} // namespace orvan::batch
