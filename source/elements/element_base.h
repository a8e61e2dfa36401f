// SPDX-License-Identifier: MIT
/// What all elements share: identity, attributes and transforms.
#pragma once

#include "editing/tree_owner.h"
#include "elements/properties.h"
#include "svg_attribute_companions.h"
#include "svg_edit.h"
#include "svg_elements.h"

#include <atomic>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace orvan::svg
{

/// Base of all element classes, and the implementation of `SVGElementInterface` and `SVGElementEditInterface`.
///
/// Whatever changes an element asks first whether it is tracked: then its document may have observers or a history, and
/// the change goes through the document (`editing/`). Elements of other trees, and elements while they are loaded, are
/// not tracked and pay for nothing but the question.
class ElementBase : public HierarchyObject
{
public:
	explicit ElementBase(SVGImportElementKind type = SVGImportElementKind::unknown) noexcept : _type(type)
	{
	}

	~ElementBase();

	/// Copies everything but the place in the tree; the attributes are shared until one of the two writes.
	Result<void> CopyStateTo(ElementBase& copy) const noexcept;

	/// Another parent means another world transform, if there is one: in a tree that is being loaded there is none.
	void OnParentChanged() noexcept
	{
		if (!_isTransformDirty || _hasForeignBelow)
			IgnoreResult(MarkSubtreeDirty());
	}

	void OnChildAdded(ObjectBase& child) noexcept;

	// Access to the dictionary, for this class, the components and the element classes.

	template <typename T>
	Result<void> Store(SVGImportAttribute key, T value) noexcept
	{
		if (_isTracked) [[unlikely]]
			return StoreTracked(key, std::move(value));
		return _attributes.Set(static_cast<std::int32_t>(key), std::move(value));
	}

	/// Stores all that an attribute says: a companion, which would go on to say more, is taken away.
	template <typename T>
	Result<void> StoreWhole(SVGImportAttribute key, T value) noexcept
	{
		const SVGImportAttribute companion = GetCompanionOf(key);
		if (companion == SVGImportAttribute::unknown || !HasAttribute(companion)) [[likely]]
			return Store(key, std::move(value));
		DataDictionary changed = _attributes;
		ORVAN_TRY(SetWhole(changed, key, std::move(value)));
		return ChangeAttributes(std::move(changed), key);
	}

	/// Stores all of these values, as above, or, when memory runs out, none.
	template <typename T>
	Result<void> StoreAll(std::initializer_list<std::pair<SVGImportAttribute, T>> values) noexcept
	{
		DataDictionary changed = _attributes;
		for (const auto& [key, value] : values)
			ORVAN_TRY(SetWhole(changed, key, value));
		return ChangeAttributes(std::move(changed), SVGImportAttribute::unknown);
	}

	template <typename T>
	const T* Find(SVGImportAttribute key) const noexcept
	{
		return _attributes.Find<T>(static_cast<std::int32_t>(key));
	}

	template <typename T>
	T GetOr(SVGImportAttribute key, T absent) const noexcept
	{
		const T* value = Find<T>(key);
		return value != nullptr ? *value : std::move(absent);
	}

	template <typename T>
	Result<void> Set(const Property<T>& property, T value) noexcept
	{
		if constexpr (std::is_floating_point_v<T>)
		{
			if (property.limit != nullptr)
			{
				if (std::isnan(value))
					return IllegalArgumentError("NaN is no opacity.");
				value = property.limit(value);
			}
		}
		if constexpr (std::is_enum_v<T>)
			return StoreWhole(property.key, static_cast<std::int32_t>(value));
		else
			return StoreWhole(property.key, value);
	}

	template <typename T>
	T Get(const Property<T>& property) const noexcept
	{
		if constexpr (std::is_enum_v<T>)
			return static_cast<T>(GetOr(property.key, static_cast<std::int32_t>(property.absent)));
		else
			return GetOr(property.key, property.absent);
	}

	const DataDictionary& Attributes() const noexcept
	{
		return _attributes;
	}

	/// The dictionary of an element that is being loaded, which is not tracked.
	DataDictionary& LoadedAttributes() noexcept
	{
		return _attributes;
	}

	/// Puts another dictionary in place while an element is being loaded.
	void ReplaceAttributes(DataDictionary attributes) noexcept
	{
		_attributes = std::move(attributes);
	}

	/// Puts another dictionary in place, for changes that must happen together; `key` is the attribute that differs, or
	/// `unknown` for several. Fails for want of memory only, and never on elements that are not tracked.
	Result<void> ChangeAttributes(DataDictionary attributes, SVGImportAttribute key) noexcept
	{
		if (_isTracked) [[unlikely]]
			return ChangeTracked(_attributes, std::move(attributes), key);
		_attributes = std::move(attributes);
		return {};
	}

	// Identity and attributes.

	Result<void> SetId(const String& id) noexcept
	{
		_hasHadOtherId |= !_id.IsEmpty();
		if (_isTracked) [[unlikely]]
			return ChangeTracked(_id, id, SVGImportAttribute::id);
		_id = id;
		return {};
	}

	String GetId() const noexcept
	{
		return _id;
	}

	Result<void> SetElementType(SVGImportElementKind type) noexcept
	{
		if (_isTracked) [[unlikely]]
			return ChangeTracked(_type, type);
		_type = type;
		return {};
	}

	SVGImportElementKind GetElementType() const noexcept
	{
		return _type;
	}

	DataDictionary GetAttributeDictionary() const noexcept
	{
		return _attributes;
	}

	Result<void> SetAttribute(SVGImportAttribute key, const Data& value) noexcept
	{
		if (!_isTracked) [[likely]]
			return _attributes.SetData(static_cast<std::int32_t>(key), value);
		DataDictionary changed = _attributes;
		ORVAN_TRY(changed.SetData(static_cast<std::int32_t>(key), value));
		return ChangeAttributes(std::move(changed), key);
	}

	/// Takes an entry of the dictionary away; does nothing when it is absent.
	Result<void> Unset(SVGImportAttribute key) noexcept
	{
		if (!_isTracked) [[likely]]
		{
			ORVAN_TRY(_attributes.Remove(static_cast<std::int32_t>(key)));
			return {};
		}
		DataDictionary changed = _attributes;
		if (ORVAN_TRY(changed.Remove(static_cast<std::int32_t>(key))))
			ORVAN_TRY(ChangeAttributes(std::move(changed), key));
		return {};
	}

	bool HasAttribute(SVGImportAttribute key) const noexcept
	{
		return _attributes.Has(static_cast<std::int32_t>(key));
	}

	// Transforms.

	Result<void> SetLocalTransform(const Matrix2d& transform) noexcept;
	Matrix2d GetLocalTransform() const noexcept;
	Result<Matrix2d> GetWorldTransform() noexcept;
	Result<void> MarkTransformDirty() noexcept;
	Result<void> SetTranslation(const Vector2d& translation) noexcept;
	Result<void> SetRotation(Float radians) noexcept;
	Result<void> SetRotationPivot(const Vector2d& pivot) noexcept;
	Result<void> SetScale(const Vector2d& scale) noexcept;
	Vector2d GetTranslation() const noexcept;
	Float GetRotation() const noexcept;
	Vector2d GetScale() const noexcept;
	Result<void> AddTranslation(const Vector2d& translation) noexcept;
	Result<void> AddRotation(Float radians) noexcept;
	Result<void> AddScale(const Vector2d& scale) noexcept;

	bool IsTransformDirty() const noexcept
	{
		return _isTransformDirty;
	}

	// Presentation properties.

	ORVAN_SVG_PROPERTIES(ORVAN_PROPERTY_METHODS)
	Result<void> SetStrokeDashArray(const BaseArray<SVGLength>& value) noexcept;
	Result<BaseArray<SVGLength>> GetStrokeDashArray() const noexcept;

	// Hierarchy. The two methods of the host's interface that change it are told here of what is tracked.

	Result<void> InsertAsLastChildOf(const HierarchyObjectRef& parent, const HierarchyBranch& branch) noexcept
	{
		if (!IsAnythingTracked()) [[likely]]
			return HierarchyObject::InsertAsLastChildOf(parent, branch);
		return InsertTracked(parent);
	}

	void RemoveAllChildren() noexcept
	{
		if (_isTracked) [[unlikely]]
			return RemoveAllTracked();
		HierarchyObject::RemoveAllChildren();
	}

	// Editing; see `SVGElementEditInterface`.

	SVGDocumentRef GetDocument() const noexcept;
	std::int64_t GetChildCount() const noexcept;
	SVGElementRef GetChildAt(std::int64_t index) const noexcept;
	std::int64_t GetIndex() const noexcept;
	Result<void> Remove() noexcept;
	Result<void> InsertChildBefore(const SVGElementRef& child, const SVGElementRef& next) noexcept;
	Result<void> ReplaceWith(const SVGElementRef& replacement) noexcept;
	Result<void> RemoveAttribute(SVGImportAttribute key) noexcept;
	Result<BaseArray<SVGImportAttribute>> GetAttributeNumbers() const noexcept;
	Result<void> CopyAttribute(const SVGElementRef& source, SVGImportAttribute key) noexcept;
	Result<void> CopyAttributes(const SVGElementRef& source) noexcept;

	// For documents.

	/// The document that an element answers to, and whether the element stands in its tree, rather than having been
	/// taken out of it by an edit that may be undone.
	struct Standing
	{
		Document* document = nullptr;
		bool isInTree = false;
	};

	Standing FindStanding() const noexcept;

	/// Makes the element one of a document's; see `TreeOwner`.
	Result<void> SetOwner(const TreeOwner& owner) noexcept;

	/// Has changes of the element and of everything below go through the document, or no longer.
	static void TrackTree(HierarchyObject& top, bool isTracked) noexcept;
	/// Counts documents that do so.
	static void CountTrackingDocuments(int more) noexcept;

	/// True when the id was set more than once, so that a document may find the element under another.
	bool HasHadOtherId() const noexcept
	{
		return _hasHadOtherId;
	}

protected:
	// Changes of tracked elements: a member gets another value. Kept out of the way of those that are not.
	template <typename T>
	[[gnu::noinline, gnu::cold]] Result<void> StoreTracked(SVGImportAttribute key, T value) noexcept
	{
		DataDictionary changed = _attributes;
		ORVAN_TRY(changed.Set(static_cast<std::int32_t>(key), std::move(value)));
		return ChangeAttributes(std::move(changed), key);
	}
	template <typename T>
	Result<void> ChangeTracked(T& member, T value, SVGImportAttribute attribute,
							   SVGChangeKind kind = SVGChangeKind::attribute) noexcept;
	Result<void> ChangeTracked(SVGImportElementKind& type, SVGImportElementKind value) noexcept;

	bool IsTracked() const noexcept
	{
		return _isTracked;
	}

	/// Takes all children out: all or, when memory runs out, none.
	Result<void> RemoveChildren() noexcept;

private:
	template <typename T>
	static Result<void> SetWhole(DataDictionary& attributes, SVGImportAttribute key, T value) noexcept
	{
		ORVAN_TRY(attributes.Set(static_cast<std::int32_t>(key), std::move(value)));
		ORVAN_TRY(attributes.Remove(static_cast<std::int32_t>(GetCompanionOf(key))));
		return {};
	}

	friend class TransformEdit;
	friend class Document; // Which makes edits of several elements one.

	/// The transforms of an element. Most elements of a file have none, so they stand in a block of their own that is
	/// made when the first is set or the world transform is first asked for.
	struct Transforms
	{
		Matrix2d world;
		Matrix2d local;
		Vector2d translation;
		Vector2d scale{1.0, 1.0};
		Vector2d pivotOffset; ///< Offset of the rotation and scaling about the pivot, as of the last rebuild.
		Vector2d rotationPivot;
		Float rotation = 0.0;
	};

	/// The block of an element that has an owner.
	struct OwnedTransforms : Transforms
	{
		TreeOwner owner;
	};

	/// True while any document of the process has its elements tracked.
	static bool IsAnythingTracked() noexcept
	{
		return _trackingDocuments.load(std::memory_order_relaxed) != 0;
	}

	Result<void> InsertTracked(const HierarchyObjectRef& parent) noexcept;
	void RemoveAllTracked() noexcept;
	Result<void> ReplaceTransforms(const Transforms& transforms) noexcept;
	Result<void> AssignTransforms(const Transforms& transforms) noexcept;
	template <typename Assign>
	Result<void> ChangeTransforms(Assign assign) noexcept;

	Result<Transforms*> OwnTransforms() noexcept;
	static void Rebuild(Transforms& transforms) noexcept;
	Result<void> UpdateWorldTransform() noexcept;
	bool IsBelowMarking() const noexcept;
	Result<void> MarkSubtreeDirty() noexcept;
	const Transforms& CurrentTransforms() const noexcept;

	static std::atomic<int> _trackingDocuments;

	DataDictionary _attributes;
	String _id;
	Transforms* _transforms = nullptr;
	SVGImportElementKind _type;
	bool _isTransformDirty = true;
	bool _hasForeignBelow = false; ///< Something below is of another module, or was once.
	bool _isMarking = false;       ///< `MarkSubtreeDirty` is at work below this element.
	bool _isTracked : 1 = false;   ///< The document wants to know of changes.
	bool _hasOwner : 1 = false;    ///< The transforms are `OwnedTransforms`.
	bool _hasHadOtherId : 1 = false;
};

/// The element behind a hierarchy object, when its class is one of this module's; null for others.
ElementBase* AsElement(HierarchyObject* object) noexcept;

/// The kind that an element's class is for, whatever a client has set as its type.
SVGImportElementKind ClassKindOf(const ElementBase& element) noexcept;

} // namespace orvan::svg
