// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvan::test
{
namespace
{
TEST(RegistryCommand, PrintsEntriesWithTheirMethodsAndInterfaces)
{
	const ProgramRun run = RunProgram({"registry", "--json"});
	ASSERT_EQ(run.status, 0) << run.errors;
	const auto module = nlohmann::json::parse(run.output)["modules"].at(0);
	EXPECT_EQ(module["id"], "net.orvan.svg");
	EXPECT_EQ(nlohmann::json::parse(run.output)["modules"].at(1)["id"], "net.orvan.svg.cairo");
	nlohmann::json radius, circle, context;
	for (const auto& entry : module["entries"])
	{
		EXPECT_FALSE(entry.contains("registered")) << entry;
		if (entry["id"] == "net.orvan.image.interface.svgradius")
			radius = entry;
		if (entry["id"] == "net.orvan.image.class.svgcircleelement")
			circle = entry;
		if (entry["id"] == "net.orvan.image.class.svgcontext")
			context = entry;
	}
	EXPECT_EQ(radius["methods"],
			  nlohmann::json({"SetRadiusX", "GetRadiusX", "SetRadiusY", "GetRadiusY", "SetRadius", "GetRadius"}));
	EXPECT_EQ(circle["kind"], "class");
	EXPECT_EQ(circle["interfaces"].size(), 6);
	EXPECT_EQ(context["implementation"], "none");
}

TEST(RegistryCommand, LeavesOutAModuleThatIsBroken)
{
	const TemporaryFolder folder;
	const std::string name = "net.orvan.svg.so";
	std::filesystem::create_symlink(std::filesystem::path(ORVAN_MODULES) / name, folder.GetPath() / name);
	const std::string broken = folder.Write("a.broken.so", "no module");
	const ProgramRun run = RunProgram({"registry", "--modules", folder.GetPath()});
	EXPECT_EQ(run.status, 0);
	EXPECT_EQ(run.output.find("net.orvan.svg ("), 0);
	EXPECT_EQ(run.errors.find("WARNING: " + broken + ": "), 0) << run.errors;
	// Commands that use no other module do not look for one.
	const ProgramRun other = RunProgram({"--modules", folder.GetPath(), "tree", ORVAN_EXAMPLES "/lamp.svg"});
	EXPECT_EQ(other.status, 0);
	EXPECT_EQ(other.errors, "");
}

TEST(RegistryCommand, FailsWithoutTheModule)
{
	const TemporaryFolder folder;
	const ProgramRun run = RunProgram({"--modules", folder.GetPath(), "registry"});
	EXPECT_EQ(run.status, 1);
	EXPECT_NE(run.errors.find("There is no net.orvan.svg.so in " + folder.GetPath().string()), run.errors.npos)
		<< run.errors;
	EXPECT_NE(RunProgram({"--modules", "/nowhere", "registry"}).errors.find("/nowhere cannot be read: No such"),
			  run.errors.npos);
}
} // namespace
} // namespace orvan::test
