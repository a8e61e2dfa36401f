// SPDX-License-Identifier: MIT
#include "finding_report.h"

#include "console.h"

namespace orvan::program
{
namespace
{
class TextReport : public FindingReport
{
public:
	explicit TextReport(bool tellsFindings) : _tellsFindings(tellsFindings)
	{
	}

	void AddFailure(const std::string& path, const Finding& finding) override
	{
		Print(Describe(path, finding) + '\n');
	}

	void AddFinding(const std::string& path, const Finding& finding) override
	{
		PrintError("WARNING: " + Describe(path, finding));
	}

	void Finish(const CheckCounts& counts) override
	{
		Print(std::to_string(counts.loaded) + " loaded, " + std::to_string(counts.failed) + " failed" +
			  (_tellsFindings ? ", " + std::to_string(counts.findings) + " findings\n" : "\n"));
	}

private:
	const bool _tellsFindings;
};

/// Writes each failure as it comes, so that the list needs no memory and a reader sees it grow. Findings, a second list
/// of the same object, wait until there are no more failures.
class JsonReport : public FindingReport
{
public:
	explicit JsonReport(bool tellsFindings) : _tellsFindings(tellsFindings), _json(_console), _findings(_keptFindings)
	{
		_json.BeginObject();
		_json.NewLine(1);
		_json.Key("failures");
		_json.BeginArray();
	}

	void AddFailure(const std::string& path, const Finding& finding) override
	{
		Write(_json, path, finding, "reason");
	}

	void AddFinding(const std::string& path, const Finding& finding) override
	{
		Write(_findings, path, finding, "message");
	}

	void Finish(const CheckCounts& counts) override
	{
		_json.EndArray();
		if (_tellsFindings)
		{
			_json.NewLine(1);
			_json.Key("findings");
			_json.BeginArray();
			_keptFindings.HandOver(_console);
			_json.EndArray();
		}
		_json.NewLine(1);
		_json.Member("loaded", counts.loaded);
		_json.NewLine(1);
		_json.Member("failed", counts.failed);
		if (_tellsFindings)
		{
			_json.NewLine(1);
			_json.Member("findingCount", counts.findings);
		}
		_json.NewLine(0);
		_json.EndObject();
		_json.Finish();
	}

private:
	static void Write(JsonWriter& json, const std::string& path, const Finding& finding, const char* textName)
	{
		json.NewLine(2);
		json.BeginObject();
		json.Member("path", std::string_view(path));
		WriteFinding(json, finding, textName);
		json.EndObject();
	}

	const bool _tellsFindings;
	ConsoleOutput _console;
	JsonWriter _json;
	KeptOutput _keptFindings;
	JsonWriter _findings;
};
} // namespace

std::unique_ptr<FindingReport> MakeTextReport(bool tellsFindings)
{
	return std::make_unique<TextReport>(tellsFindings);
}

std::unique_ptr<FindingReport> MakeJsonReport(bool tellsFindings)
{
	return std::make_unique<JsonReport>(tellsFindings);
}

} // namespace orvan::program
