// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orvan::test
{
namespace
{
constexpr const char* kSample = ORVAN_EXAMPLES "/sample.svg";

std::string FirstBytes(const std::string& path, std::size_t count)
{
	return ReadFile(path).substr(0, count);
}

std::size_t CountFiles(const TemporaryFolder& folder)
{
	return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.GetPath()), {}));
}

TEST(RenderCommand, WritesThePictureThatTheSuffixNames)
{
	const TemporaryFolder folder;
	const std::string png = folder.GetPath() / "a.png";
	const std::string pdf = folder.GetPath() / "a.pdf";
	const ProgramRun pixels = RunProgram({"render", kSample, "-o", png, "--width", "96", "--background", "#fff"});
	EXPECT_EQ(pixels.status, 0) << pixels.errors;
	EXPECT_EQ(RunProgram({"icon", kSample, "-o", pdf}).status, 0);
	// The width and the height, which follows in the document's proportions, stand at the beginning of a PNG.
	EXPECT_EQ(FirstBytes(png, 24), std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x60\0\0\0\x40", 24));
	EXPECT_EQ(FirstBytes(pdf, 5), "%PDF-");
}

TEST(RenderCommand, ReadsWhatAPictureNeedsUnlessItIsToldNotTo)
{
	const TemporaryFolder folder;
	const std::string file = folder.Write(
		"a.svg",
		"<svg width='1in' height='20'><style>rect{fill:red}</style><rect width='9' height='9' stroke='q'/></svg>");
	const std::string png = folder.GetPath() / "a.png";
	const ProgramRun run = RunProgram({"render", file, "-o", png, "--dpi", "48"});
	EXPECT_EQ(run.status, 0);
	EXPECT_EQ(run.errors.find("WARNING: " + file + ":1:"), 0) << run.errors;
	EXPECT_EQ(FirstBytes(png, 24).substr(16), std::string("\0\0\0\x30\0\0\0\x0a", 8));
	// A size in pixels is one whatever their density.
	EXPECT_EQ(RunProgram({"render", file, "-o", png, "--dpi", "48", "--width", "96"}).status, 0);
	EXPECT_EQ(FirstBytes(png, 24).substr(16), std::string("\0\0\0\x60\0\0\0\x14", 8));
	EXPECT_EQ(RunProgram({"render", file, "-o", png, "--dpi", "48", "--height", "10"}).status, 0);
	EXPECT_EQ(FirstBytes(png, 24).substr(16), std::string("\0\0\0\x30\0\0\0\x0a", 8));
	EXPECT_EQ(RunProgram({"render", file, "-o", png, "--dpi", "48", "--scale", "2"}).status, 0);
	EXPECT_EQ(FirstBytes(png, 24).substr(16), std::string("\0\0\0\x60\0\0\0\x14", 8));
	EXPECT_EQ(RunProgram({"render", file, "-o", folder.GetPath() / "a.pdf", "--dpi", "48"}).status, 0);
	EXPECT_NE(ReadFile(folder.GetPath() / "a.pdf").find("/MediaBox [ 0 0 72 15 ]"), std::string::npos)
		<< "A page is an inch wide, and has no pixels.";
	EXPECT_EQ(RunProgram({"render", "--plain", file, "-o", png}).status, 1);
	const auto drawPlainly = [](const std::string& text)
	{
		return RunProgram({"render", "--plain", "-", "-o", "-"}, {.input = text}).output;
	};
	EXPECT_EQ(drawPlainly("<svg width='9' height='9'><style>rect{fill:red}</style><rect width='9' height='9'/></svg>"),
			  drawPlainly("<svg width='9' height='9'><rect width='9' height='9'/></svg>"));
}

TEST(RenderCommand, PaintsTheColorsAndTheElementThatItIsTold)
{
	const auto draw = [](const std::string& fill, const std::vector<std::string>& options)
	{
		std::vector<std::string> arguments = {"render", "-", "-o", "-"};
		arguments.insert(arguments.end(), options.begin(), options.end());
		return RunProgram(
			arguments, {.input = "<svg width='9' height='9'><rect width='9' height='9' fill='" + fill + "'/></svg>"});
	};
	EXPECT_EQ(draw("currentColor", {"--current-color", "#0f0"}).output, draw("lime", {}).output);
	EXPECT_EQ(draw("none", {"--background", "lime"}).output, draw("lime", {}).output);
	EXPECT_EQ(draw("currentColor", {}).output, draw("black", {}).output);
	EXPECT_EQ(draw("lime' id='a", {"--id", "a"}).output, draw("lime", {}).output);
	EXPECT_EQ(draw("lime", {"--id", "a"}).status, 1);
	EXPECT_EQ(draw("currentColor", {"--background", "red", "--current-color", "lime"}).output, draw("lime", {}).output);
	for (const char* wrong : {"url(#a)", "inherit", "lime\" x=\"", "<"})
		EXPECT_EQ(draw("none", {"--current-color", wrong}).status, 2) << wrong;
	const ProgramRun late = draw("lime", {"--deadline", "1e-9"});
	EXPECT_EQ(late.status, 0);
	EXPECT_EQ(late.errors.find("WARNING: <stdin>: "), 0) << late.errors;
}

TEST(RenderCommand, ReplacesAPictureOnlyByAWholeOne)
{
	namespace fs = std::filesystem;
	const TemporaryFolder folder;
	const std::string picture = folder.Write("a.png", "the old picture");
	const fs::path link = folder.GetPath() / "link.png";
	fs::create_symlink("a.png", link);
	constexpr auto kMode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
	fs::permissions(picture, kMode);

	// Every write beyond the first block fails, as on a full disk.
	const ProgramRun full = RunProgram({"render", kSample, "-o", link}, {.setup = "trap '' XFSZ; ulimit -f 1; "});
	EXPECT_EQ(full.status, 1);
	EXPECT_NE(full.errors.find(kSample), full.errors.npos) << full.errors;
	EXPECT_EQ(ReadFile(picture), "the old picture");
	EXPECT_EQ(CountFiles(folder), 2) << "nothing is left behind";

	EXPECT_EQ(RunProgram({"render", kSample, "-o", link}).status, 0);
	EXPECT_EQ(FirstBytes(picture, 4), "\x89PNG");
	EXPECT_TRUE(fs::is_symlink(link));
	EXPECT_EQ(fs::status(picture).permissions(), kMode);
	EXPECT_EQ(CountFiles(folder), 2);

	const fs::path fresh = folder.GetPath() / "fresh.png";
	EXPECT_EQ(RunProgram({"render", kSample, "-o", fresh}, {.setup = "umask 027; "}).status, 0);
	EXPECT_EQ(fs::status(fresh).permissions(), kMode);
	// What is no ordinary file is written to in place.
	const fs::path pipe = folder.GetPath() / "pipe.pdf";
	ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
	const std::string reader = "timeout 20 cat '" + pipe.string() + "' >'" + folder.GetPath().string() + "/copy' & ";
	EXPECT_EQ(RunProgram({"render", kSample, "-o", pipe}, {.setup = reader}).status, 0);
	EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(RenderCommand, DrawsSeveralFilesIntoAFolder)
{
	const TemporaryFolder folder;
	const std::string pictures = folder.GetPath() / "new/pictures/";
	const std::string refused = folder.Write("refused.svg", "<svg>");
	const std::string lamp = ORVAN_EXAMPLES "/lamp.svg";
	const ProgramRun run =
		RunProgram({"render", kSample, refused, lamp, "-", "-o", pictures}, {.input = ReadFile(kSample)});
	EXPECT_EQ(run.status, 1);
	EXPECT_EQ(run.errors.find(refused + ":1:"), 0) << run.errors;
	EXPECT_EQ(FirstBytes(pictures + "lamp.png", 4), "\x89PNG");
	EXPECT_EQ(ReadFile(pictures + "stdin.png"), ReadFile(pictures + "sample.png"));
	EXPECT_FALSE(std::filesystem::exists(pictures + "refused.png"));

	const std::string twin = folder.Write("twin/sample.svg", ReadFile(kSample));
	EXPECT_EQ(RunProgram({"render", kSample, twin, "-o", pictures}).status, 2);
	EXPECT_EQ(RunProgram({"render", kSample, twin, "-o", folder.GetPath() / "a.png"}).status, 2);
	EXPECT_EQ(RunProgram({"render", kSample, "-o", folder.GetPath(), "--format", "pdf"}).status, 0);
	EXPECT_EQ(FirstBytes(folder.GetPath() / "sample.pdf", 5), "%PDF-");
}

TEST(RenderCommand, WritesAPictureToStandardOutput)
{
	const TemporaryFolder folder;
	const std::string png = folder.GetPath() / "a.png";
	EXPECT_EQ(RunProgram({"render", kSample, "-o", png}).status, 0);
	EXPECT_EQ(RunProgram({"render", kSample, "-o", "-"}).output, ReadFile(png));
	EXPECT_EQ(RunProgram({"render", kSample, "-o", "-", "--format", "pdf"}).output.substr(0, 5), "%PDF-");
}

TEST(RenderCommand, TellsWrongUsageFromAPictureThatCannotBeMade)
{
	const TemporaryFolder folder;
	const std::string png = folder.GetPath() / "a.png";
	EXPECT_EQ(RunProgram({"render", kSample, "-o", "a.gif"}).status, 2);
	EXPECT_EQ(RunProgram({"render", kSample, "-o", png, "--background", "no color"}).status, 2);
	EXPECT_EQ(RunProgram({"render", kSample, "-o", png, "--scale", "0"}).status, 2);
	EXPECT_EQ(RunProgram({"render", kSample, "-o", png, "--scale", "1e9"}).status, 1);
	EXPECT_EQ(RunProgram({"render", folder.Write("refused.svg", "<svg>"), "-o", png}).status, 1);
	EXPECT_FALSE(std::filesystem::exists(png));
}

TEST(RenderCommand, SaysThatThereIsNoRenderer)
{
	const TemporaryFolder folder;
	const std::string name = "net.orvan.svg.so";
	std::filesystem::create_symlink(std::filesystem::path(ORVAN_MODULES) / name, folder.GetPath() / name);
	const ProgramRun run =
		RunProgram({"--modules", folder.GetPath(), "render", kSample, "-o", folder.GetPath() / "a.png"});
	EXPECT_EQ(run.status, 1);
	EXPECT_NE(run.errors.find("There is no renderer"), run.errors.npos) << run.errors;
}
} // namespace
} // namespace orvan::test
