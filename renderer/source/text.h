// SPDX-License-Identifier: MIT
/// Text on its way into the drawing library.
#pragma once

#include "geometry.h"
#include "handles.h"
#include "style.h"

namespace orvan::cairo
{

/// One line of text, laid out at a fixed size and scaled to the one wanted: neither very small nor very large sizes
/// lose precision.
class TextLine
{
public:
	/// Lays a text out with the fonts of `style`, the start of its baseline at (x, y). White space is put together as
	/// XML files expect it. `isShortened` tells that the text was too long.
	static Result<TextLine> Create(PangoContext* fonts, const String& text, const Style& style, double x, double y,
								   bool& isShortened) noexcept;

	/// False when there is nothing to see.
	bool IsDrawable() const noexcept;

	/// The box of the line in user units.
	const Rectangle& GetBounds() const noexcept
	{
		return _bounds;
	}

	/// Fills the glyphs with the drawing's source. Leaves the drawing's transform as the identity.
	void Fill(cairo_t* drawing, const Matrix2d& transform) const noexcept;
	/// Makes the glyphs' outlines the current path. Leaves the drawing's transform as the identity.
	void AddOutline(cairo_t* drawing, const Matrix2d& transform) const noexcept;

private:
	/// Sets the transform in which the layout's baseline starts at the origin of the layout.
	void EnterLayout(cairo_t* drawing, const Matrix2d& transform) const noexcept;

	PangoLayoutPtr _layout;
	Matrix2d _place; ///< From the layout's coordinates to the user's.
	Rectangle _bounds;
};

/// What lines are laid out with: outlines unhinted, so that a text has the same shape at every size.
PangoContextPtr CreateFontContext() noexcept;

} // namespace orvan::cairo
