// SPDX-License-Identifier: MIT
#include "record_patch.h"

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

/// True when what is at the end of the way shows only there, and what stands around it does not depend on it.
Result<bool> IsByItself(const Record& record, const BaseArray<ObjectBase*>& way, std::int32_t node) noexcept
{
	for (ObjectBase* const element : way)
	{
		if (record.IsReferenced(element))
			return false;
	}
	for (std::size_t i = 0; i + 1 < way.GetCount(); i++)
	{
		// Where it is depends on the box of what stands in it.
		const Borrowed<SVGElementInterface> around(way[i]);
		if (!around || around->HasAttribute(SVGImportAttribute::transformBox))
			return false;
	}
	for (std::int32_t at = record.At(node).parent; at >= 0; at = record.At(at).parent)
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

/// Puts the nodes of one record in the place of those of another.
class Transplant
{
public:
	/// `from` and `to` are where the nodes begin in each record.
	Transplant(Record& source, std::int32_t from, Record& record, std::int32_t to) noexcept
		: _source(source), _from(from), _record(record), _to(to), _count(source.At(from).end - from)
	{
	}

	/// True when both have the same parts in the same order.
	bool Fits() const noexcept
	{
		if (_record.At(_to).end - _to != _count)
			return false;
		for (std::int32_t i = 0; i < _count; i++)
		{
			const Node& fresh = _source.At(_from + i);
			const Node& old = _record.At(_to + i);
			const bool isSame = fresh.element.GetObject() == old.element.GetObject() && fresh.kind == old.kind &&
								fresh.end - _from == old.end - _to && (fresh.shape < 0) == (old.shape < 0) &&
								HasCells(_source, fresh) == HasCells(_record, old) &&
								(i == 0 || fresh.parent - _from == old.parent - _to);
			if (!isSame)
				return false;
		}
		return true;
	}

	/// True when too much would be left behind by and by.
	bool LeavesTooMuch() const noexcept
	{
		return _record.CountShared() + _source.CountShared() > _record.sharedCount + kMostLeft;
	}

	Result<void> Run() noexcept
	{
		_firstRegion = static_cast<std::int32_t>(_record.regions.GetCount());
		_firstGradient = static_cast<std::int32_t>(_record.gradients.GetCount());
		for (std::int32_t i = 0; i < _count; i++)
			ORVAN_TRY(Replace(At(_record, _to + i), At(_source, _from + i)));
		for (ClipRegion& region : _source.regions)
		{
			for (ClipShape& shape : region.shapes)
				shape.clip = Shift(shape.clip, _firstRegion);
			region.next = Shift(region.next, _firstRegion);
			ORVAN_TRY(_record.regions.Append(std::move(region)));
		}
		for (RecordedGradient& gradient : _source.gradients)
			ORVAN_TRY(_record.gradients.Append(std::move(gradient)));
		return TakeReferences();
	}

private:
	static bool HasCells(const Record& record, const Node& node) noexcept
	{
		return node.shape >= 0 && record.ShapeOf(node).cells != nullptr;
	}

	static Node& At(Record& record, std::int32_t node) noexcept
	{
		return record.nodes[static_cast<std::size_t>(node)];
	}

	static std::int32_t Shift(std::int32_t index, std::int32_t by) noexcept
	{
		return index >= 0 ? index + by : index;
	}

	Result<void> Replace(Node& old, Node& fresh) noexcept
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
			ORVAN_TRY(ReplaceShape(_record.shapes[static_cast<std::size_t>(old.shape)],
								   _source.shapes[static_cast<std::size_t>(fresh.shape)]));
			fresh.shape = old.shape;
		}
		old = std::move(fresh);
		return {};
	}

	Result<void> ReplaceShape(RecordedShape& old, RecordedShape& fresh) noexcept
	{
		old.outline = std::move(fresh.outline);
		if (fresh.cells != nullptr)
			*old.cells = std::move(*fresh.cells);
		if (fresh.style->IsLike(*old.style))
			return {};
		ShapeStyle style = ORVAN_TRY(fresh.style->Copy());
		style.fill.gradient = Shift(style.fill.gradient, _firstGradient);
		style.stroke.gradient = Shift(style.stroke.gradient, _firstGradient);
		old.style = ORVAN_TRY(_record.KeepStyle(std::move(style)));
		return {};
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
	std::int32_t _to;
	std::int32_t _count;
	std::int32_t _firstRegion = 0;
	std::int32_t _firstGradient = 0;
};

} // namespace

Result<std::optional<PatchedNodes>> PatchRecord(Scene& scene, Record& record, ObjectBase* element) noexcept
{
	const std::optional<PatchedNodes> none;
	const SVGElementRef root = scene.document->GetRootElement();
	BaseArray<ObjectBase*> way = ORVAN_TRY(FindWay(root.GetObject(), element));
	ORVAN_TRY(EndAtWhole(way));
	if (way.GetCount() < 2) // Much depends on the outermost element.
		return none;
	ObjectBase* const whole = way[way.GetCount() - 1];
	const std::span<const ElementEntry> entries = record.Find(whole);
	if (entries.size() != 1 || entries[0].node >= record.pictureEnd)
		return none;
	const std::int32_t first = entries[0].node;
	if (!ORVAN_TRY(IsByItself(record, way, first)))
		return none;
	scene.route = std::span<ObjectBase* const>(way.begin(), way.GetCount());
	Record fresh = ORVAN_TRY(RecordPicture(scene, Contents::left));
	scene.route = {};
	const std::span<const ElementEntry> found = fresh.Find(whole);
	if (found.size() != 1)
		return none;
	Transplant transplant(fresh, found[0].node, record, first);
	if (!transplant.Fits() || transplant.LeavesTooMuch())
		return none;
	ORVAN_TRY(transplant.Run());
	const PatchedNodes patched{first, record.At(first).end};
	for (std::int32_t node = first; node < patched.end; node++)
		record.ForgetBoxes(node);
	for (std::int32_t at = record.At(first).parent; at >= 0; at = record.At(at).parent)
		record.ForgetBoxes(at);
	return std::optional(patched);
}

} // namespace orvan::geometry
