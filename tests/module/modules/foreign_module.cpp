// SPDX-License-Identifier: MIT
/// A module for another version of the host. If any of its code ran, the environment would tell.
#include "orvan/module.h"

#include <cstdlib>

const orvan::HostServices* orvan::detail::g_hostServices = nullptr;
constinit orvan::ModuleDescriptor g_orvan{orvan::ModuleDescriptor::kMagic,
										  {orvan::kHostAbiVersion.major, orvan::kHostAbiVersion.minor + 41}};

namespace
{
[[maybe_unused]] const int hasRun = setenv("ORVAN_FOREIGN_MODULE_RAN", "yes", 1);
}
