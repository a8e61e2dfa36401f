// SPDX-License-Identifier: MIT
#include "normalized_output.h"

#include "batch/array_archive.h"
#include "console.h"
#include "geometry_access.h"
#include "json_writer.h"
#include "path_text.h"
#include "svg_source.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace orvan::program
{
namespace
{

constexpr double kMillimetres = 25.4 / 96.0; ///< Of a pixel.

struct FormatRow
{
	NormalizedFormat format;
	std::string_view name;
	std::string_view suffix;
	bool needsLines;
	std::string (*write)(const SVGNormalizedPaths& paths); ///< Null for documents, which are no columns.
};

/// Collects what is printed.
class TextOutput final : public Output
{
public:
	void Print(std::string_view piece) override
	{
		text += piece;
	}

	void PrintError(std::string_view) override
	{
	}

	std::string text;
};

void WritePaint(JsonWriter& json, std::string_view name, SVGNormalizedPaint kind, const Color& color, double opacity)
{
	if (kind == SVGNormalizedPaint::none)
		return;
	json.Key(name);
	json.BeginObject();
	json.Key("color");
	json.BeginArray();
	for (const Float channel : {color.red, color.green, color.blue})
		json.Value(channel);
	json.EndArray();
	json.Member("opacity", opacity);
	if (kind == SVGNormalizedPaint::server)
		json.Member("isServer", true);
	json.EndObject();
}

std::string WriteJson(const SVGNormalizedPaths& paths)
{
	TextOutput output;
	JsonWriter json(output);
	json.BeginObject();
	json.Member("width", paths.size.x);
	json.Member("height", paths.size.y);
	json.Member("unclipped", paths.unclippedCount);
	json.Key("paths");
	json.BeginArray();
	for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
	{
		json.NewLine(1);
		json.BeginObject();
		if (const String id = paths.elements[i]->GetId(); !id.IsEmpty())
			json.Member("id", id.View());
		WritePaint(json, "fill", paths.fillKinds[i], paths.fills[i], paths.fillOpacities[i]);
		WritePaint(json, "stroke", paths.strokeKinds[i], paths.strokes[i], paths.strokeOpacities[i]);
		if (paths.strokeKinds[i] != SVGNormalizedPaint::none)
			json.Member("strokeWidth", paths.strokeWidths[i]);
		if (paths.fillRules[i] == SVGFillRule::evenodd)
			json.Member("fillRule", "evenodd");
		json.Member("d", ToPathData(paths, i));
		json.EndObject();
	}
	json.EndArray();
	json.EndObject();
	json.Finish();
	return std::move(output.text);
}

/// Calls `begin(point)` and `goOn(point)` for all lines of a path; closing is a line.
template <typename Begin, typename GoOn>
void ForEachLine(const SVGNormalizedPaths& paths, std::size_t path, Begin begin, GoOn goOn)
{
	auto point = static_cast<std::size_t>(paths.pointOffsets[path]);
	Vector2d start;
	for (auto at = static_cast<std::size_t>(paths.commandOffsets[path]);
		 at < static_cast<std::size_t>(paths.commandOffsets[path + 1]); at++)
	{
		const auto command = static_cast<SVGPathCommandType>(paths.commands[at]);
		if (command == SVGPathCommandType::close)
		{
			goOn(start);
			continue;
		}
		point += command == SVGPathCommandType::cubic ? 2 : 0;
		const Vector2d& next = paths.points[point++];
		if (command == SVGPathCommandType::move)
		{
			start = next;
			begin(next);
		}
		else
			goOn(next);
	}
}

std::string WriteHpgl(const SVGNormalizedPaths& paths)
{
	constexpr double kUnits = 40.0 * kMillimetres;
	std::string text = "IN;SP1;\n";
	const auto add = [&](const char* command, const Vector2d& point)
	{
		char line[96];
		std::snprintf(line, sizeof(line), "%s%.0f,%.0f;\n", command, point.x * kUnits + 0.0,
					  (paths.size.y - point.y) * kUnits + 0.0);
		text += line;
	};
	for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
	{
		ForEachLine(
			paths, i, [&](const Vector2d& point) { add("PU", point); },
			[&](const Vector2d& point) { add("PD", point); });
	}
	return text + "PU;SP0;\n";
}

std::string WriteGcode(const SVGNormalizedPaths& paths)
{
	std::string text = "G21\nG90\nG0 Z1\n";
	bool isDown = false;
	const auto add = [&](const char* command, const Vector2d& point)
	{
		char line[96];
		std::snprintf(line, sizeof(line), "%s X%.4f Y%.4f\n", command, point.x * kMillimetres + 0.0,
					  (paths.size.y - point.y) * kMillimetres + 0.0);
		text += line;
	};
	const auto begin = [&](const Vector2d& point)
	{
		text += isDown ? "G0 Z1\n" : "";
		isDown = false;
		add("G0", point);
	};
	const auto goOn = [&](const Vector2d& point)
	{
		text += isDown ? "" : "G1 Z-1 F300\n";
		add(isDown ? "G1" : "G1 F1200", point);
		isDown = true;
	};
	for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
		ForEachLine(paths, i, begin, goOn);
	return text + (isDown ? "G0 Z1\n" : "") + "M2\n";
}

std::string WriteArrays(const SVGNormalizedPaths& paths)
{
	batch::ArrayArchive archive;
	const std::size_t count = paths.elements.GetCount();
	archive.Add("commands", "|u1", paths.commands.begin(), paths.commands.GetCount());
	archive.Add("points", "<f8", paths.points.begin(), paths.points.GetCount(), 2);
	archive.Add("command_offsets", "<i8", paths.commandOffsets.begin(), count + 1);
	archive.Add("point_offsets", "<i8", paths.pointOffsets.begin(), count + 1);
	archive.Add("fill_kinds", "|u1", paths.fillKinds.begin(), count);
	archive.Add("stroke_kinds", "|u1", paths.strokeKinds.begin(), count);
	archive.Add("fills", "<f8", paths.fills.begin(), count, 3);
	archive.Add("strokes", "<f8", paths.strokes.begin(), count, 3);
	archive.Add("fill_opacities", "<f8", paths.fillOpacities.begin(), count);
	archive.Add("stroke_opacities", "<f8", paths.strokeOpacities.begin(), count);
	archive.Add("stroke_widths", "<f8", paths.strokeWidths.begin(), count);
	archive.Add("fill_rules", "<i4", paths.fillRules.begin(), count);
	// Elements by their indices: the way down from the root to each, one after the other.
	std::vector<std::int32_t> ways;
	std::vector<std::int64_t> offsets{0};
	for (const SVGElementRef& element : paths.elements)
	{
		for (const std::uint32_t index : GetElementPath(element))
			ways.push_back(static_cast<std::int32_t>(index));
		offsets.push_back(static_cast<std::int64_t>(ways.size()));
	}
	archive.Add("element_paths", "<i4", ways.data(), ways.size());
	archive.Add("element_offsets", "<i8", offsets.data(), offsets.size());
	archive.Add("size", "<f8", &paths.size, 2);
	return archive.Take();
}

constexpr FormatRow kFormats[] = {
	{NormalizedFormat::svg, "svg", ".svg", false, nullptr},
	{NormalizedFormat::json, "json", ".json", false, &WriteJson},
	{NormalizedFormat::hpgl, "hpgl", ".hpgl", true, &WriteHpgl},
	{NormalizedFormat::gcode, "gcode", ".gcode", true, &WriteGcode},
	{NormalizedFormat::arrays, "arrays", ".npz", false, &WriteArrays},
};

const FormatRow& RowOf(NormalizedFormat format)
{
	return kFormats[static_cast<std::size_t>(format)];
}

} // namespace

std::optional<NormalizedFormat> FindFormat(std::string_view name)
{
	for (const FormatRow& row : kFormats)
	{
		if (row.name == name || row.suffix == name)
			return row.format;
	}
	return std::nullopt;
}

std::string_view GetSuffix(NormalizedFormat format)
{
	return RowOf(format).suffix;
}

bool NeedsLines(NormalizedFormat format)
{
	return RowOf(format).needsLines;
}

std::string FormatNormalized(const SVGNormalizedPaths& paths, NormalizedFormat format)
{
	return RowOf(format).write(paths);
}

std::string FormatNormalized(const SVGDocumentRef& document)
{
	const auto source = Cast<SVGDocumentSourceInterface>(document);
	if (!source)
		throw Failure("The module's documents cannot be saved");
	const BaseArray<char> bytes = Unwrap(source->SaveToMemory({}));
	return {bytes.begin(), bytes.end()};
}

} // namespace orvan::program
