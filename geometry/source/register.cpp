// SPDX-License-Identifier: MIT
/// The module: its descriptor, and what it registers.
#include "geometry.h"
#include "orvan/module.h"
#include "outline_object.h"

ORVAN_DEFINE_MODULE();

namespace orvan::geometry
{
namespace
{

using Kind = RegistrationEntry::Kind;

constexpr const char* kHeaders[] = {"svg_geometry"};
constexpr FrameworkDeclaration kFrameworks[] = {
	{"net.orvan.svg.geometry.framework", FrameworkDeclaration::Role::defined, kHeaders, std::size(kHeaders)},
	{"net.orvan.svg.framework", FrameworkDeclaration::Role::used, nullptr, 0},
	{"net.orvan.core.framework", FrameworkDeclaration::Role::used, nullptr, 0},
};

constexpr ClassDeclaration kGeometry =
	DeclareClass<Geometry, Implements<SVGGeometryInterface, Geometry>>(kSVGGeometryClass);
constexpr ClassDeclaration kOutline =
	DeclareClass<OutlineObject, Implements<SVGOutlineInterface, OutlineObject>>(kSVGOutlineClass);

[[gnu::init_priority(1001)]] const RegistrationEntry entries[] = {
	{Kind::unit, "register"},
	{Kind::interface, SVGGeometryInterface::kId, &kInterfaceDeclaration<SVGGeometryInterface>},
	{Kind::interface, SVGOutlineInterface::kId, &kInterfaceDeclaration<SVGOutlineInterface>},
	{Kind::referenceType, DataTypeTraits<SVGGeometryRef>::kName, &kReferenceDeclaration<SVGGeometryInterface>},
	{Kind::referenceType, DataTypeTraits<SVGOutlineRef>::kName, &kReferenceDeclaration<SVGOutlineInterface>},
	{Kind::module, "net.orvan.svg.geometry"},
	{Kind::framework, kFrameworks[0].id, &kFrameworks[0]},
	{Kind::framework, kFrameworks[1].id, &kFrameworks[1]},
	{Kind::framework, kFrameworks[2].id, &kFrameworks[2]},
	{Kind::classImplementation, kSVGGeometryClass, &kGeometry},
	{Kind::classImplementation, kSVGOutlineClass, &kOutline},
};

} // namespace
} // namespace orvan::geometry
