// SPDX-License-Identifier: MIT
/// Documents on many threads; the thread sanitizer watches.
#include "support/everything.h"
#include "support/svg_module.h"

#include <thread>

namespace orvan
{
namespace
{

class Threads : public SvgModuleTest
{
protected:
	/// Runs `work` with the numbers 0 … 5 side by side.
	template <typename Work>
	static void RunSideBySide(Work work)
	{
		std::vector<std::thread> threads;
		for (int number = 0; number < 6; number++)
			threads.emplace_back([&work, number] { work(number); });
		for (std::thread& thread : threads)
			thread.join();
	}
};

TEST_F(Threads, LoadDifferentDocumentsSideBySide)
{
	RunSideBySide(
		[](int number)
		{
			for (int round = 0; round < 20; round++)
			{
				const std::string id = "g" + std::to_string(number);
				EXPECT_EQ("svg(g#" + id + ")", OutlineOf("<svg><g id='" + id + "' style='fill:red'/></svg>"));
				EXPECT_TRUE(RefusalOf("<svg><g fill='" + id + "'/></svg>").ends_with('"' + id + '"'));
				EXPECT_EQ("path#p", Outline(Find(Load(kEverything), "p")));
			}
		});
}

TEST_F(Threads, ReadOneDocumentSideBySide)
{
	const SVGDocumentRef document = Load(kEverything);
	const std::string outline = Outline(document->GetRootElement());
	RunSideBySide(
		[&](int)
		{
			for (int round = 0; round < 50; round++)
			{
				EXPECT_EQ(outline, Outline(document->GetRootElement()));
				EXPECT_EQ(13u, Must(document->GetElementsByIdWithPrefix({})).GetCount());
				EXPECT_FALSE(document->GetElementById(Text("nobody")).IsOk());
				const SVGElementRef path = Find(document, "p");
				EXPECT_EQ(path->GetFill().reference, "lg");
				EXPECT_EQ(3u, Must(path->GetStrokeDashArray()).GetCount());
				EXPECT_FALSE(Must(Cast<SVGPathElementInterface>(path)->GetPath()).IsEmpty());
				const auto gradient = Cast<SVGLinearGradientElementInterface>(Find(document, "lg"));
				EXPECT_EQ(2u, Must(gradient->GetLinearGradient()).stops.GetCount());
				// A copy is the thread's own, whatever it shares with its source.
				const SVGElementRef copy = Must(CloneObject(path));
				Must(copy->SetOpacity(0.5));
				Must(copy->GetWorldTransform());
			}
		});
	EXPECT_FALSE(Find(document, "p")->HasAttribute(Attribute::opacity));
}

TEST_F(Threads, ReleaseOneTreeFromManySides)
{
	for (int round = 0; round < 20; round++)
	{
		std::vector<SVGElementRef> held;
		{
			const SVGDocumentRef document = Load(kEverything);
			for (const char* id : {"p", "lg", "t", "root", "ci", "u"})
				held.push_back(Find(document, id));
		}
		RunSideBySide([&](int number) { held[static_cast<std::size_t>(number)] = nullptr; });
	}
}

} // namespace
} // namespace orvan
