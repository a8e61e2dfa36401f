// SPDX-License-Identifier: MIT
/// An attribute value on its way to an element, and what all handlers do with one.
#pragma once

#include "importer/attributes/attribute_names.h"
#include "importer/grammar_values.h"
#include "importer/parse_context.h"

#include <array>

namespace orvan::svg
{

/// One attribute value on its way to an element.
struct Value
{
	SVGParseContext& context;
	SVGImportAttribute attribute;
	std::string_view text;
	grammar::Source source;

	const SVGElementRef& Element() const noexcept
	{
		return *context.element;
	}

	/// True when there is a value to set. A refused one ends the import, unless that is tolerant.
	bool Accept(grammar::Parsed parsed) const
	{
		if (parsed == grammar::Parsed::refused)
			context.Refuse(kSVGAttributeNames[static_cast<std::size_t>(attribute)].data(), text);
		return parsed == grammar::Parsed::value;
	}

	/// The same element, to be used without an interface in between.
	ElementBase& OwnElement() const noexcept
	{
		return *context.ownElement;
	}

	/// Stores a value in the dictionary under the attribute's own number.
	template <typename T>
	Result<void> Store(T value) const noexcept
	{
		return OwnElement().Store(attribute, std::move(value));
	}
};

/// What sets an attribute, or property, of an element from its text.
using AttributeImporter = Result<void> (*)(const Value& value);

/// The importers by number; null for what is known but ignored.
extern const std::array<AttributeImporter, kPlainNumberCount> kAttributeImporters;

/// Sets the attribute `attribute` of the context's element, of which there must be one, from its text. Errors end the
/// import; of a refused value the context knows.
inline Result<void> DispatchAttribute(SVGParseContext& context, SVGImportAttribute attribute, std::string_view text,
									  grammar::Source source)
{
	const AttributeImporter importer = kAttributeImporters[static_cast<std::size_t>(attribute)];
	return importer != nullptr ? importer({context, attribute, text, source}) : Result<void>();
}

/// A setter's error is of no consequence for the rest of the file, unless memory has run out.
inline Result<void> IgnoreUnlessOutOfMemory(Result<void> result) noexcept
{
	if (!result.IsOk() && result.GetError().GetClass() == ErrorClass::outOfMemory)
		return result;
	return {};
}

} // namespace orvan::svg
