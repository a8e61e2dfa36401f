// SPDX-License-Identifier: MIT
/// The attributes that a dictionary keeps in two entries: the value that the plain import knows too, under the
/// attribute's own number, and beside it a companion with what that value cannot hold.
///
///     for (const DataDictionary::Entry& entry : element->GetAttributeDictionary())
///         Show(GetAttributeOf(static_cast<SVGImportAttribute>(entry.key))); // "x" also for the list of a text.
///
/// A companion counts where it is present, but for a shape to clip with, before which a reference counts. Setters of an
/// attribute take its companion away, and so do removing and copying the attribute; what a transform has beside it
/// stays and loses its meaning instead. A companion is never an attribute of files.
#pragma once

#include "svg_attributes.h"

namespace orvan
{

struct SVGAttributeCompanion
{
	SVGImportAttribute attribute;
	SVGImportAttribute companion;
};

inline constexpr SVGAttributeCompanion kSVGAttributeCompanions[] = {
	{SVGImportAttribute::x, SVGImportAttribute::xList},
	{SVGImportAttribute::y, SVGImportAttribute::yList},
	{SVGImportAttribute::fontWeight, SVGImportAttribute::fontWeightNumber},
	{SVGImportAttribute::clipPath, SVGImportAttribute::clipShape},
	{SVGImportAttribute::transform, SVGImportAttribute::transformPercentages},
	{SVGImportAttribute::mask, SVGImportAttribute::maskLayers},
};

/// The companion of an attribute; `unknown`, which no dictionary has, for one without.
constexpr SVGImportAttribute GetCompanionOf(SVGImportAttribute attribute) noexcept
{
	for (const SVGAttributeCompanion& row : kSVGAttributeCompanions)
	{
		if (row.attribute == attribute)
			return row.companion;
	}
	return SVGImportAttribute::unknown;
}

/// The attribute that a key of a dictionary says something of: the one whose companion it is, otherwise itself.
constexpr SVGImportAttribute GetAttributeOf(SVGImportAttribute key) noexcept
{
	for (const SVGAttributeCompanion& row : kSVGAttributeCompanions)
	{
		if (row.companion == key)
			return row.attribute;
	}
	return key;
}

} // namespace orvan
