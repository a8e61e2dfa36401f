// SPDX-License-Identifier: MIT
/// The registries: what is known under which id. Records are made at the first mention of an id and are never freed, so
/// that pointers to them can be kept across loading and unloading of modules.
#pragma once

#include "orvan/class_declaration.h"
#include "orvan/module.h"

#include <string_view>

namespace orvan::runtime
{

/// Registers the host's own data types, interfaces and headers; once.
void EnsureHostTypes() noexcept;

ClassInfo* FindClass(const char* id) noexcept;
const DataType* FindDataType(const char* id) noexcept;

/// Registers an interface id, so that classes can implement it. Modules that share a header may each register its
/// interfaces: an identical declaration counts beside the first, a different one is refused.
Result<void> AddInterface(const InterfaceDeclaration& declaration) noexcept;
void RemoveInterface(const InterfaceDeclaration& declaration) noexcept;

/// Gives a class its implementation: asks for a method table for each of its interfaces and has the class fill it.
///
/// A class that a framework declares without implementing it may have several implementations: the first is used, the
/// others wait in the order of their loading until it is withdrawn. Of any other class a second one is refused.
Result<void> AddClass(const ClassDeclaration& declaration) noexcept;
void RemoveClass(const ClassDeclaration& declaration) noexcept;

/// Whether a data type's id may be registered by several modules.
enum class Ownership
{
	single, ///< By the one that owns the type.
	shared, ///< By each that owns or implements the interface of a reference type: any of them can release references.
};

/// Registers a data type together with the type of its arrays. Refused when the id is taken, and for a layout that
/// differs from one that values may still be around of; nothing has changed then.
Result<void> AddDataType(const DataTypeDeclaration& declaration, Ownership ownership) noexcept;
void RemoveDataType(const DataTypeDeclaration& declaration) noexcept;

/// Notes that a framework's headers are provided, or no longer are.
Result<void> AddFramework(const FrameworkDeclaration& declaration) noexcept;
void RemoveFramework(const FrameworkDeclaration& declaration) noexcept;
bool HasHeader(std::string_view header) noexcept;

/// Number of live objects of a class, and of live values of a data type and its arrays, that need the code behind just
/// this declaration to be released.
std::int64_t CountLiveObjects(const ClassDeclaration& declaration) noexcept;
std::int64_t CountLiveValues(const DataTypeDeclaration& declaration) noexcept;

} // namespace orvan::runtime
