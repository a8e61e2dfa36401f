// SPDX-License-Identifier: MIT
#include "complete/color_spaces.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace orvan::grammar::complete
{
namespace
{
using Rows = std::array<Components, 3>;

// The matrices of CSS Color 4.
constexpr Rows kXyzToLinearSrgb{Components{12831.0 / 3959, -329.0 / 214, -1974.0 / 3959},
								Components{-851781.0 / 878810, 1648619.0 / 878810, 36519.0 / 878810},
								Components{705.0 / 12673, -2585.0 / 12673, 705.0 / 667}};
constexpr Rows kD50ToD65{Components{0.955473421488075, -0.02309845494876471, 0.06325924320057072},
						 Components{-0.0283697093338637, 1.0099953980813041, 0.021041441191917323},
						 Components{0.012314014864481998, -0.020507649298898964, 1.330365926242124}};
constexpr Rows kDisplayP3ToXyz{Components{608311.0 / 1250200, 189793.0 / 714400, 198249.0 / 1000160},
							   Components{35783.0 / 156275, 247089.0 / 357200, 198249.0 / 2500400},
							   Components{0, 32229.0 / 714400, 5220557.0 / 5000800}};
constexpr Rows kA98ToXyz{Components{573536.0 / 994567, 263643.0 / 1420810, 187206.0 / 994567},
						 Components{591459.0 / 1989134, 6239551.0 / 9945670, 374412.0 / 4972835},
						 Components{53769.0 / 1989134, 351524.0 / 4972835, 4929758.0 / 4972835}};
constexpr Rows kRec2020ToXyz{Components{63426534.0 / 99577255, 20160776.0 / 139408157, 47086771.0 / 278816314},
							 Components{26158966.0 / 99577255, 472592308.0 / 697040785, 8267143.0 / 139408157},
							 Components{0, 19567812.0 / 697040785, 295819943.0 / 278816314}};
constexpr Rows kProPhotoToXyz50{Components{0.7977666449006423, 0.13518129740053308, 0.0313477341283922},
								Components{0.2880748288194013, 0.711835234241873, 0.00008993693872564},
								Components{0, 0, 0.8251046025104602}};
constexpr Rows kOklabToRoots{Components{1, 0.3963377773761749, 0.2158037573099136},
							 Components{1, -0.1055613458156586, -0.0638541728258133},
							 Components{1, -0.0894841775298119, -1.2914855480194092}};
constexpr Rows kConesToXyz{Components{1.2268798758459243, -0.5578149944602171, 0.2813910456659647},
						   Components{-0.0405757452148008, 1.1122868032803170, -0.0717110580655164},
						   Components{-0.0763729366746601, -0.4214933324022432, 1.5869240198367816}};

Components Multiply(const Rows& rows, const Components& v) noexcept
{
	Components result{};
	for (std::size_t i = 0; i != rows.size(); ++i)
		result[i] = rows[i][0] * v[0] + rows[i][1] * v[1] + rows[i][2] * v[2];
	return result;
}

template <typename Function>
Components Map(const Components& v, Function function) noexcept
{
	return {function(v[0]), function(v[1]), function(v[2])};
}

/// Applies to the magnitude, and keeps the sign.
template <typename Function>
auto Mirrored(Function function) noexcept
{
	return [function](double value)
	{
		return std::copysign(function(std::fabs(value)), value);
	};
}

double FromLinear(double value) noexcept
{
	return value > 0.0031308 ? 1.055 * std::pow(value, 1 / 2.4) - 0.055 : 12.92 * value;
}

double ToLinear(double value) noexcept
{
	return value > 0.04045 ? std::pow((value + 0.055) / 1.055, 2.4) : value / 12.92;
}

Components SrgbFromLinear(const Components& linear) noexcept
{
	return Map(linear, Mirrored(FromLinear));
}

Components XyzToSrgb(const Components& xyz) noexcept
{
	return SrgbFromLinear(Multiply(kXyzToLinearSrgb, xyz));
}

Components Xyz50ToSrgb(const Components& xyz) noexcept
{
	return XyzToSrgb(Multiply(kD50ToD65, xyz));
}

Components SrgbToSrgb(const Components& rgb) noexcept
{
	return rgb;
}

Components DisplayP3ToSrgb(const Components& rgb) noexcept
{
	return XyzToSrgb(Multiply(kDisplayP3ToXyz, Map(rgb, Mirrored(ToLinear))));
}

Components DisplayP3LinearToSrgb(const Components& rgb) noexcept
{
	return XyzToSrgb(Multiply(kDisplayP3ToXyz, rgb));
}

Components A98ToSrgb(const Components& rgb) noexcept
{
	const auto toLinear = [](double value)
	{
		return std::pow(value, 563.0 / 256);
	};
	return XyzToSrgb(Multiply(kA98ToXyz, Map(rgb, Mirrored(toLinear))));
}

Components Rec2020ToSrgb(const Components& rgb) noexcept
{
	const auto toLinear = [](double value)
	{
		constexpr double kAlpha = 1.09929682680944;
		constexpr double kBeta = 0.018053968510807;
		return value < kBeta * 4.5 ? value / 4.5 : std::pow((value + kAlpha - 1) / kAlpha, 1 / 0.45);
	};
	return XyzToSrgb(Multiply(kRec2020ToXyz, Map(rgb, Mirrored(toLinear))));
}

Components ProPhotoToSrgb(const Components& rgb) noexcept
{
	const auto toLinear = [](double value)
	{
		return value <= 16.0 / 512 ? value / 16 : std::pow(value, 1.8);
	};
	return Xyz50ToSrgb(Multiply(kProPhotoToXyz50, Map(rgb, Mirrored(toLinear))));
}

constexpr ColorSpace kSpaces[]{
	{"srgb", &SrgbToSrgb},
	{"srgb-linear", &SrgbFromLinear},
	{"display-p3", &DisplayP3ToSrgb},
	{"display-p3-linear", &DisplayP3LinearToSrgb},
	{"a98-rgb", &A98ToSrgb},
	{"prophoto-rgb", &ProPhotoToSrgb},
	{"rec2020", &Rec2020ToSrgb},
	{"xyz", &XyzToSrgb},
	{"xyz-d50", &Xyz50ToSrgb},
	{"xyz-d65", &XyzToSrgb},
};
} // namespace

Components HslToSrgb(const Components& hsl) noexcept
{
	// Not a structured binding, which lambdas cannot capture with every compiler.
	const double hue = hsl[0];
	const double saturation = hsl[1];
	const double lightness = hsl[2];
	const double reach = saturation * std::min(lightness, 1 - lightness);
	const auto channel = [hue, lightness, reach](double offset)
	{
		double sector = std::fmod(offset + hue / 30, 12);
		sector += sector < 0 ? 12 : 0;
		return lightness - reach * std::clamp(std::min(sector - 3, 9 - sector), -1.0, 1.0);
	};
	return {channel(0), channel(8), channel(4)};
}

Components HwbToSrgb(const Components& hwb) noexcept
{
	const double hue = hwb[0];
	const double white = hwb[1];
	const double black = hwb[2];
	if (white + black >= 1)
		return Map({1, 1, 1}, [gray = white / (white + black)](double value) { return value * gray; });
	return Map(HslToSrgb({hue, 1, 0.5}), [white, black](double value) { return value * (1 - white - black) + white; });
}

Components LabToSrgb(const Components& lab) noexcept
{
	constexpr double kKappa = 24389.0 / 27;
	constexpr double kEpsilon = 216.0 / 24389;
	const double y = (lab[0] + 16) / 116;
	const double x = y + lab[1] / 500;
	const double z = y - lab[2] / 200;
	const auto cube = [](double root)
	{
		return root * root * root > kEpsilon ? root * root * root : (116 * root - 16) / kKappa;
	};
	// The white of D50.
	return Xyz50ToSrgb({cube(x) * (0.3457 / 0.3585), cube(y), cube(z) * ((1 - 0.3457 - 0.3585) / 0.3585)});
}

Components OklabToSrgb(const Components& lab) noexcept
{
	const Components cones = Map(Multiply(kOklabToRoots, lab), [](double root) { return root * root * root; });
	return XyzToSrgb(Multiply(kConesToXyz, cones));
}

Components PolarToAxes(const Components& lch) noexcept
{
	const double angle = std::fmod(lch[2], 360) * (std::numbers::pi / 180);
	return {lch[0], lch[1] * std::cos(angle), lch[1] * std::sin(angle)};
}

std::span<const ColorSpace> GetColorSpaces() noexcept
{
	return kSpaces;
}
} // namespace orvan::grammar::complete
