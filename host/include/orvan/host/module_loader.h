// SPDX-License-Identifier: MIT
/// For host programs: opening modules and looking at what they publish.
///
///     Result<Module*> module = Module::Load("/usr/lib/orvan/net.orvan.svg.so");
#pragma once

#include "orvan/module.h"

#include <string>
#include <vector>

namespace orvan
{

/// A module that is open. Loading and unloading must not overlap other use of the host.
class Module
{
public:
	Module(const Module&) = delete;

	/// Opens a module by its file. The ABI version is read from the file before any code of the module runs; then the
	/// module is mapped, gets the host's services, and its entries are registered in order. A class whose method tables
	/// cannot be had is reported as a warning and left out; any other failure withdraws everything and closes the file.
	/// The module stays open until `Unload`, or to the end of the process.
	static Result<Module*> Load(const std::string& path) noexcept;

	/// Withdraws the entries in reverse order and unmaps the module. Refused while objects of its classes, or values of
	/// its data types that need its code, are alive; the error says how many. On success `module` is gone.
	static Result<void> Unload(Module* module) noexcept;

	/// The open modules in the order of their loading.
	static const std::vector<Module*>& GetLoaded() noexcept;

	/// The id that the module gave itself, for example "net.orvan.svg".
	const std::string& GetId() const noexcept
	{
		return _id;
	}

	const std::string& GetPath() const noexcept
	{
		return _path;
	}

	/// The first registration; `RegistrationEntry::GetNext` leads on, in registration order.
	const RegistrationEntry* GetFirstRegistration() const noexcept
	{
		return _descriptor->first;
	}

	/// False for an entry that could not be registered, such as a class without method tables.
	bool IsRegistered(const RegistrationEntry& entry) const noexcept;

private:
	Module(std::string path, void* handle, ModuleDescriptor* descriptor);

	Result<void> RegisterAll() noexcept;
	Result<void> Register(const RegistrationEntry& entry) noexcept;
	Result<void> RegisterClass(const ClassDeclaration& declaration) noexcept;
	void WithdrawAll() noexcept;
	std::int64_t CountLive() const noexcept;

	std::string _path;
	std::string _id;
	void* _handle;
	ModuleDescriptor* _descriptor;
	std::vector<const RegistrationEntry*> _registered;
};

} // namespace orvan
