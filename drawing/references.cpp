// SPDX-License-Identifier: MIT
#include "references.h"

#include <string_view>

namespace orvan::drawing
{
namespace
{

/// The element with exactly this id, or null.
Result<SVGElementRef> Find(const SVGDocumentRef& document, const String& id) noexcept
{
	// An element without a name cannot be named.
	if (id.IsEmpty())
		return SVGElementRef();
	auto found = document->GetElementById(id);
	if (!found.IsOk() && found.GetError().GetClass() != ErrorClass::outOfMemory)
		return SVGElementRef();
	return found;
}

/// The value of a hexadecimal digit; -1 for anything else.
int ToDigit(char c) noexcept
{
	constexpr std::string_view kDigits = "0123456789abcdef";
	const auto place = kDigits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
	return place != std::string_view::npos ? static_cast<int>(place) : -1;
}

/// An id with "%xx" replaced by the bytes that they stand for.
Result<String> Decode(std::string_view id) noexcept
{
	BaseArray<char> bytes;
	for (std::size_t i = 0; i < id.size(); i++)
	{
		const int high = id[i] == '%' && i + 2 < id.size() ? ToDigit(id[i + 1]) : -1;
		const int low = high >= 0 ? ToDigit(id[i + 2]) : -1;
		if (low < 0)
		{
			ORVAN_TRY(bytes.Append(id[i]));
			continue;
		}
		ORVAN_TRY(bytes.Append(static_cast<char>(high * 16 + low)));
		i += 2;
	}
	return String::Create(std::string_view(bytes.begin(), bytes.GetCount()));
}

} // namespace

Result<SVGElementRef> FindElement(const SVGDocumentRef& document, const String& id) noexcept
{
	SVGElementRef found = ORVAN_TRY(Find(document, id));
	if (!found && id.View().find('%') != std::string_view::npos)
		return Find(document, ORVAN_TRY(Decode(id.View())));
	return found;
}

Result<SVGElementRef> FindElement(Scene& scene, const String& id) noexcept
{
	SVGElementRef found = ORVAN_TRY(FindElement(scene.document, id));
	scene.hasMissing = scene.hasMissing || !found;
	if (found && scene.referenced != nullptr)
	{
		// The same one is often named again and again.
		BaseArray<ObjectBase*>& all = *scene.referenced;
		if (all.IsEmpty() || all[all.GetCount() - 1] != found.GetObject())
			ORVAN_TRY(all.Append(found.GetObject()));
	}
	return found;
}

Result<BaseArray<SVGElementRef>> FindMasks(Scene& scene, const Effects& effects, const Frame& frame) noexcept
{
	BaseArray<SVGElementRef> masks;
	const auto add = [&](const String* id) noexcept -> Result<void>
	{
		SVGElementRef mask = ORVAN_TRY(FindEffect<SVGMaskElementInterface>(scene, id, frame));
		return mask ? masks.Append(std::move(mask)) : Result<void>();
	};
	const auto* ids = frame.attributes.Find<String>(static_cast<std::int32_t>(SVGImportAttribute::maskLayers));
	if (ids == nullptr || effects.mask == nullptr)
	{
		ORVAN_TRY(add(effects.mask));
		return masks;
	}
	for (std::string_view rest = ids->View(); !rest.empty();)
	{
		const std::size_t end = std::min(rest.find(' '), rest.size());
		const String id = ORVAN_TRY(String::Create(rest.substr(0, end)));
		ORVAN_TRY(add(&id));
		rest.remove_prefix(std::min(end + 1, rest.size()));
	}
	return masks;
}

Result<Viewport> GetViewportAround(const Scene& scene, ObjectBase* element) noexcept
{
	BaseArray<ObjectBase*> around; // The innermost first; the document keeps them alive.
	auto at = Cast<HierarchyObjectInterface>(SVGElementRef::From(element));
	for (int depth = 0; at && depth < kMaxDepth; depth++)
	{
		at = ORVAN_TRY(at->GetParent());
		if (at && Borrowed<SVGSVGElementInterface>(at))
			ORVAN_TRY(around.Append(at.GetObject()));
	}
	Viewport viewport = scene.viewport;
	if (viewport.width == 0.0 && viewport.height == 0.0)
		viewport.Resize(scene.naturalSize);
	// The outermost one is the scene's.
	for (std::size_t i = around.GetCount(); i-- > 1;)
	{
		ObjectBase* const svg = around[i - 1];
		const SVGViewbox viewbox = Borrowed<SVGFitToViewboxInterface>(svg)->GetViewbox();
		const SVGViewport size = Borrowed<SVGSVGElementInterface>(svg)->GetViewport();
		const double em = scene.initialStyle.fontSize;
		if (viewbox.isDefault)
			viewport.Resize({ToUserUnits(size.width, Axis::horizontal, viewport, em),
							 ToUserUnits(size.height, Axis::vertical, viewport, em)});
		else
			viewport.Resize({viewbox.width.value, viewbox.height.value});
	}
	return viewport;
}

} // namespace orvan::drawing
