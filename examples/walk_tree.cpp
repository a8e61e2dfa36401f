// SPDX-License-Identifier: MIT
/// Prints the shapes of a file with their fills and their places: walk_tree FILE.svg
#include <orvan/host/module_loader.h>
#include <svg_base.h>

#include <cstdio>

using namespace orvan;

namespace
{

/// What elements inherit from those above them, as far as this program cares.
struct Inherited
{
	SVGPaint fill;
};

Result<void> PrintShape(const SVGElementRef& element, const Inherited& inherited)
{
	const Vector2d place = ORVAN_TRY(element->GetWorldTransform()).Apply({});
	const char* const id = element->GetId().IsEmpty() ? "(no id)" : element->GetId().CString();
	std::printf("%s at %g %g", id, place.x, place.y);
	if (const auto path = Cast<SVGPathElementInterface>(element))
		std::printf(", %zu commands", ORVAN_TRY(path->GetPath()).GetCount());
	const SVGPaint& fill = inherited.fill;
	if (fill.type == SVGPaintType::color)
		std::printf(", filled %g %g %g", fill.color.red, fill.color.green, fill.color.blue);
	std::printf("\n");
	return {};
}

/// Visits an element and everything below it in document order. The walk recurses; files nest 1,024 deep at most.
Result<void> Walk(const SVGElementRef& element, Inherited inherited)
{
	// A getter tells what the element itself says, and SVG's initial value when it says nothing.
	if (element->HasAttribute(SVGImportAttribute::fill))
		inherited.fill = element->GetFill();
	switch (element->GetElementType())
	{
	case SVGImportElementKind::path:
	case SVGImportElementKind::rect:
	case SVGImportElementKind::circle:
	case SVGImportElementKind::line:
		ORVAN_TRY(PrintShape(element, inherited));
		break;
	default:
		break;
	}
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		ORVAN_TRY(Walk(Cast<SVGElementInterface>(child), inherited));
	return {};
}

Result<void> PrintTree(const char* file)
{
	const auto document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath(file))));
	return Walk(document->GetRootElement(), {});
}

} // namespace

int main(int argc, char** argv)
{
	const auto run = [&]() -> Result<void>
	{
		Module* const module = ORVAN_TRY(Module::Load(ORVAN_SVG_MODULE));
		ORVAN_TRY(PrintTree(argv[1]));
		return Module::Unload(module);
	};
	const Result<void> result = argc == 2 ? run() : IllegalArgumentError("Usage: @ FILE.svg", argv[0]);
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk() ? 0 : 1;
}
