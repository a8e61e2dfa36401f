// SPDX-License-Identifier: MIT
/// The tags that the complete import knows, and sets of them.
#pragma once

#include "elements/class_table.h"
#include "importer/names.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace orvan::svg::complete
{

/// A tag. Those that share a kind with others have numbers of their own behind the kinds; an element of another
/// namespace, and one of an unknown tag, is `Tag::unknown`.
enum class Tag : std::uint8_t
{
	unknown = 0,
	// The kinds up to textRun follow, see `TagOf`.
	polygon = 55,
	polyline = 56,
	ellipse = 57,
	tref = 58,
};

constexpr Tag TagOf(SVGImportElementKind kind) noexcept
{
	return static_cast<Tag>(kind);
}

/// The kind of elements that a tag makes.
constexpr SVGImportElementKind KindOf(Tag tag) noexcept
{
	switch (tag)
	{
	case Tag::polygon:
	case Tag::polyline:
		return SVGImportElementKind::path;
	case Tag::ellipse:
		return SVGImportElementKind::circle;
	case Tag::tref:
		return SVGImportElementKind::tspan;
	default:
		return static_cast<SVGImportElementKind>(tag);
	}
}

/// A set of tags: those on which an attribute counts.
class TagSet
{
public:
	constexpr TagSet() noexcept = default;

	constexpr TagSet(std::initializer_list<SVGImportElementKind> kinds) noexcept
	{
		for (const SVGImportElementKind kind : kinds)
			_bits |= Bit(TagOf(kind));
	}

	static constexpr TagSet Of(std::initializer_list<Tag> tags) noexcept
	{
		TagSet set;
		for (const Tag tag : tags)
			set._bits |= Bit(tag);
		return set;
	}

	static constexpr TagSet All() noexcept
	{
		TagSet set;
		set._bits = ~std::uint64_t{0};
		return set;
	}

	/// All kinds from one to another.
	static constexpr TagSet Range(SVGImportElementKind first, SVGImportElementKind last) noexcept
	{
		TagSet set;
		for (auto kind = static_cast<int>(first); kind <= static_cast<int>(last); kind++)
			set._bits |= std::uint64_t{1} << kind;
		return set;
	}

	constexpr bool Has(Tag tag) const noexcept
	{
		return (_bits & Bit(tag)) != 0;
	}

	friend constexpr TagSet operator|(TagSet a, TagSet b) noexcept
	{
		a._bits |= b._bits;
		return a;
	}

private:
	static constexpr std::uint64_t Bit(Tag tag) noexcept
	{
		return std::uint64_t{1} << static_cast<int>(tag);
	}

	std::uint64_t _bits = 0;
};

/// The tag of a name without prefix; `unknown` when there is none.
Tag FindTag(std::string_view name) noexcept;

/// The same for a name from whose start on sixteen characters are readable, however short it is: with fewer
/// instructions.
Tag FindTagInText(std::string_view name) noexcept;

/// The name of a tag; empty for `unknown` and for runs of characters.
std::string_view TagName(Tag tag) noexcept;

/// What makes the elements of a tag.
const ObjectFactory& FactoryOf(Tag tag) noexcept;

} // namespace orvan::svg::complete
