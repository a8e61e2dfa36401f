// SPDX-License-Identifier: MIT
/// What `ElementBase` and its classes do with tracked members; for the sources that say which members those are.
#pragma once

#include "editing/edit.h"
#include "svg_document.h"

namespace orvan::svg
{

template <typename T>
Result<void> ElementBase::ChangeTracked(T& member, T value, SVGImportAttribute attribute, SVGChangeKind kind) noexcept
{
	const Standing standing = FindStanding();
	if (standing.document == nullptr)
	{
		member = std::move(value);
		return {};
	}
	Document& document = *standing.document;
	if (document.History().IsRecording())
	{
		Edit* const edit = ORVAN_TRY(Edit::Make<MemberEdit<T>>(this, kind, attribute, member, std::move(value)));
		edit->Swap();
		document.History().Append(edit);
	}
	else
		member = std::move(value);
	if (standing.isInTree)
		document.TellOf(*this, kind, attribute);
	return {};
}

} // namespace orvan::svg
