// SPDX-License-Identifier: MIT
#include "batch/options.h"

#include "batch/archive.h"
#include "batch/row.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>

namespace orvan::batch
{
namespace
{
namespace fs = std::filesystem;

constexpr int kFormat = 3; ///< Of shards and manifests.

/// What a name of a list stands for, by its place.
template <typename T>
std::optional<T> Find(std::span<const std::string_view> names, std::string_view name)
{
	const auto found = std::ranges::find(names, name);
	if (found == names.end())
		return std::nullopt;
	return static_cast<T>(found - names.begin());
}

std::string ToText(double number)
{
	char text[32];
	const auto [end, error] = std::to_chars(text, text + sizeof(text), number);
	return {text, end};
}

} // namespace

std::optional<Operation> FindOperation(std::string_view name)
{
	return Find<Operation>(kOperationNames, name);
}

std::optional<SVGNormalizedClips> FindClips(std::string_view name)
{
	return Find<SVGNormalizedClips>(kClipNames, name);
}

std::string FindFault(const BatchOptions& options)
{
	const auto isDistance = [](double number)
	{
		return std::isfinite(number) && number >= 0.0;
	};
	constexpr std::int64_t kLargestPicture = 16384;
	if (options.chunkSize < 1)
		return "A chunk has one input at least.";
	if (options.thumbnailSize < 1 || options.thumbnailSize > kLargestPicture)
		return "Thumbnails are 1 to 16384 pixels large.";
	if (!(options.deadline > 0.0) || options.memory < 0)
		return "The bounds of time and memory cannot be below zero.";
	const SVGNormalizeOptions& normalize = options.normalize;
	if (!isDistance(normalize.flattening) || !isDistance(normalize.grid) || !isDistance(normalize.precision) ||
		!(normalize.strokeTolerance > 0.0))
		return "Tolerances, sides and steps cannot be below zero.";
	if (!options.styleSheet.empty() && !options.isComplete)
		return "Style sheets are read by the complete import only.";
	return {};
}

std::string MakeManifest(const std::vector<std::string>& sources, const BatchOptions& options)
{
	std::string list;
	for (const std::string& source : sources)
		list += (list.empty() ? "" : ", ") + ToJson(source);
	const auto toJson = [](bool truth)
	{
		return std::string(truth ? "true" : "false");
	};
	const SVGNormalizeOptions& normalize = options.normalize;
	const bool outlines = normalize.strokes == SVGNormalizedStrokes::outlined;
	const std::pair<const char*, std::string> members[] = {
		{"format", std::to_string(kFormat)},
		{"version", ToJson(ORVAN_SVG_VERSION)},
		{"sources", '[' + list + ']'},
		{"chunk_size", std::to_string(options.chunkSize)},
		{"operation", ToJson(kOperationNames[static_cast<std::size_t>(options.operation)])},
		{"complete", toJson(options.isComplete)},
		{"tolerant", toJson(options.isTolerant)},
		{"style_sheet", ToJson(options.styleSheet)},
		{"size", std::to_string(options.thumbnailSize)},
		{"strokes", ToJson(outlines ? "outlined" : "kept")},
		{"stroke_tolerance", ToText(normalize.strokeTolerance)},
		{"clips", ToJson(kClipNames[static_cast<std::size_t>(options.clips)])},
		{"flatten", ToText(normalize.flattening)},
		{"grid", ToText(normalize.grid)},
		{"precision", ToText(normalize.precision)},
		{"deadline", ToText(options.deadline)},
		{"memory", std::to_string(options.memory)},
	};
	std::string text = "{";
	for (const auto& [name, value] : members)
		text += (text.size() > 1 ? ",\n " : "\n ") + ToJson(name) + ": " + value;
	return text + "\n}\n";
}

void BeginRun(const std::string& folder, const std::string& manifest)
{
	fs::create_directories(folder);
	const std::string path = folder + "/manifest.json";
	if (fs::exists(path))
	{
		if (ReadWholeFile(path) != manifest)
			throw std::invalid_argument(folder +
										" has the results of another run: other sources, options or versions.");
	}
	else
	{
		std::ofstream(path + ".part", std::ios::binary) << manifest;
		fs::rename(path + ".part", path);
		if (ReadWholeFile(path) != manifest)
			throw std::runtime_error(path + " cannot be written.");
	}
	std::vector<fs::path> left;
	for (const fs::directory_entry& entry : fs::directory_iterator(folder))
	{
		if (entry.is_directory() && entry.path().filename().native().find(".part") != std::string::npos)
			left.push_back(entry.path());
	}
	for (const fs::path& part : left)
	{
		// A worker of the interrupted run may still be writing: what has another name it can no longer put in its
		// place.
		std::error_code ignored;
		const fs::path old = part.native() + ".old";
		fs::rename(part, old, ignored);
		fs::remove_all(old);
	}
}

std::string GetChunkFolder(const std::string& folder, std::int64_t first, std::int64_t chunkSize)
{
	std::string number = std::to_string(first / chunkSize);
	constexpr std::size_t kDigits = 8;
	number.insert(0, kDigits - std::min(kDigits, number.size()), '0');
	return folder + '/' + number;
}

} // namespace orvan::batch
