// SPDX-License-Identifier: MIT
/// What one picture may cost. Files come from anywhere: a few lines of SVG can ask for years of drawing, by references
/// that multiply at each level, and for all the memory of a machine, by layers inside layers.
#pragma once

#include <chrono>
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
inline constexpr int kMaxDepth = 1280;
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

/// How many rows of pixels the edges of one outline may cross before it is looked at whether there is time for it, and
/// how many of them a second is enough for. Both are what the drawing library manages on a slow machine.
inline constexpr double kManyRows = 3e6;
inline constexpr double kRowsPerSecond = 2e6;

/// What a page takes until it is written, for each element drawn by reference and each line or curve of it, and how
/// many such elements, or pixels of pictures, are written in a second.
inline constexpr double kPageElementBytes = 2048.0;
inline constexpr double kPageCommandBytes = 64.0;
inline constexpr double kPageElementsPerSecond = 1e5;
inline constexpr double kPagePixelsPerSecond = 2e7;

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
	deadline = 128,
	outlines = 256,
	images = 512,
};

/// What one picture may cost, and what was left out of it for that.
///
/// Three things are bounded. Time: a deadline, looked at before each element. Memory: what layers and masks take, for
/// as long as they take it. Work by reference and in layers, in pixels that are touched, so that a document whose
/// references multiply ends soon and in the same place on every machine; drawing in place does not pay. Costs are
/// estimates: they are there to tell a large picture from an endless one.
class Limits
{
public:
	Limits() noexcept = default;

	/// The limits of a picture of this many pixels, which may take so many seconds from now and so many bytes beside
	/// the picture itself.
	Limits(double pixels, double seconds, double bytes) noexcept;

	/// Pays for something that costs as much as filling this many pixels; false, and reported, when nothing is left.
	bool Pay(double pixels) noexcept
	{
		if (Spend(pixels))
			return true;
		Omit(Omission::work);
		return false;
	}

	/// True, and reported, once the time is up.
	bool IsOver() noexcept;
	/// True once `IsOver` has said so; does not look at the clock.
	bool WasOver() const noexcept
	{
		return _isOver;
	}

	/// False, and reported, when something that takes so long would not be ready in time.
	bool CanTake(double seconds) noexcept;

	/// Keeps some of the time for what comes after drawing.
	void Reserve(double seconds) noexcept
	{
		_seconds -= seconds;
	}

	/// Takes memory for a layer of so many pixels, until `CloseLayer`, and pays for it; false, and reported, when there
	/// is no room.
	bool OpenLayer(double pixels, double bytes) noexcept;
	void CloseLayer(double bytes) noexcept;
	/// Takes memory until the end of the picture; false, and reported, when there is no room.
	bool Hold(double bytes) noexcept;

	/// Bytes that are left.
	double GetFreeBytes() const noexcept
	{
		return _bytes;
	}

	/// Number of layers that are open, one inside another.
	int GetLayerCount() const noexcept
	{
		return _layerCount;
	}

	/// Reports that something is left out; once a picture for each reason.
	void Omit(Omission omission) noexcept;

private:
	using Clock = std::chrono::steady_clock;

	static constexpr double kLeastWork = 4e9;
	static constexpr double kLayersOfWork = 1024.0;

	bool Spend(double pixels) noexcept
	{
		_work -= pixels;
		return _work > 0.0;
	}

	double GetSecondsLeft() const noexcept;

	Clock::time_point _start = Clock::now();
	double _seconds = 0.0;
	double _work = 0.0;
	double _bytes = 0.0;
	int _layerCount = 0;
	bool _isOver = false;
	std::uint32_t _omissions = 0;
};

} // namespace orvan::drawing
