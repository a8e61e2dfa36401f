// The library's assertions would end the process over bytes that its grammars then refuse anyway. They are switched off
// before anything of Boost is seen.
#define BOOST_DISABLE_ASSERTS

#include "grammar_library.h"
#include "text_checks.h"

#include <svgpp/detail/literal_values_dictionary.hpp>
#include <svgpp/factory/color.hpp>
#include <svgpp/factory/icc_color_stub.hpp>
#include <svgpp/parser/css_style_iterator.hpp>
#include <svgpp/parser/detail/parse_list_iterator.hpp>
#include <svgpp/parser/external_function/parse_misc_impl.hpp>
#include <svgpp/parser/grammar/color_optional_icc_color.hpp>
#include <svgpp/parser/grammar/iri.hpp>
#include <svgpp/parser/grammar/length.hpp>
#include <svgpp/parser/grammar/preserveAspectRatio.hpp>

#include <array>
#include <cmath>
#include <string>
#include <type_traits>

namespace orvan::grammar::library
{
namespace
{
namespace qi = boost::spirit::qi;
namespace phoenix = boost::phoenix;
namespace value = svgpp::tag::value;

using Iterator = const char*;
using AttributeSource = svgpp::tag::source::attribute;
using StyleSource = svgpp::tag::source::css;

// Building a grammar takes longer than most values take to read, so each is built on first use and kept.

template <typename SourceTag>
bool ReadNumber(Iterator& at, Iterator end, double& number)
{
	static const qi::real_parser<double, svgpp::detail::number_policies<double, SourceTag>> parser;
	return qi::parse(at, end, parser, number) && std::isfinite(number);
}

struct LengthFactory
{
	using length_type = Length;
	using number_type = double;

	template <typename UnitTag>
	Length create_length(double number, UnitTag) const
	{
		namespace units = svgpp::tag::length_units;
		if constexpr (std::is_same_v<UnitTag, units::em>)
			return {number, LengthUnit::em};
		else if constexpr (std::is_same_v<UnitTag, units::ex>)
			return {number, LengthUnit::ex};
		else if constexpr (std::is_same_v<UnitTag, units::px>)
			return {number, LengthUnit::px};
		else if constexpr (std::is_same_v<UnitTag, units::in>)
			return {number, LengthUnit::in};
		else if constexpr (std::is_same_v<UnitTag, units::cm>)
			return {number, LengthUnit::cm};
		else if constexpr (std::is_same_v<UnitTag, units::mm>)
			return {number, LengthUnit::mm};
		else if constexpr (std::is_same_v<UnitTag, units::pt>)
			return {number, LengthUnit::pt};
		else if constexpr (std::is_same_v<UnitTag, units::pc>)
			return {number, LengthUnit::pc};
		else
		{
			static_assert(std::is_same_v<UnitTag, units::none>);
			return {number, LengthUnit::none};
		}
	}

	template <typename Dimension>
	Length create_length(double number, svgpp::tag::length_units::percent, Dimension) const
	{
		return {number / 100, LengthUnit::percent};
	}
};

using LengthRule = qi::rule<Iterator, Length()>;

template <typename Grammar>
struct BoundLengthRule
{
	BoundLengthRule()
	{
		rule %= grammar(phoenix::cref(factory));
	}

	LengthFactory factory;
	Grammar grammar;
	LengthRule rule;
};

const LengthRule& LengthRuleOf(Source source)
{
	using Dimension = svgpp::tag::length_dimension::not_width_nor_height;
	static const BoundLengthRule<svgpp::length_grammar<AttributeSource, Iterator, LengthFactory, Dimension>>
		ofAttribute;
	static const BoundLengthRule<svgpp::percentage_or_length_css_grammar<Iterator, LengthFactory>> ofStyle;
	return source == Source::attribute ? ofAttribute.rule : ofStyle.rule;
}

bool IsAcceptable(std::string_view text)
{
	return IsAscii(text) && !HasRunawayExponent(text);
}

/// The library folds the case of units through the C locale, in which "IN" need not match "in". In a declaration, where
/// case does not count, it is given the lower case itself.
std::string FoldCase(std::string_view text, Source source)
{
	std::string folded(text);
	if (source == Source::style)
	{
		for (char& c : folded)
			c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
	}
	return folded;
}

using ColorFactory = svgpp::factory::color::default_factory;
using IccFactory = svgpp::factory::icc_color::stub;
using ColorGrammar = svgpp::color_optional_icc_color_grammar<AttributeSource, Iterator, ColorFactory, IccFactory>;

/// Reads a colour with its optional ICC colour up to the end of the text, or not at all. Keywords are matched in any
/// case; that, too, the library does through the C locale, so the word that starts the text is folded beforehand unless
/// it is the name of a function.
bool ReadColor(std::string_view text, PackedColor& color)
{
	static const ColorGrammar grammar;
	static const IccFactory iccFactory;

	if (!IsAscii(text) || HasRunawayExponent(text))
		return false;
	std::string folded(text);
	const auto wordEnd = std::find_if_not(folded.begin(), folded.end(), IsLetter);
	if (wordEnd == folded.end() || *wordEnd != '(')
	{
		for (auto it = folded.begin(); it != wordEnd; ++it)
			*it = static_cast<char>(*it | 0x20);
	}
	boost::tuple<ColorFactory::color_type, boost::optional<IccFactory::icc_color_type>> result;
	Iterator at = folded.data();
	const Iterator end = at + folded.size();
	if (!qi::parse(at, end, grammar(phoenix::cref(iccFactory)), result) || at != end)
		return false;
	color = static_cast<PackedColor>(result.get<0>());
	return true;
}

Reference ToReference(std::string_view iri)
{
	if (!iri.empty() && iri.front() == '#')
		return {iri.substr(1), true};
	return {iri, false};
}

/// Reads "url(" IRI ")" off the front of the text.
bool ReadFuncIri(std::string_view& text, Reference& reference)
{
	static const svgpp::funciri_grammar<AttributeSource, Iterator> grammar;

	boost::iterator_range<Iterator> iri;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!qi::parse(at, end, grammar, iri))
		return false;
	reference = ToReference({iri.begin(), iri.size()});
	text.remove_prefix(static_cast<std::size_t>(at - text.data()));
	return true;
}

struct Keyword
{
	std::string_view name;
	Parsed parsed;
	std::int32_t code = 0;
};

/// The library's own spelling of a keyword.
template <typename ValueTag>
std::string_view NameOf()
{
	const auto name = svgpp::detail::literal_values_dictionary<char>::get_name<ValueTag>();
	return {name.begin(), name.size()};
}

template <typename ValueTag>
bool Is(std::string_view text)
{
	return text == NameOf<ValueTag>();
}

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

Parsed ParseNumber(std::string_view text, Source source, double& number)
{
	if (Is<value::inherit>(text))
		return Parsed::nothing;
	if (HasRunawayExponent(text))
		return Parsed::refused;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	double result;
	const bool isNumber = source == Source::attribute ? ReadNumber<AttributeSource>(at, end, result)
													  : ReadNumber<StyleSource>(at, end, result);
	if (!isNumber || at != end)
		return Parsed::refused;
	number = result;
	return Parsed::value;
}

Parsed ParseLength(std::string_view text, Source source, Length& length)
{
	if (Is<value::inherit>(text))
		return Parsed::nothing;
	if (!IsAcceptable(text))
		return Parsed::refused;
	const std::string folded = FoldCase(text, source);
	Iterator at = folded.data();
	const Iterator end = at + folded.size();
	Length result;
	if (!qi::parse(at, end, LengthRuleOf(source), result) || at != end || !std::isfinite(result.value))
		return Parsed::refused;
	length = result;
	return Parsed::value;
}

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

Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink)
{
	using Separator = svgpp::detail::comma_wsp_rule_no_skip<Iterator>;
	static const Separator separator;

	if (Is<value::none>(text))
		return Parsed::value;
	if (Is<value::inherit>(text))
		return Parsed::nothing;
	if (!IsAcceptable(text))
		return Parsed::refused;
	const std::string folded = FoldCase(text, source);
	const Iterator begin = folded.data();
	svgpp::detail::parse_list_iterator<Length, Iterator, LengthRule, Separator> lengths(
		begin, begin + folded.size(), LengthRuleOf(source), separator);
	for (Length length; lengths.get_next(length);)
	{
		if (!std::isfinite(length.value))
			return Parsed::refused;
		sink.Append(length);
	}
	return lengths.error() ? Parsed::refused : Parsed::value;
}

Parsed ParseOffset(std::string_view text, double& fraction)
{
	if (HasRunawayExponent(text))
		return Parsed::refused;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	double number;
	if (!ReadNumber<AttributeSource>(at, end, number))
		return Parsed::refused;
	const bool isPercentage = at != end && *at == '%';
	if (at + isPercentage != end)
		return Parsed::refused;
	fraction = isPercentage ? number / 100 : number;
	return Parsed::value;
}

Parsed ParseColor(std::string_view text, PackedColor& color)
{
	if (Is<value::currentColor>(text) || Is<value::inherit>(text))
		return Parsed::nothing;
	return ReadColor(text, color) ? Parsed::value : Parsed::refused;
}

// The library's paint parser puts its rule together anew for every call, which takes most of its time. The same
// grammars, kept, stand behind the same order of alternatives here.
Parsed ParsePaint(std::string_view text, Paint& paint)
{
	Paint result;
	if (Is<value::none>(text))
		result.kind = PaintKind::none;
	else if (Is<value::currentColor>(text))
		result.kind = PaintKind::currentColor;
	else if (Is<value::inherit>(text))
		result.kind = PaintKind::inherit;
	else if (ReadColor(text, result.color))
		result.kind = PaintKind::color;
	else
	{
		if (!ReadFuncIri(text, result.reference))
			return Parsed::refused;
		result.kind = PaintKind::reference;
		if (!text.empty())
		{
			const auto blanks = std::find_if_not(text.begin(), text.end(), IsSpace) - text.begin();
			if (blanks == 0)
				return Parsed::refused;
			text.remove_prefix(static_cast<std::size_t>(blanks));
			if (Is<value::none>(text))
				result.fallback = PaintFallback::none;
			else if (Is<value::currentColor>(text))
				result.fallback = PaintFallback::currentColor;
			else if (ReadColor(text, result.color))
				result.fallback = PaintFallback::color;
			else
				return Parsed::refused;
		}
	}
	paint = result;
	return Parsed::value;
}

Parsed ParseIri(std::string_view text, Reference& reference)
{
	static const svgpp::iri_grammar<Iterator> grammar;

	boost::iterator_range<Iterator> iri;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!qi::parse(at, end, grammar, iri) || at != end)
		return Parsed::refused;
	reference = ToReference({iri.begin(), iri.size()});
	return Parsed::value;
}

Parsed ParseMaskReference(std::string_view text, std::string_view& id)
{
	if (Is<value::none>(text))
	{
		id = {};
		return Parsed::value;
	}
	if (Is<value::inherit>(text))
		return Parsed::nothing;
	Reference reference;
	if (!ReadFuncIri(text, reference) || !text.empty())
		return Parsed::refused;
	if (!reference.isLocal)
		return Parsed::nothing;
	id = reference.text;
	return Parsed::value;
}

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

Parsed ParseViewBox(std::string_view text, ViewBox& box)
{
	if (HasRunawayExponent(text))
		return Parsed::refused;
	ViewBox result;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!svgpp::detail::parse_viewBox(at, end, result.x, result.y, result.width, result.height) || at != end)
		return Parsed::refused;
	if (!std::isfinite(result.x) || !std::isfinite(result.y) || !std::isfinite(result.width) ||
		!std::isfinite(result.height))
		return Parsed::refused;
	box = result;
	return Parsed::value;
}

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio)
{
	using Value = svgpp::preserveAspectRatio_value;
	static const svgpp::preserveAspectRatio_grammar<Iterator> grammar;

	Value value;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!qi::parse(at, end, grammar, value) || at != end)
		return Parsed::refused;
	// The library counts from "none" and has xMidYMid, the initial value, as the fifth of the others; here it is zero.
	const std::int32_t position = value.align;
	if (value.align == Value::none)
		ratio = {1, 0};
	else if (value.align == Value::xMidYMid)
		ratio = {0, value.slice};
	else
		ratio = {position < Value::xMidYMid ? position + 1 : position, value.slice};
	return Parsed::value;
}

bool NextDeclaration(std::string_view& rest, std::string_view& name, std::string_view& value)
{
	const Iterator end = rest.data() + rest.size();
	const svgpp::css_style_iterator<Iterator> declaration(rest.data(), end);
	if (declaration.eof())
		return false;
	name = {declaration->first.begin(), declaration->first.size()};
	value = {declaration->second.begin(), declaration->second.size()};
	rest.remove_prefix(static_cast<std::size_t>(declaration->second.end() - rest.data()));
	return true;
}
} // namespace orvan::grammar::library
