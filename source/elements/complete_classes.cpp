// SPDX-License-Identifier: MIT
#include "elements/complete_classes.h"

namespace orvan::svg
{

namespace
{

/// Appends the characters of the runs below an element, in document order and without recursion: a tree may be deeper
/// than the stack.
Result<void> AppendCharacters(const HierarchyObject& top, BaseArray<char>& characters) noexcept
{
	const HierarchyObject* at = top.FirstChild();
	while (at != nullptr)
	{
		const HierarchyObject* below = nullptr;
		if (const ElementBase* element = AsElement(const_cast<HierarchyObject*>(at)))
		{
			const SVGImportElementKind kind = element->GetElementType();
			if (const auto run = SVGTextRunRef::From(const_cast<HierarchyObject*>(at)))
			{
				const String text = run->GetText();
				ORVAN_TRY(characters.AppendAll(text.View().data(), text.GetSize()));
			}
			else if (kind == SVGImportElementKind::tspan || kind == SVGImportElementKind::textPath ||
					 kind == SVGImportElementKind::anchor)
				below = at->FirstChild();
		}
		if (below != nullptr)
		{
			at = below;
			continue;
		}
		while (at != &top && at->NextSibling() == nullptr)
			at = at->Parent();
		at = at != &top ? at->NextSibling() : nullptr;
	}
	return {};
}

} // namespace

Result<String> TextContent::GetCharacters() const noexcept
{
	BaseArray<char> characters;
	ORVAN_TRY(AppendCharacters(_element, characters));
	return String::Create({characters.begin(), characters.GetCount()});
}

Result<void> TextContent::SetPositions(SVGImportAttribute first, SVGImportAttribute list,
									   const BaseArray<SVGLength>& positions) noexcept
{
	DataDictionary changed = _element.GetAttributeDictionary();
	BaseArray<SVGLength> copy;
	ORVAN_TRY(copy.CopyFrom(positions));
	if (!positions.IsEmpty())
		ORVAN_TRY(changed.Set(static_cast<std::int32_t>(first), positions[0]));
	else
		ORVAN_TRY(changed.Remove(static_cast<std::int32_t>(first)));
	ORVAN_TRY(changed.Set(static_cast<std::int32_t>(list), std::move(copy)));
	return _element.ChangeAttributes(std::move(changed), SVGImportAttribute::unknown);
}

Result<BaseArray<SVGLength>> TextContent::GetPositions(SVGImportAttribute first, SVGImportAttribute list) const noexcept
{
	BaseArray<SVGLength> positions = ORVAN_TRY(GetList<SVGLength>(list));
	if (positions.IsEmpty())
	{
		if (const SVGLength* single = _element.Find<SVGLength>(first))
			ORVAN_TRY(positions.Append(*single));
	}
	return positions;
}

} // namespace orvan::svg
