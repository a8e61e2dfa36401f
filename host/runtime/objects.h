// SPDX-License-Identifier: MIT
/// Making, copying and releasing objects, and weak references to them.
#pragma once

#include "orvan/object.h"

namespace orvan::runtime
{

ErrorBlock* CreateObject(ClassInfo* objectClass, ObjectBase** result) noexcept;
ErrorBlock* CloneObject(const ObjectBase* source, ObjectBase** result) noexcept;
void DestroyObject(ObjectBase* object) noexcept;

WeakBlock* AcquireWeak(ObjectBase* object) noexcept;
ObjectBase* LockWeak(WeakBlock* block) noexcept;
void ReleaseWeak(WeakBlock* block) noexcept;

} // namespace orvan::runtime
