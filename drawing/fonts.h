// SPDX-License-Identifier: MIT
/// The fonts that texts are laid out with, and owners for the font library's objects.
#pragma once

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
using PangoLayoutPtr = std::unique_ptr<PangoLayout, Releaser<&g_object_unref>>;
using FontDescriptionPtr = std::unique_ptr<PangoFontDescription, Releaser<&pango_font_description_free>>;

/// The font library's context, made when the first text asks for it: most drawings have none. Whoever draws the glyphs
/// says how it is made.
class Fonts
{
public:
	using Maker = PangoContextPtr (*)() noexcept;

	explicit Fonts(Maker make) noexcept : _make(make)
	{
	}

	PangoContext* GetContext() noexcept
	{
		if (_context == nullptr)
			_context = _make();
		return _context.get();
	}

private:
	Maker _make;
	PangoContextPtr _context;
};

} // namespace orvan::drawing
