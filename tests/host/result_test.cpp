// SPDX-License-Identifier: MIT
#include "orvan/result.h"

#include "orvan/url.h"
#include "support.h"

namespace orvan
{
namespace
{

Result<String> Twice(Result<String> text)
{
	const String once = ORVAN_TRY(std::move(text));
	return String::Create(std::string(once.View()) + once.CString());
}

TEST(Result, TryYieldsTheValueOrLeavesWithTheUntouchedError)
{
	EXPECT_EQ("abab", Must(Twice(Text("ab"))).View());
	const Error error = NotFoundError("Nothing.");
	const Result<String> result = Twice(error);
	ASSERT_FALSE(result.IsOk());
	EXPECT_TRUE(result.GetError().GetMessage().IsSameObject(error.GetMessage()));
}

TEST(Result, AssignmentReplacesAValueByAnErrorAndBack)
{
	Result<String> result = Text("value");
	result = UnknownError("Gone.");
	EXPECT_EQ("Gone.", MessageOf(result));
	result = Result<String>(Text("back"));
	EXPECT_EQ("back", result.GetValue().View());
	Result<void> done;
	done = Result<void>(UnknownError("Not done."));
	EXPECT_EQ("Not done.", MessageOf(done));
}

TEST(Error, FillsInTextsIntegersNumbersAndOtherErrors)
{
	const Error inner = IllegalStateError("Closed.");
	const Error error = IllegalArgumentError("@ '@' @ @ @", Text("a"), "b@c", -5, 0.1, inner);
	EXPECT_EQ("a 'b@c' -5 0.1 Closed.", error.GetMessage().View());
	EXPECT_STREQ("net.orvan.error.illegalargument", GetErrorClassId(error.GetClass()));
}

TEST(Error, KnowsThePlaceInTheCodeWithoutItsFolder)
{
	const Error error = NullReferenceError("Empty.");
	const int line = __LINE__ - 1;
	EXPECT_EQ("result_test.cpp", error.GetFile().View());
	EXPECT_EQ(line, error.GetLine());
}

TEST(Error, OfInputAndOutputCarriesTheUrl)
{
	const Error error = IoError(Must(Url::Create("file:///a")), "Missing.");
	EXPECT_EQ("file:///a", error.GetUrlText().View());
	EXPECT_EQ(ErrorClass::io, error.GetClass());
}

TEST(Error, TurnsIntoTheOutOfMemoryErrorWhenItCannotBeMade)
{
	for (int number = 1;; number++)
	{
		const AllocationFailure failure(number, AllocationFailure::Extent::allFollowing);
		const Error error = NotFoundError("'@' is missing.", "something");
		if (!failure.HasFailed())
			break;
		EXPECT_EQ(ErrorClass::outOfMemory, error.GetClass()) << "from allocation " << number;
		EXPECT_EQ("There is not enough memory.", error.GetMessage().View());
	}
}

} // namespace
} // namespace orvan
