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

/// Registers an interface id, so that classes can implement it. False when another loaded module has registered it.
Result<void> AddInterface(const InterfaceDeclaration& declaration) noexcept;
void RemoveInterface(const InterfaceDeclaration& declaration) noexcept;

/// Gives a class its implementation: asks for a method table for each of its interfaces and has the class fill it.
Result<void> AddClass(const ClassDeclaration& declaration) noexcept;
void RemoveClass(const ClassDeclaration& declaration) noexcept;

/// Registers a data type together with the type of its arrays.
Result<void> AddDataType(const DataTypeDeclaration& declaration) noexcept;
void RemoveDataType(const DataTypeDeclaration& declaration) noexcept;

/// Notes that a framework's header is provided, or no longer is.
Result<void> AddHeader(std::string_view header) noexcept;
void RemoveHeader(std::string_view header) noexcept;
bool HasHeader(std::string_view header) noexcept;

/// Number of live objects of a class, and of live values of a data type and its arrays that need code to be released.
std::int64_t CountLiveObjects(const ClassDeclaration& declaration) noexcept;
std::int64_t CountLiveValues(const DataTypeDeclaration& declaration) noexcept;

} // namespace orvan::runtime
