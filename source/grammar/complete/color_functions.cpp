// SPDX-License-Identifier: MIT
#include "complete/color_functions.h"

#include "complete/calculations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace orvan::grammar::complete
{
namespace
{
constexpr double kMostChannel = 255;

/// A component as written.
struct Component
{
	double value = 0; ///< A fraction when it is a percentage.
	bool isPercentage = false;
	bool isNone = false;
};

/// How the components of a function are written.
struct Notation
{
	bool hasCommas = false;
	bool isRelative = false;
	std::array<Component, 3> components;
	double alpha = 1;
};

/// How a function writes the components of its space.
struct Form
{
	std::string_view name;
	std::string_view space;
	bool mayHaveCommas;
	Components numbers;     ///< What a number of one means.
	Components percentages; ///< What a hundred per cent mean.
};

constexpr Form kRgb{
	"rgb", "srgb", true, {1 / kMostChannel, 1 / kMostChannel, 1 / kMostChannel}, {1, 1, 1},
};
constexpr Form kHsl{"hsl", "hsl", true, {1, 0.01, 0.01}, {360, 1, 1}};

constexpr Form kForms[]{
	kRgb,
	{"rgba", kRgb.space, true, kRgb.numbers, kRgb.percentages},
	kHsl,
	{"hsla", kHsl.space, true, kHsl.numbers, kHsl.percentages},
	{"hwb", "hwb", false, {1, 0.01, 0.01}, {360, 1, 1}},
	{"lab", "lab", false, {1, 1, 1}, {100, 125, 125}},
	{"lch", "lch", false, {1, 1, 1}, {100, 150, 360}},
	{"oklab", "oklab", false, {1, 1, 1}, {1, 0.4, 0.4}},
	{"oklch", "oklch", false, {1, 1, 1}, {1, 0.4, 360}},
};

/// The words that stand for the components of the colour that another one is made from.
using Names = std::array<NamedNumber, 4>;

bool TakeComponent(ValueCursor& cursor, bool isHue, std::span<const NamedNumber> names, Component& component) noexcept
{
	component.isNone = cursor.TakeWord("none");
	if (component.isNone)
		return true;
	for (const NamedNumber& number : names)
	{
		if (cursor.TakeWord(number.name))
		{
			component.value = number.value;
			return true;
		}
	}
	if (!names.empty() && IsLetter(cursor.Peek()))
	{
		Quantity quantity;
		if (!TakeCalculation(cursor, quantity, names))
			return false;
		component.value = quantity.value;
		component.isPercentage = quantity.kind == Quantity::Kind::percentage;
		const bool isAngle = quantity.kind == Quantity::Kind::angle;
		return quantity.kind == Quantity::Kind::number || component.isPercentage || (isAngle && isHue);
	}
	if (isHue)
		return cursor.TakeAngle(true, component.value);
	return cursor.TakeNumberOrPercentage(component.value, component.isPercentage);
}

/// The components of a colour in a space; those that say nothing there are missing.
Components ConvertTo(const ColorSpace& space, const WrittenColor& color, unsigned& missing) noexcept
{
	missing = color.space == &space ? color.missing : 0;
	const Components components =
		color.space == &space ? color.components : space.fromSrgb({color.red, color.green, color.blue});
	if (space.isGrey && space.isGrey(components))
		missing |= 1U << space.hue;
	return components;
}

class FunctionReader
{
public:
	FunctionReader(ValueCursor& cursor, int nesting) noexcept : _cursor(cursor), _nesting(nesting)
	{
	}

	/// Reads "color()" from behind its parenthesis.
	bool TakeColorOfSpace(WrittenColor& color) noexcept
	{
		if (!TakeOrigin())
			return false;
		for (const ColorSpace& space : GetColorFunctionSpaces())
		{
			if (_cursor.TakeWord(space.name))
				return TakeComponents({"color", space.name, false, {1, 1, 1}, {1, 1, 1}}, space, color);
		}
		return false;
	}

	/// Reads a function of its own form.
	bool TakeColorOfForm(const Form& form, WrittenColor& color) noexcept
	{
		return TakeOrigin() && TakeComponents(form, GetColorSpace(form.space), color);
	}

	/// Reads "color-mix()".
	bool TakeMix(WrittenColor& color) noexcept
	{
		const ColorSpace* space = &GetColorSpace("oklab");
		Way way = Way::shorter;
		if (_cursor.TakeWord("in") && (!TakeSpace(space, way) || !_cursor.TakeComma()))
			return false;
		Part first;
		Part second;
		if (!TakePart(first) || !_cursor.TakeComma() || !TakePart(second) || !_cursor.TakeClose())
			return false;
		// What one does not say is what the other one leaves.
		if (!first.share)
			first.share = second.share ? 1 - *second.share : 0.5;
		if (!second.share)
			second.share = 1 - *first.share;
		const double sum = *first.share + *second.share;
		const double share = sum == 0 ? 0.5 : *second.share / sum;
		Mix(*space, way, first.color, second.color, share, color);
		color.alpha *= std::min(sum, 1.0);
		return true;
	}

	/// Reads "light-dark()", of which the first counts.
	bool TakeLight(WrittenColor& color) noexcept
	{
		WrittenColor dark;
		return TakeWrittenColor(_cursor, _nesting, color) && _cursor.TakeComma() &&
			   TakeWrittenColor(_cursor, _nesting, dark) && _cursor.TakeClose();
	}

private:
	/// Which way round the hues are gone.
	enum class Way
	{
		shorter,
		longer,
		increasing,
		decreasing
	};

	/// A colour of a mix, and how much of it.
	struct Part
	{
		WrittenColor color;
		std::optional<double> share;
	};

	/// Reads "from" and a colour, if they stand here.
	bool TakeOrigin() noexcept
	{
		if (!_cursor.TakeWord("from"))
			return true;
		_origin.emplace();
		return TakeWrittenColor(_cursor, _nesting, *_origin) && _origin->kind == ColorKind::color;
	}

	/// Reads three components and an alpha to the end of the function, all parted by commas where these are allowed, or
	/// by blanks and a slash.
	bool TakeNotation(const Form& form, const ColorSpace& space, Notation& notation) noexcept
	{
		Names names;
		std::span<const NamedNumber> known;
		if (_origin)
		{
			unsigned missing;
			const Components components = ConvertTo(space, *_origin, missing);
			for (std::size_t i = 0; i != components.size(); ++i)
				names[i] = {space.channels[i], components[i] / form.numbers[i]};
			names[components.size()] = {"alpha", _origin->alpha};
			known = names;
			notation.alpha = _origin->alpha;
			notation.isRelative = true;
		}
		for (std::size_t i = 0; i != notation.components.size(); ++i)
		{
			if (i == 1)
				notation.hasCommas = form.mayHaveCommas && !_origin && _cursor.TakeComma();
			else if (i == 2 && notation.hasCommas && !_cursor.TakeComma())
				return false;
			_cursor.SkipSpaces();
			if (!TakeComponent(_cursor, i == space.hue, known, notation.components[i]))
				return false;
		}
		_cursor.SkipSpaces();
		if (notation.hasCommas ? _cursor.TakeMark(',') : _cursor.TakeMark('/'))
		{
			Component alpha;
			if (!TakeComponent(_cursor, false, known, alpha))
				return false;
			notation.alpha = std::clamp(alpha.value, 0.0, 1.0);
			if (alpha.isNone && notation.hasCommas)
				return false;
		}
		if (notation.hasCommas && std::ranges::any_of(notation.components, &Component::isNone))
			return false;
		return _cursor.TakeClose();
	}

	bool TakeComponents(const Form& form, const ColorSpace& space, WrittenColor& color) noexcept
	{
		Notation notation;
		if (!TakeNotation(form, space, notation) || !HasSoundCommas(form, notation))
			return false;
		for (std::size_t i = 0; i != notation.components.size(); ++i)
		{
			const Component& component = notation.components[i];
			color.components[i] = component.value * (component.isPercentage ? form.percentages[i] : form.numbers[i]);
			if (component.isNone)
				color.missing |= 1U << i;
		}
		Restrict(form, notation.isRelative, color.components);
		color.space = &space;
		SetChannels(color, space.toSrgb(color.components), notation.alpha);
		// What was written so before there were other spaces comes in 256 steps a channel.
		const bool isStepped = space.name == "srgb" ? form.mayHaveCommas : space.hue == 0;
		if (isStepped && !notation.isRelative)
			Round(color);
		return true;
	}

	/// With commas, the components of rgb() are of one kind, and saturation and lightness percentages.
	static bool HasSoundCommas(const Form& form, const Notation& notation) noexcept
	{
		if (!notation.hasCommas)
			return true;
		const auto& [first, second, third] = notation.components;
		if (form.space == kHsl.space)
			return second.isPercentage && third.isPercentage;
		return first.isPercentage == second.isPercentage && first.isPercentage == third.isPercentage;
	}

	/// Brings what cannot be into what can.
	static void Restrict(const Form& form, bool isRelative, Components& components) noexcept
	{
		if (form.space == "hsl" || form.space == "hwb")
		{
			components[0] = std::fmod(components[0], 360);
			for (const std::size_t i : {std::size_t{1}, std::size_t{2}})
				components[i] = isRelative ? components[i] : std::clamp(components[i], 0.0, 1.0);
		}
		else if (form.space != "srgb" && form.name != "color")
		{
			components[0] = std::clamp(components[0], 0.0, form.percentages[0]);
			if (form.space == "lch" || form.space == "oklch")
				components[1] = std::max(components[1], 0.0);
		}
	}

	static void SetChannels(Color& color, const Components& rgb, double alpha) noexcept
	{
		color.kind = ColorKind::color;
		color.red = rgb[0];
		color.green = rgb[1];
		color.blue = rgb[2];
		color.alpha = alpha;
	}

	static void Round(Color& color) noexcept
	{
		for (double* channel : {&color.red, &color.green, &color.blue})
		{
			// Single precision, as browsers have it, so that halves come out on the same side.
			const double held = std::isfinite(*channel) ? std::clamp(*channel, 0.0, 1.0) : 0.0;
			const float scaled = static_cast<float>(held) * static_cast<float>(kMostChannel);
			*channel = std::round(scaled) / kMostChannel;
		}
	}

	bool TakeSpace(const ColorSpace*& space, Way& way) noexcept
	{
		space = nullptr;
		for (const ColorSpace& candidate : GetColorSpaces())
		{
			if (!_cursor.TakeWord(candidate.name))
				continue;
			space = &candidate;
			break;
		}
		constexpr struct
		{
			std::string_view name;
			Way value;
		} kWays[]{{"shorter", Way::shorter},
				  {"longer", Way::longer},
				  {"increasing", Way::increasing},
				  {"decreasing", Way::decreasing}};
		return space &&
			   (space->hue == ColorSpace::kNoHue || !_cursor.TakeKeyword(kWays, way) || _cursor.TakeWord("hue"));
	}

	/// A colour with its percentage before or behind it. What currentColor will be is not known yet.
	bool TakePart(Part& part) noexcept
	{
		return TakeShare(part) && TakeWrittenColor(_cursor, _nesting, part.color) &&
			   part.color.kind == ColorKind::color && (part.share || TakeShare(part));
	}

	bool TakeShare(Part& part) noexcept
	{
		const char* const start = _cursor.At();
		double share;
		bool isPercentage;
		const bool isNumber = !_cursor.IsAtEnd() && _cursor.TakeNumberOrPercentage(share, isPercentage);
		if (!isNumber)
		{
			_cursor.MoveTo(start);
			return true;
		}
		part.share = share;
		_cursor.SkipSpaces();
		return isPercentage && share >= 0 && share <= 1;
	}

	static double MixHues(double from, double to, Way way, double share) noexcept
	{
		const auto normalize = [](double hue)
		{
			const double rest = std::fmod(hue, 360);
			return rest < 0 ? rest + 360 : rest;
		};
		from = normalize(from);
		double turn = normalize(to) - from;
		const bool isLong = std::fabs(turn) > 180;
		const bool isBack = turn < 0;
		const bool isOther = way == Way::shorter      ? isLong
							 : way == Way::longer     ? std::fabs(turn) < 180
							 : way == Way::increasing ? isBack
													  : turn > 0;
		if (isOther)
			turn += isBack || turn == 0 ? 360 : -360;
		return from + turn * share;
	}

	static void Mix(const ColorSpace& space, Way way, const WrittenColor& from, const WrittenColor& to, double share,
					WrittenColor& mixed) noexcept
	{
		unsigned missingFrom;
		unsigned missingTo;
		Components left = ConvertTo(space, from, missingFrom);
		Components right = ConvertTo(space, to, missingTo);
		const double alpha = from.alpha * (1 - share) + to.alpha * share;
		for (std::size_t i = 0; i != left.size(); ++i)
		{
			// What one of them does not say is as the other has it.
			const unsigned bit = 1U << i;
			if ((missingFrom & bit) != 0)
				left[i] = right[i];
			else if ((missingTo & bit) != 0)
				right[i] = left[i];
			if (i == space.hue)
				mixed.components[i] = MixHues(left[i], right[i], way, share);
			else if (alpha != 0)
				mixed.components[i] = (left[i] * from.alpha * (1 - share) + right[i] * to.alpha * share) / alpha;
		}
		mixed.missing = missingFrom & missingTo;
		mixed.space = &space;
		SetChannels(mixed, space.toSrgb(mixed.components), alpha);
	}

	ValueCursor& _cursor;
	const int _nesting;
	std::optional<WrittenColor> _origin;
};
} // namespace

bool TakeColorFunction(ValueCursor& cursor, int nesting, WrittenColor& color) noexcept
{
	if (nesting == kMostColors)
		return false;
	FunctionReader reader(cursor, nesting + 1);
	for (const Form& form : kForms)
	{
		if (cursor.TakeFunction(form.name))
			return reader.TakeColorOfForm(form, color);
	}
	return (cursor.TakeFunction("color") && reader.TakeColorOfSpace(color)) ||
		   (cursor.TakeFunction("color-mix") && reader.TakeMix(color)) ||
		   (cursor.TakeFunction("light-dark") && reader.TakeLight(color));
}
} // namespace orvan::grammar::complete
