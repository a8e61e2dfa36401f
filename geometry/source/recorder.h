// SPDX-License-Identifier: MIT
/// Writing a tree down: a walk with a sink that keeps everything it is told.
#pragma once

#include "drawing/scene.h"
#include "record.h"

namespace orvan::geometry
{

/// Whether what stands in masks and patterns is recorded, below what they are used by.
enum class Contents : std::uint8_t
{
	left,
	recorded,
};

/// Records the picture of a document: everything that is drawn when its root is.
Result<Record> RecordPicture(drawing::Scene& scene, Contents contents) noexcept;

/// Adds what is drawn nowhere in place, behind the picture.
Result<void> RecordDefinitions(drawing::Scene& scene, Record& record) noexcept;

} // namespace orvan::geometry
