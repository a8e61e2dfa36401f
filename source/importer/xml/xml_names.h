// SPDX-License-Identifier: MIT
/// The namespaces that the importers know.
#pragma once

#include <string_view>

namespace orvan::svg
{

inline constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
inline constexpr std::string_view kXlinkNamespace = "http://www.w3.org/1999/xlink";

} // namespace orvan::svg
