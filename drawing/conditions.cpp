// SPDX-License-Identifier: MIT
#include "conditions.h"

#include <algorithm>
#include <iterator>

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

/// The parts of a list between separators, blanks around them left out; `visit` says whether to go on.
template <typename Visit>
void Split(std::string_view list, bool (*isSeparator)(char) noexcept, Visit visit) noexcept
{
	std::size_t start = 0;
	for (std::size_t i = 0; i <= list.size(); i++)
	{
		if (i != list.size() && !isSeparator(list[i]))
			continue;
		std::string_view part = list.substr(start, i - start);
		while (!part.empty() && IsBlank(part.front()))
			part.remove_prefix(1);
		while (!part.empty() && IsBlank(part.back()))
			part.remove_suffix(1);
		if (!part.empty() && !visit(part))
			return;
		start = i + 1;
	}
}

bool IsComma(char c) noexcept
{
	return c == ',';
}

bool MatchesAny(std::string_view list, std::string_view language) noexcept
{
	bool isFound = false;
	Split(list, &IsComma,
		  [&](std::string_view tag)
		  {
			  isFound = Matches(tag, language);
			  return !isFound;
		  });
	return isFound;
}

/// What a picture can have of the features of SVG 1.1: everything that neither moves nor answers.
constexpr std::string_view kFeatures[] = {
	"SVG-static",
	"CoreAttribute",
	"Structure",
	"BasicStructure",
	"ContainerAttribute",
	"ConditionalProcessing",
	"Image",
	"Style",
	"ViewportAttribute",
	"Shape",
	"Text",
	"BasicText",
	"PaintAttribute",
	"BasicPaintAttribute",
	"OpacityAttribute",
	"GraphicsAttribute",
	"BasicGraphicsAttribute",
	"Marker",
	"Gradient",
	"Pattern",
	"Clip",
	"BasicClip",
	"Mask",
	"Filter",
	"BasicFilter",
	"XlinkAttribute",
};
constexpr std::string_view kFeaturePrefix = "http://www.w3.org/TR/SVG11/feature#";
/// How SVG 1.0 said it.
constexpr std::string_view kOldFeature = "org.w3c.svg.static";

bool IsFeature(std::string_view name) noexcept
{
	if (name == kOldFeature)
		return true;
	if (!name.starts_with(kFeaturePrefix))
		return false;
	name.remove_prefix(kFeaturePrefix.size());
	return std::find(std::begin(kFeatures), std::end(kFeatures), name) != std::end(kFeatures);
}

/// True when a list has features, and nothing else.
bool AreFeatures(std::string_view list) noexcept
{
	bool isAny = false;
	bool areAll = true;
	Split(list, &IsBlank,
		  [&](std::string_view name)
		  {
			  isAny = true;
			  areAll = IsFeature(name);
			  return areAll;
		  });
	return isAny && areAll;
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
	// An empty list fails its test too.
	if (find(Key::requiredExtensions) != nullptr)
		return false;
	const String* features = find(Key::requiredFeatures);
	return features == nullptr || AreFeatures(features->View());
}

} // namespace orvan::drawing
