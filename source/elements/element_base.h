// SPDX-License-Identifier: MIT
/// What all elements share: identity, attributes and transforms.
#pragma once

#include "svg_elements.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace orvan::svg
{

/// A presentation property: where it stands in the dictionary, what a getter returns when it is absent, and the
/// limiter that a setter applies, which then refuses NaN. Enumerations stand in the dictionary as Int32.
template <typename T>
struct Property
{
	SVGImportAttribute key;
	T absent{};
	T (*limit)(T value) = nullptr;
};

/// The nearest number of 0 … 1; 0 for what is no number.
constexpr Float ClampToUnit(Float value) noexcept
{
	return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

inline constexpr Property<SVGVisibility> kVisibility{SVGImportAttribute::visibility, SVGVisibility::visible};
inline constexpr Property<SVGDisplay> kDisplay{SVGImportAttribute::display, SVGDisplay::inherit};
inline constexpr Property<Float> kOpacity{SVGImportAttribute::opacity, 1.0, &ClampToUnit};
inline constexpr SVGImportAttribute kFill = SVGImportAttribute::fill;
inline constexpr Property<SVGFillRule> kFillRule{SVGImportAttribute::fillRule, SVGFillRule::nonzero};
inline constexpr Property<Float> kFillOpacity{SVGImportAttribute::fillOpacity, 1.0, &ClampToUnit};
inline constexpr SVGImportAttribute kStroke = SVGImportAttribute::stroke;
inline constexpr Property<Float> kStrokeOpacity{SVGImportAttribute::strokeOpacity, 1.0, &ClampToUnit};
inline constexpr Property<SVGLength> kStrokeWidth{SVGImportAttribute::strokeWidth, {1.0, SVGLengthUnit::number}};
inline constexpr Property<SVGLineCap> kStrokeLineCap{SVGImportAttribute::strokeLineCap, SVGLineCap::butt};
inline constexpr Property<SVGLineJoin> kStrokeLineJoin{SVGImportAttribute::strokeLineJoin, SVGLineJoin::miter};
inline constexpr Property<Float> kStrokeMiterLimit{SVGImportAttribute::strokeMiterLimit, 4.0};
inline constexpr Property<SVGLength> kStrokeDashOffset{SVGImportAttribute::strokeDashOffset,
													   {0.0, SVGLengthUnit::number}};
inline constexpr Property<SVGLength> kFontSize{SVGImportAttribute::fontSize, {16.0, SVGLengthUnit::px}};
inline constexpr Property<SVGFontStyle> kFontStyle{SVGImportAttribute::fontStyle, SVGFontStyle::normal};
inline constexpr Property<SVGFontWeight> kFontWeight{SVGImportAttribute::fontWeight, SVGFontWeight::normal};

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

	// Presentation properties: one line each.

	// clang-format off
	Result<void> SetVisibility(SVGVisibility value) noexcept { return Set(kVisibility, value); }
	SVGVisibility GetVisibility() const noexcept { return Get(kVisibility); }
	Result<void> SetDisplay(SVGDisplay value) noexcept { return Set(kDisplay, value); }
	SVGDisplay GetDisplay() const noexcept { return Get(kDisplay); }
	Result<void> SetOpacity(Float value) noexcept { return Set(kOpacity, value); }
	Float GetOpacity() const noexcept { return Get(kOpacity); }
	Result<void> SetFill(const SVGPaint& value) noexcept { return Store(kFill, value); }
	SVGPaint GetFill() const noexcept { return GetOr(kFill, SVGPaint()); }
	Result<void> SetFillRule(SVGFillRule value) noexcept { return Set(kFillRule, value); }
	SVGFillRule GetFillRule() const noexcept { return Get(kFillRule); }
	Result<void> SetFillOpacity(Float value) noexcept { return Set(kFillOpacity, value); }
	Float GetFillOpacity() const noexcept { return Get(kFillOpacity); }
	Result<void> SetStroke(const SVGPaint& value) noexcept { return Store(kStroke, value); }
	SVGPaint GetStroke() const noexcept { return GetOr(kStroke, SVGPaint{SVGPaintType::none, {}, {}}); }
	Result<void> SetStrokeOpacity(Float value) noexcept { return Set(kStrokeOpacity, value); }
	Float GetStrokeOpacity() const noexcept { return Get(kStrokeOpacity); }
	Result<void> SetStrokeWidth(const SVGLength& value) noexcept { return Set(kStrokeWidth, value); }
	SVGLength GetStrokeWidth() const noexcept { return Get(kStrokeWidth); }
	Result<void> SetStrokeLineCap(SVGLineCap value) noexcept { return Set(kStrokeLineCap, value); }
	SVGLineCap GetStrokeLineCap() const noexcept { return Get(kStrokeLineCap); }
	Result<void> SetStrokeLineJoin(SVGLineJoin value) noexcept { return Set(kStrokeLineJoin, value); }
	SVGLineJoin GetStrokeLineJoin() const noexcept { return Get(kStrokeLineJoin); }
	Result<void> SetStrokeMiterLimit(Float value) noexcept { return Set(kStrokeMiterLimit, value); }
	Float GetStrokeMiterLimit() const noexcept { return Get(kStrokeMiterLimit); }
	Result<void> SetStrokeDashArray(const BaseArray<SVGLength>& value) noexcept;
	Result<BaseArray<SVGLength>> GetStrokeDashArray() const noexcept;
	Result<void> SetStrokeDashOffset(const SVGLength& value) noexcept { return Set(kStrokeDashOffset, value); }
	SVGLength GetStrokeDashOffset() const noexcept { return Get(kStrokeDashOffset); }
	Result<void> SetMask(const String& id) noexcept { return Store(SVGImportAttribute::mask, id); }
	String GetMask() const noexcept { return GetOr(SVGImportAttribute::mask, String()); }
	Result<void> SetClipPath(const String& id) noexcept { return Store(SVGImportAttribute::clipPath, id); }
	String GetClipPath() const noexcept { return GetOr(SVGImportAttribute::clipPath, String()); }
	// clang-format on

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
