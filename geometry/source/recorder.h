// SPDX-License-Identifier: MIT
/// Writing a tree down: a walk with a sink that keeps everything it is told.
#pragma once

#include "drawing/scene.h"
#include "record.h"

namespace orvan::geometry
{

/// Records the picture of a document: everything that is drawn when its root is.
Result<Record> RecordPicture(drawing::Scene& scene) noexcept;

/// Adds what is drawn nowhere in place, behind the picture.
Result<void> RecordDefinitions(drawing::Scene& scene, Record& record) noexcept;

} // namespace orvan::geometry
