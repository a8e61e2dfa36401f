// SPDX-License-Identifier: MIT
/// Icons in the colours of their surroundings, and with more states than four.
///
///     const auto theme = Cast<VectorIconThemeInterface>(icon);
///     ORVAN_TRY(theme->SetCurrentColor({0.9, 0.9, 0.9}));
///     ORVAN_TRY(theme->SetStyleSheet(ORVAN_TRY(String::Create(".accent { fill: #3584e4 }"))));
///     ORVAN_TRY(theme->SetStateLayer(ORVAN_TRY(String::Create("State:Busy"))));
///
/// A theme is put over the tree that was loaded, without reading the file again, and over each tree that is loaded
/// later, reloads included. Taking it away, or putting another in its place, brings back what the attributes were
/// before. It changes attributes like a client does: observers are told, and a document with a history can undo it. It
/// is no edit of the file: what is saved is what the elements say without it, and with what clients changed besides.
///
/// Icons that are to be themed want the complete import (`SVGImportOptions::isComplete`): the plain one keeps neither
/// currentColor nor classes.
#pragma once

#include "vector_icon.h"

#include <cstdint>

namespace orvan
{

/// What icons implement beside `VectorIconInterface`.
class VectorIconThemeInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.vectoricontheme";
	static constexpr const char* kName = "orvan.VectorIconThemeInterface";
	static constexpr int kSlotCount = 8;

	/// Sets what currentColor stands for: the property `color` of the root, which all inherit that say nothing else.
	ORVAN_METHOD(1, Result<void>, SetCurrentColor, (const Color& color), color)
	/// Leaves to the file again what currentColor stands for.
	ORVAN_METHOD(2, Result<void>, ClearCurrentColor, ())
	/// Puts a style sheet over the tree, in the place of the one before; the empty text is none. Unlike
	/// `SVGImportOptions::styleSheet` it wins over everything that the file says, style attributes included. Selectors
	/// see types (polygons, polylines and ellipses as `path` and `circle`), ids, classes and the structure of the tree,
	/// and of attributes none. Properties that stand in the attribute dictionary count; transforms and paths do not,
	/// nor do `inherit`, `unset` and `initial` where they stand for saying nothing. What cannot be read is left out.
	ORVAN_METHOD(3, Result<void>, SetStyleSheet, (const String& styleSheet), styleSheet)
	/// The style sheet as it was set; initially empty.
	ORVAN_METHOD(4, String, GetStyleSheet, ())
	/// How many times a file, or bytes, were read into this icon, whatever came of it.
	ORVAN_METHOD(5, std::int64_t, GetLoadCount, ())

	/// The ids of the file's state layers, those that begin with "State:", in document order.
	ORVAN_METHOD(6, Result<BaseArray<String>>, GetStateLayers, ())
	/// Shows a state layer alone of all state layers, and does so again after a reload, until `SetState` or another
	/// call of this. Not found when the icon has no such layer; nothing changes then. `GetState` returns the layer's
	/// number when it is one of the four, and `uninitialized` otherwise.
	ORVAN_METHOD(7, Result<void>, SetStateLayer, (const String& id), id)
	/// The layer that was last set by `SetStateLayer`; empty when there is none, and after `SetState`.
	ORVAN_METHOD(8, String, GetStateLayer, ())
};
using VectorIconThemeRef = Ref<VectorIconThemeInterface>;

ORVAN_DATA_TYPE(VectorIconThemeRef, "orvan::VectorIconThemeRef", "orvan::VectorIconThemeRef");

} // namespace orvan
