// SPDX-License-Identifier: MIT
/// The sink that keeps everything that a walk tells it.
#pragma once

#include "drawing/measure.h"
#include "drawing/text_layout.h"
#include "drawing/walk.h"
#include "paints.h"
#include "record.h"
#include "recorder.h"

#include <span>
#include <utility>

namespace orvan::geometry
{

/// Writes a tree down, node by node. Its walk stands in `recorder.cpp`, what cuts nodes off and changes them in
/// `recorder_effects.cpp`, and texts in `recorder_texts.cpp`.
class Recorder final : public drawing::Sink, public ContentRecorder
{
	using Content = drawing::Content;
	using Extent = drawing::Extent;
	using Frame = drawing::Frame;
	using LazyBox = drawing::LazyBox;
	using Outline = drawing::Outline;
	using Place = drawing::Place;
	using PlacedImage = drawing::PlacedImage;
	using Scene = drawing::Scene;
	using TextFragment = drawing::TextFragment;
	using TextLayout = drawing::TextLayout;
	using TextLineKind = drawing::TextLineKind;

public:
	Recorder(Scene& scene, Record& record, Contents contents) noexcept
		: _scene(scene), _record(record), _contents(contents == Contents::recorded ? this : nullptr)
	{
	}

	Result<std::int32_t> RecordContent(const Frame& frame) noexcept override;
	Result<std::int32_t> RecordElement(ObjectBase* element, const Place& place, const Frame& outer) noexcept override;
	Result<bool> BeginApart(const Frame& frame, const Matrix2d& toPicture) noexcept override;
	void EndApart() noexcept override;
	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override;

	/// A text is a node, and each part of it that is painted alike is one below it.
	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override;

	/// An image is the rectangle that it is fitted into.
	Result<void> DrawImage(const Frame& frame, const PlacedImage& image) noexcept override;
	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override;
	Result<void> DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept override;

	bool keepsFree = false; ///< Leaves nodes free among the others, and behind them.

	/// A node for an element with definitions, whose content `draw` tells.
	template <typename Draw>
	Result<void> RecordDefinition(const Frame& frame, Draw draw) noexcept
	{
		if (IsFull())
			return {};
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		At(node).kind = NodeKind::definition;
		ORVAN_TRY(draw());
		_current = At(node).parent;
		At(node).end = GetCount();
		return {};
	}

private:
	std::int32_t GetCount() const noexcept
	{
		return static_cast<std::int32_t>(_record.nodes.GetCount());
	}

	/// A node for what is not drawn in place, in `_current`.
	Node MakeContent(ObjectBase* element, const Matrix2d& toView) const noexcept;

	/// Records what `draw` tells below a node of its own.
	template <typename Draw>
	Result<std::int32_t> RecordIn(ObjectBase* element, const Place& place, Draw draw) noexcept
	{
		const std::int32_t index = GetCount();
		const std::int32_t outer = _current;
		ORVAN_TRY(_record.nodes.Append(MakeContent(element, place.transform)));
		_current = index;
		const bool wasMarker = std::exchange(_isInMarker, false);
		ORVAN_TRY(draw());
		_isInMarker = wasMarker;
		_current = outer;
		At(index).end = GetCount();
		return index;
	}

	/// Marks a node, and all around it.
	void SetHasPixels(std::int32_t node) noexcept;

	Node& At(std::int32_t node) noexcept
	{
		return _record.nodes[static_cast<std::size_t>(node)];
	}

	bool IsFull() noexcept;

	/// Begins the node of an element; it stands around all that follow until `Leave`.
	Result<std::int32_t> Enter(const Frame& frame) noexcept;

	/// Ends the node of something with this box.
	Result<void> LeaveBox(std::int32_t index, const Frame& frame, const LazyBox& box) noexcept;

	/// Now and then a node is kept free for what comes later.
	Result<void> KeepFree() noexcept;

	/// Most of what comes later comes last in what it stands in.
	Result<void> KeepFreeBehind(std::int32_t index) noexcept;

	/// Ends a node, with what cuts it off.
	Result<void> Leave(std::int32_t index, const Frame& frame, Extent& extent) noexcept;

	/// The edges of a node, good until the next ones are made.
	Result<NodeEdges*> MakeEdges(std::int32_t index) noexcept;

	/// The masks of a node.
	Result<void> RecordMasks(std::int32_t index, const Frame& user, Extent& extent) noexcept;

	/// The region of a mask. Without a usable one nothing shows.
	Result<void> RecordMask(std::int32_t index, const SVGElementRef& mask, const Frame& user, Extent& extent) noexcept;

	/// What stands in a mask, with what cuts that off in turn.
	Result<void> RecordMaskContent(std::int32_t index, const Frame& masked, Frame& frame, Extent& extent) noexcept;
	static bool IsTurned(const Matrix2d& m) noexcept;

	/// A region that is turned in the view is no rectangle there, but an area like that of a clip path.
	Result<void> ClipContent(const RecordedMask& mask) noexcept;

	/// True for what a filter is recorded for; where its references lead nowhere, there is none.
	bool IsApart(std::int32_t index) noexcept;
	Result<void> RecordFilterOf(std::int32_t index, const Frame& frame, Extent& extent) noexcept;
	Result<std::int32_t> RecordNothing(const Frame& frame) noexcept;

	/// All of a shape but its outline. `box` is what gradients refer to.
	Result<ShapeStyle> MakeStyle(const Frame& frame, const Outline& outline, const LazyBox& box) noexcept;

	/// Gives a node its shape; the result is the outline where it is kept.
	Result<const Outline*> SetShape(std::int32_t node, Outline outline, ShapeStyle style,
									Outline* cells = nullptr) noexcept;

	/// A node for a part of the text that stands in `_current`.
	Node MakePart(const Frame& text, const Frame& owner, double opacity) noexcept;

	/// Parts of a text inside of `around`. With all contents, those that are a picture of their own have a node.
	Result<void> RecordFragments(const Frame& text, const Frame& around, const TextLayout& layout,
								 std::span<const TextFragment> fragments) noexcept;

	/// A part of a text that is a picture of its own. It has the coordinates of the text, and the text's box.
	Result<void> RecordPart(const Frame& text, const Frame& part, const TextLayout& layout,
							std::span<const TextFragment> fragments) noexcept;

	/// Letters between the lines that decorate them below and above.
	Result<void> RecordFragment(const Frame& text, const TextLayout& layout, const TextFragment& fragment) noexcept;

	/// Lines are seen, and neither hit nor measured: in that they are like markers.
	Result<void> RecordLines(const Frame& text, const TextLayout& layout, const TextFragment& fragment,
							 TextLineKind kind) noexcept;
	Result<void> RecordLetters(const Frame& text, const TextLayout& layout, const TextFragment& fragment) noexcept;

	Scene& _scene;
	Record& _record;
	ContentRecorder* _contents; ///< This, or null where what stands in masks and patterns is left aside.
	std::int32_t _current = -1; ///< The node that stands around what comes next.
	bool _isInMarker = false;   ///< The next node is a marker's.
	std::int32_t _lastFree = 0; ///< Where a node was kept free.
};

} // namespace orvan::geometry
