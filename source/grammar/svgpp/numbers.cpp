// SPDX-License-Identifier: MIT
// The library's assertions would end the process over bytes that its grammars then refuse anyway. They are switched off
// before anything of Boost is seen.
#define BOOST_DISABLE_ASSERTS

#include "shared/text_checks.h"
#include "svgpp/library.h"
#include "svgpp/library_keywords.h"

#include <svgpp/parser/detail/parse_list_iterator.hpp>
#include <svgpp/parser/external_function/parse_misc_impl.hpp>
#include <svgpp/parser/grammar/length.hpp>

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
			return {number, LengthUnit::number};
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
	// The grammar of lengths in declarations knows no percentages; the one of percentages and lengths is what the
	// library itself takes for properties.
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
} // namespace orvan::grammar::library
