// SPDX-License-Identifier: MIT
/// For host programs: files in memory.
///
///     MemoryFiles::Publish("icons/lamp.svg", bytes);      // readable as "memory:icons/lamp.svg"
#pragma once

#include "orvan/result.h"

#include <string_view>

namespace orvan
{

/// Files that a host program keeps in memory, for example among its resources, and that `memory:` URLs designate.
/// Safe to use from any thread.
class MemoryFiles
{
public:
	/// Makes `bytes` readable as "memory:" + `name`, in place of what the name stood for. The bytes are not copied:
	/// they must stay until `Withdraw`, and beyond it until streams that are open on them are closed.
	static Result<void> Publish(std::string_view name, std::string_view bytes) noexcept;

	/// Takes a file back; nothing when there is none.
	static void Withdraw(std::string_view name) noexcept;
};

} // namespace orvan
