// SPDX-License-Identifier: MIT
/// What is saved in the place of the attributes that elements have.
#pragma once

#include "elements/element_base.h"
#include "writer/attribute_cover.h"
#include "writer/document_source.h"

#include <span>
#include <unordered_map>

namespace orvan::svg
{

/// The attributes of elements as they are saved: without what covers them, and without the "display" of elements that
/// an icon switches on and off.
class SavedAttributes
{
public:
	SavedAttributes() = default;

	/// `source` may be null. What a client has changed since it was covered is saved. May throw std::bad_alloc.
	SavedAttributes(std::span<const AttributeCover> covers, std::span<const ElementBase* const> switched,
					const DocumentSource* source);

	/// As they are saved.
	const DataDictionary& Of(const ElementBase& element) const noexcept
	{
		if (_others.empty()) [[likely]]
			return element.Attributes();
		const auto found = _others.find(&element);
		return found != _others.end() ? found->second : element.Attributes();
	}

private:
	std::unordered_map<const ElementBase*, DataDictionary> _others;
};

/// Whether a dictionary has an entry of another one with the same value. Values of types that are rare may be equal all
/// the same when it says no.
bool HasSame(const DataDictionary& values, const DataDictionary& others, const DataDictionary::Entry& entry) noexcept;

} // namespace orvan::svg
