// SPDX-License-Identifier: MIT
/// The corpus of edits: texts, what is done to them, and what must be saved then; see corpus/edits/README.md.
#include "saving.h"
#include "support/corpus_files.h"
#include "svg_edit.h"

#include <sstream>

namespace orvan
{
namespace
{

namespace fs = std::filesystem;
using test::ReadFile;

/// Bytes as visible characters: "\x0d" for what is none.
std::string Show(std::string_view bytes)
{
	std::string shown;
	for (const char c : bytes)
	{
		const auto byte = static_cast<unsigned char>(c);
		const bool isVisible = (byte >= 0x20 && byte < 0x7f && c != '\\') || c == '\n' || c == '\t';
		shown += isVisible ? std::string(1, c)
						   : std::string("\\x") + "0123456789abcdef"[byte >> 4] + "0123456789abcdef"[byte & 15];
	}
	return shown;
}

std::string ToBytes(const std::string& shown)
{
	std::string bytes;
	for (std::size_t i = 0; i < shown.size(); i++)
	{
		const bool isNumber = shown.compare(i, 2, "\\x") == 0;
		bytes += isNumber ? static_cast<char>(std::stoi(shown.substr(i + 2, 2), nullptr, 16)) : shown[i];
		i += isNumber ? 3 : 0;
	}
	return bytes;
}

std::vector<std::string> Split(const std::string& text, const std::string& separator)
{
	std::vector<std::string> parts;
	for (std::size_t at = 0;;)
	{
		const std::size_t end = text.find(separator, at);
		parts.push_back(text.substr(at, end - at));
		if (end == std::string::npos)
			return parts;
		at = end + separator.size();
	}
}

class EditCorpus : public Saving, public testing::WithParamInterface<std::string>
{
protected:
	/// What is saved after the steps of one line: "set rect fill=red; remove #a; save rewrite 2 3".
	static std::string Run(const std::string& text, bool isComplete, const std::string& steps)
	{
		const SVGDocumentRef document = Open(text, isComplete);
		Must(Cast<SVGDocumentEditInterface>(document)->SetUndoLimit(9));
		SVGSaveOptions options;
		std::string said;
		for (const std::string& step : Split(steps, "; "))
		{
			std::istringstream words(step);
			std::string verb;
			words >> verb;
			if (verb == "save")
			{
				std::string mode;
				words >> mode;
				options.mode = mode == "rewrite" ? SVGSaveMode::rewrite : SVGSaveMode::edit;
				words >> options.indentation >> options.precision;
				if (words.fail())
					options.precision = SVGSaveOptions::kExact;
				continue;
			}
			const auto edits = Cast<SVGDocumentEditInterface>(document);
			const bool isRemembered = verb != "undo" && verb != "repair";
			if (isRemembered)
				Must(edits->BeginTransaction());
			const std::string trouble = Take(document, verb, words, said);
			if (isRemembered)
				Must(edits->CommitTransaction());
			said += trouble == "no error" ? "" : step + ": " + trouble + '\n';
		}
		return said + Changed(Show(text), Show(SavedText(document, options)));
	}

private:
	/// The lines that are no longer as they were, behind the number of the first of them, and how many they stand for.
	static std::string Changed(const std::string& before, const std::string& after)
	{
		if (before == after)
			return "as it was";
		std::vector<std::string> old = Split(before, "\n");
		std::vector<std::string> lines = Split(after, "\n");
		std::size_t first = 0;
		while (first < std::min(old.size(), lines.size()) && old[first] == lines[first])
			first++;
		while (std::min(old.size(), lines.size()) > first && old.back() == lines.back())
		{
			old.pop_back();
			lines.pop_back();
		}
		std::string text = std::to_string(first + 1) + ", " + std::to_string(old.size() - first) + " lines:";
		for (; first < lines.size(); first++)
			text += '\n' + lines[first];
		return text;
	}

	/// The rest of the words as one, without the blank before it.
	static std::string Rest(std::istringstream& words)
	{
		std::string rest;
		std::getline(words >> std::ws, rest);
		return rest;
	}

	static std::string Take(const SVGDocumentRef& document, const std::string& verb, std::istringstream& words,
							std::string& said)
	{
		const auto source = SourceOf(document);
		const auto edits = Cast<SVGDocumentEditInterface>(document);
		if (verb == "undo")
			return MessageOf(edits->Undo());
		if (verb == "repair")
		{
			const auto repairs = source->Repair();
			if (!repairs.IsOk())
				return MessageOf(repairs);
			for (const SVGRepair& repair : repairs.GetValue())
			{
				said += std::to_string(repair.line) + ':' + std::to_string(repair.column) + ' ' +
						std::string(repair.elementTag) + '#' + std::string(repair.elementId) + ' ' +
						std::string(repair.attribute) + " '" + std::string(repair.before) + "' '" +
						std::string(repair.after) + "'\n";
			}
			return "no error";
		}
		std::string selector;
		words >> selector;
		const SVGElementRef element = First(document, selector);
		const auto edited = Cast<SVGElementEditInterface>(element);
		if (verb == "remove")
			return MessageOf(edited->Remove());
		if (verb == "rename")
			return MessageOf(edits->RenameId(element, Text(Rest(words))));
		if (verb == "tell") // As it is told, not as it stands.
		{
			const std::string name = Rest(words);
			const auto value = source->GetAttributeText(element, Text(name));
			said += name + " is " + (value.IsOk() ? Show(std::string(value.GetValue())) : MessageOf(value)) + '\n';
			return "no error";
		}
		if (verb == "path")
			return MessageOf(Cast<SVGPathEditInterface>(element)->SetPathData(Text(Rest(words))));
		if (verb == "move" || verb == "make") // Into what, and before which of its children.
		{
			std::string parent;
			std::int64_t place = 0;
			words >> parent >> place;
			SVGElementRef child = element;
			if (verb == "make") // One like this.
			{
				const std::string tag(Must(source->GetTag(element)));
				const std::string name = tag.substr(tag.find(':') + 1);
				child = Make("svg" + (name == "g" ? "group" : name) + "element");
				IgnoreResult(Cast<SVGElementEditInterface>(child)->CopyAttributes(element));
			}
			const auto into = Cast<SVGElementEditInterface>(First(document, parent));
			return MessageOf(into->InsertChildBefore(child, into->GetChildAt(place)));
		}
		const std::string assignment = Rest(words);
		const std::size_t sign = assignment.find('=');
		const String name = Text(assignment.substr(0, sign));
		if (verb == "unset")
			return MessageOf(source->RemoveAttributeText(element, name));
		EXPECT_EQ("set", verb);
		return MessageOf(source->SetAttributeText(element, name, Text(ToBytes(assignment.substr(sign + 1)))));
	}
};

TEST_P(EditCorpus, IsSavedAsItWas)
{
	const fs::path file = fs::path(ORVAN_CORPUS) / "edits" / (GetParam() + ".txt");
	const std::string stored = ReadFile(file);
	std::string found;
	std::string text;
	bool isComplete = true;
	for (const std::string& section : Split("\n" + stored, "\n==== "))
	{
		if (section.empty())
			continue;
		const std::size_t end = std::min(section.find('\n'), section.size());
		const std::string steps = section.substr(0, end);
		found += "==== " + steps + '\n';
		if (steps.starts_with("text") || steps.starts_with("file "))
		{
			isComplete = !steps.ends_with(" plainly");
			text = section.substr(std::min(end + 1, section.size()));
			found += text + '\n';
			text = steps.starts_with("text") ? ToBytes(text) : ReadFile(fs::path(ORVAN_CORPUS) / Split(steps, " ")[1]);
			continue;
		}
		found += Run(text, isComplete, steps) + '\n';
	}
	if (std::getenv("ORVAN_REWRITE_CORPUS") != nullptr)
		std::ofstream(file, std::ios::binary) << found;
	EXPECT_EQ(stored, found);
}

INSTANTIATE_TEST_SUITE_P(Files, EditCorpus, testing::ValuesIn(test::NamesIn(fs::path(ORVAN_CORPUS) / "edits", ".txt")),
						 test::TestNameOf);

} // namespace
} // namespace orvan
