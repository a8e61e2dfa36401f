// SPDX-License-Identifier: MIT
// Whole files, one of whose allocations fails, or one and all behind it. Which is drawn from the file by a hash, so
// that every file is an input.

#include "document.h"
#include "require.h"

#include "orvan/host/allocation_failure.h"
#include "orvan/host/diagnostic_sink.h"

#include <cstdint>
#include <string>

using namespace orvan;
using fuzz::Require;

namespace
{
/// What all elements say, in document order.
std::string DescribeTree(const SVGElementRef& element)
{
	std::string description = fuzz::DescribeElement(element) + '(';
	auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild();
	for (; child; child = child->GetNextSibling())
		description += DescribeTree(Cast<SVGElementInterface>(child));
	return description + ')';
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string_view text(reinterpret_cast<const char*>(data), size);
	const std::uint64_t choice = HashBytes(text);
	// The first load shows what the file is like, and lets the host make what it makes once.
	const fuzz::LoadedDocument loaded = fuzz::LoadDocument(text);
	const std::string description = DescribeTree(loaded.document->GetRootElement());

	const fuzz::TextFile file(text);
	const ThreadDiagnosticSink silence([](const Diagnostic&, void*) {}, nullptr);
	Result<void> result;
	bool hasFailed = false;
	{
		const AllocationFailure failure(static_cast<std::int64_t>(1 + choice / 2 % (choice % 5 == 0 ? 2000 : 100)),
										choice % 2 != 0 ? AllocationFailure::Extent::one
														: AllocationFailure::Extent::allFollowing);
		result = loaded.document->Init(file.GetUrl());
		hasFailed = failure.HasFailed();
	}
	// What can be done without is: giving room back, or the end of a message. Then the tree is whole all the same.
	if (result.IsOk())
		Require(DescribeTree(loaded.document->GetRootElement()) == description, "a load is whole or an error", text);
	else
		Require(hasFailed && result.GetError().GetClass() == ErrorClass::outOfMemory,
				"a failed allocation is the out-of-memory error", text);
	Require(loaded.document->Init(file.GetUrl()).IsOk(), "the document can be used again", text);
	Require(DescribeTree(loaded.document->GetRootElement()) == description, "and is as it was", text);
	return 0;
}
