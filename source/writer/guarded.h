// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/result.h"

#include <exception>
#include <new>

namespace orvan::svg
{

/// Runs what may throw. Memory that runs out is that error; anything else, a `SaveError` for example, an illegal
/// argument.
template <typename Task>
auto Guarded(Task task) noexcept -> decltype(task())
{
	try
	{
		return task();
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
	catch (const std::exception& error)
	{
		return IllegalArgumentError("@", error.what());
	}
}

} // namespace orvan::svg
