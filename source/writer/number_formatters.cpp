// SPDX-License-Identifier: MIT
#include "writer/value_formatters.h"

#include "grammar.h"

#include <array>
#include <cmath>
#include <iterator>

namespace orvan::svg
{

using Number = SVGImportAttribute;

bool FormatNumber(std::string& text, const WrittenValue& value)
{
	const auto* number = value.Find<Float>();
	return number != nullptr && AppendNumber(text, *number, value.style.numbers);
}

bool FormatLength(std::string& text, const WrittenValue& value)
{
	const auto* length = value.Find<SVGLength>();
	return length != nullptr && AppendLength(text, *length, value.style.numbers);
}

namespace
{

bool AppendLengths(std::string& text, const BaseArray<SVGLength>* lengths, const ValueStyle& style)
{
	return AppendList(text, lengths,
					  [&](const SVGLength& length) { return AppendLength(text, length, style.numbers); });
}

} // namespace

bool FormatNumbers(std::string& text, const WrittenValue& value)
{
	return AppendList(text, value.Find<BaseArray<Float>>(),
					  [&](Float number) { return AppendNumber(text, number, value.style.numbers); });
}

/// One number stands for two that are the same.
bool FormatNumberPair(std::string& text, const WrittenValue& value)
{
	const auto* pair = value.Find<BaseArray<Float>>();
	if (pair == nullptr || pair->GetCount() != 2)
		return false;
	const NumberStyle& style = value.style.numbers;
	if (!AppendNumber(text, (*pair)[0], style))
		return false;
	if ((*pair)[0] == (*pair)[1])
		return true;
	text += ' ';
	return AppendNumber(text, (*pair)[1], style);
}

bool FormatDashArray(std::string& text, const WrittenValue& value)
{
	const auto* dashes = value.Find<BaseArray<SVGLength>>();
	if (dashes != nullptr && dashes->IsEmpty())
	{
		text += "none";
		return true;
	}
	return AppendLengths(text, dashes, value.style);
}

/// A list where there is one, otherwise the single length.
bool FormatPosition(std::string& text, const WrittenValue& value, Number list)
{
	const auto* positions = value.Find<BaseArray<SVGLength>>(list);
	return positions != nullptr ? AppendLengths(text, positions, value.style) : FormatLength(text, value);
}

bool FormatX(std::string& text, const WrittenValue& value)
{
	return FormatPosition(text, value, Number::xList);
}

bool FormatY(std::string& text, const WrittenValue& value)
{
	return FormatPosition(text, value, Number::yList);
}

bool FormatShift(std::string& text, const WrittenValue& value)
{
	const auto* shifts = value.Find<BaseArray<SVGLength>>();
	return shifts != nullptr ? AppendLengths(text, shifts, value.style) : FormatNumber(text, value);
}

bool FormatOrient(std::string& text, const WrittenValue& value)
{
	const auto* orient = value.Find<SVGOrient>();
	if (orient == nullptr)
		return false;
	if (orient->type == SVGOrientType::angle)
		return AppendNumber(text, orient->angle, value.style.numbers);
	text += orient->type == SVGOrientType::automatic ? "auto" : "auto-start-reverse";
	return true;
}

bool FormatBaselineShift(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kNames[] = {"baseline", "sub", "super"};
	const auto* shift = value.Find<SVGBaselineShift>();
	if (shift == nullptr)
		return false;
	if (shift->type == SVGBaselineShiftType::length)
		return AppendLength(text, shift->length, value.style.numbers);
	const auto type = static_cast<std::int32_t>(shift->type);
	return AppendName(text, kNames, &type);
}

bool FormatFontWeight(std::string& text, const WrittenValue& value)
{
	if (const auto* number = value.Find<Float>(Number::fontWeightNumber))
	{
		if (*number < 0.0)
		{
			text += *number == -1.0 ? "lighter" : "bolder";
			return true;
		}
		return AppendNumber(text, *number, value.style.numbers);
	}
	// Numbers are shorter, and what a complete import makes of either; the plain one reads no numbers.
	static constexpr std::string_view kNames[] = {"normal", "bold"};
	static constexpr std::string_view kNumbers[] = {"400", "700"};
	return AppendName(text, value.style.isPlain ? kNames : kNumbers, value.Find<std::int32_t>());
}

bool FormatFontStretch(std::string& text, const WrittenValue& value)
{
	const auto* stretch = value.Find<Float>();
	if (stretch != nullptr && *stretch == 1.0)
	{
		text += "normal";
		return true;
	}
	return stretch != nullptr && AppendPercentage(text, *stretch, value.style.numbers);
}

bool FormatFontSizeAdjust(std::string& text, const WrittenValue& value)
{
	const auto* adjustment = value.Find<Float>();
	if (adjustment != nullptr && *adjustment < 0.0)
	{
		text += "none";
		return true;
	}
	return FormatNumber(text, value);
}

bool FormatMatrix(std::string& text, const WrittenValue& value)
{
	const auto* matrix = value.Find<Matrix2d>();
	return matrix != nullptr && AppendMatrix(text, *matrix, value.style);
}

bool FormatTransformOrigin(std::string& text, const WrittenValue& value)
{
	const auto* origin = value.Find<SVGLength2d>();
	if (origin == nullptr || !AppendLength(text, origin->x, value.style.numbers))
		return false;
	text += ' ';
	return AppendLength(text, origin->y, value.style.numbers);
}

bool FormatViewBox(std::string& text, const WrittenValue& value)
{
	const auto* box = value.Find<SVGViewbox>();
	if (box == nullptr)
		return false;
	bool isFirst = true;
	for (const SVGLength* side : {&box->x, &box->y, &box->width, &box->height})
	{
		if (!std::exchange(isFirst, false))
			text += ' ';
		if (!AppendNumber(text, side->value, value.style.numbers))
			return false;
	}
	return true;
}

bool FormatAspectRatio(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kAligns[] = {"xMidYMid", "none",     "xMinYMin", "xMidYMin", "xMaxYMin",
												   "xMinYMid", "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax"};
	const auto* ratio = value.Find<SVGPreserveAspectRatio>();
	if (ratio == nullptr)
		return false;
	const auto align = static_cast<std::int32_t>(ratio->align);
	if (!AppendName(text, kAligns, &align))
		return false;
	if (ratio->meetOrSlice == SVGMeetOrSlice::slice)
		text += " slice";
	return true;
}

} // namespace orvan::svg
