// SPDX-License-Identifier: MIT
#include "svgpp/library.h"
#include "svgpp/library_keywords.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvan::grammar
{
namespace
{
namespace value = svgpp::tag::value;

template <typename Enum>
struct Keyword
{
	std::string_view name;
	Parsed parsed;
	Enum keyword{};
};

template <typename ValueTag, typename Enum>
Keyword<Enum> Value(Enum keyword)
{
	return {library::NameOf<ValueTag>(), Parsed::value, keyword};
}

template <typename ValueTag, typename Enum>
Keyword<Enum> Nothing()
{
	return {library::NameOf<ValueTag>(), Parsed::nothing};
}

// The tables are short and most of their words differ in length, so that a walk over them costs a few nanoseconds.
template <typename Enum, std::size_t count>
Parsed Find(const std::array<Keyword<Enum>, count>& keywords, std::string_view text, Enum& keyword)
{
	const auto found = std::find_if(keywords.begin(), keywords.end(),
									[text](const auto& candidate) { return candidate.name == text; });
	if (found == keywords.end())
		return Parsed::refused;
	if (found->parsed == Parsed::value)
		keyword = found->keyword;
	return found->parsed;
}
} // namespace

// Relative and named sizes hang on the parent's size or the reader's taste, neither of which is known here.
Parsed library::ParseFontSize(std::string_view text, Source source, Length& length)
{
	static const std::array keywords{NameOf<value::xx_small>(), NameOf<value::x_small>(), NameOf<value::small>(),
									 NameOf<value::medium>(),   NameOf<value::large>(),   NameOf<value::x_large>(),
									 NameOf<value::xx_large>(), NameOf<value::larger>(),  NameOf<value::smaller>()};
	if (std::find(keywords.begin(), keywords.end(), text) != keywords.end())
		return Parsed::nothing;
	return library::ParseLength(text, source, length);
}

// Whether an element is inline or a block makes no difference to a drawing: only its absence does.
Parsed ParseDisplay(std::string_view text, Display& display)
{
	static const std::array keywords{
		Value<value::none>(Display::none),
		Value<value::inherit>(Display::inherit),
		Nothing<value::inline_, Display>(),
		Nothing<value::block, Display>(),
		Nothing<value::list_item, Display>(),
		Nothing<value::run_in, Display>(),
		Nothing<value::compact, Display>(),
		Nothing<value::marker, Display>(),
		Nothing<value::table, Display>(),
		Nothing<value::inline_table, Display>(),
		Nothing<value::table_row_group, Display>(),
		Nothing<value::table_header_group, Display>(),
		Nothing<value::table_footer_group, Display>(),
		Nothing<value::table_row, Display>(),
		Nothing<value::table_column_group, Display>(),
		Nothing<value::table_column, Display>(),
		Nothing<value::table_cell, Display>(),
		Nothing<value::table_caption, Display>(),
	};
	return Find(keywords, text, display);
}

Parsed ParseVisibility(std::string_view text, Visibility& visibility)
{
	static const std::array keywords{
		Value<value::visible>(Visibility::visible), Value<value::hidden>(Visibility::hidden),
		Value<value::collapse>(Visibility::collapse), Nothing<value::inherit, Visibility>()};
	return Find(keywords, text, visibility);
}

Parsed ParseFillRule(std::string_view text, FillRule& rule)
{
	static const std::array keywords{Value<value::nonzero>(FillRule::nonzero), Value<value::evenodd>(FillRule::evenodd),
									 Nothing<value::inherit, FillRule>()};
	return Find(keywords, text, rule);
}

Parsed ParseLineCap(std::string_view text, LineCap& cap)
{
	static const std::array keywords{Value<value::butt>(LineCap::butt), Value<value::round>(LineCap::round),
									 Value<value::square>(LineCap::square), Nothing<value::inherit, LineCap>()};
	return Find(keywords, text, cap);
}

Parsed ParseLineJoin(std::string_view text, LineJoin& join)
{
	static const std::array keywords{Value<value::miter>(LineJoin::miter), Value<value::round>(LineJoin::round),
									 Value<value::bevel>(LineJoin::bevel), Nothing<value::inherit, LineJoin>()};
	return Find(keywords, text, join);
}

Parsed ParseGradientUnits(std::string_view text, GradientUnits& units)
{
	static const std::array keywords{Value<value::userSpaceOnUse>(GradientUnits::userSpaceOnUse),
									 Value<value::objectBoundingBox>(GradientUnits::objectBoundingBox)};
	return Find(keywords, text, units);
}

Parsed ParseSpreadMethod(std::string_view text, SpreadMethod& method)
{
	static const std::array keywords{Value<value::pad>(SpreadMethod::pad), Value<value::reflect>(SpreadMethod::reflect),
									 Value<value::repeat>(SpreadMethod::repeat)};
	return Find(keywords, text, method);
}

Parsed ParseFontStyle(std::string_view text, FontStyle& style)
{
	static const std::array keywords{Value<value::normal>(FontStyle::normal), Value<value::italic>(FontStyle::italic),
									 Value<value::oblique>(FontStyle::oblique), Nothing<value::inherit, FontStyle>()};
	return Find(keywords, text, style);
}

Parsed ParseFontWeight(std::string_view text, FontWeight& weight)
{
	static const std::array keywords{
		Value<value::normal>(FontWeight::normal),    Value<value::bold>(FontWeight::bold),
		Nothing<value::bolder, FontWeight>(),        Nothing<value::lighter, FontWeight>(),
		Nothing<value::inherit, FontWeight>(),       Value<value::value_100>(FontWeight::normal),
		Value<value::value_200>(FontWeight::normal), Value<value::value_300>(FontWeight::normal),
		Value<value::value_400>(FontWeight::normal), Value<value::value_500>(FontWeight::normal),
		Value<value::value_600>(FontWeight::bold),   Value<value::value_700>(FontWeight::bold),
		Value<value::value_800>(FontWeight::bold),   Value<value::value_900>(FontWeight::bold),
	};
	return Find(keywords, text, weight);
}
} // namespace orvan::grammar
