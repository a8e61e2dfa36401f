// SPDX-License-Identifier: MIT
#include "geometry.h"

#include "boxes.h"
#include "drawing/document_size.h"
#include "fonts.h"
#include "normalized_columns.h"
#include "normalized_document.h"
#include "outline_object.h"
#include "recorder.h"
#include "svg_import.h"

namespace orvan::geometry
{

using namespace drawing;

namespace
{

SVGBox ToBox(const Rectangle& rectangle) noexcept
{
	if (!rectangle.IsFinite())
		return {};
	return {rectangle.left, rectangle.top, rectangle.GetWidth(), rectangle.GetHeight(), false};
}

bool IsSide(double side) noexcept
{
	return side >= 0.0 && std::isfinite(side);
}

/// The size of what a document is fitted into: one side follows from the other in the document's proportions.
Vector2d GetViewSizeFor(const Vector2d& natural, const SVGGeometryOptions& options) noexcept
{
	if (options.viewWidth > 0.0 && options.viewHeight > 0.0)
		return {options.viewWidth, options.viewHeight};
	if (options.viewWidth > 0.0)
		return {options.viewWidth, options.viewWidth * natural.y / natural.x};
	if (options.viewHeight > 0.0)
		return {options.viewHeight * natural.x / natural.y, options.viewHeight};
	return natural;
}

Result<void> CheckOptions(const SVGNormalizeOptions& options, SVGNormalizedClips clips) noexcept
{
	const auto isUsable = [](double value)
	{
		return value >= 0.0 && value <= kLargest;
	};
	const bool isGood = isUsable(options.flattening) && isUsable(options.grid) && isUsable(options.precision) &&
						options.strokeTolerance > 0.0 && isUsable(options.strokeTolerance) &&
						clips >= SVGNormalizedClips::ignored && clips <= SVGNormalizedClips::kept;
	if (!isGood)
		return IllegalArgumentError("The options for normalised paths make no sense.");
	return {};
}

} // namespace

Geometry::Geometry() noexcept : _fonts(&MakeFontContext)
{
}

Geometry::~Geometry()
{
	StopObserving();
}

Result<void> Geometry::SetDocument(const SVGDocumentRef& document, const SVGGeometryOptions& options) noexcept
{
	if (!IsSide(options.viewWidth) || !IsSide(options.viewHeight))
		return IllegalArgumentError("A view of @ by @ pixels makes no sense.", options.viewWidth, options.viewHeight);
	if (!(options.deadline > 0.0))
		return IllegalArgumentError("A deadline of @ seconds makes no sense.", options.deadline);
	std::int64_t observer = 0;
	if (const auto edit = Cast<SVGDocumentEditInterface>(document))
		observer = ORVAN_TRY(edit->AddObserver(&TakeChange, this));
	StopObserving();
	Update();
	_observer = observer;
	_document = document;
	_options = options;
	return {};
}

void Geometry::StopObserving() noexcept
{
	if (_observer != 0)
		Cast<SVGDocumentEditInterface>(_document)->RemoveObserver(_observer);
	_observer = 0;
}

void Geometry::TakeChange(void* geometry, const SVGChange& change) noexcept
{
	static_cast<Geometry*>(geometry)->Take(change);
}

void Geometry::Take(const SVGChange& change) noexcept
{
	if (!_record || change.kind == SVGChangeKind::notReloaded)
		return;
	const bool isPlaced = change.kind == SVGChangeKind::inserted;
	const bool isOfOne = isPlaced || change.kind == SVGChangeKind::removed || change.kind == SVGChangeKind::attribute ||
						 change.kind == SVGChangeKind::text;
	if (!isOfOne || !change.element || change.attribute == SVGImportAttribute::id)
		return Update();
	const std::size_t count = _edited.GetCount();
	const bool isKnown = count > 0 && _edited[count - 1].element.GetObject() == change.element.GetObject() &&
						 change.kind != SVGChangeKind::removed && (_edited[count - 1].isPlaced || !isPlaced);
	if (isKnown)
		return;
	if (count > _record->nodes.GetCount() / kPatchShare ||
		!_edited.Append({change.element, change.parent, isPlaced}).IsOk())
		Update();
}

Result<bool> Geometry::ApplyEdit(const Edited& edited) noexcept
{
	Scene scene = ORVAN_TRY(MakeScene());
	const std::optional<BaseArray<PatchedNodes>> patched = ORVAN_TRY(PatchRecord(scene, *_record, edited));
	if (!patched)
		return false;
	for (const PatchedNodes& nodes : *patched)
	{
		if (_hitIndex && !ORVAN_TRY(_hitIndex->Update(*_record, nodes.first, nodes.end)))
			_hitIndex.reset();
	}
	return true;
}

Result<void> Geometry::ApplyEdits() noexcept
{
	const BaseArray<Edited> all = std::move(_edited);
	for (const Edited& edited : all)
	{
		const Result<bool> applied = ApplyEdit(edited);
		if (applied.IsOk() && applied.GetValue())
			continue;
		Update();
		if (!applied.IsOk())
			return applied.GetError();
		break;
	}
	return {};
}

SVGDocumentRef Geometry::GetDocument() const noexcept
{
	return _document;
}

void Geometry::Update() noexcept
{
	_hitIndex.reset();
	_record.reset();
	_edited.Reset();
	_root = nullptr;
	_hasDefinitions = false;
}

Result<Scene> Geometry::MakeScene() noexcept
{
	if (!_document)
		return IllegalStateError("There is no document to ask about.");
	const Vector2d natural = GetNaturalSize(_document->GetRootElement());
	Scene scene{_document, natural, GetViewSizeFor(natural, _options), _fonts};
	if (const auto import = Cast<SVGDocumentImportInterface>(_document))
		scene.isComplete = import->GetImportOptions().isComplete;
	scene.images = &_images;
	constexpr double kPathBytes = 268'435'456.0; // For the paths that texts run along.
	scene.limits = Limits(0.0, _options.deadline, kPathBytes);
	return scene;
}

Result<void> Geometry::Prepare() noexcept
{
	if (_record && !_edited.IsEmpty())
	{
		KeepFontLibraries();
		ORVAN_TRY(ApplyEdits());
	}
	if (_record && _document->GetRootElement().GetObject() == _root.GetObject())
		return {};
	Update();
	Scene scene = ORVAN_TRY(MakeScene());
	KeepFontLibraries();
	_record = ORVAN_TRY(RecordPicture(scene, Contents::left));
	_root = _document->GetRootElement();
	return {};
}

Result<void> Geometry::CheckTree(const SVGElementRef& element) const noexcept
{
	auto at = Cast<HierarchyObjectInterface>(element);
	while (at && at.GetObject() != _root.GetObject())
		at = ORVAN_TRY(at->GetParent());
	if (!at)
		return NotFoundError("The element is not in the document's tree.");
	return {};
}

Result<Geometry::Entries> Geometry::Find(const SVGElementRef& element) noexcept
{
	if (!element)
		return NullReferenceError("There is no element to ask about.");
	ORVAN_TRY(Prepare());
	Entries entries = _record->Find(element.GetObject());
	if (!entries.empty())
		return entries;
	ORVAN_TRY(CheckTree(element));
	if (!_hasDefinitions)
	{
		Scene scene = ORVAN_TRY(MakeScene());
		const Result<void> recorded = RecordDefinitions(scene, *_record);
		if (!recorded.IsOk())
		{
			Update(); // Half of it is of no use.
			return recorded.GetError();
		}
		_hasDefinitions = true;
		entries = _record->Find(element.GetObject());
	}
	return entries;
}

Matrix2d Geometry::GetTransformOf(std::int32_t index, SVGCoordinates coordinates) const noexcept
{
	const Node& node = _record->At(index);
	switch (coordinates)
	{
	case SVGCoordinates::element:
		return Translation(node.position.x, node.position.y);
	case SVGCoordinates::parent:
		return node.toParent;
	case SVGCoordinates::document:
	{
		// Products of what is exact are better than the way to the view and back.
		Matrix2d transform;
		for (std::int32_t at = index; _record->At(at).parent >= 0; at = _record->At(at).parent)
			transform = _record->At(at).toParent * transform;
		return transform;
	}
	case SVGCoordinates::view:
		return node.toView;
	}
	return {};
}

Result<Vector2d> Geometry::GetViewSize() noexcept
{
	const Scene scene = ORVAN_TRY(MakeScene());
	return scene.viewportSize;
}

Result<SVGBox> Geometry::GetBox(const SVGElementRef& element, SVGBoxKind kind, SVGCoordinates coordinates) noexcept
{
	if (kind < SVGBoxKind::fill || kind > SVGBoxKind::visual)
		return IllegalArgumentError("There is no box of kind @.", static_cast<int>(kind));
	const Entries entries = ORVAN_TRY(Find(element));
	ORVAN_TRY(_record->KeepBoxes(kind));
	Rectangle box;
	for (const auto& [_, node] : entries)
	{
		box.Include(coordinates == SVGCoordinates::view
						? GetViewBox(*_record, node, kind)
						: geometry::GetBox(*_record, node, kind, GetTransformOf(node, coordinates)));
	}
	return ToBox(box);
}

Result<Matrix2d> Geometry::GetTransform(const SVGElementRef& element, SVGCoordinates coordinates) noexcept
{
	const Entries entries = ORVAN_TRY(Find(element));
	if (entries.empty())
		return NotFoundError("Nothing is drawn for the element.");
	const std::int32_t node = entries.front().node;
	const Vector2d& position = _record->At(node).position;
	return GetTransformOf(node, coordinates) * Translation(-position.x, -position.y);
}

Result<SVGHits> Geometry::FindAt(const Vector2d& point, const SVGHitOptions& options) noexcept
{
	if (!IsSide(options.tolerance))
		return IllegalArgumentError("A tolerance of @ makes no sense.", options.tolerance);
	ORVAN_TRY(Prepare());
	if (!_hitIndex)
		_hitIndex = ORVAN_TRY(HitIndex::Create(*_record));
	return FindHits(*_record, *_hitIndex, point, options);
}

Result<SVGHits> Geometry::FindIn(const SVGBox& rectangle, bool isInside) noexcept
{
	ORVAN_TRY(Prepare());
	if (!_hitIndex)
		_hitIndex = ORVAN_TRY(HitIndex::Create(*_record));
	const Rectangle area{rectangle.x, rectangle.y, rectangle.x + rectangle.width, rectangle.y + rectangle.height};
	return FindHitsIn(*_record, *_hitIndex, rectangle.isEmpty ? Rectangle() : area, isInside);
}

Result<SVGOutlineRef> Geometry::GetOutline(const SVGElementRef& element, SVGCoordinates coordinates) noexcept
{
	const Entries entries = ORVAN_TRY(Find(element));
	if (entries.empty())
		return NotFoundError("Nothing is drawn for the element.");
	Outline outline;
	for (const ElementEntry& entry : entries)
	{
		const Matrix2d transform = GetTransformOf(entry.node, coordinates);
		const Node& asked = _record->At(entry.node);
		for (std::int32_t index = entry.node; index < asked.end; index++)
		{
			const Node& node = _record->At(index);
			if (node.kind == NodeKind::marker)
			{
				index = node.end - 1;
				continue;
			}
			if (node.shape < 0)
				continue;
			Matrix2d place;
			for (std::int32_t at = index; at != entry.node; at = _record->At(at).parent)
				place = _record->At(at).toParent * place;
			ORVAN_TRY(outline.Append(_record->ShapeOf(node).outline, transform * place));
		}
	}
	return OutlineObject::Make(std::move(outline));
}

Result<SVGNormalizedPaths> Geometry::Normalize(const SVGNormalizeOptions& options) noexcept
{
	return NormalizeWith(options, SVGNormalizedClips::ignored);
}

Result<SVGNormalizedPaths> Geometry::NormalizeWith(const SVGNormalizeOptions& options,
												   SVGNormalizedClips clips) noexcept
{
	ORVAN_TRY(CheckOptions(options, clips));
	ORVAN_TRY(Prepare());
	return MakeColumns(*_record, options, clips);
}

Result<SVGDocumentRef> Geometry::NormalizeToDocument(const SVGNormalizeOptions& options,
													 SVGNormalizedClips clips) noexcept
{
	ORVAN_TRY(CheckOptions(options, clips));
	// Masks and patterns are of no use to other questions.
	Scene scene = ORVAN_TRY(MakeScene());
	KeepFontLibraries();
	const Record record = ORVAN_TRY(RecordPicture(scene, Contents::recorded));
	const BaseArray<char> text = ORVAN_TRY(WriteNormalized(record, options, clips));
	static const ObjectFactory factory(kSVGDocumentClass);
	const SVGDocumentRef document = ORVAN_TRY(factory.Create<SVGDocumentInterface>());
	const auto import = Cast<SVGDocumentImportInterface>(document);
	if (!import)
		return IllegalStateError("Documents of this host are not loaded from memory.");
	SVGImportOptions importOptions;
	importOptions.isComplete = importOptions.isTolerant = importOptions.keepsSource = true;
	ORVAN_TRY(import->SetImportOptions(importOptions));
	// Links of images are as they were, and so refer to the same place.
	ORVAN_TRY(import->InitFromMemory(text.begin(), static_cast<std::int64_t>(text.GetCount()), _document->GetUrl()));
	return document;
}

} // namespace orvan::geometry
