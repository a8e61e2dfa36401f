// SPDX-License-Identifier: MIT
/// Documents so large that the importer gives the XML tree back while it builds the elements.
#include "support/svg_module.h"

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

} // namespace
} // namespace orvan
