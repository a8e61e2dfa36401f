// SPDX-License-Identifier: MIT
#include "grammar.h"

#include <gtest/gtest.h>

#include <string>

namespace orvan::grammar
{
namespace
{
TEST(Styles, SplitIntoTrimmedDeclarations)
{
	const auto split = [](std::string_view text)
	{
		std::string all;
		StyleSplitter splitter(text);
		for (std::string_view name, value; splitter.Next(name, value);)
			all.append("{").append(name).append("=").append(value).append("}");
		return all;
	};
	EXPECT_EQ(split("fill:red;stroke-width:2"), "{fill=red}{stroke-width=2}");
	EXPECT_EQ(split(" fill : red ;\n;; a b:\tc d;"), "{fill=red}{a b=c d}");
	EXPECT_EQ(split("a:;:b;c;d:url(http://x);e:f:g;h:i"), "{h=i}");
	EXPECT_EQ(split("a:'x;y:z'"), "{a='x}{y=z'}");
	EXPECT_EQ(split("\xc3\xa9:\xff"), "{\xc3\xa9=\xff}");
	EXPECT_EQ(split("  "), "");
	EXPECT_EQ(split(""), "");
}
} // namespace
} // namespace orvan::grammar
