// SPDX-License-Identifier: MIT
/// What would be touched by drawing something, and where it lies.
#pragma once

#include "scene.h"
#include "sink.h"

#include <optional>

namespace orvan::drawing
{

/// A box around what fill and stroke of a shape touch, soft edges included, when its outline lies in `bounds`. Both are
/// in the picture's coordinates.
Rectangle GetPaintedBounds(const Scene& scene, const Frame& frame, const Rectangle& bounds) noexcept;

/// The same for a text, whose parts may have strokes of their own; its frame is `frame`.
Rectangle GetPaintedBounds(const Scene& scene, const Frame& frame, const TextLayout& text) noexcept;

class Extent;

/// Whether the strokes of shapes count for a bounding box.
enum class BoxStrokes
{
	leftAside,
	included
};

/// A sink that draws nothing and finds out what would be touched, and the bounding box of all outlines. Of the effects
/// only filters count: the others never make anything larger.
class MeasureSink final : public Sink
{
public:
	/// `user` is the transform from the coordinates of the box to the picture's.
	MeasureSink(Scene& scene, const Matrix2d& user, BoxStrokes strokes = BoxStrokes::leftAside) noexcept
		: _scene(scene), _toUser(Invert(user)), _strokes(strokes)
	{
	}

	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override;
	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override;
	Result<void> DrawImage(const Frame& frame, const PlacedImage& image) noexcept override;
	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override;
	Result<void> DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept override;

	/// A box around everything so far, in the picture's coordinates.
	const Rectangle& GetTouched() const noexcept
	{
		return _touched;
	}

	/// The bounding box of everything so far, hidden things included, in the user's coordinates.
	const Rectangle& GetBox() const noexcept
	{
		return _box;
	}

private:
	/// Of a part whose box is measured as this one's, and what it touches by itself.
	MeasureSink MakeInside() const noexcept;
	Result<void> Touch(const Frame& frame, Extent extent) noexcept;

	Scene& _scene;
	Matrix2d _toUser;
	BoxStrokes _strokes;
	Rectangle _touched;
	Rectangle _box;
};

/// Where something lies: measured when it is asked for, unless it is known.
class Extent
{
public:
	/// Of an element of which both boxes are known.
	Extent(const Rectangle& box, const Rectangle& touched) noexcept : _box(box), _touched(touched)
	{
	}

	/// Of the content of `frame`, which is measured in its coordinates.
	Extent(Scene& scene, const Frame& frame, const Content& content) noexcept
		: _scene(&scene), _frame(&frame), _content(&content)
	{
	}

	/// True when asking costs nothing.
	bool IsKnown() const noexcept
	{
		return _box.has_value();
	}

	/// The bounding box in the element's coordinates; empty when there is nothing.
	Result<Rectangle> GetBox() noexcept;
	/// The same with strokes, for content that is measured; those of an element by itself are left aside.
	Result<Rectangle> GetStrokeBox() noexcept;
	/// A box around what is touched, in the picture's coordinates.
	Result<Rectangle> GetTouched() noexcept;

private:
	Result<void> Measure() noexcept;

	Scene* _scene = nullptr;
	const Frame* _frame = nullptr;
	const Content* _content = nullptr;
	std::optional<Rectangle> _box;
	Rectangle _touched;
};

} // namespace orvan::drawing
