// SPDX-License-Identifier: MIT
/// A small renderer that is built several times under different names: each brings the interface that such renderers
/// share, draws where no other does, and has a class id of its own. `ORVAN_FLAW` makes one that must be refused.
#include "orvan/module.h"
#include "pen.h"
#include "svg_base.h"

ORVAN_DEFINE_MODULE();

namespace orvan
{

#ifdef ORVAN_FLAW
/// Claims the id of a type that the SVG module owns.
struct FalsePaint
{
	std::int32_t value = 0;
};
ORVAN_DATA_TYPE(FalsePaint, "net.orvan.datatype.SVGPaint", "orvan::FalsePaint");
#endif

namespace
{

using Kind = RegistrationEntry::Kind;

class Pen : public ObjectBase
{
public:
	Result<String> GetMaker() const noexcept
	{
		return String::Create(ORVAN_NAME);
	}
};

constexpr const char* kHeaders[] = {"pen"};
constexpr FrameworkDeclaration kFrameworks[] = {
	{"net.orvan.test.pen.framework", FrameworkDeclaration::Role::defined, kHeaders, std::size(kHeaders)},
	{"net.orvan.svg.framework", FrameworkDeclaration::Role::used, nullptr, 0},
	// The host's, and one that each of these modules also defines: neither keeps another one loaded.
	{"net.orvan.core.framework", FrameworkDeclaration::Role::used, nullptr, 0},
	{"net.orvan.test.pen.framework", FrameworkDeclaration::Role::used, nullptr, 0},
};
constexpr ClassDeclaration kOwn = DeclareClass<Pen, Implements<PenInterface, Pen>>("net.orvan.test.class." ORVAN_NAME);
constexpr ClassDeclaration kContext = DeclareClass<Pen, Implements<PenInterface, Pen>>(kSVGContextClass);

const RegistrationEntry entries[] = {
	{Kind::unit, "pen_module"},
	{Kind::interface, PenInterface::kId, &kInterfaceDeclaration<PenInterface>},
	{Kind::referenceType, DataTypeTraits<PenRef>::kName, &kReferenceDeclaration<PenInterface>},
	{Kind::module, "net.orvan.test." ORVAN_NAME},
	kFrameworks[0],
	kFrameworks[1],
	kFrameworks[2],
	kFrameworks[3],
	kOwn,
	kContext,
#ifdef ORVAN_FLAW
	{Kind::dataType, "net.orvan.datatype.SVGPaint", &kDataTypeDeclaration<FalsePaint>},
#endif
};

} // namespace
} // namespace orvan
