// SPDX-License-Identifier: MIT
#include "documents.h"
#include "svg_edit.h"
#include "svg_source.h"

#include "values.h"

#include <pybind11/stl.h>
#include <utility>
#include <vector>

namespace orvan::python
{
namespace
{

using Shared = std::shared_ptr<SharedDocument>;

constexpr std::array<const char*, 5> kOutcomes = {"empty", "loaded", "loaded with findings", "refused",
												  "no svg element"};

/// What became of a load, as a dictionary that the package makes a class of.
py::dict ToDictionary(const SVGImportReport& report)
{
	py::list findings;
	for (const SVGImportFinding& finding : report.findings)
	{
		py::dict entry;
		entry["level"] = finding.level == SVGFindingLevel::critical ? "critical" : "warning";
		entry["line"] = finding.line;
		entry["column"] = finding.column;
		entry["tag"] = ToPython(finding.elementTag);
		entry["id"] = ToPython(finding.elementId);
		entry["attribute"] = ToPython(finding.attribute);
		entry["message"] = ToPython(finding.message);
		findings.append(entry);
	}
	py::dict result;
	result["outcome"] = kOutcomes[static_cast<std::size_t>(report.outcome)];
	result["findings"] = findings;
	result["finding_count"] = report.findingCount;
	return result;
}

SVGImportOptions MakeOptions(bool isComplete, bool isTolerant, bool keepsSource, std::string_view styleSheet)
{
	SVGImportOptions options;
	options.isComplete = isComplete;
	options.isTolerant = isTolerant;
	options.keepsSource = keepsSource;
	options.styleSheet = ToString(styleSheet);
	return options;
}

/// Loads into or saves a document while other threads of the interpreter go on.
template <typename Run>
void RunAlone(SharedDocument& shared, const Run& run)
{
	const DocumentLock lock(shared);
	Result<void> result;
	{
		const LongCall others;
		const CollectedDiagnostics silence; // The report says it all.
		result = run();
	}
	Unwrap(std::move(result));
}

/// All elements at and below one, in document order. Trees may be deep, so it does not recurse.
py::list Collect(const Shared& shared, const SVGElementRef& root)
{
	py::list elements;
	std::vector<HierarchyObjectRef> open = {Cast<HierarchyObjectInterface>(root)};
	while (!open.empty())
	{
		const HierarchyObjectRef at = std::move(open.back());
		open.pop_back();
		if (!at)
			continue;
		if (const auto element = Cast<SVGElementInterface>(at))
			elements.append(Wrap(shared, element));
		if (at->GetObject() != root->GetObject())
			open.push_back(at->GetNextSibling());
		open.push_back(at->GetFirstChild());
	}
	return elements;
}

/// How a document is made and gets its content.
void DefineLoading(py::class_<SharedDocument, Shared>& defined)
{
	defined
		.def(py::init(
				 [](bool isComplete, bool isTolerant, bool keepsSource, const std::string& styleSheet, bool isIcon)
				 {
					 auto shared = isIcon ? MakeIcon() : std::make_shared<SharedDocument>();
					 if (!isIcon)
						 shared->document = Unwrap(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
					 Unwrap(Cast<SVGDocumentImportInterface>(shared->document)
								->SetImportOptions(MakeOptions(isComplete, isTolerant, keepsSource, styleSheet)));
					 return shared;
				 }),
			 py::arg("complete"), py::arg("tolerant"), py::arg("keep_source"), py::arg("style_sheet"),
			 py::arg("is_icon") = false)
		.def("_load_path",
			 [](SharedDocument& self, const std::string& path)
			 {
				 const Url url = Unwrap(Url::FromPath(path));
				 RunAlone(self, [&] { return self.document->Init(url); });
			 })
		.def("_load_bytes",
			 [](SharedDocument& self, const py::bytes& bytes, const std::string& base)
			 {
				 const std::string_view view = bytes;
				 const Url url = base.empty() ? Url() : Unwrap(Url::FromPath(base));
				 const auto import = Cast<SVGDocumentImportInterface>(self.document);
				 RunAlone(self, [&]
						  { return import->InitFromMemory(view.data(), static_cast<std::int64_t>(view.size()), url); });
			 })
		.def("_report",
			 [](SharedDocument& self)
			 {
				 const DocumentLock lock(self);
				 return ToDictionary(Unwrap(Cast<SVGDocumentImportInterface>(self.document)->GetImportReport()));
			 })
		.def_property_readonly(
			"url", [](SharedDocument& self) { return ToPython(self.document->GetUrl().GetText()); },
			"Where the document was loaded from, as a file: URL; empty for bytes.");
}

/// The elements of a document.
void DefineFinding(py::class_<SharedDocument, Shared>& defined)
{
	defined
		.def_property_readonly(
			"root",
			[](const Shared& self)
			{
				const DocumentLock lock(*self);
				return Wrap(self, self->document->GetRootElement());
			},
			"The outermost element, normally of kind \"svg\".")
		.def(
			"__getitem__",
			[](const Shared& self, const std::string& id)
			{
				const DocumentLock lock(*self);
				return Wrap(self, Unwrap(self->document->GetElementById(ToString(id))));
			},
			py::arg("id"), "The element with this id. KeyError when there is none.")
		.def("__contains__",
			 [](SharedDocument& self, const std::string& id)
			 {
				 const DocumentLock lock(self);
				 return self.document->GetElementById(ToString(id)).IsOk();
			 })
		.def(
			"ids",
			[](SharedDocument& self, const std::string& prefix)
			{
				const DocumentLock lock(self);
				py::list ids;
				for (const SVGElementRef& element : Unwrap(self.document->GetElementsByIdWithPrefix(ToString(prefix))))
					ids.append(ToPython(element->GetId()));
				return ids;
			},
			py::arg("prefix") = "", "The ids that begin with a prefix, the same for every load of a file.")
		.def(
			"select",
			[](const Shared& self, const std::string& selectors)
			{
				const DocumentLock lock(*self);
				py::list elements;
				for (const SVGElementRef& element :
					 Unwrap(Cast<SVGDocumentSourceInterface>(self->document)->Select(ToString(selectors))))
					elements.append(Wrap(self, element));
				return elements;
			},
			py::arg("selectors"),
			"The elements that CSS selectors find, in document order. ValueError for text that is none.")
		.def("__iter__",
			 [](const Shared& self)
			 {
				 const DocumentLock lock(*self);
				 return py::iter(Collect(self, self->document->GetRootElement()));
			 });
}

/// Changes of the document as a whole.
void DefineEditing(py::class_<SharedDocument, Shared>& defined)
{
	defined
		.def("_create", [](const Shared& self, const std::string& classId)
			 { return Wrap(self, Unwrap(CreateObject<SVGElementInterface>(classId.c_str()))); })
		.def("_set_root",
			 [](const Shared& self, const Element& root)
			 {
				 const DocumentLock lock(*self);
				 Unwrap(Cast<SVGDocumentEditInterface>(self->document)->SetRootElement(root.element));
			 })
		.def(
			"rename",
			[](SharedDocument& self, const Element& element, const std::string& id)
			{
				const DocumentLock lock(self);
				Unwrap(Cast<SVGDocumentEditInterface>(self.document)->RenameId(element.element, ToString(id)));
			},
			py::arg("element"), py::arg("id"),
			"Gives an element another id; all that refers to it follows. ValueError when another element has it.")
		.def("_change",
			 [](SharedDocument& self, const std::string& what)
			 {
				 const DocumentLock lock(self);
				 const auto edit = Cast<SVGDocumentEditInterface>(self.document);
				 if (what == "undo" || what == "redo")
					 return Unwrap(what == "undo" ? edit->Undo() : edit->Redo());
				 Unwrap(what == "begin"    ? edit->BeginTransaction()
						: what == "commit" ? edit->CommitTransaction()
										   : edit->RollbackTransaction());
				 return true;
			 });
}

/// The ways out of a document.
void DefineSaving(py::class_<SharedDocument, Shared>& defined)
{
	defined
		.def("_save",
			 [](SharedDocument& self, const std::string& path, const SVGSaveOptions& options)
			 {
				 const Url url = Unwrap(Url::FromPath(path));
				 const auto source = Cast<SVGDocumentSourceInterface>(self.document);
				 RunAlone(self, [&] { return source->Save(url, options); });
			 })
		.def("_save_bytes",
			 [](SharedDocument& self, const SVGSaveOptions& options)
			 {
				 const auto source = Cast<SVGDocumentSourceInterface>(self.document);
				 BaseArray<char> bytes;
				 RunAlone(self,
						  [&]() -> Result<void>
						  {
							  bytes = ORVAN_TRY(source->SaveToMemory(options));
							  return {};
						  });
				 return py::bytes(bytes.begin(), bytes.GetCount());
			 })
		.def("_repair",
			 [](SharedDocument& self)
			 {
				 const auto source = Cast<SVGDocumentSourceInterface>(self.document);
				 BaseArray<SVGRepair> repairs;
				 RunAlone(self,
						  [&]() -> Result<void>
						  {
							  repairs = ORVAN_TRY(source->Repair());
							  return {};
						  });
				 py::list result;
				 for (const SVGRepair& repair : repairs)
				 {
					 result.append(py::make_tuple(repair.line, repair.column, ToPython(repair.elementTag),
												  ToPython(repair.elementId), ToPython(repair.attribute),
												  ToPython(repair.before), ToPython(repair.after)));
				 }
				 return result;
			 });
}

} // namespace

void DefineDocuments(py::module_& module)
{
	py::class_<SVGSaveOptions>(module, "SaveOptions")
		.def(py::init(
			[](bool rewrites, std::int32_t indentation, std::int32_t precision)
			{
				SVGSaveOptions options;
				options.mode = rewrites ? SVGSaveMode::rewrite : SVGSaveMode::edit;
				options.indentation = indentation;
				options.precision = precision;
				return options;
			}));
	py::class_<SharedDocument, Shared> defined(module, "Document");
	DefineLoading(defined);
	DefineFinding(defined);
	DefineEditing(defined);
	DefineSaving(defined);
}

} // namespace orvan::python
