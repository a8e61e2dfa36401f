// SPDX-License-Identifier: MIT
#include "batch/operations.h"

#include "documents.h"

#include <filesystem>
#include <pybind11/stl.h>

namespace orvan::python
{
namespace
{

using batch::BatchOptions;

/// A path as Python has it, whatever bytes it is made of.
py::object FromPath(const std::string& path)
{
	return py::reinterpret_steal<py::object>(
		PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
}

std::string ToPath(const py::handle& path)
{
	const auto bytes = py::reinterpret_steal<py::bytes>(PyUnicode_EncodeFSDefault(path.ptr()));
	if (!bytes)
		throw py::error_already_set();
	return std::string(bytes);
}

std::vector<std::string> ToPaths(const py::sequence& sequence)
{
	std::vector<std::string> paths;
	for (const py::handle path : sequence)
		paths.push_back(ToPath(path));
	return paths;
}

BatchOptions MakeOptions(const std::string& operation, bool isComplete, bool isTolerant, const std::string& styleSheet,
						 std::int64_t size, const std::string& strokes, double strokeTolerance, double flattening,
						 double grid, double precision, const std::string& clips, double deadline, std::int64_t memory,
						 std::int64_t chunkSize)
{
	BatchOptions options;
	const auto found = batch::FindOperation(operation);
	if (!found)
		throw py::value_error("There is no operation " + operation + ".");
	if (strokes != "kept" && strokes != "outlined")
		throw py::value_error("Strokes are \"kept\" or \"outlined\".");
	options.operation = *found;
	options.isComplete = isComplete;
	options.isTolerant = isTolerant;
	options.styleSheet = styleSheet;
	options.thumbnailSize = size;
	options.normalize = {strokes == "kept" ? SVGNormalizedStrokes::kept : SVGNormalizedStrokes::outlined, flattening,
						 strokeTolerance, grid, precision};
	const auto foundClips = batch::FindClips(clips);
	if (!foundClips)
		throw py::value_error("Clip paths are \"ignored\" or \"applied\".");
	options.clips = *foundClips;
	options.deadline = deadline;
	options.memory = memory;
	options.chunkSize = chunkSize;
	if (const std::string fault = batch::FindFault(options); !fault.empty())
		throw py::value_error(fault);
	return options;
}

/// Runs a chunk; `place` is memory that others watch.
void RunChunk(const std::string& folder, std::int64_t first, std::string_view inputs,
			  const std::map<std::int64_t, std::string>& failures, const BatchOptions& options,
			  batch::InputReader& reader, const py::buffer& place)
{
	const batch::Chunk chunk{folder, first, batch::UnpackInputs(inputs), failures};
	const py::buffer_info memory = place.request(true);
	if (memory.size * memory.itemsize < static_cast<py::ssize_t>(sizeof(std::int64_t)))
		throw py::value_error("There is no room for a number.");
	if (batch::NeedsGeometry(options.operation))
		RequireModule("net.orvan.svg.geometry.so");
	if (batch::NeedsRenderer(options.operation))
		RequireModule("net.orvan.svg.cairo.so");
	const LongCall others;
	batch::RunChunk(chunk, options, reader, *static_cast<std::int64_t*>(memory.ptr));
}

/// What the library throws, as Python has it.
// NOLINTNEXTLINE(performance-unnecessary-value-param): pybind11 gives it by value.
void Translate(std::exception_ptr exception)
{
	try
	{
		if (exception)
			std::rethrow_exception(exception);
	}
	catch (const batch::MissingSource& error)
	{
		PyErr_SetString(PyExc_FileNotFoundError, error.what());
	}
	catch (const std::filesystem::filesystem_error& error)
	{
		PyErr_SetString(PyExc_OSError, error.what());
	}
}

} // namespace

void DefineBatches(py::module_& module)
{
	py::register_exception_translator(&Translate);
	module.attr("operations") = py::tuple(py::cast(batch::kOperationNames));
	py::class_<BatchOptions>(module, "BatchOptions")
		.def(py::init(&MakeOptions), py::kw_only(), py::arg("operation") = "report", py::arg("complete") = true,
			 py::arg("tolerant") = true, py::arg("style_sheet") = "", py::arg("size") = 64, py::arg("strokes") = "kept",
			 py::arg("stroke_tolerance") = 0.01, py::arg("flatten") = 0.0, py::arg("grid") = 0.0,
			 py::arg("precision") = 0.0, py::arg("clips") = "ignored", py::arg("deadline") = 30.0,
			 py::arg("memory") = 0, py::arg("chunk_size") = 2000);
	py::class_<batch::InputList>(module, "InputList")
		.def(py::init([](const py::sequence& sources) { return std::make_unique<batch::InputList>(ToPaths(sources)); }),
			 py::arg("sources"))
		.def("take",
			 [](batch::InputList& self, std::size_t count)
			 {
				 std::vector<batch::Input> inputs;
				 {
					 const py::gil_scoped_release others;
					 inputs = self.Take(count);
				 }
				 // Nobody in Python looks at them: made into objects and text they would take as long as the listing.
				 return py::make_tuple(py::bytes(batch::PackInputs(inputs)), inputs.size());
			 });
	py::class_<batch::InputReader>(module, "InputReader").def(py::init());
	module.def("begin_run", [](const py::str& folder, const py::sequence& sources, const BatchOptions& options)
			   { batch::BeginRun(ToPath(folder), batch::MakeManifest(ToPaths(sources), options)); });
	module.def("get_chunk_folder", [](const py::str& folder, std::int64_t first, std::int64_t size)
			   { return FromPath(batch::GetChunkFolder(ToPath(folder), first, size)); });
	module.def("run_chunk", [](const py::str& folder, std::int64_t first, const py::bytes& inputs,
							   const std::map<std::int64_t, std::string>& failures, const BatchOptions& options,
							   batch::InputReader& reader, const py::buffer& place)
			   { RunChunk(ToPath(folder), first, inputs, failures, options, reader, place); });
}

} // namespace orvan::python
