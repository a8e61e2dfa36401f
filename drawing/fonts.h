// SPDX-License-Identifier: MIT
/// The fonts that texts are laid out with, and owners for the font libraries' objects.
#pragma once

#include "outline.h"
#include "style.h"

#include <hb.h>
#include <pango/pango.h>

#include <memory>

namespace orvan::drawing
{

template <auto release>
struct Releaser
{
	void operator()(auto* handle) const noexcept
	{
		release(handle);
	}
};

using PangoContextPtr = std::unique_ptr<PangoContext, Releaser<&g_object_unref>>;
using PangoFontPtr = std::unique_ptr<PangoFont, Releaser<&g_object_unref>>;
using FontDescriptionPtr = std::unique_ptr<PangoFontDescription, Releaser<&pango_font_description_free>>;
using AttributesPtr = std::unique_ptr<PangoAttrList, Releaser<&pango_attr_list_unref>>;
using ShapingBufferPtr = std::unique_ptr<hb_buffer_t, Releaser<&hb_buffer_destroy>>;
using DrawFunctionsPtr = std::unique_ptr<hb_draw_funcs_t, Releaser<&hb_draw_funcs_destroy>>;

/// The size in pixels at which all fonts are loaded. What is laid out is scaled to the size wanted: neither very small
/// nor very large sizes lose precision.
inline constexpr double kFontSize = 64.0;

/// Lengths of a font as fractions of its size: heights upwards from the alphabetic baseline, and advances.
struct FontMetrics
{
	double ascent = 0.8;
	double descent = -0.2;
	double lineGap = 0.0;
	double xHeight = 0.5;
	double capHeight = 0.655;
	double subscript = -0.2;  ///< Where the baseline of subscripts is, ...
	double superscript = 0.4; ///< ... and that of superscripts.
	double zeroAdvance = 0.5; ///< Of "0".
	double ideographAdvance = 1.0;
};

/// One face of a font: a source of glyphs.
struct FontFace
{
	PangoFontPtr font;
	hb_font_t* shaper = nullptr;   ///< The same font for shaping and outlines; `font` owns it.
	double unit = 1.0;             ///< The shaper's coordinates for the size of the font.
	double slant = 0.0;            ///< How far upright outlines are to be leant over, for want of slanted ones.
	double emboldening = 0.0;      ///< How much wider stems are to be made, for want of a bold face; of the size.
	bool hasColors = false;        ///< Glyphs may be pictures instead of outlines.
	bool hasUprightPlaces = false; ///< It says where its glyphs stand in lines that run down.
};

/// What a style asks for: a list of families, a weight and so on. Which face a character is drawn with depends on the
/// character as well.
struct Font
{
	FontDescriptionPtr description;
	const FontFace* face = nullptr; ///< The first choice, which gives the metrics.
	FontMetrics metrics;
	bool hasSmallCapitals = false;      ///< Of small letters.
	bool hasSmallCapitalsOfAll = false; ///< Of capitals as well.

	// What was asked for.
	String family;
	double weight = 400.0;
	double stretch = 1.0;
	SVGFontStyle style = SVGFontStyle::normal;
};

/// The fonts of one drawing, and what was found out about them. The font library's context is made when the first text
/// asks for it: most drawings have none. Whoever draws the glyphs says how it is made. Fonts and faces live as long as
/// this object. Not synchronised.
class Fonts
{
public:
	using Maker = PangoContextPtr (*)() noexcept;

	explicit Fonts(Maker make) noexcept : _make(make)
	{
	}

	/// Null when there is no font at all.
	PangoContext* GetContext() noexcept;

	/// The font that a style asks for; null when there is no font at all.
	Result<const Font*> Find(const Style& style) noexcept;
	/// The face behind a font of the font library.
	Result<const FontFace*> GetFace(PangoFont* font) noexcept;

	/// Appends a glyph's outline, placed by `place`, in which one is the size of the font and y goes down.
	Result<void> AddOutline(const FontFace& face, hb_codepoint_t glyph, const Matrix2d& place,
							Outline& outline) noexcept;

private:
	/// The same for the outline as the font has it.
	Result<void> Draw(const FontFace& face, hb_codepoint_t glyph, const Matrix2d& place, Outline& outline) noexcept;

	Maker _make;
	PangoContextPtr _context;
	DrawFunctionsPtr _drawFunctions;
	BaseArray<std::unique_ptr<Font>> _fonts;
	BaseArray<std::unique_ptr<FontFace>> _faces;
};

} // namespace orvan::drawing
