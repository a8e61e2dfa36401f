// SPDX-License-Identifier: MIT
/// What a text element is made of, before anything is laid out: its characters, and the elements that they stand in.
#pragma once

#include "fonts.h"
#include "frame.h"
#include "scene.h"

#include <limits>
#include <optional>

namespace orvan::drawing
{

/// What no attribute says.
inline constexpr double kUnsaid = std::numeric_limits<double>::quiet_NaN();

/// A path that text runs along, in the text's coordinates.
struct TextPath
{
	Outline outline;
	double startOffset = 0.0;
	bool isReversed = false; ///< The text runs on its other side, from its end to its start.
};

/// An element with characters: the text itself, or a tspan, a textPath or an anchor in it.
struct TextSpan
{
	const Frame* frame = nullptr; ///< Good as long as the content.
	int parent = -1;              ///< The span around it; -1 for the text itself.
	int path = -1;                ///< The path that its characters stand on, or -1.
	bool isPathStart = false;     ///< It is a textPath itself.
	const Font* font = nullptr;
	double size = 0.0;        ///< Of the font, in user units.
	double shift = 0.0;       ///< How far its characters' baseline lies above the line, in user units.
	double textLength = -1.0; ///< How long its characters are to be together; negative for as long as they are.
	bool stretchesGlyphs = false;
	double opacity = 1.0;    ///< Its own and that of the spans around it, but for the text's.
	std::uint32_t first = 0; ///< Its characters, those of spans in it included.
	std::uint32_t end = 0;
};

/// A character of a text, with what the elements around it say about it.
struct TextCharacter
{
	char32_t code = 0;
	int span = 0;
	double x = kUnsaid;
	double y = kUnsaid;
	double dx = 0.0;
	double dy = 0.0;
	double rotation = kUnsaid; ///< In degrees.
	bool startsChunk = false;  ///< It has a position of its own, or is the first on a path.
	bool isSmallCapital = false;
};

/// The characters of a text in document order.
class TextContent
{
public:
	/// Collects what is at and below a text element, whose frame is `frame`. What is too much is left out and reported.
	static Result<TextContent> Collect(Scene& scene, const Frame& frame) noexcept;

	const BaseArray<TextCharacter>& GetCharacters() const noexcept
	{
		return _characters;
	}

	const BaseArray<TextSpan>& GetSpans() const noexcept
	{
		return _spans;
	}

	const BaseArray<TextPath>& GetPaths() const noexcept
	{
		return _paths;
	}

	/// That of the text itself; what its parts say does not count.
	SVGWritingMode GetWritingMode() const noexcept
	{
		return _writingMode;
	}

	/// True when lines run downwards.
	bool IsVertical() const noexcept
	{
		return _writingMode != SVGWritingMode::horizontalTb;
	}

	/// True when they run upwards instead ("sideways-lr"). The vertical positions of characters that are on no path are
	/// then counted upwards.
	bool RunsUpwards() const noexcept
	{
		return _writingMode == SVGWritingMode::sidewaysLr;
	}

private:
	friend class TextCollector;

	SVGWritingMode _writingMode = SVGWritingMode::horizontalTb;

	BaseArray<TextCharacter> _characters;
	BaseArray<TextSpan> _spans;
	BaseArray<TextPath> _paths;
	BaseArray<std::unique_ptr<Frame>> _frames;
};

} // namespace orvan::drawing
