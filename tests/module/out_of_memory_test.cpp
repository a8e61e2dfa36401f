// SPDX-License-Identifier: MIT
/// Running out of memory at every single allocation.
#include "support/everything.h"
#include "support/svg_module.h"
#include "support/tree_json.h"
#include "svg_import.h"

namespace orvan
{
namespace
{

class OutOfMemory : public SvgModuleTest
{
protected:
	explicit OutOfMemory(std::string_view text = kEverything, const SVGImportOptions& options = {}) : file(text)
	{
		Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
		// The host keeps records of ids and types for ever; they are made here.
		const CollectedFindings findings;
		Must(document->Init(url));
		whole = Contents();
		document->Reset();
		EXPECT_EQ(std::vector<std::string>(), findings.lines);
	}

	/// Everything that the document answers with.
	std::string Contents() const
	{
		std::string contents = JsonOf(document);
		for (const SVGElementRef& element : Must(document->GetElementsByIdWithPrefix({})))
			contents += std::string(element->GetId()) + ' ';
		return contents;
	}

	/// Loads with the allocation `number` failing (and all after it, or not) and checks everything that may not happen.
	/// True when the load got by without a failure.
	bool LoadWithFailure(int number, AllocationFailure::Extent extent) const
	{
		SCOPED_TRACE(number);
		const CollectedFindings findings;
		const std::int64_t before = CountAllocations();
		bool hasFailed = false;
		bool isLoaded = false;
		{
			const AllocationFailure failure(number, extent);
			const Result<void> result = document->Init(url);
			hasFailed = failure.HasFailed();
			isLoaded = result.IsOk();
			if (!result.IsOk())
			{
				EXPECT_EQ(ErrorClass::outOfMemory, result.GetError().GetClass());
				EXPECT_FALSE(document->GetRootElement()) << "a part of a tree, or a placeholder";
			}
		}
		EXPECT_EQ(std::vector<std::string>(), findings.lines);
		// Giving unused memory back may fail without harm.
		EXPECT_TRUE(isLoaded || hasFailed);
		if (isLoaded)
		{
			EXPECT_EQ(whole, Contents());
		}
		document->Reset();
		EXPECT_EQ(before, CountAllocations());
		return !hasFailed;
	}

	const TextFile file;
	const Url url = file.GetUrl();
	const SVGDocumentRef document = MakeDocument();
	std::string whole;
};

TEST_F(OutOfMemory, EndsALoadWithItsErrorAndLeavesNothing)
{
	for (const auto extent : {AllocationFailure::Extent::one, AllocationFailure::Extent::allFollowing})
	{
		int number = 1;
		while (!LoadWithFailure(number, extent) && !HasFailure())
			number++;
		EXPECT_GT(number, 60);
	}
}

/// A complete load, with all that sheets may have.
class OutOfMemoryWithSheets : public OutOfMemory
{
protected:
	OutOfMemoryWithSheets()
		: OutOfMemory(
			  "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10' style='--a: re/**/d'><style>"
			  "@namespace s url(http://www.w3.org/2000/svg); @layer b, a; @media (color) { s|rect { fill: var(--a) } }"
			  "@supports (fill: red) { @layer a { g { --b: calc(1px + 10%); rect { stroke-width: var(--b) } } } }"
			  ":has(> rect) { stroke: color-mix(in lab, red, c\\75rrentColor) !important } #a ~ rect { x: 1px }"
			  "</style><g id='g'><rect id='a' style='stroke: var(--c, blue); all: unset'/><rect fill='var(--a)'/>"
			  "<g clip-path='polygon(1px 2px, 3px 4px)' filter='blur(1px) url(#f) drop-shadow(1px 2px)' "
			  "marker='url(#k)' "
			  "mask='url(#m), url(#n)' transform-origin='1px 2px' font='italic bold 12px a, b' rotate='5deg'/>"
			  "<path clip-path='path(\"M0 0L1 1\")' stroke-dasharray='1 2 3' d='M0 0L1 1'/><polygon points='1,2 3,4'/>"
			  "<text x='1 2 3' rotate='1 2' font-family='a, b'>a<tspan dx='1'>b</tspan> c<textPath path='M0 0L1 "
			  "1'>d</textPath>"
			  "</text><feColorMatrix values='1 2 3'/><image href='a.png'/><use href='#a'/><title>t</title>"
			  "<linearGradient gradientTransform='scale(2)'><stop/></linearGradient></g></svg>",
			  {true, true, false, {}})
	{
	}
};

TEST_F(OutOfMemoryWithSheets, EndsALoadWithItsErrorAndLeavesNothing)
{
	for (const auto extent : {AllocationFailure::Extent::one, AllocationFailure::Extent::allFollowing})
	{
		int number = 1;
		while (!LoadWithFailure(number, extent) && !HasFailure())
			number++;
		EXPECT_GT(number, 40);
	}
}

TEST_F(OutOfMemory, LeavesTheDocumentUsable)
{
	for (const int number : {1, 2, 5, 20, 80})
	{
		{
			const AllocationFailure failure(number, AllocationFailure::Extent::one);
			EXPECT_FALSE(document->Init(url).IsOk());
		}
		Must(document->Init(url));
		EXPECT_EQ(whole, Contents());
	}
}

TEST_F(OutOfMemory, IsTheErrorOfEveryQueryThatAllocates)
{
	Must(document->Init(url));
	const auto path = Cast<SVGPathElementInterface>(Find(document, "p"));
	const auto gradient = Cast<SVGLinearGradientElementInterface>(Find(document, "lg"));
	const SVGElementRef use = Find(document, "u");
	const std::int64_t before = CountAllocations();
	EXPECT_GT(FailEachAllocation([&] { return document->GetElementsByIdWithPrefix({}); }), 0);
	EXPECT_GT(FailEachAllocation([&] { return path->GetPath(); }), 0);
	EXPECT_GT(FailEachAllocation([&] { return gradient->GetLinearGradient(); }), 0);
	for (const auto& element : {Find(document, "p"), Find(document, "layer1"), use, Find(document, "t")})
		EXPECT_GT(FailEachAllocation([&] { return CloneObject(element); }), 0);
	EXPECT_GT(
		FailEachAllocation([&] { return CreateObject<SVGElementInterface>("net.orvan.image.class.svgrectelement"); }),
		0);
	EXPECT_EQ(before, CountAllocations());
}

} // namespace
} // namespace orvan
