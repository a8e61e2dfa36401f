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
	const std::uint64_t version = ORVAN_TRY(runtime::ReadAbiVersion(path));
	if (version != kHostAbiVersion)
	{
		return IllegalArgumentError("Module '@' was built against host ABI version @; this host has version @.",
									path.c_str(), version, kHostAbiVersion);
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

Result<void> Module::RegisterAll() noexcept
{
	for (const RegistrationEntry* entry = _descriptor->first; entry != nullptr; entry = entry->GetNext())
	{
		if (Result<void> registered = Register(*entry); registered.IsOk())
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

Result<void> Module::Register(const RegistrationEntry& entry) noexcept
{
	switch (entry.GetKind())
	{
	case Kind::interface:
		return runtime::AddInterface(entry.GetDeclaration<InterfaceDeclaration>());
	case Kind::referenceType:
	case Kind::dataType:
		return runtime::AddDataType(entry.GetDeclaration<DataTypeDeclaration>());
	case Kind::classImplementation:
		return runtime::AddClass(entry.GetDeclaration<ClassDeclaration>());
	case Kind::module:
		if (!_id.empty())
			return IllegalStateError("Module '@' names itself twice.", _path.c_str());
		for (const Module* other : Modules())
		{
			if (other->_id == entry.GetName())
				return IllegalStateError("A module '@' is already loaded.", entry.GetName());
		}
		_id = entry.GetName();
		return {};
	case Kind::framework:
	{
		const auto& framework = entry.GetDeclaration<FrameworkDeclaration>();
		for (int i = 0; i < framework.headerCount; i++)
			ORVAN_TRY(runtime::AddHeader(framework.headers[i]));
		return {};
	}
	case Kind::unit:
	case Kind::use:
		break;
	}
	return {};
}

void Module::WithdrawAll() noexcept
{
	for (; !_registered.empty(); _registered.pop_back())
	{
		const RegistrationEntry& entry = *_registered.back();
		switch (entry.GetKind())
		{
		case Kind::interface:
			runtime::RemoveInterface(entry.GetDeclaration<InterfaceDeclaration>());
			break;
		case Kind::referenceType:
		case Kind::dataType:
			runtime::RemoveDataType(entry.GetDeclaration<DataTypeDeclaration>());
			break;
		case Kind::classImplementation:
			runtime::RemoveClass(entry.GetDeclaration<ClassDeclaration>());
			break;
		case Kind::framework:
		{
			const auto& framework = entry.GetDeclaration<FrameworkDeclaration>();
			for (int i = framework.headerCount; i-- > 0;)
				runtime::RemoveHeader(framework.headers[i]);
			break;
		}
		case Kind::unit:
		case Kind::module:
		case Kind::use:
			break;
		}
	}
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
