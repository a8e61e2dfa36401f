// SPDX-License-Identifier: MIT
/// Saving into files: encodings, packed files, documents without a source, and memory that runs out.
#include "saving.h"
#include "svg_edit.h"

#include "orvan/host/allocation_failure.h"

#include <fstream>
#include <functional>
#include <zlib.h>

namespace orvan
{
namespace
{

using namespace std::string_view_literals;

TEST_F(Saving, WritesInTheEncodingOfTheFile)
{
	const std::string latin = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><svg><rect id='\xe9'/><g id='b'/></svg>";
	EXPECT_EQ("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><svg><rect id='\xe9'/><g id='\xfc&#x20ac;'/></svg>",
			  After(latin, "g", "id", "\xc3\xbc\xe2\x82\xac"));
	EXPECT_EQ("<?xml version='1.0' encoding='us-ascii'?><svg><g id='&#xe9;'/></svg>",
			  After("<?xml version='1.0' encoding='us-ascii'?><svg><g id='b'/></svg>", "g", "id", "\xc3\xa9"));
	// What Windows-1252 has otherwise than Latin-1.
	EXPECT_EQ("<?xml version='1.0' encoding='iso-8859-1'?><svg><g id='&#x85;'/></svg>",
			  After("<?xml version='1.0' encoding='iso-8859-1'?><svg><g id='b'/></svg>", "g", "id", "\xc2\x85"));
	const auto wide = [](std::string_view text)
	{
		std::string bytes = "\xff\xfe";
		for (const char c : text)
			bytes += {c, '\0'};
		return bytes;
	};
	EXPECT_EQ(wide("<svg>\xe9<g id='bc'/></svg>"), After(wide("<svg>\xe9<g id='a'/></svg>"), "g", "id", "bc"));
	EXPECT_EQ("<svg>\xff<g id='&amp;&lt;&#39;'/></svg>", After("<svg>\xff<g id='a'/></svg>", "g", "id", "&<'"));
}

TEST_F(Saving, ReplacesFilesAndPacksThem)
{
	const TemporaryFolder folder;
	const auto read = [](const std::filesystem::path& path)
	{
		std::ifstream file(path, std::ios::binary);
		return std::string(std::istreambuf_iterator<char>(file), {});
	};
	const std::filesystem::path path = folder.GetPath() / "a.svg";
	std::ofstream(path) << "<svg><g/></svg>";
	std::filesystem::permissions(path, std::filesystem::perms(0640));
	std::filesystem::create_symlink("a.svg", folder.GetPath() / "link.svg");
	const SVGDocumentRef document = MakeDocument();
	SVGImportOptions options;
	options.keepsSource = options.isComplete = true;
	Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
	Must(document->Init(Must(Url::FromPath((folder.GetPath() / "link.svg").string()))));
	Set(document, "g", "data-n", "a\"b");
	Must(SourceOf(document)->Save(document->GetUrl(), {}));
	EXPECT_EQ("<svg><g data-n=\"a&quot;b\"/></svg>", read(path));
	EXPECT_TRUE(std::filesystem::is_symlink(folder.GetPath() / "link.svg"));
	EXPECT_EQ(std::filesystem::perms(0640), std::filesystem::status(path).permissions());
	// A name for packed files packs; what is saved unedited keeps its bytes.
	const std::filesystem::path packed = folder.GetPath() / "b.svgz";
	Must(SourceOf(document)->Save(Must(Url::FromPath(packed.string())), {}));
	EXPECT_EQ("\x1f\x8b", read(packed).substr(0, 2));
	Must(document->Init(Must(Url::FromPath(packed.string()))));
	const std::string bytes = read(packed);
	EXPECT_EQ(bytes, SavedText(document));
	Must(SourceOf(document)->Save(Must(Url::FromPath(path.string())), {}));
	EXPECT_EQ("<svg><g data-n=\"a&quot;b\"/></svg>", read(path));
	// A save that fails leaves the old file, and nothing beside it.
	Must(First(document, "g")->SetId(Text("\x02")));
	EXPECT_FALSE(SourceOf(document)->Save(Must(Url::FromPath(path.string())), {}).IsOk());
	EXPECT_EQ("<svg><g data-n=\"a&quot;b\"/></svg>", read(path));
	EXPECT_FALSE(SourceOf(document)->Save(Must(Url::FromPath(folder.GetPath().string())), {}).IsOk());
	EXPECT_EQ(3, std::distance(std::filesystem::directory_iterator(folder.GetPath()), {}));
}

TEST_F(Saving, WritesATreeWithoutASourceWhole)
{
	const SVGDocumentRef document = MakeDocument();
	const std::string_view text =
		"<svg width='10' viewBox='0 0 10 10'><defs><linearGradient id='l'><stop offset='.5' stop-color='red'/>"
		"</linearGradient></defs><g fill='url(#l)' transform='rotate(30)' style='mix-blend-mode:screen'>"
		"<path d='M1 2h3a4 5 6 0 1 7 8'/><ellipse rx='3' ry='4'/></g><text x='1 2'>a &lt; <tspan>b</tspan> c</text>"
		"<use href='#l'/><text xml:space='preserve'> d </text></svg>";
	SVGImportOptions options;
	options.isComplete = true;
	Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
	Must(Cast<SVGDocumentImportInterface>(document)->InitFromMemory(text.data(), std::ssize(text), {}));
	const std::string saved = SavedText(document);
	EXPECT_EQ(R"x(<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" version="1.1" viewBox="0 0 10 10" width="10">
  <defs>
    <linearGradient id="l">
      <stop offset=".5" stop-color="red"/>
    </linearGradient>
  </defs>
  <g fill="url(#l)" transform=)x",
			  saved.substr(0, saved.find("transform=") + 10));
	for (const std::string_view part :
		 {"style=\"mix-blend-mode:screen\">\n    <path d=\"M1 2L4 2C"sv, "    <ellipse rx=\"3\" ry=\"4\"/>\n  </g>\n"sv,
		  "  <text x=\"1 2\">a &lt; <tspan>b</tspan> c</text>\n"sv, "  <use xlink:href=\"#l\"/>\n"sv,
		  "<text xml:space=\"preserve\"> d </text>\n</svg>\n"sv})
		EXPECT_NE(saved.npos, saved.find(part)) << part << '\n' << saved;
	// What is none of SVG's goes.
	EXPECT_EQ("\"1.1\">\n  <g/>\n</svg>\n",
			  [&]
			  {
				  const std::string foreign =
					  SavedText(Open("<svg><q:x xmlns:q='q' id='q'/><g><q:y xmlns:q='q'/></g></svg>"),
								{.mode = SVGSaveMode::rewrite});
				  return foreign.substr(std::min(foreign.size(), foreign.find("\"1.1\"")));
			  }());
	const std::string_view tref = "<svg xmlns:x='http://www.w3.org/1999/xlink'><text>a<tref x:href='#b'/></text></svg>";
	const std::string rewritten = SavedText(Open(tref), {.mode = SVGSaveMode::rewrite});
	EXPECT_NE(rewritten.npos, rewritten.find("a<tref xlink:href=\"#b\"/></text>")) << rewritten;
	EXPECT_EQ("\t<defs>",
			  [&]
			  {
				  const std::string tabbed = SavedText(document, {.mode = SVGSaveMode::rewrite, .indentation = -1});
				  return tabbed.substr(tabbed.find("\t<defs"), 7);
			  }());
}

TEST_F(Saving, EndsWithItsErrorWhenMemoryRunsOut)
{
	const std::string_view text =
		"<svg><style>rect{fill:red} g>rect{stroke:red}</style><g id='g' style='font:2px a'><rect id='r' x='1'/></g>"
		"<text>a<tspan id='t'>b</tspan></text><path id='p' d='M1 2h3'/><q:x xmlns:q='q' y='&lt;'/><use "
		"href='#r'/></svg>";
	const SVGDocumentRef document = Open(text);
	Set(document, "#r", "fill", "blue");
	Set(document, "#p", "data-n", "1");
	Must(Cast<SVGPathElementInterface>(First(document, "#p"))->LineTo({1, 2}));
	Insert(Make("svgrectelement"), First(document, "#g"));
	Insert(First(document, "#t"), First(document, "text"));
	const std::string saved = SavedText(document);
	EXPECT_EQ(0u, saved.find("<svg><style>")) << saved;
	const TemporaryFolder folder;
	const std::filesystem::path path = folder.GetPath() / "a.svg";
	std::ofstream(path) << "old";
	const Url url = Must(Url::FromPath(path.string()));
	const auto read = [&]
	{
		std::ifstream file(path, std::ios::binary);
		return std::string(std::istreambuf_iterator<char>(file), {});
	};
	const String name = Text("stroke-dasharray");
	const String value = Text("1 2 3");
	const SVGElementRef element = First(document, "#p");
	const auto source = SourceOf(document);
	// What is asked for, and what is the same before and behind a failure.
	const std::pair<const char*, std::function<Result<void>()>> operations[] = {
		{"edit",
		 [&]() -> Result<void>
		 {
			 return source->SaveToMemory({}).IsOk() ? Result<void>() : OutOfMemoryError();
		 }},
		{"whole",
		 [&]() -> Result<void>
		 {
			 return source->SaveToMemory({.mode = SVGSaveMode::rewrite}).IsOk() ? Result<void>() : OutOfMemoryError();
		 }},
		{"file",
		 [&]
		 {
			 return source->Save(url, {});
		 }},
		{"unknown",
		 [&]
		 {
			 return source->SetAttributeText(element, name, value);
		 }},
	};
	for (const auto& [what, operation] : operations)
	{
		std::string before = SavedText(document);
		std::string file = read();
		int number = 1;
		for (bool hasFailed = true; hasFailed && !HasFailure(); number++)
		{
			bool isDone = false;
			{
				const AllocationFailure failure(number, AllocationFailure::Extent::one);
				isDone = operation().IsOk();
				hasFailed = failure.HasFailed();
			}
			ASSERT_TRUE(isDone || hasFailed) << what << ' ' << number;
			if (isDone) // Giving unused memory back may fail without harm.
			{
				before = SavedText(document);
				file = read();
			}
			ASSERT_EQ(before, SavedText(document)) << what << ' ' << number;
			ASSERT_EQ(file, read()) << what << ' ' << number;
		}
		EXPECT_GT(number, 2) << what;
	}
	EXPECT_EQ(saved, read());
}

} // namespace
} // namespace orvan
