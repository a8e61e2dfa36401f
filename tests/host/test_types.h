// SPDX-License-Identifier: MIT
/// Data types of the tests.
#pragma once

#include "orvan/data_type.h"

namespace orvan
{

struct LargeValue
{
	Float numbers[8] = {};
};

struct UnregisteredValue
{
};

ORVAN_DATA_TYPE(LargeValue, "net.orvan.test.Large", "orvan::LargeValue");
ORVAN_DATA_TYPE(UnregisteredValue, "net.orvan.test.Unregistered", "orvan::UnregisteredValue");

void RegisterTestTypes();

} // namespace orvan
