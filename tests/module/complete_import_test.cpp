// SPDX-License-Identifier: MIT
// What a client asks of an import and learns from it, whatever becomes of the load.
#include "complete_import.h"

#include "support/tree_json.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <thread>

namespace orvan
{
namespace
{

TEST_F(CompleteImport, IsTolerantAndCompleteIndependently)
{
	static constexpr std::string_view kText =
		"<svg><rect id='r' fill='nonsense' style='stroke:#0f08;opacity:.5'/></svg>";
	const auto load = [](bool isTolerant, bool isComplete)
	{
		return LoadWith(kText, Options(isTolerant, isComplete));
	};
	for (const bool isComplete : {false, true})
	{
		const Loaded refused = load(false, isComplete);
		EXPECT_EQ(Outcome::refused, refused.report.outcome);
		EXPECT_EQ(1, refused.report.findingCount);
		EXPECT_EQ(SVGFindingLevel::critical, refused.report.findings[0].level);
		EXPECT_EQ("svg(rect)", Outline(refused.document->GetRootElement()));
		const Loaded loaded = load(true, isComplete);
		EXPECT_EQ(Outcome::loadedWithFindings, loaded.report.outcome);
		EXPECT_EQ(SVGFindingLevel::warning, loaded.report.findings[0].level);
		EXPECT_EQ("fill", loaded.report.findings[0].attribute.View());
		// Only the complete import knows a colour with an alpha.
		EXPECT_EQ(isComplete ? 1 : 2, loaded.report.findingCount);
		EXPECT_FALSE(loaded["r"]->HasAttribute(Attribute::fill));
		EXPECT_EQ(isComplete, loaded["r"]->HasAttribute(Attribute::stroke));
		EXPECT_EQ(0.5, loaded["r"]->GetOpacity());
	}
	EXPECT_EQ(Outcome::loaded, LoadWith("<svg/>", Options(false, false)).report.outcome);
	EXPECT_EQ(Outcome::noSvgElement, LoadWith("<g/>").report.outcome);
	// Neither helps against text that is no XML.
	EXPECT_NE("nothing", Refusal("<svg><g></svg>"));
}

// Names are found by hashes of a part of their letters.
TEST_F(CompleteImport, KnowsNoNamesThatAreNearlyThoseItKnows)
{
	const std::set<std::string_view> known(kSVGAttributeNames.begin(), kSVGAttributeNames.end());
	std::set<std::string> others;
	const auto add = [&](const std::string& name)
	{
		// What is known under another name, or to XML.
		constexpr std::string_view kMore[] = {"d", "x", "y", "z", "k1", "k2", "k3", "k4", "in2"};
		if (!known.contains(name) && std::ranges::find(kMore, name) == std::end(kMore))
			others.insert(name);
	};
	for (char first = 'a'; first <= 'z'; ++first)
	{
		for (char second = '0'; second <= 'z'; ++second)
		{
			if (std::isalnum(static_cast<unsigned char>(second)) != 0)
				add({first, second});
		}
	}
	for (const std::string_view name : kSVGAttributeNames)
	{
		for (std::size_t i = 1; i < name.size() && name.find(':') == name.npos; ++i)
		{
			add(std::string(name.substr(0, i)));
			std::string near(name);
			near[i] = near[i] == 'q' ? 'j' : 'q';
			add(near);
		}
	}
	std::string attributes;
	for (const std::string& name : others)
		attributes += ' ' + name + "='3'";
	for (const bool isComplete : {false, true})
	{
		const auto load = [&](const std::string& text)
		{
			return JsonOf(LoadWith(text, Options(true, isComplete)).document);
		};
		EXPECT_EQ(load("<svg><circle/></svg>"), load("<svg><circle" + attributes + "/></svg>"));
	}
}

TEST_F(CompleteImport, TellsWhereItFoundWhat)
{
	constexpr std::string_view kText = "<!DOCTYPE svg [<!ENTITY long 'fill-rule'>]>\n"
									   "<svg>\n"
									   " <g id='g' class='&long;&long;'><rect id='r' fill='nonsense'/></g>\n"
									   " <path id='p' d='M0 0L1 1X'/>\n"
									   " <style>rect { &long;: odd }\n"
									   "  path { opacity: a }</style>\n"
									   " <circle r='1' style='fill: red; stroke-width: -1'/>\n"
									   "</svg>";
	const SVGImportReport report = LoadWith(kText).report;
	EXPECT_EQ("3:52 rect#r fill\n"
			  "5:24 rect#r fill-rule\n"
			  "4:26 path#p d\n"
			  "6:19 path#p opacity\n"
			  "7:48 circle# stroke-width\n",
			  Places(report));
	// The same places in the text of another encoding, whose columns are those of UTF-8.
	std::string wide = "\xff\xfe";
	for (const char c : kText)
		wide += {c, '\0'};
	EXPECT_EQ(Places(report), Places(LoadWith(wide).report));
	// A sheet with references is put together, so that it has no places.
	EXPECT_EQ("0:0 g# opacity\n", Places(LoadWith("<svg><style>a, &#x67; { opacity: a }</style><g/></svg>").report));
	EXPECT_EQ("2:18 g#g fill\n", Places(LoadWith("<svg>\n <g id='g' fill='1'/></svg>", Options(false, true)).report));
	EXPECT_EQ("2:18 g#g fill\n", Places(LoadWith("<svg>\n <g id='g' fill='1'/></svg>", Options(false, false)).report));
}

TEST_F(CompleteImport, KeepsAHundredFindingsAndCountsTheOthers)
{
	Loaded loaded = LoadWith("<svg>" + Repeat("<g fill='1'/>", 150) + "</svg>");
	EXPECT_EQ(150, loaded.report.findingCount);
	EXPECT_EQ(100u, loaded.report.findings.GetCount());
	// What the file is refused for is among them, however many there were; and a path with a fault is no such thing.
	const SVGImportReport refused =
		LoadWith("<svg>" + Repeat("<path d='M0 0L'/>", 120) + "<g fill='1'/></svg>", Options(false, true)).report;
	EXPECT_EQ(Outcome::refused, refused.outcome);
	ASSERT_EQ(101u, refused.findings.GetCount());
	EXPECT_EQ(SVGFindingLevel::warning, refused.findings[99].level);
	EXPECT_EQ(SVGFindingLevel::critical, refused.findings[100].level);
	EXPECT_EQ("fill", refused.findings[100].attribute.View());
	// Long values are cut off between characters.
	const SVGImportReport cut = LoadWith("<svg><g fill='x" + Repeat("\u00e9", 150) + "'/></svg>").report;
	EXPECT_TRUE(cut.findings[0].message.View().ends_with("\u00e9…\"")) << cut.findings[0].message.View();
	SVGImportReport copy;
	Must(copy.CopyFrom(loaded.report));
	EXPECT_EQ(Places(loaded.report), Places(copy));
	EXPECT_EQ(150, copy.findingCount);
	EXPECT_GT(FailEachAllocation([&] { return loaded.import->GetImportReport(); }), 0);
	loaded.document->Reset();
	const SVGImportReport empty = Must(loaded.import->GetImportReport());
	EXPECT_EQ(Outcome::empty, empty.outcome);
	EXPECT_EQ(0, empty.findingCount + static_cast<std::int64_t>(empty.findings.GetCount()));
}

TEST_F(CompleteImport, KeepsItsOptionsAndAsksThemAtEachLoad)
{
	for (const char* name : {"svgdocument", "vectoricon"})
	{
		const auto import = Make<SVGDocumentImportInterface>(name);
		const auto document = Cast<SVGDocumentInterface>(import);
		EXPECT_FALSE(import->GetImportOptions().isTolerant || import->GetImportOptions().isComplete);
		SVGImportOptions options = Options();
		options.styleSheet = Text("g { opacity: 0.25 }");
		Must(import->SetImportOptions(options));
		document->Reset();
		EXPECT_EQ(options.styleSheet, import->GetImportOptions().styleSheet);
		const TextFile file("<svg><style>g { opacity: 0.5; display: none }</style><g id='g' fill='1'/></svg>");
		for (int round = 0; round < 2; round++)
		{
			Must(document->Init(file.GetUrl()));
			EXPECT_EQ(0.25, Find(document, "g")->GetOpacity());
			EXPECT_EQ(1, Must(import->GetImportReport()).findingCount);
		}
		Must(import->SetImportOptions(SVGImportOptions()));
		EXPECT_EQ(0.25, Find(document, "g")->GetOpacity()) << "what is loaded stays";
		const CollectedFindings refusal;
		Must(document->Init(file.GetUrl()));
		EXPECT_EQ(Outcome::refused, Must(import->GetImportReport()).outcome);
		EXPECT_EQ(1u, refusal.lines.size());
	}
}

TEST_F(CompleteImport, LoadsFromMemory)
{
	for (const char* name : {"svgdocument", "vectoricon"})
	{
		const auto import = Make<SVGDocumentImportInterface>(name);
		const auto document = Cast<SVGDocumentInterface>(import);
		const Url base = Must(Url::FromPath("/pictures/a.svg"));
		std::string bytes = "<svg id='first'/>";
		Must(InitFrom(import, bytes, base));
		bytes.assign(bytes.size(), '?');
		EXPECT_EQ("first", document->GetRootElement()->GetId());
		EXPECT_EQ(base.GetText(), document->GetUrl().GetText());
		Must(InitFrom(import, "<svg id='second'/>", document->GetUrl()));
		EXPECT_EQ(base.GetText(), document->GetUrl().GetText());
		EXPECT_EQ("second", document->GetRootElement()->GetId());
		for (const auto& [pointer, count] : {std::pair(bytes.data(), -1), std::pair<char*, int>(nullptr, 1)})
		{
			const Result<void> result = import->InitFromMemory(pointer, count, base);
			ASSERT_FALSE(result.IsOk());
			EXPECT_EQ(ErrorClass::illegalArgument, result.GetError().GetClass());
			EXPECT_EQ("second", document->GetRootElement()->GetId()) << "nothing has changed";
		}
		const CollectedFindings findings;
		Must(import->InitFromMemory(nullptr, 0, Url()));
		EXPECT_EQ(Outcome::noSvgElement, Must(import->GetImportReport()).outcome);
		EXPECT_TRUE(document->GetUrl().IsEmpty());
	}
}

/// Everything that a load has made.
std::string ContentsOf(const SVGElementRef& element)
{
	std::string contents = std::to_string(static_cast<int>(element->GetElementType())) + element->GetId().CString() +
						   '/' + std::to_string(element->GetAttributeDictionary().GetCount());
	if (const auto run = Cast<SVGTextRunInterface>(element))
		contents += run->GetText().CString();
	if (const auto description = Cast<SVGDescriptionInterface>(element))
		contents += description->GetText().CString();
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		contents += ' ' + ContentsOf(Cast<SVGElementInterface>(child));
	return contents + ')';
}

TEST_F(CompleteImport, EndsWithTheErrorWhenMemoryRunsOut)
{
	const std::string faulty = "<svg><style>g { opacity: b }</style><g id='g' fill='1'/><path d='M0 0 1'/></svg>";
	const std::string packed = Gzip(std::string(kRich));
	std::string wide = "\xfe\xff";
	for (const char c : kRich)
		wide += {'\0', c};
	for (const std::string_view text : {kRich, std::string_view(faulty), std::string_view(packed),
										std::string_view(wide), std::string_view("<svg><g></svg>")})
	{
		const CollectedFindings ignored;
		const Loaded loaded = LoadWith(text);
		const std::string whole = ContentsOf(loaded.document->GetRootElement());
		loaded.document->Reset();
		const std::int64_t before = CountAllocations();
		for (int number = 1;; number++)
		{
			SCOPED_TRACE(number);
			bool hasFailed = false;
			{
				const AllocationFailure failure(number, AllocationFailure::Extent::one);
				const Result<void> result = InitFrom(loaded.import, text);
				hasFailed = failure.HasFailed();
				if (!result.IsOk())
				{
					EXPECT_EQ(ErrorClass::outOfMemory, result.GetError().GetClass());
					EXPECT_FALSE(loaded.document->GetRootElement()) << "a part of a tree";
				}
			}
			// Giving unused memory back, and growing a cache, may fail without harm.
			if (loaded.document->GetRootElement())
			{
				EXPECT_EQ(whole, ContentsOf(loaded.document->GetRootElement()));
			}
			loaded.document->Reset();
			ASSERT_EQ(before, CountAllocations());
			if (!hasFailed)
				break;
			ASSERT_FALSE(HasFailure());
		}
	}
}

TEST_F(CompleteImport, LoadsOnManyThreads)
{
	const std::string whole = ContentsOf(LoadWith(kRich).document->GetRootElement());
	std::vector<std::thread> threads;
	for (int number = 0; number < 6; number++)
	{
		threads.emplace_back(
			[&]
			{
				for (int round = 0; round < 20; round++)
				{
					EXPECT_EQ(whole, ContentsOf(LoadWith(kRich).document->GetRootElement()));
					EXPECT_EQ("1:15 g# fill\n", Places(LoadWith("<svg><g fill='1'/></svg>").report));
				}
			});
	}
	for (std::thread& thread : threads)
		thread.join();
}

} // namespace
} // namespace orvan
