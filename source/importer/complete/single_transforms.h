// SPDX-License-Identifier: MIT
/// "translate", "rotate" and "scale": properties that share the element's one transform with "transform".
#pragma once

#include "elements/element_base.h"

#include <array>
#include <string_view>

namespace orvan::svg::complete
{

/// What percentages in a transform add to its translation, for each unit of the box's width and height.
struct TransformPercentages
{
	Vector2d ofWidth;
	Vector2d ofHeight;

	friend bool operator==(const TransformPercentages&, const TransformPercentages&) noexcept = default;
};

/// Notes them beside the element's transform, which was read for a box of this size.
Result<void> SetPercentages(ElementBase& element, const TransformPercentages& percentages,
							const Vector2d& box) noexcept;

/// Collects what the declarations of one element say, and puts it before the element's transform in the end. The names
/// are those of attributes as well, which have nothing to do with it.
class SingleTransforms
{
public:
	static bool IsName(std::string_view name) noexcept;

	/// Takes a declaration over; false when its value is none. Percentages are of the viewport.
	bool Read(std::string_view name, std::string_view value, const Vector2d& viewport) noexcept;

	/// True when a declaration was taken over since the last `ApplyTo`.
	bool IsAny() const noexcept
	{
		return _isAny;
	}

	/// Forgets what was read, for "all": whatever it says of them comes to "none".
	void Reset() noexcept
	{
		_matrices.fill(Matrix2d());
		_percentages = {};
	}

	/// Changes the element's transform by what was read, and forgets it.
	Result<void> ApplyTo(ElementBase& element) noexcept;

private:
	std::array<Matrix2d, 3> _matrices; ///< In the order in which they apply.
	TransformPercentages _percentages; ///< Of "translate".
	Vector2d _viewport;
	bool _isAny = false;
};

} // namespace orvan::svg::complete
