// SPDX-License-Identifier: MIT
#include "attribute_tests.h"

#include "characters.h"
#include "text.h"
#include "words.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
/// Bytes that are compared in about the time of a step.
constexpr std::uint64_t kBytesPerStep = 64;

bool AreEqual(std::string_view left, std::string_view right, bool ignoresCase)
{
	return ignoresCase ? EqualsIgnoringCase(left, right) : left == right;
}

bool HasWord(std::string_view words, std::string_view word, bool ignoresCase)
{
	for (std::string_view next; TakeWord(words, next);)
	{
		if (AreEqual(next, word, ignoresCase))
			return true;
	}
	return false;
}

bool Contains(std::string_view text, std::string_view part, bool ignoresCase)
{
	if (!ignoresCase)
		return text.find(part) != text.npos;
	return std::search(text.begin(), text.end(), part.begin(), part.end(),
					   [](char a, char b) { return ToLower(a) == ToLower(b); }) != text.end();
}
} // namespace

bool HasWord(std::string_view words, std::string_view word)
{
	return HasWord(words, word, false);
}

std::uint64_t FindCost(const Simple& simple, std::string_view value)
{
	// A part may begin at every byte and fail at its last.
	const bool isSearch = simple.test == AttributeTest::contains && simple.value.size() < value.size();
	return value.size() / kBytesPerStep * (isSearch ? simple.value.size() + 1 : 1);
}

bool MatchesValue(const Simple& simple, std::string_view value)
{
	const std::string_view wanted = simple.value;
	const bool ignoresCase = simple.ignoresCase;
	switch (simple.test)
	{
	case AttributeTest::isPresent:
		return true;
	case AttributeTest::equals:
		return AreEqual(value, wanted, ignoresCase);
	case AttributeTest::hasWord:
		// No name has blanks in it, and none is empty.
		return HasWord(value, wanted, ignoresCase);
	case AttributeTest::hasDashed:
		return AreEqual(value.substr(0, wanted.size()), wanted, ignoresCase) &&
			   (value.size() == wanted.size() || value[wanted.size()] == '-');
	case AttributeTest::startsWith:
		return !wanted.empty() && AreEqual(value.substr(0, wanted.size()), wanted, ignoresCase);
	case AttributeTest::endsWith:
		return !wanted.empty() && value.size() >= wanted.size() &&
			   AreEqual(value.substr(value.size() - wanted.size()), wanted, ignoresCase);
	case AttributeTest::contains:
		return !wanted.empty() && Contains(value, wanted, ignoresCase);
	}
	return false;
}
} // namespace orvan::css
