// SPDX-License-Identifier: MIT
// The library's assertions would end the process over bytes that its grammars then refuse anyway. They are switched off
// before anything of Boost is seen.
#define BOOST_DISABLE_ASSERTS

#include "svgpp/library.h"

#include <svgpp/parser/css_style_iterator.hpp>
#include <svgpp/parser/grammar/preserveAspectRatio.hpp>

namespace orvan::grammar
{
namespace
{
namespace qi = boost::spirit::qi;

using Iterator = const char*;
} // namespace

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio)
{
	using Value = svgpp::preserveAspectRatio_value;
	static const svgpp::preserveAspectRatio_grammar<Iterator> grammar;

	Value value;
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!qi::parse(at, end, grammar, value) || at != end)
		return Parsed::refused;
	// The library counts from "none" and has xMidYMid, the initial value, as the fifth of the others.
	const std::int32_t position = value.align;
	const auto meetOrSlice = static_cast<MeetOrSlice>(value.slice);
	if (value.align == Value::none)
		ratio = {Align::none, MeetOrSlice::meet};
	else if (value.align == Value::xMidYMid)
		ratio = {Align::xMidYMid, meetOrSlice};
	else
		ratio = {static_cast<Align>(position < Value::xMidYMid ? position + 1 : position), meetOrSlice};
	return Parsed::value;
}

bool library::NextDeclaration(std::string_view& rest, std::string_view& name, std::string_view& value)
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
} // namespace orvan::grammar
