// SPDX-License-Identifier: MIT
#include "effects.h"

#include "lengths.h"

namespace orvan::drawing
{

Effects::Effects(const DataDictionary& attributes) noexcept
{
	const auto find = [&](SVGImportAttribute key) -> const String*
	{
		const auto* id = attributes.Find<String>(static_cast<std::int32_t>(key));
		return id != nullptr && !id->IsEmpty() ? id : nullptr;
	};
	opacity = ClampToUnit(attributes.GetOr(static_cast<std::int32_t>(SVGImportAttribute::opacity), 1.0));
	mask = find(SVGImportAttribute::mask);
	clipPath = find(SVGImportAttribute::clipPath);
}

} // namespace orvan::drawing
