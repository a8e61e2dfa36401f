// SPDX-License-Identifier: MIT
/// Following an icon's file.
#pragma once

#include "vector_icon.h"

#include <functional>

namespace orvan::program
{

/// Lets the icon follow its file until the process is interrupted (SIGINT, SIGTERM), and calls `onReload` after each
/// reload. Throws `Failure` when the file cannot be watched.
void WatchIcon(const VectorIconRef& icon, const std::function<void()>& onReload);

} // namespace orvan::program
