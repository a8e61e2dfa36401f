// SPDX-License-Identifier: MIT
#include "importer/findings.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

namespace orvan::svg
{

Result<String> DescribeRefusedValue(std::string_view attribute, std::string_view text) noexcept
{
	constexpr std::size_t kLongest = 200;
	std::size_t length = std::min(text.size(), kLongest);
	while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xc0) == 0x80)
		length--; // Not within a character.
	BaseArray<char> message;
	for (const std::string_view part :
		 {std::string_view("Invalid value of SVG attribute (or property) \""), attribute, std::string_view("\": \""),
		  text.substr(0, length), std::string_view(length < text.size() ? "…\"" : "\"")})
		ORVAN_TRY(message.AppendAll(part.data(), part.size()));
	return String::Create({message.begin(), message.GetCount()});
}

Result<void> FindingList::Add(SVGFindingLevel level, const FindingPlace& place, std::string_view message) noexcept
{
	if (_count++ >= SVGImportReport::kMaxFindings && level != SVGFindingLevel::critical)
		return {};
	SVGImportFinding finding;
	finding.level = level;
	finding.elementTag = ORVAN_TRY(String::Create(place.elementTag));
	finding.elementId = place.elementId;
	finding.attribute = ORVAN_TRY(String::Create(place.attribute));
	finding.message = ORVAN_TRY(String::Create(message));
	ORVAN_TRY(_places.Append(place.where));
	return _findings.Append(std::move(finding));
}

Result<void> FindingList::MoveTo(SVGImportReport& report, std::string_view parsed, std::string_view original,
								 const PositionMap& positions) noexcept
{
	// In the order of the text, so that its lines are counted once.
	BaseArray<std::pair<std::size_t, std::size_t>> offsets; // In the original text, with the finding's number.
	for (std::size_t i = 0; i < _places.GetCount(); i++)
	{
		const char* const where = _places[i];
		const bool isInside = where != nullptr && !std::less<>()(where, parsed.data()) &&
							  !std::less<>()(parsed.data() + parsed.size(), where);
		if (!isInside)
			continue;
		const std::size_t offset = positions.ToOriginal(static_cast<std::size_t>(where - parsed.data()));
		ORVAN_TRY(offsets.Append({std::min(offset, original.size()), i}));
	}
	std::sort(offsets.begin(), offsets.end());
	std::int64_t line = 1;
	std::size_t lineStart = 0;
	std::size_t reached = 0;
	for (const auto& [offset, number] : offsets)
	{
		while (const void* found = std::memchr(original.data() + reached, '\n', offset - reached))
		{
			line++;
			lineStart = reached = static_cast<std::size_t>(static_cast<const char*>(found) - original.data()) + 1;
		}
		reached = offset;
		_findings[number].line = line;
		_findings[number].column = static_cast<std::int64_t>(offset - lineStart) + 1;
	}
	report.findings = std::move(_findings);
	report.findingCount = _count;
	return {};
}

} // namespace orvan::svg
