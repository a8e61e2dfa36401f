// SPDX-License-Identifier: MIT
/// The general entities that a document type declares, replaced where they are used.
///
///     <!DOCTYPE svg [ <!ENTITY ns "http://www.w3.org/2000/svg"> ]> <svg xmlns="&ns;"/>
///
/// becomes the same text with the name of the namespace in the place of "&ns;". In attribute values, quotes and "<" of
/// what is put in are written as references, so that they say what they say and end nothing. External entities are
/// never read, and parameter entities never used; references to what is not declared stay as they are.
#pragma once

#include "importer/text/position_map.h"
#include "orvan/array.h"
#include "orvan/result.h"

#include <cstddef>
#include <string_view>

namespace orvan::svg
{

/// What one reference may come to.
inline constexpr std::size_t kMaxEntitySize = std::size_t{64} << 10;
/// All references together may come to this many times the text's size.
inline constexpr std::size_t kMaxEntityGrowth = 10;
/// Entities that a document may declare.
inline constexpr std::size_t kMaxEntities = 4096;

/// Whether a text's document type declares entities.
bool DeclaresEntities(std::string_view text) noexcept;

/// Whether `ReplaceEntities` changes anything: entities are declared, or there are brackets within the document type.
bool NeedsReplacement(std::string_view text) noexcept;

/// The text with its references replaced, with blanks for the brackets in values and comments of its document type,
/// which the XML parser takes for others, and how places lead back to `text`. Fails for want of memory; throws an
/// `XmlError` for an entity that contains itself and for one that breaks a bound.
Result<BaseArray<char>> ReplaceEntities(std::string_view text, PositionMap& positions);

} // namespace orvan::svg
