// SPDX-License-Identifier: MIT
#include "picture.h"

#include "console.h"

#include <filesystem>

namespace orvan::program
{
namespace
{
constexpr const char* kPageSuffix = ".pdf";
constexpr const char* kPixelSuffix = ".png";
} // namespace

void WritePicture(const SVGDocumentRef& document, SVGRenderOptions options, const std::string& path)
{
	// Whoever has registered the class draws; this program knows no renderer by name.
	Result<SVGContextRef> created = CreateObject<SVGContextInterface>(kSVGContextClass);
	if (!created.IsOk() && created.GetError().GetClass() == ErrorClass::notFound)
		throw Failure("There is no renderer: " + std::string(created.GetError().GetMessage().View()));
	const SVGContextRef context = Unwrap(std::move(created));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	if (!target)
		throw Failure("The renderer that is there cannot write pictures.");

	const bool isPage = std::filesystem::path(path).extension() == kPageSuffix;
	options.output = isPage ? SVGRenderOutput::page : SVGRenderOutput::pixels;
	Unwrap(target->Begin(document, options));
	Unwrap(DrawSVGElement(context, document->GetRootElement()));
	Unwrap(target->Finish(Unwrap(String::Create(path))));
}

std::string CheckPictureName(const std::string& path)
{
	const std::filesystem::path suffix = std::filesystem::path(path).extension();
	if (suffix == kPixelSuffix || suffix == kPageSuffix)
		return {};
	return "A picture's name ends in .png or .pdf, unlike " + path;
}

} // namespace orvan::program
