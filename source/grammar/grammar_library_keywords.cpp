// SPDX-License-Identifier: MIT
#include "grammar_library.h"
#include "library_keywords.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvan::grammar::library
{
namespace
{
namespace value = svgpp::tag::value;

struct Keyword
{
	std::string_view name;
	Parsed parsed;
	std::int32_t code = 0;
};

template <typename ValueTag>
Keyword Value(std::int32_t code)
{
	return {NameOf<ValueTag>(), Parsed::value, code};
}

template <typename ValueTag>
Keyword Nothing()
{
	return {NameOf<ValueTag>(), Parsed::nothing};
}

// The tables are short and most of their words differ in length, so that a walk over them costs a few nanoseconds.
template <std::size_t count>
Parsed Find(const std::array<Keyword, count>& keywords, std::string_view text, std::int32_t& code)
{
	const auto found =
		std::find_if(keywords.begin(), keywords.end(), [text](const Keyword& keyword) { return keyword.name == text; });
	if (found == keywords.end())
		return Parsed::refused;
	if (found->parsed == Parsed::value)
		code = found->code;
	return found->parsed;
}
} // namespace

// Relative and named sizes hang on the parent's size or the reader's taste, neither of which is known here.
Parsed ParseFontSize(std::string_view text, Source source, Length& length)
{
	static const std::array keywords{Nothing<value::xx_small>(), Nothing<value::x_small>(), Nothing<value::small>(),
									 Nothing<value::medium>(),   Nothing<value::large>(),   Nothing<value::x_large>(),
									 Nothing<value::xx_large>(), Nothing<value::larger>(),  Nothing<value::smaller>()};
	std::int32_t code;
	if (Find(keywords, text, code) == Parsed::nothing)
		return Parsed::nothing;
	return library::ParseLength(text, source, length);
}

// Whether an element is inline or a block makes no difference to a drawing: only its absence does.
Parsed ParseDisplay(std::string_view text, std::int32_t& display)
{
	static const std::array keywords{
		Value<value::none>(2),
		Value<value::inherit>(0),
		Nothing<value::inline_>(),
		Nothing<value::block>(),
		Nothing<value::list_item>(),
		Nothing<value::run_in>(),
		Nothing<value::compact>(),
		Nothing<value::marker>(),
		Nothing<value::table>(),
		Nothing<value::inline_table>(),
		Nothing<value::table_row_group>(),
		Nothing<value::table_header_group>(),
		Nothing<value::table_footer_group>(),
		Nothing<value::table_row>(),
		Nothing<value::table_column_group>(),
		Nothing<value::table_column>(),
		Nothing<value::table_cell>(),
		Nothing<value::table_caption>(),
	};
	return Find(keywords, text, display);
}

Parsed ParseVisibility(std::string_view text, std::int32_t& visibility)
{
	static const std::array keywords{Value<value::visible>(1), Value<value::hidden>(2), Value<value::collapse>(3),
									 Nothing<value::inherit>()};
	return Find(keywords, text, visibility);
}

Parsed ParseFillRule(std::string_view text, std::int32_t& rule)
{
	static const std::array keywords{Value<value::nonzero>(1), Value<value::evenodd>(2), Nothing<value::inherit>()};
	return Find(keywords, text, rule);
}

Parsed ParseLineCap(std::string_view text, std::int32_t& cap)
{
	static const std::array keywords{Value<value::butt>(1), Value<value::round>(2), Value<value::square>(3),
									 Nothing<value::inherit>()};
	return Find(keywords, text, cap);
}

Parsed ParseLineJoin(std::string_view text, std::int32_t& join)
{
	static const std::array keywords{Value<value::miter>(1), Value<value::round>(2), Value<value::bevel>(3),
									 Nothing<value::inherit>()};
	return Find(keywords, text, join);
}

Parsed ParseGradientUnits(std::string_view text, std::int32_t& units)
{
	static const std::array keywords{Value<value::userSpaceOnUse>(0), Value<value::objectBoundingBox>(1)};
	return Find(keywords, text, units);
}

Parsed ParseSpreadMethod(std::string_view text, std::int32_t& method)
{
	static const std::array keywords{Value<value::pad>(0), Value<value::reflect>(1), Value<value::repeat>(2)};
	return Find(keywords, text, method);
}

Parsed ParseFontStyle(std::string_view text, std::int32_t& style)
{
	static const std::array keywords{Value<value::normal>(0), Value<value::italic>(1), Value<value::oblique>(2),
									 Nothing<value::inherit>()};
	return Find(keywords, text, style);
}

Parsed ParseFontWeight(std::string_view text, std::int32_t& weight)
{
	static const std::array keywords{
		Value<value::normal>(0),    Value<value::bold>(1),      Nothing<value::bolder>(),   Nothing<value::lighter>(),
		Nothing<value::inherit>(),  Value<value::value_100>(0), Value<value::value_200>(0), Value<value::value_300>(0),
		Value<value::value_400>(0), Value<value::value_500>(0), Value<value::value_600>(1), Value<value::value_700>(1),
		Value<value::value_800>(1), Value<value::value_900>(1),
	};
	return Find(keywords, text, weight);
}
} // namespace orvan::grammar::library
