// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace orvan::test
{
namespace
{
constexpr const char* kSample = ORVAN_EXAMPLES "/sample.svg";

std::string FirstBytes(const std::string& path, std::size_t count)
{
	std::string bytes(count, '\0');
	std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(count));
	return bytes;
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
