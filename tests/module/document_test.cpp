// SPDX-License-Identifier: MIT
/// The document: loading, asking, forgetting.
#include "support/svg_module.h"
#include "svg_import.h"

#include <algorithm>
#include <map>
#include <set>

namespace orvan
{
namespace
{

class Document : public SvgModuleTest
{
protected:
	std::set<std::string> IdsWithPrefix(std::string_view prefix) const
	{
		std::set<std::string> ids;
		const auto found = Must(document->GetElementsByIdWithPrefix(Text(prefix)));
		for (const SVGElementRef& element : found)
			ids.emplace(element->GetId());
		EXPECT_EQ(ids.size(), found.GetCount()) << "each once";
		return ids;
	}

	void Init(std::string_view text) const
	{
		const CollectedFindings findings;
		Must(document->Init(TextFile(text).GetUrl()));
	}

	void ExpectEmpty() const
	{
		EXPECT_FALSE(document->GetRootElement());
		EXPECT_EQ(std::set<std::string>(), IdsWithPrefix(""));
	}

	const SVGDocumentRef document = MakeDocument();
};

using Ids = std::set<std::string>;

TEST_F(Document, IsEmptyAtFirst)
{
	ExpectEmpty();
	EXPECT_TRUE(document->GetUrl().IsEmpty());
	EXPECT_EQ("SVG element with id 'a' not found.", MessageOf(document->GetElementById(Text("a"))));
}

TEST_F(Document, RefusesWhatIsNoFile)
{
	const TemporaryFolder folder;
	for (const Url& url :
		 {Must(Url::FromPath((folder / "missing.svg").string())), Must(Url::FromPath((folder / "").string())),
		  Must(Url::Create("memory:missing")), Must(Url::Create("what:ever")), Url()})
	{
		SCOPED_TRACE(url.GetText().CString());
		Init("<svg id='a'/>");
		const Error error = document->Init(url).GetError();
		EXPECT_EQ(ErrorClass::io, error.GetClass());
		EXPECT_EQ(error.GetMessage(), "Error parsing svg document. SVGDocument could not be initialized");
		EXPECT_EQ(error.GetUrlText(), url.GetText());
		EXPECT_EQ(error.GetFile(), "svg_base_impl.cpp");
		ExpectEmpty();
		EXPECT_TRUE(document->GetUrl().IsEmpty());
	}
}

TEST_F(Document, PassesOnTheErrorOfAStreamThatFallsShort)
{
	// A kernel attribute says that it is a page long, and delivers a line.
	const std::string file = "/sys/kernel/mm/transparent_hugepage/enabled";
	if (!std::filesystem::is_regular_file(file))
		GTEST_SKIP() << "no such attribute here";
	const Url url = Must(Url::FromPath(file));
	const Error error = document->Init(url).GetError();
	EXPECT_EQ(ErrorClass::io, error.GetClass());
	EXPECT_TRUE(error.GetMessage().View().starts_with("The requested number of bytes could not be read ("));
	EXPECT_TRUE(error.GetMessage().View().ends_with(" of 4096)."));
	EXPECT_EQ(error.GetUrlText(), url.GetText());
	ExpectEmpty();
	EXPECT_EQ(url, document->GetUrl()) << "the URL was good";
}

TEST_F(Document, ForgetsTheFirstFileWhenItLoadsASecond)
{
	Init("<svg id='a'><g id='b'/></svg>");
	const SVGElementRef first = document->GetRootElement();
	Init("<svg id='c'/>");
	EXPECT_EQ(Ids{"c"}, IdsWithPrefix(""));
	EXPECT_FALSE(document->GetElementById(Text("a")).IsOk());
	EXPECT_EQ("svg#a", Outline(first)) << "the old tree is taken apart";
}

TEST_F(Document, LoadsAgainFromItsOwnUrl)
{
	const TextFile file("<svg id='a'/>");
	Must(document->Init(file.GetUrl()));
	Must(Find(document, "a")->SetId(Text("z")));
	Must(document->Init(document->GetUrl()));
	EXPECT_EQ(Ids{"a"}, IdsWithPrefix(""));
	EXPECT_EQ(file.GetUrl(), document->GetUrl());
}

TEST_F(Document, FindsElementsByTheirWholeId)
{
	Init("<svg id='a'><g id='b'/><g id=''/><g/></svg>");
	EXPECT_EQ(Find(document, "b")->GetId(), "b");
	EXPECT_EQ(Find(document, "a"), document->GetRootElement());
	const Error error = document->GetElementById(Text("B")).GetError();
	EXPECT_EQ(error.GetMessage(), "SVG element with id 'B' not found.");
	EXPECT_EQ(error.GetFile(), "svg_base_impl.cpp");
	Init("<svg/>");
	EXPECT_EQ("SVG element with id '' not found.", MessageOf(document->GetElementById({})));
}

TEST_F(Document, FindsTheFirstOfSeveralElementsWithOneId)
{
	Init("<svg><g id='a'/><rect id='a'/></svg>");
	EXPECT_EQ("g#a", Outline(Find(document, "a")));
	EXPECT_EQ(Ids{"a"}, IdsWithPrefix(""));
}

TEST_F(Document, FindsElementsByThePrefixOfTheirId)
{
	Init("<svg id='s'><g id='layer'/><g id='layer1'/><g id='layer_a'/><g id='Layer1'/><g id='lay'/></svg>");
	EXPECT_EQ((Ids{"layer", "layer1", "layer_a"}), IdsWithPrefix("layer"));
	EXPECT_EQ(6u, IdsWithPrefix("").size());
	EXPECT_EQ(Ids(), IdsWithPrefix("layer1x"));
}

TEST_F(Document, FindsChangedIdsByPrefixAndOldOnesByTheTable)
{
	Init("<svg id='s'><g id='old'/></svg>");
	Must(Find(document, "old")->SetId(Text("new")));
	EXPECT_EQ((Ids{"new", "s"}), IdsWithPrefix(""));
	EXPECT_EQ(Ids{"new"}, IdsWithPrefix("n"));
	EXPECT_EQ(Ids(), IdsWithPrefix("old"));
	EXPECT_EQ(Find(document, "old")->GetId(), "new");
	EXPECT_FALSE(document->GetElementById(Text("new")).IsOk());
}

TEST_F(Document, FindsAnElementWithTwoIdsByBothAndNamesItOnce)
{
	Init("<svg id='s'><g id='a' style='id:b'/><g id='c'/><g style='id:d' id='b2'/></svg>");
	EXPECT_EQ(Find(document, "a"), Find(document, "b"));
	EXPECT_EQ((Ids{"b", "b2", "c", "s"}), IdsWithPrefix(""));
	EXPECT_EQ((Ids{"b", "b2"}), IdsWithPrefix("b"));
	// In the table's order, at the first of the two places. Elements with one id each tell how the table is in order.
	const auto order = [this](const std::map<std::string, std::string>& names)
	{
		std::vector<std::string> ids;
		for (const SVGElementRef& element : Must(document->GetElementsByIdWithPrefix({})))
		{
			const std::string id(element->GetId());
			const std::string& name = names.contains(id) ? names.at(id) : id;
			if (std::find(ids.begin(), ids.end(), name) == ids.end())
				ids.push_back(name);
		}
		return ids;
	};
	const auto actual = order({});
	Init("<svg id='s'><g id='a'/><g id='b'/><g id='c'/><g id='d'/><g id='b2'/></svg>");
	EXPECT_EQ(order({{"a", "b"}, {"d", "b2"}}), actual);
}

TEST_F(Document, TakesItsTreeApartWhenItIsReset)
{
	Init("<svg id='a'><g id='b'><rect/></g></svg>");
	const SVGElementRef root = document->GetRootElement();
	const SVGElementRef group = Find(document, "b");
	document->Reset();
	ExpectEmpty();
	EXPECT_TRUE(document->GetUrl().IsEmpty());
	EXPECT_EQ("svg#a", Outline(root));
	EXPECT_EQ("g#b(rect)", Outline(group));
	document->Reset();
	ExpectEmpty();
}

TEST_F(Document, LeavesItsTreeWholeWhenItIsReleased)
{
	SVGElementRef root = Load("<svg><g><rect/></g></svg>")->GetRootElement();
	EXPECT_EQ("svg(g(rect))", Outline(root));
}

TEST_F(Document, HoldsAPlaceholderWhenTheFileHasNoUsableRoot)
{
	for (const std::string_view text : {"", " \n", "<html><svg id='a'/></html>", "<!-- <svg/> -->", "<SVG/>", "<g/>"})
	{
		const CollectedFindings findings;
		const SVGDocumentRef loaded = MakeDocument();
		Must(loaded->Init(TextFile(text).GetUrl()));
		EXPECT_EQ(std::vector<std::string>{"The file holds no svg element."}, findings.lines) << text;
		EXPECT_EQ(SVGImportOutcome::noSvgElement,
				  Must(Cast<SVGDocumentImportInterface>(loaded)->GetImportReport()).outcome);
		EXPECT_EQ("svg(rect)", Outline(loaded->GetRootElement())) << text;
		EXPECT_EQ(0u, loaded->GetRootElement()->GetAttributeDictionary().GetCount());
		EXPECT_TRUE(Must(loaded->GetElementsByIdWithPrefix({})).IsEmpty()) << text;
		EXPECT_FALSE(loaded->GetUrl().IsEmpty());
	}
}

} // namespace
} // namespace orvan
