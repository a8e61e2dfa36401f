// SPDX-License-Identifier: MIT
/// Elements that come, go and move.
#include "elements/element_base.h"
#include "svg_document.h"

namespace orvan::svg
{

constinit std::atomic<int> ElementBase::_trackingDocuments = 0;

void ElementBase::CountTrackingDocuments(int more) noexcept
{
	_trackingDocuments.fetch_add(more, std::memory_order_relaxed);
}

namespace
{

/// What an object of a tree answers to: itself when it is an element of this module, or what of ours is above it.
ElementBase::Standing StandingOf(HierarchyObject* object) noexcept
{
	while (object != nullptr && AsElement(object) == nullptr)
		object = object->Parent();
	return object != nullptr ? AsElement(object)->FindStanding() : ElementBase::Standing();
}

Result<HierarchyObject*> HierarchyOf(const SVGElementRef& element) noexcept
{
	const auto hierarchy = Cast<HierarchyObjectInterface>(element);
	if (!hierarchy)
		return NullReferenceError("There is no element to insert, or it is of no tree.");
	return static_cast<HierarchyObject*>(hierarchy.GetObject());
}

bool IsRootOfDocument(HierarchyObject& object) noexcept
{
	const ElementBase* element = AsElement(&object);
	if (element == nullptr)
		return false;
	const ElementBase::Standing standing = element->FindStanding();
	return standing.isInTree && standing.document->GetRootElement().GetObject() == &object;
}

Result<void> RefuseRoot(HierarchyObject& object) noexcept
{
	if (IsRootOfDocument(object))
		return IllegalArgumentError("The root of a document cannot be moved or taken out. Set another root.");
	return {};
}

/// Whether the document's table of ids follows what comes and goes. The older methods leave it as it is.
enum class Ids
{
	follow,
	stay
};

/// Takes an object out of its parent, as an edit of the document that it belongs to.
Result<void> TakeOut(HierarchyObject& object, Ids ids) noexcept
{
	const ElementBase::Standing standing = StandingOf(object.Parent());
	if (standing.document == nullptr)
	{
		object.Place(nullptr, nullptr);
		return {};
	}
	Document& document = *standing.document;
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			if (standing.isInTree && ids == Ids::follow)
				ORVAN_TRY(document.TakeIdsOut(object));
			return document.MovePlace(object, nullptr, nullptr);
		});
}

/// Makes an object the child of `parent`, which may be so, before `next`.
Result<void> PutIn(HierarchyObject& object, HierarchyObject& parent, HierarchyObject* next, Ids ids) noexcept
{
	const ElementBase::Standing from = StandingOf(&object);
	ElementBase::Standing to = StandingOf(&parent);
	// Below elements of no document it remains with its own, if that has to bring it back as it is now.
	if (to.document == nullptr && from.document != nullptr && from.document->History().IsKeeping())
	{
		ORVAN_TRY(from.document->Adopt(parent));
		to.document = from.document;
	}
	// Where it goes back to when that is undone is of the document from now on.
	if (from.document == nullptr && object.Parent() != nullptr && to.document != nullptr &&
		to.document->History().IsKeeping())
		ORVAN_TRY(to.document->Adopt(*object.Parent()));
	// Between documents it is two edits, one of each.
	if (from.document != nullptr && from.document != to.document && object.Parent() != nullptr)
		ORVAN_TRY(TakeOut(object, ids));
	if (to.document == nullptr)
	{
		object.Place(&parent, next);
		return {};
	}
	Document& document = *to.document;
	const bool wasInTree = from.document == to.document && from.isInTree;
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			if (wasInTree && !to.isInTree && ids == Ids::follow)
				ORVAN_TRY(document.TakeIdsOut(object));
			ORVAN_TRY(document.MovePlace(object, &parent, next));
			if (!wasInTree && to.isInTree && ids == Ids::follow)
				ORVAN_TRY(document.PutIdsIn(object));
			return {};
		});
}

} // namespace

// Looking ------------------------------------------------------------------------------------------------------------

std::int64_t ElementBase::GetChildCount() const noexcept
{
	std::int64_t count = 0;
	for (const HierarchyObject* child = FirstChild(); child != nullptr; child = child->NextSibling())
		count++;
	return count;
}

SVGElementRef ElementBase::GetChildAt(std::int64_t index) const noexcept
{
	HierarchyObject* child = index >= 0 ? FirstChild() : nullptr;
	while (child != nullptr && index-- > 0)
		child = child->NextSibling();
	return SVGElementRef::From(child);
}

std::int64_t ElementBase::GetIndex() const noexcept
{
	std::int64_t index = Parent() != nullptr ? 0 : -1;
	for (const HierarchyObject* at = PreviousSibling(); at != nullptr; at = at->PreviousSibling())
		index++;
	return index;
}

// Changing -----------------------------------------------------------------------------------------------------------

Result<void> ElementBase::Remove() noexcept
{
	ORVAN_TRY(RefuseRoot(*this));
	return Parent() != nullptr ? TakeOut(*this, Ids::follow) : Result<void>();
}

Result<void> ElementBase::InsertChildBefore(const SVGElementRef& child, const SVGElementRef& next) noexcept
{
	HierarchyObject& object = *ORVAN_TRY(HierarchyOf(child));
	ORVAN_TRY(object.CheckParent(*this));
	ORVAN_TRY(RefuseRoot(object));
	HierarchyObject* before = nullptr;
	if (next)
	{
		before = ORVAN_TRY(HierarchyOf(next));
		if (before->Parent() != this)
			return IllegalArgumentError("The element to insert before is no child of this one.");
		if (before == &object)
			return {};
	}
	return PutIn(object, *this, before, Ids::follow);
}

Result<void> ElementBase::ReplaceWith(const SVGElementRef& replacement) noexcept
{
	HierarchyObject& object = *ORVAN_TRY(HierarchyOf(replacement));
	HierarchyObject* const parent = Parent();
	if (parent == nullptr)
		return IllegalArgumentError("An element without a parent cannot be replaced.");
	if (&object == this)
		return {};
	ORVAN_TRY(object.CheckParent(*parent));
	ORVAN_TRY(RefuseRoot(*this));
	ORVAN_TRY(RefuseRoot(object));
	HierarchyObject* next = NextSibling();
	if (next == &object)
		next = object.NextSibling();
	const Standing standing = StandingOf(parent);
	if (standing.document == nullptr)
	{
		Place(nullptr, nullptr);
		return PutIn(object, *parent, next, Ids::follow);
	}
	Document& document = *standing.document;
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			// First out, then in, so that the new one can take over the id.
			ORVAN_TRY(TakeOut(*this, Ids::follow));
			return PutIn(object, *parent, next, Ids::follow);
		});
}

// The older methods --------------------------------------------------------------------------------------------------

Result<void> ElementBase::InsertTracked(const HierarchyObjectRef& parent) noexcept
{
	if (!parent)
		return HierarchyObject::InsertAsLastChildOf(parent, {});
	auto& newParent = *static_cast<HierarchyObject*>(parent.GetObject());
	ORVAN_TRY(CheckParent(newParent));
	return PutIn(*this, newParent, nullptr, Ids::stay);
}

Result<void> ElementBase::RemoveChildren() noexcept
{
	const Standing standing = FirstChild() != nullptr ? FindStanding() : Standing();
	if (standing.document == nullptr)
	{
		HierarchyObject::RemoveAllChildren();
		return {};
	}
	Document& document = *standing.document;
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			for (HierarchyObject *child = LastChild(), *previous = nullptr; child != nullptr; child = previous)
			{
				previous = child->PreviousSibling();
				ORVAN_TRY(document.MovePlace(*child, nullptr, nullptr));
			}
			return {};
		});
}

/// Never fails, though recording it may.
void ElementBase::RemoveAllTracked() noexcept
{
	const Standing standing = FindStanding();
	if (RemoveChildren().IsOk())
		return;
	// Nothing changed so far. What a transaction has promised weighs more than this call.
	EditHistory& history = standing.document->History();
	if (history.IsInTransaction())
	{
		history.Fail();
		return;
	}
	history.Clear();
	for (HierarchyObject* child = FirstChild(); child != nullptr; child = child->NextSibling())
		TrackTree(*child, false);
	HierarchyObject::RemoveAllChildren();
}

} // namespace orvan::svg
