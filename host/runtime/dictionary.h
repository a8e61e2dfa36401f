// SPDX-License-Identifier: MIT
/// The half of `DataDictionary` that allocates and releases.
#pragma once

#include "orvan/data_dictionary.h"

namespace orvan::runtime
{

/// Makes room for a value of `type` under `key` and returns raw storage for it, which the caller must fill; the value
/// that was there is gone. Null, with nothing changed, when memory runs out. The block must not be shared.
void* DictionaryStore(DictionaryBlock** block, std::int32_t key, const DataType* type) noexcept;
/// Takes the entry of `key` out and releases its value; nothing when there is none. The block must not be shared.
void DictionaryRemove(DictionaryBlock* block, std::int32_t key) noexcept;
ErrorBlock* DictionaryClone(const DictionaryBlock* block, DictionaryBlock** result) noexcept;
void DictionaryRelease(DictionaryBlock* block) noexcept;

} // namespace orvan::runtime
