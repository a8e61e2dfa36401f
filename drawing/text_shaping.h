// SPDX-License-Identifier: MIT
/// Characters to glyphs.
#pragma once

#include "text_content.h"

namespace orvan::drawing
{

/// A glyph of a cluster.
struct TextGlyph
{
	hb_codepoint_t id = 0;
	Vector2d offset; ///< From the cluster's origin, in the text's units, y downwards.
};

/// Glyphs and characters that belong together: what is placed as a whole.
struct TextCluster
{
	std::uint32_t first = 0; ///< Its first character.
	std::uint32_t count = 1; ///< How many characters it stands for.
	std::uint32_t firstGlyph = 0;
	std::uint32_t glyphCount = 0;
	const FontFace* face = nullptr;
	int span = 0;
	double size = 0.0;      ///< Of the font, in user units.
	double advance = 0.0;   ///< Along the line, spacing included.
	bool isUpright = false; ///< In a vertical line: it is not turned. Its origin is the middle of its top then.
};

/// The glyphs of a text in visual order: from left to right, or downwards, whatever the direction of the characters.
struct ShapedText
{
	BaseArray<TextCluster> clusters;
	BaseArray<TextGlyph> glyphs;
};

Result<ShapedText> ShapeText(Fonts& fonts, const TextContent& content) noexcept;

} // namespace orvan::drawing
