// SPDX-License-Identifier: MIT
/// The tags that the importer knows, and the classes that it makes.
#pragma once

#include "elements/class_table.h"
#include "importer/names.h"

#include <utility>

namespace orvan::svg
{

struct TagRow
{
	std::string_view name;
	SVGImportElementKind kind;
};

namespace detail
{

/// Calls `visit` with each tag of a list of classes and its kind.
template <typename List, typename Visit>
constexpr void VisitSingleTags(Visit visit)
{
	List::VisitTags(
		[&visit](std::string_view tags, SVGImportElementKind kind)
		{
			while (!tags.empty())
			{
				// Character by character: with the undefined-behaviour sanitizer `find` is no constant expression.
				std::size_t length = 0;
				while (length < tags.size() && tags[length] != ' ')
					length++;
				const std::string_view tag = tags.substr(0, length);
				visit(tag, kind);
				tags.remove_prefix(std::min(tag.size() + 1, tags.size()));
			}
		});
}

constexpr std::size_t CountTags() noexcept
{
	std::size_t count = 0;
	VisitSingleTags<ElementClasses>([&count](std::string_view, SVGImportElementKind) { count++; });
	return count;
}

constexpr std::array<TagRow, CountTags()> ListTags() noexcept
{
	std::array<TagRow, CountTags()> tags;
	std::size_t count = 0;
	VisitSingleTags<ElementClasses>(
		[&](std::string_view name, SVGImportElementKind kind) {
			tags[count++] = {name, kind};
		});
	return tags;
}

/// The factories by kind. An element of an unknown tag becomes a group.
template <std::size_t... kinds>
constexpr std::array<ObjectFactory, sizeof...(kinds)> MakeFactories(std::index_sequence<kinds...>) noexcept
{
	const auto idFor = [](std::size_t number)
	{
		const auto kind = static_cast<SVGImportElementKind>(number);
		return kind == SVGImportElementKind::unknown ? kSVGGroupElementClass : ElementClasses::FindId(kind);
	};
	return {ObjectFactory(idFor(kinds))...};
}

} // namespace detail

inline constexpr std::array kTags = detail::ListTags();
inline constexpr NameIndex<kTags.size()> kTagIndex(kTags);

/// The kind of element that a tag makes; `unknown` when it is no tag of SVG's.
inline SVGImportElementKind KindOfTag(std::string_view name) noexcept
{
	const TagRow* tag = kTagIndex.Find(kTags, name);
	return tag != nullptr ? tag->kind : SVGImportElementKind::unknown;
}

/// What makes the elements of a kind; for `unknown` they are groups.
inline constinit const std::array kElementFactories =
	detail::MakeFactories(std::make_index_sequence<ElementClasses::kKindCount>());

} // namespace orvan::svg
