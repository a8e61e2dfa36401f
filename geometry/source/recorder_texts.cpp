// SPDX-License-Identifier: MIT
/// Texts: letters and the lines that decorate them.
#include "picture_recorder.h"

namespace orvan::geometry
{

using namespace drawing;

Result<void> Recorder::DrawText(const Frame& frame, const TextLayout& text) noexcept
{
	if (IsFull() || (frame.place.isByReference && !_scene.limits.Pay(text.GetLength() * kCharacterWork)))
		return {};
	const std::int32_t node = ORVAN_TRY(Enter(frame));
	ORVAN_TRY(RecordFragments(frame, frame, text, {text.GetFragments().begin(), text.GetFragments().GetCount()}));
	return LeaveBox(node, frame, text.GetBounds());
}

Node Recorder::MakePart(const Frame& text, const Frame& owner, double opacity) noexcept
{
	Node node;
	node.element = SVGElementRef::From(owner.element);
	node.parent = _current;
	node.toView = text.place.transform;
	node.isReferenced = At(_current).isReferenced;
	// With all contents, parts of a text are groups with their opacities.
	node.opacity = _contents != nullptr ? 1.0 : opacity;
	node.isChanged = At(_current).isChanged;
	node.isFiltered = At(_current).isFiltered;
	for (const Frame* span = &owner; span != nullptr && span->element != text.element; span = span->outer)
	{
		// Effects of parts are left aside, but for what is recorded with all contents.
		if (span->effects.NeedsPicture() && _contents == nullptr)
			node.isChanged = node.isFiltered = true;
	}
	node.end = GetCount() + 1;
	return node;
}

Result<void> Recorder::RecordFragments(const Frame& text, const Frame& around, const TextLayout& layout,
									   std::span<const TextFragment> fragments) noexcept
{
	while (!fragments.empty())
	{
		const auto getPicture = [&](const TextFragment& fragment)
		{
			return _contents != nullptr ? TextLayout::FindPicture(fragment, around) : nullptr;
		};
		const Frame* const picture = getPicture(fragments.front());
		std::size_t count = 1;
		while (picture != nullptr && count < fragments.size() && getPicture(fragments[count]) == picture)
			count++;
		if (picture == nullptr)
			ORVAN_TRY(RecordFragment(text, layout, fragments.front()));
		else
			ORVAN_TRY(RecordPart(text, *picture, layout, fragments.first(count)));
		fragments = fragments.subspan(count);
	}
	return {};
}

Result<void> Recorder::RecordPart(const Frame& text, const Frame& part, const TextLayout& layout,
								  std::span<const TextFragment> fragments) noexcept
{
	const bool isApart = part.effects.filter != nullptr && ORVAN_TRY(BeginApart(part, Matrix2d()));
	const std::int32_t node = ORVAN_TRY(Enter(part));
	ORVAN_TRY(RecordFragments(text, part, layout, fragments));
	ORVAN_TRY(LeaveBox(node, part, layout.GetBounds()));
	if (isApart)
		EndApart();
	return {};
}

Result<void> Recorder::RecordFragment(const Frame& text, const TextLayout& layout,
									  const TextFragment& fragment) noexcept
{
	ORVAN_TRY(RecordLines(text, layout, fragment, TextLineKind::underline));
	ORVAN_TRY(RecordLines(text, layout, fragment, TextLineKind::overline));
	ORVAN_TRY(RecordLetters(text, layout, fragment));
	return RecordLines(text, layout, fragment, TextLineKind::lineThrough);
}

Result<void> Recorder::RecordLines(const Frame& text, const TextLayout& layout, const TextFragment& fragment,
								   TextLineKind kind) noexcept
{
	for (int i = 0; const Frame* const frame = TextLayout::FindDecorating(fragment, kind, i); i++)
	{
		Outline lines = ORVAN_TRY(layout.GetLines(fragment, kind, *frame));
		ShapeStyle style = ORVAN_TRY(MakeStyle(*frame, lines, layout.GetBounds()));
		style.fillRule = SVGFillRule::nonzero;
		style.isVisible = fragment.frame->place.style.visibility == SVGVisibility::visible;
		Node node = MakePart(text, *frame, fragment.opacity);
		node.kind = NodeKind::marker;
		node.isReferenced = true;
		const std::int32_t index = GetCount();
		ORVAN_TRY(_record.nodes.Append(std::move(node)));
		ORVAN_TRY(SetShape(index, std::move(lines), std::move(style)));
	}
	return {};
}

Result<void> Recorder::RecordLetters(const Frame& text, const TextLayout& layout, const TextFragment& fragment) noexcept
{
	// What stands in patterns stands before the node.
	Outline letters = ORVAN_TRY(layout.GetOutline(fragment));
	ShapeStyle style = ORVAN_TRY(MakeStyle(*fragment.frame, letters, layout.GetBounds()));
	Node node = MakePart(text, *fragment.frame, fragment.opacity);
	const std::int32_t index = GetCount();
	for (const Frame* span = fragment.frame; span != nullptr && span->element != text.element; span = span->outer)
	{
		if (!node.isReferenced)
			ORVAN_TRY(_record.elements.Append({span->element, index}));
	}
	ORVAN_TRY(_record.nodes.Append(std::move(node)));
	style.fillRule = SVGFillRule::nonzero;
	Outline cells;
	for (std::size_t cluster = fragment.first; cluster < fragment.end; cluster++)
	{
		Outline cell;
		ORVAN_TRY(cell.AddRectangle(layout.GetCell(cluster), 0.0, 0.0));
		ORVAN_TRY(cells.Append(cell, layout.GetPlace(cluster)));
	}
	const std::size_t cellsIndex = _record.cells.GetCount();
	ORVAN_TRY(_record.cells.Append(std::move(cells)));
	ORVAN_TRY(SetShape(index, std::move(letters), std::move(style), &_record.cells[cellsIndex]));
	return {};
}

} // namespace orvan::geometry
