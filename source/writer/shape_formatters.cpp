// SPDX-License-Identifier: MIT
/// Writing shapes that are values: those of "clip-path", and the path of a textPath.
#include "writer/value_formatters.h"

#include <iterator>

namespace orvan::svg
{
namespace
{

/// A shape on its way into text.
class ShapeText
{
public:
	ShapeText(std::string& text, const SVGClipShape& shape, const ValueStyle& style) noexcept
		: _text(text), _shape(shape), _numbers(style.numbers)
	{
		_numbers.takesExponents = false;
	}

	bool Append()
	{
		static constexpr std::string_view kNames[] = {"",        "inset", "circle", "ellipse",
													  "polygon", "path",  "rect",   "xywh"};
		static constexpr std::string_view kBoxes[] = {"stroke-box", "fill-box", "view-box"};
		const auto type = static_cast<std::size_t>(_shape.type);
		const auto box = static_cast<std::int32_t>(_shape.box);
		if (type >= std::size(kNames))
			return false;
		const bool isBox = _shape.type == SVGClipShapeType::box;
		if (!isBox)
		{
			_text += kNames[type];
			_text += '(';
			if (!AppendArguments())
				return false;
			_text += ')';
		}
		// The first box is what holds when none is written.
		if (!isBox && box == 0)
			return true;
		_text += isBox ? "" : " ";
		return AppendName(_text, kBoxes, &box);
	}

private:
	bool AppendArguments()
	{
		switch (_shape.type)
		{
		case SVGClipShapeType::inset:
		case SVGClipShapeType::rect:
		case SVGClipShapeType::xywh:
			return AppendRectangle();
		case SVGClipShapeType::circle:
			return AppendRound(1);
		case SVGClipShapeType::ellipse:
			return AppendRound(2);
		case SVGClipShapeType::polygon:
			return AppendRule() && AppendPoints();
		case SVGClipShapeType::path:
			_text += AppendRule() ? "\"" : "";
			if (!AppendPath(_text, {_shape.path.begin(), _shape.path.GetCount()}, _numbers))
				return false;
			_text += '"';
			return true;
		default:
			return false;
		}
	}

	bool AppendRule()
	{
		_text += _shape.fillRule == SVGFillRule::evenodd ? "evenodd, " : "";
		return true;
	}

	bool AppendItems(std::size_t first, std::size_t end)
	{
		for (std::size_t i = first; i < end; i++)
		{
			_text += i != first ? " " : "";
			if (i >= _shape.lengths.GetCount() || !AppendLength(_text, _shape.lengths[i], _numbers))
				return false;
		}
		return true;
	}

	bool AppendPoints()
	{
		const std::size_t count = _shape.lengths.GetCount();
		for (std::size_t i = 0; i + 1 < count; i += 2)
		{
			_text += i != 0 ? ", " : "";
			if (!AppendItems(i, i + 2))
				return false;
		}
		return count != 0 && count % 2 == 0;
	}

	bool AppendRectangle()
	{
		if (!AppendItems(0, 4))
			return false;
		if (_shape.lengths.GetCount() == 4)
			return true;
		_text += " round ";
		if (!AppendItems(4, 8))
			return false;
		_text += " / ";
		return AppendItems(8, 12);
	}

	bool AppendRound(std::size_t radii)
	{
		if (_shape.lengths.GetCount() != radii + 4)
			return false;
		for (std::size_t i = 0; i < radii; i++)
		{
			const SVGLength& radius = _shape.lengths[i];
			if (radius.value == SVGClipShape::kClosestSide || radius.value == SVGClipShape::kFarthestSide)
				_text += radius.value == SVGClipShape::kClosestSide ? "closest-side" : "farthest-side";
			else if (!AppendLength(_text, radius, _numbers))
				return false;
			_text += ' ';
		}
		_text += "at ";
		const bool hasOffsets = _shape.lengths[radii + 1].value != 0.0 || _shape.lengths[radii + 3].value != 0.0;
		if (!AppendAxis(radii, hasOffsets, "left ", "right "))
			return false;
		_text += ' ';
		return AppendAxis(radii + 2, hasOffsets, "top ", "bottom ");
	}

	/// One axis of a position: a length, or a side and the distance from it.
	bool AppendAxis(std::size_t index, bool withSides, std::string_view near, std::string_view far)
	{
		const SVGLength& from = _shape.lengths[index];
		SVGLength offset = _shape.lengths[index + 1];
		if (!withSides)
			return AppendLength(_text, from, _numbers);
		const bool isFar = from.unit == SVGLengthUnit::percent && from.value == 1.0;
		_text += isFar ? far : near;
		if (offset.value == 0.0 && !isFar)
			return AppendLength(_text, from, _numbers);
		offset.value = isFar ? -offset.value : offset.value;
		return (isFar || from.value == 0.0) && AppendLength(_text, offset, _numbers);
	}

	std::string& _text;
	const SVGClipShape& _shape;
	NumberStyle _numbers;
};

} // namespace

bool FormatClipPath(std::string& text, const WrittenValue& value)
{
	const auto* id = value.Find<String>();
	const auto* shape = value.Find<SVGClipShape>(SVGImportAttribute::clipShape);
	if (shape != nullptr && (id == nullptr || id->IsEmpty()))
		return ShapeText(text, *shape, value.style).Append();
	return FormatReference(text, value);
}

bool FormatTextPathData(std::string& text, const WrittenValue& value)
{
	const auto* path = value.Find<BaseArray<SVGPathCommand>>();
	return path != nullptr && AppendPath(text, {path->begin(), path->GetCount()}, value.style.numbers);
}

} // namespace orvan::svg
