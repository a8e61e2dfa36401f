// SPDX-License-Identifier: MIT
/// Objects that form trees: each has at most one parent and any number of ordered children.
#pragma once

#include "orvan/array.h"
#include "orvan/class_declaration.h"
#include "orvan/object.h"

namespace orvan
{

class HierarchyObjectInterface;
using HierarchyObjectRef = Ref<HierarchyObjectInterface>;

/// Names the list of children that an object is put into. There is one list, the empty branch; the argument keeps the
/// call shape for objects that one day have several.
struct HierarchyBranch
{
};

/// The interface of every object in a tree. A parent owns its children; a child knows its parent without keeping it
/// alive. Reading may run side by side; changing a tree must not overlap anything else on it.
class HierarchyObjectInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.core.interface.hierarchyobject";
	static constexpr const char* kName = "orvan.HierarchyObjectInterface";
	static constexpr int kSlotCount = 6;

	/// Makes the object the last child of `parent`, taking it out of the tree that it was in. Fails when the parent is
	/// null or stands below the object.
	ORVAN_METHOD(1, Result<void>, InsertAsLastChildOf,
				 (const HierarchyObjectRef& parent, const HierarchyBranch& branch), parent, branch)
	/// The parent; null for a root.
	ORVAN_METHOD(2, Result<HierarchyObjectRef>, GetParent, ())
	/// The children in order.
	ORVAN_METHOD(3, Result<BaseArray<HierarchyObjectRef>>, GetChildren, ())
	/// Takes all children out of the tree. Never fails.
	ORVAN_METHOD(4, void, RemoveAllChildren, ())
	/// The first child; null when there is none. With `GetNextSibling` this walks a tree without allocating.
	ORVAN_METHOD(5, HierarchyObjectRef, GetFirstChild, ())
	/// The next child of the same parent; null after the last.
	ORVAN_METHOD(6, HierarchyObjectRef, GetNextSibling, ())
};

/// The implementation of `HierarchyObjectInterface`, and the base of every class whose objects form trees. The links
/// stand inside the objects, so inserting allocates nothing. Trees of any depth can be released.
class HierarchyObject : public ObjectBase
{
public:
	HierarchyObject() noexcept = default;

	/// A copy stands outside of every tree.
	HierarchyObject(const HierarchyObject& other) noexcept : ObjectBase(other)
	{
	}

	~HierarchyObject()
	{
		DropChildren();
	}

	/// Slot 1 of the interface, as the others in their order: see there.
	Result<void> InsertAsLastChildOf(const HierarchyObjectRef& parent, const HierarchyBranch&) noexcept
	{
		if (!parent)
			return NullReferenceError("The parent to insert under is an empty reference.");
		auto* newParent = static_cast<HierarchyObject*>(parent.GetObject());
		ORVAN_TRY(CheckParent(*newParent));
		Place(newParent, nullptr);
		return {};
	}

	/// The parent; null for a root. Never fails.
	Result<HierarchyObjectRef> GetParent() const noexcept
	{
		return HierarchyObjectRef::From(_parent);
	}

	/// The children in order; fails for want of memory.
	Result<BaseArray<HierarchyObjectRef>> GetChildren() const noexcept
	{
		BaseArray<HierarchyObjectRef> children;
		std::size_t count = 0;
		for (const HierarchyObject* child = _firstChild; child != nullptr; child = child->_next)
			count++;
		ORVAN_TRY(children.Reserve(count));
		for (HierarchyObject* child = _firstChild; child != nullptr; child = child->_next)
			ORVAN_TRY(children.Append(HierarchyObjectRef::From(child)));
		return children;
	}

	/// Lets go of all children; those that are held elsewhere become roots.
	void RemoveAllChildren() noexcept
	{
		DropChildren();
	}

	/// The first child; null when there is none.
	HierarchyObjectRef GetFirstChild() const noexcept
	{
		return HierarchyObjectRef::From(_firstChild);
	}

	/// The next child of the same parent; null for the last and for a root.
	HierarchyObjectRef GetNextSibling() const noexcept
	{
		return HierarchyObjectRef::From(_next);
	}

	// The uncounted links, for implementation classes that walk their own trees.

	/// The previous child of the same parent; null for the first and for a root.
	HierarchyObject* PreviousSibling() const noexcept
	{
		return _previous;
	}

	/// The last child; null when there is none.
	HierarchyObject* LastChild() const noexcept
	{
		return _lastChild;
	}

	/// The parent; null for a root.
	HierarchyObject* Parent() const noexcept
	{
		return _parent;
	}

	/// The first child; null when there is none.
	HierarchyObject* FirstChild() const noexcept
	{
		return _firstChild;
	}

	/// The next child of the same parent; null for the last and for a root.
	HierarchyObject* NextSibling() const noexcept
	{
		return _next;
	}

	// Changing the links, for implementation classes that keep account of it.

	/// Whether the object may become a child of `parent`: not when that is the object itself or stands below it.
	Result<void> CheckParent(const HierarchyObject& parent) const noexcept
	{
		if (&parent == this)
			return IllegalArgumentError("An object cannot become its own child.");
		if (_firstChild != nullptr)
		{
			for (const HierarchyObject* at = &parent; at != nullptr; at = at->_parent)
			{
				if (at == this)
					return IllegalArgumentError("An object cannot become a child of an object below it.");
			}
		}
		return {};
	}

	/// Takes the object out of where it is and makes it the child of `parent`, which `CheckParent` allows, before
	/// `next`, a child of that parent and another object, or as the last one when `next` is null. A null parent makes
	/// it a root, which may destroy it.
	void Place(HierarchyObject* parent, HierarchyObject* next) noexcept
	{
		if (parent == nullptr)
		{
			if (_parent == nullptr)
				return;
			AddReference();
			Unlink();
			NotifyParentChanged();
			ReleaseReference();
			return;
		}
		AddReference();
		Unlink();
		Link(*parent, next);
	}

	/// Makes a new object, which has no parent yet and nothing below it, the last child of `parent`, which takes over
	/// the caller's count of it.
	void PlaceNew(HierarchyObject& parent) noexcept
	{
		Link(parent, nullptr);
	}

private:
	/// Enters a parent, which has counted its reference.
	void Link(HierarchyObject& parent, HierarchyObject* next) noexcept
	{
		_parent = &parent;
		_next = next;
		_previous = next != nullptr ? next->_previous : parent._lastChild;
		(_previous != nullptr ? _previous->_next : parent._firstChild) = this;
		(_next != nullptr ? _next->_previous : parent._lastChild) = this;
		NotifyParentChanged();
		if (const auto notify = parent.GetClass().declaration.load(std::memory_order_relaxed)->childAdded)
			notify(&parent, this);
	}

	/// Tells the class, where it wants to know, that the object has another parent or none now.
	void NotifyParentChanged() noexcept
	{
		if (const auto notify = GetClass().declaration.load(std::memory_order_relaxed)->parentChanged)
			notify(this);
	}

	/// Leaves the parent, which gives up its reference.
	void Unlink() noexcept
	{
		if (_parent == nullptr)
			return;
		(_previous != nullptr ? _previous->_next : _parent->_firstChild) = _next;
		(_next != nullptr ? _next->_previous : _parent->_lastChild) = _previous;
		_parent = _previous = _next = nullptr;
		ReleaseReference();
	}

	void DropChildren() noexcept
	{
		HierarchyObject* child = std::exchange(_firstChild, nullptr);
		_lastChild = nullptr;
		while (child != nullptr)
		{
			HierarchyObject* const next = child->_next;
			child->_parent = child->_previous = child->_next = nullptr;
			child->NotifyParentChanged();
			child->ReleaseReference();
			child = next;
		}
	}

	HierarchyObject* _parent = nullptr;
	HierarchyObject* _firstChild = nullptr;
	HierarchyObject* _lastChild = nullptr;
	HierarchyObject* _previous = nullptr;
	HierarchyObject* _next = nullptr;
};

} // namespace orvan
