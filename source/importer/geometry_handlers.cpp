/// Handlers of lengths, paths and viewports.
#include "importer/attribute_handlers.h"
#include "importer/length_scanner.h"

#include <cmath>

namespace orvan::svg
{

using grammar::Parsed;

Result<void> ImportPlainLength(const Value& value)
{
	const SVGLength length = ScanLength(value.text);
	value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused);
	return value.Store(length);
}

Result<void> ImportRadius(const Value& value)
{
	if (value.Element()->GetElementType() != SVGImportElementKind::circle)
		return ImportPlainLength(value);
	const SVGLength length = ScanLength(value.text);
	value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused);
	if (const Borrowed<SVGRadiusInterface> radius(value.Element()); radius)
		return radius->SetRadius(length);
	return {};
}

namespace
{

/// Hands the segments of a path to a path element, and drops them for other elements. Of the element's errors only a
/// lack of memory is kept.
class PathElementSink final : public grammar::PathSink
{
public:
	explicit PathElementSink(const SVGElementRef& element) noexcept : _path(element)
	{
	}

	void MoveTo(double x, double y) override
	{
		if (_path)
			Note(_path->MoveTo({x, y}));
	}

	void LineTo(double x, double y) override
	{
		if (_path)
			Note(_path->LineTo({x, y}));
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		if (_path)
			Note(_path->CubicBezierTo({x1, y1}, {x2, y2}, {x, y}));
	}

	void Close() override
	{
		if (_path)
			Note(_path->CloseSubpath());
	}

	/// The end of the attribute.
	Result<void> Exit() noexcept
	{
		if (_path)
			Note(_path->PathExit());
		return std::move(_result);
	}

private:
	void Note(Result<void> result) noexcept
	{
		if (!result.IsOk()) [[unlikely]]
		{
			if (Result<void> kept = IgnoreUnlessOutOfMemory(std::move(result)); !kept.IsOk())
				_result = std::move(kept);
		}
	}

	Borrowed<SVGPathElementInterface> _path;
	Result<void> _result;
};

} // namespace

Result<void> ImportPathData(const Value& value)
{
	PathElementSink sink(value.Element());
	if (grammar::ParsePath(value.text, sink) == Parsed::refused)
		value.context.Refuse("path", value.text);
	return sink.Exit();
}

Result<void> ImportPoints(const Value& value)
{
	PathElementSink sink(value.Element());
	value.Accept(grammar::ParsePoints(value.text, sink));
	if (value.context.isPolygon)
		sink.Close();
	return sink.Exit();
}

Result<void> ImportViewBox(const Value& value)
{
	grammar::ViewBox box;
	if (!value.Accept(grammar::ParseViewBox(value.text, box)))
		return {};
	const Borrowed<SVGFitToViewboxInterface> fitted(value.Element());
	if (!fitted)
		return {};
	const auto length = [](double number)
	{
		return SVGLength{number, SVGLengthUnit::number};
	};
	return fitted->SetViewbox({length(box.x), length(box.y), length(box.width), length(box.height), false});
}

Result<void> ImportPreserveAspectRatio(const Value& value)
{
	grammar::AspectRatio ratio;
	if (!value.Accept(grammar::ParsePreserveAspectRatio(value.text, ratio)) ||
		!Borrowed<SVGFitToViewboxInterface>(value.Element()))
		return {};
	return value.Store(
		SVGPreserveAspectRatio{static_cast<SVGAlign>(ratio.align), static_cast<SVGMeetOrSlice>(ratio.meetOrSlice)});
}

} // namespace orvan::svg
