// SPDX-License-Identifier: MIT
#include "grammar.h"

#include <svgpp/policy/error.hpp>

namespace orvan::grammar
{
void RaiseInvalidValue(const char* name, std::string_view value)
{
	throw svgpp::invalid_value_error<char>(name, value);
}
} // namespace orvan::grammar
