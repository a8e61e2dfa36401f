// SPDX-License-Identifier: MIT
// Texts as values of every attribute, and the values as texts: what is read and written is read as the same.

#include "document.h"
#include "require.h"
#include "svg_source.h"

#include <cstdint>
#include <vector>

using namespace orvan;
using fuzz::Require;

namespace
{
struct Row
{
	SVGImportElementKind kind;
	SVGImportAttribute attribute;
};

Ref<SVGDocumentSourceInterface> GetFormatter()
{
	static const SVGDocumentRef document = fuzz::LoadDocument("<svg/>").document;
	return Cast<SVGDocumentSourceInterface>(document);
}

/// Each attribute, on the first kind of elements that it counts on.
std::vector<Row> ListAttributes()
{
	std::vector<Row> rows;
	const String empty;
	for (std::size_t number = 1; number < kSVGAttributeNames.size(); number++)
	{
		for (int kind = 1; kind < static_cast<int>(SVGImportElementKind::textRun); kind++)
		{
			const Row row{static_cast<SVGImportElementKind>(kind), static_cast<SVGImportAttribute>(number)};
			const Result<Data> read = GetFormatter()->ParseValue(row.kind, row.attribute, empty);
			if (!read.IsOk() && read.GetError().GetMessage().View().find("does not count") != std::string_view::npos)
				continue;
			rows.push_back(row);
			break;
		}
	}
	constexpr std::size_t kFewest = 150; // All but those that only stand for others.
	Require(rows.size() >= kFewest, "nearly all attributes can be read");
	return rows;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	static const std::vector<Row> rows = ListAttributes();
	const std::string_view bytes(reinterpret_cast<const char*>(data), size);
	const String text = String::Create(bytes).GetValue();
	for (const Row& row : rows)
	{
		const Result<Data> read = GetFormatter()->ParseValue(row.kind, row.attribute, text);
		if (!read.IsOk() || read.GetValue().GetType() == nullptr)
			continue;
		const Result<String> written = GetFormatter()->FormatValue(row.kind, row.attribute, read.GetValue());
		const std::string_view name = kSVGAttributeNames[static_cast<std::size_t>(row.attribute)];
		Require(written.IsOk(), "what was read can be written", std::string(name) + ": " + std::string(bytes));
		const Result<Data> again = GetFormatter()->ParseValue(row.kind, row.attribute, written.GetValue());
		const std::string story =
			std::string(name) + ": " + std::string(bytes) + " -> " + std::string(written.GetValue());
		Require(again.IsOk(), "what was written can be read", story);
		if (again.GetValue().GetType() == nullptr)
		{
			Require(written.GetValue().IsEmpty() || written.GetValue() == "inline", "a value stays one", story);
			continue;
		}
		const Result<String> third = GetFormatter()->FormatValue(row.kind, row.attribute, again.GetValue());
		Require(third.IsOk() && third.GetValue() == written.GetValue(), "what was written is read as the same", story);
	}
	return 0;
}
