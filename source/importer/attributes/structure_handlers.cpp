// SPDX-License-Identifier: MIT
/// Handlers of identity, links and structure.
#include "importer/attributes/attribute_handlers.h"
#include "importer/attributes/attribute_names.h"

namespace orvan::svg
{

using grammar::Source;

Result<void> ImportId(const Value& value)
{
	String id = ORVAN_TRY(String::Create(value.text));
	ORVAN_TRY(value.OwnElement().SetId(id));
	if (!value.context.suppressesIds)
		ORVAN_TRY(value.context.elementsById.Insert(std::move(id), value.Element()));
	return {};
}

Result<void> ImportLink(const Value& value)
{
	grammar::Reference reference;
	if (!value.Accept(grammar::ParseIri(value.text, reference)))
		return {};
	const Borrowed<SVGUseElementInterface> use(value.Element());
	if (!use)
		return {};
	const String link = ORVAN_TRY(String::Create(reference.text));
	return IgnoreUnlessOutOfMemory(use->SetLink(link));
}

Result<void> ImportTransform(const Value& value)
{
	grammar::Matrix m;
	if (!value.Accept(grammar::ParseTransform(value.text, m)))
		return {};
	return IgnoreUnlessOutOfMemory(value.Element()->SetLocalTransform(ToMatrix(m)));
}

namespace
{

/// True for attributes that say nothing outside of the element's dictionary.
constexpr bool IsKeptInDictionary(SVGImportAttribute attribute) noexcept
{
	switch (attribute)
	{
	case SVGImportAttribute::id:
	case SVGImportAttribute::href:
	case SVGImportAttribute::transform:
	case SVGImportAttribute::d:
	case SVGImportAttribute::points:
		return false;
	default:
		return true;
	}
}

/// Dispatches the declarations; the result tells whether all of them went to the dictionary.
Result<bool> ImportDeclarations(const Value& value)
{
	bool isAllInDictionary = true;
	grammar::StyleSplitter splitter(value.text);
	for (std::string_view name, text; splitter.Next(name, text);)
	{
		const SVGImportAttribute attribute = FindAttribute(name);
		isAllInDictionary &= IsKeptInDictionary(attribute);
		ORVAN_TRY(DispatchAttribute(value.context, attribute, text, Source::style));
	}
	return isAllInDictionary;
}

} // namespace

Result<void> ImportStyle(const Value& value)
{
	if (value.source == Source::style)
		return {};
	// On an element without other attributes so far, a style that was seen before comes to what it came to then. A
	// short one is read sooner than it is looked for, and a text that was copied to replace references is not in place
	// long enough to be compared with.
	constexpr std::size_t kShort = 16;
	ElementBase& element = value.OwnElement();
	if (value.text.size() < kShort || element.Attributes().GetCount() != 0 ||
		value.text.data() != value.context.rawValue.data())
	{
		ORVAN_TRY(ImportDeclarations(value));
		return {};
	}
	StyleCache& cache = value.context.styles;
	const StyleCache::Finding finding = cache.Find(value.text, element.GetElementType());
	if (finding == StyleCache::Finding::kept)
	{
		ORVAN_TRY(value.context.staging.TakeBack(element.LoadedAttributes()));
		element.ReplaceAttributes(cache.Get());
		return {};
	}
	if (ORVAN_TRY(ImportDeclarations(value)) && finding == StyleCache::Finding::noted)
	{
		ORVAN_TRY(value.context.staging.TakeBack(element.LoadedAttributes()));
		cache.Keep(element.Attributes());
	}
	return {};
}

} // namespace orvan::svg
