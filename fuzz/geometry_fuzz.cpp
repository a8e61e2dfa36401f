// SPDX-License-Identifier: MIT
// Whole files through the complete, tolerant import, and every question that the geometry module answers about them.

#include "document.h"
#include "require.h"
#include "svg_geometry.h"

#include "orvan/host/allocation_failure.h"
#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/module_loader.h"

#include <cmath>
#include <cstdint>

using namespace orvan;
using fuzz::Require;

namespace
{
bool IsFinite(const SVGBox& box)
{
	return std::isfinite(box.x) && std::isfinite(box.y) && box.width >= 0.0 && box.height >= 0.0 &&
		   std::isfinite(box.width) && std::isfinite(box.height);
}

/// Collects up to a number of elements in document order.
void Collect(const SVGElementRef& element, std::vector<SVGElementRef>& elements)
{
	constexpr std::size_t kMost = 200;
	if (elements.size() >= kMost)
		return;
	elements.push_back(element);
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		Collect(Cast<SVGElementInterface>(child), elements);
}

void CheckOutline(const SVGOutlineRef& outline)
{
	const Result<Float> length = outline->GetLength();
	Require(length.IsOk() && length.GetValue() >= 0.0, "an outline has a length");
	const auto place = outline->GetPlace(length.GetValue() / 3.0);
	Require(!place.IsOk() || (std::isfinite(place.GetValue().point.x) && std::isfinite(place.GetValue().direction.y)),
			"a place is a point");
	// What outlines are put together to has at most the area of both.
	constexpr SVGFillRule kRule = SVGFillRule::evenodd;
	if (outline->GetPath().GetValue().GetCount() > 2000)
		return;
	const auto moved = outline->Transform({{1.0, 2.0}, {0.6, 0.8}, {-0.8, 0.6}});
	const auto common = outline->Combine(moved.GetValue(), SVGOutlineOperation::intersect, kRule, kRule, 0.0);
	if (!common.IsOk())
		return; // Too intricate.
	const auto area = common.GetValue()->GetArea(kRule);
	const auto whole = outline->GetArea(kRule);
	if (area.IsOk() && whole.IsOk())
	{
		const SVGBox box = outline->GetBounds({});
		const double slack = 1e-3 * (box.width + box.height) * (box.width + box.height) + 1e-9;
		Require(area.GetValue() >= -slack && area.GetValue() <= whole.GetValue() + slack, "a part is no larger");
	}
}

void CheckColumns(const SVGNormalizedPaths& paths)
{
	std::size_t points = 0;
	for (const std::uint8_t command : paths.commands)
		points += command == 2 ? 3 : command == 3 ? 0 : 1;
	Require(points == paths.points.GetCount(), "columns fit");
	for (const Vector2d& point : paths.points)
		Require(std::isfinite(point.x) && std::isfinite(point.y), "points are finite");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	fuzz::LoadDocument("<svg/>"); // Loads the module.
	static const bool isLoaded = Module::Load(ORVAN_GEOMETRY_MODULE).IsOk();
	Require(isLoaded, "the geometry module is loaded", ORVAN_GEOMETRY_MODULE);
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	const std::string_view text(reinterpret_cast<const char*>(data), size);
	const SVGDocumentRef document = fuzz::LoadCompletely(text);
	const auto geometry = CreateObject<SVGGeometryInterface>(kSVGGeometryClass).GetValue();
	SVGGeometryOptions options;
	options.viewWidth = 100.0;
	options.deadline = 1.0;
	Require(geometry->SetDocument(document, options).IsOk(), "a document is taken");

	std::vector<SVGElementRef> elements;
	Collect(document->GetRootElement(), elements);
	for (const SVGElementRef& element : elements)
	{
		for (const SVGBoxKind kind : {SVGBoxKind::fill, SVGBoxKind::stroke, SVGBoxKind::visual})
		{
			const auto box = geometry->GetBox(element, kind, SVGCoordinates::view);
			Require(box.IsOk() && IsFinite(box.GetValue()), "a box is finite");
		}
	}
	if (elements.size() > 1)
	{
		const auto outline = geometry->GetOutline(elements[elements.size() / 2], SVGCoordinates::element);
		if (outline.IsOk())
			CheckOutline(outline.GetValue());
	}
	for (int i = 0; i < 10; i++)
	{
		const auto hits = geometry->FindAt({i * 10.0 + 0.5, i * 7.0 + 0.5}, {i % 2 * 3.0, i % 3 == 0, false});
		Require(hits.IsOk(), "a point is asked about");
	}
	const std::uint64_t choice = HashBytes(text);
	SVGNormalizeOptions wanted;
	wanted.strokes = static_cast<SVGNormalizedStrokes>(choice % 2);
	wanted.flattening = choice / 2 % 2 == 0 ? 0.0 : 0.1;
	wanted.precision = choice / 4 % 2 == 0 ? 0.0 : 0.01;
	const auto clips = static_cast<SVGNormalizedClips>(choice / 8 % 3);
	const auto paths = geometry->NormalizeWith(wanted, clips);
	Require(paths.IsOk(), "a picture is normalised");
	CheckColumns(paths.GetValue());
	Require(geometry->NormalizeToDocument(wanted, clips).IsOk(), "and is a document");

	// Once more, with an allocation that fails: an answer or the out-of-memory error, and answers afterwards.
	geometry->Update();
	{
		const AllocationFailure failure(static_cast<std::int64_t>(1 + choice / 32 % 300),
										choice / 16 % 2 != 0 ? AllocationFailure::Extent::one
															 : AllocationFailure::Extent::allFollowing);
		const auto failed = geometry->NormalizeToDocument(wanted, clips);
		Require(failed.IsOk() || failed.GetError().GetClass() == ErrorClass::outOfMemory, "no other error");
		const auto hit = geometry->FindAt({3.0, 4.0}, {});
		Require(hit.IsOk() || hit.GetError().GetClass() == ErrorClass::outOfMemory, "no other error");
	}
	Require(geometry->FindAt({3.0, 4.0}, {}).IsOk(), "memory is there again");
	return 0;
}
