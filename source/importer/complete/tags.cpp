// SPDX-License-Identifier: MIT
#include "importer/complete/tags.h"

#include "importer/tags.h"

#include <array>
#include <utility>

namespace orvan::svg::complete
{
namespace
{

struct Row
{
	std::string_view name;
	Tag tag = Tag::unknown;
};

template <typename Visit>
constexpr void VisitAll(Visit visit)
{
	detail::VisitSingleTags<ElementClasses>(visit);
	detail::VisitSingleTags<CompleteElementClasses>(visit);
}

constexpr std::size_t kTagCount = []
{
	std::size_t count = 0;
	VisitAll([&count](std::string_view, SVGImportElementKind) { count++; });
	return count;
}();

constexpr std::array<Row, kTagCount> kTags = []
{
	std::array<Row, kTagCount> rows;
	std::size_t count = 0;
	VisitAll(
		[&](std::string_view name, SVGImportElementKind kind)
		{
			Tag tag = TagOf(kind);
			if (name == "polygon")
				tag = Tag::polygon;
			else if (name == "polyline")
				tag = Tag::polyline;
			else if (name == "ellipse")
				tag = Tag::ellipse;
			else if (name == "tref")
				tag = Tag::tref;
			rows[count++] = {name, tag};
		});
	return rows;
}();

constexpr ProbedNameIndex<kTags.size()> kIndex(kTags);
constexpr ShortNameIndex<kTags.size(), 9> kShortNames(kTags);

constexpr const char* FindClassId(SVGImportElementKind kind) noexcept
{
	const char* const id = ElementClasses::FindId(kind);
	return id != nullptr ? id : CompleteElementClasses::FindId(kind);
}

template <std::size_t... kinds>
constexpr std::array<ObjectFactory, sizeof...(kinds)> MakeFactories(std::index_sequence<kinds...>) noexcept
{
	return {ObjectFactory(FindClassId(static_cast<SVGImportElementKind>(kinds)))...};
}

constinit const std::array kFactories =
	MakeFactories(std::make_index_sequence<static_cast<std::size_t>(SVGImportElementKind::textRun) + 1>());

} // namespace

Tag FindTag(std::string_view name) noexcept
{
	const Row* row = kIndex.Find(kTags, name);
	return row != nullptr ? row->tag : Tag::unknown;
}

Tag FindTagInText(std::string_view name) noexcept
{
	if (const std::size_t number = kShortNames.Find(name.data(), name.size()); number != 0) [[likely]]
		return kTags[number - 1].tag;
	return name.size() > NameWords::kLongest ? FindTag(name) : Tag::unknown;
}

std::string_view TagName(Tag tag) noexcept
{
	for (const Row& row : kTags)
	{
		if (row.tag == tag)
			return row.name;
	}
	return {};
}

const ObjectFactory& FactoryOf(Tag tag) noexcept
{
	return kFactories[static_cast<std::size_t>(KindOf(tag))];
}

} // namespace orvan::svg::complete
