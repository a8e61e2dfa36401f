// SPDX-License-Identifier: MIT
// The library's assertions would end the process over bytes that its grammars then refuse anyway. They are switched off
// before anything of Boost is seen.
#define BOOST_DISABLE_ASSERTS

#include "shared/text_checks.h"
#include "svgpp/library.h"
#include "svgpp/library_keywords.h"

#include <svgpp/factory/color.hpp>
#include <svgpp/factory/icc_color_stub.hpp>
#include <svgpp/parser/grammar/color_optional_icc_color.hpp>
#include <svgpp/parser/grammar/iri.hpp>

#include <algorithm>
#include <string>

namespace orvan::grammar::library
{
namespace
{
namespace qi = boost::spirit::qi;
namespace phoenix = boost::phoenix;
namespace value = svgpp::tag::value;

using Iterator = const char*;
using AttributeSource = svgpp::tag::source::attribute;

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

} // namespace

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
} // namespace orvan::grammar::library
