// SPDX-License-Identifier: MIT
#include "group_effects.h"

#include "svg_complete.h"

namespace orvan::geometry
{
namespace
{

/// By the numbers of `SVGBlendMode`.
constexpr std::string_view kBlendModes[] = {"normal",     "multiply",    "screen",     "overlay",    "darken",
											"lighten",    "color-dodge", "color-burn", "hard-light", "soft-light",
											"difference", "exclusion",   "hue",        "saturation", "color",
											"luminosity", "plus-lighter"};

/// Writes several masks as declarations.
void AddLayers(const MaskLayers& masks, SvgWriter& writer) noexcept
{
	constexpr std::string_view kNames[] = {"add", "subtract", "intersect", "exclude"};
	for (int i = 0; i < masks.count; i++)
		writer.Add(i == 0 ? "mask:url(#" : ",url(#").AddName("m", masks.first + i).Add(")");
	const auto composite = static_cast<std::size_t>(masks.composite);
	if (composite != 0 && composite < std::size(kNames))
		writer.Add(";mask-composite:").Add(kNames[composite]);
}

void AddFilter(const RecordedFilter& filter, std::int64_t number, SvgWriter& writer) noexcept
{
	writer.Add(" filter=\"");
	for (const RecordedFilter::Step& step : filter.steps)
	{
		if (&step != filter.steps.begin())
			writer.Add(" ");
		if (step.isElement)
			writer.Add("url(#").AddName("f", number++).Add(")");
		else
			writer.Add(std::string_view(step.text.begin(), step.text.GetCount()));
	}
	writer.Add("\"");
}

} // namespace

void AddGroupEffects(const GroupEffects& effects, SvgWriter& writer) noexcept
{
	if (effects.opacity != 1.0)
		writer.AddAttribute("opacity", effects.opacity);
	if (effects.clip != 0)
		writer.AddReference("clip-path", "c", effects.clip);
	if (effects.masks.count == 1)
		writer.AddReference("mask", "m", effects.masks.first);
	if (effects.filter != nullptr)
		AddFilter(*effects.filter, effects.firstFilter, writer);
	const auto blend = static_cast<std::size_t>(effects.blendMode);
	const bool isBlended = blend != 0 && blend < std::size(kBlendModes);
	const bool hasLayers = effects.masks.count > 1;
	if (!isBlended && !effects.isIsolated && !hasLayers)
		return;
	writer.Add(" style=\"");
	if (hasLayers)
		AddLayers(effects.masks, writer);
	if (isBlended)
		writer.Add(hasLayers ? ";mix-blend-mode:" : "mix-blend-mode:").Add(kBlendModes[blend]);
	else if (effects.isIsolated)
		writer.Add(hasLayers ? ";isolation:isolate" : "isolation:isolate");
	writer.Add("\"");
}

} // namespace orvan::geometry
