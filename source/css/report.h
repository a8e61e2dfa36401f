// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvan::css
{
/// Something that was dropped because it is not understood, or because it is over a bound.
struct Problem
{
	std::uint32_t source;     ///< The text it stands in: the number that the caller gave with the text.
	std::size_t offset;       ///< The byte of that text where it begins.
	std::string_view message; ///< What was dropped and why, in English, as a literal that lives as long as the process.
};

/// Takes what is reported while texts are read, in the order of the text. There are never more reports than bytes.
class ReportSink
{
public:
	/// What it throws passes through the reader that reports.
	virtual void Report(const Problem& problem) = 0;

protected:
	~ReportSink() = default;
};
} // namespace orvan::css
