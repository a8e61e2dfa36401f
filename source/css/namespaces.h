// SPDX-License-Identifier: MIT
#pragma once

#include "bounds.h"

#include <algorithm>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace orvan::css
{
/// The namespaces that a sheet declares with @namespace. Selectors know two: that of drawings, in which all elements
/// are, and any other.
class Namespaces
{
public:
	enum class Space
	{
		undeclared,
		ofDrawings,
		other
	};

	explicit Namespaces(std::pmr::memory_resource* memory) : _declared(memory)
	{
	}

	/// Declares what a prefix, or none, stands for; a later declaration replaces an earlier one. The prefix must
	/// outlive this object. Throws std::bad_alloc.
	void Declare(std::string_view prefix, std::string_view name)
	{
		const Space space = name == "http://www.w3.org/2000/svg" ? Space::ofDrawings : Space::other;
		if (_declared.size() < kMaxNamespaces)
			_declared.insert(_declared.begin(), {prefix, space});
	}

	/// What a prefix, or none, stands for.
	Space Find(std::string_view prefix) const
	{
		const auto found = std::find_if(_declared.begin(), _declared.end(),
										[prefix](const Entry& entry) { return entry.prefix == prefix; });
		return found != _declared.end() ? found->space : Space::undeclared;
	}

private:
	struct Entry
	{
		std::string_view prefix;
		Space space;
	};

	std::pmr::vector<Entry> _declared;
};
} // namespace orvan::css
