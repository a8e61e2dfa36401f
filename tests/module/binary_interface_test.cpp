// SPDX-License-Identifier: MIT
/// The binary interface as numbers. What differs here breaks modules that were built before: see `AbiVersion` for what
/// a change asks for. All of it is checked while this is compiled; that the loaded module has the slots that the
/// headers declare, by their names, is the registration's test.
#include "orvan/diagnostics.h"
#include "orvan/file_monitor.h"
#include "orvan/hash_map.h"
#include "orvan/hierarchy.h"
#include "orvan/module.h"
#include "svg_edit.h"
#include "svg_geometry.h"
#include "svg_source.h"
#include "vector_icon_theme.h"

#include <cstddef>

namespace orvan
{
namespace
{

static_assert(kHostAbiVersion == AbiVersion{2, 1});

/// Size and alignment of a type that crosses the border between modules.
template <typename T, std::size_t size, std::size_t alignment = 8>
constexpr bool HasLayout() noexcept
{
	static_assert(sizeof(T) == size);
	static_assert(alignof(T) == alignment);
	return true;
}

// Values.
static_assert(HasLayout<String, 8>() && HasLayout<Url, 8>() && HasLayout<Error, 8>() &&
			  HasLayout<BaseArray<int>, 24>());
static_assert(HasLayout<DataDictionary, 8>() && HasLayout<Data, 64>() && Data::kInlineSize == 56);
static_assert(HasLayout<StringMap<int>, 96>() && HasLayout<StringMap<int>::Entry, 32>());
static_assert(HasLayout<Vector2d, 16>() && HasLayout<Matrix2d, 48>() && HasLayout<Color, 24>());
static_assert(HasLayout<Ref<ObjectInterface>, 16>() && HasLayout<WeakRef, 8>() && HasLayout<Result<void>, 8>());
static_assert(HasLayout<FileStamp, 48>() && HasLayout<FileWatch, 8>() && HasLayout<FileWatchOptions, 16>());
static_assert(HasLayout<FormatArgument, 32>() && HasLayout<DocumentPosition, 48>());

// What the host makes and modules read.
static_assert(HasLayout<ObjectBase, 16>() && HasLayout<MethodTable, 24>() && HasLayout<ClassInfo, 224>());
static_assert(offsetof(ClassInfo, liveObjects) == 16 && offsetof(ClassInfo, tables) == 32);
static_assert(HasLayout<DataType, 40>() && offsetof(DataType, operations) == 8 && offsetof(DataType, isTrivial) == 32);
static_assert(HasLayout<DictionaryBlock, 24, 4>() && HasLayout<DictionaryBlock::Entry, 16>());

// What modules make and the host reads.
static_assert(HasLayout<ModuleDescriptor, 40>() && offsetof(ModuleDescriptor, abiVersion) == 8);
static_assert(offsetof(ModuleDescriptor, hostServices) == 16 && offsetof(ModuleDescriptor, first) == 24);
static_assert(HasLayout<RegistrationEntry, 40>() && HasLayout<InterfaceDeclaration, 40>());
static_assert(HasLayout<DataTypeDeclaration, 24>() && HasLayout<FrameworkDeclaration, 32>());
static_assert(HasLayout<UseDeclaration, 24>() && HasLayout<InterfaceBinding, 24>());
static_assert(HasLayout<ClassDeclaration, 80>() && offsetof(ClassDeclaration, bindings) == 64);
static_assert(HasLayout<DataTypeOperations, 96>() && offsetof(DataTypeOperations, construct) == 16 &&
			  offsetof(DataTypeOperations, array) == 88);

// The services: the first and last of each group, and the end.
static_assert(offsetof(HostServices, allocate) == 8 && offsetof(HostServices, endBulk) == 40);
static_assert(offsetof(HostServices, outOfMemory) == 48 && offsetof(HostServices, debugStop) == 80);
static_assert(offsetof(HostServices, findClass) == 88 && offsetof(HostServices, destroyObject) == 120);
static_assert(offsetof(HostServices, acquireWeak) == 128 && offsetof(HostServices, dictionaryRelease) == 168);
static_assert(offsetof(HostServices, detectUrl) == 176 && offsetof(HostServices, unwatchFile) == 224);
static_assert(offsetof(HostServices, parseFloat) == 232 && offsetof(HostServices, dictionaryRemove) == 240);
static_assert(offsetof(HostServices, retryPostponed) == 272 && offsetof(HostServices, replaceFile) == 280);
static_assert(sizeof(HostServices) == 288);

// Slots.
static_assert(ObjectInterface::kSlotCount == 0 && HierarchyObjectInterface::kSlotCount == 6);
static_assert(SVGDocumentInterface::kSlotCount == 6 && SVGContextInterface::kSlotCount == 8);
static_assert(SVGElementInterface::kSlotCount == 54 && SVGFitToViewboxInterface::kSlotCount == 3);
static_assert(SVGRadiusInterface::kSlotCount == 6 && SVGPositionInterface::kSlotCount == 6);
static_assert(SVGSizeInterface::kSlotCount == 6 && SVGSVGElementInterface::kSlotCount == 2);
static_assert(SVGUseElementInterface::kSlotCount == 4 && SVGLinearGradientElementInterface::kSlotCount == 1);
static_assert(SVGRadialGradientElementInterface::kSlotCount == 1 && SVGStopElementInterface::kSlotCount == 3);
static_assert(SVGPathElementInterface::kSlotCount == 6 && SVGLineElementInterface::kSlotCount == 12);
static_assert(SVGTextElementInterface::kSlotCount == 10 && VectorIconInterface::kSlotCount == 8);
static_assert(SVGElementEditInterface::kSlotCount == 11 && SVGPathEditInterface::kSlotCount == 5);
static_assert(SVGUseEditInterface::kSlotCount == 2 && SVGDocumentEditInterface::kSlotCount == 14);
static_assert(VectorIconThemeInterface::kSlotCount == 8);
static_assert(SVGOutlineInterface::kSlotCount == 12 && SVGGeometryInterface::kSlotCount == 12);
static_assert(SVGDocumentSourceInterface::kSlotCount == 17);
static_assert(HasLayout<SVGChange, 48>() && HasLayout<SVGPathView, 16>() && SVGPathView::kRun == 32);

} // namespace
} // namespace orvan
