// SPDX-License-Identifier: MIT
#pragma once

/// Colours, paints and references, as browsers read them. See values.h for what holds for all.

#include "complete/numbers.h"

#include <array>

namespace orvan::grammar::complete
{
enum class ColorKind
{
	color,
	currentColor
};

/// A colour in sRGB; all channels lie in 0 … 1. Names, hexadecimal digits, rgb(), hsl() and hwb() come in 256 steps a
/// channel, as browsers keep them; the others are converted to sRGB and clamped.
struct Color
{
	ColorKind kind = ColorKind::color;
	double red = 0;
	double green = 0;
	double blue = 0;
	double alpha = 1;
};

/// "color", "stop-color", "flood-color", "lighting-color": the names of CSS, "transparent", "currentColor",
/// #rgb, #rgba, #rrggbb, #rrggbbaa, rgb(), rgba(), hsl() and hsla() with commas or with blanks and a slash, hwb(),
/// lab(), lch(), oklab(), oklch() and color() of the sRGB, Display P3, A98, ProPhoto, Rec. 2020 and XYZ spaces, all of
/// these also relative to another colour ("from"); color-mix() and light-dark(), of which the first counts. What is out
/// of range is clamped; "none" for a component is 0. Neither mixed nor relative colours can be made of currentColor. An
/// "icc-color(…)" behind a colour is dropped. System colours are those of a light page ("Canvas" is white, "CanvasText"
/// black).
Parsed ParseColor(std::string_view text, Color& color) noexcept;

/// A reference to an element or a resource.
struct Reference
{
	std::string_view text;   ///< The id after "#" when local (may be empty), else the whole IRI. Points into the value.
	bool isLocal = false;    ///< Whether the IRI is just "#" and an id.
	bool hasEscapes = false; ///< Whether `text` is to go through `ResolveEscapes`.
};

enum class PaintKind
{
	none,
	color,
	currentColor,
	contextFill,
	contextStroke,
	reference
};

/// What a paint is where its reference leads nowhere.
enum class PaintFallback
{
	absent,
	none,
	color,
	currentColor
};

/// A value of "fill" or "stroke".
struct Paint
{
	PaintKind kind = PaintKind::none;
	PaintFallback fallback = PaintFallback::absent; ///< Other than absent only for references.
	Color color;                                    ///< Of the paint, or of its fallback.
	Reference reference;
};

/// "fill" and "stroke": none, a colour, "context-fill", "context-stroke", or a reference with or without a fallback.
Parsed ParsePaint(std::string_view text, Paint& paint) noexcept;

/// "clip-path", "mask", "marker", "marker-start" …: "none" (`nothing`) or "url(…)", quoted or not.
Parsed ParseReference(std::string_view text, Reference& reference) noexcept;

enum class MaskMode
{
	matchSource,
	luminance,
	alpha
};

enum class MaskComposite
{
	add,
	subtract,
	intersect,
	exclude
};

/// A value of "mask": the layers that refer to elements, the upper first.
struct Mask
{
	static constexpr std::size_t kMostLayers = 8; ///< More are left out.

	std::array<Reference, kMostLayers> layers;
	std::size_t count = 0;
	MaskMode mode = MaskMode::matchSource; ///< Of the layer that says one, the last if several do; likewise below.
	MaskComposite composite = MaskComposite::add;
};

/// "mask": layers; "none" (`nothing`) when none refers to an element. What else a layer says (where it lies, how often
/// it repeats, what it is clipped to) is read and left out: it does not apply to elements that mask.
Parsed ParseMask(std::string_view text, Mask& mask) noexcept;

/// "href" and "xlink:href": any IRI without the blanks around it; never refused. An empty IRI is `nothing`.
Parsed ParseIri(std::string_view text, Reference& reference) noexcept;
} // namespace orvan::grammar::complete
