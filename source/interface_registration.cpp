// SPDX-License-Identifier: MIT
/// The interfaces that the SVG framework defines, and the data types of references to them.
#include "elements/class_table.h"
#include "registration.h"
#include "svg_edit.h"
#include "svg_import.h"
#include "svg_source.h"
#include "vector_icon.h"
#include "vector_icon_theme.h"

#include <utility>

namespace orvan::svg
{
namespace
{

ORVAN_REGISTER(ORVAN_ORDER_INTERFACES, unitEntry)(Kind::unit, "interface_registration");

template <typename... Interfaces>
struct InterfaceEntries
{
	RegistrationEntry entries[sizeof...(Interfaces)] = {kInterfaceDeclaration<Interfaces>...};
};

template <typename... Interfaces>
struct ReferenceEntries
{
	RegistrationEntry entries[sizeof...(Interfaces)] = {ReferenceEntry<Interfaces>()...};
};

// The own interfaces of the element classes; but not that of row 0, which all elements share.

constexpr std::size_t kLastRow = ElementClasses::kCount - 1;

template <std::size_t... numbers>
InterfaceEntries<typename ElementClasses::Row<1 + numbers>::Interface...>
	OwnInterfaces(std::index_sequence<numbers...>);

template <std::size_t... numbers>
ReferenceEntries<typename ElementClasses::Row<kLastRow - numbers>::Interface...>
	OwnReferences(std::index_sequence<numbers...>);

using ElementInterfaceEntries = decltype(OwnInterfaces(std::make_index_sequence<kLastRow>()));
using ElementReferenceEntries = decltype(OwnReferences(std::make_index_sequence<kLastRow>()));

// Interfaces, from the general to the special.

using SharedInterfaceEntries =
	InterfaceEntries<SVGDocumentInterface, SVGContextInterface, SVGElementInterface, SVGFitToViewboxInterface,
					 SVGRadiusInterface, SVGPositionInterface, SVGSizeInterface>;

ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, SharedInterfaceEntries, sharedInterfaces);
ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, ElementInterfaceEntries, elementInterfaces);
ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, InterfaceEntries<VectorIconInterface>, iconInterface);

// What is published since then; new ones come at the end.

template <typename... Interfaces>
struct InterfaceList
{
	using Entries = InterfaceEntries<Interfaces...>;
	using References = ReferenceEntries<Interfaces...>;
};

using LaterInterfaces =
	InterfaceList<SVGDocumentImportInterface, SVGLinkInterface, SVGPatternElementInterface, SVGMarkerElementInterface,
				  SVGImageElementInterface, SVGSwitchElementInterface, SVGAnchorElementInterface,
				  SVGTextContentInterface, SVGTextPathElementInterface, SVGTextRunInterface, SVGFilterElementInterface,
				  SVGFilterPrimitiveInterface, SVGFilterPartInterface, SVGDescriptionInterface,
				  SVGForeignObjectElementInterface, SVGElementEditInterface, SVGPathEditInterface, SVGUseEditInterface,
				  SVGDocumentEditInterface, VectorIconThemeInterface, SVGDocumentSourceInterface>;

ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, LaterInterfaces::Entries, laterInterfaces);

// References to them, from the special to the general.

using SharedReferenceEntries =
	ReferenceEntries<SVGElementInterface, SVGSizeInterface, SVGPositionInterface, SVGRadiusInterface,
					 SVGFitToViewboxInterface, SVGContextInterface, SVGDocumentInterface>;

ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, ReferenceEntries<VectorIconInterface>, iconReference);
ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, ElementReferenceEntries, elementReferences);
ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, SharedReferenceEntries, sharedReferences);
ORVAN_REGISTER_ALL(ORVAN_ORDER_INTERFACES, LaterInterfaces::References, laterReferences);

} // namespace
} // namespace orvan::svg
