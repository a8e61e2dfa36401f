// SPDX-License-Identifier: MIT
/// The module: its descriptor, and what it registers.
#include "context.h"
#include "orvan/module.h"
#include "svg_render_target.h"

ORVAN_DEFINE_MODULE();

namespace orvan::cairo
{
namespace
{

using Kind = RegistrationEntry::Kind;

constexpr const char* kHeaders[] = {"svg_render_target"};
constexpr FrameworkDeclaration kFrameworks[] = {
	{"net.orvan.svg.render.framework", FrameworkDeclaration::Role::defined, kHeaders, std::size(kHeaders)},
	{"net.orvan.svg.framework", FrameworkDeclaration::Role::used, nullptr, 0},
	{"net.orvan.core.framework", FrameworkDeclaration::Role::used, nullptr, 0},
};
/// The context under two ids: the one that every renderer registers, and its own.
constexpr ClassDeclaration Declare(const char* id) noexcept
{
	return DeclareClass<Context, Implements<SVGContextInterface, Context>,
						Implements<SVGRenderTargetInterface, Context>>(id);
}

constexpr ClassDeclaration kContext = Declare(kSVGContextClass);
constexpr ClassDeclaration kOwnContext = Declare(kSVGCairoContextClass);

[[gnu::init_priority(1001)]] const RegistrationEntry entries[] = {
	{Kind::unit, "register"},
	{Kind::interface, SVGRenderTargetInterface::kId, &kInterfaceDeclaration<SVGRenderTargetInterface>},
	{Kind::referenceType, DataTypeTraits<SVGRenderTargetRef>::kName, &kReferenceDeclaration<SVGRenderTargetInterface>},
	{Kind::module, "net.orvan.svg.cairo"},
	{Kind::framework, kFrameworks[0].id, &kFrameworks[0]},
	{Kind::framework, kFrameworks[1].id, &kFrameworks[1]},
	{Kind::framework, kFrameworks[2].id, &kFrameworks[2]},
	{Kind::classImplementation, kSVGCairoContextClass, &kOwnContext},
	{Kind::classImplementation, kSVGContextClass, &kContext},
};

} // namespace
} // namespace orvan::cairo
