// SPDX-License-Identifier: MIT
// Saves files of which nothing was changed, and with --edits also with one edit of each kind:
// save_sweep [--edits] PATH…
// Tells what differs, and in the end how much was looked at. Ends with an error when anything was not as it must be.

#include "document.h"
#include "save_check.h"

#include "orvan/hash.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>

using namespace orvan;
using fuzz::EditKind;

namespace
{
struct Counts
{
	std::size_t files = 0;
	std::size_t withoutSource = 0;
	std::size_t changedBytes = 0;
	std::map<EditKind, std::size_t> done, refused, notSmall, different;
	std::size_t pinned = 0; ///< Edits that took more lines for the sake of style sheets.
};

constexpr const char* kNames[] = {"color",   "transform", "path",     "id",       "attribute", "width",
								  "removal", "move",      "addition", "clearing", "classes"};

void CheckEdits(const std::string& path, const std::string& bytes, Counts& counts)
{
	const std::uint64_t number = HashBytes(path) >> 8;
	for (int i = 0; i < static_cast<int>(EditKind::count); i++)
	{
		const auto kind = static_cast<EditKind>(i);
		const SVGDocumentRef document = fuzz::OpenForEditing(bytes);
		if (!fuzz::EditDocument(document, kind, number))
			continue;
		counts.done[kind]++;
		std::string reason;
		const std::string saved = fuzz::Save(document, &reason);
		const auto tell = [&](const char* what)
		{
			std::printf("%s: %s: %s %s\n", path.c_str(), kNames[i], what, reason.c_str());
		};
		if (saved.empty())
		{
			counts.refused[kind]++;
			tell("refused:");
			continue;
		}
		const SVGDocumentRef again = fuzz::OpenForEditing(saved);
		if (fuzz::DescribeSaved(document->GetRootElement()) != fuzz::DescribeSaved(again->GetRootElement()))
		{
			counts.different[kind]++;
			tell("loads differently");
		}
		if (!fuzz::IsSmall(kind, fuzz::CompareLines(bytes, saved)))
		{
			if (bytes.find("<style") != bytes.npos)
				counts.pinned++;
			else
			{
				counts.notSmall[kind]++;
				tell("touches other lines");
			}
		}
	}
}

void CheckFile(const std::string& path, bool withEdits, Counts& counts)
{
	std::ifstream file(path, std::ios::binary);
	const std::string bytes(std::istreambuf_iterator<char>(file), {});
	counts.files++;
	for (const bool isComplete : {true, false})
	{
		const SVGDocumentRef document = fuzz::OpenForEditing(bytes, isComplete);
		if (!Cast<SVGDocumentSourceInterface>(document)->HasSource())
		{
			if (isComplete)
			{
				counts.withoutSource++;
				std::printf("%s: does not load\n", path.c_str());
			}
			continue;
		}
		if (fuzz::Save(document) != bytes)
		{
			counts.changedBytes++;
			std::printf("%s: saved with other bytes (%s)\n", path.c_str(), isComplete ? "complete" : "plain");
		}
		if (isComplete && withEdits)
			CheckEdits(path, bytes, counts);
	}
}
} // namespace

int main(int count, char** arguments)
{
	fuzz::LoadDocument("<svg/>"); // Loads the module.
	Counts counts;
	bool withEdits = false;
	for (int i = 1; i < count; i++)
	{
		const std::string argument = arguments[i];
		if (argument == "--edits")
			withEdits = true;
		else if (!std::filesystem::is_directory(argument))
			CheckFile(argument, withEdits, counts);
		else
		{
			for (const auto& entry : std::filesystem::recursive_directory_iterator(argument))
			{
				const auto extension = entry.path().extension();
				if (entry.is_regular_file() && !entry.is_symlink() && (extension == ".svg" || extension == ".svgz"))
					CheckFile(entry.path().string(), withEdits, counts);
			}
		}
	}
	std::printf("%zu files, %zu not loaded, %zu saved with other bytes\n", counts.files, counts.withoutSource,
				counts.changedBytes);
	bool isGood = counts.changedBytes == 0;
	for (const auto& [kind, done] : counts.done)
	{
		std::printf("%s: %zu edits, %zu refused, %zu touch other lines, %zu load differently\n",
					kNames[static_cast<int>(kind)], done, counts.refused[kind], counts.notSmall[kind],
					counts.different[kind]);
		isGood &= counts.notSmall[kind] == 0 && counts.different[kind] == 0;
	}
	std::printf("%zu edits took more lines for the sake of a style sheet\n", counts.pinned);
	return isGood ? 0 : 1;
}
