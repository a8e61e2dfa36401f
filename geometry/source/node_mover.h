// SPDX-License-Identifier: MIT
/// Nodes of a record that go, come or move up.
#pragma once

#include "record.h"
#include "record_patch.h"
#include "transplant.h"

namespace orvan::geometry
{

/// Changes which nodes there are in a picture.
class NodeMover
{
public:
	explicit NodeMover(Record& record) noexcept : _record(record)
	{
	}

	/// Frees a node with all below it.
	Result<bool> Remove(std::int32_t node) noexcept
	{
		const std::int32_t parent = _record.At(node).parent;
		const std::int32_t end = _record.At(node).end;
		bool hasLetters = false;
		for (std::int32_t i = node; i < end; i++)
		{
			hasLetters = hasLetters || HasCells(_record, _record.At(i));
			_record.RemoveElement({_record.At(i).element.GetObject(), i});
			At(i) = MakeFreeNode(parent, i);
		}
		if (hasLetters)
			MoveParts(node, end, [](std::int32_t) { return -1; });
		return Touch(node, end);
	}

	/// Makes room for `count` nodes below `parent`, in front of what stands at `place`, or is free there. What stands
	/// behind moves up to where nodes are free. False, and nothing happens, when these are too far.
	Result<bool> MakeRoom(std::int32_t place, std::int32_t parent, std::int32_t count) noexcept
	{
		constexpr std::int32_t kFarthest = 4096;
		BaseArray<std::int32_t> shifts; // From the place on: how far what stands there moves.
		std::int32_t last = place;
		std::int32_t end = place; // Of what begins before the last one.
		for (std::int32_t shift = count; shift > 0; last++)
		{
			if (last >= _record.pictureEnd || std::max(last, end) - place >= kFarthest + count)
				return false;
			ORVAN_TRY(shifts.Append(shift));
			shift -= _record.At(last).kind == NodeKind::gone ? 1 : 0;
			end = std::max(end, _record.At(last).end);
		}
		const auto move = [&](std::int32_t index)
		{
			return index >= place && index < last ? index + shifts[static_cast<std::size_t>(index - place)] : index;
		};
		bool hasLetters = false;
		for (std::int32_t i = place; i < last; i++)
			hasLetters = hasLetters || (_record.At(i).kind != NodeKind::gone && HasCells(_record, _record.At(i)));
		for (std::int32_t i = last; i-- > place;)
		{
			Node& node = At(i);
			if (node.kind == NodeKind::gone)
				continue;
			node.parent = move(node.parent);
			node.end = move(node.end);
			if (!hasLetters)
				MoveEntry({node.element.GetObject(), i}, move(i));
			At(move(i)) = std::move(node);
		}
		if (hasLetters)
			MoveParts(place, last, move);
		for (std::int32_t i = last; i < end; i++)
			At(i).parent = move(At(i).parent);
		for (std::int32_t around = parent; around >= 0; around = _record.At(around).parent)
			At(around).end = move(_record.At(around).end);
		for (std::int32_t i = place; i < place + count; i++)
			At(i) = MakeFreeNode(parent, i);
		return Touch(place, end);
	}

	/// Remembers that nodes are other ones.
	Result<bool> Touch(std::int32_t first, std::int32_t end) noexcept
	{
		ORVAN_TRY(touched.Append({first, end}));
		return true;
	}

	BaseArray<PatchedNodes> touched;

private:
	void MoveEntry(const ElementEntry& from, std::int32_t to) noexcept
	{
		for (ElementEntry& entry : _record.FindPlaces(from.element))
		{
			if (entry.node == from.node)
				entry.node = to;
		}
	}

	/// Moves all entries of nodes. Letters have some of every part of the text that they stand in, which may no longer
	/// stand there.
	template <typename Move>
	void MoveParts(std::int32_t first, std::int32_t end, Move move) noexcept
	{
		for (ElementEntry& entry : _record.elements)
		{
			if (entry.node >= first && entry.node < end)
				entry.node = move(entry.node);
		}
	}

	Node& At(std::int32_t node) noexcept
	{
		return _record.nodes[static_cast<std::size_t>(node)];
	}

	Record& _record;
};

} // namespace orvan::geometry
