// SPDX-License-Identifier: MIT
#include "conditions.h"

namespace orvan::drawing
{
namespace
{

char ToLower(char c) noexcept
{
	return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsBlank(char c) noexcept
{
	return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// True when a tag of a list is `language`, or one a part of the other up to a "-".
bool Matches(std::string_view tag, std::string_view language) noexcept
{
	std::size_t i = 0;
	while (i < tag.size() && i < language.size() && ToLower(tag[i]) == ToLower(language[i]))
		i++;
	const auto ends = [&](std::string_view text)
	{
		return i == text.size() || text[i] == '-';
	};
	return !tag.empty() && i > 0 && ends(tag) && ends(language);
}

bool MatchesAny(std::string_view list, std::string_view language) noexcept
{
	while (!list.empty())
	{
		const std::size_t comma = list.find(',');
		std::string_view tag = list.substr(0, comma);
		while (!tag.empty() && IsBlank(tag.front()))
			tag.remove_prefix(1);
		while (!tag.empty() && IsBlank(tag.back()))
			tag.remove_suffix(1);
		if (Matches(tag, language))
			return true;
		list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
	}
	return false;
}

} // namespace

bool PassesConditions(const DataDictionary& attributes, std::string_view language) noexcept
{
	using Key = SVGImportAttribute;
	const auto find = [&](Key key)
	{
		return attributes.Find<String>(static_cast<std::int32_t>(key));
	};
	if (const String* languages = find(Key::systemLanguage); languages != nullptr)
	{
		if (!MatchesAny(languages->View(), language))
			return false;
	}
	// An empty list of extensions or features fails its test too.
	if (find(Key::requiredExtensions) != nullptr)
		return false;
	const String* features = find(Key::requiredFeatures);
	return features == nullptr || !features->IsEmpty();
}

} // namespace orvan::drawing
