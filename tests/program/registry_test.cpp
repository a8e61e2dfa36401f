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
	EXPECT_EQ(circle["interfaces"].size(), 5);
	EXPECT_EQ(context["implementation"], "none");
}

TEST(RegistryCommand, FailsWithoutTheModule)
{
	const TemporaryFolder folder;
	const ProgramRun run = RunProgram({"--modules", folder.GetPath(), "registry"});
	EXPECT_EQ(run.status, 1);
	EXPECT_NE(run.errors.find(folder.GetPath()), run.errors.npos) << run.errors;
}
} // namespace
} // namespace orvan::test
