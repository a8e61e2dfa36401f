// SPDX-License-Identifier: MIT
#include "command_line.h"
#include "console.h"
#include "finding_report.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace orvan::program
{
namespace
{
struct RuleText
{
	Rule rule;
	const char* id;
	const char* level;
	const char* description;
};

/// In the order of `Rule`, whose numbers are the results' rule indices.
constexpr std::array kRules = {
	RuleText{Rule::unreadableFile, "unreadable-file", "error", "The file cannot be read."},
	RuleText{Rule::refusedFile, "refused-file", "error", "The content of the file was refused."},
	RuleText{Rule::noSvgElement, "no-svg-element", "error", "The file holds no svg element."},
	RuleText{Rule::ignoredValue, "ignored-value", "warning", "The value of an attribute or property was left out."},
	RuleText{Rule::ignoredContent, "ignored-content", "warning", "Something in the file was left out."},
};

static_assert(std::ranges::all_of(kRules, [](const RuleText& text)
								  { return &text - kRules.data() == static_cast<std::ptrdiff_t>(text.rule); }));

/// The reference that names a file: a URL where its path is absolute, relative like the path otherwise, so that a
/// reader finds the file in a copy of the folder, too.
std::string ToUriReference(const std::string& path)
{
	if (path == "-")
		return "stdin";
	if (path.starts_with("file:"))
		return path;
	constexpr char kDigits[] = "0123456789ABCDEF";
	const std::string plain = std::filesystem::path(path).lexically_normal();
	std::string uri = plain.starts_with('/') ? "file://" : "";
	for (const char c : plain)
	{
		const auto byte = static_cast<unsigned char>(c);
		const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
							 std::string_view("-._~/").find(c) != std::string_view::npos;
		if (isPlain)
			uri += c;
		else
			uri += {'%', kDigits[byte / 16], kDigits[byte % 16]};
	}
	return uri;
}

/// Writes each result as it comes.
class SarifReport : public FindingReport
{
public:
	SarifReport() : _json(_console)
	{
		_json.BeginObject();
		_json.Member("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
		_json.Member("version", "2.1.0");
		_json.Key("runs");
		_json.BeginArray();
		_json.BeginObject();
		WriteTool();
		_json.NewLine(1);
		_json.Key("results");
		_json.BeginArray();
	}

	void AddFailure(const std::string& path, const Finding& finding) override
	{
		AddFinding(path, finding);
	}

	void AddFinding(const std::string& path, const Finding& finding) override
	{
		const RuleText& rule = kRules[static_cast<std::size_t>(finding.rule)];
		_json.NewLine(2);
		_json.BeginObject();
		_json.Member("ruleId", rule.id);
		_json.Member("ruleIndex", static_cast<int>(finding.rule));
		_json.Member("level", rule.level);
		WriteText("message", OneLine(finding.text));
		_json.Key("locations");
		_json.BeginArray();
		_json.BeginObject();
		WritePhysicalLocation(path, finding);
		WriteLogicalLocation(finding);
		_json.EndObject();
		_json.EndArray();
		_json.EndObject();
	}

	void Finish(const CheckCounts&) override
	{
		_json.EndArray();
		_json.NewLine(0);
		_json.EndObject();
		_json.EndArray();
		_json.EndObject();
		_json.Finish();
	}

private:
	void WriteText(const char* name, std::string_view text)
	{
		_json.Key(name);
		_json.BeginObject();
		_json.Member("text", text);
		_json.EndObject();
	}

	void WriteTool()
	{
		_json.NewLine(1);
		_json.Key("tool");
		_json.BeginObject();
		_json.Key("driver");
		_json.BeginObject();
		_json.Member("name", "orvan-svg");
		_json.Member("version", GetVersion());
		_json.Key("rules");
		_json.BeginArray();
		for (const RuleText& rule : kRules)
		{
			_json.NewLine(2);
			_json.BeginObject();
			_json.Member("id", rule.id);
			WriteText("shortDescription", rule.description);
			_json.EndObject();
		}
		_json.EndArray();
		_json.EndObject();
		_json.EndObject();
	}

	void WritePhysicalLocation(const std::string& path, const Finding& finding)
	{
		_json.Key("physicalLocation");
		_json.BeginObject();
		_json.Key("artifactLocation");
		_json.BeginObject();
		_json.Member("uri", std::string_view(ToUriReference(path)));
		_json.EndObject();
		if (finding.line > 0)
		{
			_json.Key("region");
			_json.BeginObject();
			_json.Member("startLine", finding.line);
			if (finding.column > 0)
				_json.Member("startColumn", finding.column);
			_json.EndObject();
		}
		_json.EndObject();
	}

	void WriteLogicalLocation(const Finding& finding)
	{
		if (finding.elementName.empty())
			return;
		_json.Key("logicalLocations");
		_json.BeginArray();
		_json.BeginObject();
		_json.Member("name", std::string_view(finding.elementId.empty() ? finding.elementName : finding.elementId));
		_json.Member("kind", "element");
		_json.EndObject();
		_json.EndArray();
	}

	ConsoleOutput _console;
	JsonWriter _json;
};
} // namespace

std::unique_ptr<FindingReport> MakeSarifReport()
{
	return std::make_unique<SarifReport>();
}

} // namespace orvan::program
