// SPDX-License-Identifier: MIT
/// The module itself: its descriptor, its name and the frameworks that it defines and uses.
#include "registration.h"

ORVAN_DEFINE_MODULE();

namespace orvan::svg
{
namespace
{

constexpr const char* kHeaders[] = {"svg_types",    "svg_elements", "svg_base",          "vector_icon", "svg_import",
									"svg_complete", "svg_edit",     "vector_icon_theme", "svg_source"};

constexpr FrameworkDeclaration kFrameworks[] = {
	{"net.orvan.svg.framework", FrameworkDeclaration::Role::defined, kHeaders, std::size(kHeaders)},
	{"net.orvan.core.framework", FrameworkDeclaration::Role::used, nullptr, 0},
	{"net.orvan.misc.framework", FrameworkDeclaration::Role::used, nullptr, 0},
};

ORVAN_REGISTER(ORVAN_ORDER_MODULE, entries)
[] = {
	{Kind::unit, "register"}, {Kind::module, "net.orvan.svg"}, kFrameworks[0], kFrameworks[1], kFrameworks[2],
};

} // namespace
} // namespace orvan::svg
