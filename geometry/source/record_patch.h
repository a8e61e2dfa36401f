// SPDX-License-Identifier: MIT
/// Bringing a record up to date after an edit, without walking all of the tree again.
#pragma once

#include "drawing/scene.h"
#include "record.h"

#include <optional>

namespace orvan::geometry
{

/// An element that was edited: something was set on it, or it came, went or moved.
struct Edited
{
	SVGElementRef element;
	SVGElementRef parent;  ///< Of what went: where it stood.
	bool isPlaced = false; ///< It came, or moved.
};

/// Nodes that are other ones now: from `first` up to `end`.
struct PatchedNodes
{
	std::int32_t first;
	std::int32_t end;
};

/// Records an element with all below it anew where it stands now, or takes it out. Nothing where that does not do: what
/// the element is may show elsewhere as well, or nodes are free too far away. The record is of no use then, nor after
/// an error.
Result<std::optional<BaseArray<PatchedNodes>>> PatchRecord(drawing::Scene& scene, Record& record,
														   const Edited& edited) noexcept;

} // namespace orvan::geometry
