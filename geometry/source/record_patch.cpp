// SPDX-License-Identifier: MIT
#include "record_patch.h"

#include "drawing/gradients.h"
#include "recorder.h"
#include "svg_complete.h"

#include <functional>

namespace orvan::geometry
{
namespace
{

using drawing::Scene;

/// What patches leave behind in a record, before it is time to make it anew.
constexpr std::size_t kMostLeft = 4096;

/// The way from the root of the tree down to an element; empty when it does not stand below `root`.
Result<BaseArray<ObjectBase*>> FindWay(ObjectBase* root, ObjectBase* element) noexcept
{
	BaseArray<ObjectBase*> way;
	for (auto at = Cast<HierarchyObjectInterface>(SVGElementRef::From(element)); at; at = ORVAN_TRY(at->GetParent()))
		ORVAN_TRY(way.Append(at.GetObject()));
	std::reverse(way.begin(), way.end());
	if (!way.IsEmpty() && way[0] != root)
		way.Clear();
	return way;
}

/// Shortens the way to the element that is recorded as a whole: parts of texts are where the text has them, and which
/// child of a switch is drawn is up to all of them.
Result<void> EndAtWhole(BaseArray<ObjectBase*>& way) noexcept
{
	for (std::size_t i = 0; i + 1 < way.GetCount(); i++)
	{
		const bool isSwitch = i + 2 == way.GetCount() && Borrowed<SVGSwitchElementInterface>(way[i]);
		if (isSwitch || Borrowed<SVGTextElementInterface>(way[i]))
			return way.Resize(i + 1);
	}
	return {};
}

/// True when the element has children, so that what holds for it may hold for more than what is drawn.
bool HasChildren(ObjectBase* element) noexcept
{
	const Borrowed<HierarchyObjectInterface> hierarchy(element);
	return hierarchy && hierarchy->GetFirstChild();
}

/// True when a reference leads to something below the element.
Result<bool> HasReferencedBelow(const Record& record, ObjectBase* element) noexcept
{
	for (ObjectBase* const referenced : record.referenced)
	{
		auto at = Cast<HierarchyObjectInterface>(SVGElementRef::From(referenced));
		for (; at; at = ORVAN_TRY(at->GetParent()))
		{
			if (at.GetObject() == element)
				return true;
		}
	}
	return false;
}

/// True when something below the element, or itself, has an id.
bool HasIds(ObjectBase* element) noexcept
{
	if (const Borrowed<SVGElementInterface> svgElement(element); svgElement && !svgElement->GetId().IsEmpty())
		return true;
	const Borrowed<HierarchyObjectInterface> hierarchy(element);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		if (HasIds(child.GetObject()))
			return true;
	}
	return false;
}

/// True when what is at the end of the way shows only there, and what stands around it does not depend on it. `around`
/// is the node around its own, or -1.
Result<bool> IsByItself(const Record& record, const BaseArray<ObjectBase*>& way, std::int32_t around) noexcept
{
	for (ObjectBase* const element : way)
	{
		if (record.IsReferenced(element))
			return false;
	}
	for (std::size_t i = 0; i + 1 < way.GetCount(); i++)
	{
		// Where it is depends on the box of what stands in it.
		const Borrowed<SVGElementInterface> outer(way[i]);
		if (!outer || outer->HasAttribute(SVGImportAttribute::transformBox))
			return false;
	}
	for (std::int32_t at = around; at >= 0; at = record.At(at).parent)
	{
		if (record.At(at).isBoxUsed)
			return false;
	}
	ObjectBase* const element = way[way.GetCount() - 1];
	if (!HasChildren(element))
		return true;
	const bool hasDefinitions = record.pictureEnd < static_cast<std::int32_t>(record.nodes.GetCount());
	return !hasDefinitions && !ORVAN_TRY(HasReferencedBelow(record, element));
}

/// True for the letters of texts.
bool HasCells(const Record& record, const Node& node) noexcept
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

/// Where the node of an element comes that stands below the one of `parent`: in front of what is drawn next, and of
/// free nodes there.
std::int32_t FindPlace(const Record& record, ObjectBase* element, std::int32_t parent) noexcept
{
	std::int32_t place = record.At(parent).end;
	auto next = Borrowed<HierarchyObjectInterface>(element)->GetNextSibling();
	for (bool isFound = false; next && !isFound; next = next->GetNextSibling())
	{
		for (const ElementEntry& entry : record.Find(next.GetObject()))
		{
			isFound = record.At(entry.node).parent == parent;
			if (isFound)
				place = entry.node;
		}
	}
	while (record.At(place - 1).kind == NodeKind::gone && record.At(place - 1).parent == parent)
		place--;
	return place;
}

/// True when something that a reference leads to is drawn where the reference is.
bool HasReferencedContent(const Record& record) noexcept
{
	for (ObjectBase* const element : record.referenced)
	{
		if (!drawing::IsGradient(element) && HasChildren(element))
			return true;
	}
	return false;
}

/// One edit on its way into a record.
class Patch
{
public:
	Patch(Scene& scene, Record& record) noexcept : _scene(scene), _record(record), _mover(record)
	{
	}

	/// False where it takes more.
	Result<bool> Apply(const Edited& edited) noexcept
	{
		const SVGElementRef root = _scene.document->GetRootElement();
		if (edited.element.GetObject() == root.GetObject()) // Much depends on the outermost element.
			return false;
		const bool isGone = !ORVAN_TRY(Borrowed<HierarchyObjectInterface>(edited.element)->GetParent());
		_way = ORVAN_TRY(FindWay(root.GetObject(), isGone ? edited.parent.GetObject() : edited.element.GetObject()));
		if (_way.IsEmpty())
			return TakeOut(edited);
		if (isGone)
			ORVAN_TRY(_way.Append(edited.element.GetObject()));
		ORVAN_TRY(EndAtWhole(_way));
		_whole = _way[_way.GetCount() - 1];
		_isThere = !isGone || _whole != edited.element.GetObject();
		const bool isPlaced = edited.isPlaced && !isGone;
		if (isPlaced && !IsFromOutside(edited.element.GetObject()))
			return false;
		return Run(isPlaced && _isThere && _whole == edited.element.GetObject());
	}

	BaseArray<PatchedNodes> TakeTouched() noexcept
	{
		return std::move(_mover.touched);
	}

private:
	/// True when it does not matter where an element was before it was placed, which is not told.
	bool IsFromOutside(ObjectBase* element) const noexcept
	{
		const bool isTextPart = Borrowed<SVGTextRunInterface>(element) || (Borrowed<SVGTextContentInterface>(element) &&
																		   !Borrowed<SVGTextElementInterface>(element));
		if (isTextPart || (_record.hasMissing && HasIds(element)))
			return false;
		const std::span<const ElementEntry> entries = _record.Find(element);
		if (entries.empty()) // It was in no definition that is used.
			return !HasReferencedContent(_record);
		// What stood around it is as it was without it, and there is nothing that depends on it.
		if (entries.size() > 1 || entries[0].node >= _record.pictureEnd || _whole != element)
			return false;
		for (std::int32_t at = _record.At(entries[0].node).parent; at >= 0; at = _record.At(at).parent)
		{
			ObjectBase* const around = _record.At(at).element.GetObject();
			const bool hasPart =
				Borrowed<SVGSwitchElementInterface>(around) || Borrowed<SVGTextElementInterface>(around);
			const bool isAsked = Borrowed<SVGElementInterface>(around)->HasAttribute(SVGImportAttribute::transformBox);
			if (hasPart || isAsked || _record.IsReferenced(around) || _record.At(at).isBoxUsed)
				return false;
		}
		return true;
	}

	/// What an element stands in went, which is told as well; but it may have stood elsewhere before.
	Result<bool> TakeOut(const Edited& edited) noexcept
	{
		if (!edited.isPlaced)
			return true;
		_whole = edited.element.GetObject();
		if (!IsFromOutside(_whole))
			return false;
		const std::span<const ElementEntry> entries = _record.Find(_whole);
		return Remove(entries.empty() ? -1 : entries[0].node);
	}

	Result<bool> Run(bool isNew) noexcept
	{
		const std::span<const ElementEntry> entries = _record.Find(_whole);
		if (entries.size() > 1 || (entries.size() == 1 && entries[0].node >= _record.pictureEnd))
			return false;
		const std::int32_t old = entries.empty() ? -1 : entries[0].node;
		const std::span<const ElementEntry> around = _record.Find(_way[_way.GetCount() - 2]);
		const bool hasDefinitions = _record.pictureEnd < static_cast<std::int32_t>(_record.nodes.GetCount());
		if (around.empty() && hasDefinitions)
			return false;
		const std::int32_t parent = around.size() == 1 && around[0].node < _record.pictureEnd ? around[0].node : -1;
		if ((parent < 0 && !around.empty()) || !ORVAN_TRY(IsByItself(_record, _way, parent)))
			return false;
		if (_isThere && parent >= 0)
			return Record(old, parent, isNew);
		// Nothing of it shows any more, or ever did.
		return Remove(old);
	}

	/// Records the element anew, and puts it where it belongs.
	Result<bool> Record(std::int32_t old, std::int32_t parent, bool isNew) noexcept
	{
		_scene.route = std::span<ObjectBase* const>(_way.begin(), _way.GetCount());
		geometry::Record fresh = ORVAN_TRY(RecordPicture(_scene, Contents::left));
		_scene.route = {};
		const std::span<const ElementEntry> found = fresh.Find(_whole);
		if (found.size() > 1)
			return false;
		if (found.empty())
			return Remove(old);
		Transplant transplant(fresh, found[0].node, _record);
		if (transplant.LeavesTooMuch())
			return false;
		if (old >= 0 && !isNew && transplant.Fits(old))
		{
			ORVAN_TRY(transplant.Replace(old));
			ForgetAround(old);
			return _mover.Touch(old, _record.At(old).end);
		}
		ORVAN_TRY(Remove(old));
		const std::int32_t place = FindPlace(_record, _whole, parent);
		if (!ORVAN_TRY(_mover.MakeRoom(place, parent, transplant.GetCount())))
			return false;
		ForgetAround(parent);
		ORVAN_TRY(transplant.Insert(place, parent));
		return true;
	}

	Result<bool> Remove(std::int32_t node) noexcept
	{
		if (node < 0)
			return true;
		ForgetAround(node);
		return _mover.Remove(node);
	}

	/// Has the boxes of a node, and of those around it, found out anew.
	void ForgetAround(std::int32_t node) noexcept
	{
		for (std::int32_t at = node; at >= 0; at = _record.At(at).parent)
			_record.ForgetBoxes(at);
	}

	Scene& _scene;
	geometry::Record& _record;
	NodeMover _mover;
	BaseArray<ObjectBase*> _way; ///< Down to what is recorded as a whole.
	ObjectBase* _whole = nullptr;
	bool _isThere = false;
};

} // namespace

Result<std::optional<BaseArray<PatchedNodes>>> PatchRecord(Scene& scene, Record& record, const Edited& edited) noexcept
{
	Patch patch(scene, record);
	if (!ORVAN_TRY(patch.Apply(edited)))
		return std::optional<BaseArray<PatchedNodes>>();
	BaseArray<PatchedNodes> touched = patch.TakeTouched();
	for (const PatchedNodes& nodes : touched)
	{
		for (std::int32_t node = nodes.first; node < nodes.end; node++)
			record.ForgetBoxes(node);
	}
	return std::optional(std::move(touched));
}

} // namespace orvan::geometry
