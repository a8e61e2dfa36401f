// SPDX-License-Identifier: MIT
/// Edits that concern more than one element: places, the table of ids, names, the root.
#include "elements/element_classes.h"
#include "svg_document.h"

#include <algorithm>

namespace orvan::svg
{

namespace
{

/// The next object of a tree in document order; null at its end.
HierarchyObject* NextInTree(HierarchyObject* at, const HierarchyObject& top) noexcept
{
	if (at->FirstChild() != nullptr)
		return at->FirstChild();
	while (at != &top && at->NextSibling() == nullptr)
		at = at->Parent();
	return at != &top ? at->NextSibling() : nullptr;
}

/// Calls `visit` with each element of a tree that is of this module; stops at the first error.
template <typename Visit>
Result<void> ForEachElement(HierarchyObject& top, Visit visit) noexcept
{
	for (HierarchyObject* at = &top; at != nullptr; at = NextInTree(at, top))
	{
		if (ElementBase* element = AsElement(at))
			ORVAN_TRY(visit(*element));
	}
	return {};
}

bool IsBelow(const HierarchyObject& object, const HierarchyObject& top) noexcept
{
	const HierarchyObject* at = &object;
	while (at != nullptr && at != &top)
		at = at->Parent();
	return at != nullptr;
}

/// The attributes that hold an id, or an IRI, as a text; and those that hold a paint.
constexpr SVGImportAttribute kTextReferences[] = {SVGImportAttribute::mask,      SVGImportAttribute::clipPath,
												  SVGImportAttribute::link,      SVGImportAttribute::markerStart,
												  SVGImportAttribute::markerMid, SVGImportAttribute::markerEnd};
constexpr SVGImportAttribute kPaints[] = {SVGImportAttribute::fill, SVGImportAttribute::stroke};

Result<bool> RenameFilters(DataDictionary& attributes, const String& from, const String& to) noexcept
{
	constexpr auto kKey = static_cast<std::int32_t>(SVGImportAttribute::filter);
	const auto* filters = attributes.Find<BaseArray<SVGFilterFunction>>(kKey);
	if (filters == nullptr)
		return false;
	BaseArray<SVGFilterFunction> renamed;
	ORVAN_TRY(renamed.CopyFrom(*filters));
	bool isChanged = false;
	for (SVGFilterFunction& function : renamed)
	{
		if (function.type == SVGFilterFunctionType::reference && function.reference == from)
		{
			function.reference = to;
			isChanged = true;
		}
	}
	if (isChanged)
		ORVAN_TRY(attributes.Set(kKey, std::move(renamed)));
	return isChanged;
}

Result<bool> RenameMasks(DataDictionary& attributes, const String& from, const String& to) noexcept
{
	constexpr auto kKey = static_cast<std::int32_t>(SVGImportAttribute::maskLayers);
	const String* ids = attributes.Find<String>(kKey);
	if (ids == nullptr)
		return false;
	BaseArray<char> renamed;
	bool isChanged = false;
	for (std::string_view rest = ids->View(); !rest.empty();)
	{
		const std::size_t end = std::min(rest.find(' '), rest.size());
		const bool isFound = rest.substr(0, end) == from.View();
		const std::string_view id = isFound ? to.View() : rest.substr(0, end);
		isChanged |= isFound;
		ORVAN_TRY(renamed.AppendAll(id.data(), id.size()));
		rest.remove_prefix(end);
		if (!rest.empty())
			ORVAN_TRY(renamed.Append(' '));
		rest.remove_prefix(std::min<std::size_t>(1, rest.size()));
	}
	if (isChanged)
		ORVAN_TRY(attributes.Set(kKey, ORVAN_TRY(String::Create({renamed.begin(), renamed.GetCount()}))));
	return isChanged;
}

/// Renames the references of one element's attributes; the result says whether there were any.
Result<bool> RenameReferences(DataDictionary& attributes, const String& from, const String& to) noexcept
{
	bool isChanged = false;
	for (const SVGImportAttribute attribute : kTextReferences)
	{
		const auto key = static_cast<std::int32_t>(attribute);
		const String* reference = attributes.Find<String>(key);
		if (reference == nullptr || *reference != from)
			continue;
		ORVAN_TRY(attributes.Set(key, to));
		isChanged = true;
	}
	for (const SVGImportAttribute attribute : kPaints)
	{
		const auto key = static_cast<std::int32_t>(attribute);
		const SVGPaint* paint = attributes.Find<SVGPaint>(key);
		if (paint == nullptr || paint->type != SVGPaintType::reference || paint->reference != from)
			continue;
		SVGPaint renamed = *paint;
		renamed.reference = to;
		ORVAN_TRY(attributes.Set(key, std::move(renamed)));
		isChanged = true;
	}
	isChanged |= ORVAN_TRY(RenameFilters(attributes, from, to));
	isChanged |= ORVAN_TRY(RenameMasks(attributes, from, to));
	return isChanged;
}

} // namespace

Result<void> Document::SetAttributesTogether(ElementBase& element, DataDictionary attributes) noexcept
{
	return MakeEdit<MemberEdit<DataDictionary>>(&element, SVGChangeKind::attribute, SVGImportAttribute::unknown,
												element._attributes, std::move(attributes));
}

Result<void> Document::MovePlace(HierarchyObject& child, HierarchyObject* parent, HierarchyObject* next) noexcept
{
	// An element that can come back answers to the document meanwhile, so that it is the same when it does.
	ElementBase* element = AsElement(&child);
	if (element != nullptr && _history.IsKeeping())
		ORVAN_TRY(Own(*element));
	ORVAN_TRY(MakeEdit<PlaceEdit>(child, parent, next));
	if (_isTracking && parent != nullptr)
		ElementBase::TrackTree(child, true);
	return {};
}

Result<void> Document::Adopt(HierarchyObject& object) noexcept
{
	HierarchyObject* top = &object;
	while (top->Parent() != nullptr)
		top = top->Parent();
	if (ElementBase* element = AsElement(top))
		ORVAN_TRY(Own(*element));
	ElementBase::TrackTree(*top, true);
	return {};
}

Result<void> Document::TakeIdsOut(HierarchyObject& top) noexcept
{
	bool mayHaveOthers = false;
	ORVAN_TRY(ForEachElement(top,
							 [&](ElementBase& element) noexcept -> Result<void>
							 {
								 mayHaveOthers |= element.HasHadOtherId();
								 SVGElementRef* place = !element._id.IsEmpty() ? _ids.FindPlace(element._id) : nullptr;
								 if (place == nullptr || place->GetObject() != &element)
									 return {};
								 return MakeEdit<IdPlaceEdit>(*place, SVGElementRef());
							 }));
	if (!mayHaveOthers)
		return {};
	return _ids.ForEach(
		[&](const String&, SVGElementRef& place) noexcept -> Result<void>
		{
			if (!IsBelow(static_cast<ElementBase&>(*place.GetObject()), top))
				return {};
			return MakeEdit<IdPlaceEdit>(place, SVGElementRef());
		});
}

Result<void> Document::PutIdsIn(HierarchyObject& top) noexcept
{
	return ForEachElement(top,
						  [&](ElementBase& element) noexcept -> Result<void>
						  {
							  if (element._id.IsEmpty())
								  return {};
							  SVGElementRef& place = *ORVAN_TRY(_ids.MakePlace(element._id));
							  if (place)
								  return {};
							  return MakeEdit<IdPlaceEdit>(place, SVGElementRef::From(&element));
						  });
}

Result<void> Document::MakeReferencesFollow(const String& from, const String& to) noexcept
{
	return ForEachElement(static_cast<ElementBase&>(*_rootElement.GetObject()),
						  [&](ElementBase& element) noexcept -> Result<void>
						  {
							  DataDictionary changed = element._attributes;
							  if (ORVAN_TRY(RenameReferences(changed, from, to)))
								  ORVAN_TRY(SetAttributesTogether(element, std::move(changed)));
							  if (!Borrowed<SVGUseElementInterface>(&element))
								  return {};
							  auto& use = static_cast<UseElement&>(element);
							  return use.GetLink() == from ? use.RenameLink(*this, to) : Result<void>();
						  });
}

Result<void> Document::RenameId(const SVGElementRef& element, const String& id) noexcept
{
	const auto hierarchy = Cast<HierarchyObjectInterface>(element);
	ElementBase* own = AsElement(static_cast<HierarchyObject*>(hierarchy.GetObject()));
	const ElementBase::Standing standing = own != nullptr ? own->FindStanding() : ElementBase::Standing();
	if (!standing.isInTree || standing.document != this)
		return IllegalArgumentError("Only an element of the document can be given another id.");
	if (id.IsEmpty())
		return IllegalArgumentError("An element cannot be renamed to nothing.");
	const auto refuseTaken = [&](const ElementBase& other) noexcept -> Result<void>
	{
		if (&other != own && other.GetId() == id)
			return IllegalArgumentError("Another element has the id '@' already.", id);
		return {};
	};
	const SVGElementRef* found = _ids.Find(id);
	if (found != nullptr && found->GetObject() != own)
		return IllegalArgumentError("Another element has the id '@' already.", id);
	ORVAN_TRY(ForEachElement(static_cast<ElementBase&>(*_rootElement.GetObject()), refuseTaken));
	const String former = own->_id;
	if (former == id && found != nullptr)
		return {};
	return EditTogether(
		[&]() noexcept -> Result<void>
		{
			SVGElementRef* place = !former.IsEmpty() ? _ids.FindPlace(former) : nullptr;
			const bool wasFound = place != nullptr && place->GetObject() == own;
			if (wasFound)
				ORVAN_TRY(MakeEdit<IdPlaceEdit>(*place, SVGElementRef()));
			ORVAN_TRY(MakeEdit<IdPlaceEdit>(*ORVAN_TRY(_ids.MakePlace(id)), SVGElementRef::From(own)));
			ORVAN_TRY(
				MakeEdit<MemberEdit<String>>(own, SVGChangeKind::attribute, SVGImportAttribute::id, own->_id, id));
			return wasFound ? MakeReferencesFollow(former, id) : Result<void>();
		});
}

Result<void> Document::SetRootElement(const SVGElementRef& root) noexcept
{
	if (root == _rootElement)
		return {};
	const auto hierarchy = Cast<HierarchyObjectInterface>(root);
	ElementBase* element = AsElement(static_cast<HierarchyObject*>(hierarchy.GetObject()));
	if (root)
	{
		if (element == nullptr || element->Parent() != nullptr || element->FindStanding().isInTree)
			return IllegalArgumentError("Only an element without a parent, of no document, can become the root.");
		ORVAN_TRY(Own(*element));
	}
	return EditTogether(
		[&]() noexcept -> Result<void>
		{
			if (_rootElement)
				ORVAN_TRY(TakeIdsOut(static_cast<ElementBase&>(*_rootElement.GetObject())));
			ORVAN_TRY(MakeEdit<MemberEdit<SVGElementRef>>(nullptr, SVGChangeKind::loaded, SVGImportAttribute::unknown,
														  _rootElement, root));
			if (_isTracking)
				TrackRoot();
			return element != nullptr ? PutIdsIn(*element) : Result<void>();
		});
}

} // namespace orvan::svg
