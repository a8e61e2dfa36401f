// SPDX-License-Identifier: MIT
#include "writer/saved_attributes.h"

#include "writer/element_text.h"

namespace orvan::svg
{
namespace
{

/// Makes an entry what it is in another dictionary; throws for want of memory.
void Restore(DataDictionary& values, const DataDictionary& before, std::int32_t key)
{
	const auto restore = [&]() -> Result<void>
	{
		if (before.Has(key))
			return values.SetData(key, ORVAN_TRY(before.GetData(key)));
		ORVAN_TRY(values.Remove(key));
		return {};
	};
	if (!restore().IsOk())
		throw std::bad_alloc();
}

/// Whether a value is the same, if need be as text.
bool IsSame(const DataDictionary& values, const AttributeCover& cover, const DataDictionary::Entry& entry,
			complete::Tag tag)
{
	if (HasSame(values, cover.values, entry))
		return true;
	const complete::Rule* const rule = FindWritingRule(WrittenAs(static_cast<SVGImportAttribute>(entry.key)));
	std::string present;
	std::string covering;
	return rule != nullptr && FormatEntry(present, values, *rule, tag, {}) == Formatted::text &&
		   FormatEntry(covering, cover.values, *rule, tag, {}) == Formatted::text && present == covering;
}

} // namespace

SavedAttributes::SavedAttributes(std::span<const AttributeCover> covers, std::span<const ElementBase* const> switched,
								 const DocumentSource* source)
{
	for (const AttributeCover& cover : covers)
	{
		const ElementBase& element = *ElementOf(cover.element);
		DataDictionary bare = element.Attributes();
		for (const DataDictionary::Entry& entry : cover.values)
		{
			if (IsSame(element.Attributes(), cover, entry, TagOfElement(element, nullptr, nullptr)))
				Restore(bare, cover.before, entry.key);
		}
		_others.emplace(&element, std::move(bare));
	}
	if (source == nullptr)
		return;
	RecordFinder finder(*source);
	for (const ElementBase* element : switched)
	{
		const std::uint32_t record = finder.Find(*element);
		if (record == kNoRecord)
			continue;
		DataDictionary& bare = _others.try_emplace(element, element->Attributes()).first->second;
		Restore(bare, source->loaded[record].attributes, static_cast<std::int32_t>(SVGImportAttribute::display));
	}
}

bool HasSame(const DataDictionary& values, const DataDictionary& others, const DataDictionary::Entry& entry) noexcept
{
	const auto isSame = [&]<typename T>(const auto& equals, const T* other)
	{
		const T* const own = other != nullptr ? values.Find<T>(entry.key) : nullptr;
		return own != nullptr && equals(*own, *other);
	};
	const auto equals = []<typename T>(const T& a, const T& b)
	{
		return a == b;
	};
	const auto equalLengths = [](const SVGLength& a, const SVGLength& b)
	{
		return a.value == b.value && a.unit == b.unit;
	};
	const auto equalPaints = [](const SVGPaint& a, const SVGPaint& b)
	{
		return a.type == b.type && a.color == b.color && a.reference == b.reference && a.fallback == b.fallback &&
			   a.alpha == b.alpha;
	};
	const auto equalBoxes = [&](const SVGViewbox& a, const SVGViewbox& b)
	{
		return equalLengths(a.x, b.x) && equalLengths(a.y, b.y) && equalLengths(a.width, b.width) &&
			   equalLengths(a.height, b.height);
	};
	return isSame(equals, others.GetValue<std::int32_t>(entry)) || isSame(equals, others.GetValue<Float>(entry)) ||
		   isSame(equals, others.GetValue<String>(entry)) || isSame(equalLengths, others.GetValue<SVGLength>(entry)) ||
		   isSame(equalPaints, others.GetValue<SVGPaint>(entry)) ||
		   isSame(equalBoxes, others.GetValue<SVGViewbox>(entry));
}

} // namespace orvan::svg
