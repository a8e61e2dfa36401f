// SPDX-License-Identifier: MIT
#include "color_argument.h"

#include "console.h"
#include "document_loading.h"
#include "orvan/host/memory_files.h"

namespace orvan::program
{
namespace
{
constexpr const char* kName = "color-argument.svg";
} // namespace

std::optional<Color> ParseColor(const std::string& text)
{
	const UsageFailure notAColor("'" + text + "' is no color.");
	if (text.find_first_of("<&\"") != text.npos)
		throw notAColor;
	// The module knows what SVG calls a colour, so it is asked by a file that consists of one.
	const std::string file = "<svg><g fill=\"" + text + "\"/></svg>";
	Unwrap(MemoryFiles::Publish(kName, file));
	const LoadOutcome outcome = LoadDocument(std::string("memory:") + kName, {});
	MemoryFiles::Withdraw(kName);
	if (outcome.refusal)
		throw notAColor;
	const auto group = Cast<HierarchyObjectInterface>(outcome.document->GetRootElement())->GetFirstChild();
	const auto element = Cast<SVGElementInterface>(group);
	const SVGPaint paint = element->GetFill();
	if (!element->HasAttribute(SVGImportAttribute::fill) || paint.type == SVGPaintType::reference)
		throw notAColor;
	return paint.type == SVGPaintType::color ? std::optional(paint.color) : std::nullopt;
}

} // namespace orvan::program
