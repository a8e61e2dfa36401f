// SPDX-License-Identifier: MIT
/// The element classes and the value types: their code that is more than a line, and their registration.
#include "editing/tracked_change.h"
#include "elements/class_table.h"
#include "registration.h"

#include <algorithm>
#include <array>

namespace orvan::svg
{

// The svg element ----------------------------------------------------------------------------------------------------

Result<void> SVGElement::SetViewport(const SVGViewport& viewport) noexcept
{
	return StoreAll<SVGLength>({{SVGImportAttribute::x, viewport.x},
								{SVGImportAttribute::y, viewport.y},
								{SVGImportAttribute::width, viewport.width},
								{SVGImportAttribute::height, viewport.height}});
}

SVGViewport SVGElement::GetViewport() const noexcept
{
	const SVGViewport absent;
	return {GetOr(SVGImportAttribute::x, absent.x), GetOr(SVGImportAttribute::y, absent.y),
			GetOr(SVGImportAttribute::width, absent.width), GetOr(SVGImportAttribute::height, absent.height)};
}

// Use ----------------------------------------------------------------------------------------------------------------

Result<void> UseElement::CopyStateTo(UseElement& copy) const noexcept
{
	copy._target.link = _target.link;
	copy._target.shadowRoot = ORVAN_TRY(WeakRef::To(_target.shadowRoot.Lock().GetObject()));
	return ElementBase::CopyStateTo(copy);
}

Result<void> UseElement::ChangeTarget(Target target) noexcept
{
	if (IsTracked()) [[unlikely]]
		return ChangeTracked(_target, std::move(target), SVGImportAttribute::href);
	_target = std::move(target);
	return {};
}

Result<void> UseElement::SetLink(const String& link) noexcept
{
	return ChangeTarget({link, {}});
}

String UseElement::GetLink() const noexcept
{
	return _target.link;
}

bool UseElement::IsLinkDirty() const noexcept
{
	return !_target.link.IsEmpty() && !_target.shadowRoot.Lock();
}

Result<void> UseElement::SetShadowRoot(const SVGElementRef& element) noexcept
{
	if (!element)
		return NullReferenceError("A use element cannot stand for an empty reference.");
	for (const HierarchyObject* at = this; at != nullptr; at = at->Parent())
	{
		if (at == element.GetObject())
			return IllegalArgumentError("A use element cannot stand for an element that contains it.");
	}
	return ChangeTarget({_target.link, ORVAN_TRY(WeakRef::To(element.GetObject()))});
}

Result<void> UseElement::RenameLink(Document& document, const String& link) noexcept
{
	Target target{link, ORVAN_TRY(WeakRef::To(_target.shadowRoot.Lock().GetObject()))};
	return document.MakeEdit<MemberEdit<Target>>(this, SVGChangeKind::attribute, SVGImportAttribute::href, _target,
												 std::move(target));
}

SVGElementRef UseElement::GetShadowRoot() const noexcept
{
	return Cast<SVGElementInterface>(_target.shadowRoot.Lock());
}

// Gradients ----------------------------------------------------------------------------------------------------------

Float Stop::GetOffset() const noexcept
{
	return ClampToUnit(_element.GetOr(SVGImportAttribute::offset, 0.0));
}

Color Stop::GetColor() const noexcept
{
	return _element.GetOr(SVGImportAttribute::stopColor, Color());
}

Float Stop::GetOpacity() const noexcept
{
	return _element.GetOr(SVGImportAttribute::stopOpacity, 1.0);
}

namespace
{

/// The stops among an element's children, in order; an offset below its predecessor's is raised to it.
Result<BaseArray<SVGGradientStop>> CollectStops(const HierarchyObject& gradient) noexcept
{
	BaseArray<SVGGradientStop> stops;
	Float reached = 0.0;
	for (HierarchyObject* child = gradient.FirstChild(); child != nullptr; child = child->NextSibling())
	{
		const auto stop = SVGStopElementRef::From(child);
		if (!stop)
			continue;
		reached = std::max(reached, stop->GetOffset());
		ORVAN_TRY(stops.Append({stop->GetColor(), stop->GetOpacity(), reached}));
	}
	return stops;
}

/// What linear and radial gradients have in common.
template <typename Gradient>
Result<Gradient> StartGradient(const ElementBase& element) noexcept
{
	Gradient gradient;
	gradient.units = element.Get(Property<SVGGradientUnits>{SVGImportAttribute::gradientUnits, gradient.units});
	gradient.spread = element.Get(Property<SVGSpreadMethod>{SVGImportAttribute::spreadMethod, gradient.spread});
	gradient.stops = ORVAN_TRY(CollectStops(element));
	return gradient;
}

/// A coordinate as a plain number: percentages already stand as fractions, and no unit is converted.
Float Coordinate(const ElementBase& element, SVGImportAttribute key, Float absent) noexcept
{
	const auto* length = element.Find<SVGLength>(key);
	return length != nullptr ? length->value : absent;
}

} // namespace

Result<SVGLinearGradient> LinearGradientElement::GetLinearGradient() const noexcept
{
	auto gradient = ORVAN_TRY(StartGradient<SVGLinearGradient>(*this));
	gradient.x1 = Coordinate(*this, SVGImportAttribute::x1, gradient.x1);
	gradient.y1 = Coordinate(*this, SVGImportAttribute::y1, gradient.y1);
	gradient.x2 = Coordinate(*this, SVGImportAttribute::x2, gradient.x2);
	gradient.y2 = Coordinate(*this, SVGImportAttribute::y2, gradient.y2);
	return gradient;
}

Result<SVGRadialGradient> RadialGradientElement::GetRadialGradient() const noexcept
{
	auto gradient = ORVAN_TRY(StartGradient<SVGRadialGradient>(*this));
	gradient.cx = Coordinate(*this, SVGImportAttribute::cx, gradient.cx);
	gradient.cy = Coordinate(*this, SVGImportAttribute::cy, gradient.cy);
	gradient.r = Coordinate(*this, SVGImportAttribute::r, gradient.r);
	gradient.fx = Coordinate(*this, SVGImportAttribute::fx, gradient.cx);
	gradient.fy = Coordinate(*this, SVGImportAttribute::fy, gradient.cy);
	return gradient;
}

// Path ---------------------------------------------------------------------------------------------------------------

Result<void> PathElement::CopyStateTo(PathElement& copy) const noexcept
{
	ORVAN_TRY(copy._path.CopyFrom(_path));
	return ElementBase::CopyStateTo(copy);
}

Result<BaseArray<SVGPathCommand>> PathElement::GetPath() const noexcept
{
	return _path.GetCommands();
}

// Text ---------------------------------------------------------------------------------------------------------------

Result<void> TextElement::CopyStateTo(TextElement& copy) const noexcept
{
	copy._text = _text;
	return ElementBase::CopyStateTo(copy);
}

String TextElement::GetText() const noexcept
{
	if (FirstChild() == nullptr)
		return _text;
	return TextContent(const_cast<TextElement&>(*this)).GetCharacters().GetValueOr(String());
}

// Classes ------------------------------------------------------------------------------------------------------------

namespace
{

/// The declarations of the classes, in the order of the table.
template <typename... Rows, typename... CompleteRows>
constexpr std::array<ClassDeclaration, sizeof...(Rows) + sizeof...(CompleteRows)>
DeclareAll(ClassList<Rows...>, ClassList<CompleteRows...>) noexcept
{
	return {Rows::Declare()..., CompleteRows::Declare()...};
}

constexpr std::array kElementClasses = DeclareAll(ElementClasses(), CompleteElementClasses());

/// Their kinds, likewise.
template <typename... Rows, typename... CompleteRows>
constexpr std::array<SVGImportElementKind, sizeof...(Rows) + sizeof...(CompleteRows)>
KindsOf(ClassList<Rows...>, ClassList<CompleteRows...>) noexcept
{
	return {Rows::kKind..., CompleteRows::kKind...};
}

constexpr std::array kElementClassKinds = KindsOf(ElementClasses(), CompleteElementClasses());

} // namespace

ElementBase* AsElement(HierarchyObject* object) noexcept
{
	if (object == nullptr)
		return nullptr;
	const ClassDeclaration* declaration = object->GetClass().declaration.load(std::memory_order_relaxed);
	const bool isOurs =
		!std::less<>()(declaration, kElementClasses.begin()) && std::less<>()(declaration, kElementClasses.end());
	return isOurs ? static_cast<ElementBase*>(object) : nullptr;
}

SVGImportElementKind ClassKindOf(const ElementBase& element) noexcept
{
	const ClassDeclaration* declaration = element.GetClass().declaration.load(std::memory_order_relaxed);
	return kElementClassKinds[static_cast<std::size_t>(declaration - kElementClasses.begin())];
}

// Registration -------------------------------------------------------------------------------------------------------

namespace
{

constexpr UseDeclaration kUses[] = {
	{"svg_elements_impl", "SVGElementInterface", "svg_elements"},
	{"svg_elements_impl", "SVGPaint", "svg_types"},
	{"svg_elements_impl", "DataDictionary", "data_dictionary"},
	{"svg_elements_impl", "HierarchyObjectInterface", "hierarchy"},
};

ORVAN_REGISTER(ORVAN_ORDER_ELEMENTS, unitEntry)(Kind::unit, "svg_elements_impl");

template <std::size_t first, typename Numbers>
struct ClassEntries;

template <std::size_t first, std::size_t... numbers>
struct ClassEntries<first, std::index_sequence<numbers...>>
{
	RegistrationEntry entries[sizeof...(numbers)] = {kElementClasses[first + numbers]...};
};

using ElementClassEntries = ClassEntries<0, std::make_index_sequence<ElementClasses::kCount>>;
using CompleteClassEntries =
	ClassEntries<ElementClasses::kCount, std::make_index_sequence<CompleteElementClasses::kCount>>;
ORVAN_REGISTER_ALL(ORVAN_ORDER_ELEMENTS, ElementClassEntries, classEntries);
ORVAN_REGISTER_ALL(ORVAN_ORDER_COMPLETE, CompleteClassEntries, completeClassEntries);

ORVAN_REGISTER(ORVAN_ORDER_ELEMENTS, dataTypeEntries)
[] = {
	DataTypeEntry<SVGPaint>(),          DataTypeEntry<SVGLength>(),
	DataTypeEntry<SVGLength2d>(),       DataTypeEntry<SVGPathCommand>(),
	DataTypeEntry<SVGGradientStop>(),   DataTypeEntry<SVGLinearGradient>(),
	DataTypeEntry<SVGRadialGradient>(), DataTypeEntry<SVGViewbox>(),
	DataTypeEntry<SVGViewport>(),       DataTypeEntry<SVGPreserveAspectRatio>(),
};

ORVAN_REGISTER(ORVAN_ORDER_COMPLETE, completeDataTypeEntries)
[] = {
	DataTypeEntry<SVGOrient>(),
	DataTypeEntry<SVGBaselineShift>(),
	DataTypeEntry<SVGFilterFunction>(),
	DataTypeEntry<SVGClipShape>(),
};

ORVAN_REGISTER(ORVAN_ORDER_ELEMENTS, useEntries)[] = {kUses[0], kUses[1], kUses[2], kUses[3]};

} // namespace

} // namespace orvan::svg
