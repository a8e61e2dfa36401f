// SPDX-License-Identifier: MIT
// Edit scripts over files: what is saved without an edit is what was loaded; what is saved after some loads again to
// the tree that was saved.

#include "document.h"
#include "require.h"
#include "save_check.h"

#include "orvan/hash.h"

#include <cstdint>

using namespace orvan;
using fuzz::EditKind;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string_view bytes(reinterpret_cast<const char*>(data), size);
	fuzz::LoadDocument("<svg/>"); // Loads the module.
	for (const bool isComplete : {true, false})
	{
		const SVGDocumentRef document = fuzz::OpenForEditing(bytes, isComplete);
		if (!Cast<SVGDocumentSourceInterface>(document)->HasSource())
			continue;
		Require(fuzz::Save(document) == bytes, "what nobody changed stays as it is", bytes);
		// The file says what is done to it.
		std::uint64_t script = HashBytes(bytes);
		constexpr int kEdits = 4;
		for (int i = 0; i < kEdits; i++)
		{
			script = script * 6364136223846793005 + 1442695040888963407;
			const auto kind = static_cast<EditKind>((script >> 60) % static_cast<std::uint64_t>(EditKind::count));
			fuzz::EditDocument(document, kind, script >> 20);
		}
		const std::string saved = fuzz::Save(document);
		if (saved.empty() || !isComplete)
			continue;
		const SVGDocumentRef again = fuzz::OpenForEditing(saved);
		Require(Cast<SVGDocumentSourceInterface>(again)->HasSource(), "what was saved loads", saved);
		const bool hasTransforms = !fuzz::MovesByPercentages(document->GetRootElement());
		const std::string before = fuzz::DescribeSaved(document->GetRootElement(), hasTransforms);
		const std::string after = fuzz::DescribeSaved(again->GetRootElement(), hasTransforms);
		Require(before == after, "what was saved is what is loaded",
				before == after ? saved : saved + fuzz::ShowDifference(before, after));
		Require(fuzz::Save(again) == saved, "what was saved stays as it is", saved);
	}
	return 0;
}
