// SPDX-License-Identifier: MIT
/// Readers of paths, transforms and viewports.
#include "elements/element_classes.h"
#include "importer/complete/collectors.h"
#include "importer/complete/single_transforms.h"
#include "importer/complete/value_readers.h"
#include "importer/path_element_sink.h"

#include <string>

namespace orvan::svg::complete
{

using grammar::Parsed;
using grammar::Source;

namespace
{

/// Notes whether there are lines: only then a polygon is closed.
class PointsSink final : public PathElementSink
{
public:
	using PathElementSink::PathElementSink;

	void LineTo(double x, double y) override
	{
		PathElementSink::LineTo(x, y);
		_hasLines = true;
	}

	bool HasLines() const noexcept
	{
		return _hasLines;
	}

private:
	bool _hasLines = false;
};

Result<Reading> ReadPath(const Application& application, std::string_view data)
{
	auto& path = static_cast<PathElement&>(application.element);
	ORVAN_TRY(path.Clear());
	PathElementSink sink(path);
	const grammar::complete::Progress progress = grammar::complete::ParsePath(data, sink);
	ORVAN_TRY(sink.Exit());
	return ReadingOf(application, progress);
}

} // namespace

Result<Reading> ReadPathData(const Application& application)
{
	if (application.source == Source::attribute)
		return ReadPath(application, application.text);
	grammar::complete::PathFunction function;
	switch (grammar::complete::ParsePathFunction(application.text, function))
	{
	case Parsed::refused:
		return Reading::refused;
	case Parsed::nothing: // "none"
		ORVAN_TRY(static_cast<PathElement&>(application.element).Clear());
		return Reading::applied;
	case Parsed::value:
		break;
	}
	std::string resolved;
	if (function.hasEscapes)
		function.data = resolved = grammar::complete::ResolveEscapes(function.data);
	// Other than the attribute, a declaration with a fault counts for nothing.
	grammar::NoPathSink nothing;
	if (!grammar::complete::ParsePath(function.data, nothing).isWhole)
		return Reading::refused;
	return ReadPath(application, function.data);
}

Result<Reading> ReadPoints(const Application& application)
{
	auto& path = static_cast<PathElement&>(application.element);
	ORVAN_TRY(path.Clear());
	PointsSink sink(path);
	const grammar::complete::Progress progress = grammar::complete::ParsePoints(application.text, sink);
	if (application.tag == Tag::polygon && sink.HasLines())
		sink.Close();
	ORVAN_TRY(sink.Exit());
	return ReadingOf(application, progress);
}

Result<Reading> ReadTransform(const Application& application)
{
	grammar::Matrix matrix;
	const Vector2d& viewport = application.importer.viewport;
	grammar::complete::Transform transform;
	if (application.source == Source::attribute)
	{
		if (grammar::complete::ParseTransformAttribute(application.text, matrix) != Parsed::value)
			return Reading::refused;
	}
	else
	{
		const grammar::complete::RelativeUnits units{.viewportWidth = viewport.x, .viewportHeight = viewport.y};
		if (grammar::complete::ParseTransformProperty(application.text, units, transform) != Parsed::value)
			return Reading::refused;
		matrix = transform.For(viewport.x, viewport.y);
	}
	const SVGImportAttribute key = KeptAs(application.rule, application.tag);
	if (key == SVGImportAttribute::transform)
	{
		ORVAN_TRY(application.element.SetLocalTransform(ToMatrix(matrix)));
		// An attribute has none, and comes first.
		if (application.source != Source::attribute)
			ORVAN_TRY(SetPercentages(
				application.element,
				{{transform.eOfWidth, transform.fOfWidth}, {transform.eOfHeight, transform.fOfHeight}}, viewport));
		return Reading::applied;
	}
	if (application.source != Source::attribute)
		ORVAN_TRY(application.element.Store(key, ToMatrix(matrix)));
	return Reading::applied;
}

Result<void> ResetTransform(const Application& application, const ElementBase* other) noexcept
{
	constexpr auto kPercentages = SVGImportAttribute::transformPercentages;
	ElementBase& element = application.element;
	const Matrix2d transform = other != nullptr ? other->GetLocalTransform() : Matrix2d();
	const SVGImportAttribute key = KeptAs(application.rule, application.tag);
	if (key != SVGImportAttribute::transform)
		return other != nullptr ? element.Store(key, transform) : element.Unset(key);
	ORVAN_TRY(element.SetLocalTransform(transform));
	if (other == nullptr || !other->HasAttribute(kPercentages))
		return element.Unset(kPercentages);
	return element.SetAttribute(kPercentages,
								ORVAN_TRY(other->Attributes().GetData(static_cast<std::int32_t>(kPercentages))));
}

Result<Reading> ReadMatrix(const Application& application)
{
	grammar::Matrix matrix;
	if (grammar::complete::ParseTransformAttribute(application.text, matrix) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(application.rule.number, ToMatrix(matrix)));
	return Reading::applied;
}

Result<Reading> ReadTransformOrigin(const Application& application)
{
	grammar::complete::TransformOrigin origin;
	if (grammar::complete::ParseTransformOrigin(application.text, application.source, origin) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(application.rule.number, SVGLength2d{ToLength(origin.x), ToLength(origin.y)}));
	return Reading::applied;
}

Result<Reading> ReadViewBox(const Application& application)
{
	grammar::ViewBox box;
	if (grammar::complete::ParseViewBox(application.text, box) != Parsed::value)
		return Reading::refused;
	const auto length = [](double number)
	{
		return SVGLength{number, SVGLengthUnit::number};
	};
	ORVAN_TRY(
		application.element.Store(application.rule.number, SVGViewbox{length(box.x), length(box.y), length(box.width),
																	  length(box.height), false}));
	return Reading::applied;
}

Result<Reading> ReadAspectRatio(const Application& application)
{
	grammar::AspectRatio ratio;
	if (grammar::complete::ParsePreserveAspectRatio(application.text, ratio) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(
		application.rule.number,
		SVGPreserveAspectRatio{static_cast<SVGAlign>(ratio.align), static_cast<SVGMeetOrSlice>(ratio.meetOrSlice)}));
	return Reading::applied;
}

} // namespace orvan::svg::complete
