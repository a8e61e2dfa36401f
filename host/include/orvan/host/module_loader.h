// SPDX-License-Identifier: MIT
/// For host programs: opening modules and looking at what they publish.
///
///     Result<Module*> module = Module::Load("/usr/lib/orvan/net.orvan.svg.so");
#pragma once

#include "orvan/module.h"

#include <algorithm>
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
	/// A module that is loaded already, from this file or a copy of it, is refused. The module stays open until
	/// `Unload`, or to the end of the process.
	///
	/// Two modules may register an identical interface, and the type of references to it; so each renderer brings the
	/// interfaces that renderers share. Where a framework leaves a class to others, as that of drawing contexts, the
	/// first module that implements it serves, and the next ones wait; a host that wants one of those makes its objects
	/// by a class id of the module's own.
	static Result<Module*> Load(const std::string& path) noexcept;

	/// Withdraws the entries in reverse order and unmaps the module. Refused while objects of its classes, or values of
	/// its data types that need its code, are alive, of which the error says how many; and while another loaded module
	/// uses a framework that only this one defines, which the error names. On success `module` is gone.
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

	Result<void> TakeName() noexcept;
	Result<void> RegisterAll() noexcept;
	void WithdrawAll() noexcept;
	std::int64_t CountLive() const noexcept;
	bool Defines(const char* framework) const noexcept;
	bool Uses(const FrameworkDeclaration& framework) const noexcept;
	const Module* FindUser(const FrameworkDeclaration& framework) const noexcept;
	Result<void> CheckUsers() const noexcept;

	/// True when one of the registered entries of a kind satisfies `predicate`.
	template <typename Declaration, typename Predicate>
	bool Has(RegistrationEntry::Kind kind, Predicate predicate) const noexcept
	{
		return std::any_of(_registered.begin(), _registered.end(),
						   [&](const RegistrationEntry* entry)
						   { return entry->GetKind() == kind && predicate(entry->GetDeclaration<Declaration>()); });
	}

	std::string _path;
	std::string _id;
	void* _handle;
	ModuleDescriptor* _descriptor;
	std::vector<const RegistrationEntry*> _registered;
};

} // namespace orvan
