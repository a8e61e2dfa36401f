// SPDX-License-Identifier: MIT
#include "elements/element_base.h"

#include <cmath>

namespace orvan::svg
{

ElementBase::~ElementBase()
{
	if (_transforms == nullptr)
		return;
	if (_hasOwner)
		static_cast<OwnedTransforms*>(_transforms)->~OwnedTransforms();
	Host().free(_transforms);
}

Result<void> ElementBase::CopyStateTo(ElementBase& copy) const noexcept
{
	if (_transforms != nullptr)
		*ORVAN_TRY(copy.OwnTransforms()) = *_transforms;
	copy._attributes = _attributes;
	copy._id = _id;
	copy._type = _type;
	// The copy stands outside of every tree, like a new element: its world transform is another one.
	copy._isTransformDirty = true;
	return {};
}

Result<void> ElementBase::SetStrokeDashArray(const BaseArray<SVGLength>& value) noexcept
{
	BaseArray<SVGLength> copy;
	ORVAN_TRY(copy.CopyFrom(value));
	return Store(SVGImportAttribute::strokeDashArray, std::move(copy));
}

Result<BaseArray<SVGLength>> ElementBase::GetStrokeDashArray() const noexcept
{
	BaseArray<SVGLength> copy;
	if (const auto* stored = Find<BaseArray<SVGLength>>(SVGImportAttribute::strokeDashArray))
		ORVAN_TRY(copy.CopyFrom(*stored));
	return copy;
}

Result<ElementBase::Transforms*> ElementBase::OwnTransforms() noexcept
{
	if (_transforms == nullptr)
	{
		void* memory = Host().allocate(sizeof(Transforms));
		if (memory == nullptr)
			return OutOfMemoryError();
		_transforms = new (memory) Transforms;
	}
	return _transforms;
}

const ElementBase::Transforms& ElementBase::CurrentTransforms() const noexcept
{
	static constexpr Transforms kUnset{};
	return _transforms != nullptr ? *_transforms : kUnset;
}

template <typename Assign>
Result<void> ElementBase::ChangeTransforms(Assign assign) noexcept
{
	Transforms* own = ORVAN_TRY(OwnTransforms());
	if (_isTracked) [[unlikely]]
	{
		Transforms changed = *own;
		assign(changed);
		return ReplaceTransforms(changed);
	}
	assign(*own);
	return MarkSubtreeDirty();
}

Result<void> ElementBase::SetLocalTransform(const Matrix2d& transform) noexcept
{
	return ChangeTransforms([&](Transforms& own) { own.local = transform; });
}

/// Makes all that a client can see of the transforms what it is elsewhere.
Result<void> ElementBase::AssignTransforms(const Transforms& transforms) noexcept
{
	return ChangeTransforms(
		[&](Transforms& own)
		{
			const Matrix2d world = own.world;
			own = transforms;
			own.world = world;
		});
}

Matrix2d ElementBase::GetLocalTransform() const noexcept
{
	return CurrentTransforms().local;
}

Result<Matrix2d> ElementBase::GetWorldTransform() noexcept
{
	if (_isTransformDirty)
	{
		// From the uppermost element whose cache is out of date down to this one, without recursion: a tree may be
		// deeper than the stack.
		BaseArray<ElementBase*> chain;
		for (ElementBase* at = this; at != nullptr && at->_isTransformDirty; at = AsElement(at->Parent()))
			ORVAN_TRY(chain.Append(at));
		for (std::size_t i = chain.GetCount(); i-- > 0;)
			ORVAN_TRY(chain[i]->UpdateWorldTransform());
	}
	return CurrentTransforms().world;
}

/// Computes the world transform from that of the parent, which is up to date when it is one of ours.
Result<void> ElementBase::UpdateWorldTransform() noexcept
{
	Transforms* own = ORVAN_TRY(OwnTransforms());
	if (ElementBase* parent = AsElement(Parent()))
		own->world = parent->CurrentTransforms().world * own->local;
	else if (const auto foreign = SVGElementRef::From(Parent()))
		own->world = ORVAN_TRY(foreign->GetWorldTransform()) * own->local;
	else
		own->world = own->local;
	_isTransformDirty = false;
	return {};
}

Result<void> ElementBase::MarkTransformDirty() noexcept
{
	return MarkSubtreeDirty();
}

void ElementBase::OnChildAdded(ObjectBase& child) noexcept
{
	const ElementBase* element = AsElement(static_cast<HierarchyObject*>(&child));
	if (element != nullptr && !element->_hasForeignBelow)
		return;
	for (HierarchyObject* at = this; at != nullptr; at = at->Parent())
	{
		if (ElementBase* above = AsElement(at))
			above->_hasForeignBelow = true;
	}
}

/// True when a walk that marks has this element before it or has been here.
bool ElementBase::IsBelowMarking() const noexcept
{
	for (HierarchyObject* at = Parent(); at != nullptr; at = at->Parent())
	{
		if (const ElementBase* above = AsElement(at); above != nullptr && above->_isMarking)
			return true;
	}
	return false;
}

/// Among elements of this module, one that is dirty has no clean one below it: a world transform is only ever computed
/// together with those of all ancestors, and whoever comes under another parent is marked. So marking stops where it
/// meets a dirty element, unless there is something foreign below, which may do as it likes.
///
/// Foreign elements are told, and what stands below them is marked whether they pass it on or not. When one of them
/// fails, the others are marked nevertheless; the first error is the result.
Result<void> ElementBase::MarkSubtreeDirty() noexcept
{
	const auto isSettled = [](const ElementBase& element)
	{
		return element._isTransformDirty && !element._hasForeignBelow;
	};
	// A foreign element that passes a mark on comes upon what the walk reaches by itself.
	if (isSettled(*this) || (_hasForeignBelow && IsBelowMarking()))
		return {};
	Result<void> result;
	_isMarking = true;
	_isTransformDirty = true;
	HierarchyObject* at = FirstChild();
	while (at != nullptr)
	{
		HierarchyObject* below = nullptr;
		if (ElementBase* element = AsElement(at))
		{
			if (!isSettled(*element))
				below = element->FirstChild();
			element->_isTransformDirty = true;
		}
		else if (const auto foreign = SVGElementRef::From(at))
		{
			Result<void> marked = foreign->MarkTransformDirty();
			if (result.IsOk())
				result = std::move(marked);
			below = at->FirstChild();
		}
		if (below != nullptr)
		{
			at = below;
			continue;
		}
		while (at != this && at->NextSibling() == nullptr)
			at = at->Parent();
		at = at != this ? at->NextSibling() : nullptr;
	}
	_isMarking = false;
	return result;
}

/// Computes the local transform from translation, rotation, pivot and scale.
void ElementBase::Rebuild(Transforms& own) noexcept
{
	const Float cosine = std::cos(own.rotation);
	const Float sine = std::sin(own.rotation);
	const Matrix2d rotation{{}, {cosine, sine}, {-sine, cosine}};
	const Matrix2d scale{{}, {own.scale.x, 0.0}, {0.0, own.scale.y}};
	const Matrix2d toPivot{own.rotationPivot};
	const Matrix2d fromPivot{Vector2d() - own.rotationPivot};
	const Matrix2d aboutPivot = toPivot * rotation * scale * fromPivot;
	own.pivotOffset = aboutPivot.offset;
	own.local = Matrix2d{own.translation} * aboutPivot;
}

Result<void> ElementBase::SetTranslation(const Vector2d& translation) noexcept
{
	return ChangeTransforms(
		[&](Transforms& own)
		{
			own.translation = translation;
			Rebuild(own);
		});
}

Result<void> ElementBase::SetRotation(Float radians) noexcept
{
	return ChangeTransforms(
		[&](Transforms& own)
		{
			own.rotation = radians;
			Rebuild(own);
		});
}

Result<void> ElementBase::SetRotationPivot(const Vector2d& pivot) noexcept
{
	return ChangeTransforms(
		[&](Transforms& own)
		{
			own.rotationPivot = pivot;
			Rebuild(own);
		});
}

Result<void> ElementBase::SetScale(const Vector2d& scale) noexcept
{
	return ChangeTransforms(
		[&](Transforms& own)
		{
			own.scale = scale;
			Rebuild(own);
		});
}

Vector2d ElementBase::GetTranslation() const noexcept
{
	return CurrentTransforms().translation;
}

Float ElementBase::GetRotation() const noexcept
{
	return CurrentTransforms().rotation;
}

Vector2d ElementBase::GetScale() const noexcept
{
	return CurrentTransforms().scale;
}

Result<void> ElementBase::AddTranslation(const Vector2d& translation) noexcept
{
	return SetTranslation(GetTranslation() + translation);
}

Result<void> ElementBase::AddRotation(Float radians) noexcept
{
	return SetRotation(GetRotation() + radians);
}

Result<void> ElementBase::AddScale(const Vector2d& scale) noexcept
{
	return SetScale(GetScale() + scale);
}

} // namespace orvan::svg
