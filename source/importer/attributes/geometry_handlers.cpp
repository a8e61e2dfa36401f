// SPDX-License-Identifier: MIT
/// Handlers of lengths, paths and viewports.
#include "elements/element_classes.h"
#include "importer/attributes/attribute_handlers.h"
#include "importer/attributes/length_scanner.h"

#include <cmath>

namespace orvan::svg
{

using grammar::Parsed;

Result<void> ImportPlainLength(const Value& value)
{
	const SVGLength length = ScanLength(value.text);
	if (!value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused))
		return {};
	return value.Store(length);
}

Result<void> ImportRadius(const Value& value)
{
	if (value.Element()->GetElementType() != SVGImportElementKind::circle)
		return ImportPlainLength(value);
	const SVGLength length = ScanLength(value.text);
	if (!value.Accept(std::isfinite(length.value) ? Parsed::value : Parsed::refused))
		return {};
	if (const Borrowed<SVGRadiusInterface> radius(value.Element()); radius)
		return radius->SetRadius(length);
	return {};
}

namespace
{

/// Hands the segments of a path to a path element, which fails for want of memory only.
class PathElementSink final : public grammar::PathSink
{
public:
	explicit PathElementSink(PathElement& path) noexcept : _path(path)
	{
	}

	void MoveTo(double x, double y) override
	{
		Note(_path.MoveTo({x, y}));
	}

	void LineTo(double x, double y) override
	{
		Note(_path.LineTo({x, y}));
	}

	void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override
	{
		Note(_path.CubicBezierTo({x1, y1}, {x2, y2}, {x, y}));
	}

	void Close() override
	{
		Note(_path.CloseSubpath());
	}

	/// The end of the attribute.
	Result<void> Exit() noexcept
	{
		Note(_path.PathExit());
		return std::move(_result);
	}

private:
	void Note(Result<void> result) noexcept
	{
		if (!result.IsOk()) [[unlikely]]
			_result = std::move(result);
	}

	PathElement& _path;
	Result<void> _result;
};

/// What elements without a path make of one.
class NoPathSink final : public grammar::PathSink
{
public:
	void MoveTo(double, double) override
	{
	}

	void LineTo(double, double) override
	{
	}

	void CubicTo(double, double, double, double, double, double) override
	{
	}

	void Close() override
	{
	}
};

/// Calls `read` with the sink for the element at hand.
template <typename Read>
Result<void> ReadPath(const Value& value, Read read)
{
	ElementBase& element = value.OwnElement();
	if (element.GetElementType() == SVGImportElementKind::path)
	{
		PathElementSink sink(static_cast<PathElement&>(element));
		read(sink);
		return sink.Exit();
	}
	NoPathSink sink;
	read(sink);
	return {};
}

} // namespace

Result<void> ImportPathData(const Value& value)
{
	return ReadPath(value,
					[&value](grammar::PathSink& sink)
					{
						if (grammar::ParsePath(value.text, sink) == Parsed::refused)
							value.context.Refuse("path", value.text);
					});
}

Result<void> ImportPoints(const Value& value)
{
	return ReadPath(value,
					[&value](grammar::PathSink& sink)
					{
						// Without points there is nothing to close: every path begins with a move. Of a value with a
						// fault a tolerant import keeps what stands before it, open.
						if (value.Accept(grammar::ParsePoints(value.text, sink)) && value.context.isPolygon)
							sink.Close();
					});
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
