// SPDX-License-Identifier: MIT
/// Finding and opening the modules that the program works with.
#pragma once

#include <string>

namespace orvan::program
{

/// Opens every module ("*.so") in `folder`, or where that is empty in "../lib/orvan" beside the program's own folder:
/// first the SVG module, then the others by name. Throws `Failure` when the SVG module is missing or cannot be opened;
/// any other that cannot be opened is reported on standard error and left out.
void LoadModules(const std::string& folder);

} // namespace orvan::program
