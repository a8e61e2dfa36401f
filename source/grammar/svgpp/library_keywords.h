// SPDX-License-Identifier: MIT
#pragma once

/// Keywords as the library's dictionary spells them.

#include <svgpp/detail/literal_values_dictionary.hpp>

#include <string_view>

namespace orvan::grammar::library
{
template <typename ValueTag>
std::string_view NameOf()
{
	const auto name = svgpp::detail::literal_values_dictionary<char>::get_name<ValueTag>();
	return {name.begin(), name.size()};
}

/// Whether the text is just this keyword, case and all.
template <typename ValueTag>
bool Is(std::string_view text)
{
	return text == NameOf<ValueTag>();
}
} // namespace orvan::grammar::library
