// SPDX-License-Identifier: MIT
/// An interface that several modules bring.
#pragma once

#include "orvan/module.h"

namespace orvan
{

class PenInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.test.interface.pen";
	static constexpr const char* kName = "orvan.PenInterface";
	static constexpr int kSlotCount = 1;

	/// The name of the module that the pen is from.
	ORVAN_METHOD(1, Result<String>, GetMaker, ())
};
using PenRef = Ref<PenInterface>;

ORVAN_DATA_TYPE(PenRef, "orvan::PenRef", "orvan::PenRef");

} // namespace orvan
