// SPDX-License-Identifier: MIT
/// The implementation of `SVGDocumentInterface` and `SVGDocumentImportInterface`.
#pragma once

#include "orvan/hash_map.h"
#include "svg_base.h"
#include "svg_import.h"

namespace orvan::svg
{

/// A document owns the root of its tree and the table of ids.
class Document : public ObjectBase
{
public:
	Result<void> Init(const Url& url) noexcept;
	void Reset() noexcept;
	const Url& GetUrl() const noexcept;
	const SVGElementRef& GetRootElement() const noexcept;
	Result<SVGElementRef> GetElementById(const String& id) const noexcept;
	Result<BaseArray<SVGElementRef>> GetElementsByIdWithPrefix(const String& prefix) const noexcept;

	Result<void> SetImportOptions(const SVGImportOptions& options) noexcept;
	const SVGImportOptions& GetImportOptions() const noexcept;
	Result<void> InitFromMemory(const void* bytes, std::int64_t count, const Url& baseUrl) noexcept;
	Result<SVGImportReport> GetImportReport() const noexcept;

	// For icons, which keep their tree when the file has become unusable.

	/// True when the file was refused, so that the tree is a placeholder.
	bool IsPlaceholder() const noexcept;
	/// True when the URL says where the content is from: after `Init`, but not after `InitFromMemory`.
	bool IsFromUrl() const noexcept;
	/// The file that the tree was read from, as it was then; empty where there was none.
	const FileStamp& GetStamp() const noexcept;
	/// Lets go of the tree and the ids, without taking the tree apart, and takes over those of `other`.
	void TakeContentOf(Document& other) noexcept;

private:
	Result<void> Load() noexcept;
	Result<void> LoadBytes(BaseArray<char> bytes) noexcept;
	Result<void> BuildPlaceholder() noexcept;

	StringMap<SVGElementRef> _elementsById;
	SVGElementRef _rootElement;
	Url _url;
	SVGImportOptions _options;
	SVGImportReport _report;
	FileStamp _stamp;
	bool _isFromUrl = false;
	bool _isPlaceholder = false;
};

} // namespace orvan::svg
