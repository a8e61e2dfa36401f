// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace orvan::program
{

/// The lines in which two texts differ, as "-" and "+" lines below a line that tells where: "@@ -12 +12 @@". For texts
/// that differ here and there. Long lines are cut to what is around the difference.
std::string DescribeDifference(std::string_view before, std::string_view after);

} // namespace orvan::program
