// SPDX-License-Identifier: MIT
#pragma once

/// Filter functions and the order of painting, as browsers read them. See values.h for what holds for all.

#include "complete/colors.h"

#include <array>

namespace orvan::grammar::complete
{
enum class FilterKind
{
	reference, ///< "url(…)" of a filter element.
	blur,
	brightness,
	contrast,
	dropShadow,
	grayscale,
	hueRotate,
	invert,
	opacity,
	saturate,
	sepia
};

/// One item of "filter".
struct FilterFunction
{
	FilterKind kind = FilterKind::reference;
	/// The amount as a fraction (not negative; at most 1 for grayscale, invert, opacity and sepia), or hue-rotate()'s
	/// angle in degrees. What is left out is 1, and for hue-rotate() 0.
	double amount = 1;
	Length deviation; ///< Of blur() and drop-shadow(): not negative and no percentage.
	Length offsetX;   ///< Of drop-shadow().
	Length offsetY;
	bool hasColor = false; ///< Whether drop-shadow() names a colour; the default is currentColor.
	Color color;
	Reference reference;
};

/// Receives the functions of a filter list in order. What was appended before a refusal is to be thrown away.
class FilterSink
{
public:
	virtual void Append(const FilterFunction& function) = 0;

protected:
	~FilterSink() = default;
};

/// "filter": "none" (`value`, and nothing is appended) or a list of functions and references.
Parsed ParseFilter(std::string_view text, Source source, FilterSink& sink);

enum class PaintLayer : std::uint8_t
{
	fill,
	stroke,
	markers
};

/// The order in which an element's layers are painted, the first at the bottom.
using PaintOrder = std::array<PaintLayer, 3>;

/// "paint-order": "normal" or up to three layers; those left out follow in their usual order.
Parsed ParsePaintOrder(std::string_view text, PaintOrder& order) noexcept;
} // namespace orvan::grammar::complete
