// SPDX-License-Identifier: MIT
/// Saving: from a document's tree to the bytes of a file.
#pragma once

#include "svg_source.h"
#include "writer/saved_attributes.h"

#include <span>

namespace orvan::svg
{

/// What is saved.
struct SaveRequest
{
	const SVGElementRef& root;
	const DocumentSource* source; ///< Null when there is none.
	const SVGImportOptions& importOptions;
	const SVGSaveOptions& options;
	/// What lies over attributes and is not the file's business.
	std::span<const AttributeCover> covers = {};
	/// Elements whose "display" is not the file's business.
	std::span<const ElementBase* const> switched = {};
};

/// Whether the file is packed.
enum class Packing
{
	asSource,
	packed,
	unpacked,
};

/// The bytes of the document. Fails with the illegal-argument error when what was written would not be read again as
/// the same tree.
Result<BaseArray<char>> MakeSavedBytes(const SaveRequest& request, Packing packing) noexcept;

/// What the name of a file says about its packing.
Packing PackingFor(const Url& url) noexcept;

} // namespace orvan::svg
