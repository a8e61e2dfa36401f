// SPDX-License-Identifier: MIT
#pragma once

/// Custom properties, and what var() comes to.
///
///     VariableBudget budget;
///     Variables root(nullptr, budget), inner(&root, budget);
///     root.Set("--accent", "red");
///     inner.Set("--line", "var(--accent) 2px");
///     std::string value;
///     inner.Substitute("a var(--line) var(--none, b)", value); // value is "a  red 2px  b", give or take blanks.

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orvan::css
{
/// What putting values in the place of var() may cost in one document: bytes that are put in, and elements that are
/// asked for a custom property. When it is used up, nothing is put in any more.
struct VariableBudget
{
	std::size_t bytes = std::size_t{32} << 20;
	std::uint64_t steps = 16'000'000;
};

/// What became of the var() in a value.
enum class Substitution
{
	done,
	impossible, ///< A custom property that is not there, or that refers to itself: the property is as if unset.
	malformed   ///< No var() of CSS: the declaration counts as absent.
};

/// Whether there may be a var() or an env() in a value.
bool MayHaveVariables(std::string_view value) noexcept;

/// The custom properties of one element, behind which stand those that it inherits. Everything may throw
/// std::bad_alloc.
class Variables
{
public:
	/// The outer ones, null for the outermost, and the budget must outlive these.
	Variables(Variables* outer, VariableBudget& budget,
			  std::pmr::memory_resource* memory = std::pmr::get_default_resource());
	Variables(const Variables&) = delete;
	Variables& operator=(const Variables&) = delete;

	/// Takes a declaration of a custom property; a later one of the same name replaces it. The views must outlive
	/// these.
	void Set(std::string_view name, std::string_view value);

	/// As above, of a name and a value that are gone soon.
	void SetCopy(std::string_view name, std::string_view value);

	/// A value with every var() and env() replaced; there are no values for env(), so that it comes to its fallback.
	/// The result is written only when it is done.
	Substitution Substitute(std::string_view value, std::string& result);

private:
	enum class State : std::uint8_t
	{
		asWritten,
		inProgress,
		known,
		inherited, ///< "inherit" or "unset".
		absent     ///< "initial", or without a value that can be told.
	};

	struct Entry
	{
		std::string_view value;
		State state;
	};

	bool Find(std::string_view name, int depth, std::string_view& value);
	bool Resolve(Entry& entry, int depth);
	Substitution Append(std::string_view value, int depth, std::string& result);
	bool Append(std::string_view characters, std::string& result);
	std::string_view Keep(std::string_view text);

	Variables* const _outer;
	VariableBudget& _budget;
	std::pmr::monotonic_buffer_resource _arena;
	std::pmr::unordered_map<std::string_view, Entry> _entries;
};
} // namespace orvan::css
