// SPDX-License-Identifier: MIT
/// The components and classes of the elements that only the complete import makes.
#pragma once

#include "elements/element_classes.h"
#include "svg_complete.h"

#include <algorithm>

namespace orvan::svg
{

/// What components are made of: typed reading and writing of single attributes.
class AttributeComponent
{
public:
	explicit AttributeComponent(ElementBase& element) noexcept : _element(element)
	{
	}

protected:
	template <typename T>
	Result<void> Set(SVGImportAttribute key, T value) noexcept
	{
		return _element.Set(Property<T>{key}, value);
	}

	template <typename T>
	T Get(SVGImportAttribute key, T absent) const noexcept
	{
		return _element.Get(Property<T>{key, absent});
	}

	Result<void> SetText(SVGImportAttribute key, const String& text) noexcept
	{
		return _element.Store(key, text);
	}

	String GetText(SVGImportAttribute key) const noexcept
	{
		return _element.GetOr(key, String());
	}

	template <typename T>
	Result<void> SetList(SVGImportAttribute key, const BaseArray<T>& values) noexcept
	{
		BaseArray<T> copy;
		ORVAN_TRY(copy.CopyFrom(values));
		return _element.Store(key, std::move(copy));
	}

	template <typename T>
	Result<BaseArray<T>> GetList(SVGImportAttribute key) const noexcept
	{
		BaseArray<T> copy;
		if (const auto* stored = _element.Find<BaseArray<T>>(key))
			ORVAN_TRY(copy.CopyFrom(*stored));
		return copy;
	}

	ElementBase& _element;
};

// clang-format off

class Link : public AttributeComponent
{
public:
	using Interface = SVGLinkInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetLink(const String& link) noexcept { return SetText(SVGImportAttribute::link, link); }
	String GetLink() const noexcept { return GetText(SVGImportAttribute::link); }
};

class Pattern : public AttributeComponent
{
public:
	using Interface = SVGPatternElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetPatternUnits(SVGUnits units) noexcept { return Set(SVGImportAttribute::patternUnits, units); }
	SVGUnits GetPatternUnits() const noexcept { return Get(SVGImportAttribute::patternUnits, SVGUnits::objectBoundingBox); }
	Result<void> SetPatternContentUnits(SVGUnits units) noexcept { return Set(SVGImportAttribute::patternContentUnits, units); }
	SVGUnits GetPatternContentUnits() const noexcept { return Get(SVGImportAttribute::patternContentUnits, SVGUnits::userSpaceOnUse); }
	Result<void> SetPatternTransform(const Matrix2d& transform) noexcept { return _element.Store(SVGImportAttribute::patternTransform, transform); }
	Matrix2d GetPatternTransform() const noexcept { return _element.GetOr(SVGImportAttribute::patternTransform, Matrix2d()); }
};

class Marker : public AttributeComponent
{
public:
	using Interface = SVGMarkerElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetRefX(const SVGLength& x) noexcept { return Set(SVGImportAttribute::refX, x); }
	SVGLength GetRefX() const noexcept { return Get(SVGImportAttribute::refX, kZero); }
	Result<void> SetRefY(const SVGLength& y) noexcept { return Set(SVGImportAttribute::refY, y); }
	SVGLength GetRefY() const noexcept { return Get(SVGImportAttribute::refY, kZero); }
	Result<void> SetMarkerWidth(const SVGLength& width) noexcept { return Set(SVGImportAttribute::markerWidth, width); }
	SVGLength GetMarkerWidth() const noexcept { return Get(SVGImportAttribute::markerWidth, kThree); }
	Result<void> SetMarkerHeight(const SVGLength& height) noexcept { return Set(SVGImportAttribute::markerHeight, height); }
	SVGLength GetMarkerHeight() const noexcept { return Get(SVGImportAttribute::markerHeight, kThree); }
	Result<void> SetMarkerUnits(SVGMarkerUnits units) noexcept { return Set(SVGImportAttribute::markerUnits, units); }
	SVGMarkerUnits GetMarkerUnits() const noexcept { return Get(SVGImportAttribute::markerUnits, SVGMarkerUnits::strokeWidth); }
	Result<void> SetOrient(const SVGOrient& orient) noexcept { return Set(SVGImportAttribute::orient, orient); }
	SVGOrient GetOrient() const noexcept { return Get(SVGImportAttribute::orient, SVGOrient()); }

private:
	static constexpr SVGLength kZero{0.0, SVGLengthUnit::number};
	static constexpr SVGLength kThree{3.0, SVGLengthUnit::number};
};

class Image : public AttributeComponent
{
public:
	using Interface = SVGImageElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetPreserveAspectRatio(const SVGPreserveAspectRatio& ratio) noexcept { return Set(SVGImportAttribute::preserveAspectRatio, ratio); }
	SVGPreserveAspectRatio GetPreserveAspectRatio() const noexcept { return Get(SVGImportAttribute::preserveAspectRatio, SVGPreserveAspectRatio()); }
};

/// What makes an element a group for renderers that know no more of it.
class Grouping
{
public:
	using Interface = SVGGroupElementInterface;

	explicit Grouping(ElementBase&) noexcept {}
};

class Anchor : public AttributeComponent
{
public:
	using Interface = SVGAnchorElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetTarget(const String& target) noexcept { return SetText(SVGImportAttribute::target, target); }
	String GetTarget() const noexcept { return GetText(SVGImportAttribute::target); }
};

class TextContent : public AttributeComponent
{
public:
	using Interface = SVGTextContentInterface;
	using AttributeComponent::AttributeComponent;

	Result<String> GetCharacters() const noexcept;
	Result<void> SetXList(const BaseArray<SVGLength>& positions) noexcept { return SetPositions(SVGImportAttribute::x, SVGImportAttribute::xList, positions); }
	Result<BaseArray<SVGLength>> GetXList() const noexcept { return GetPositions(SVGImportAttribute::x, SVGImportAttribute::xList); }
	Result<void> SetYList(const BaseArray<SVGLength>& positions) noexcept { return SetPositions(SVGImportAttribute::y, SVGImportAttribute::yList, positions); }
	Result<BaseArray<SVGLength>> GetYList() const noexcept { return GetPositions(SVGImportAttribute::y, SVGImportAttribute::yList); }
	Result<void> SetDxList(const BaseArray<SVGLength>& shifts) noexcept { return SetList(SVGImportAttribute::dx, shifts); }
	Result<BaseArray<SVGLength>> GetDxList() const noexcept { return GetList<SVGLength>(SVGImportAttribute::dx); }
	Result<void> SetDyList(const BaseArray<SVGLength>& shifts) noexcept { return SetList(SVGImportAttribute::dy, shifts); }
	Result<BaseArray<SVGLength>> GetDyList() const noexcept { return GetList<SVGLength>(SVGImportAttribute::dy); }
	Result<void> SetRotations(const BaseArray<Float>& rotations) noexcept { return SetList(SVGImportAttribute::rotate, rotations); }
	Result<BaseArray<Float>> GetRotations() const noexcept { return GetList<Float>(SVGImportAttribute::rotate); }

private:
	Result<void> SetPositions(SVGImportAttribute first, SVGImportAttribute list, const BaseArray<SVGLength>& positions) noexcept;
	Result<BaseArray<SVGLength>> GetPositions(SVGImportAttribute first, SVGImportAttribute list) const noexcept;
};

class TextPath : public AttributeComponent
{
public:
	using Interface = SVGTextPathElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetStartOffset(const SVGLength& offset) noexcept { return Set(SVGImportAttribute::startOffset, offset); }
	SVGLength GetStartOffset() const noexcept { return Get(SVGImportAttribute::startOffset, SVGLength{0.0, SVGLengthUnit::number}); }
};

class Filter : public AttributeComponent
{
public:
	using Interface = SVGFilterElementInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetFilterUnits(SVGUnits units) noexcept { return Set(SVGImportAttribute::filterUnits, units); }
	SVGUnits GetFilterUnits() const noexcept { return Get(SVGImportAttribute::filterUnits, SVGUnits::objectBoundingBox); }
	Result<void> SetPrimitiveUnits(SVGUnits units) noexcept { return Set(SVGImportAttribute::primitiveUnits, units); }
	SVGUnits GetPrimitiveUnits() const noexcept { return Get(SVGImportAttribute::primitiveUnits, SVGUnits::userSpaceOnUse); }
};

class FilterPrimitive : public AttributeComponent
{
public:
	using Interface = SVGFilterPrimitiveInterface;
	using AttributeComponent::AttributeComponent;

	Result<void> SetInput(const String& name) noexcept { return SetText(SVGImportAttribute::in, name); }
	String GetInput() const noexcept { return GetText(SVGImportAttribute::in); }
	Result<void> SetSecondInput(const String& name) noexcept { return SetText(SVGImportAttribute::in2, name); }
	String GetSecondInput() const noexcept { return GetText(SVGImportAttribute::in2); }
	Result<void> SetResult(const String& name) noexcept { return SetText(SVGImportAttribute::result, name); }
	String GetResult() const noexcept { return GetText(SVGImportAttribute::result); }
};

// clang-format on

using SwitchElement = PlainElement<SVGImportElementKind::switchElement>;

/// An element that is made of characters: runs of text, and descriptions.
template <SVGImportElementKind kind>
class CharacterElement : public PlainElement<kind>
{
public:
	Result<void> CopyStateTo(CharacterElement& copy) const noexcept
	{
		copy._text = _text;
		return ElementBase::CopyStateTo(copy);
	}

	Result<void> SetText(const String& text) noexcept
	{
		if (this->IsTracked()) [[unlikely]]
			return this->ChangeTracked(_text, text, SVGImportAttribute::unknown, SVGChangeKind::text);
		_text = text;
		return {};
	}

	String GetText() const noexcept
	{
		return _text;
	}

private:
	String _text;
};

using TextRunElement = CharacterElement<SVGImportElementKind::textRun>;

} // namespace orvan::svg
