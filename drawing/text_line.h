// SPDX-License-Identifier: MIT
/// The layout of a text.
#pragma once

#include "fonts.h"
#include "geometry.h"
#include "style.h"

namespace orvan::drawing
{

/// One line of text, laid out at a fixed size and scaled to the one wanted: neither very small nor very large sizes
/// lose precision.
class TextLine
{
public:
	/// Lays a text out with the fonts of `style`, the start of its baseline at (x, y). White space is put together as
	/// XML files expect it. `isShortened` tells that the text was too long.
	static Result<TextLine> Create(Fonts& fonts, const String& text, const Style& style, double x, double y,
								   bool& isShortened) noexcept;

	/// False when there is nothing to see.
	bool IsDrawable() const noexcept
	{
		return _layout != nullptr && IsInvertible(_place);
	}

	/// The box of the line in user units.
	const Rectangle& GetBounds() const noexcept
	{
		return _bounds;
	}

	/// A box around all that the glyphs may touch: they may reach out of their line's box.
	const Rectangle& GetReach() const noexcept
	{
		return _reach;
	}

	/// The laid out glyphs, and where they go: the transform from the layout's to the user's coordinates.
	PangoLayout* GetLayout() const noexcept
	{
		return _layout.get();
	}

	const Matrix2d& GetPlace() const noexcept
	{
		return _place;
	}

	/// Number of bytes that were laid out, as a measure of the work.
	int GetLength() const noexcept
	{
		return _length;
	}

private:
	PangoLayoutPtr _layout;
	Matrix2d _place;
	Rectangle _bounds;
	Rectangle _reach;
	int _length = 0;
};

} // namespace orvan::drawing
