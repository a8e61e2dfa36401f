// SPDX-License-Identifier: MIT
#include "record_patch.h"

#include "drawing/gradients.h"
#include "node_mover.h"
#include "recorder.h"
#include "svg_complete.h"
#include "transplant.h"

#include <functional>

namespace orvan::geometry
{
namespace
{

using drawing::Scene;

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
