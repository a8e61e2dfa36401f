// SPDX-License-Identifier: MIT
// The values of the complete import: nothing crashes, what is delivered is finite, and what the plain import takes has
// the same value here.

#include "agreement.h"
#include "complete/values.h"
#include "fast/number_tape.h"
#include "require.h"

#include <algorithm>
#include <cmath>
#include <string>

using namespace orvan::grammar;
using orvan::fuzz::Require;

namespace
{
/// Whether the plain import's reading counts: of numbers with more digits than it keeps it makes what it likes.
bool IsComparable(std::string_view text)
{
	constexpr std::size_t kMostDigits = 17;
	std::size_t digits = 0;
	for (char c : text)
	{
		const bool isDigit = c >= '0' && c <= '9';
		digits = isDigit || (c == '.' && digits != 0) ? digits + 1 : 0;
		if (digits > kMostDigits)
			return false;
	}
	return true;
}

bool AreClose(double first, double second)
{
	return first == second || std::fabs(first - second) <= 1e-12 * std::max(std::fabs(first), std::fabs(second));
}

bool AreClose(const Matrix& a, const Matrix& b)
{
	return AreClose(a.a, b.a) && AreClose(a.b, b.b) && AreClose(a.c, b.c) && AreClose(a.d, b.d) && AreClose(a.e, b.e) &&
		   AreClose(a.f, b.f);
}

bool IsFinite(const Matrix& m)
{
	return std::isfinite(m.a + m.b) && std::isfinite(m.c + m.d) && std::isfinite(m.e) && std::isfinite(m.f);
}

/// Everything that sinks are given.
class Checker final : public LengthSink, public complete::NumberSink, public complete::FilterSink, public PathSink
{
public:
	void Append(const Length& length) override
	{
		Add({length.value});
		lengths.push_back(length);
	}

	void Append(double number) override
	{
		Add({number});
	}

	void Append(const complete::FilterFunction& function) override
	{
		Add({function.amount, function.deviation.value, function.offsetX.value, function.offsetY.value,
			 function.color.red});
	}

	void MoveTo(double x, double y) override
	{
		Add({x, y});
	}

	void LineTo(double x, double y) override
	{
		Add({x, y});
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		Add({x1, y1, x2, y2, x, y});
		hasCubics = true;
	}

	void Close() override
	{
		Add({0});
	}

	std::vector<double> numbers;
	std::vector<Length> lengths;
	bool hasCubics = false;

private:
	void Add(std::initializer_list<double> values)
	{
		for (double value : values)
			Require(std::isfinite(value), "a number that is not finite was delivered");
		numbers.insert(numbers.end(), values);
	}
};

bool AreClose(const std::vector<double>& first, const std::vector<double>& second)
{
	return std::ranges::equal(first, second, [](double a, double b) { return AreClose(a, b); });
}

bool HasArc(std::string_view text)
{
	return text.find_first_of("aA") != text.npos;
}

void CheckNumbers(std::string_view text, Source source)
{
	double plain, number;
	const bool isNumber = complete::ParseAlpha(text, source, number) == Parsed::value;
	Require(!isNumber || std::isfinite(number), "alpha", text);
	if (IsComparable(text) && ParseNumber(text, source, plain) == Parsed::value)
		Require(isNumber && AreClose(number, plain), "a number differs", text);
	if (IsComparable(text) && ParseOffset(text, plain) == Parsed::value)
		Require(complete::ParseOffset(text, number) == Parsed::value && AreClose(number, plain), "an offset differs",
				text);
	Length plainLength, length;
	if (IsComparable(text) && ParseLength(text, source, plainLength) == Parsed::value)
	{
		Require(complete::ParseLength(text, source, complete::Range::any, length) == Parsed::value &&
					length.unit == plainLength.unit && AreClose(length.value, plainLength.value),
				"a length differs", text);
	}
	Checker plainDashes, dashes;
	const bool areDashes = complete::ParseDashArray(text, source, dashes) == Parsed::value;
	if (IsComparable(text) && !text.empty() &&
		orvan::grammar::ParseDashArray(text, source, plainDashes) == Parsed::value &&
		std::ranges::all_of(plainDashes.numbers, [](double value) { return value >= 0; }))
		Require(areDashes && AreClose(dashes.numbers, plainDashes.numbers), "dashes differ", text);
	complete::FontSize size;
	complete::TransformOrigin origin;
	complete::TextDecoration decoration;
	complete::BaselineShift shift;
	complete::Font font;
	(void)complete::ParseFontSize(text, source, size);
	(void)complete::ParseTransformOrigin(text, source, origin);
	(void)complete::ParseTextDecoration(text, source, decoration);
	(void)complete::ParseBaselineShift(text, source, shift);
	(void)complete::ParseFont(text, source, font);
	Checker filters;
	(void)complete::ParseFilter(text, source, filters);
}

void CheckPaints(std::string_view text)
{
	complete::Color color;
	if (complete::ParseColor(text, color) == Parsed::value)
	{
		for (double channel : {color.red, color.green, color.blue, color.alpha})
			Require(channel >= 0 && channel <= 1, "a channel is out of range", text);
	}
	PackedColor packed;
	if (ParseColor(text, packed) == Parsed::value)
	{
		const auto isNear = [](double channel, PackedColor byte)
		{
			return std::fabs(channel * 255 - (byte & 0xff)) < 1.5;
		};
		Require(complete::ParseColor(text, color) == Parsed::value && isNear(color.red, packed >> 16) &&
					isNear(color.green, packed >> 8) && isNear(color.blue, packed),
				"a colour differs", text);
	}
	complete::Paint paint;
	(void)complete::ParsePaint(text, paint);
	complete::Reference reference;
	complete::Mask mask;
	if (complete::ParseMask(text, mask) == Parsed::value)
	{
		Require(mask.count > 0 && mask.count <= complete::Mask::kMostLayers, "layers are miscounted", text);
		static_cast<void>(complete::ResolveEscapes(mask.layers[mask.count - 1].text));
	}
	if (complete::ParseReference(text, reference) == Parsed::value && reference.hasEscapes)
		Require(complete::ResolveEscapes(reference.text).size() <= 3 * reference.text.size(), "escapes grow", text);
}

void CheckTransforms(std::string_view text)
{
	Matrix plain, matrix;
	const bool isRead = complete::ParseTransformAttribute(text, matrix) == Parsed::value;
	Require(!isRead || IsFinite(matrix), "a matrix is not finite", text);
	// Only the library takes several commas between functions.
	if (IsComparable(text) && ParseTransform(text, plain) == Parsed::value && text.find(',') == text.npos)
		Require(isRead && AreClose(matrix, plain), "a transform differs", text);
	complete::Transform transform;
	if (complete::ParseTransformProperty(text, {}, transform) == Parsed::value)
		Require(IsFinite(transform.matrix), "a matrix is not finite", text);
}

void CheckPaths(std::string_view text)
{
	Checker plain, path;
	complete::Progress progress = complete::ParsePathByNumbers(text, path);
	if (NumberTape::IsAvailable())
	{
		Checker taped;
		const complete::Progress other = complete::ParsePathFromTape(text, taped);
		Require(other.isWhole == progress.isWhole && other.offset == progress.offset && taped.numbers == path.numbers,
				"a path from a tape differs", text);
	}
	Require(progress.offset <= text.size() && (!progress.isWhole || progress.offset == text.size()), "the offset",
			text);
	if (IsComparable(text) && orvan::grammar::ParsePath(text, plain) == Parsed::value)
		Require(progress.isWhole && (HasArc(text) || AreClose(path.numbers, plain.numbers)), "a path differs", text);
	// What is drawn of a path is what is drawn when the text ends where the fault is.
	if (!progress.isWhole)
	{
		Checker again;
		const std::string before(text.substr(0, progress.offset));
		(void)complete::ParsePath(before, again);
		Require(again.numbers.size() >= path.numbers.size(), "what stands before a fault differs", text);
	}
	Checker plainPoints, points;
	progress = complete::ParsePoints(text, points);
	Require(progress.offset <= text.size(), "the offset", text);
	if (IsComparable(text) && orvan::grammar::ParsePoints(text, plainPoints) == Parsed::value)
		Require(progress.isWhole && AreClose(points.numbers, plainPoints.numbers), "points differ", text);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	for (Source source : {Source::attribute, Source::style, Source::sheet})
		CheckNumbers(text, source);
	CheckPaints(text);
	CheckTransforms(text);
	CheckPaths(text);

	ViewBox plainBox, box;
	if (IsComparable(text) && ParseViewBox(text, plainBox) == Parsed::value && plainBox.width >= 0 &&
		plainBox.height >= 0)
		Require(complete::ParseViewBox(text, box) == Parsed::value && AreClose(box.height, plainBox.height),
				"a view box differs", text);
	AspectRatio plainRatio, ratio;
	if (ParsePreserveAspectRatio(text, plainRatio) == Parsed::value)
		Require(complete::ParsePreserveAspectRatio(text, ratio) == Parsed::value && ratio.align == plainRatio.align &&
					ratio.meetOrSlice == plainRatio.meetOrSlice,
				"an aspect ratio differs", text);
	Checker numbers, lengths;
	Require(complete::ParseNumberList(text, numbers).offset <= text.size(), "the offset of a list", text);
	Require(complete::ParseLengthList(text, lengths).offset <= text.size(), "the offset of a list", text);
	complete::FontFamily family;
	if (complete::ParseFontFamily(text, family) == Parsed::value)
		Require(!family.list.empty() && complete::RemoveComments(family.list).size() <= text.size(), "a family", text);
	Require(complete::TrimCss(text).size() <= text.size(), "a text that grows", text);
	(void)complete::ParseCssWide(text);
	complete::PathFunction function;
	(void)complete::ParsePathFunction(text, function);
	complete::Orient orient;
	(void)complete::ParseOrient(text, orient);
	return 0;
}
