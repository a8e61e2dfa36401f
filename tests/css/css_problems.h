// SPDX-License-Identifier: MIT
#pragma once

#include "css/report.h"

#include <string>
#include <vector>

namespace orvan::css
{
/// Keeps what is reported.
class Problems final : public ReportSink
{
public:
	void Report(const Problem& problem) override
	{
		list.push_back(problem);
	}

	/// The places, parted by blanks.
	std::string Offsets() const
	{
		std::string offsets;
		for (const Problem& problem : list)
			offsets += (offsets.empty() ? "" : " ") + std::to_string(problem.offset);
		return offsets;
	}

	std::vector<Problem> list;
};
} // namespace orvan::css
