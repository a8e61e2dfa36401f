// SPDX-License-Identifier: MIT
/// What one picture may cost. Files come from anywhere: a few lines of SVG can ask for years of drawing, by references
/// that multiply at each level, and for all the memory of a machine, by layers inside layers. What is drawn in place is
/// bounded by the file's size; the rest is bounded here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orvan::drawing
{

/// Largest side of a picture in pixels; what the drawing library can address.
inline constexpr double kMaxSide = 32767.0;
/// Largest number of pixels in a picture: 256 MiB.
inline constexpr double kMaxPixels = 64.0 * 1024 * 1024;
/// Largest side of a page in points; viewers refuse more.
inline constexpr double kMaxPageSide = 14400.0;
/// How deep elements may stand inside each other, references followed. Each level takes a part of the stack.
inline constexpr int kMaxDepth = 2048;
/// Bytes of a text that are laid out; the layout's cost for one line grows faster than the line.
inline constexpr std::size_t kMaxTextBytes = 32768;
/// Largest size of a text's characters in pixels; the font library gives up somewhat beyond.
inline constexpr double kMaxFontSize = 30000.0;

/// What parts of a drawing cost, in pixels filled with a colour.
inline constexpr double kElementWork = 4096.0;
inline constexpr double kCommandWork = 256.0;    ///< A line or curve.
inline constexpr double kDashWork = 512.0;       ///< A dash.
inline constexpr double kCharacterWork = 1024.0; ///< A byte of a text.
inline constexpr double kGradientFactor = 8.0;   ///< A pixel filled with a gradient.

/// The reasons why something is left out; each is reported once a picture.
enum class Omission : std::uint32_t
{
	cycle = 1,
	depth = 2,
	work = 4,
	layers = 8,
	text = 16,
	fontSize = 64,
	dashes = 32,
};

/// What one picture may cost, and what was left out of it for that. Counts what it costs, in pixels that are touched.
/// Drawing by reference and layers pay, drawing in place does not. Costs are estimates: they are there to tell a large
/// picture from an endless one.
class Limits
{
public:
	Limits() noexcept = default;

	/// The limits of a picture of this many pixels.
	explicit Limits(double pixels) noexcept
		: _work(std::max(kLeastWork, pixels * kLayersOfWork)),
		  _layerPixels(std::max(kLeastLayerPixels, pixels * kLayersAlive))
	{
	}

	/// Pays for something that costs as much as filling this many pixels; false, and reported, when nothing is left.
	bool Pay(double pixels) noexcept
	{
		if (Spend(pixels))
			return true;
		Omit(Omission::work);
		return false;
	}

	/// Pays for a layer that is alive until `CloseLayer`; false, and reported, when there is no room for it.
	bool OpenLayer(double pixels) noexcept
	{
		if (pixels > _layerPixels || !Spend(kElementWork + pixels * 2.0))
		{
			Omit(_work <= 0.0 ? Omission::work : Omission::layers);
			return false;
		}
		_layerPixels -= pixels;
		_layerCount++;
		return true;
	}

	void CloseLayer(double pixels) noexcept
	{
		_layerPixels += pixels;
		_layerCount--;
	}

	/// Number of layers that are open, one inside another.
	int GetLayerCount() const noexcept
	{
		return _layerCount;
	}

	/// Reports that something is left out; once a picture for each reason.
	void Omit(Omission omission) noexcept;

private:
	bool Spend(double pixels) noexcept
	{
		_work -= pixels;
		return _work > 0.0;
	}

	static constexpr double kLeastWork = 4e9;
	static constexpr double kLayersOfWork = 1024.0;
	static constexpr double kLeastLayerPixels = 64.0 * 1024 * 1024;
	static constexpr double kLayersAlive = 4.0;

	double _work = 0.0;
	double _layerPixels = 0.0;
	int _layerCount = 0;
	std::uint32_t _omissions = 0;
};

} // namespace orvan::drawing
