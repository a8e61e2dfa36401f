// SPDX-License-Identifier: MIT
/// The element classes: one row each.
///
/// From this table come the classes' declarations and registrations, the registrations of their interfaces and of the
/// references to them, the importer's tags, and the class that it makes for each kind.
#pragma once

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
							Implements<HierarchyObjectInterface, HierarchyObject>, OwnBinding...,
							Implements<typename Components::Interface, Components>...>(classId);
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
	ElementClass<kSVGUseElementClass, "use", UseElement, SVGUseElementInterface, Position, Size>,
	ElementClass<kSVGDefsElementClass, "defs", DefsElement, SVGDefsElementInterface>,
	ElementClass<kSVGSymbolElementClass, "symbol", SymbolElement, SVGSymbolElementInterface, FitToViewbox>,
	ElementClass<kSVGGroupElementClass, "g", GroupElement, SVGGroupElementInterface>,
	ElementClass<kSVGLinearGradientElementClass, "linearGradient", LinearGradientElement, SVGLinearGradientElementInterface>,
	ElementClass<kSVGRadialGradientElementClass, "radialGradient", RadialGradientElement, SVGRadialGradientElementInterface>,
	ElementClass<kSVGStopElementClass, "stop", StopElement, SVGStopElementInterface, Stop>,
	ElementClass<kSVGPathElementClass, "path polygon polyline", PathElement, SVGPathElementInterface>,
	ElementClass<kSVGRectElementClass, "rect", RectElement, SVGRectElementInterface, Position, Size, Radius>,
	ElementClass<kSVGCircleElementClass, "circle ellipse", CircleElement, SVGCircleElementInterface, CenterPosition, Radius>,
	ElementClass<kSVGLineElementClass, "line", LineElement, SVGLineElementInterface, LineEnds>,
	ElementClass<kSVGTextElementClass, "text", TextElement, SVGTextElementInterface, Position>,
	ElementClass<kSVGMaskElementClass, "mask", MaskElement, SVGMaskElementInterface, Position, Size>,
	ElementClass<kSVGClipPathElementClass, "clipPath", ClipPathElement, SVGClipPathElementInterface>>;

// clang-format on

} // namespace orvan::svg
