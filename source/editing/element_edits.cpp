// SPDX-License-Identifier: MIT
/// What elements do about their document: finding it, and the changes of tracked elements.
#include "editing/edit.h"
#include "editing/tracked_change.h"
#include "elements/element_classes.h"

#include <atomic>

namespace orvan::svg
{

/// The transforms of an element that have other values. The block may be another one by the time of a swap.
class TransformEdit final : public Edit
{
public:
	TransformEdit(ElementBase& element, const ElementBase::Transforms& other) noexcept
		: Edit(&element, SVGChangeKind::attribute, SVGImportAttribute::transform), _other(other)
	{
	}

	void Swap() noexcept override
	{
		auto& element = static_cast<ElementBase&>(*GetSubject());
		std::swap(*element._transforms, _other);
		// What elements of other modules have to say about it would be of no use.
		IgnoreResult(element.MarkSubtreeDirty());
	}

private:
	ElementBase::Transforms _other;
};

// Finding the document -----------------------------------------------------------------------------------------------

ElementBase::Standing ElementBase::FindStanding() const noexcept
{
	const HierarchyObject* top = this;
	while (top->Parent() != nullptr)
		top = top->Parent();
	const ElementBase* element = AsElement(const_cast<HierarchyObject*>(top));
	if (element == nullptr || !element->_hasOwner)
		return {};
	Document* document = static_cast<const OwnedTransforms*>(element->_transforms)->owner.GetDocument();
	if (document == nullptr)
		return {};
	return {document, document->GetRootElement().GetObject() == top};
}

SVGDocumentRef ElementBase::GetDocument() const noexcept
{
	const Standing standing = FindStanding();
	return standing.isInTree ? SVGDocumentRef::From(standing.document) : SVGDocumentRef();
}

Result<void> ElementBase::SetOwner(const TreeOwner& owner) noexcept
{
	if (!_hasOwner)
	{
		void* memory = Host().allocate(sizeof(OwnedTransforms));
		if (memory == nullptr)
			return OutOfMemoryError();
		auto* owned = new (memory) OwnedTransforms;
		if (_transforms != nullptr)
			static_cast<Transforms&>(*owned) = *_transforms;
		Host().free(std::exchange(_transforms, owned));
		_hasOwner = true;
	}
	static_cast<OwnedTransforms*>(_transforms)->owner = owner;
	return {};
}

void ElementBase::TrackTree(HierarchyObject& top, bool isTracked) noexcept
{
	HierarchyObject* at = &top;
	while (at != nullptr)
	{
		if (ElementBase* element = AsElement(at))
			element->_isTracked = isTracked;
		if (at->FirstChild() != nullptr)
		{
			at = at->FirstChild();
			continue;
		}
		while (at != &top && at->NextSibling() == nullptr)
			at = at->Parent();
		at = at != &top ? at->NextSibling() : nullptr;
	}
}

// Changes of tracked elements ----------------------------------------------------------------------------------------

template Result<void> ElementBase::ChangeTracked(DataDictionary&, DataDictionary, SVGImportAttribute,
												 SVGChangeKind) noexcept;
template Result<void> ElementBase::ChangeTracked(PathData&, PathData, SVGImportAttribute, SVGChangeKind) noexcept;
template Result<void> ElementBase::ChangeTracked(String&, String, SVGImportAttribute, SVGChangeKind) noexcept;

Result<void> ElementBase::ChangeTracked(SVGImportElementKind& type, SVGImportElementKind value) noexcept
{
	return ChangeTracked(type, value, SVGImportAttribute::unknown, SVGChangeKind::type);
}

Result<void> ElementBase::ReplaceTransforms(const Transforms& transforms) noexcept
{
	const Standing standing = FindStanding();
	if (standing.document == nullptr)
	{
		*_transforms = transforms;
		return MarkSubtreeDirty();
	}
	Document& document = *standing.document;
	// The edit marks what is below as dirty too, but cannot tell how that went.
	Result<void> marked = MarkSubtreeDirty();
	if (document.History().IsRecording())
	{
		Edit* const edit = ORVAN_TRY(Edit::Make<TransformEdit>(*this, transforms));
		edit->Swap();
		document.History().Append(edit);
	}
	else
		*_transforms = transforms;
	if (standing.isInTree)
		document.TellOf(*this, SVGChangeKind::attribute, SVGImportAttribute::transform);
	return marked;
}

/// Before a command is appended: has what is there recorded, unless an edit that would be taken back together with the
/// new command holds it already.
Result<void> PathElement::RecordPath() noexcept
{
	const Standing standing = FindStanding();
	if (standing.document != nullptr && standing.document->History().IsRecording())
	{
		EditHistory& history = standing.document->History();
		if (!history.CanJoinLast(*this, SVGImportAttribute::d))
		{
			PathData copy;
			ORVAN_TRY(copy.CopyFrom(_path));
			history.Append(ORVAN_TRY(Edit::Make<MemberEdit<PathData>>(this, SVGChangeKind::attribute,
																	  SVGImportAttribute::d, _path, std::move(copy))));
		}
	}
	return {};
}

void PathElement::TellOfPath() noexcept
{
	if (const Standing standing = FindStanding(); standing.isInTree)
		standing.document->TellOf(*this, SVGChangeKind::attribute, SVGImportAttribute::d);
}

// Texts and uses -----------------------------------------------------------------------------------------------------

Result<void> TextElement::SetTextTracked(const String& text) noexcept
{
	const Standing standing = FindStanding();
	if (standing.document == nullptr || FirstChild() == nullptr)
	{
		ORVAN_TRY(RemoveChildren());
		return ChangeTracked(_text, text, SVGImportAttribute::unknown, SVGChangeKind::text);
	}
	Document& document = *standing.document;
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			for (HierarchyObject *child = LastChild(), *previous = nullptr; child != nullptr; child = previous)
			{
				previous = child->PreviousSibling();
				ORVAN_TRY(document.MovePlace(*child, nullptr, nullptr));
			}
			return document.MakeEdit<MemberEdit<String>>(this, SVGChangeKind::text, SVGImportAttribute::unknown, _text,
														 text);
		});
}

Result<SVGElementRef> UseElement::ResolveLink() noexcept
{
	const Standing standing = FindStanding();
	if (!standing.isInTree)
		return NotFoundError("A use element outside of all documents has nothing to find its link in.");
	const SVGElementRef element = ORVAN_TRY(standing.document->GetElementById(GetLink()));
	ORVAN_TRY(SetShadowRoot(element));
	return element;
}

} // namespace orvan::svg
