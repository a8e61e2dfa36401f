// SPDX-License-Identifier: MIT
/// What `check` found, in the forms in which it can be asked for.
#pragma once

#include "document_loading.h"

#include <cstddef>
#include <memory>
#include <string>

namespace orvan::program
{

/// How much of each there was.
struct CheckCounts
{
	std::size_t loaded = 0;
	std::size_t failed = 0;
	std::int64_t findings = 0;
};

/// Takes what was found about each file, in the order of the files, and then the counts.
class FindingReport
{
public:
	virtual ~FindingReport() = default;

	/// A file, or another place, that failed.
	virtual void AddFailure(const std::string& path, const Finding& finding) = 0;
	/// Something that was left out of a file.
	virtual void AddFinding(const std::string& path, const Finding& finding) = 0;
	/// There is no more.
	virtual void Finish(const CheckCounts& counts) = 0;
};

/// A line for each failure and a summary in the last on standard output; findings on standard error.
std::unique_ptr<FindingReport> MakeTextReport(bool tellsFindings);

/// One JSON object.
std::unique_ptr<FindingReport> MakeJsonReport(bool tellsFindings);

/// A log of SARIF 2.1.0, the format of what static analysis finds.
std::unique_ptr<FindingReport> MakeSarifReport();

} // namespace orvan::program
