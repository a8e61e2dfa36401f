// SPDX-License-Identifier: MIT
/// What was recorded apart, put into a record.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// What patches leave behind in a record, before it is time to make it anew.
inline constexpr std::size_t kMostLeft = 4096;

/// True for the letters of texts.
inline bool HasCells(const Record& record, const Node& node) noexcept
{
	return node.shape >= 0 && record.ShapeOf(node).cells != nullptr;
}

/// Puts the nodes of one record in the place of those of another.
class Transplant
{
public:
	/// `from` is where the nodes begin in `source`.
	Transplant(Record& source, std::int32_t from, Record& record) noexcept
		: _source(source), _from(from), _record(record), _count(source.At(from).end - from)
	{
	}

	std::int32_t GetCount() const noexcept
	{
		return _count;
	}

	/// True when both have the same parts in the same order.
	bool Fits(std::int32_t to) const noexcept
	{
		std::int32_t next = to;
		for (std::int32_t i = _from; i < _from + _count; i++, next++)
		{
			next = SkipFree(next);
			if (next >= _record.At(to).end)
				return false;
			const Node& fresh = _source.At(i);
			const Node& old = _record.At(next);
			const bool isSame =
				fresh.element.GetObject() == old.element.GetObject() && fresh.kind == old.kind &&
				(fresh.shape < 0) == (old.shape < 0) && HasCells(_source, fresh) == HasCells(_record, old) &&
				_source.At(fresh.parent).element.GetObject() == _record.At(old.parent).element.GetObject();
			if (!isSame)
				return false;
		}
		return SkipFree(next) >= _record.At(to).end;
	}

	/// True when too much would be left behind by and by.
	bool LeavesTooMuch() const noexcept
	{
		return _record.CountShared() + _source.CountShared() > _record.sharedCount + kMostLeft ||
			   _record.shapes.GetCount() > _record.shapeCount + kMostLeft;
	}

	/// Puts the nodes in the place of those that they fit to.
	Result<void> Replace(std::int32_t to) noexcept
	{
		TakeIndices();
		for (std::int32_t i = _from; i < _from + _count; i++, to++)
		{
			to = SkipFree(to);
			ORVAN_TRY(ReplaceNode(At(_record, to), At(_source, i)));
		}
		return TakeShared();
	}

	/// Puts the nodes in the place of free ones below `parent`.
	Result<void> Insert(std::int32_t to, std::int32_t parent) noexcept
	{
		TakeIndices();
		for (std::int32_t i = 0; i < _count; i++)
		{
			Node& fresh = At(_source, _from + i);
			At(_record, to + i).parent = i > 0 ? fresh.parent - _from + to : parent;
			At(_record, to + i).end = fresh.end - _from + to;
			ORVAN_TRY(ReplaceNode(At(_record, to + i), fresh));
		}
		for (const ElementEntry& entry : _source.elements)
		{
			if (entry.node >= _from && entry.node < _from + _count)
				ORVAN_TRY(_record.AddElement({entry.element, entry.node - _from + to}));
		}
		return TakeShared();
	}

private:
	std::int32_t SkipFree(std::int32_t node) const noexcept
	{
		while (node < _record.pictureEnd && _record.At(node).kind == NodeKind::gone)
			node++;
		return node;
	}

	static Node& At(Record& record, std::int32_t node) noexcept
	{
		return record.nodes[static_cast<std::size_t>(node)];
	}

	static std::int32_t Shift(std::int32_t index, std::int32_t by) noexcept
	{
		return index >= 0 ? index + by : index;
	}

	void TakeIndices() noexcept
	{
		_firstRegion = static_cast<std::int32_t>(_record.regions.GetCount());
		_firstGradient = static_cast<std::int32_t>(_record.gradients.GetCount());
	}

	Result<void> ReplaceNode(Node& old, Node& fresh) noexcept
	{
		fresh.parent = old.parent;
		fresh.end = old.end;
		fresh.clip = Shift(fresh.clip, _firstRegion);
		if (fresh.edges >= 0)
		{
			const NodeEdges& edges = _source.edges[static_cast<std::size_t>(fresh.edges)];
			fresh.edges = old.edges;
			if (old.edges < 0)
			{
				fresh.edges = static_cast<std::int32_t>(_record.edges.GetCount());
				ORVAN_TRY(_record.edges.Append(edges));
			}
			else
				_record.edges[static_cast<std::size_t>(old.edges)] = edges;
		}
		if (fresh.shape >= 0)
		{
			RecordedShape& shape = _source.shapes[static_cast<std::size_t>(fresh.shape)];
			if (old.shape < 0)
				old.shape = ORVAN_TRY(MakeShape(shape));
			ORVAN_TRY(ReplaceShape(_record.shapes[static_cast<std::size_t>(old.shape)], shape));
			fresh.shape = old.shape;
		}
		old = std::move(fresh);
		return {};
	}

	/// A shape with nothing but room for cells where the other one has some.
	Result<std::int32_t> MakeShape(const RecordedShape& like) noexcept
	{
		Outline* cells = nullptr;
		if (like.cells != nullptr)
		{
			ORVAN_TRY(_record.cells.Append({}));
			cells = &_record.cells[_record.cells.GetCount() - 1];
		}
		ORVAN_TRY(_record.shapes.Append({{}, cells, nullptr}));
		return static_cast<std::int32_t>(_record.shapes.GetCount() - 1);
	}

	Result<void> ReplaceShape(RecordedShape& old, RecordedShape& fresh) noexcept
	{
		old.outline = std::move(fresh.outline);
		if (fresh.cells != nullptr)
			*old.cells = std::move(*fresh.cells);
		if (old.style != nullptr && fresh.style->IsLike(*old.style))
			return {};
		ShapeStyle style = ORVAN_TRY(fresh.style->Copy());
		style.fill.gradient = Shift(style.fill.gradient, _firstGradient);
		style.stroke.gradient = Shift(style.stroke.gradient, _firstGradient);
		old.style = ORVAN_TRY(_record.KeepStyle(std::move(style)));
		return {};
	}

	/// Takes what nodes refer to.
	Result<void> TakeShared() noexcept
	{
		for (ClipRegion& region : _source.regions)
		{
			for (ClipShape& shape : region.shapes)
				shape.clip = Shift(shape.clip, _firstRegion);
			region.next = Shift(region.next, _firstRegion);
			ORVAN_TRY(_record.regions.Append(std::move(region)));
		}
		for (RecordedGradient& gradient : _source.gradients)
			ORVAN_TRY(_record.gradients.Append(std::move(gradient)));
		_record.hasMissing = _record.hasMissing || _source.hasMissing;
		return TakeReferences();
	}

	Result<void> TakeReferences() noexcept
	{
		bool isAny = false;
		for (ObjectBase* const element : _source.referenced)
		{
			if (_record.IsReferenced(element))
				continue;
			isAny = true;
			break;
		}
		if (!isAny)
			return {};
		for (ObjectBase* const element : _source.referenced)
			ORVAN_TRY(_record.referenced.Append(element));
		_record.SortElements();
		return {};
	}

	Record& _source;
	std::int32_t _from;
	Record& _record;
	std::int32_t _count;
	std::int32_t _firstRegion = 0;
	std::int32_t _firstGradient = 0;
};

} // namespace orvan::geometry
