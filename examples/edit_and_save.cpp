// SPDX-License-Identifier: MIT
/// Repaints what a CSS selector finds, puts a background below the picture, and saves the file; every line that this
/// does not concern stays as it was: edit_and_save FILE.svg SELECTOR COLOR BACKGROUND
#include <orvan/host/module_loader.h>
#include <svg_edit.h>
#include <svg_source.h>

#include <cstdio>

using namespace orvan;

namespace
{

/// What was asked for, as texts of the host.
struct Request
{
	String selector;
	String color;
	String background;
};

/// An observer is called after every change, on the thread that makes it. A program with a window would draw again.
void Count(void* context, const SVGChange& change) noexcept
{
	if (change.kind == SVGChangeKind::attribute || change.kind == SVGChangeKind::inserted)
		++*static_cast<int*>(context);
}

/// A background as large as the picture, at its bottom.
Result<void> AddBackground(const SVGDocumentRef& document, const SVGDocumentSourceRef& source, const String& color)
{
	const auto rect = ORVAN_TRY(CreateObject<SVGElementInterface>(kSVGRectElementClass));
	const String full = ORVAN_TRY(String::Create("100%"));
	ORVAN_TRY(source->SetAttributeText(rect, ORVAN_TRY(String::Create("width")), full));
	ORVAN_TRY(source->SetAttributeText(rect, ORVAN_TRY(String::Create("height")), full));
	ORVAN_TRY(source->SetAttributeText(rect, ORVAN_TRY(String::Create("fill")), color));
	const auto root = Cast<SVGElementEditInterface>(document->GetRootElement());
	return root->InsertChildBefore(rect, root->GetChildAt(0));
}

Result<void> Paint(const SVGDocumentRef& document, const Request& request)
{
	const auto source = Cast<SVGDocumentSourceInterface>(document);
	const String fill = ORVAN_TRY(String::Create("fill"));
	for (const SVGElementRef& element : ORVAN_TRY(source->Select(request.selector)))
		ORVAN_TRY(source->SetAttributeText(element, fill, request.color));
	return AddBackground(document, source, request.background);
}

Result<void> EditAndSave(const char* file, const Request& request)
{
	const auto document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	SVGImportOptions options;
	options.isComplete = true;  // Whatever the file says comes into the tree …
	options.isTolerant = true;  // … and what is not valid costs itself, not the file.
	options.keepsSource = true; // Saving goes from the text that was loaded.
	ORVAN_TRY(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
	const Url url = ORVAN_TRY(Url::FromPath(file));
	ORVAN_TRY(document->Init(url));

	int changes = 0;
	const auto edit = Cast<SVGDocumentEditInterface>(document);
	const std::int64_t observer = ORVAN_TRY(edit->AddObserver(&Count, &changes));
	// All of it, or nothing: a color that cannot be read takes back what was done before it.
	ORVAN_TRY(edit->BeginTransaction());
	if (Result<void> painted = Paint(document, request); !painted.IsOk())
	{
		ORVAN_TRY(edit->RollbackTransaction());
		return painted;
	}
	ORVAN_TRY(edit->CommitTransaction());
	edit->RemoveObserver(observer);
	std::printf("%d changes, %d to undo\n", changes, static_cast<int>(edit->GetUndoCount()));
	return Cast<SVGDocumentSourceInterface>(document)->Save(url, {});
}

Result<void> Run(char** arguments)
{
	Module* const module = ORVAN_TRY(Module::Load(ORVAN_SVG_MODULE));
	ORVAN_TRY(
		EditAndSave(arguments[1], {ORVAN_TRY(String::Create(arguments[2])), ORVAN_TRY(String::Create(arguments[3])),
								   ORVAN_TRY(String::Create(arguments[4]))}));
	return Module::Unload(module);
}

} // namespace

int main(int argc, char** argv)
{
	const Result<void> result =
		argc == 5 ? Run(argv) : IllegalArgumentError("Usage: @ FILE.svg SELECTOR COLOR BACKGROUND", argv[0]);
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk() ? 0 : 1;
}
