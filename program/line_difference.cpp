// SPDX-License-Identifier: MIT
#include "line_difference.h"

#include "console.h"

#include <algorithm>
#include <vector>

namespace orvan::program
{
namespace
{
std::vector<std::string_view> Split(std::string_view text)
{
	std::vector<std::string_view> lines;
	while (!text.empty())
	{
		const std::size_t end = std::min(text.find('\n'), text.size());
		lines.push_back(text.substr(0, end));
		text.remove_prefix(std::min(end + 1, text.size()));
	}
	return lines;
}

/// Where two texts come together again: the fewest lines to skip in both.
std::pair<std::size_t, std::size_t> FindNextCommon(const std::vector<std::string_view>& a, std::size_t i,
												   const std::vector<std::string_view>& b, std::size_t j)
{
	const std::size_t most = (a.size() - i) + (b.size() - j);
	for (std::size_t sum = 1; sum <= most; sum++)
	{
		for (std::size_t skipped = 0; skipped <= sum; skipped++)
		{
			const std::size_t inA = i + skipped;
			const std::size_t inB = j + sum - skipped;
			if (inA < a.size() && inB < b.size() && a[inA] == b[inB] && !a[inA].empty())
				return {inA, inB};
		}
	}
	return {a.size(), b.size()};
}

/// A line, of which only what is around [from, to) is shown when it is long.
std::string Excerpt(std::string_view line, std::size_t from, std::size_t to)
{
	constexpr std::size_t kAround = 40;
	constexpr std::size_t kShort = 160;
	if (line.size() <= kShort)
		return WholeLine(line);
	from = std::min(from, line.size()); // The first line that differs was longer.
	const std::size_t begin = from > kAround ? from - kAround : 0;
	const std::size_t end = std::min({to + kAround, begin + 2 * kShort, line.size()});
	return (begin > 0 ? "…" : "") + OneLine(line.substr(begin, end - begin), 2 * kShort) +
		   (end < line.size() ? "…" : "");
}
} // namespace

std::string DescribeDifference(std::string_view before, std::string_view after)
{
	const std::vector<std::string_view> a = Split(before);
	const std::vector<std::string_view> b = Split(after);
	std::string description;
	std::size_t i = 0;
	std::size_t j = 0;
	while (i < a.size() || j < b.size())
	{
		if (i < a.size() && j < b.size() && a[i] == b[j])
		{
			i++;
			j++;
			continue;
		}
		const auto [nextI, nextJ] = FindNextCommon(a, i, b, j);
		description += "@@ -" + std::to_string(i + 1) + " +" + std::to_string(j + 1) + " @@\n";
		const std::string_view first = i < nextI ? a[i] : std::string_view();
		const std::string_view second = j < nextJ ? b[j] : std::string_view();
		const std::size_t same = static_cast<std::size_t>(
			std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first - first.begin());
		for (; i < nextI; i++)
			description += '-' + Excerpt(a[i], same, same + 1) + '\n';
		for (; j < nextJ; j++)
			description += '+' + Excerpt(b[j], same, same + 1) + '\n';
	}
	return description;
}

} // namespace orvan::program
