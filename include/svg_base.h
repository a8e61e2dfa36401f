// SPDX-License-Identifier: MIT
/// SVG documents, and the interface that renderers implement.
///
///     SVGDocumentRef document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
///     ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath("drawing.svg"))));
///     SVGElementRef layer = ORVAN_TRY(document->GetElementById(ORVAN_TRY(String::Create("layer1"))));
#pragma once

#include "orvan/url.h"
#include "svg_elements.h"

namespace orvan
{

/// The class of documents, for `CreateObject`.
inline constexpr const char* kSVGDocumentClass = "net.orvan.image.class.svgdocument";
/// The class under which a renderer registers its drawing context. The SVG module only declares it.
inline constexpr const char* kSVGContextClass = "net.orvan.image.class.svgcontext";

/// One SVG file: the tree of its elements and the table of their ids.
///
/// `Init` and `Reset` must not overlap any other use of the document. The queries may run side by side. References to
/// elements stay good as long as somebody holds them, also when the document is gone; the tree around them may not.
class SVGDocumentInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdocument";
	static constexpr const char* kName = "orvan.SVGDocumentInterface";
	static constexpr int kSlotCount = 6;

	/// Resets the document and loads a file.
	///
	/// Fails with an I/O error when the URL does not designate a file or the file cannot be read, and with the
	/// out-of-memory error. A file whose content is refused (broken XML, a value that is not valid, no svg element)
	/// does not fail: the reason goes to the diagnostics, and the document holds a placeholder: an svg element with one
	/// rect of default values, and no ids.
	ORVAN_METHOD(1, Result<void>, Init, (const Url& url), url)
	/// Takes the tree apart and forgets ids and URL. Never fails.
	ORVAN_METHOD(2, void, Reset, ())
	/// The URL of the last `Init`; empty before the first and after `Reset`.
	ORVAN_METHOD(3, const Url&, GetUrl, ())
	/// The root, normally the outermost svg element; null before the first `Init` and after `Reset`.
	ORVAN_METHOD(4, const SVGElementRef&, GetRootElement, ())
	/// The element that had this id when the file was loaded; of several the first. Not found: "SVG element with id '@'
	/// not found."
	ORVAN_METHOD(5, Result<SVGElementRef>, GetElementById, (const String& id), id)
	/// The elements whose current id begins with `prefix` (case matters; the empty prefix matches all), in the order of
	/// the id table: the same for every load of a file, but neither sorted nor in document order.
	ORVAN_METHOD(6, Result<BaseArray<SVGElementRef>>, GetElementsByIdWithPrefix, (const String& prefix), prefix)
};
using SVGDocumentRef = Ref<SVGDocumentInterface>;

/// A drawing context: what a renderer implements to receive a tree one drawable element at a time.
///
/// **Who walks.** The renderer does. `DrawSVGElement` below calls the method that fits an element's kind, and
/// `DrawSVGChildren` does so for its children in document order, which is painting order. A context's method for a
/// container (`DrawSVG`, `DrawGroup`, and `DrawUse` for what the use stands for) draws everything below: it sets up
/// what the container asks for, calls `DrawSVGChildren` with itself, and takes down what it set up. A picture is drawn
/// by one call, with the root.
///
/// **What is not drawn in place.** Definitions, symbols, gradients, stops, masks and clip paths have no method; the
/// walk passes them and all below them over. They are reached by the elements that name them: a fill, stroke, mask,
/// clip path or use holds an id, and the document's `GetElementById` finds the element. Ids may name nothing, or an
/// element of another kind, or lead in circles, or fan out without end: a renderer bounds what it follows.
///
/// **What an element brings.** The local transform goes from the element's coordinates to its parent's; a context that
/// is inside a `use` or a nested viewport has more to apply than `GetWorldTransform` tells. Display "none" hides an
/// element with all below; `DrawSVGElement` honours it. Visibility "hidden" hides one element and is inherited, like
/// fill, stroke and fonts: a getter tells only what the element itself says, `HasAttribute` whether it says anything.
/// Opacity, clip path and mask are not inherited; they apply to the element together with everything below as one
/// picture: first drawn, then clipped, then masked, then blended with the opacity. Numbers come as files have them:
/// opacities may lie outside of 0 … 1, lengths may be negative, and clients may store values that are not finite.
///
/// **Results.** An error stops the walk at once and is handed to whoever started it. An element that cannot be drawn,
/// because a reference leads nowhere or a size is negative, is no error: it is left out.
///
/// **Threads.** A walk runs on one thread; nothing may change the tree meanwhile.
class SVGContextInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgcontext";
	static constexpr const char* kName = "orvan.SVGContextInterface";
	static constexpr int kSlotCount = 8;

	/// Draws an svg element, outermost or nested, and everything below it, in the viewport that it establishes.
	ORVAN_METHOD(1, Result<void>, DrawSVG, (const SVGSVGElementRef& element), element)
	/// Draws what a use element stands for, at the use element's place and with its properties to inherit from.
	ORVAN_METHOD(2, Result<void>, DrawUse, (const SVGUseElementRef& element), element)
	/// Draws a group and everything below it.
	ORVAN_METHOD(3, Result<void>, DrawGroup, (const SVGGroupElementRef& element), element)
	/// Draws a path, polygon or polyline.
	ORVAN_METHOD(4, Result<void>, DrawPath, (const SVGPathElementRef& element), element)
	/// Draws a rectangle, with rounded corners where it has radii.
	ORVAN_METHOD(5, Result<void>, DrawRectangle, (const SVGRectElementRef& element), element)
	/// Draws a line.
	ORVAN_METHOD(6, Result<void>, DrawLine, (const SVGLineElementRef& element), element)
	/// Draws a circle or an ellipse.
	ORVAN_METHOD(7, Result<void>, DrawCircle, (const SVGCircleElementRef& element), element)
	/// Draws a text.
	ORVAN_METHOD(8, Result<void>, DrawText, (const SVGTextElementRef& element), element)
};
using SVGContextRef = Ref<SVGContextInterface>;

ORVAN_DATA_TYPE(SVGDocumentRef, "orvan::SVGDocumentRef", "orvan::SVGDocumentRef");
ORVAN_DATA_TYPE(SVGContextRef, "orvan::SVGContextRef", "orvan::SVGContextRef");

/// Calls the method of `context` that draws `element`; does nothing for elements that are not drawn in place, that are
/// not displayed, or that are empty references.
inline Result<void> DrawSVGElement(const SVGContextRef& context, const SVGElementRef& element) noexcept
{
	if (!element || element->GetDisplay() == SVGDisplay::none)
		return {};
	if (const auto path = Cast<SVGPathElementInterface>(element))
		return context->DrawPath(path);
	if (const auto group = Cast<SVGGroupElementInterface>(element))
		return context->DrawGroup(group);
	if (const auto rect = Cast<SVGRectElementInterface>(element))
		return context->DrawRectangle(rect);
	if (const auto circle = Cast<SVGCircleElementInterface>(element))
		return context->DrawCircle(circle);
	if (const auto use = Cast<SVGUseElementInterface>(element))
		return context->DrawUse(use);
	if (const auto text = Cast<SVGTextElementInterface>(element))
		return context->DrawText(text);
	if (const auto line = Cast<SVGLineElementInterface>(element))
		return context->DrawLine(line);
	if (const auto svg = Cast<SVGSVGElementInterface>(element))
		return context->DrawSVG(svg);
	return {};
}

/// Draws the children of an element (given through any of its interfaces) in document order; stops at the first error.
template <typename I>
Result<void> DrawSVGChildren(const SVGContextRef& context, const Ref<I>& parent) noexcept
{
	const auto hierarchy = Cast<HierarchyObjectInterface>(parent);
	if (!hierarchy)
		return {};
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
		ORVAN_TRY(DrawSVGElement(context, Cast<SVGElementInterface>(child)));
	return {};
}

} // namespace orvan
