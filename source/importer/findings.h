// SPDX-License-Identifier: MIT
/// What an import has to say about a file, collected while it runs.
#pragma once

#include "importer/text/position_map.h"
#include "svg_import.h"

#include <cstdint>
#include <string_view>

namespace orvan::svg
{

/// Where something was found. Places are kept as addresses in the text and turned into lines and columns at the end, in
/// one walk.
struct FindingPlace
{
	const char* where = nullptr; ///< In the text that is parsed; null when not known.
	std::string_view elementTag;
	String elementId;
	std::string_view attribute;
};

/// The message about a value that was refused; long values are cut.
Result<String> DescribeRefusedValue(std::string_view attribute, std::string_view text) noexcept;

/// The findings of one import. Making one fails for want of memory only.
class FindingList
{
public:
	/// Adds a finding; beyond `SVGImportReport::kMaxFindings` it is counted only.
	Result<void> Add(SVGFindingLevel level, const FindingPlace& place, std::string_view message) noexcept;

	std::int64_t GetCount() const noexcept
	{
		return _count;
	}

	/// Hands the findings over. `parsed` is the text that the addresses point into, `original` the one that places are
	/// told in, `positions` leads from one to the other.
	Result<void> MoveTo(SVGImportReport& report, std::string_view parsed, std::string_view original,
						const PositionMap& positions) noexcept;

private:
	BaseArray<SVGImportFinding> _findings;
	BaseArray<const char*> _places; ///< Of the findings.
	std::int64_t _count = 0;
};

} // namespace orvan::svg
