// SPDX-License-Identifier: MIT
/// Single edits, as a history keeps them.
#pragma once

#include "elements/element_base.h"
#include "svg_edit.h"

#include <new>
#include <utility>

namespace orvan::svg
{

/// One change of one thing: it holds what the thing is not at the moment, its former value or, when it was taken back,
/// the later one. Taking back and making again exchange the two, which neither allocates nor fails.
class Edit
{
public:
	Edit(HierarchyObject* subject, SVGChangeKind kind, SVGImportAttribute attribute) noexcept
		: _subject(HierarchyObjectRef::From(subject)), _kind(kind), _attribute(attribute)
	{
	}
	Edit(const Edit&) = delete;
	virtual ~Edit() = default;

	/// Exchanges what the thing is and what is held here.
	virtual void Swap() noexcept = 0;

	/// What observers are to be told after a swap. Silent edits are told by others.
	virtual SVGChange Describe() const noexcept
	{
		return {_kind, _attribute, Cast<SVGElementInterface>(_subject), {}, nullptr};
	}

	virtual bool IsSilent() const noexcept
	{
		return false;
	}

	/// The element that changed; null when it is the document.
	HierarchyObject* GetSubject() const noexcept
	{
		return static_cast<HierarchyObject*>(_subject.GetObject());
	}

	SVGChangeKind GetKind() const noexcept
	{
		return _kind;
	}

	SVGImportAttribute GetAttribute() const noexcept
	{
		return _attribute;
	}

	/// An edit in host memory, in the hands of the caller.
	template <typename T, typename... Args>
	static Result<T*> Make(Args&&... args) noexcept
	{
		void* memory = Host().allocate(sizeof(T));
		if (memory == nullptr)
			return OutOfMemoryError();
		return new (memory) T(std::forward<Args>(args)...);
	}

	/// Destroys what `Make` made.
	static void Destroy(Edit* edit) noexcept
	{
		edit->~Edit();
		Host().free(edit);
	}

	// The links of `EditList`.
	Edit* previous = nullptr;
	Edit* next = nullptr;
	bool startsStep = false;    ///< The first edit of a step of the history.
	bool isOutsideStep = false; ///< Made outside of a transaction, so that more of the same may join it.

private:
	HierarchyObjectRef _subject;
	SVGChangeKind _kind;
	SVGImportAttribute _attribute;
};

/// A member of an element, or of the document, that has another value.
template <typename T>
class MemberEdit : public Edit
{
public:
	MemberEdit(HierarchyObject* subject, SVGChangeKind kind, SVGImportAttribute attribute, T& member, T other) noexcept
		: Edit(subject, kind, attribute), _member(member), _other(std::move(other))
	{
	}

	void Swap() noexcept override
	{
		std::swap(_member, _other);
	}

private:
	T& _member;
	T _other;
};

/// A place in the table of ids that has another element, or none. Observers hear of what caused it.
class IdPlaceEdit final : public MemberEdit<SVGElementRef>
{
public:
	IdPlaceEdit(SVGElementRef& place, SVGElementRef element) noexcept
		: MemberEdit(nullptr, SVGChangeKind::attribute, SVGImportAttribute::id, place, std::move(element))
	{
	}

	bool IsSilent() const noexcept override
	{
		return true;
	}
};

/// An element that stands elsewhere.
class PlaceEdit final : public Edit
{
public:
	/// `parent` and `before` say where the element is not yet; see `HierarchyObject::Place`.
	PlaceEdit(HierarchyObject& child, HierarchyObject* parent, HierarchyObject* before) noexcept
		: Edit(&child, SVGChangeKind::inserted, SVGImportAttribute::unknown), _expected(Ref(child.Parent())),
		  _parent(Ref(parent)), _next(Ref(before))
	{
	}

	void Swap() noexcept override;
	SVGChange Describe() const noexcept override;

private:
	static HierarchyObjectRef Ref(HierarchyObject* object) noexcept
	{
		return HierarchyObjectRef::From(object);
	}

	HierarchyObjectRef _expected; ///< The parent that the element has, unless somebody interfered.
	HierarchyObjectRef _parent;
	HierarchyObjectRef _next;
};

} // namespace orvan::svg
