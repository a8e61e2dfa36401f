// SPDX-License-Identifier: MIT
/// Documents so large that the importer gives the XML tree back while it builds the elements.
#include "complete_import.h"

#include <fstream>
#include <malloc.h>
#include <random>

namespace orvan
{
namespace
{

/// A random document, and the elements that it must become, one a line in document order.
class RandomDocument
{
public:
	explicit RandomDocument(int elements) : _left(elements)
	{
		text = "<svg>";
		while (_left > 0)
			AddElement(1);
		text += "</svg>";
	}

	std::string text;
	std::vector<std::string> expected;

private:
	void AddElement(int depth)
	{
		const std::string number = std::to_string(_left--);
		expected.push_back(std::to_string(depth) + " e" + number + ' ' + number);
		text += "<g id='&#101;" + number + "' class='c' x='" + number + "px' unknown='1'";
		if (_random() % 2 == 0 || depth == 1000)
		{
			text += "/>";
			return;
		}
		text += "><!-- " + number + " -->";
		for (auto i = _random() % 4; i > 0 && _left > 0; i--)
			AddElement(depth + 1);
		text += "text</g>";
	}

	std::mt19937 _random{11};
	int _left;
};

using LargeDocument = SvgModuleTest;

TEST_F(LargeDocument, HasEveryElementInItsPlaceAlthoughItsXmlGoesMeanwhile)
{
	// A node and four attributes take about half a kilobyte, so this is several times what is worth giving back.
	const RandomDocument random(60'000);
	const SVGDocumentRef document = Load(random.text);
	std::vector<std::string> found;
	int depth = 0;
	HierarchyObjectRef at = Cast<HierarchyObjectInterface>(document->GetRootElement());
	while (at)
	{
		if (depth > 0)
		{
			const auto element = Cast<SVGElementInterface>(at);
			const auto* x = element->GetAttributeDictionary().Find<SVGLength>(static_cast<int>(Attribute::x));
			ASSERT_NE(nullptr, x);
			found.push_back(std::to_string(depth) + ' ' + element->GetId().CString() + ' ' +
							std::to_string(static_cast<int>(x->value)));
		}
		HierarchyObjectRef next = at->GetFirstChild();
		depth += next ? 1 : 0;
		for (; !next && at; at = Must(at->GetParent()))
		{
			next = at->GetNextSibling();
			if (next)
				break;
			depth--;
		}
		at = next;
	}
	// Whole vectors would make a message of megabytes.
	ASSERT_EQ(random.expected.size(), found.size());
	const auto [expected, other] = std::mismatch(random.expected.begin(), random.expected.end(), found.begin());
	EXPECT_EQ(random.expected.end(), expected) << *expected << " is " << *other;
}

/// Texts of paths that go while they are read. They do where their memory comes from the system and returns to it.
class LargePaths : public CompleteImport
{
protected:
	static void SetUpTestSuite()
	{
		SvgModuleTest::SetUpTestSuite();
		mallopt(M_MMAP_THRESHOLD, 128 << 10);
	}

	/// Path data of `count` points, twenty characters each.
	static std::string Data(int count, char separator = ' ')
	{
		std::string data = "M";
		data.reserve(static_cast<std::size_t>(count) * 20);
		for (int i = 0; i < count; i++)
			data += std::to_string(1000 + i % 1000) + ".12345-" + std::to_string(1000 + i % 7) + ".4321" + separator;
		return data;
	}

	/// A line of the process's status.
	static std::int64_t ReadKibibytes(std::string_view name)
	{
		std::ifstream status("/proc/self/status");
		for (std::string line; std::getline(status, line);)
		{
			if (line.starts_with(name))
				return std::stoll(line.substr(name.size()));
		}
		return 0;
	}
};

TEST_F(LargePaths, AndTheirTextTakeLittleMoreThanTheLargerOfBoth)
{
	constexpr int kPoints = 500'000;
	const std::string text = "<svg><path id='a' d='" + Data(kPoints) + "'/></svg>";
	std::ofstream("/proc/self/clear_refs") << 5; // The peak begins anew.
	const std::int64_t before = ReadKibibytes("VmRSS:");
	ASSERT_LT(ReadKibibytes("VmHWM:"), before + 1024);
	const SVGDocumentRef document = Load(text);
	const std::int64_t peak = ReadKibibytes("VmHWM:") - before;
	EXPECT_EQ(kPoints, Must(Cast<SVGPathElementInterface>(Find(document, "a"))->GetPath()).GetCount());
#ifndef ORVAN_IS_SANITIZED
	EXPECT_LT(peak * 1024, static_cast<std::int64_t>(text.size()) * 3 / 2);
#else
	static_cast<void>(peak);
#endif
}

TEST_F(LargePaths, LeaveWhatIsReadLater)
{
	const std::string path = "path d='" + Data(80'000) + "'/>";
	const std::string space = "='http://www.w3.org/2000/svg'>";
	const std::string g = "g style='fill:none;stroke:red;opacity:0.5'/>";
	const SVGDocumentRef document = Load("<svg xmlns:a" + space + "<" + g + "<" + path + "<" + g + "<g xmlns:b" +
										 space + "<" + path + "<a:" + path + "<b:rect/></g><a:" + g + "</svg>");
	EXPECT_EQ("svg(g path g g(path path rect) g)", Outline(document->GetRootElement()));
	const auto children = Must(Cast<HierarchyObjectInterface>(document->GetRootElement())->GetChildren());
	EXPECT_EQ(0.5, Cast<SVGElementInterface>(children[4])->GetOpacity());
}

TEST_F(LargePaths, AreRefusedWithEverythingThatIsToBeTold)
{
	const std::string data = Data(200'000);
	const std::string head = "<svg>\n<rect opacity='1'/>\n <path d='";
	const std::string message = "Exception parsing svg file. Invalid value of SVG attribute (or property) ";
	// What stands behind the path, and the path itself.
	EXPECT_EQ("4:23 rect#a " + message + "\"opacity\": \"x\"",
			  RefusalOf(head + data + "'/>\n<rect id='a' opacity='x'/></svg>"));
	EXPECT_TRUE(RefusalOf(head + data + "!'/></svg>") == "3:11 path " + message + "\"path\": \"" + data + "!\"");

	// A tolerant import goes on, and counts lines that would go with the text.
	const std::string lines = Data(10'000, '\n');
	const std::string flawed = "'/><rect opacity='x'/><path d='";
	EXPECT_EQ("10001:19 rect# opacity\n",
			  Places(LoadWith("<svg><path d='" + lines + flawed + data + "'/></svg>", Options(true, false)).report));
	EXPECT_EQ("10001:19 rect# opacity\n",
			  Places(LoadWith("<svg><path d='" + data + lines + flawed + "'/></svg>", Options(true, false)).report));
}

} // namespace
} // namespace orvan
