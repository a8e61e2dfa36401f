// SPDX-License-Identifier: MIT
#include "values.h"

#include "attribute_values.h"
#include "svg_source.h"

#include <algorithm>
#include <concepts>
#include <pybind11/stl.h>

namespace orvan::python
{
namespace
{

constexpr std::array<const char*, 7> kPaintKinds = {
	"", "none", "color", "url", "currentColor", "context-fill", "context-stroke"};

py::object Convert(Float number)
{
	return py::float_(number);
}

py::object Convert(const String& text)
{
	return ToPython(text);
}

py::object Convert(const SVGLength& length)
{
	return py::cast(ToLength(length));
}

py::object Convert(const SVGLength2d& lengths)
{
	return py::make_tuple(Convert(lengths.x), Convert(lengths.y));
}

py::object Convert(const Color& color)
{
	return py::make_tuple(color.red, color.green, color.blue);
}

py::object Convert(const SVGPaint& paint)
{
	return py::cast(Paint{kPaintKinds[static_cast<std::size_t>(paint.type)], Convert(paint.color), paint.alpha,
						  std::string(paint.reference.View())});
}

py::object Convert(const SVGViewbox& viewbox)
{
	return py::make_tuple(viewbox.x.value, viewbox.y.value, viewbox.width.value, viewbox.height.value);
}

py::object Convert(const Matrix2d& matrix)
{
	return ToTuple(matrix);
}

/// All that a paint is.
py::tuple ToState(const Paint& paint)
{
	return py::make_tuple(paint.kind, paint.color, paint.alpha, paint.reference);
}

template <typename T>
requires(std::same_as<T, Float> || std::same_as<T, SVGLength>) py::object Convert(const BaseArray<T>& values)
{
	py::list list;
	for (const T& value : values)
		list.append(Convert(value));
	return list;
}

} // namespace

Length ToLength(const SVGLength& length)
{
	const bool isPercent = length.unit == SVGLengthUnit::percent;
	return {isPercent ? length.value * 100.0 : length.value,
			std::string(program::kUnitNames[static_cast<std::size_t>(length.unit)])};
}

py::tuple ToTuple(const Matrix2d& matrix)
{
	return py::make_tuple(matrix.axis1.x, matrix.axis1.y, matrix.axis2.x, matrix.axis2.y, matrix.offset.x,
						  matrix.offset.y);
}

Matrix2d ToMatrix(const std::array<double, 6>& numbers)
{
	return {{numbers[4], numbers[5]}, {numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

py::object GetValue(const SVGDocumentRef& document, const SVGElementRef& element, SVGImportAttribute number)
{
	const DataDictionary attributes = element->GetAttributeDictionary();
	const auto companion = static_cast<std::int32_t>(GetCompanionOf(number));
	const bool hasCompanion = attributes.Has(companion);
	py::object result;
	for (const DataDictionary::Entry& entry : attributes)
	{
		if (entry.key != (hasCompanion ? companion : static_cast<std::int32_t>(number)))
			continue;
		program::VisitAttribute(attributes, entry,
								[&](const auto& value)
								{
									// Keywords are numbers and say more as text. Of companions, only lists do not.
									using Value = std::remove_cvref_t<decltype(value)>;
									constexpr bool kIsList = std::same_as<Value, BaseArray<SVGLength>>;
									if constexpr (!std::same_as<Value, std::int32_t> && requires { Convert(value); })
										result = kIsList || !hasCompanion ? Convert(value) : py::object();
								});
		if (result)
			return result;
		const std::string_view name = kSVGAttributeNames[static_cast<std::size_t>(number)];
		Result<String> text = Cast<SVGDocumentSourceInterface>(document)->GetAttributeText(element, ToString(name));
		return text.IsOk() ? py::object(ToPython(text.GetValue())) : py::none();
	}
	return py::none();
}

SVGImportAttribute FindAttribute(std::string_view name)
{
	const auto* const found = std::ranges::find(kSVGAttributeNames, name);
	if (found == kSVGAttributeNames.end() || name.empty())
		return SVGImportAttribute::unknown;
	const auto number = static_cast<SVGImportAttribute>(found - kSVGAttributeNames.begin());
	return GetAttributeOf(number) == number ? number : SVGImportAttribute::unknown;
}

std::string_view NameOfKind(SVGImportElementKind kind)
{
	if (kind == SVGImportElementKind::textRun)
		return "#text"; // As in the document object model.
	const auto index = static_cast<std::size_t>(kind);
	return index > 0 && index < std::size(program::kElementNames) ? program::kElementNames[index] : "unknown";
}

void DefineValues(py::module_& module)
{
	py::class_<Length>(module, "Length", "A length as it was written: a number and a unit, \"\" for plain numbers.")
		.def(py::init<double, std::string>(), py::arg("value"), py::arg("unit") = "")
		.def_readonly("value", &Length::value, "The number; 50 for 50 %.")
		.def_readonly("unit", &Length::unit, "The unit as in the file, in lower case: \"px\", \"%\", \"em\" …")
		.def("__str__", [](const Length& length)
			 { return py::str(py::float_(length.value).attr("__format__")("g")).cast<std::string>() + length.unit; })
		.def("__repr__",
			 [](const Length& length) { return py::str("Length({!r}, {!r})").format(length.value, length.unit); })
		.def("__float__", [](const Length& length) { return length.value; })
		.def(
			"__eq__", [](const Length& a, const Length& b) { return a == b; }, py::is_operator())
		.def("__hash__", [](const Length& length) { return py::hash(py::make_tuple(length.value, length.unit)); })
		.def(py::pickle([](const Length& length) { return py::make_tuple(length.value, length.unit); },
						[](const py::tuple& state) {
							return Length{state[0].cast<double>(), state[1].cast<std::string>()};
						}));

	py::class_<Paint>(module, "Paint", "What is painted with.")
		.def_readonly("kind", &Paint::kind,
					  "\"none\", \"color\", \"url\", \"currentColor\", \"context-fill\" or \"context-stroke\".")
		.def_readonly("color", &Paint::color, "Red, green and blue, 0 to 1.")
		.def_readonly("alpha", &Paint::alpha, "How opaque the colour is, 0 to 1.")
		.def_readonly("reference", &Paint::reference, "The id of the paint server that a \"url\" names.")
		.def(
			"__eq__", [](const Paint& a, const Paint& b) { return ToState(a).equal(ToState(b)); }, py::is_operator())
		.def("__hash__", [](const Paint& paint) { return py::hash(ToState(paint)); })
		.def(py::pickle(&ToState,
						[](const py::tuple& state) {
							return Paint{state[0].cast<std::string>(), state[1], state[2].cast<double>(),
										 state[3].cast<std::string>()};
						}))
		.def("__repr__",
			 [](const Paint& paint)
			 {
				 if (paint.kind == "color")
					 return py::str("Paint({!r}, alpha={!r})").format(paint.color, paint.alpha);
				 return py::str("Paint({!r})")
					 .format(paint.kind == "url" ? "url(#" + paint.reference + ")" : paint.kind);
			 });
}

} // namespace orvan::python
