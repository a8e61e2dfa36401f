// SPDX-License-Identifier: MIT
/// What all elements share: identity, attributes and transforms.
#pragma once

#include "elements/properties.h"
#include "svg_elements.h"

#include <cmath>
#include <initializer_list>
#include <utility>

namespace orvan::svg
{

/// Base of all element classes, and the implementation of `SVGElementInterface`.
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
		return _attributes.Set(static_cast<std::int32_t>(key), std::move(value));
	}

	/// Stores all of these values or, when memory runs out, none.
	template <typename T>
	Result<void> StoreAll(std::initializer_list<std::pair<SVGImportAttribute, T>> values) noexcept
	{
		DataDictionary changed = _attributes;
		for (const auto& [key, value] : values)
			ORVAN_TRY(changed.Set(static_cast<std::int32_t>(key), value));
		_attributes = std::move(changed);
		return {};
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
			return Store(property.key, static_cast<std::int32_t>(value));
		else
			return Store(property.key, value);
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

	/// Puts another dictionary in place, for changes that must happen together.
	void ReplaceAttributes(DataDictionary attributes) noexcept
	{
		_attributes = std::move(attributes);
	}

	// Identity and attributes.

	Result<void> SetId(const String& id) noexcept
	{
		_id = id;
		return {};
	}

	String GetId() const noexcept
	{
		return _id;
	}

	Result<void> SetElementType(SVGImportElementKind type) noexcept
	{
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
		return _attributes.SetData(static_cast<std::int32_t>(key), value);
	}

	/// Takes an attribute away; does nothing when it is absent.
	Result<void> Remove(SVGImportAttribute key) noexcept
	{
		ORVAN_TRY(_attributes.Remove(static_cast<std::int32_t>(key)));
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

private:
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

	Result<Transforms*> OwnTransforms() noexcept;
	Result<void> RebuildLocalTransform() noexcept;
	Result<void> UpdateWorldTransform() noexcept;
	bool IsBelowMarking() const noexcept;
	Result<void> MarkSubtreeDirty() noexcept;
	const Transforms& CurrentTransforms() const noexcept;

	DataDictionary _attributes;
	String _id;
	Transforms* _transforms = nullptr;
	SVGImportElementKind _type;
	bool _isTransformDirty = true;
	bool _hasForeignBelow = false; ///< Something below is of another module, or was once.
	bool _isMarking = false;       ///< `MarkSubtreeDirty` is at work below this element.
};

/// The element behind a hierarchy object, when its class is one of this module's; null for others.
ElementBase* AsElement(HierarchyObject* object) noexcept;

} // namespace orvan::svg
