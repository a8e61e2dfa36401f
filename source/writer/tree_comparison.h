// SPDX-License-Identifier: MIT
/// Telling where a tree that was saved and loaded again differs from the one that was meant.
#pragma once

#include "writer/tree_writer.h"

namespace orvan::svg
{

/// Compares the tree that was written with one that was loaded. Properties that a style sheet may have changed are
/// added to `forced`, to be tried again with more weight; the result tells whether there were any. Throws a `SaveError`
/// for any other difference, and where more weight has not helped.
bool FindCascadeDifferences(const WriteRequest& saved, const ElementBase& loaded, ForcedProperties& forced);

} // namespace orvan::svg
