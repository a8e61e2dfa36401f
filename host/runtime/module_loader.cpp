// SPDX-License-Identifier: MIT
#include "orvan/host/module_loader.h"

#include "module_file.h"
#include "orvan/diagnostics.h"
#include "registry.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>

namespace orvan
{
namespace
{

std::vector<Module*>& Modules() noexcept
{
	static auto* modules = new std::vector<Module*>; // Never destroyed: modules stay open to the end.
	return *modules;
}

/// The file of an open module may be loaded again under another name; the mapping is the same then.
std::string CanonicalPath(const std::string& path)
{
	const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
	return resolved != nullptr ? resolved.get() : path;
}

using Kind = RegistrationEntry::Kind;

bool IsSame(std::string_view a, std::string_view b) noexcept
{
	return a == b;
}

/// What the registries do with the entries of one kind.
struct Registrar
{
	Kind kind;
	Result<void> (*add)(const RegistrationEntry& entry) noexcept;
	void (*remove)(const RegistrationEntry& entry) noexcept;
};

/// A registrar whose functions take the declaration of the entry.
template <typename Declaration, Result<void> (*add)(const Declaration&) noexcept,
		  void (*remove)(const Declaration&) noexcept>
constexpr Registrar Over(Kind kind) noexcept
{
	return {kind, [](const RegistrationEntry& entry) noexcept { return add(entry.GetDeclaration<Declaration>()); },
			[](const RegistrationEntry& entry) noexcept
			{
				remove(entry.GetDeclaration<Declaration>());
			}};
}

template <runtime::Ownership ownership>
Result<void> AddDataType(const DataTypeDeclaration& declaration) noexcept
{
	return runtime::AddDataType(declaration, ownership);
}

constexpr Registrar kRegistrars[] = {
	Over<InterfaceDeclaration, &runtime::AddInterface, &runtime::RemoveInterface>(Kind::interface),
	Over<DataTypeDeclaration, &AddDataType<runtime::Ownership::shared>, &runtime::RemoveDataType>(Kind::referenceType),
	Over<DataTypeDeclaration, &AddDataType<runtime::Ownership::single>, &runtime::RemoveDataType>(Kind::dataType),
	Over<ClassDeclaration, &runtime::AddClass, &runtime::RemoveClass>(Kind::classImplementation),
	Over<FrameworkDeclaration, &runtime::AddFramework, &runtime::RemoveFramework>(Kind::framework),
};

/// The others, units for example, have but a name.
constexpr Registrar kNoRegistrar = {Kind::unit, [](const RegistrationEntry&) noexcept { return Result<void>(); },
									[](const RegistrationEntry&) noexcept {
									}};

const Registrar& RegistrarOf(const RegistrationEntry& entry) noexcept
{
	const Registrar* found = std::find_if(std::begin(kRegistrars), std::end(kRegistrars),
										  [&entry](const Registrar& row) { return row.kind == entry.GetKind(); });
	return found != std::end(kRegistrars) ? *found : kNoRegistrar;
}

} // namespace

Module::Module(std::string path, void* handle, ModuleDescriptor* descriptor)
	: _path(std::move(path)), _handle(handle), _descriptor(descriptor)
{
}

Result<Module*> Module::Load(const std::string& givenPath) noexcept
{
	runtime::EnsureHostTypes();
	const std::string path = CanonicalPath(givenPath);
	for (const Module* module : Modules())
	{
		if (module->_path == path)
			return IllegalStateError("Module '@' is already loaded.", path.c_str());
	}
	const AbiVersion version = ORVAN_TRY(runtime::ReadAbiVersion(path));
	if (!CanLoad(kHostAbiVersion, version))
	{
		return IllegalArgumentError("Module '@' was built against host ABI version @.@; this host has version @.@.",
									path.c_str(), version.major, version.minor, kHostAbiVersion.major,
									kHostAbiVersion.minor);
	}
	void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
	if (handle == nullptr)
		return UnknownError("Module '@' cannot be loaded: @.", path.c_str(), static_cast<const char*>(dlerror()));
	auto* descriptor = static_cast<ModuleDescriptor*>(dlsym(handle, kModuleSymbol));
	std::unique_ptr<Module> module(new Module(path, handle, descriptor));
	*descriptor->hostServices = &Host();
	if (Result<void> registered = module->RegisterAll(); !registered.IsOk())
	{
		module->WithdrawAll();
		dlclose(handle);
		return registered.GetError();
	}
	Modules().push_back(module.get());
	return module.release();
}

Result<void> Module::Unload(Module* module) noexcept
{
	if (const std::int64_t live = module->CountLive(); live > 0)
	{
		return IllegalStateError("Module '@' cannot be unloaded: @ of its objects and values are alive.",
								 module->_id.c_str(), live);
	}
	ORVAN_TRY(module->CheckUsers());
	module->WithdrawAll();
	Modules().erase(std::find(Modules().begin(), Modules().end(), module));
	const std::unique_ptr<Module> owned(module);
	if (dlclose(module->_handle) != 0)
		return UnknownError("Module '@' cannot be closed: @.", module->_path.c_str(),
							static_cast<const char*>(dlerror()));
	return {};
}

const std::vector<Module*>& Module::GetLoaded() noexcept
{
	return Modules();
}

bool Module::IsRegistered(const RegistrationEntry& entry) const noexcept
{
	return std::find(_registered.begin(), _registered.end(), &entry) != _registered.end();
}

/// Takes the module's name over. Looked for before anything is registered: of a second copy of a module it is the name
/// that says what is wrong, not the first thing that both would register.
Result<void> Module::TakeName() noexcept
{
	for (const RegistrationEntry* entry = _descriptor->first; entry != nullptr; entry = entry->GetNext())
	{
		if (entry->GetKind() != Kind::module)
			continue;
		if (!_id.empty())
			return IllegalStateError("Module '@' names itself twice.", _path.c_str());
		for (const Module* other : Modules())
		{
			if (other->_id == entry->GetName())
			{
				return IllegalStateError("Module '@' is already loaded, from '@'.", entry->GetName(),
										 other->_path.c_str());
			}
		}
		_id = entry->GetName();
	}
	return {};
}

Result<void> Module::RegisterAll() noexcept
{
	ORVAN_TRY(TakeName());
	for (const RegistrationEntry* entry = _descriptor->first; entry != nullptr; entry = entry->GetNext())
	{
		if (Result<void> registered = RegistrarOf(*entry).add(*entry); registered.IsOk())
			_registered.push_back(entry);
		else if (entry->GetKind() == Kind::classImplementation &&
				 registered.GetError().GetClass() != ErrorClass::outOfMemory)
			WarningOutput("Class '@' is not available. @", entry->GetName(), registered.GetError());
		else
			return registered;
	}
	// What the units take from headers is resolved once everything is there that the module itself provides.
	for (const RegistrationEntry* entry : _registered)
	{
		if (entry->GetKind() != Kind::use)
			continue;
		const auto& use = entry->GetDeclaration<UseDeclaration>();
		if (!runtime::HasHeader(use.header))
		{
			return NotFoundError("Unit '@' uses '@' of header '@', which no loaded framework provides.", use.unit,
								 use.declaration, use.header);
		}
	}
	return {};
}

void Module::WithdrawAll() noexcept
{
	for (; !_registered.empty(); _registered.pop_back())
		RegistrarOf(*_registered.back()).remove(*_registered.back());
}

/// True when this module defines a framework of that name.
bool Module::Defines(const char* framework) const noexcept
{
	return Has<FrameworkDeclaration>(
		Kind::framework, [framework](const FrameworkDeclaration& declaration)
		{ return declaration.role == FrameworkDeclaration::Role::defined && IsSame(declaration.id, framework); });
}

/// True when this module uses the framework, or takes something from one of its headers.
bool Module::Uses(const FrameworkDeclaration& framework) const noexcept
{
	const auto isHeader = [&framework](const UseDeclaration& use)
	{
		return std::any_of(framework.headers, framework.headers + framework.headerCount,
						   [&use](const char* header) { return IsSame(header, use.header); });
	};
	return Has<UseDeclaration>(Kind::use, isHeader) ||
		   Has<FrameworkDeclaration>(Kind::framework,
									 [&framework](const FrameworkDeclaration& declaration) {
										 return declaration.role == FrameworkDeclaration::Role::used &&
												IsSame(declaration.id, framework.id);
									 });
}

/// Another loaded module that needs `framework` of this one, as nobody else defines it; null when there is none.
const Module* Module::FindUser(const FrameworkDeclaration& framework) const noexcept
{
	const Module* user = nullptr;
	for (const Module* other : Modules())
	{
		if (other == this)
			continue;
		if (other->Defines(framework.id))
			return nullptr;
		if (user == nullptr && other->Uses(framework))
			user = other;
	}
	return user;
}

/// An error when another loaded module is built on a framework of this one.
Result<void> Module::CheckUsers() const noexcept
{
	for (const RegistrationEntry* entry : _registered)
	{
		if (entry->GetKind() != Kind::framework)
			continue;
		const auto& framework = entry->GetDeclaration<FrameworkDeclaration>();
		const Module* user = framework.role == FrameworkDeclaration::Role::defined ? FindUser(framework) : nullptr;
		if (user != nullptr)
		{
			return IllegalStateError("Module '@' cannot be unloaded: module '@' uses its framework '@'.", _id.c_str(),
									 user->_id.c_str(), framework.id);
		}
	}
	return {};
}

std::int64_t Module::CountLive() const noexcept
{
	std::int64_t count = 0;
	for (const RegistrationEntry* entry : _registered)
	{
		if (entry->GetKind() == Kind::classImplementation)
			count += runtime::CountLiveObjects(entry->GetDeclaration<ClassDeclaration>());
		else if (entry->GetKind() == Kind::dataType || entry->GetKind() == Kind::referenceType)
			count += runtime::CountLiveValues(entry->GetDeclaration<DataTypeDeclaration>());
	}
	return count;
}

} // namespace orvan
