// SPDX-License-Identifier: MIT
#include "importer/complete/single_transforms.h"

#include "complete/values.h"
#include "elements/element_classes.h"
#include "importer/grammar_values.h"

#include <algorithm>

namespace orvan::svg::complete
{
namespace
{

constexpr std::array<std::string_view, 3> kNames = {"translate", "rotate", "scale"};

std::size_t FindName(std::string_view name) noexcept
{
	return static_cast<std::size_t>(std::ranges::find(kNames, name) - kNames.begin());
}

} // namespace

bool SingleTransforms::IsName(std::string_view name) noexcept
{
	return FindName(name) < kNames.size();
}

bool SingleTransforms::Read(std::string_view name, std::string_view value, const Vector2d& viewport) noexcept
{
	const std::size_t index = FindName(name);
	grammar::complete::Transform transform;
	// Nothing of them is inherited, so the words for all properties come to the same.
	if (grammar::complete::ParseCssWide(value) == grammar::complete::CssWideKeyword::none)
	{
		const grammar::complete::RelativeUnits units{.viewportWidth = viewport.x, .viewportHeight = viewport.y};
		const auto property = static_cast<grammar::complete::SingleTransform>(index);
		if (grammar::complete::ParseSingleTransform(value, property, units, transform) != grammar::Parsed::value)
			return false;
	}
	_matrices[index] = ToMatrix(transform.For(viewport.x, viewport.y));
	if (index == 0)
		_percentages = {{transform.eOfWidth, transform.fOfWidth}, {transform.eOfHeight, transform.fOfHeight}};
	_viewport = viewport;
	_isAny = true;
	return true;
}

Result<void> SingleTransforms::ApplyTo(ElementBase& element) noexcept
{
	const Matrix2d before = _matrices[0] * _matrices[1] * _matrices[2];
	TransformPercentages percentages = _percentages;
	if (const auto* inner = element.Find<BaseArray<Float>>(SVGImportAttribute::transformPercentages))
	{
		percentages.ofWidth = percentages.ofWidth + before.ApplyToDirection({(*inner)[0], (*inner)[1]});
		percentages.ofHeight = percentages.ofHeight + before.ApplyToDirection({(*inner)[2], (*inner)[3]});
	}
	Reset();
	_isAny = false;
	ORVAN_TRY(element.SetLocalTransform(before * element.GetLocalTransform()));
	return SetPercentages(element, percentages, _viewport);
}

Result<void> SetPercentages(ElementBase& element, const TransformPercentages& percentages, const Vector2d& box) noexcept
{
	if (percentages == TransformPercentages())
		return element.Unset(SVGImportAttribute::transformPercentages);
	const Vector2d& moved = element.GetLocalTransform().offset;
	BaseArray<Float> values;
	for (const double value : {percentages.ofWidth.x, percentages.ofWidth.y, percentages.ofHeight.x,
							   percentages.ofHeight.y, box.x, box.y, moved.x, moved.y})
		ORVAN_TRY(values.Append(value));
	return element.Store(SVGImportAttribute::transformPercentages, std::move(values));
}

} // namespace orvan::svg::complete
