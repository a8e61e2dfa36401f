// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "json_writer.h"
#include "modules.h"
#include "orvan/host/module_loader.h"

#include <memory>
#include <span>

namespace orvan::program
{
namespace
{
using Kind = RegistrationEntry::Kind;

/// An entry in the form in which both outputs want it: a few single values, and at most one list.
struct EntryDescription
{
	std::string_view kind;
	std::vector<std::pair<std::string_view, std::string>> details;
	std::string_view listName;
	std::vector<std::string> list;
};

void DescribeInterface(const InterfaceDeclaration& declaration, EntryDescription& description)
{
	// The names come in the order of their slots, which is what a caller depends on.
	description.details = {{"name", declaration.name}, {"base", declaration.baseId}};
	description.listName = "methods";
	description.list.assign(declaration.methodNames, declaration.methodNames + declaration.slotCount);
}

void DescribeClass(const ClassDeclaration& declaration, EntryDescription& description)
{
	// A class may be declared by one module for another to implement.
	if (declaration.construct == nullptr)
		description.details = {{"implementation", "none"}};
	description.listName = "interfaces";
	for (const InterfaceBinding& binding : std::span(declaration.bindings, std::size_t(declaration.bindingCount)))
		description.list.emplace_back(binding.interfaceId);
}

void DescribeFramework(const FrameworkDeclaration& declaration, EntryDescription& description)
{
	const bool isDefined = declaration.role == FrameworkDeclaration::Role::defined;
	description.details = {{"role", isDefined ? "defined" : "used"}};
	description.listName = "headers";
	description.list.assign(declaration.headers, declaration.headers + declaration.headerCount);
}

/// Units, modules and reference types have no more to say than their names.
EntryDescription Describe(const RegistrationEntry& entry)
{
	EntryDescription description;
	switch (entry.GetKind())
	{
	case Kind::unit:
		description.kind = "unit";
		break;
	case Kind::interface:
		description.kind = "interface";
		DescribeInterface(entry.GetDeclaration<InterfaceDeclaration>(), description);
		break;
	case Kind::referenceType:
		description.kind = "reference type";
		break;
	case Kind::module:
		description.kind = "module";
		break;
	case Kind::framework:
		description.kind = "framework";
		DescribeFramework(entry.GetDeclaration<FrameworkDeclaration>(), description);
		break;
	case Kind::classImplementation:
		description.kind = "class";
		DescribeClass(entry.GetDeclaration<ClassDeclaration>(), description);
		break;
	case Kind::dataType:
		description.kind = "data type";
		description.details = {{"name", entry.GetDeclaration<DataTypeDeclaration>().name}};
		break;
	case Kind::use:
	{
		const auto& use = entry.GetDeclaration<UseDeclaration>();
		description.kind = "use";
		description.details = {{"unit", use.unit}, {"declaration", use.declaration}, {"header", use.header}};
		break;
	}
	}
	return description;
}

/// Calls `handle` for each entry of a module, in registration order.
template <typename Handler>
void ForEachEntry(const Module& module, Handler handle)
{
	for (const RegistrationEntry* entry = module.GetFirstRegistration(); entry != nullptr; entry = entry->GetNext())
		handle(*entry, Describe(*entry), module.IsRegistered(*entry));
}

/// Prints an entry a line, with its list indented below.
int PrintForPeople()
{
	for (const Module* module : Module::GetLoaded())
	{
		Print(module->GetId() + " (" + module->GetPath() + ")\n");
		ForEachEntry(*module,
					 [](const RegistrationEntry& entry, const EntryDescription& description, bool isRegistered)
					 {
						 Print("  " + std::string(description.kind) + ' ' + entry.GetName());
						 for (const auto& [name, value] : description.details)
							 Print("  " + std::string(name) + '=' + value);
						 Print(isRegistered ? "\n" : "  (not registered)\n");
						 std::size_t slot = 0;
						 for (const std::string& item : description.list)
						 {
							 slot++;
							 const bool isSlot = entry.GetKind() == Kind::interface;
							 Print("    " + (isSlot ? std::to_string(slot) + ' ' : std::string()) + item + '\n');
						 }
					 });
	}
	return 0;
}

/// Prints one object with the modules in the order of their loading.
int PrintAsJson()
{
	ConsoleOutput console;
	JsonWriter json(console);
	json.BeginObject();
	json.NewLine(1);
	json.Key("modules");
	json.BeginArray();
	for (const Module* module : Module::GetLoaded())
	{
		json.NewLine(2);
		json.BeginObject();
		json.Member("id", std::string_view(module->GetId()));
		json.Member("file", std::string_view(module->GetPath()));
		json.Key("entries");
		json.BeginArray();
		ForEachEntry(*module,
					 [&json](const RegistrationEntry& entry, const EntryDescription& description, bool isRegistered)
					 {
						 json.NewLine(3);
						 json.BeginObject();
						 json.Member("kind", description.kind);
						 json.Member("id", entry.GetName());
						 for (const auto& [name, value] : description.details)
							 json.Member(name, std::string_view(value));
						 // What is as it should be is not said.
						 if (!isRegistered)
							 json.Member("registered", false);
						 if (!description.listName.empty())
						 {
							 json.Key(description.listName);
							 json.BeginArray();
							 for (const std::string& item : description.list)
								 json.Value(std::string_view(item));
							 json.EndArray();
						 }
						 json.EndObject();
					 });
		json.EndArray();
		json.EndObject();
	}
	json.EndArray();
	json.NewLine(0);
	json.EndObject();
	json.Finish();
	return 0;
}
} // namespace

void AddRegistryCommand(CommandLine& commandLine)
{
	const auto asJson = std::make_shared<bool>(false);
	commandLine
		.AddCommand("registry", "Print what the modules publish, in registration order",
					[asJson](Modules& modules)
					{
						modules.LoadOtherModules();
						return *asJson ? PrintAsJson() : PrintForPeople();
					})
		.AddFlag("--json", "Print JSON", *asJson);
}

} // namespace orvan::program
