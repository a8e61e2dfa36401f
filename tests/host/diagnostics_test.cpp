// SPDX-License-Identifier: MIT
#include "orvan/diagnostics.h"

#include "support.h"

#include <thread>

namespace orvan
{
namespace
{

void AppendLine(const Diagnostic& diagnostic, void* context)
{
	static_cast<std::vector<std::string>*>(context)->push_back(FormatDiagnostic(diagnostic));
}

TEST(Diagnostics, LinesBeginWithTheLevelAndThePlaceInTheCode)
{
	std::vector<std::string> lines;
	const ThreadDiagnosticSink sink(&AppendLine, &lines);
	WarningOutput("Layer '@' is missing.", "a");
	CriticalOutput(nullptr, "Broken: @", NotFoundError("no root"));
	const std::string line = std::to_string(__LINE__ - 1);
	ASSERT_EQ(2u, lines.size());
	EXPECT_TRUE(lines[0].starts_with("WARNING: diagnostics_test.cpp(")) << lines[0];
	EXPECT_TRUE(lines[0].ends_with("): Layer 'a' is missing.")) << lines[0];
	EXPECT_EQ("CRITICAL: diagnostics_test.cpp(" + line + "): Broken: no root", lines[1]);
}

TEST(Diagnostics, GoToTheConsoleUnlessSomebodyWantsThem)
{
	testing::internal::CaptureStderr();
	WarningOutput("Seen.");
	EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("Seen.\n"));
}

TEST(Diagnostics, TravelWithThePositionInTheDocument)
{
	std::int64_t line = 0;
	const ThreadDiagnosticSink sink([](const Diagnostic& diagnostic, void* context)
									{ *static_cast<std::int64_t*>(context) = diagnostic.position->line; },
									&line);
	const DocumentPosition position{12, 3, "path", "p1"};
	CriticalOutput(&position, "Refused.");
	EXPECT_EQ(12, line);
}

TEST(Diagnostics, SinksOfAThreadNestAndLeaveOtherThreadsAlone)
{
	std::vector<std::string> process;
	std::vector<std::string> outer;
	std::vector<std::string> inner;
	SetDiagnosticSink(&AppendLine, &process);
	{
		const ThreadDiagnosticSink outerSink(&AppendLine, &outer);
		{
			const ThreadDiagnosticSink innerSink(&AppendLine, &inner);
			WarningOutput("1");
			std::thread([] { WarningOutput("2"); }).join();
		}
		WarningOutput("3");
	}
	WarningOutput("4");
	SetDiagnosticSink(nullptr, nullptr);
	EXPECT_EQ(2u, process.size());
	EXPECT_EQ(1u, outer.size());
	EXPECT_EQ(1u, inner.size());
}

} // namespace
} // namespace orvan
