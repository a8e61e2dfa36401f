// SPDX-License-Identifier: MIT
#include "svg_geometry.h"

#include "documents.h"
#include "path_arrays.h"
#include "values.h"

#include <array>
#include <cmath>
#include <limits>
#include <pybind11/stl.h>

namespace orvan::python
{
namespace
{

using Shared = std::shared_ptr<SharedDocument>;

constexpr const char* kModuleFile = "net.orvan.svg.geometry.so";
constexpr std::array<std::string_view, 3> kBoxKinds = {"fill", "stroke", "visual"};
constexpr std::array<std::string_view, 4> kSpaces = {"element", "parent", "document", "view"};
constexpr std::array<std::string_view, 4> kParts = {"fill", "stroke", "text", "box"};
constexpr std::array<std::string_view, 2> kRules = {"nonzero", "evenodd"};
constexpr std::array<std::string_view, 3> kCaps = {"butt", "round", "square"};
constexpr std::array<std::string_view, 3> kJoins = {"miter", "round", "bevel"};
constexpr std::array<std::string_view, 4> kOperations = {"unite", "intersect", "subtract", "exclude"};
constexpr std::array<std::string_view, 2> kStrokes = {"kept", "outlined"};
constexpr std::array<std::string_view, 3> kClips = {"ignored", "applied", "kept"};

/// The value that a word of a list stands for, when the first one stands for `first`. ValueError for other words.
template <typename Enumeration, std::size_t count>
Enumeration FindWord(const std::array<std::string_view, count>& words, std::string_view word, std::size_t first = 0)
{
	std::string all;
	for (std::size_t i = 0; i < count; i++)
	{
		if (words[i] == word)
			return static_cast<Enumeration>(i + first);
		all += (i == 0 ? "\"" : ", \"") + std::string(words[i]) + '"';
	}
	throw py::value_error("\"" + std::string(word) + "\" is none of " + all + ".");
}

/// Asks while other threads of the interpreter go on.
template <typename Ask>
auto AskLong(const Ask& ask)
{
	auto result = [&]
	{
		const LongCall others;
		const CollectedDiagnostics silence;
		return ask();
	}();
	return Unwrap(std::move(result));
}

/// What answers for a document, which must be locked.
const SVGGeometryRef& GeometryOf(SharedDocument& shared)
{
	if (!shared.geometry)
	{
		RequireModule(kModuleFile);
		SVGGeometryRef geometry = Unwrap(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Unwrap(geometry->SetDocument(shared.document, SVGGeometryOptions()));
		shared.geometry = std::move(geometry);
	}
	return shared.geometry;
}

/// A named tuple of the package.
template <typename... Values>
py::object MakeTuple(const char* name, const Values&... values)
{
	return py::module_::import("orvan_svg._core").attr(name)(values...);
}

py::object ToBox(const SVGBox& box)
{
	return box.isEmpty ? py::object(py::none()) : MakeTuple("Box", box.x, box.y, box.width, box.height);
}

/// A path by itself. Questions write caches, so they take turns.
struct Outline
{
	SVGOutlineRef outline;
	std::mutex mutex;
};

std::shared_ptr<Outline> MakeOutline(SVGOutlineRef outline)
{
	auto made = std::make_shared<Outline>();
	made->outline = std::move(outline);
	return made;
}

/// Asks an outline by itself.
template <typename Ask>
auto AskOutline(Outline& self, const Ask& ask)
{
	const DocumentLock lock(self.mutex);
	return AskLong(ask);
}

py::object ToPlace(const SVGOutlinePlace& place)
{
	return MakeTuple("Place", place.point.x, place.point.y, place.direction.x, place.direction.y, place.length,
					 place.distance);
}

/// How a document is to be normalised.
struct NormalizeWish
{
	SVGNormalizeOptions options;
	SVGNormalizedClips clips;
};

/// The paths of a document, and the document that their elements stand in.
struct NormalizedPaths
{
	Shared shared;
	SVGNormalizedPaths paths;
};

/// A column as an array over its own memory, which stays as long as the array.
template <typename T, typename Number, std::size_t width = sizeof(T) / sizeof(Number)>
py::object ToColumn(const py::object& owner, BaseArray<T>& column)
{
	static_assert(sizeof(T) == width * sizeof(Number));
	const auto count = static_cast<py::ssize_t>(column.GetCount());
	std::vector<py::ssize_t> shape{count};
	if (width > 1)
		shape.push_back(py::ssize_t{width});
	if (count == 0)
		return py::array_t<Number>(shape);
	return py::array_t<Number>(shape, reinterpret_cast<const Number*>(column.begin()), owner);
}

template <typename Number, auto column>
void DefineColumn(py::class_<NormalizedPaths>& paths, const char* name, const char* help)
{
	using Value = typename std::remove_reference_t<decltype(std::declval<SVGNormalizedPaths&>().*column)>::Value;
	paths.def_property_readonly(
		name,
		[](const py::object& self)
		{ return ToColumn<Value, Number>(self, self.cast<NormalizedPaths&>().paths.*column); },
		help);
}

void DefineNormalizedPaths(py::module_& module)
{
	py::class_<NormalizedPaths> paths(
		module, "NormalizedPaths",
		"Everything that is painted, in painting order, as columns: path i has the commands from command_offsets[i] up "
		"to command_offsets[i + 1], and the points from point_offsets[i]. n is the number of paths. The arrays are the "
		"paths' own memory, not copied, and hold it as long as they are there.");
	DefineColumn<std::uint8_t, &SVGNormalizedPaths::commands>(
		paths, "commands", "uint8: MOVE, LINE, CUBIC or CLOSE, with one, one, three and no points.");
	DefineColumn<double, &SVGNormalizedPaths::points>(paths, "points",
													  "float64, a row (x, y) for each point; absolute.");
	DefineColumn<std::int64_t, &SVGNormalizedPaths::commandOffsets>(paths, "command_offsets", "int64, n + 1.");
	DefineColumn<std::int64_t, &SVGNormalizedPaths::pointOffsets>(paths, "point_offsets", "int64, n + 1.");
	DefineColumn<std::uint8_t, &SVGNormalizedPaths::fillKinds>(
		paths, "fill_kinds",
		"uint8, n: 0 not filled, 1 a colour, 2 a gradient or pattern, of which `fills` has a mean.");
	DefineColumn<std::uint8_t, &SVGNormalizedPaths::strokeKinds>(paths, "stroke_kinds", "uint8, n: likewise.");
	DefineColumn<double, &SVGNormalizedPaths::fills>(paths, "fills", "float64, n rows (red, green, blue), 0 to 1.");
	DefineColumn<double, &SVGNormalizedPaths::strokes>(paths, "strokes", "float64, n rows (red, green, blue), 0 to 1.");
	DefineColumn<double, &SVGNormalizedPaths::fillOpacities>(
		paths, "fill_opacities", "float64, n, 0 to 1: that of the groups around multiplied in.");
	DefineColumn<double, &SVGNormalizedPaths::strokeOpacities>(paths, "stroke_opacities", "float64, n: likewise.");
	DefineColumn<double, &SVGNormalizedPaths::strokeWidths>(paths, "stroke_widths",
															"float64, n, in units of the points.");
	DefineColumn<std::int32_t, &SVGNormalizedPaths::fillRules>(paths, "fill_rules", "int32, n: 1 nonzero, 2 evenodd.");
	DefineColumn<std::int32_t, &SVGNormalizedPaths::strokeCaps>(paths, "stroke_caps",
																"int32, n: 1 butt, 2 round, 3 square.");
	DefineColumn<std::int32_t, &SVGNormalizedPaths::strokeJoins>(paths, "stroke_joins",
																 "int32, n: 1 miter, 2 round, 3 bevel.");
	DefineColumn<double, &SVGNormalizedPaths::strokeMiterLimits>(paths, "stroke_miter_limits", "float64, n.");
	paths
		.def_property_readonly(
			"elements",
			[](const NormalizedPaths& self)
			{
				const DocumentLock lock(*self.shared);
				py::list elements;
				for (const SVGElementRef& element : self.paths.elements)
					elements.append(Wrap(self.shared, element));
				return elements;
			},
			"What each path comes from: a list of n elements.")
		.def_property_readonly(
			"size", [](const NormalizedPaths& self) { return py::make_tuple(self.paths.size.x, self.paths.size.y); },
			"Width and height of the picture, in units of the points.")
		.def_property_readonly(
			"unclipped_count", [](const NormalizedPaths& self) { return self.paths.unclippedCount; },
			"How many paths show more than the picture does, because clip paths, masks and filters are left aside.")
		.def("__len__", [](const NormalizedPaths& self) { return self.paths.elements.GetCount(); })
		.def("__repr__", [](const NormalizedPaths& self)
			 { return "<NormalizedPaths of " + std::to_string(self.paths.elements.GetCount()) + " paths>"; });
}

std::shared_ptr<Outline> Combine(Outline& self, Outline& other, std::string_view operation, std::string_view rule,
								 std::string_view otherRule, double tolerance)
{
	const auto wanted = FindWord<SVGOutlineOperation>(kOperations, operation);
	const auto ruleHere = FindWord<SVGFillRule>(kRules, rule, 1);
	const auto ruleThere = FindWord<SVGFillRule>(kRules, otherRule, 1);
	// A copy, so that nobody holds two locks.
	const SVGOutlineRef copy = AskOutline(other, [&] { return other.outline->Transform(Matrix2d()); });
	return MakeOutline(
		AskOutline(self, [&] { return self.outline->Combine(copy, wanted, ruleHere, ruleThere, tolerance); }));
}

void DefineOutlines(py::module_& module)
{
	py::class_<Outline, std::shared_ptr<Outline>>(
		module, "Outline",
		"A path by itself, to be measured and changed: `Outline(codes, points)`, with arrays as those of Path, or from "
		"`Element.outline`. Lengths and distances are in its own units.")
		.def(py::init(
				 [](const CodeArray& codes, const PointArray& points)
				 {
					 RequireModule(kModuleFile);
					 SVGOutlineRef outline = Unwrap(CreateObject<SVGOutlineInterface>(kSVGOutlineClass));
					 Unwrap(outline->SetPath(ToCommands(codes, points)));
					 return MakeOutline(std::move(outline));
				 }),
			 py::arg("codes"), py::arg("points"))
		.def("_path",
			 [](Outline& self)
			 {
				 const DocumentLock lock(self.mutex);
				 return ToArrays(Unwrap(self.outline->GetPath()));
			 })
		.def_property_readonly(
			"length", [](Outline& self) { return AskOutline(self, [&] { return self.outline->GetLength(); }); },
			"The length of all lines and curves.")
		.def(
			"bounds",
			[](Outline& self, const std::array<double, 6>& transform)
			{
				const DocumentLock lock(self.mutex);
				return ToBox(self.outline->GetBounds(ToMatrix(transform)));
			},
			py::arg("transform") = std::array<double, 6>{1, 0, 0, 1, 0, 0},
			"The Box around the outline once it is transformed (a, b, c, d, e, f), tight around its curves; None for "
			"an "
			"outline without points.")
		.def(
			"point_at",
			[](Outline& self, double length)
			{ return ToPlace(AskOutline(self, [&] { return self.outline->GetPlace(length); })); },
			py::arg("length"),
			"The Place at a length from the start, which ends at the ends. ValueError for NaN, KeyError for an outline "
			"without points.")
		.def(
			"nearest",
			[](Outline& self, double x, double y) {
				return ToPlace(AskOutline(self, [&] { return self.outline->FindNearest({x, y}); }));
			},
			py::arg("x"), py::arg("y"), "The Place that is nearest to a point, with its `distance`. KeyError as above.")
		.def(
			"contains",
			[](Outline& self, double x, double y, std::string_view rule)
			{
				const auto wanted = FindWord<SVGFillRule>(kRules, rule, 1);
				const DocumentLock lock(self.mutex);
				return self.outline->Contains({x, y}, wanted);
			},
			py::arg("x"), py::arg("y"), py::arg("rule") = "nonzero",
			"Whether a point is inside or on an edge, by the rule \"nonzero\" or \"evenodd\".")
		.def(
			"transformed",
			[](Outline& self, const std::array<double, 6>& transform)
			{ return MakeOutline(AskOutline(self, [&] { return self.outline->Transform(ToMatrix(transform)); })); },
			py::arg("transform"), "A copy, transformed by (a, b, c, d, e, f).")
		.def(
			"flattened",
			[](Outline& self, double tolerance)
			{ return MakeOutline(AskOutline(self, [&] { return self.outline->Flatten(tolerance); })); },
			py::arg("tolerance"), "A copy of straight lines only, no farther off than `tolerance`.")
		.def(
			"stroked",
			[](Outline& self, double width, std::string_view cap, std::string_view join, double miterLimit,
			   double tolerance)
			{
				const SVGStroke stroke{width, FindWord<SVGLineCap>(kCaps, cap, 1),
									   FindWord<SVGLineJoin>(kJoins, join, 1), miterLimit};
				return MakeOutline(AskOutline(self, [&] { return self.outline->GetStroke(stroke, tolerance); }));
			},
			py::arg("width"), py::kw_only(), py::arg("cap") = "butt", py::arg("join") = "miter",
			py::arg("miter_limit") = 4.0, py::arg("tolerance") = 0.01,
			"The edges of a stroke along this outline, to be filled by \"nonzero\", no farther off than `tolerance`. "
			"`cap` is \"butt\", \"round\" or \"square\", `join` \"miter\", \"round\" or \"bevel\".")
		.def(
			"area",
			[](Outline& self, std::string_view rule)
			{
				const auto wanted = FindWord<SVGFillRule>(kRules, rule, 1);
				return AskOutline(self, [&] { return self.outline->GetArea(wanted); });
			},
			py::arg("rule") = "nonzero", "How large the area is that a fill covers.")
		.def("combined", &Combine, py::arg("other"), py::arg("operation"), py::kw_only(), py::arg("rule") = "nonzero",
			 py::arg("other_rule") = "nonzero", py::arg("tolerance") = 0.0,
			 "The area of this outline put together with that of another one: \"unite\", \"intersect\", \"subtract\" "
			 "or \"exclude\". What runs along each other nearer than `tolerance` counts as the same; 0 stands for a "
			 "millionth of the size. The result has no crossings. ValueError for outlines that are too intricate.");
}

/// Everything that was found, as a list of named tuples.
py::list ToList(const Shared& shared, const SVGHits& found)
{
	py::list hits;
	for (const SVGHit& hit : found.hits)
	{
		py::tuple uses(static_cast<py::ssize_t>(hit.useCount));
		for (std::int32_t i = 0; i < hit.useCount; i++)
			uses[static_cast<std::size_t>(i)] = Wrap(shared, found.uses[static_cast<std::size_t>(hit.firstUse + i)]);
		hits.append(MakeTuple("Hit", Wrap(shared, hit.element), kParts[static_cast<std::size_t>(hit.part)], uses));
	}
	return hits;
}

py::list FindAt(const Shared& self, double x, double y, double tolerance, bool findsAll, bool ignoresPointerEvents)
{
	const DocumentLock lock(*self);
	const SVGGeometryRef& geometry = GeometryOf(*self);
	return ToList(self, AskLong([&] { return geometry->FindAt({x, y}, {tolerance, findsAll, ignoresPointerEvents}); }));
}

py::list FindIn(const Shared& self, const SVGBox& rectangle, bool isInside)
{
	const DocumentLock lock(*self);
	const SVGGeometryRef& geometry = GeometryOf(*self);
	return ToList(self, AskLong([&] { return geometry->FindIn(rectangle, isInside); }));
}

/// Calls `take` for every element in document order, runs of text included. Trees may be deep, so it does not recurse.
template <typename Take>
Result<void> ForEachElement(const SVGElementRef& root, const Take& take)
{
	HierarchyObjectRef at = Cast<HierarchyObjectInterface>(root);
	while (at)
	{
		if (const auto element = Cast<SVGElementInterface>(at))
			ORVAN_TRY(take(element));
		HierarchyObjectRef next = at->GetFirstChild();
		while (!next && at && at->GetObject() != root->GetObject())
		{
			next = at->GetNextSibling();
			if (!next)
				at = ORVAN_TRY(at->GetParent());
		}
		at = std::move(next);
	}
	return {};
}

/// The boxes of all elements in document order, four numbers each; not numbers where there is none.
py::array GetBoxes(SharedDocument& self, std::string_view kindName, std::string_view spaceName)
{
	const auto kind = FindWord<SVGBoxKind>(kBoxKinds, kindName);
	const auto space = FindWord<SVGCoordinates>(kSpaces, spaceName);
	const DocumentLock lock(self);
	const SVGGeometryRef& geometry = GeometryOf(self);
	BaseArray<double> numbers = AskLong(
		[&]() -> Result<BaseArray<double>>
		{
			BaseArray<double> boxes;
			const auto take = [&](const SVGElementRef& element) -> Result<void>
			{
				constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
				const Result<SVGBox> box = geometry->GetBox(element, kind, space);
				if (!box.IsOk() && box.GetError().GetClass() != ErrorClass::notFound)
					return box.GetError();
				const bool isThere = box.IsOk() && !box.GetValue().isEmpty;
				const SVGBox found = isThere ? box.GetValue() : SVGBox{kNone, kNone, kNone, kNone};
				const double row[] = {found.x, found.y, found.width, found.height};
				return boxes.AppendAll(row, std::size(row));
			};
			ORVAN_TRY(ForEachElement(self.document->GetRootElement(), take));
			return boxes;
		});
	py::array_t<double> result({static_cast<py::ssize_t>(numbers.GetCount() / 4), py::ssize_t{4}});
	std::copy(numbers.begin(), numbers.end(), result.mutable_data());
	return result;
}

void DefineNames(py::module_& module)
{
	const py::object make = py::module_::import("collections").attr("namedtuple");
	const auto define = [&](const char* name, const char* fields, const char* help)
	{
		const py::object type = make(name, fields);
		type.attr("__module__") = "orvan_svg";
		type.attr("__doc__") = help;
		module.attr(name) = type;
	};
	define("Box", "x y width height", "A rectangle with sides along the axes; y goes down.");
	define("Place", "x y dx dy length distance",
		   "A place on an outline: the point, the direction in which the outline goes there (of length 1; 0, 0 when it "
		   "goes nowhere), its length from the start, and its distance from the point that was asked for.");
	define("Hit", "element part uses",
		   "An element at a place: a shape, a text or a tspan; which part of it (\"fill\", \"stroke\", \"text\" or "
		   "\"box\"); and the use elements through which it is shown there, the outermost first.");
}

} // namespace

void DefineGeometry(py::module_& module)
{
	DefineNames(module);
	DefineOutlines(module);
	DefineNormalizedPaths(module);
	module.def("_view_size",
			   [](SharedDocument& self)
			   {
				   const DocumentLock lock(self);
				   const SVGGeometryRef& geometry = GeometryOf(self);
				   const Vector2d size = AskLong([&] { return geometry->GetViewSize(); });
				   return py::make_tuple(size.x, size.y);
			   });
	module.def("_bbox",
			   [](const Element& self, std::string_view kindName, std::string_view spaceName)
			   {
				   const auto kind = FindWord<SVGBoxKind>(kBoxKinds, kindName);
				   const auto space = FindWord<SVGCoordinates>(kSpaces, spaceName);
				   const DocumentLock lock(*self.shared);
				   const SVGGeometryRef& geometry = GeometryOf(*self.shared);
				   return ToBox(AskLong([&] { return geometry->GetBox(self.element, kind, space); }));
			   });
	module.def("_boxes", &GetBoxes);
	module.def("_transform_to",
			   [](const Element& self, std::string_view spaceName)
			   {
				   const auto space = FindWord<SVGCoordinates>(kSpaces, spaceName);
				   const DocumentLock lock(*self.shared);
				   const SVGGeometryRef& geometry = GeometryOf(*self.shared);
				   return ToTuple(AskLong([&] { return geometry->GetTransform(self.element, space); }));
			   });
	module.def("_outline",
			   [](const Element& self, std::string_view spaceName)
			   {
				   const auto space = FindWord<SVGCoordinates>(kSpaces, spaceName);
				   const DocumentLock lock(*self.shared);
				   const SVGGeometryRef& geometry = GeometryOf(*self.shared);
				   return MakeOutline(AskLong([&] { return geometry->GetOutline(self.element, space); }));
			   });
	module.def("_hits", &FindAt);
	module.def("_hits_in",
			   [](const Shared& self, const std::array<double, 4>& box, bool isInside) {
				   return FindIn(self, {box[0], box[1], box[2], box[3], false}, isInside);
			   });
	py::class_<NormalizeWish>(module, "NormalizeOptions")
		.def(py::init(
			[](std::string_view strokes, double flattening, double strokeTolerance, double grid, double precision,
			   std::string_view clips)
			{
				return NormalizeWish{
					{FindWord<SVGNormalizedStrokes>(kStrokes, strokes), flattening, strokeTolerance, grid, precision},
					FindWord<SVGNormalizedClips>(kClips, clips)};
			}));
	module.def(
		"_normalize",
		[](const Shared& self, const NormalizeWish& wish)
		{
			const DocumentLock lock(*self);
			const SVGGeometryRef& geometry = GeometryOf(*self);
			return NormalizedPaths{self, AskLong([&] { return geometry->NormalizeWith(wish.options, wish.clips); })};
		});
	module.def("_normalized",
			   [](SharedDocument& self, const NormalizeWish& wish, SharedDocument& result)
			   {
				   const DocumentLock lock(self);
				   const SVGGeometryRef& geometry = GeometryOf(self);
				   result.document = AskLong([&] { return geometry->NormalizeToDocument(wish.options, wish.clips); });
			   });
}

} // namespace orvan::python
