// SPDX-License-Identifier: MIT
#include "orvan/string.h"

#include "support.h"

#include <array>

namespace orvan
{
namespace
{

TEST(String, EmptyAndNullAreTheSameValue)
{
	EXPECT_EQ(String(), Text(""));
	EXPECT_EQ(String().GetHash(), Text("").GetHash());
	EXPECT_NE(0u, String().GetHash());
	EXPECT_STREQ("", String().CString());
}

TEST(String, KeepsZeroBytesAndTerminatesItsText)
{
	const String text = Text({"a\0b", 3});
	EXPECT_EQ(3u, text.GetSize());
	EXPECT_EQ('\0', text.CString()[3]);
	EXPECT_NE(text, Text("a"));
	EXPECT_NE(text.GetHash(), Text({"a\0c", 3}).GetHash());
}

TEST(String, CopiesShareTheTextAndOutliveTheOriginal)
{
	String copy;
	{
		const String text = Text("shared");
		copy = text;
		EXPECT_TRUE(copy.IsSameObject(text));
	}
	copy = *&copy;
	EXPECT_EQ("shared", copy.View());
}

TEST(String, EqualTextsHaveEqualHashesAtCompileTimeToo)
{
	// Of every length of the last word.
	static constexpr std::string_view kText = "\x80orvan.core";
	constexpr auto kHashes = []
	{
		std::array<std::uint64_t, kText.size() + 1> hashes{};
		for (std::size_t i = 0; i < hashes.size(); i++)
			hashes[i] = HashBytes(kText.substr(0, i));
		return hashes;
	}();
	for (std::size_t i = 0; i < kHashes.size(); i++)
		EXPECT_EQ(kHashes[i], Text(kText.substr(0, i)).GetHash());
	// Texts that differ only in trailing zero bytes fill the same words.
	EXPECT_NE(HashBytes({"a\0", 2}), HashBytes("a"));
}

TEST(String, ReportsWantOfMemory)
{
	EXPECT_EQ(1, FailEachAllocation([] { return String::Create("text"); }));
}

} // namespace
} // namespace orvan
