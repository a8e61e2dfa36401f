// SPDX-License-Identifier: MIT
/// Bringing a record up to date after an edit, without walking all of the tree again.
#pragma once

#include "drawing/scene.h"
#include "record.h"

#include <optional>

namespace orvan::geometry
{

/// Nodes that are other ones now: from `first` up to `end`.
struct PatchedNodes
{
	std::int32_t first;
	std::int32_t end;
};

/// Records an element with all below it anew, after something was set on it or it got other content. The nodes are as
/// many as before, and stand for the same elements. Nothing, and the record is as it was, where that does not do: what
/// the element is may show elsewhere as well, it was not drawn, or it is made up of other parts. After an error the
/// record is of no use.
Result<std::optional<PatchedNodes>> PatchRecord(drawing::Scene& scene, Record& record, ObjectBase* element) noexcept;

} // namespace orvan::geometry
