// SPDX-License-Identifier: MIT
/// Attributes that are removed, listed and copied, wherever they stand.
#include "elements/element_classes.h"
#include "svg_document.h"

#include <algorithm>

namespace orvan::svg
{

namespace
{

using Number = SVGImportAttribute;

/// The element as one of a class, by the interface that only objects of the class have.
template <typename Class, typename I>
Class* As(ElementBase& element) noexcept
{
	return Borrowed<I>(&element) ? static_cast<Class*>(&element) : nullptr;
}

PathElement* AsPath(ElementBase& element) noexcept
{
	return As<PathElement, SVGPathElementInterface>(element);
}

UseElement* AsUse(ElementBase& element) noexcept
{
	return As<UseElement, SVGUseElementInterface>(element);
}

Result<ElementBase*> SourceOf(const SVGElementRef& source) noexcept
{
	const auto hierarchy = Cast<HierarchyObjectInterface>(source);
	ElementBase* element = AsElement(static_cast<HierarchyObject*>(hierarchy.GetObject()));
	if (element == nullptr)
		return IllegalArgumentError("Attributes can be copied from elements of this module only.");
	return element;
}

/// Makes one entry of a dictionary what it is in another.
Result<void> CopyEntry(const DataDictionary& from, DataDictionary& to, Number key) noexcept
{
	const auto number = static_cast<std::int32_t>(key);
	if (from.Has(number))
		return to.SetData(number, ORVAN_TRY(from.GetData(number)));
	ORVAN_TRY(to.Remove(number));
	return {};
}

} // namespace

Result<void> ElementBase::RemoveAttribute(Number key) noexcept
{
	switch (key)
	{
	case Number::id:
		return SetId({});
	case Number::transform:
		return GetLocalTransform() == Matrix2d() ? Result<void>() : AssignTransforms({});
	case Number::d:
	case Number::points:
		if (PathElement* path = AsPath(*this); path != nullptr && !path->GetPathView().IsEmpty())
			return path->Clear();
		return {};
	case Number::href:
		if (UseElement* use = AsUse(*this); use != nullptr && !use->GetLink().IsEmpty())
			return use->SetLink({});
		return {};
	default:
		break;
	}
	DataDictionary changed = _attributes;
	bool isChanged = ORVAN_TRY(changed.Remove(static_cast<std::int32_t>(key)));
	isChanged |= ORVAN_TRY(changed.Remove(static_cast<std::int32_t>(GetCompanionOf(key))));
	return isChanged ? ChangeAttributes(std::move(changed), key) : Result<void>();
}

Result<BaseArray<Number>> ElementBase::GetAttributeNumbers() const noexcept
{
	auto& self = const_cast<ElementBase&>(*this);
	BaseArray<Number> numbers;
	ORVAN_TRY(numbers.Reserve(_attributes.GetCount() + 4));
	for (const DataDictionary::Entry& entry : _attributes)
		IgnoreResult(numbers.Append(static_cast<Number>(entry.key)));
	const PathElement* path = AsPath(self);
	const UseElement* use = AsUse(self);
	if (!_id.IsEmpty())
		IgnoreResult(numbers.Append(Number::id));
	if (GetLocalTransform() != Matrix2d())
		IgnoreResult(numbers.Append(Number::transform));
	if (path != nullptr && !path->GetPathView().IsEmpty())
		IgnoreResult(numbers.Append(Number::d));
	if (use != nullptr && !use->GetLink().IsEmpty())
		IgnoreResult(numbers.Append(Number::href));
	std::sort(numbers.begin(), numbers.end());
	return numbers;
}

Result<void> ElementBase::CopyAttribute(const SVGElementRef& source, Number key) noexcept
{
	ElementBase& from = *ORVAN_TRY(SourceOf(source));
	switch (key)
	{
	case Number::id:
		return IllegalArgumentError("The id of an element cannot be copied.");
	case Number::transform:
		return AssignTransforms(from.CurrentTransforms());
	case Number::d:
	case Number::points:
		if (PathElement* path = AsPath(*this), *other = AsPath(from); path != nullptr && other != nullptr)
			return path->CopyPath(*other);
		return {};
	case Number::href:
		if (UseElement* use = AsUse(*this), *other = AsUse(from); use != nullptr && other != nullptr)
			return use->SetLink(other->GetLink());
		return {};
	default:
		break;
	}
	DataDictionary changed = _attributes;
	ORVAN_TRY(CopyEntry(from._attributes, changed, key));
	if (const Number companion = GetCompanionOf(key); companion != Number::unknown)
		ORVAN_TRY(CopyEntry(from._attributes, changed, companion));
	return ChangeAttributes(std::move(changed), key);
}

Result<void> ElementBase::CopyAttributes(const SVGElementRef& source) noexcept
{
	ElementBase& from = *ORVAN_TRY(SourceOf(source));
	const Standing standing = FindStanding();
	const auto copy = [&]() noexcept -> Result<void>
	{
		const DataDictionary before = _attributes;
		ORVAN_TRY(ChangeAttributes(from._attributes, Number::unknown));
		Result<void> copied = AssignTransforms(from.CurrentTransforms());
		if (!copied.IsOk() && !_isTracked)
			_attributes = before;
		return copied;
	};
	return standing.document != nullptr ? standing.document->EditTogether(copy) : copy();
}

} // namespace orvan::svg
