// SPDX-License-Identifier: MIT
#include "attribute_values.h"
#include "documents.h"
#include "path_arrays.h"
#include "svg_edit.h"
#include "svg_source.h"
#include "values.h"

#include <pybind11/stl.h>

namespace orvan::python
{
namespace
{

/// Names and values of all that an element says in its attributes; a companion is a part of its attribute.
py::dict GetAttributes(const Element& self)
{
	const DocumentLock lock(*self.shared);
	const DataDictionary attributes = self.element->GetAttributeDictionary();
	py::dict result;
	for (const DataDictionary::Entry& entry : attributes)
	{
		const SVGImportAttribute number = GetAttributeOf(static_cast<SVGImportAttribute>(entry.key));
		const std::string_view name = program::GetAttributeName(static_cast<std::int32_t>(number));
		if (!name.empty())
			result[py::str(name.data(), name.size())] = GetValue(self.shared->document, self.element, number);
	}
	return result;
}

SVGDocumentSourceRef SourceOf(const Element& self)
{
	return Cast<SVGDocumentSourceInterface>(self.shared->document);
}

SVGElementEditRef EditOf(const Element& self)
{
	const auto edit = Cast<SVGElementEditInterface>(self.element);
	if (!edit)
		throw py::value_error("An element of this kind cannot be edited.");
	return edit;
}

/// Elements of two documents would be under two locks.
void RequireSameDocument(const Element& self, const Element& other)
{
	if (self.shared != other.shared)
		throw py::value_error("The elements are of different documents.");
}

std::string GetText(const Element& self)
{
	const DocumentLock lock(*self.shared);
	if (const auto text = Cast<SVGTextElementInterface>(self.element))
		return std::string(text->GetText().View());
	if (const auto run = Cast<SVGTextRunInterface>(self.element))
		return std::string(run->GetText().View());
	if (const auto content = Cast<SVGTextContentInterface>(self.element))
		return std::string(Unwrap(content->GetCharacters()).View());
	if (const auto description = Cast<SVGDescriptionInterface>(self.element))
		return std::string(description->GetText().View());
	return {};
}

void SetText(const Element& self, const std::string& characters)
{
	const DocumentLock lock(*self.shared);
	if (const auto text = Cast<SVGTextElementInterface>(self.element))
		Unwrap(text->SetText(ToString(characters)));
	else if (const auto run = Cast<SVGTextRunInterface>(self.element))
		Unwrap(run->SetText(ToString(characters)));
	else if (const auto description = Cast<SVGDescriptionInterface>(self.element))
		Unwrap(description->SetText(ToString(characters)));
	else
		throw py::value_error("The element has no text of its own.");
}

std::string GetLink(const Element& self)
{
	const DocumentLock lock(*self.shared);
	if (const auto use = Cast<SVGUseElementInterface>(self.element))
		return std::string(use->GetLink().View());
	if (const auto link = Cast<SVGLinkInterface>(self.element))
		return std::string(link->GetLink().View());
	return {};
}

void SetTransform(const Element& self, const py::object& value)
{
	const bool isText = py::isinstance<py::str>(value);
	py::detail::make_caster<std::array<double, 6>> numbers;
	if (!isText && !numbers.load(value, true))
		throw py::type_error("A transform is six numbers a, b, c, d, e, f, or text.");
	const String text = ToString(isText ? value.cast<std::string>() : std::string());
	const DocumentLock lock(*self.shared);
	Unwrap(isText ? SourceOf(self)->SetAttributeText(self.element, ToString("transform"), text)
				  : self.element->SetLocalTransform(ToMatrix(py::detail::cast_op<std::array<double, 6>&>(numbers))));
}

/// What an element is, and what all elements have.
void DefineIdentity(py::class_<Element>& defined)
{
	defined.def(py::init<const Element&>(), py::arg("element"), "The same element as another object.")
		.def_property_readonly(
			"kind", [](const Element& self) { return NameOfKind(self.element->GetElementType()); },
			"What it is: \"circle\", \"g\", \"linearGradient\" … Polygons and polylines are \"path\", ellipses "
			"\"circle\".")
		.def_property(
			"id", [](const Element& self) { return ToPython(self.element->GetId()); },
			[](const Element& self, const std::string& id)
			{
				const DocumentLock lock(*self.shared);
				Unwrap(self.element->SetId(ToString(id)));
			},
			"The id; \"\" when there is none. Setting it changes nothing else: the document goes on finding the "
			"element "
			"under the id that it came with, and references stay. Document.rename changes these as well.")
		.def_property(
			"transform", [](const Element& self) { return ToTuple(self.element->GetLocalTransform()); }, &SetTransform,
			"The transform to the parent's coordinates: six numbers a, b, c, d, e, f as in SVG's matrix(). Takes text, "
			"too: \"rotate(45)\".")
		.def_property_readonly(
			"world_transform",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				return ToTuple(Unwrap(self.element->GetWorldTransform()));
			},
			"The transform to the document's coordinates.")
		.def_property(
			"text", &GetText, &SetText,
			"The characters of a text, title, description …; \"\" for others. Can be set where an element holds them.")
		.def_property_readonly("href", &GetLink, "What a link names, as it is stored; \"\" where there is none.")
		.def_property_readonly(
			"tag",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				return ToPython(Unwrap(SourceOf(self)->GetTag(self.element)));
			},
			"The tag as the file writes it, with its prefix.");
}

/// Attributes by their names; `_elements.py` makes properties of them.
void DefineAttributes(py::class_<Element>& defined)
{
	defined
		.def_property_readonly("attributes", &GetAttributes,
							   "All attributes that are set, typed, by their SVG names. A copy.")
		.def(
			"get",
			[](const Element& self, const std::string& name)
			{
				const SVGImportAttribute number = FindAttribute(name);
				if (number == SVGImportAttribute::unknown)
					throw py::key_error(name);
				const DocumentLock lock(*self.shared);
				return GetValue(self.shared->document, self.element, number);
			},
			py::arg("name"),
			"The value of an attribute by its SVG name, typed; keywords are text. None when the element says nothing.")
		.def(
			"get_text",
			[](const Element& self, const std::string& name) -> py::object
			{
				const DocumentLock lock(*self.shared);
				Result<String> text = SourceOf(self)->GetAttributeText(self.element, ToString(name));
				if (!text.IsOk() && text.GetError().GetClass() == ErrorClass::notFound)
					return py::none();
				return ToPython(Unwrap(std::move(text)));
			},
			py::arg("name"), "The value of any attribute as text, unknown ones included; None when there is none.")
		.def(
			"set_text",
			[](const Element& self, const std::string& name, const std::string& text)
			{
				const DocumentLock lock(*self.shared);
				Unwrap(SourceOf(self)->SetAttributeText(self.element, ToString(name), ToString(text)));
			},
			py::arg("name"), py::arg("text"),
			"Sets an attribute from text, as a browser would read it. ValueError for text that is no value of it, and "
			"for "
			"an attribute that does not count on the element.")
		.def(
			"remove_attribute",
			[](const Element& self, const std::string& name)
			{
				const DocumentLock lock(*self.shared);
				Unwrap(SourceOf(self)->RemoveAttributeText(self.element, ToString(name)));
			},
			py::arg("name"), "Takes an attribute away; nothing happens when there is none.");
}

/// The place of an element in its tree, and changing it.
void DefineTree(py::class_<Element>& defined)
{
	defined
		.def_property_readonly(
			"parent",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				return Wrap(self.shared, Cast<SVGElementInterface>(
											 Unwrap(Cast<HierarchyObjectInterface>(self.element)->GetParent())));
			},
			"The element around; None for the root.")
		.def_property_readonly(
			"children",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				py::list children;
				for (auto child = Cast<HierarchyObjectInterface>(self.element)->GetFirstChild(); child;
					 child = child->GetNextSibling())
				{
					if (const auto element = Cast<SVGElementInterface>(child))
						children.append(Wrap(self.shared, element));
				}
				return children;
			},
			"The elements inside, in document order, runs of text included. A copy.")
		.def_property_readonly(
			"index", [](const Element& self) { return EditOf(self)->GetIndex(); },
			"The place among the parent's children, from 0; -1 for a root.")
		.def(
			"remove",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				Unwrap(EditOf(self)->Remove());
			},
			"Takes the element with all below out of the tree. It can be inserted again. RuntimeError for the root.")
		.def(
			"insert_before",
			[](const Element& self, const Element& child, const Element* next)
			{
				RequireSameDocument(self, child);
				const DocumentLock lock(*self.shared);
				Unwrap(
					EditOf(self)->InsertChildBefore(child.element, next != nullptr ? next->element : SVGElementRef()));
			},
			py::arg("child"), py::arg("next"),
			"Makes an element of the same document a child of this one, before `next`, or the last when that is None; "
			"from where it was it goes away.")
		.def(
			"append",
			[](const Element& self, const Element& child)
			{
				RequireSameDocument(self, child);
				const DocumentLock lock(*self.shared);
				Unwrap(EditOf(self)->InsertChildBefore(child.element, SVGElementRef()));
			},
			py::arg("child"), "Makes an element of the same document the last child of this one.")
		.def(
			"replace_with",
			[](const Element& self, const Element& replacement)
			{
				RequireSameDocument(self, replacement);
				const DocumentLock lock(*self.shared);
				Unwrap(EditOf(self)->ReplaceWith(replacement.element));
			},
			py::arg("replacement"), "Puts another element of the same document in this one's place.")
		.def(
			"clone",
			[](const Element& self)
			{
				const DocumentLock lock(*self.shared);
				return Wrap(self.shared, Unwrap(CloneObject(self.element)));
			},
			"A copy with all below, in no tree yet.");
}

/// What `_elements.py` makes the properties of paths of.
void DefinePathAccess(py::class_<Element>& defined)
{
	defined
		.def("_get_path_data",
			 [](const Element& self)
			 {
				 const DocumentLock lock(*self.shared);
				 const auto path = Cast<SVGPathEditInterface>(self.element);
				 return path ? ToPython(Unwrap(path->GetPathData())) : py::str();
			 })
		.def("_set_path_data",
			 [](const Element& self, const std::string& data)
			 {
				 const DocumentLock lock(*self.shared);
				 Unwrap(Cast<SVGPathEditInterface>(self.element)->SetPathData(ToString(data)));
			 })
		.def("_set_path",
			 [](const Element& self, const CodeArray& codes, const PointArray& points)
			 {
				 const BaseArray<SVGPathCommand> commands = ToCommands(codes, points);
				 const DocumentLock lock(*self.shared);
				 Unwrap(Cast<SVGPathEditInterface>(self.element)->SetPath(commands));
			 })
		.def("_path",
			 [](const Element& self)
			 {
				 const DocumentLock lock(*self.shared);
				 const auto path = Cast<SVGPathElementInterface>(self.element);
				 return path ? ToArrays(Unwrap(path->GetPath())) : ToArrays({});
			 });
}

/// What Python asks of objects.
void DefineProtocol(py::class_<Element>& defined)
{
	defined.def("__iter__", [](const py::object& self) { return py::iter(self.attr("children")); })
		.def("__len__", [](const py::object& self) { return py::len(self.attr("children")); })
		.def(
			"__getitem__",
			[](const py::object& self, const py::object& place) -> py::object { return self.attr("children")[place]; },
			py::arg("place"), "The element inside at a place, from 0; a list for a slice.")
		.def("__bool__", [](const Element&) { return true; })
		.def(
			"__eq__",
			[](const Element& a, const Element& b) { return a.element->GetObject() == b.element->GetObject(); },
			py::is_operator())
		.def("__hash__", [](const Element& self)
			 { return py::hash(py::int_(reinterpret_cast<std::uintptr_t>(self.element->GetObject()))); })
		.def("__repr__",
			 [](const Element& self)
			 {
				 const String id = self.element->GetId();
				 return "<" + std::string(NameOfKind(self.element->GetElementType())) +
						(id.IsEmpty() ? "" : " id='" + std::string(id.View()) + "'") + ">";
			 });
}

} // namespace

py::object Wrap(const std::shared_ptr<SharedDocument>& shared, const SVGElementRef& element)
{
	if (!element)
		return py::none();
	py::object object = py::cast(Element{shared, element});
	// Looked up once, and kept to the end of the process: elements are made by the million.
	static const auto* const made = new py::dict(py::module_::import("orvan_svg._core").attr("element_classes"));
	const py::dict& classes = *made;
	const std::string_view kind = NameOfKind(element->GetElementType());
	const py::str name(kind.data(), kind.size());
	return classes.contains(name) ? py::object(classes[name](object)) : object;
}

void DefineElements(py::module_& module)
{
	module.attr("element_classes") = py::dict();
	py::class_<Element> defined(
		module, "Element",
		"An element of a document's tree, which it keeps alive. Iterating gives the elements inside; two "
		"objects are equal when they are the same element. Attributes have the names of SVG, with _ for - "
		"and : (`element.stroke_width`); each kind has a class of its own with what only it has.");
	DefineIdentity(defined);
	DefineAttributes(defined);
	DefineTree(defined);
	DefinePathAccess(defined);
	DefineProtocol(defined);
}

} // namespace orvan::python
