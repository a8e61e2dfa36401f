// SPDX-License-Identifier: MIT
/// Which images a document may show, and what filters and images may cost.
#include "support/drawn_picture.h"

#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace orvan
{
namespace
{

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string kMissing = "Images that cannot be read, or are larger than a picture may have them, are left out.";

class ImageFiles : public RendererTest
{
protected:
	void SetUp() override
	{
		_folder = fs::temp_directory_path() / ("orvan-images-" + std::to_string(getpid()));
		fs::create_directories(_folder / "pictures" / "below");
		const std::string red = Document("<rect width='100' height='100' fill='#f00'/>");
		for (const char* name : {"outside.svg", "pictures/beside.svg", "pictures/below/b.svg", "pictures/a b.svg"})
			Write(name, red);
		fs::create_symlink(_folder / "outside.svg", _folder / "pictures/link.svg");
		fs::create_symlink("beside.svg", _folder / "pictures/good-link.svg");
	}

	void TearDown() override
	{
		fs::remove_all(_folder);
	}

	void Write(const std::string& name, const std::string& text) const
	{
		std::ofstream(_folder / name) << text;
	}

	/// The colour in the middle of a document that stands in the folder and shows an image, with what was reported.
	std::string Show(const std::string& link) const
	{
		return ShowElements("<image width='100' height='100' href='" + link + "'/>");
	}

	std::string ShowElements(const std::string& elements) const
	{
		Write("pictures/document.svg", Document(elements));
		const SVGDocumentRef document = MakeDocument();
		SVGImportOptions options;
		options.isTolerant = options.isComplete = true;
		Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
		Must(document->Init(Must(Url::FromPath((_folder / "pictures/document.svg").string()))));
		const CollectedDiagnostics diagnostics;
		const std::string color = DrawnPicture(document).At(50, 50);
		return diagnostics.lines.empty() ? color : color + ", " + diagnostics.lines.front();
	}

	fs::path _folder;
};

TEST_F(ImageFiles, OnlyWhatStandsInTheFolderOrBelowIsShown)
{
	for (const std::string link : {"beside.svg", "./beside.svg", "below/b.svg", "below/../beside.svg", "a%20b.svg",
								   "good-link.svg", "beside.svg?x#y", "../pictures/beside.svg"})
		EXPECT_EQ("ff0000", Show(link)) << link;
	EXPECT_EQ("ff0000", Show((_folder / "pictures/beside.svg").string()));
	EXPECT_EQ("ff0000", Show("file://" + (_folder / "pictures/beside.svg").string()));
	for (const std::string link :
		 {"../outside.svg", "link.svg", "missing.svg", "below", ".", "/etc/passwd", "/dev/zero",
		  "http://localhost/beside.svg", "file:///etc/passwd", "data:image/png;base64,AAAA"})
		EXPECT_EQ("none, " + kMissing, Show(link)) << link;
	EXPECT_EQ("none, " + kMissing, Show((_folder / "outside.svg").string()));
}

TEST_F(ImageFiles, NothingButImagesIsReadFromOtherFiles)
{
	Write("pictures/named.svg",
		  Document("<rect id='r' width='100' height='100' fill='#f00'/><clipPath id='c'/><mask id='m'/>"
				   "<linearGradient id='g'><stop stop-color='#f00'/></linearGradient>"));
	EXPECT_EQ("none", ShowElements("<use href='named.svg#r'/>"));
	const std::string rect = "<rect width='100' height='100' fill='#0f0' ";
	EXPECT_EQ("none", ShowElements(rect + "style='fill:url(named.svg#g)'/>"));
	for (const char* effect : {"clip-path='url(named.svg#c)'/>", "mask='url(named.svg#m)'/>"})
		EXPECT_EQ("00ff00", ShowElements(rect + effect)) << effect;
	Write("pictures/named.css", "rect{fill:#f00}");
	EXPECT_EQ("00ff00", ShowElements("<style>@import 'named.css';</style>" + rect + "/>"));
}

TEST_F(ImageFiles, AnImageThatIsADocumentReadsNoFilesItself)
{
	Write("pictures/inner.svg", Document("<rect width='100' height='100' fill='#0f0'/>"
										 "<image width='100' height='100' href='beside.svg'/>"));
	EXPECT_EQ("00ff00, " + kMissing, Show("inner.svg"));
	EXPECT_EQ("none, " + kMissing, Show("document.svg"));
	Write("pictures/packed.svg", "<svg><rect id='a'");
	EXPECT_NE("ff0000", Show("packed.svg"));
}

TEST_F(ImageFiles, ImagesWithinImagesEnd)
{
	std::string link = "data:image/svg+xml,%3Csvg xmlns=\"http://www.w3.org/2000/svg\"/%3E";
	for (int level = 0; level < 10; level++)
	{
		std::string escaped;
		for (const char c : Document("<rect width='100' height='100' fill='#00f'/><image href='" + link + "'/>"))
		{
			if (c == '%' || c == '\'' || c == '"' || c == '<' || c == '#')
			{
				char text[4];
				std::snprintf(text, sizeof text, "%%%02X", static_cast<unsigned>(c));
				escaped += text;
			}
			else
				escaped += c;
		}
		link = "data:image/svg+xml," + escaped;
	}
	EXPECT_EQ("0000ff, " + kMissing, Show(link));
}

/// Draws elements with filters below a green square, which is there as long as there is time.
class Filters : public RendererTest
{
protected:
	static Lines WarningsOf(const std::string& elements, const SVGRenderOptions& options = {})
	{
		const CollectedDiagnostics diagnostics;
		const SVGDocumentRef document = LoadCompletely(Document(elements + "<rect width='9' height='9' fill='#0f0'/>"));
		const std::string color = DrawnPicture(document, options).At(5, 5);
		EXPECT_TRUE(color == "00ff00" || options.deadline < SVGRenderOptions().deadline) << elements;
		return diagnostics.lines;
	}

	static std::string Filtered(const std::string& primitives, const std::string& attributes = "")
	{
		return "<filter id='f' " + attributes + ">" + primitives +
			   "</filter><rect x='20' y='20' width='60' height='60' fill='#00f' filter='url(#f)'/>";
	}

	static DrawnPicture DrawFiltered(const std::string& elements, const SVGRenderOptions& options = {})
	{
		return DrawnPicture(LoadCompletely(Document(elements)), options);
	}
};

TEST_F(Filters, HugeOnesStayWithinTimeAndMemory)
{
	const std::string everywhere = "filterUnits='userSpaceOnUse' x='-1e6' y='-1e6' width='2e6' height='2e6'";
	const Lines none;
	EXPECT_EQ(none, WarningsOf(Filtered("<feGaussianBlur stdDeviation='1000000'/>", everywhere)));
	EXPECT_EQ(none, WarningsOf(Filtered("<feFlood/><feGaussianBlur stdDeviation='30000'/>", everywhere)));
	EXPECT_EQ(none, WarningsOf(Filtered("<feMorphology operator='dilate' radius='1e7'/>", everywhere)));
	EXPECT_EQ(none, WarningsOf(Filtered("<feOffset dx='1e300' dy='-1e300'/><feTile/>", everywhere)));
	EXPECT_EQ(none, WarningsOf(Filtered("<feFlood/><feTile/><feDisplacementMap in2='SourceGraphic' scale='1e30'/>",
										everywhere)));
	std::string many;
	for (int i = 0; i < 20000; i++)
		many += "<feOffset in='a" + std::to_string(i) + "' result='b" + std::to_string(i) + "'/>";
	WarningsOf(Filtered(many), {.deadline = 0.5});
	const Lines late = {"Drawing takes longer than a picture may; the rest is left out."};
	EXPECT_EQ(late, WarningsOf(Filtered("<feTurbulence baseFrequency='.1' numOctaves='1000'/>", everywhere),
							   {.scale = 60.0, .deadline = 0.3}));
	// What does not fit is worked out in a coarser grid, and is there.
	const DrawnPicture coarse = DrawFiltered(Filtered("<feFlood flood-color='#f00'/><feOffset dx='1'/>", everywhere),
											 {.scale = 8.0, .memoryLimit = 3.2e6});
	EXPECT_EQ("ff0000", coarse.At(400, 400));
}

TEST_F(Filters, ThoseThatLeadBackToThemselvesOrMultiplyEnd)
{
	const Lines circle = {"References that lead in a circle are left out."};
	EXPECT_EQ(circle, WarningsOf("<filter id='f'><feImage href='#g'/></filter><g id='g' filter='url(#f)'>"
								 "<rect width='50' height='50'/></g>"));
	EXPECT_EQ(circle, WarningsOf("<filter id='a'><feImage href='#y'/></filter><filter id='b'><feImage href='#x'/>"
								 "</filter><rect id='x' width='9' height='9' filter='url(#a)'/>"
								 "<rect id='y' width='9' height='9' filter='url(#b)'/>"));
	std::string levels = "<rect id='l0' width='60' height='60'/>";
	for (int level = 1; level <= 9; level++)
	{
		const std::string below = std::to_string(level - 1);
		std::string images;
		std::string nodes;
		for (int i = 0; i < 8; i++)
		{
			const std::string name = std::to_string(i);
			images += "<feImage href='#l" + below + "' result='" + name + "'/>";
			nodes += "<feMergeNode in='" + name + "'/>";
		}
		const std::string number = std::to_string(level);
		levels += "<filter id='f" + number + "'>" + images + "<feMerge>" + nodes + "</feMerge></filter><rect id='l" +
				  number + "' width='60' height='60' filter='url(#f" + number + ")'/>";
	}
	EXPECT_FALSE(WarningsOf("<defs>" + levels + "</defs><use href='#l9'/>", {.deadline = 0.5}).empty());
}

TEST_F(Filters, AreDrawnOnPagesAndAmongOtherEffects)
{
	// A shadow is outside of what its group touches, and of the layer that the group's opacity needs.
	const std::string group = "<filter id='f' x='0' y='0' width='3' height='3'><feDropShadow dx='40' dy='40' "
							  "stdDeviation='0' flood-color='#f00'/></filter><g opacity='.5'><g>"
							  "<rect width='30' height='30' fill='#00f' filter='url(#f)'/></g></g>";
	const DrawnPicture picture = DrawFiltered(group);
	EXPECT_EQ("ff000080", picture.At(60, 60));
	EXPECT_EQ("0000ff80", picture.At(15, 15));
	EXPECT_EQ("none", picture.At(75, 75));
	const SVGDocumentRef document = LoadCompletely(Document(group));
	const SVGContextRef context = Must(CreateObject<SVGContextInterface>(kSVGCairoContextClass));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	const CollectedDiagnostics diagnostics;
	Must(target->Begin(document, {.output = SVGRenderOutput::page}));
	Must(DrawSVGElement(context, document->GetRootElement()));
	Must(target->Finish(Text("/dev/null")));
	EXPECT_EQ(Lines(), diagnostics.lines);
}

} // namespace
} // namespace orvan
