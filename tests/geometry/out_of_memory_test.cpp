// SPDX-License-Identifier: MIT
/// Running out of memory at every allocation of every question.
#include "geometry_module.h"
#include "orvan/host/allocation_failure.h"

#include <functional>

namespace orvan
{
namespace
{

class GeometryOutOfMemory : public GeometryTest
{
};

TEST_F(GeometryOutOfMemory, IsAnErrorOfEveryQuestion)
{
	// Of many elements, the records take memory in the midst of what is filtered, too.
	std::string many;
	for (int i = 0; i != 40; ++i)
		many += "<path d='M90 90h1v1z'/>";
	const AskedPicture picture(
		"<clipPath id='c'><circle cx='9' cy='9' r='8'/><path d='M0 0h9v9z'/></clipPath><linearGradient id='g'><stop/>"
		"<stop offset='1'/></linearGradient><defs><rect id='d' width='3' height='2'/></defs><g clip-path='url(#c)'>"
		"<rect id='r' width='9' height='12' fill='url(#g)' stroke='red' stroke-dasharray='2 1'/><use href='#d'/></g>"
		"<filter id='f'><feImage href='#d'/></filter><text id='t' x='9' y='30' filter='url(#f) blur(1px)'>ab</text>"
		"<g filter='url(#f)'>" +
		many + "</g>");
	const SVGGeometryRef& geometry = picture.geometry;
	const SVGElementRef shape = picture["r"];
	const SVGElementRef definition = picture["d"];
	const SVGOutlineRef outline = Must(geometry->GetOutline(shape, SVGCoordinates::view));
	const SVGOutlineRef other = Must(geometry->GetOutline(definition, SVGCoordinates::view));
	constexpr SVGFillRule kRule = SVGFillRule::nonzero;
	// Each answers with its error, or with none.
	const auto errorOf = [](const auto& result)
	{
		return result.IsOk() ? std::optional<ErrorClass>() : result.GetError().GetClass();
	};
	using Question = std::function<std::optional<ErrorClass>()>;
	const Question questions[] = {
		[&] { return errorOf(geometry->GetBox(shape, SVGBoxKind::visual, SVGCoordinates::view)); },
		[&] { return errorOf(geometry->GetBox(definition, SVGBoxKind::fill, SVGCoordinates::parent)); },
		[&] {
			return errorOf(geometry->FindAt({5, 5}, {.findsAll = true}));
		},
		[&] {
			return errorOf(geometry->FindIn({0, 0, 50, 50, false}, false));
		},
		[&] { return errorOf(geometry->GetOutline(shape, SVGCoordinates::view)); },
		[&] { return errorOf(geometry->NormalizeWith({}, SVGNormalizedClips::applied)); },
		[&] { return errorOf(geometry->NormalizeToDocument({}, SVGNormalizedClips::kept)); },
		[&] { return errorOf(outline->Combine(other, SVGOutlineOperation::exclude, kRule, kRule, 0.0)); },
		[&] { return errorOf(outline->GetStroke({}, 0.1)); },
	};
	for (std::size_t index = 0; index < std::size(questions); index++)
	{
		SCOPED_TRACE(index);
		int number = 1;
		// Each of the first ones, then ever fewer.
		for (bool hasFailed = true; hasFailed; number += 1 + number / 20)
		{
			geometry->Update();
			std::optional<ErrorClass> error;
			{
				const AllocationFailure failure(number, AllocationFailure::Extent::one);
				error = questions[index]();
				hasFailed = failure.HasFailed();
			}
			EXPECT_EQ(ErrorClass::outOfMemory, error.value_or(ErrorClass::outOfMemory)) << number;
			EXPECT_TRUE(hasFailed || !error) << number;
			ASSERT_LT(number, 5000);
		}
		EXPECT_GT(number, 3); // There were some to fail.
		EXPECT_EQ(std::nullopt, questions[index]());
	}
	EXPECT_EQ("r", picture.At(5, 8));
}

} // namespace
} // namespace orvan
