// SPDX-License-Identifier: MIT
/// Pictures: their sizes, their files and the life of the module.
#include "support/drawn_picture.h"

#include <limits>
#include <memory>
#include <sstream>

namespace orvan
{
namespace
{

class Target : public RendererTest
{
protected:
	static SVGRenderTargetRef MakeTarget()
	{
		return Cast<SVGRenderTargetInterface>(Must(CreateObject<SVGContextInterface>(kSVGContextClass)));
	}

	static std::string SizeOf(const std::string& attributes, const SVGRenderOptions& options = {})
	{
		const SVGRenderTargetRef target = MakeTarget();
		const Result<void> begun = target->Begin(Load("<svg " + attributes + "/>"), options);
		if (!begun.IsOk())
			return MessageOf(begun);
		std::ostringstream text;
		text << target->GetSize().x << " x " << target->GetSize().y;
		return text.str();
	}

	static std::string ReadAll(const std::filesystem::path& path)
	{
		std::ifstream file(path, std::ios::binary);
		return {std::istreambuf_iterator<char>(file), {}};
	}
};

TEST_F(Target, TheSizeComesFromTheDocumentAndTheOptions)
{
	EXPECT_EQ("96 x 48", SizeOf("width='1in' height='48'"));
	EXPECT_EQ("30 x 20", SizeOf("viewBox='5 5 30 20'"));
	EXPECT_EQ("60 x 40", SizeOf("width='60' viewBox='0 0 30 20'"));
	EXPECT_EQ("60 x 30", SizeOf("width='60' viewBox='0 0 30 0'"));
	EXPECT_EQ("50 x 20", SizeOf("width='10em' height='20' font-size='5'"));
	EXPECT_EQ("300 x 150", SizeOf(""));
	EXPECT_EQ("11 x 3", SizeOf("width='10.2' height='3'"));
	EXPECT_EQ("40 x 20", SizeOf("viewBox='0 0 20 10'", {.width = 40.0}));
	EXPECT_EQ("120 x 60", SizeOf("viewBox='0 0 20 10'", {.height = 20.0, .scale = 3.0}));
	EXPECT_EQ("7 x 9", SizeOf("viewBox='0 0 20 10'", {.width = 7.0, .height = 9.0}));
	EXPECT_EQ("72 x 36", SizeOf("width='96' height='48'", {.output = SVGRenderOutput::page}));
}

TEST_F(Target, SizesThatMakeNoSenseOrArePastAllBoundsAreRefused)
{
	EXPECT_EQ("A picture of 1e+06 by 1e+06 is too large: at most 32767 on a side and 67108864 pixels.",
			  SizeOf("width='1000000' height='1000000'"));
	EXPECT_EQ("A picture of 30000 by 30000 is too large: at most 32767 on a side and 67108864 pixels.",
			  SizeOf("width='30000' height='30000'"));
	EXPECT_EQ("The document is -1 by 5 in size: there is nothing to draw.", SizeOf("width='-1' height='5'"));
	EXPECT_EQ("A picture of 0 by 0 at scale 0 cannot be made.", SizeOf("", {.scale = 0.0}));
	EXPECT_EQ("A picture of -1 by 0 at scale 1 cannot be made.", SizeOf("", {.width = -1.0}));
	EXPECT_EQ("A picture cannot be made in 0 seconds and 1 bytes.", SizeOf("", {.deadline = 0.0, .memoryLimit = 1.0}));
	EXPECT_EQ("A picture cannot be made in 1 seconds and 0 bytes.", SizeOf("", {.deadline = 1.0, .memoryLimit = 0.0}));
	EXPECT_EQ("A picture of 0 by inf at scale 1 cannot be made.",
			  SizeOf("", {.height = std::numeric_limits<double>::infinity()}));
	EXPECT_EQ(ErrorClass::nullReference, MakeTarget()->Begin(MakeDocument(), {}).GetError().GetClass());
}

TEST_F(Target, AnOutermostElementIsFittedIntoTheSizeAskedFor)
{
	const SVGDocumentRef document =
		Load("<svg width='10' height='10'><rect width='10' height='10' fill='#00f'/></svg>");
	const DrawnPicture picture(
		document, {.width = 40.0, .height = 20.0, .background = {1.0, 1.0, 0.0}, .backgroundOpacity = 1.0});
	EXPECT_EQ("ffff00", picture.At(5, 10));
	EXPECT_EQ("0000ff", picture.At(12, 2));
	EXPECT_EQ("0000ff", picture.At(28, 18));
	EXPECT_EQ("ffff00", picture.At(35, 10));
}

TEST_F(Target, AnElementByItselfIsAsLargeAsWhatItPaints)
{
	const SVGDocumentRef document = LoadCompletely(
		Document("<svg width='9' height='100' viewBox='0 0 18 200'><g opacity='.5' fill='#f00' transform='scale(2)'>"
				 "<rect id='r' x='10' y='20' width='10' height='6' stroke='#00f' stroke-width='2'/><rect id='n'/></g>"
				 "</svg><rect width='100' height='100' fill='#0f0'/>"));
	const auto draw = [&](SVGRenderOptions options)
	{
		options.elementId = Must(String::Create("r"));
		return DrawnPicture(document, options);
	};
	const DrawnPicture picture = draw({.scale = 2.0});
	EXPECT_EQ(24, picture.GetPixels().width);
	EXPECT_EQ(16, picture.GetPixels().height);
	EXPECT_EQ("0000ff", picture.At(0, 0));
	EXPECT_EQ("ff0000", picture.At(4, 4));
	EXPECT_EQ("0000ff", picture.At(23, 15));
	// In the middle of a size that is given, as large as fits.
	const DrawnPicture wide = draw({.width = 48.0, .height = 16.0, .backgroundOpacity = 1.0});
	EXPECT_EQ("000000", wide.At(11, 8));
	EXPECT_EQ("0000ff", wide.At(12, 8));
	EXPECT_EQ("0000ff", wide.At(35, 8));
	EXPECT_EQ("000000", wide.At(36, 8));
	const DrawnPicture high = draw({.width = 12.0, .height = 16.0, .backgroundOpacity = 1.0});
	EXPECT_EQ("000000", high.At(6, 3));
	EXPECT_EQ("0000ff", high.At(6, 4));
	EXPECT_EQ("0000ff", high.At(6, 11));
	EXPECT_EQ("000000", high.At(6, 12));
	// Of texts and pictures, too, only what is in it; and groups count where they are in it, not around it.
	const std::string image = " width='9' height='9' preserveAspectRatio='none' href=\"data:image/svg+xml,%3Csvg "
							  "xmlns='http://www.w3.org/2000/svg'%3E%3Crect width='100%25' height='100%25' "
							  "fill='lime'/%3E%3C/svg%3E\"/>";
	const SVGDocumentRef mixed = LoadCompletely(Document(
		"<g font-family='DejaVu Sans' font-size='20' opacity='.5'><text y='90'>█</text><image" + image +
		"<g id='q' opacity='.5'><text x='20' y='60' fill='#f00'>█</text><g transform='translate(40 41)'><image id='i'" +
		image + "</g></g><text id='t' y='40'>█</text></g>"));
	const DrawnPicture parts(mixed, {.elementId = Must(String::Create("q"))});
	EXPECT_EQ(30, parts.GetPixels().width);
	EXPECT_EQ(24, parts.GetPixels().height);
	EXPECT_EQ("ff000080", parts.At(8, 12));
	EXPECT_EQ("00ff0080", parts.At(25, 5));
	for (const auto& [id, color] : {std::pair("t", "000000"), std::pair("i", "00ff00")})
		EXPECT_EQ(color, DrawnPicture(mixed, {.elementId = Must(String::Create(id))}).At(4, 4)) << id;
	const auto fail = [&](const char* id)
	{
		return MessageOf(MakeTarget()->Begin(document, {.elementId = Must(String::Create(id))}));
	};
	EXPECT_EQ("Nothing is painted of the element with id 'n'.", fail("n"));
	EXPECT_EQ("SVG element with id 'q' not found.", fail("q"));
}

TEST_F(Target, PicturesCanBeMadeInMemoryOfTheCallers)
{
	constexpr std::int32_t kStride = 448; // 112 pixels.
	const SVGDocumentRef document = Load(Document("<rect width='100' height='50' fill='#00f'/>"));
	std::vector<std::uint32_t> memory(11200, 0x12345678); // 112 a row, 100 rows.
	auto* const pixels = reinterpret_cast<unsigned char*>(memory.data());
	const DrawnPicture down(document, {.pixels = pixels, .stride = kStride});
	EXPECT_EQ(pixels, down.GetPixels().data);
	EXPECT_EQ("0000ff", down.At(99, 49));
	EXPECT_EQ("none", down.At(99, 50));
	EXPECT_EQ(0x12345678u, memory[100]); // What lies between the rows is not touched.
	const DrawnPicture up(document, {.pixels = pixels + std::ptrdiff_t{99} * kStride, .stride = -kStride});
	EXPECT_EQ(0xff0000ffu, memory[std::size_t{99} * 112]);
	EXPECT_EQ(0u, memory[0]);
	for (const auto& [shift, stride] : {std::pair(0, 396), std::pair(0, -396), std::pair(0, 450), std::pair(2, 448)})
	{
		EXPECT_EQ("Pixels " + std::to_string(stride) + " bytes apart from row to row cannot hold rows of 100 pixels.",
				  MessageOf(MakeTarget()->Begin(document, {.pixels = pixels + shift, .stride = stride})));
	}
}

TEST_F(Target, FilesAreWrittenInTheirFormatAndTroublesAreReported)
{
	const TemporaryFolder folder;
	const SVGDocumentRef document = Load(Document("<text y='50' mask='url(#m)'>Hello</text><mask id='m'>"
												  "<rect width='100' height='100' fill='#fff'/></mask>"));
	const SVGContextRef context = Must(CreateObject<SVGContextInterface>(kSVGContextClass));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	EXPECT_EQ(ErrorClass::illegalState, target->Finish(Text("a.png")).GetError().GetClass());
	for (const auto output : {SVGRenderOutput::pixels, SVGRenderOutput::page})
	{
		Must(target->Begin(document, {.output = output}));
		Must(DrawSVGElement(context, document->GetRootElement()));
		Must(target->Finish(Text((folder / "picture").string())));
		EXPECT_EQ(output == SVGRenderOutput::pixels ? "\x89PNG" : "%PDF", ReadAll(folder / "picture").substr(0, 4));
		EXPECT_NE(std::string::npos,
				  ReadAll(folder / "picture").find(output == SVGRenderOutput::pixels ? "IEND" : "%%EOF"));
	}
	EXPECT_EQ("A page has no pixels.", MessageOf(target->GetPixels()));
	EXPECT_EQ(ErrorClass::io, target->Finish(Text("/dev/full")).GetError().GetClass());
	EXPECT_EQ(ErrorClass::io, target->Finish(Text((folder / "no/picture").string())).GetError().GetClass());
}

TEST_F(Target, WhatIsDrawnAfterTheEndIsNotInThePicture)
{
	const SVGDocumentRef document = Load(Document("<rect width='100' height='100'/>"));
	const SVGContextRef context = Must(CreateObject<SVGContextInterface>(kSVGContextClass));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	Must(target->Begin(document, {}));
	const SVGRenderPixels pixels = Must(target->GetPixels());
	Must(DrawSVGElement(context, document->GetRootElement()));
	EXPECT_EQ(0, pixels.data[50 * pixels.stride + 200 + 3]);
}

TEST(RendererModule, ExportsItsDescriptorAlone)
{
	const std::string command = "nm -D --defined-only --format=posix '" ORVAN_CAIRO_MODULE "' | cut -d' ' -f1";
	const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
	char names[256] = {};
	const std::size_t count = std::fread(names, 1, sizeof(names) - 1, pipe.get());
	EXPECT_EQ("g_orvan\n", std::string(names, count));
}

TEST(RendererModule, LoadsAndUnloadsAgainAndAgainWithTextDrawnInBetween)
{
	for (int round = 0; round < 20; round++)
	{
		Module* const svg = Must(Module::Load(ORVAN_SVG_MODULE));
		Module* const renderer = Must(Module::Load(ORVAN_CAIRO_MODULE));
		{
			const SVGDocumentRef document = Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
			Must(document->Init(
				TextFile("<svg width='50' height='50'><text y='40' font-size='50'>M</text></svg>").GetUrl()));
			const DrawnPicture picture(document);
			EXPECT_NE("none", picture.At(25, 30).substr(0, 4) + picture.At(8, 30));
			EXPECT_FALSE(Module::Unload(renderer).IsOk());
		}
		Must(Module::Unload(renderer));
		Must(Module::Unload(svg));
		EXPECT_FALSE(CreateObject<SVGContextInterface>(kSVGContextClass).IsOk());
	}
}

} // namespace
} // namespace orvan
