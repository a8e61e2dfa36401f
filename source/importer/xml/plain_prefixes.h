// SPDX-License-Identifier: MIT
/// The namespaces that the reader of plain XML knows of.
#pragma once

#include "importer/names.h"
#include "importer/xml/xml_guard.h"
#include "importer/xml/xml_names.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace orvan::svg::plain
{

/// The prefixes that are declared where the reader is.
class Prefixes
{
public:
	enum class Space
	{
		undeclared,
		svg,
		xlink,
		other
	};

	/// False when there are more than plain texts have.
	bool Declare(const NameWords& prefix, std::string_view space) noexcept
	{
		if (_count == _declared.size() || _declarations == kMaxNamespacePrefixes)
			return false;
		_declarations++;
		_declared[_count++] = {prefix, space == kSvgNamespace     ? Space::svg
									   : space == kXlinkNamespace ? Space::xlink
																  : Space::other};
		return true;
	}

	/// The last declaration of a prefix holds.
	Space Find(const NameWords& prefix) const noexcept
	{
		for (std::size_t i = _count; i-- != 0;)
		{
			if (_declared[i].prefix == prefix)
				return _declared[i].space;
		}
		return Space::undeclared;
	}

	std::size_t GetCount() const noexcept
	{
		return _count;
	}

	/// Forgets all but the first ones.
	void ReturnTo(std::size_t count) noexcept
	{
		_count = count;
	}

private:
	struct Declared
	{
		NameWords prefix;
		Space space;
	};

	std::array<Declared, 32> _declared;
	std::size_t _count = 0;
	int _declarations = 0; ///< Of all up to here.
};

} // namespace orvan::svg::plain
