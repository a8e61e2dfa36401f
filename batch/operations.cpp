// SPDX-License-Identifier: MIT
#include "batch/operations.h"

#include "batch/inflating.h"
#include "batch/sha256.h"
#include "orvan/host/diagnostic_sink.h"
#include "svg_import.h"
#include "svg_render_target.h"
#include "svg_source.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>
#include <unordered_map>

namespace orvan::batch
{
namespace
{

// Columns, in the order of their numbers ------------------------------------------------------------------------------

constexpr ColumnKind kPathColumns[] = {
	{"commands", "|u1", 1},
	{"points", "<f8", 2},
	{"command_offsets", "<i8", 1, true},
	{"point_offsets", "<i8", 1, true},
	{"fill_kinds", "|u1", 1},
	{"stroke_kinds", "|u1", 1},
	{"fills", "<f8", 3},
	{"strokes", "<f8", 3},
	{"fill_opacities", "<f8", 1},
	{"stroke_opacities", "<f8", 1},
	{"stroke_widths", "<f8", 1},
	{"fill_rules", "<i4", 1},
	{"stroke_caps", "<i4", 1},
	{"stroke_joins", "<i4", 1},
	{"stroke_miter_limits", "<f8", 1},
	{"inputs", "<i8", 1},         // Of each path: the number of its input.
	{"picture_inputs", "<i8", 1}, // Of each picture: the number of its input,
	{"picture_sizes", "<f8", 2},  // and its width and height.
	{"elements", "<i4", 1},       // Of each path: the place of its element in document order, runs of text counted.
};

constexpr ColumnKind kBoxColumns[] = {
	{"inputs", "<i8", 1},   // Of each element: the number of its input,
	{"elements", "<i4", 1}, // its place in document order, runs of text counted,
	{"kinds", "<i4", 1},    // its kind,
	{"fill", "<f8", 4},     // and its boxes: x, y, width, height; not numbers where there is none.
	{"stroke", "<f8", 4},   {"visual", "<f8", 4}, {"picture_inputs", "<i8", 1}, {"picture_sizes", "<f8", 2},
};

// Helpers -------------------------------------------------------------------------------------------------------------

[[noreturn]] void Fail(const Error& error)
{
	if (error.GetClass() == ErrorClass::outOfMemory)
		throw std::bad_alloc();
	throw std::runtime_error(std::string(error.GetMessage().View()));
}

template <typename T>
T Take(Result<T> result)
{
	if (!result.IsOk())
		Fail(result.GetError());
	return std::move(result).GetValue();
}

void Take(Result<void> result)
{
	if (!result.IsOk())
		Fail(result.GetError());
}

/// An input while it is worked on.
struct Turn
{
	const BatchOptions& options;
	std::int64_t number;
	Row& row;
	Shard& shard;
	std::vector<std::string>& said; ///< Diagnostics, of this thread.
};

/// Texts and numbers as an array of JSON.
class JsonList
{
public:
	void Add(std::int64_t number)
	{
		AddJson(std::to_string(number));
	}

	void Add(const String& text)
	{
		AddJson(ToJson(text.View()));
	}

	void AddJson(std::string_view json)
	{
		_json += _json.size() > 1 ? "," : "";
		_json += json;
	}

	std::string Take()
	{
		return std::move(_json) + ']';
	}

private:
	std::string _json = "[";
};

template <typename... Values>
std::string ToJsonList(const Values&... values)
{
	JsonList list;
	(list.Add(values), ...);
	return list.Take();
}

// Loading -------------------------------------------------------------------------------------------------------------

/// Sets what became of a load. The result is true when there is a picture.
bool TakeReport(const SVGImportReport& report, Row& row)
{
	const bool isLoaded =
		report.outcome == SVGImportOutcome::loaded || report.outcome == SVGImportOutcome::loadedWithFindings;
	row.Set("outcome", isLoaded ? "done" : "refused");
	row.Set("finding_count", report.findingCount);
	if (isLoaded)
		return true;
	row.Set("line", std::int64_t{0});
	row.Set("column", std::int64_t{0});
	row.Set("message", report.outcome == SVGImportOutcome::empty ? "empty" : "no svg element");
	for (const SVGImportFinding& finding : report.findings)
	{
		if (finding.level != SVGFindingLevel::critical)
			continue;
		row.Set("line", finding.line);
		row.Set("column", finding.column);
		row.Set("message", finding.message.View());
		break;
	}
	return false;
}

/// A document from bytes; null when they are refused.
SVGDocumentRef Load(std::string_view bytes, const Url& base, const SVGImportOptions& options, Row& row)
{
	const SVGDocumentRef document = Take(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	const auto import = Cast<SVGDocumentImportInterface>(document);
	Take(import->SetImportOptions(options));
	Take(import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), base));
	return TakeReport(Take(import->GetImportReport()), row) ? document : SVGDocumentRef();
}

SVGImportOptions MakeImportOptions(const BatchOptions& options)
{
	SVGImportOptions result;
	const bool repairs = options.operation == Operation::repair;
	result.isComplete = options.isComplete || repairs;
	result.isTolerant = options.isTolerant || repairs;
	result.keepsSource = repairs;
	result.styleSheet = Take(String::Create(options.styleSheet));
	return result;
}

// Operations ----------------------------------------------------------------------------------------------------------

void Report(const SVGDocumentRef& document, const Turn& turn)
{
	JsonList findings;
	for (const SVGImportFinding& finding : Take(Cast<SVGDocumentImportInterface>(document)->GetImportReport()).findings)
	{
		findings.AddJson(ToJsonList(finding.line, finding.column, finding.elementTag, finding.elementId,
									finding.attribute, finding.message));
	}
	turn.row.SetJson("findings", findings.Take());
}

void Check(const SVGDocumentRef&, const Turn&)
{
}

SVGGeometryRef MakeGeometry(const SVGDocumentRef& document, const BatchOptions& options)
{
	const SVGGeometryRef geometry = Take(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
	SVGGeometryOptions wanted;
	wanted.deadline = options.deadline;
	Take(geometry->SetDocument(document, wanted));
	return geometry;
}

/// Says in the row what was left out of a picture.
void TellLeftOut(const Turn& turn)
{
	JsonList list;
	for (const std::string& text : turn.said)
		list.AddJson(ToJson(text));
	if (!turn.said.empty())
		turn.row.SetJson("left_out", list.Take());
}

/// The next element in document order, without recursion: trees may be deep. Null after the last one.
HierarchyObjectRef GetNext(HierarchyObjectRef at)
{
	HierarchyObjectRef next = at->GetFirstChild();
	while (!next && at)
	{
		next = at->GetNextSibling();
		at = Take(at->GetParent());
	}
	return next;
}

/// The places of elements in document order, runs of text counted; -1 for what is not in the tree.
std::vector<std::int32_t> FindPlaces(const SVGDocumentRef& document, const BaseArray<SVGElementRef>& elements)
{
	std::unordered_map<const ObjectBase*, std::int32_t> places;
	std::int32_t index = 0;
	for (auto at = Cast<HierarchyObjectInterface>(document->GetRootElement()); at; at = GetNext(at))
		places.emplace(at->GetObject(), index++);
	std::vector<std::int32_t> found;
	for (const SVGElementRef& element : elements)
	{
		const auto place = places.find(element->GetObject());
		found.push_back(place != places.end() ? place->second : -1);
	}
	return found;
}

void MakeColumns(const SVGDocumentRef& document, const Turn& turn)
{
	const SVGGeometryRef geometry = MakeGeometry(document, turn.options);
	const SVGNormalizedPaths paths = Take(geometry->NormalizeWith(turn.options.normalize, turn.options.clips));
	Columns& columns = turn.shard.columns;
	columns.Add(0, paths.commands);
	columns.Add(1, paths.points);
	columns.AddOffsets(2, paths.commandOffsets);
	columns.AddOffsets(3, paths.pointOffsets);
	columns.Add(4, paths.fillKinds);
	columns.Add(5, paths.strokeKinds);
	columns.Add(6, paths.fills);
	columns.Add(7, paths.strokes);
	columns.Add(8, paths.fillOpacities);
	columns.Add(9, paths.strokeOpacities);
	columns.Add(10, paths.strokeWidths);
	columns.Add(11, paths.fillRules);
	columns.Add(12, paths.strokeCaps);
	columns.Add(13, paths.strokeJoins);
	columns.Add(14, paths.strokeMiterLimits);
	const std::vector<std::int64_t> numbers(paths.elements.GetCount(), turn.number);
	columns.Add(15, numbers.data(), numbers.size());
	columns.Add(16, &turn.number, 1);
	columns.Add(17, &paths.size, 1);
	const std::vector<std::int32_t> places = FindPlaces(document, paths.elements);
	columns.Add(18, places.data(), places.size());
	turn.row.Set("paths", static_cast<std::int64_t>(paths.elements.GetCount()));
	turn.row.Set("unclipped", paths.unclippedCount);
	TellLeftOut(turn);
}

void MakeBoxes(const SVGDocumentRef& document, const Turn& turn)
{
	const SVGGeometryRef geometry = MakeGeometry(document, turn.options);
	Columns& columns = turn.shard.columns;
	std::int64_t count = 0;
	std::int32_t index = 0;
	for (auto at = Cast<HierarchyObjectInterface>(document->GetRootElement()); at; at = GetNext(at), index++)
	{
		const auto element = Cast<SVGElementInterface>(at);
		if (!element)
			continue;
		std::array<SVGBox, 3> boxes;
		for (std::size_t kind = 0; kind < boxes.size(); kind++)
		{
			Result<SVGBox> box = geometry->GetBox(element, static_cast<SVGBoxKind>(kind), SVGCoordinates::view);
			if (box.IsOk() || box.GetError().GetClass() != ErrorClass::notFound)
				boxes[kind] = Take(std::move(box));
		}
		if (boxes[0].isEmpty && boxes[1].isEmpty && boxes[2].isEmpty)
			continue;
		const auto elementKind = static_cast<std::int32_t>(element->GetElementType());
		columns.Add(0, &turn.number, 1);
		columns.Add(1, &index, 1);
		columns.Add(2, &elementKind, 1);
		for (std::size_t kind = 0; kind < boxes.size(); kind++)
		{
			constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
			const SVGBox box = boxes[kind].isEmpty ? SVGBox{kNone, kNone, kNone, kNone} : boxes[kind];
			const double numbers[] = {box.x, box.y, box.width, box.height};
			columns.Add(3 + kind, numbers, 4);
		}
		count++;
	}
	const Vector2d size = Take(geometry->GetViewSize());
	columns.Add(6, &turn.number, 1);
	columns.Add(7, &size, 1);
	turn.row.Set("elements", count);
	TellLeftOut(turn);
}

/// The name of an input's file in the shard.
std::string GetFileName(const Turn& turn, const char* suffix)
{
	char name[48];
	std::snprintf(name, sizeof(name), "%010lld%s", static_cast<long long>(turn.number), suffix);
	return name;
}

/// A file in memory, for what only writes to files by their names.
class ScratchFile
{
public:
	ScratchFile() : _file(memfd_create("picture", MFD_CLOEXEC))
	{
		if (_file < 0)
			throw std::bad_alloc();
	}

	ScratchFile(const ScratchFile&) = delete;

	~ScratchFile()
	{
		close(_file);
	}

	std::string GetPath() const
	{
		return "/proc/self/fd/" + std::to_string(_file);
	}

private:
	int _file;
};

void MakeThumbnail(const SVGDocumentRef& document, const Turn& turn)
{
	SVGRenderOptions options;
	options.width = static_cast<double>(turn.options.thumbnailSize);
	options.height = options.width;
	options.deadline = turn.options.deadline;
	const SVGContextRef context = Take(CreateObject<SVGContextInterface>(kSVGContextClass));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	if (!target)
		throw std::runtime_error("The renderer that is there cannot write pictures.");
	Take(target->Begin(document, options));
	Take(DrawSVGElement(context, document->GetRootElement()));
	const ScratchFile file;
	Take(target->Finish(Take(String::Create(file.GetPath()))));
	turn.shard.AddFile(GetFileName(turn, ".png"), ReadWholeFile(file.GetPath()));
	TellLeftOut(turn);
}

void Repair(const SVGDocumentRef& document, const Turn& turn)
{
	const auto source = Cast<SVGDocumentSourceInterface>(document);
	JsonList list;
	bool isChanged = false;
	for (const SVGRepair& repair : Take(source->Repair()))
	{
		isChanged = true;
		list.AddJson(ToJsonList(repair.line, repair.column, repair.elementTag, repair.elementId, repair.attribute,
								repair.before, repair.after));
	}
	turn.row.SetJson("repairs", list.Take());
	if (!isChanged)
		return;
	const BaseArray<char> bytes = Take(source->SaveToMemory(SVGSaveOptions()));
	std::string content(bytes.begin(), bytes.GetCount());
	turn.shard.AddFile(GetFileName(turn, content.starts_with("\x1f\x8b") ? ".svgz" : ".svg"), std::move(content));
}

/// What an operation does and needs, by its number.
struct OperationRow
{
	void (*run)(const SVGDocumentRef& document, const Turn& turn);
	std::span<const ColumnKind> columns;
	bool hasFiles;
	bool needsGeometry;
	bool needsRenderer;
};

constexpr std::array<OperationRow, kOperationNames.size()> kOperations = {{
	{&Report, {}, false, false, false},
	{&Check, {}, false, false, false},
	{&MakeColumns, kPathColumns, false, true, false},
	{&MakeBoxes, kBoxColumns, false, true, false},
	{&MakeThumbnail, {}, true, false, true},
	{&Repair, {}, true, false, false},
}};

const OperationRow& RowOf(Operation operation)
{
	return kOperations[static_cast<std::size_t>(operation)];
}

/// Works on one input, whose row says what became of it.
void RunInput(const Input& input, const Turn& turn, const SVGImportOptions& import, InputReader& reader)
{
	std::string bytes;
	try
	{
		bytes = reader.Read(input);
	}
	catch (const std::runtime_error& error)
	{
		turn.row.Set("outcome", "unreadable");
		turn.row.Set("message", error.what());
		return;
	}
	turn.row.Set("bytes", static_cast<std::int64_t>(bytes.size()));
	turn.row.Set("sha256", GetSha256(bytes));
	// The complete import unpacks by itself.
	if (!import.isComplete && bytes.starts_with("\x1f\x8b"))
		bytes = Inflate(bytes);
	// Beside an archive there is nothing that its members could refer to.
	const Url base = input.place.empty() ? Take(Url::FromPath(input.path)) : Url();
	const SVGDocumentRef document = Load(bytes, base, import, turn.row);
	turn.said.clear(); // The report said it.
	if (document)
		RowOf(turn.options.operation).run(document, turn);
}

} // namespace

bool NeedsGeometry(Operation operation)
{
	return RowOf(operation).needsGeometry;
}

bool NeedsRenderer(Operation operation)
{
	return RowOf(operation).needsRenderer;
}

ChunkCounts RunChunk(const Chunk& chunk, const BatchOptions& options, InputReader& reader, std::int64_t& place)
{
	const OperationRow& operation = RowOf(options.operation);
	const SVGImportOptions import = MakeImportOptions(options);
	const std::atomic_ref<std::int64_t> at(place);
	Shard shard(operation.columns, operation.hasFiles);
	ChunkCounts counts;
	std::vector<std::string> said;
	const ThreadDiagnosticSink sink([](const Diagnostic& diagnostic, void* texts)
									{ static_cast<std::vector<std::string>*>(texts)->emplace_back(diagnostic.text); },
									&said);
	for (std::size_t i = 0; i < chunk.inputs.size(); i++)
	{
		const std::int64_t number = chunk.first + static_cast<std::int64_t>(i);
		at = number;
		Row row;
		row.Set("number", number);
		row.Set("input", chunk.inputs[i].name);
		const auto failure = chunk.failures.find(number);
		const Shard::Mark mark = shard.GetMark();
		const auto fail = [&](const char* message)
		{
			shard.GoBackTo(mark);
			row.Set("outcome", "failed");
			row.Set("message", message);
			counts.notDone++;
		};
		try
		{
			if (failure != chunk.failures.end())
				fail(failure->second.c_str());
			else
			{
				RunInput(chunk.inputs[i], {options, number, row, shard, said}, import, reader);
				(row.IsDone() ? counts.done : counts.notDone)++;
			}
		}
		catch (const std::bad_alloc&)
		{
			fail("It needs more memory than is allowed.");
		}
		catch (const std::exception& error)
		{
			fail(error.what());
		}
		shard.AddRow(row);
	}
	at = -1;
	shard.Write(chunk.folder);
	return counts;
}

} // namespace orvan::batch
