// SPDX-License-Identifier: MIT
#include "document_size.h"

#include "style.h"

#include <optional>

namespace orvan::drawing
{
namespace
{

/// What a document gets that says nothing about its size.
constexpr Vector2d kDefaultSize{300.0, 150.0};

/// A side that does not depend on what the document is shown in.
std::optional<double> GetAbsolute(const SVGLength& length, const DataDictionary& attributes) noexcept
{
	if (length.unit == SVGLengthUnit::percent)
		return std::nullopt;
	Style style;
	style.Apply(attributes, {});
	return ToUserUnits(length, Axis::other, {}, style.fontSize);
}

} // namespace

NaturalSize GetStatedSize(const SVGElementRef& root) noexcept
{
	NaturalSize size;
	const auto svg = Cast<SVGSVGElementInterface>(root);
	const auto fit = Cast<SVGFitToViewboxInterface>(root);
	if (!svg || !fit)
		return size;
	const SVGViewport viewport = svg->GetViewport();
	const DataDictionary attributes = root->GetAttributeDictionary();
	size.width = GetAbsolute(viewport.width, attributes);
	size.height = GetAbsolute(viewport.height, attributes);
	const SVGViewbox viewbox = fit->GetViewbox();
	if (size.width && size.height && *size.height > 0.0)
		size.ratio = *size.width / *size.height;
	else if (!viewbox.isDefault && viewbox.width.value > 0.0 && viewbox.height.value > 0.0)
		size.ratio = viewbox.width.value / viewbox.height.value;
	return size;
}

Vector2d GetNaturalSize(const SVGElementRef& root) noexcept
{
	const auto svg = Cast<SVGSVGElementInterface>(root);
	const auto fit = Cast<SVGFitToViewboxInterface>(root);
	if (!svg || !fit)
		return kDefaultSize;
	const SVGViewport viewport = svg->GetViewport();
	const DataDictionary attributes = root->GetAttributeDictionary();
	const std::optional<double> width = GetAbsolute(viewport.width, attributes);
	const std::optional<double> height = GetAbsolute(viewport.height, attributes);
	const SVGViewbox viewbox = fit->GetViewbox();
	Vector2d content = kDefaultSize;
	if (!viewbox.isDefault && viewbox.width.value > 0.0 && viewbox.height.value > 0.0)
		content = {viewbox.width.value, viewbox.height.value};
	if (width && height)
		return {*width, *height};
	if (width)
		return {*width, *width * content.y / content.x};
	if (height)
		return {*height * content.x / content.y, *height};
	return content;
}

} // namespace orvan::drawing
