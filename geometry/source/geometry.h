// SPDX-License-Identifier: MIT
/// The object that answers for a document.
#pragma once

#include "drawing/scene.h"
#include "hits.h"
#include "images.h"
#include "record_patch.h"
#include "svg_edit.h"

#include <optional>

namespace orvan::geometry
{

/// The implementation of `SVGGeometryInterface`. It keeps a record of the tree, made when it is first asked for.
class Geometry : public ObjectBase
{
public:
	~Geometry();

	Result<void> SetDocument(const SVGDocumentRef& document, const SVGGeometryOptions& options) noexcept;
	SVGDocumentRef GetDocument() const noexcept;
	void Update() noexcept;
	Result<Vector2d> GetViewSize() noexcept;
	Result<SVGBox> GetBox(const SVGElementRef& element, SVGBoxKind kind, SVGCoordinates coordinates) noexcept;
	Result<Matrix2d> GetTransform(const SVGElementRef& element, SVGCoordinates coordinates) noexcept;
	Result<SVGHits> FindAt(const Vector2d& point, const SVGHitOptions& options) noexcept;
	Result<SVGHits> FindIn(const SVGBox& rectangle, bool isInside) noexcept;
	Result<SVGOutlineRef> GetOutline(const SVGElementRef& element, SVGCoordinates coordinates) noexcept;
	Result<SVGNormalizedPaths> Normalize(const SVGNormalizeOptions& options) noexcept;
	Result<SVGNormalizedPaths> NormalizeWith(const SVGNormalizeOptions& options, SVGNormalizedClips clips) noexcept;
	Result<SVGDocumentRef> NormalizeToDocument(const SVGNormalizeOptions& options, SVGNormalizedClips clips) noexcept;

private:
	/// The nodes of an element: one, but for the parts of a text.
	using Entries = std::span<const ElementEntry>;

	/// An element that was edited since the record was made is recorded anew by the next question; beyond these many,
	/// as a share of all nodes, all of it is.
	static constexpr std::size_t kPatchShare = 32;

	void StopObserving() noexcept;
	static void TakeChange(void* geometry, const SVGChange& change) noexcept;
	void Take(const SVGChange& change) noexcept;
	/// Brings the record up to date with what was edited; there may be none afterwards.
	Result<void> ApplyEdits() noexcept;
	Result<bool> ApplyEdit(const Edited& edited) noexcept;
	Result<drawing::Scene> MakeScene() noexcept;
	/// Makes the record where there is none that is good.
	Result<void> Prepare() noexcept;
	/// Empty for an element that is not drawn; an error for one that is in another tree.
	Result<Entries> Find(const SVGElementRef& element) noexcept;
	Result<void> CheckTree(const SVGElementRef& element) const noexcept;
	/// From the coordinates of a node to others.
	Matrix2d GetTransformOf(std::int32_t node, SVGCoordinates coordinates) const noexcept;

	SVGDocumentRef _document;
	SVGGeometryOptions _options;
	std::int64_t _observer = 0;
	drawing::Fonts _fonts;
	UnseenImages _images;

	std::optional<Record> _record;
	std::optional<HitIndex> _hitIndex;
	SVGElementRef _root;       ///< Of the tree that was recorded.
	BaseArray<Edited> _edited; ///< Since the record was made.
	bool _hasDefinitions = false;

public:
	Geometry() noexcept;
};

} // namespace orvan::geometry
