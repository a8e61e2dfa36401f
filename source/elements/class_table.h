// SPDX-License-Identifier: MIT
/// The element classes: one row each.
///
/// From this table come the classes' declarations and registrations, the registrations of their interfaces and of the
/// references to them, the importer's tags, and the class that it makes for each kind.
#pragma once

#include "elements/complete_classes.h"
#include "elements/element_classes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>

namespace orvan::svg
{

/// The tags of a class, separated by blanks; none when only clients make its elements.
template <std::size_t size>
struct Tags
{
	consteval Tags(const char (&text)[size]) noexcept // Implicit, so that a row can name them by a literal.
	{
		std::copy_n(text, size, characters);
	}

	constexpr std::string_view Text() const noexcept
	{
		return {characters, size - 1};
	}

	char characters[size];
};

/// A component that is the implementation itself: it answers for one more interface.
template <typename I>
struct Itself
{
	using Interface = I;
};

template <typename Implementation, typename Component>
struct ComponentBinding
{
	using Type = Implements<typename Component::Interface, Component>;
};

template <typename Implementation, typename I>
struct ComponentBinding<Implementation, Itself<I>>
{
	using Type = Implements<I, Implementation>;
};

/// A row: the class's id, what implements it, its tags, its own interface and its components. The own interface is
/// answered by the implementation, or by that component which is for it.
template <const char* const& classId, Tags tags, typename Implementation, typename Own, typename... Components>
struct ElementClass
{
	using Interface = Own;

	static constexpr SVGImportElementKind kKind = Implementation::kKind;
	static constexpr const char* kId = classId;
	static constexpr std::string_view kTags = tags.Text();

	/// What the host is told. It names every method, so only the unit that registers the classes asks for it.
	static constexpr ClassDeclaration Declare() noexcept
	{
		constexpr bool isAnswered =
			std::same_as<Own, SVGElementInterface> || (std::same_as<Own, typename Components::Interface> || ...);
		if constexpr (isAnswered)
			return DeclareWith();
		else
			return DeclareWith<Implements<Own, Implementation>>();
	}

private:
	template <typename... OwnBinding>
	static constexpr ClassDeclaration DeclareWith() noexcept
	{
		return DeclareClass<Implementation, Implements<SVGElementInterface, ElementBase>,
							Implements<HierarchyObjectInterface, ElementBase>, OwnBinding...,
							typename ComponentBinding<Implementation, Components>::Type...,
							Implements<SVGElementEditInterface, ElementBase>>(classId);
	}
};

template <typename... Rows>
struct ClassList
{
	static constexpr std::size_t kCount = sizeof...(Rows);

	/// Row number `number`.
	template <std::size_t number>
	using Row = std::tuple_element_t<number, std::tuple<Rows...>>;

	/// One more than the largest kind.
	static constexpr std::size_t kKindCount = std::max({static_cast<std::size_t>(Rows::kKind)...}) + 1;

	/// The id of the class for a kind; null when there is none.
	static constexpr const char* FindId(SVGImportElementKind kind) noexcept
	{
		const char* found = nullptr;
		((Rows::kKind == kind ? void(found = Rows::kId) : void()), ...);
		return found;
	}

	/// Calls `visit` with the tags and the kind of each row.
	template <typename Visit>
	static constexpr void VisitTags(Visit visit)
	{
		(visit(Rows::kTags, Rows::kKind), ...);
	}
};

// clang-format off

/// All classes, in the order in which they are published: new ones come at the end. Polygons and polylines are paths,
/// ellipses are circles.
using ElementClasses = ClassList<
	ElementClass<kSVGElementClass, "", BaseElement, SVGElementInterface>,
	ElementClass<kSVGSVGElementClass, "svg", SVGElement, SVGSVGElementInterface, FitToViewbox, Position, Size>,
	ElementClass<kSVGUseElementClass, "use", UseElement, SVGUseElementInterface, Position, Size, Itself<SVGUseEditInterface>>,
	ElementClass<kSVGDefsElementClass, "defs", DefsElement, SVGDefsElementInterface>,
	ElementClass<kSVGSymbolElementClass, "symbol", SymbolElement, SVGSymbolElementInterface, FitToViewbox>,
	ElementClass<kSVGGroupElementClass, "g", GroupElement, SVGGroupElementInterface>,
	ElementClass<kSVGLinearGradientElementClass, "linearGradient", LinearGradientElement, SVGLinearGradientElementInterface, Link>,
	ElementClass<kSVGRadialGradientElementClass, "radialGradient", RadialGradientElement, SVGRadialGradientElementInterface, Link>,
	ElementClass<kSVGStopElementClass, "stop", StopElement, SVGStopElementInterface, Stop>,
	ElementClass<kSVGPathElementClass, "path polygon polyline", PathElement, SVGPathElementInterface, Itself<SVGPathEditInterface>>,
	ElementClass<kSVGRectElementClass, "rect", RectElement, SVGRectElementInterface, Position, Size, RectRadius>,
	ElementClass<kSVGCircleElementClass, "circle ellipse", CircleElement, SVGCircleElementInterface, CenterPosition, CircleRadius>,
	ElementClass<kSVGLineElementClass, "line", LineElement, SVGLineElementInterface, LineEnds>,
	ElementClass<kSVGTextElementClass, "text", TextElement, SVGTextElementInterface, Position, TextContent>,
	ElementClass<kSVGMaskElementClass, "mask", MaskElement, SVGMaskElementInterface, Position, Size>,
	ElementClass<kSVGClipPathElementClass, "clipPath", ClipPathElement, SVGClipPathElementInterface>>;

/// The classes of the elements that only the complete import makes, published after all others.
using CompleteElementClasses = ClassList<
	ElementClass<kSVGPatternElementClass, "pattern", PlainElement<SVGImportElementKind::pattern>, SVGPatternElementInterface, Pattern, Link, FitToViewbox, Position, Size>,
	ElementClass<kSVGMarkerElementClass, "marker", PlainElement<SVGImportElementKind::marker>, SVGMarkerElementInterface, Marker, FitToViewbox>,
	ElementClass<kSVGImageElementClass, "image", PlainElement<SVGImportElementKind::image>, SVGImageElementInterface, Image, Link, Position, Size>,
	ElementClass<kSVGSwitchElementClass, "switch", SwitchElement, SVGSwitchElementInterface, Grouping>,
	ElementClass<kSVGAnchorElementClass, "a", PlainElement<SVGImportElementKind::anchor>, SVGAnchorElementInterface, Anchor, Grouping, TextContent, Link>,
	ElementClass<kSVGTspanElementClass, "tspan tref", PlainElement<SVGImportElementKind::tspan>, SVGTextContentInterface, TextContent>,
	ElementClass<kSVGTextPathElementClass, "textPath", PlainElement<SVGImportElementKind::textPath>, SVGTextPathElementInterface, TextPath, TextContent, Link>,
	ElementClass<kSVGFilterElementClass, "filter", PlainElement<SVGImportElementKind::filter>, SVGFilterElementInterface, Filter, Link, Position, Size>,
	ElementClass<kSVGFeBlendElementClass, "feBlend", PlainElement<SVGImportElementKind::feBlend>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeColorMatrixElementClass, "feColorMatrix", PlainElement<SVGImportElementKind::feColorMatrix>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeComponentTransferElementClass, "feComponentTransfer", PlainElement<SVGImportElementKind::feComponentTransfer>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeCompositeElementClass, "feComposite", PlainElement<SVGImportElementKind::feComposite>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeConvolveMatrixElementClass, "feConvolveMatrix", PlainElement<SVGImportElementKind::feConvolveMatrix>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeDiffuseLightingElementClass, "feDiffuseLighting", PlainElement<SVGImportElementKind::feDiffuseLighting>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeDisplacementMapElementClass, "feDisplacementMap", PlainElement<SVGImportElementKind::feDisplacementMap>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeDropShadowElementClass, "feDropShadow", PlainElement<SVGImportElementKind::feDropShadow>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeFloodElementClass, "feFlood", PlainElement<SVGImportElementKind::feFlood>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeGaussianBlurElementClass, "feGaussianBlur", PlainElement<SVGImportElementKind::feGaussianBlur>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeImageElementClass, "feImage", PlainElement<SVGImportElementKind::feImage>, SVGFilterPrimitiveInterface, FilterPrimitive, Link, Position, Size>,
	ElementClass<kSVGFeMergeElementClass, "feMerge", PlainElement<SVGImportElementKind::feMerge>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeMorphologyElementClass, "feMorphology", PlainElement<SVGImportElementKind::feMorphology>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeOffsetElementClass, "feOffset", PlainElement<SVGImportElementKind::feOffset>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeSpecularLightingElementClass, "feSpecularLighting", PlainElement<SVGImportElementKind::feSpecularLighting>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeTileElementClass, "feTile", PlainElement<SVGImportElementKind::feTile>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeTurbulenceElementClass, "feTurbulence", PlainElement<SVGImportElementKind::feTurbulence>, SVGFilterPrimitiveInterface, FilterPrimitive, Position, Size>,
	ElementClass<kSVGFeDistantLightElementClass, "feDistantLight", PlainElement<SVGImportElementKind::feDistantLight>, SVGFilterPartInterface>,
	ElementClass<kSVGFePointLightElementClass, "fePointLight", PlainElement<SVGImportElementKind::fePointLight>, SVGFilterPartInterface>,
	ElementClass<kSVGFeSpotLightElementClass, "feSpotLight", PlainElement<SVGImportElementKind::feSpotLight>, SVGFilterPartInterface>,
	ElementClass<kSVGFeFuncRElementClass, "feFuncR", PlainElement<SVGImportElementKind::feFuncR>, SVGFilterPartInterface>,
	ElementClass<kSVGFeFuncGElementClass, "feFuncG", PlainElement<SVGImportElementKind::feFuncG>, SVGFilterPartInterface>,
	ElementClass<kSVGFeFuncBElementClass, "feFuncB", PlainElement<SVGImportElementKind::feFuncB>, SVGFilterPartInterface>,
	ElementClass<kSVGFeFuncAElementClass, "feFuncA", PlainElement<SVGImportElementKind::feFuncA>, SVGFilterPartInterface>,
	ElementClass<kSVGFeMergeNodeElementClass, "feMergeNode", PlainElement<SVGImportElementKind::feMergeNode>, SVGFilterPartInterface>,
	ElementClass<kSVGTitleElementClass, "title", CharacterElement<SVGImportElementKind::title>, SVGDescriptionInterface>,
	ElementClass<kSVGDescElementClass, "desc", CharacterElement<SVGImportElementKind::desc>, SVGDescriptionInterface>,
	ElementClass<kSVGStyleElementClass, "style", CharacterElement<SVGImportElementKind::style>, SVGDescriptionInterface>,
	ElementClass<kSVGMetadataElementClass, "metadata", CharacterElement<SVGImportElementKind::metadata>, SVGDescriptionInterface>,
	ElementClass<kSVGForeignObjectElementClass, "foreignObject", PlainElement<SVGImportElementKind::foreignObject>, SVGForeignObjectElementInterface, Position, Size>,
	ElementClass<kSVGTextRunElementClass, "", CharacterElement<SVGImportElementKind::textRun>, SVGTextRunInterface>>;

// clang-format on

} // namespace orvan::svg
