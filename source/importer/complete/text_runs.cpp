// SPDX-License-Identifier: MIT
#include "importer/complete/text_runs.h"

#include "importer/complete/tags.h"

namespace orvan::svg::complete
{
namespace
{

constexpr bool IsBlank(char c) noexcept
{
	return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

Result<SVGElementRef> TextRuns::Append(HierarchyObject& parent, std::string_view characters, bool preservesSpace)
{
	BaseArray<char> text;
	ORVAN_TRY(text.Reserve(characters.size()));
	for (std::size_t i = 0; i < characters.size(); i++)
	{
		const char c = characters[i];
		if (!IsBlank(c))
		{
			ORVAN_TRY(text.Append(c));
			_endsWithBlank = false;
		}
		else if (preservesSpace)
		{
			// A line break of two characters is one.
			if (c == '\r' && i + 1 < characters.size() && characters[i + 1] == '\n')
				continue;
			ORVAN_TRY(text.Append(' '));
			_endsWithBlank = false;
		}
		else if (!_endsWithBlank)
		{
			ORVAN_TRY(text.Append(' '));
			_endsWithBlank = true;
		}
	}
	if (text.IsEmpty())
		return SVGElementRef();
	const auto run = ORVAN_TRY(FactoryOf(TagOf(SVGImportElementKind::textRun)).Create<SVGTextRunInterface>());
	ORVAN_TRY(run->SetText(ORVAN_TRY(String::Create({text.begin(), text.GetCount()}))));
	const auto hierarchy = Cast<HierarchyObjectInterface>(run);
	ORVAN_TRY(hierarchy->InsertAsLastChildOf(HierarchyObjectRef::From(&parent), {}));
	_last = hierarchy;
	return Cast<SVGElementInterface>(run);
}

Result<void> TextRuns::Finish() noexcept
{
	if (!_endsWithBlank || !_last)
		return {};
	const auto run = Cast<SVGTextRunInterface>(_last);
	const String text = run->GetText();
	if (text.View().ends_with(' '))
		ORVAN_TRY(run->SetText(ORVAN_TRY(String::Create(text.View().substr(0, text.GetSize() - 1)))));
	return {};
}

} // namespace orvan::svg::complete
