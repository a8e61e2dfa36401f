// SPDX-License-Identifier: MIT
/// The interface by which a host program gets a picture out of a renderer.
///
/// A renderer's object of class `kSVGContextClass` implements it beside `SVGContextInterface`: one receives the tree,
/// the other says where the drawing goes and hands it out. Nothing here names a graphics library, so that any renderer
/// can implement it, and a host that finds it on whatever context is registered can use it.
///
///     SVGContextRef context = ORVAN_TRY(CreateObject<SVGContextInterface>(kSVGContextClass));
///     SVGRenderTargetRef target = Cast<SVGRenderTargetInterface>(context); // Null when it cannot make pictures.
///     SVGRenderOptions options;
///     options.width = 256; // The height follows the document.
///     ORVAN_TRY(target->Begin(document, options));
///     ORVAN_TRY(DrawSVGElement(context, document->GetRootElement()));
///     ORVAN_TRY(target->Finish(ORVAN_TRY(String::Create("drawing.png"))));
///
/// The same object may draw one picture after another. It does no locking: one thread at a time.
#pragma once

#include "svg_base.h"

#include <cstdint>

namespace orvan
{

/// The class of this project's renderer, for hosts that have several and want this one. Whichever renderer is loaded
/// first is also the implementation of `kSVGContextClass`.
inline constexpr const char* kSVGCairoContextClass = "net.orvan.svg.cairo.class.context";

/// What a picture is made of, and with it the format of its file.
enum class SVGRenderOutput : std::int32_t
{
	pixels = 0, ///< An image of pixels; its file is a PNG.
	page = 1,   ///< A page of lines and areas; its file is a PDF of one page, 96 user units of the document an inch.
};

/// What a picture should be like. The defaults give the document's own size on a transparent background.
struct SVGRenderOptions
{
	SVGRenderOutput output = SVGRenderOutput::pixels;
	/// Width and height in pixels (of a page: in units of 1/96 inch), before `scale`. Zero stands for "not given": the
	/// side follows from the other one in the document's proportions, or both from the document. When both are given,
	/// the outermost svg element is fitted into them as its "preserveAspectRatio" says. Negative values and such that
	/// are not finite are refused.
	Float width = 0.0;
	Float height = 0.0;
	/// Factor on both sides and on everything in the picture. Must be greater than 0 and finite.
	Float scale = 1.0;
	/// The colour below the drawing, 0 to 1 each, and how opaque it is: at 0, the default, there is none.
	Color background{};
	Float backgroundOpacity = 0.0;
	/// What "currentColor" stands for where the document does not say "color", 0 to 1 each; black by default.
	Color currentColor{};
	/// Seconds that a picture may take from `Begin` to its file. What is not drawn when the time is up is left out.
	/// Must be greater than 0; infinity is for callers that wait for as long as it takes.
	Float deadline = 10.0;
	/// Bytes that a picture may take, its own pixels included. What would need more is left out. Must be greater than
	/// 0.
	Float memoryLimit = 512.0 * 1024 * 1024;
	/// Memory of the caller's for the pixels, for pictures without copies; null, the default, for the renderer's own.
	/// It must be aligned to four bytes, hold as many rows as the picture, and stay good to the next `Begin` or the end
	/// of the object. What is in it is replaced. Pages take no memory.
	unsigned char* pixels = nullptr;
	/// Bytes from one row of `pixels` to the next, a multiple of four and no less than a row takes; negative where rows
	/// go from the bottom up and `pixels` is the top one.
	std::int32_t stride = 0;
	/// The id of the one element that the picture is of; empty, the default, for the whole document. The picture is as
	/// large as what the element paints (a size that is given fits that instead), and shows it without what stands
	/// around it: coordinates and inherited properties count, effects of groups and edges of viewports do not. Handing
	/// over the document's root draws it.
	String elementId{};
};

/// The pixels of a picture, rows from the top. They stay the renderer's, unless the caller gave the memory: good until
/// the next `Begin` and as long as the object is alive.
struct SVGRenderPixels
{
	/// Four bytes a pixel: a 32-bit number in the processor's byte order with alpha in the highest 8 bits, then red,
	/// green, blue, which are already multiplied by alpha.
	const unsigned char* data = nullptr;
	std::int32_t width = 0;
	std::int32_t height = 0;
	std::int32_t stride = 0; ///< Bytes from one row to the next.
};

/// The picture that a drawing context draws into.
///
/// Between `Begin` and `Finish` or `GetPixels`, the host hands the document's root to the context, once, with
/// `DrawSVGElement`. Handing over another element instead draws that element alone, with its own transform, in
/// coordinates of one unit a pixel times the scale.
///
/// What a document names but a picture cannot have (references in circles, references that multiply without end,
/// nesting beyond all use) is left out, with a warning in the diagnostics, once a picture for each kind of reason. The
/// rest of the picture is drawn.
class SVGRenderTargetInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.svg.render.interface.rendertarget";
	static constexpr const char* kName = "orvan.SVGRenderTargetInterface";
	static constexpr int kSlotCount = 4;

	/// Starts a picture, dropping the one before. `document` is where references are looked up and where the size comes
	/// from when the options do not give it: the width and height of its root, where these are missing or relative the
	/// size of its view box, and without one 300 by 150. The document is kept alive to the next `Begin`.
	///
	/// Fails with the not-found error when there is no element with the id of the options, with the illegal-argument
	/// error when it paints nothing, for options that make no sense and for a picture that is larger than the
	/// renderer can make, before anything is allocated for it; with the null-reference error without a document or
	/// without a root in it; with the out-of-memory error.
	ORVAN_METHOD(1, Result<void>, Begin, (const SVGDocumentRef& document, const SVGRenderOptions& options), document,
				 options)
	/// Width and height of the picture in pixels, always whole; of a page in points of 1/72 inch. Zero before `Begin`.
	ORVAN_METHOD(2, Vector2d, GetSize, ())
	/// Ends the picture and writes its file to `path`, replacing what is there. Nothing can be drawn afterwards; a
	/// picture of pixels may be finished again, to another file.
	///
	/// Fails with the illegal-state error when there is no picture, with an I/O error when the file cannot be written,
	/// and with the out-of-memory error, also when memory had run out while drawing.
	ORVAN_METHOD(3, Result<void>, Finish, (const String& path), path)
	/// Ends the picture, if it is not ended, and shows its pixels. Fails with the illegal-state error when there is no
	/// picture or when it is a page.
	ORVAN_METHOD(4, Result<SVGRenderPixels>, GetPixels, ())
};
using SVGRenderTargetRef = Ref<SVGRenderTargetInterface>;

ORVAN_DATA_TYPE(SVGRenderTargetRef, "orvan::SVGRenderTargetRef", "orvan::SVGRenderTargetRef");

} // namespace orvan
