// SPDX-License-Identifier: MIT
/// Writes what a pen plotter does to draw a file, in millimetres: plotter FILE.svg > FILE.gcode
#include <orvan/host/module_loader.h>
#include <svg_geometry.h>
#include <svg_import.h>

#include <cstdio>

using namespace orvan;

namespace
{

Result<void> Plot(const char* file)
{
	const auto document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	SVGImportOptions import;
	import.isComplete = import.isTolerant = true;
	ORVAN_TRY(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(import));
	ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath(file))));

	// Transforms, uses, styles and clip paths are resolved in the result; here only lines are left of it.
	const auto geometry = ORVAN_TRY(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
	ORVAN_TRY(geometry->SetDocument(document, {}));
	SVGNormalizeOptions options;
	options.flattening = 0.05;
	const SVGNormalizedPaths paths = ORVAN_TRY(geometry->NormalizeWith(options, SVGNormalizedClips::applied));

	const auto go = [&](const char* command, const Vector2d& point)
	{
		constexpr double kMillimetres = 25.4 / 96.0; // Of a pixel; on paper, y goes up.
		std::printf("%s X%.2f Y%.2f\n", command, point.x * kMillimetres, (paths.size.y - point.y) * kMillimetres);
	};
	std::puts("G21");
	Vector2d start;
	std::size_t next = 0;
	for (const std::uint8_t command : paths.commands) // 0 move, 1 line, 3 close.
	{
		const Vector2d point = command == 3 ? start : paths.points[next++];
		if (command == 0)
			start = point;
		go(command == 0 ? "G0" : "G1", point);
	}
	return {};
}

} // namespace

int main(int argc, char** argv)
{
	const Result<Module*> modules[] = {Module::Load(ORVAN_SVG_MODULE), Module::Load(ORVAN_SVG_GEOMETRY_MODULE)};
	const Result<void> result = argc == 2 ? Plot(argv[1]) : IllegalArgumentError("Usage: @ FILE.svg", argv[0]);
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk() && modules[1].IsOk() ? 0 : 1;
}
