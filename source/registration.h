// SPDX-License-Identifier: MIT
/// The order in which the units of the module register, whatever order they are linked in.
#pragma once

#include "orvan/module.h"

namespace orvan::svg
{

// Priorities of static initialisation; the lower ones come first.
#define ORVAN_ORDER_INTERFACES 1001
#define ORVAN_ORDER_MODULE 1002
#define ORVAN_ORDER_DOCUMENT 1003
#define ORVAN_ORDER_ELEMENTS 1004
#define ORVAN_ORDER_IMPORTER 1005
#define ORVAN_ORDER_ICON 1006
#define ORVAN_ORDER_COMPLETE 1007 // What the complete import adds, after all that was there before.

/// One registration of a unit; `order` is the unit's from above.
#define ORVAN_REGISTER(order, name) [[gnu::init_priority(order)]] const RegistrationEntry name

/// The registrations of all that a list holds; `Entries` is a class whose members are the entries.
#define ORVAN_REGISTER_ALL(order, Entries, name) [[gnu::init_priority(order)]] const Entries name

using Kind = RegistrationEntry::Kind;

/// The registration of a value type, and of an interface's reference type.
template <typename T>
RegistrationEntry DataTypeEntry() noexcept
{
	return {Kind::dataType, DataTypeTraits<T>::kId, &kDataTypeDeclaration<T>};
}

template <typename I>
RegistrationEntry ReferenceEntry() noexcept
{
	return {Kind::referenceType, DataTypeTraits<Ref<I>>::kName, &kReferenceDeclaration<I>};
}

} // namespace orvan::svg
