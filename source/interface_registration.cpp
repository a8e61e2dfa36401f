// SPDX-License-Identifier: MIT
/// The interfaces that the SVG framework defines, and the data types of references to them.
#include "registration.h"
#include "vector_icon.h"

namespace orvan::svg
{
namespace
{

ORVAN_REGISTER(ORVAN_ORDER_INTERFACES, unitEntry)(Kind::unit, "interface_registration");

ORVAN_REGISTER(ORVAN_ORDER_INTERFACES, interfaceEntries)
[] = {
	kInterfaceDeclaration<SVGDocumentInterface>,
	kInterfaceDeclaration<SVGContextInterface>,
	kInterfaceDeclaration<SVGElementInterface>,
	kInterfaceDeclaration<SVGFitToViewboxInterface>,
	kInterfaceDeclaration<SVGRadiusInterface>,
	kInterfaceDeclaration<SVGPositionInterface>,
	kInterfaceDeclaration<SVGSizeInterface>,
	kInterfaceDeclaration<SVGSVGElementInterface>,
	kInterfaceDeclaration<SVGUseElementInterface>,
	kInterfaceDeclaration<SVGDefsElementInterface>,
	kInterfaceDeclaration<SVGSymbolElementInterface>,
	kInterfaceDeclaration<SVGGroupElementInterface>,
	kInterfaceDeclaration<SVGLinearGradientElementInterface>,
	kInterfaceDeclaration<SVGRadialGradientElementInterface>,
	kInterfaceDeclaration<SVGStopElementInterface>,
	kInterfaceDeclaration<SVGPathElementInterface>,
	kInterfaceDeclaration<SVGRectElementInterface>,
	kInterfaceDeclaration<SVGCircleElementInterface>,
	kInterfaceDeclaration<SVGLineElementInterface>,
	kInterfaceDeclaration<SVGTextElementInterface>,
	kInterfaceDeclaration<SVGMaskElementInterface>,
	kInterfaceDeclaration<SVGClipPathElementInterface>,
	kInterfaceDeclaration<VectorIconInterface>,
};

ORVAN_REGISTER(ORVAN_ORDER_INTERFACES, referenceEntries)
[] = {
	ReferenceEntry<VectorIconInterface>(),
	ReferenceEntry<SVGClipPathElementInterface>(),
	ReferenceEntry<SVGMaskElementInterface>(),
	ReferenceEntry<SVGTextElementInterface>(),
	ReferenceEntry<SVGLineElementInterface>(),
	ReferenceEntry<SVGCircleElementInterface>(),
	ReferenceEntry<SVGRectElementInterface>(),
	ReferenceEntry<SVGPathElementInterface>(),
	ReferenceEntry<SVGStopElementInterface>(),
	ReferenceEntry<SVGRadialGradientElementInterface>(),
	ReferenceEntry<SVGLinearGradientElementInterface>(),
	ReferenceEntry<SVGGroupElementInterface>(),
	ReferenceEntry<SVGSymbolElementInterface>(),
	ReferenceEntry<SVGDefsElementInterface>(),
	ReferenceEntry<SVGUseElementInterface>(),
	ReferenceEntry<SVGSVGElementInterface>(),
	ReferenceEntry<SVGElementInterface>(),
	ReferenceEntry<SVGSizeInterface>(),
	ReferenceEntry<SVGPositionInterface>(),
	ReferenceEntry<SVGRadiusInterface>(),
	ReferenceEntry<SVGFitToViewboxInterface>(),
	ReferenceEntry<SVGContextInterface>(),
	ReferenceEntry<SVGDocumentInterface>(),
};

} // namespace
} // namespace orvan::svg
