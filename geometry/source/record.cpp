// SPDX-License-Identifier: MIT
#include "record.h"

#include <functional>

namespace orvan::geometry
{
namespace
{

bool IsSame(const RecordedPaint& a, const RecordedPaint& b) noexcept
{
	return a.kind == b.kind && a.color == b.color && a.opacity == b.opacity && a.gradient < 0 && b.gradient < 0 &&
		   a.pattern < 0 && b.pattern < 0 && a.gradientOpacity == b.gradientOpacity && a.isMissing == b.isMissing;
}

bool IsSame(const SVGStroke& a, const SVGStroke& b) noexcept
{
	return a.width == b.width && a.cap == b.cap && a.join == b.join && a.miterLimit == b.miterLimit;
}

bool IsBefore(const ElementEntry& a, const ElementEntry& b) noexcept
{
	return a.element != b.element ? std::less<>()(a.element, b.element) : a.node < b.node;
}

} // namespace

bool ShapeStyle::IsLike(const ShapeStyle& other) const noexcept
{
	return IsSame(fill, other.fill) && IsSame(stroke, other.stroke) && IsSame(pen, other.pen) &&
		   dashes.lengths.IsEmpty() && other.dashes.lengths.IsEmpty() && saysFill == other.saysFill &&
		   saysStroke == other.saysStroke && isImage == other.isImage && imageRendering == other.imageRendering &&
		   isPenUnscaled == other.isPenUnscaled && fillRule == other.fillRule && paintOrder == other.paintOrder &&
		   pointerEvents == other.pointerEvents && isVisible == other.isVisible;
}

Result<ShapeStyle> ShapeStyle::Copy() const noexcept
{
	ShapeStyle copy;
	copy.isImage = isImage;
	copy.imageRendering = imageRendering;
	copy.fill = fill;
	copy.stroke = stroke;
	copy.saysFill = saysFill;
	copy.saysStroke = saysStroke;
	copy.pen = pen;
	ORVAN_TRY(copy.dashes.lengths.CopyFrom(dashes.lengths));
	copy.dashes.offset = dashes.offset;
	copy.isPenUnscaled = isPenUnscaled;
	copy.fillRule = fillRule;
	copy.paintOrder = paintOrder;
	copy.pointerEvents = pointerEvents;
	copy.isVisible = isVisible;
	return copy;
}

void Record::SortElements() noexcept
{
	// Mostly they are in order: a load places elements one behind the other.
	if (!std::is_sorted(elements.begin(), elements.end(), IsBefore))
		std::sort(elements.begin(), elements.end(), IsBefore);
	std::sort(referenced.begin(), referenced.end(), std::less<>());
	const auto* const end = std::unique(referenced.begin(), referenced.end());
	IgnoreResult(referenced.Resize(static_cast<std::size_t>(end - referenced.begin()))); // It becomes shorter.
}

std::span<ElementEntry> Record::FindPlaces(const ObjectBase* element) noexcept
{
	const auto isBefore = [](const ElementEntry& entry, const ObjectBase* wanted)
	{
		return std::less<>()(static_cast<const ObjectBase*>(entry.element), wanted);
	};
	ElementEntry* const first = std::lower_bound(elements.begin(), elements.end(), element, isBefore);
	ElementEntry* end = first;
	while (end != elements.end() && end->element == element)
		end++;
	return {first, end};
}

Result<void> Record::AddElement(const ElementEntry& entry) noexcept
{
	const std::span<ElementEntry> places = FindPlaces(entry.element);
	for (ElementEntry& place : places)
	{
		if (place.node >= 0)
			continue;
		place.node = entry.node;
		return {};
	}
	const auto behind = static_cast<std::size_t>(places.data() + places.size() - elements.begin());
	ORVAN_TRY(elements.Append(entry));
	std::rotate(elements.begin() + behind, elements.end() - 1, elements.end());
	return {};
}

void Record::RemoveElement(const ElementEntry& entry) noexcept
{
	for (ElementEntry& place : FindPlaces(entry.element))
	{
		if (place.node == entry.node)
			place.node = -1;
	}
}

std::span<const ElementEntry> Record::Find(const ObjectBase* element) const noexcept
{
	std::span<const ElementEntry> found = const_cast<Record*>(this)->FindPlaces(element);
	while (!found.empty() && found.front().node < 0)
		found = found.subspan(1);
	while (!found.empty() && found.back().node < 0)
		found = found.first(found.size() - 1);
	return found;
}

bool Record::IsReferenced(ObjectBase* element) const noexcept
{
	return std::binary_search(referenced.begin(), referenced.end(), element, std::less<>());
}

Result<const ShapeStyle*> Record::KeepStyle(ShapeStyle style) noexcept
{
	constexpr std::size_t kLooks = 4;
	const std::size_t count = styles.GetCount();
	for (std::size_t i = 1; i <= std::min(count, kLooks); i++)
	{
		if (styles[count - i].IsLike(style))
			return &styles[count - i];
	}
	ORVAN_TRY(styles.Append(std::move(style)));
	return &styles[count];
}

} // namespace orvan::geometry
