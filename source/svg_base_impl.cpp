// SPDX-License-Identifier: MIT
/// The SVG document.
#include "svg_document.h"

#include "import.h"
#include "orvan/hierarchy.h"
#include "registration.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orvan::svg
{

namespace
{

/// Takes out every element that stands further up already.
Result<void> RemoveRepeated(BaseArray<SVGElementRef>& elements) noexcept
{
	struct Place
	{
		std::uintptr_t object;
		std::size_t index;
	};
	BaseArray<Place> places;
	ORVAN_TRY(places.Reserve(elements.GetCount()));
	for (std::size_t i = 0; i < elements.GetCount(); i++)
		IgnoreResult(places.Append({reinterpret_cast<std::uintptr_t>(elements[i].GetObject()), i}));
	const auto byIndex = [](const Place& a, const Place& b)
	{
		return a.index < b.index;
	};
	std::sort(places.begin(), places.end(),
			  [&](const Place& a, const Place& b)
			  { return a.object != b.object ? a.object < b.object : byIndex(a, b); });
	auto* const end =
		std::unique(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.object == b.object; });
	std::sort(places.begin(), end, byIndex);
	std::size_t count = 0;
	for (const Place* place = places.begin(); place != end; place++)
		elements[count++].Swap(elements[place->index]);
	return elements.Resize(count);
}

} // namespace

Result<void> Document::Init(const Url& url) noexcept
{
	Url target = url; // The caller's may be this document's own, which `Reset` clears.
	BeginLoad();
	Result<InputStream> stream = target.OpenInputStream();
	if (!stream.IsOk())
	{
		// Only now does it matter what is there instead of a file: looking costs a visit to the file system.
		const IoDetection detected = target.IoDetect();
		if (detected == IoDetection::outOfMemory)
			return EndLoad(OutOfMemoryError());
		if (detected != IoDetection::file)
			return EndLoad(IoError(target, "Error parsing svg document. SVGDocument could not be initialized"));
	}
	_url = std::move(target);
	_isFromUrl = true;
	bool isFresh = true;
	return EndLoad(LoadText(
		[&]() noexcept -> Result<FileText>
		{
			if (!std::exchange(isFresh, false))
				stream = _url.OpenInputStream();
			if (!stream.IsOk())
				return stream.GetError();
			return Read(stream.GetValue());
		}));
}

void Document::BeginLoad() noexcept
{
	_isLoading = true;
	// Through the interface, so that an object that stands for a document and overrides `Reset` has its own called.
	Borrowed<SVGDocumentInterface>(this)->Reset();
	_isLoading = false;
}

void Document::Reset() noexcept
{
	ForgetTree();
	_ids.Reset();
	if (const auto root = Cast<HierarchyObjectInterface>(_rootElement))
		root->RemoveAllChildren();
	_rootElement = nullptr;
	_url = Url();
	_isFromUrl = false;
	_report = SVGImportReport();
	_source = nullptr;
	_stamp = FileStamp();
	_savedHash = 0;
	_isPlaceholder = false;
	if (!_isLoading)
		TellOfLoad(SVGChangeKind::loaded, _report);
}

const Url& Document::GetUrl() const noexcept
{
	return _url;
}

const SVGElementRef& Document::GetRootElement() const noexcept
{
	return _rootElement;
}

Result<SVGElementRef> Document::GetElementById(const String& id) const noexcept
{
	if (const SVGElementRef* element = _ids.Find(id))
		return *element;
	return NotFoundError("SVG element with id '@' not found.", id);
}

Result<BaseArray<SVGElementRef>> Document::GetElementsByIdWithPrefix(const String& prefix) const noexcept
{
	BaseArray<SVGElementRef> found;
	// An element that took two ids is in the table twice. Its id is at most one of the two keys, so that only entries
	// whose key is not their element's id need a closer look.
	bool hasOtherIds = false;
	ORVAN_TRY(_ids.ForEach(
		[&](const String& key, const SVGElementRef& element) noexcept -> Result<void>
		{
			const String id = element->GetId();
			if (!id.View().starts_with(prefix.View()))
				return {};
			hasOtherIds |= id != key;
			return found.Append(element);
		}));
	if (hasOtherIds)
		ORVAN_TRY(RemoveRepeated(found));
	return found;
}

bool Document::IsPlaceholder() const noexcept
{
	return _isPlaceholder;
}

bool Document::IsFromUrl() const noexcept
{
	return _isFromUrl;
}

const FileStamp& Document::GetStamp() const noexcept
{
	return _stamp;
}

void Document::TakeContentOf(Document& other) noexcept
{
	ForgetTree();
	_stamp = other._stamp;
	_ids.Take(other._ids);
	_rootElement = std::move(other._rootElement);
	_owner = std::exchange(other._owner, {});
	_owner.SetDocument(*this);
	if (_isTracking)
		TrackRoot();
	_report = std::move(other._report);
	_source = std::move(other._source);
	_savedHash = 0;
	_isPlaceholder = other._isPlaceholder;
}

Result<void> Document::SetImportOptions(const SVGImportOptions& options) noexcept
{
	_options = options;
	return {};
}

const SVGImportOptions& Document::GetImportOptions() const noexcept
{
	return _options;
}

Result<void> Document::InitFromMemory(const void* bytes, std::int64_t count, const Url& baseUrl) noexcept
{
	if (count < 0 || (bytes == nullptr && count > 0))
		return IllegalArgumentError("There are no @ bytes to load a document from.", count);
	const Url base = baseUrl; // The caller's may be this document's own, which `Reset` clears.
	BeginLoad();
	_url = base;
	return EndLoad(LoadCopy(bytes, static_cast<std::size_t>(count)));
}

Result<void> Document::LoadCopy(const void* bytes, std::size_t count) noexcept
{
	return LoadText(
		[bytes, count]() noexcept -> Result<FileText>
		{
			FileText text;
			ORVAN_TRY(text.MakeRoom(count));
			if (count != 0)
				std::memcpy(text.bytes.begin(), bytes, count);
			return text;
		});
}

Result<SVGImportReport> Document::GetImportReport() const noexcept
{
	SVGImportReport report;
	ORVAN_TRY(report.CopyFrom(_report));
	return report;
}

Result<FileText> Document::Read(InputStream& stream) noexcept
{
	_stamp = stream.GetStamp();
	const std::int64_t length = ORVAN_TRY(stream.GetStreamLength());
	FileText text;
	ORVAN_TRY(text.MakeRoom(static_cast<std::size_t>(length)));
	ORVAN_TRY(stream.ReadBytes(text.bytes.begin(), length));
	return text;
}

template <typename ReadText>
Result<void> Document::LoadText(ReadText read) noexcept
{
	FileText text = ORVAN_TRY(read());
	const BulkScope scope;
	ImportResult imported = ORVAN_TRY(Import(std::move(text.bytes), _options, _report, text.use));
	if (imported.needsWholeText)
	{
		text = ORVAN_TRY(read());
		imported = ORVAN_TRY(Import(std::move(text.bytes), _options, _report));
	}
	if (!imported.root)
		return BuildPlaceholder();
	ORVAN_TRY(TakeRoot(std::move(imported.root)));
	_ids.Take(std::move(imported.elementsById));
	_source = std::move(imported.source);
	return {};
}

/// What a document shows whose file holds nothing usable: an svg element with a rect.
Result<void> Document::BuildPlaceholder() noexcept
{
	SVGElementRef root = ORVAN_TRY(CreateObject<SVGElementInterface>("net.orvan.image.class.svgsvgelement"));
	const auto rect = ORVAN_TRY(CreateObject<HierarchyObjectInterface>("net.orvan.image.class.svgrectelement"));
	ORVAN_TRY(rect->InsertAsLastChildOf(Cast<HierarchyObjectInterface>(root), {}));
	ORVAN_TRY(TakeRoot(std::move(root)));
	_isPlaceholder = true;
	return {};
}

namespace
{

constexpr ClassDeclaration kDocumentClass =
	DeclareClass<Document, Implements<SVGDocumentInterface, Document>, Implements<SVGDocumentImportInterface, Document>,
				 Implements<SVGDocumentEditInterface, Document>, Implements<SVGDocumentSourceInterface, Document>>(
		kSVGDocumentClass);
constexpr ClassDeclaration kContextClass = DeclareClassWithoutImplementation(kSVGContextClass);

constexpr UseDeclaration kUses[] = {
	{"svg_base_impl", "SVGDocumentInterface", "svg_base"},
	{"svg_base_impl", "SVGContextInterface", "svg_base"},
	{"svg_base_impl", "SVGElementInterface", "svg_elements"},
	{"svg_base_impl", "Url", "url"},
};

ORVAN_REGISTER(ORVAN_ORDER_DOCUMENT, entries)
[] = {
	{Kind::unit, "svg_base_impl"}, kDocumentClass, kContextClass, kUses[0], kUses[1], kUses[2], kUses[3],
};

} // namespace
} // namespace orvan::svg
