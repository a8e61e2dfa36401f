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

constexpr Rows Invert(const Rows& m) noexcept
{
	Rows result{};
	double determinant = 0;
	for (std::size_t i = 0; i != m.size(); ++i)
	{
		for (std::size_t j = 0; j != m.size(); ++j)
		{
			const auto at = [&](std::size_t row, std::size_t column)
			{
				return m[(j + row) % 3][(i + column) % 3];
			};
			result[i][j] = at(1, 1) * at(2, 2) - at(1, 2) * at(2, 1);
		}
		determinant += m[0][i] * result[i][0];
	}
	for (Components& row : result)
	{
		for (double& value : row)
			value /= determinant;
	}
	return result;
}

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

constexpr double kRec2020Alpha = 1.09929682680944;
constexpr double kRec2020Beta = 0.018053968510807;
constexpr double kLabKappa = 24389.0 / 27;
constexpr double kLabEpsilon = 216.0 / 24389;
// The white of D50.
constexpr double kWhite50X = 0.3457 / 0.3585;
constexpr double kWhite50Z = (1 - 0.3457 - 0.3585) / 0.3585;

constexpr Rows kLinearSrgbToXyz = Invert(kXyzToLinearSrgb);
constexpr Rows kD65ToD50 = Invert(kD50ToD65);
constexpr Rows kXyzToDisplayP3 = Invert(kDisplayP3ToXyz);
constexpr Rows kXyzToA98 = Invert(kA98ToXyz);
constexpr Rows kXyzToRec2020 = Invert(kRec2020ToXyz);
constexpr Rows kXyz50ToProPhoto = Invert(kProPhotoToXyz50);
constexpr Rows kRootsToOklab = Invert(kOklabToRoots);
constexpr Rows kXyzToCones = Invert(kConesToXyz);

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

Components LinearFromSrgb(const Components& rgb) noexcept
{
	return Map(rgb, Mirrored(ToLinear));
}

Components XyzFromSrgb(const Components& rgb) noexcept
{
	return Multiply(kLinearSrgbToXyz, LinearFromSrgb(rgb));
}

Components Xyz50FromSrgb(const Components& rgb) noexcept
{
	return Multiply(kD65ToD50, XyzFromSrgb(rgb));
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
		return value < kRec2020Beta * 4.5 ? value / 4.5
										  : std::pow((value + kRec2020Alpha - 1) / kRec2020Alpha, 1 / 0.45);
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

Components DisplayP3LinearFromSrgb(const Components& rgb) noexcept
{
	return Multiply(kXyzToDisplayP3, XyzFromSrgb(rgb));
}

Components DisplayP3FromSrgb(const Components& rgb) noexcept
{
	return Map(DisplayP3LinearFromSrgb(rgb), Mirrored(FromLinear));
}

Components A98FromSrgb(const Components& rgb) noexcept
{
	const auto fromLinear = [](double value)
	{
		return std::pow(value, 256 / 563.0);
	};
	return Map(Multiply(kXyzToA98, XyzFromSrgb(rgb)), Mirrored(fromLinear));
}

Components Rec2020FromSrgb(const Components& rgb) noexcept
{
	const auto fromLinear = [](double value)
	{
		return value < kRec2020Beta ? value * 4.5 : kRec2020Alpha * std::pow(value, 0.45) - (kRec2020Alpha - 1);
	};
	return Map(Multiply(kXyzToRec2020, XyzFromSrgb(rgb)), Mirrored(fromLinear));
}

Components ProPhotoFromSrgb(const Components& rgb) noexcept
{
	const auto fromLinear = [](double value)
	{
		return value < 1.0 / 512 ? value * 16 : std::pow(value, 1 / 1.8);
	};
	return Map(Multiply(kXyz50ToProPhoto, Xyz50FromSrgb(rgb)), Mirrored(fromLinear));
}

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
	const double y = (lab[0] + 16) / 116;
	const double x = y + lab[1] / 500;
	const double z = y - lab[2] / 200;
	const auto cube = [](double root)
	{
		return root * root * root > kLabEpsilon ? root * root * root : (116 * root - 16) / kLabKappa;
	};
	return Xyz50ToSrgb({cube(x) * kWhite50X, cube(y), cube(z) * kWhite50Z});
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

/// Largest and smallest of the three, and the hue between them.
struct Extremes
{
	double most;
	double least;
	double hue;
};

Extremes FindExtremes(const Components& rgb) noexcept
{
	const auto [least, most] = std::minmax({rgb[0], rgb[1], rgb[2]});
	const double reach = most - least;
	double sector = 0;
	if (reach == 0)
		return {most, least, 0};
	if (most == rgb[0])
		sector = (rgb[1] - rgb[2]) / reach + 6;
	else
		sector = most == rgb[1] ? (rgb[2] - rgb[0]) / reach + 2 : (rgb[0] - rgb[1]) / reach + 4;
	return {most, least, std::fmod(sector * 60, 360)};
}

Components HslFromSrgb(const Components& rgb) noexcept
{
	const Extremes found = FindExtremes(rgb);
	const double lightness = (found.most + found.least) / 2;
	const double reach = std::min(lightness, 1 - lightness);
	return {found.hue, reach == 0 ? 0 : (found.most - lightness) / reach, lightness};
}

Components HwbFromSrgb(const Components& rgb) noexcept
{
	const Extremes found = FindExtremes(rgb);
	return {found.hue, found.least, 1 - found.most};
}

Components LabFromSrgb(const Components& rgb) noexcept
{
	const Components xyz = Xyz50FromSrgb(rgb);
	const auto root = [](double value)
	{
		return value > kLabEpsilon ? std::cbrt(value) : (kLabKappa * value + 16) / 116;
	};
	const double x = root(xyz[0] / kWhite50X);
	const double y = root(xyz[1]);
	const double z = root(xyz[2] / kWhite50Z);
	return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

Components OklabFromSrgb(const Components& rgb) noexcept
{
	return Multiply(kRootsToOklab,
					Map(Multiply(kXyzToCones, XyzFromSrgb(rgb)), [](double value) { return std::cbrt(value); }));
}

/// Lightness and two axes as lightness, chroma and hue.
Components AxesToPolar(const Components& lab) noexcept
{
	const double angle = std::atan2(lab[2], lab[1]) * (180 / std::numbers::pi);
	return {lab[0], std::hypot(lab[1], lab[2]), angle < 0 ? angle + 360 : angle};
}

/// The same space with chroma and hue instead of axes.
template <Components (*toSrgb)(const Components&) noexcept>
Components PolarToSrgb(const Components& lch) noexcept
{
	return toSrgb(PolarToAxes(lch));
}

template <Components (*fromSrgb)(const Components&) noexcept>
Components PolarFromSrgb(const Components& rgb) noexcept
{
	return AxesToPolar(fromSrgb(rgb));
}

// What is so near to a grey has its hue from rounding.
bool IsGreyHsl(const Components& hsl) noexcept
{
	return hsl[1] < 1e-5;
}

bool IsGreyHwb(const Components& hwb) noexcept
{
	return hwb[1] + hwb[2] > 1 - 1e-5;
}

bool IsGreyLch(const Components& lch) noexcept
{
	return lch[1] < 0.015;
}

bool IsGreyOklch(const Components& lch) noexcept
{
	return lch[1] < 4e-5;
}

constexpr std::array<std::string_view, 3> kXyz{"x", "y", "z"};

constexpr ColorSpace kSpaces[]{
	{"srgb", &SrgbToSrgb, &SrgbToSrgb},
	{"srgb-linear", &SrgbFromLinear, &LinearFromSrgb},
	{"display-p3", &DisplayP3ToSrgb, &DisplayP3FromSrgb},
	{"display-p3-linear", &DisplayP3LinearToSrgb, &DisplayP3LinearFromSrgb},
	{"a98-rgb", &A98ToSrgb, &A98FromSrgb},
	{"prophoto-rgb", &ProPhotoToSrgb, &ProPhotoFromSrgb},
	{"rec2020", &Rec2020ToSrgb, &Rec2020FromSrgb},
	{"xyz", &XyzToSrgb, &XyzFromSrgb, kXyz},
	{"xyz-d50", &Xyz50ToSrgb, &Xyz50FromSrgb, kXyz},
	{"xyz-d65", &XyzToSrgb, &XyzFromSrgb, kXyz},
	{"hsl", &HslToSrgb, &HslFromSrgb, {"h", "s", "l"}, 0, &IsGreyHsl},
	{"hwb", &HwbToSrgb, &HwbFromSrgb, {"h", "w", "b"}, 0, &IsGreyHwb},
	{"lab", &LabToSrgb, &LabFromSrgb, {"l", "a", "b"}},
	{"lch", &PolarToSrgb<&LabToSrgb>, &PolarFromSrgb<&LabFromSrgb>, {"l", "c", "h"}, 2, &IsGreyLch},
	{"oklab", &OklabToSrgb, &OklabFromSrgb, {"l", "a", "b"}},
	{"oklch", &PolarToSrgb<&OklabToSrgb>, &PolarFromSrgb<&OklabFromSrgb>, {"l", "c", "h"}, 2, &IsGreyOklch},
};
} // namespace

std::span<const ColorSpace> GetColorSpaces() noexcept
{
	return kSpaces;
}

std::span<const ColorSpace> GetColorFunctionSpaces() noexcept
{
	constexpr std::size_t kCount = 10;
	static_assert(kSpaces[kCount].name == "hsl");
	return GetColorSpaces().first(kCount);
}

const ColorSpace& GetColorSpace(std::string_view name) noexcept
{
	return *std::ranges::find(kSpaces, name, &ColorSpace::name);
}
} // namespace orvan::grammar::complete
