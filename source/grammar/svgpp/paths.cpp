// SPDX-License-Identifier: MIT
// The library's assertions would end the process over bytes that its grammars then refuse anyway. They are switched off
// before anything of Boost is seen.
#define BOOST_DISABLE_ASSERTS

#include "shared/path_context.h"
#include "shared/text_checks.h"
#include "shared/transform_context.h"
#include "svgpp/library.h"

#include <svgpp/parser/detail/parse_list_iterator.hpp>
#include <svgpp/parser/grammar/coordinate_pair.hpp>
#include <svgpp/parser/grammar/path_data.hpp>
#include <svgpp/parser/grammar/transform.hpp>
#include <svgpp/policy/transform_events.hpp>

#include <algorithm>
#include <cmath>

namespace orvan::grammar::library
{
namespace
{
namespace qi = boost::spirit::qi;
namespace phoenix = boost::phoenix;

using Iterator = const char*;

using TransformEvents = svgpp::policy::transform_events::forward_to_method<TransformAdapter>;

const char* SkipDigits(const char* at, const char* end)
{
	return std::find_if_not(at, end, IsDigit);
}

/// The number at `at`, if there is one, as written. No more than that is looked at: numbers may stand in a chain.
std::string_view NumberAt(const char* at, const char* end)
{
	const auto skip = [end](const char* where, std::string_view any)
	{
		return where != end && any.find(*where) != any.npos ? where + 1 : where;
	};
	const char* const integer = skip(at, "+-");
	const char* const fraction = skip(SkipDigits(integer, end), ".");
	const char* const exponent = skip(SkipDigits(fraction, end), "eE");
	const char* const after = SkipDigits(skip(exponent, "+-"), end);
	return {at, static_cast<std::size_t>(after - at)};
}
} // namespace

// Building a grammar takes longer than most values take to read, so each is built on first use and kept.

Parsed ParsePath(std::string_view text, PathSink& sink)
{
	using Grammar = svgpp::path_data_grammar<Iterator, PathAdapter, double, PathEvents>;
	static const Grammar grammar;

	if (HasRunawayExponent(text))
		return Parsed::refused;
	PathContext context(sink, &DeliverArc);
	PathAdapter adapter(context);
	Iterator at = text.data();
	const Iterator end = at + text.size();
	const bool isWhole =
		qi::phrase_parse(at, end, grammar(phoenix::ref(adapter)), Grammar::skipper_type()) && at == end;
	return isWhole && context.IsFinite() ? Parsed::value : Parsed::refused;
}

Parsed ParsePoints(std::string_view text, PathSink& sink)
{
	using Pair = std::pair<double, double>;
	using PairGrammar = svgpp::coordinate_pair_grammar<Iterator, double>;
	using Separator = svgpp::detail::comma_wsp_rule_no_skip<Iterator>;
	using Skipper = svgpp::detail::character_encoding_namespace::space_type;
	static const PairGrammar grammar;
	static const Separator separator;

	if (HasRunawayExponent(text))
		return Parsed::refused;
	svgpp::detail::parse_list_iterator<Pair, Iterator, PairGrammar, Separator, Skipper> pairs(
		text.data(), text.data() + text.size(), grammar, separator, svgpp::detail::character_encoding_namespace::space);
	bool isFirst = true;
	for (Pair pair; pairs.get_next(pair); isFirst = false)
	{
		if (!std::isfinite(pair.first) || !std::isfinite(pair.second))
			return Parsed::refused;
		if (isFirst)
			sink.MoveTo(pair.first, pair.second);
		else
			sink.LineTo(pair.first, pair.second);
	}
	if (pairs.error())
		return Parsed::refused;
	return isFirst ? Parsed::nothing : Parsed::value;
}

Parsed ParseTransform(std::string_view text, Matrix& matrix)
{
	using Grammar = svgpp::transform_grammar<Iterator, TransformAdapter, double, TransformEvents>;
	static const Grammar grammar;

	if (HasRunawayExponent(text))
		return Parsed::refused;
	TransformContext context;
	TransformAdapter adapter(context);
	Iterator at = text.data();
	const Iterator end = at + text.size();
	if (!qi::phrase_parse(at, end, grammar(phoenix::ref(adapter)), Grammar::skipper_type()) || at != end)
		return Parsed::refused;
	return DeliverMatrix(adapter, matrix);
}

bool ReadPathNumber(const char*& at, const char* end, double& number)
{
	static const qi::real_parser<double, svgpp::detail::svg_real_policies<double>> parser;
	return !HasRunawayExponent(NumberAt(at, end)) && qi::parse(at, end, parser, number);
}

bool ReadPointsNumber(const char*& at, const char* end, double& number)
{
	static const qi::real_parser<double, svgpp::detail::real_policies_without_inf_nan<double>> parser;
	return !HasRunawayExponent(NumberAt(at, end)) && qi::parse(at, end, parser, number);
}
} // namespace orvan::grammar::library
