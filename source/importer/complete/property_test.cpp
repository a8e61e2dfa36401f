// SPDX-License-Identifier: MIT
#include "importer/complete/property_test.h"

#include "elements/element_base.h"
#include "grammar.h"
#include "importer/complete/importer.h"
#include "importer/complete/single_transforms.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <string>

namespace orvan::svg::complete
{
namespace
{

/// Properties of pages, in the order of the alphabet. What a sheet for drawings asks for is whether the browser is new
/// enough, so that the names tell enough and their values are not looked at.
// clang-format off
constexpr std::string_view kOfPages[] = {
	"-webkit-appearance", "-webkit-background-clip", "-webkit-box-reflect", "-webkit-clip-path", "-webkit-filter",
	"-webkit-line-clamp", "-webkit-mask", "-webkit-mask-image", "-webkit-text-fill-color", "-webkit-text-stroke",
	"-webkit-transform", "accent-color", "align-items", "anchor-name", "animation", "animation-name",
	"animation-timeline", "appearance", "aspect-ratio", "backdrop-filter", "backface-visibility",
	"background-blend-mode", "background-clip", "background-image", "border-radius", "box-shadow", "box-sizing",
	"color-scheme", "column-gap", "columns", "contain", "container-type", "content-visibility", "cursor", "flex",
	"float", "font-feature-settings", "font-variation-settings", "gap", "grid", "grid-area", "grid-template-columns",
	"grid-template-rows", "inset", "justify-content", "line-height", "margin", "mask-composite", "mask-image",
	"object-fit", "offset-path", "order", "outline", "overflow-x", "overscroll-behavior", "padding", "perspective",
	"position", "row-gap", "scroll-behavior", "shape-outside", "text-shadow", "text-wrap", "touch-action",
	"transform-style", "transition", "user-select", "view-transition-name", "will-change", "z-index", "zoom",
};
// clang-format on
static_assert(std::is_sorted(std::begin(kOfPages), std::end(kOfPages)));

/// The first tag that a rule counts on.
Tag FirstTagOf(const Rule& rule) noexcept
{
	auto tag = static_cast<std::uint8_t>(TagOf(SVGImportElementKind::svg));
	while (!rule.tags.Has(static_cast<Tag>(tag)))
		tag++;
	return static_cast<Tag>(tag);
}

/// Reads a value on an element of no tree.
Result<bool> IsRead(const Rule& rule, std::string_view value) noexcept
{
	const Tag tag = FirstTagOf(rule);
	const auto scratch = ORVAN_TRY(FactoryOf(tag).Create<SVGElementInterface>());
	auto& element = static_cast<ElementBase&>(*static_cast<HierarchyObject*>(scratch.GetObject()));
	const SVGImportOptions options{true, true, false, {}};
	Importer importer(options);
	importer.viewport = {1, 1}; // Any will do.
	const Application application{importer, element, tag, rule, value, grammar::Source::sheet};
	return ORVAN_TRY(importer.Read(application)) == Reading::applied ||
		   ORVAN_TRY(importer.ReadCalculated(application)) == Reading::applied;
}

} // namespace

bool PropertyTest::Understands(const css::Declaration& declaration)
{
	std::string resolved;
	std::string_view value = declaration.value;
	if (declaration.hasEscapes)
		value = resolved = grammar::complete::ResolveEscapes(value);
	const bool isWide = grammar::complete::ParseCssWide(value) != grammar::complete::CssWideKeyword::none;
	if (declaration.name == "all")
		return isWide;
	if (SingleTransforms::IsName(declaration.name))
		return isWide || declaration.hasVariables || SingleTransforms().Read(declaration.name, value, {});
	const Rule* const rule = FindRule(declaration.name);
	if (rule == nullptr || !IsProperty(*rule))
		return std::binary_search(std::begin(kOfPages), std::end(kOfPages), declaration.name);
	if (declaration.hasVariables)
		return true;
	const Result<bool> isRead = IsRead(*rule, value);
	if (!isRead.IsOk())
		throw std::bad_alloc();
	return isRead.GetValue();
}

} // namespace orvan::svg::complete
