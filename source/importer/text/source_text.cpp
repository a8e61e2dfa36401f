// SPDX-License-Identifier: MIT
#include "importer/text/source_text.h"

#include "importer/text/encoding.h"
#include "importer/text/entities.h"
#include "importer/text/gzip.h"
#include "importer/xml/xml_guard.h"

#include <cstring>
#include <utility>

namespace orvan::svg
{
namespace
{

/// Puts other bytes in the place of some, which are kept if they are the file's own and somebody wants them.
void Replace(BaseArray<char>& bytes, BaseArray<char> derived, BaseArray<char>* file) noexcept
{
	if (file != nullptr && file->IsEmpty())
		*file = std::move(bytes);
	bytes = std::move(derived);
}

/// Brings bytes, without a terminating zero, into UTF-8.
Result<void> MakeUtf8(BaseArray<char>& bytes, BaseArray<char>* file)
{
	const std::string_view text(bytes.begin(), bytes.GetCount());
	const Encoding encoding = FindEncoding(text);
	// What names an encoding that is not known may be written in UTF-8 all the same.
	const bool isUtf8 = encoding == Encoding::utf8 || encoding == Encoding::unknown;
	if (isUtf8 && IsUtf8(text))
		return {};
	if (encoding == Encoding::unknown)
		throw XmlError("the encoding that the XML declaration names is not known", text.data());
	Replace(bytes, ORVAN_TRY(ToUtf8(text, encoding)), file);
	return {};
}

} // namespace

Result<void> Pad(BaseArray<char>& text) noexcept
{
	ORVAN_TRY(text.Reserve(text.GetCount() + kTextPadding));
	std::memset(text.end(), 0, kTextPadding);
	return {};
}

Result<SourceText> ReadSourceText(BaseArray<char> bytes, BaseArray<char>* file)
{
	SourceText source;
	ORVAN_TRY(bytes.ResizeUninitialized(bytes.GetCount() - 1)); // Gives no memory back, so that the zero has its place.
	if (const std::string_view packed(bytes.begin(), bytes.GetCount()); IsGzip(packed))
		Replace(bytes, ORVAN_TRY(Gunzip(packed, kMaxUnpackedSize)), file);
	ORVAN_TRY(MakeUtf8(bytes, file));
	if (const std::string_view text(bytes.begin(), bytes.GetCount()); NeedsReplacement(text))
	{
		source.text = ORVAN_TRY(ReplaceEntities(text, source.positions));
		source.original = std::move(bytes);
	}
	else
		source.text = std::move(bytes);
	ORVAN_TRY(source.text.Append('\0'));
	ORVAN_TRY(Pad(source.text));
	return source;
}

} // namespace orvan::svg
