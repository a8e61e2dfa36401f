// SPDX-License-Identifier: MIT
#include "editing/edit.h"

namespace orvan::svg
{

void PlaceEdit::Swap() noexcept
{
	HierarchyObject& child = *GetSubject();
	auto* parent = static_cast<HierarchyObject*>(_parent.GetObject());
	auto* before = static_cast<HierarchyObject*>(_next.GetObject());
	// Other documents, and elements of other modules, may have moved it without telling. It is brought back from
	// anywhere, but taken out only from where this edit has put it.
	const bool isWhereExpected = child.Parent() == _expected.GetObject();
	if (parent != nullptr ? !child.CheckParent(*parent).IsOk() : !isWhereExpected)
		return;
	const HierarchyObjectRef formerParent = Ref(child.Parent());
	if (before != nullptr && before->Parent() != parent)
		before = nullptr;
	const HierarchyObjectRef formerNext = Ref(child.NextSibling());
	child.Place(parent, before);
	_expected = std::move(_parent);
	_parent = formerParent;
	_next = formerNext;
}

SVGChange PlaceEdit::Describe() const noexcept
{
	const bool isInserted = static_cast<bool>(_expected);
	return {isInserted ? SVGChangeKind::inserted : SVGChangeKind::removed, SVGImportAttribute::unknown,
			SVGElementRef::From(GetSubject()), Cast<SVGElementInterface>(isInserted ? _expected : _parent), nullptr};
}

} // namespace orvan::svg
