// SPDX-License-Identifier: MIT
#include "effects.h"

#include "lengths.h"

namespace orvan::drawing
{

Effects::Effects(const DataDictionary& attributes) noexcept
{
	using Key = SVGImportAttribute;

	const auto readId = [&](const DataDictionary::Entry& entry) -> const String*
	{
		const auto* id = attributes.GetValue<String>(entry);
		return id != nullptr && !id->IsEmpty() ? id : nullptr;
	};
	const auto readKeyword = [&](const DataDictionary::Entry& entry)
	{
		const auto* value = attributes.GetValue<std::int32_t>(entry);
		return value != nullptr ? *value : 0;
	};
	for (const DataDictionary::Entry& entry : attributes)
	{
		switch (static_cast<Key>(entry.key))
		{
		case Key::opacity:
			opacity = ClampToUnit(attributes.GetOr(entry.key, 1.0));
			break;
		case Key::mask:
			mask = readId(entry);
			break;
		case Key::clipPath:
			clipPath = readId(entry);
			break;
		case Key::clipShape:
			clipShape = attributes.GetValue<SVGClipShape>(entry);
			break;
		case Key::filter:
			filter = attributes.GetValue<BaseArray<SVGFilterFunction>>(entry);
			if (filter != nullptr && filter->IsEmpty())
				filter = nullptr;
			break;
		case Key::mixBlendMode:
			blendMode = static_cast<SVGBlendMode>(readKeyword(entry));
			break;
		case Key::isolation:
			isIsolated = static_cast<SVGIsolation>(readKeyword(entry)) == SVGIsolation::isolate;
			break;
		default:
			break;
		}
	}
	if (clipPath != nullptr)
		clipShape = nullptr;
}

} // namespace orvan::drawing
