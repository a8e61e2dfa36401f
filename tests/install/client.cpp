// SPDX-License-Identifier: MIT
/// A small host: loads the SVG module and an icon, puts the icon into each of its states, and tells which colour its
/// visible layer has then.
#include <orvan/host/module_loader.h>
#include <vector_icon.h>

#include <cmath>
#include <cstdio>

using namespace orvan;

namespace
{

constexpr const char* kLayers[] = {"State:EnabledActivatedHighlight", "State:EnabledActivatedNoHighlight",
								   "State:EnabledDeactivatedHighlight", "State:EnabledDeactivatedNoHighlight"};

/// The first plain colour among the fills of a layer's elements, as "#rrggbb".
Result<String> FindColor(const SVGElementRef& layer)
{
	for (auto child = Cast<HierarchyObjectInterface>(layer)->GetFirstChild(); child; child = child->GetNextSibling())
	{
		const auto element = Cast<SVGElementInterface>(child);
		const SVGPaint fill = element->GetFill();
		// Absent from a file is not the same as black: an absent fill is inherited, or the element is no shape at all.
		if (!element->HasAttribute(SVGImportAttribute::fill) || fill.type != SVGPaintType::color)
			continue;
		char text[8];
		std::snprintf(text, sizeof text, "#%02lx%02lx%02lx", std::lround(fill.color.red * 255) & 0xff,
					  std::lround(fill.color.green * 255) & 0xff, std::lround(fill.color.blue * 255) & 0xff);
		return String::Create(text);
	}
	return NotFoundError("Layer '@' has no plain colour.", layer->GetId());
}

/// `ORVAN_TRY` leaves with the error of whatever fails, so that there is one place that handles errors: `main`.
Result<void> ShowStates(const char* file)
{
	const auto icon = ORVAN_TRY(CreateObject<VectorIconInterface>(kVectorIconClass));
	// The same object is a document; that is how it gets its file.
	const auto document = Cast<SVGDocumentInterface>(icon);
	ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath(file))));

	for (unsigned state = 0; state < std::size(kLayers); state++)
	{
		icon->SetState(static_cast<SVGIconState>(state));
		const auto layer = ORVAN_TRY(document->GetElementById(ORVAN_TRY(String::Create(kLayers[state]))));
		const bool isShown = layer->GetDisplay() == SVGDisplay::shown;
		std::printf("state %u: %s%s\n", state, ORVAN_TRY(FindColor(layer)).CString(), isShown ? "" : " (hidden)");
	}
	return {};
}

/// Loads the module, does the work, and unloads the module, which is refused while any of its objects is alive.
Result<void> Run(const char* moduleFile, const char* file)
{
	Module* module = ORVAN_TRY(Module::Load(moduleFile));
	ORVAN_TRY(ShowStates(file));
	return Module::Unload(module);
}

} // namespace

int main(int argc, char** argv)
{
	if (argc != 2)
	{
		std::fprintf(stderr, "Usage: %s ICON.svg\n", argv[0]);
		return 2;
	}
	const Result<void> result = Run(ORVAN_SVG_MODULE, argv[1]);
	if (!result.IsOk())
	{
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
		return 1;
	}
	return 0;
}
