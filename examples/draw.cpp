// SPDX-License-Identifier: MIT
/// Draws a file with a renderer that is named by its module: draw RENDERER.so FILE.svg PICTURE
#include <orvan/host/module_loader.h>
#include <svg_render_target.h>

#include <cstdio>

using namespace orvan;

namespace
{

Result<void> Draw(const char* file, const char* picture)
{
	const auto document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath(file))));

	const auto context = ORVAN_TRY(CreateObject<SVGContextInterface>(kSVGContextClass));
	const auto target = Cast<SVGRenderTargetInterface>(context);
	if (!target)
		return IllegalStateError("The renderer makes no pictures.");
	ORVAN_TRY(target->Begin(document, SVGRenderOptions()));
	ORVAN_TRY(DrawSVGElement(context, document->GetRootElement()));
	return target->Finish(ORVAN_TRY(String::Create(picture)));
}

/// The renderer builds on the SVG module: it is loaded after it and unloaded before it, when no object is left.
Result<void> Run(char** arguments)
{
	Module* const svg = ORVAN_TRY(Module::Load(ORVAN_SVG_MODULE));
	Module* const renderer = ORVAN_TRY(Module::Load(arguments[1]));
	ORVAN_TRY(Draw(arguments[2], arguments[3]));
	ORVAN_TRY(Module::Unload(renderer));
	return Module::Unload(svg);
}

} // namespace

int main(int argc, char** argv)
{
	const Result<void> result =
		argc == 4 ? Run(argv) : IllegalArgumentError("Usage: @ RENDERER.so FILE.svg PICTURE", argv[0]);
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk() ? 0 : 1;
}
