// SPDX-License-Identifier: MIT
/// Documents that keep their source, what is set on them, and what is saved of them.
#pragma once

#include "svg_source.h"

#include "support/svg_module.h"

namespace orvan
{

class Saving : public SvgModuleTest
{
protected:
	/// A document of a text, read completely, that keeps its source.
	static SVGDocumentRef Open(std::string_view text, bool isComplete = true, std::string_view sheet = {})
	{
		const SVGDocumentRef document = MakeDocument();
		const auto import = Cast<SVGDocumentImportInterface>(document);
		SVGImportOptions options;
		options.isComplete = isComplete;
		options.isTolerant = isComplete;
		options.keepsSource = true;
		options.styleSheet = Text(sheet);
		Must(import->SetImportOptions(options));
		Must(import->InitFromMemory(text.data(), static_cast<std::int64_t>(text.size()), {}));
		return document;
	}

	static Ref<SVGDocumentSourceInterface> SourceOf(const SVGDocumentRef& document)
	{
		return Cast<SVGDocumentSourceInterface>(document);
	}

	static std::string SavedText(const SVGDocumentRef& document, const SVGSaveOptions& options = {})
	{
		const Result<BaseArray<char>> saved = SourceOf(document)->SaveToMemory(options);
		return saved.IsOk() ? std::string(saved.GetValue().begin(), saved.GetValue().end())
							: "error: " + MessageOf(saved);
	}

	static SVGElementRef First(const SVGDocumentRef& document, std::string_view selector)
	{
		const auto found = Must(SourceOf(document)->Select(Text(selector)));
		EXPECT_FALSE(found.IsEmpty()) << selector;
		return found.IsEmpty() ? document->GetRootElement() : found[0];
	}

	static void Set(const SVGDocumentRef& document, std::string_view selector, std::string_view name,
					std::string_view value)
	{
		const SVGElementRef element = First(document, selector);
		if (value.empty())
			Must(SourceOf(document)->RemoveAttributeText(element, Text(name)));
		else
			EXPECT_EQ("no error", MessageOf(SourceOf(document)->SetAttributeText(element, Text(name), Text(value))));
	}

	/// What becomes of a text when one attribute is set, or removed for the empty value.
	static std::string After(std::string_view text, std::string_view selector, std::string_view name,
							 std::string_view value, bool isComplete = true)
	{
		const SVGDocumentRef document = Open(text, isComplete);
		Set(document, selector, name, value);
		return SavedText(document);
	}

	static SVGPaint Paint(Float red, Float green, Float blue)
	{
		return {SVGPaintType::color, {red, green, blue}, {}};
	}
};

} // namespace orvan
