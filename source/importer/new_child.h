// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/hierarchy.h"
#include "svg_elements.h"

#include <tuple>
#include <utility>

namespace orvan::svg
{

/// A new element as the last child of its parent. The tree takes over the reference and keeps the element alive, so
/// that nothing is counted while it is filled.
class NewChild
{
public:
	NewChild(SVGElementRef element, HierarchyObject& parent) noexcept : _element(std::move(element))
	{
		static_cast<HierarchyObject*>(_element.GetObject())->PlaceNew(parent);
	}

	NewChild(const NewChild&) = delete;

	~NewChild()
	{
		std::ignore = _element.Detach();
	}

	const SVGElementRef& Get() const noexcept
	{
		return _element;
	}

private:
	SVGElementRef _element;
};

} // namespace orvan::svg
