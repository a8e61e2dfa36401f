// SPDX-License-Identifier: MIT
/// What an icon passes on to the document that it shows, held against a document that is asked the same.
#include "icon_fixture.h"
#include "svg_edit.h"
#include "svg_source.h"

namespace orvan
{
namespace
{

class IconAsDocument : public IconTest
{
protected:
	void SetUp() override
	{
		WriteFile(file, "<svg><g id='a' class='x' fill='#f00'><path id='b' d='M0 0L1 x'/></g><rect id='a2'/></svg>");
	}

	/// What somebody is told who asks for all there is, and edits.
	template <typename Object>
	std::string Ask(const Object& object) const
	{
		const auto document = Cast<SVGDocumentInterface>(object);
		const auto import = Cast<SVGDocumentImportInterface>(object);
		const auto source = Cast<SVGDocumentSourceInterface>(object);
		const auto edit = Cast<SVGDocumentEditInterface>(object);
		std::string told;
		const auto tell = [&told](const auto& result)
		{
			told += told.empty() ? "" : " | ";
			using Value = std::decay_t<decltype(result)>;
			if constexpr (std::is_convertible_v<Value, std::string>)
				told += (result);
			else if constexpr (std::is_arithmetic_v<Value>)
				told += (std::to_string(result));
			else if (!result.IsOk())
				told += ("! " + MessageOf(result));
			else if constexpr (std::is_same_v<Value, Result<String>>)
				told += (result.GetValue().CString());
			else if constexpr (std::is_same_v<Value, Result<bool>> || std::is_same_v<Value, Result<std::int64_t>>)
				told += (std::to_string(result.GetValue()));
			else if constexpr (std::is_same_v<Value, Result<SVGImportElementKind>>)
				told += (std::to_string(static_cast<int>(result.GetValue())));
			else if constexpr (requires { result.GetValue().GetCount(); })
				told += (std::to_string(result.GetValue().GetCount()));
			else
				told += ("done");
		};
		Must(import->SetImportOptions({.isTolerant = true, .isComplete = true, .keepsSource = true, .styleSheet = {}}));
		tell(import->GetImportOptions().isComplete);
		tell(document->Init(Must(Url::FromPath(file.string()))));
		tell(std::to_string(Must(import->GetImportReport()).findingCount));
		tell(document->GetUrl().GetText().CString() + folder.GetPath().string().size() + 7);
		tell(document->GetElementsByIdWithPrefix(Text("a")));
		SVGElementRef a = Must(document->GetElementById(Text("a")));
		tell(source->HasSource());
		tell(source->GetTag(a));
		tell(source->GetAttributeNames(a));
		tell(source->GetRawAttribute(a, Text("fill")));
		tell(source->GetAttributeText(a, Text("fill")));
		tell(source->GetSourceText());
		tell(source->Select(Text("g, rect, path")));
		tell(source->GetKindName(SVGImportElementKind::group));
		tell(source->FindKind(Text("rect")));
		tell(source->GetEnumerators(SVGImportElementKind::group, SVGImportAttribute::fillRule));
		const Data value =
			Must(source->ParseValue(SVGImportElementKind::group, SVGImportAttribute::opacity, Text(".50")));
		tell(source->FormatValue(SVGImportElementKind::group, SVGImportAttribute::opacity, value));
		tell(source->Repair());
		a = Must(document->GetElementById(Text("a"))); // It was loaded anew.
		std::int64_t calls = 0;
		const std::int64_t observer = Must(edit->AddObserver(
			[](void* context, const SVGChange&) noexcept { ++*static_cast<std::int64_t*>(context); }, &calls));
		tell(edit->BeginTransaction());
		tell(edit->IsInTransaction());
		tell(source->SetAttributeText(a, Text("fill"), Text("lime")));
		tell(source->RemoveAttributeText(a, Text("class")));
		tell(edit->CommitTransaction());
		tell(edit->IsInTransaction());
		tell(edit->RenameId(a, Text("c")));
		tell(edit->GetUndoCount());
		tell(edit->Undo());
		tell(edit->GetRedoCount());
		tell(edit->Redo());
		tell(calls);
		edit->RemoveObserver(observer);
		tell(edit->BeginTransaction());
		tell(a->SetOpacity(0.5));
		tell(edit->RollbackTransaction());
		tell(calls);
		tell(edit->SetUndoLimit(1));
		tell(edit->GetUndoCount());
		const BaseArray<char> bytes = Must(source->SaveToMemory({}));
		tell(std::string(bytes.begin(), bytes.end()));
		tell(edit->ClearHistory());
		tell(edit->GetUndoCount());
		tell(edit->SetRootElement(Must(CreateObject<SVGElementInterface>(kSVGSVGElementClass))));
		tell(document->GetElementsByIdWithPrefix({}));
		tell(import->InitFromMemory("<svg id='m'/>", 13, {}));
		tell(document->GetElementsByIdWithPrefix(Text("m")));
		document->Reset();
		tell(std::to_string(static_cast<bool>(document->GetRootElement())));
		return told;
	}
};

TEST_F(IconAsDocument, AnswersAndEditsAsOneDoes)
{
	const std::string told = Ask(Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass)));
	EXPECT_EQ(told, Ask(Must(CreateObject<VectorIconInterface>(kVectorIconClass))));
	EXPECT_EQ("1 | done | 1 | /icon.svg | 2 | 1 | g | 3 | #f00 | red | <svg><g id='a' class='x' fill='#f00'><path "
			  "id='b' d='M0 0L1 "
			  "x'/></g><rect id='a2'/></svg> | 3 | g | 10 | 2 | .5 | 1 | done | 1 | done | done | done | 0 | done | 2 "
			  "| 1 | 1 | 1 | "
			  "5 | done | done | done | 5 | done | 1 | <svg><g id='c' fill='lime'><path id='b' d='M0 0'/></g><rect "
			  "id='a2'/></svg> | done | 0 | done | 0 | done | 1 | 0",
			  told);
}

} // namespace
} // namespace orvan
