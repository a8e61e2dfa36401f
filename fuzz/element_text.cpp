// SPDX-License-Identifier: MIT
// What an element says, in words that can be compared, checked on the way.

#include "attribute_values.h"
#include "document.h"
#include "require.h"

#include <cmath>
#include <cstdio>

namespace orvan::fuzz
{
namespace
{
class Description
{
public:
	void Add(std::string_view text)
	{
		_text.append(text).push_back(';');
	}

	void Add(Float number)
	{
		Require(std::isfinite(number), "numbers are finite", _text);
		char digits[40];
		std::snprintf(digits, sizeof(digits), "%a", number);
		Add(std::string_view(digits));
	}

	/// An enumeration's value, of those from `first` to `last`.
	template <typename T>
	void AddCode(T code, int first, int last)
	{
		const auto number = static_cast<int>(code);
		Require(number >= first && number <= last, "enumerations have values that exist", _text);
		Add(std::to_string(number));
	}

	void Add(const SVGLength& length)
	{
		Add(length.value);
		AddCode(length.unit, 0, 9);
	}

	void Add(const Vector2d& vector)
	{
		Add(vector.x);
		Add(vector.y);
	}

	void Add(const Color& color)
	{
		for (const Float part : {color.red, color.green, color.blue})
		{
			Require(part >= 0 && part <= 1, "the parts of colours are fractions", _text);
			Add(part);
		}
	}

	void Add(const SVGPaint& paint)
	{
		AddCode(paint.type, 1, 3);
		Add(paint.color);
		Require(paint.type == SVGPaintType::reference || paint.reference.IsEmpty(), "only references have an id",
				_text);
		Add(paint.reference.View());
	}

	void Add(std::int32_t code)
	{
		AddCode(code, 0, 3);
	}

	void Add(const String& text)
	{
		Add(text.View());
	}

	void Add(const SVGLength2d& lengths)
	{
		Add(lengths.x);
		Add(lengths.y);
	}

	void Add(const Matrix2d& transform)
	{
		Add(transform.offset);
		Add(transform.axis1);
		Add(transform.axis2);
	}

	void Add(const SVGOrient& orient)
	{
		AddCode(orient.type, 0, 2);
		Add(orient.angle);
	}

	void Add(const SVGBaselineShift& shift)
	{
		AddCode(shift.type, 0, 3);
		Add(shift.length);
	}

	void Add(const SVGFilterFunction& function)
	{
		AddCode(function.type, 0, 10);
		Add(function.amount);
		Add(SVGLength2d{function.x, function.y});
		Add(function.deviation);
		Add(function.color);
		Add(function.reference);
	}

	void Add(const SVGPathCommand& command)
	{
		AddCode(command.type, 0, 3);
		for (const Vector2d& point : command.points)
			Add(point);
	}

	void Add(const SVGClipShape& shape)
	{
		AddCode(shape.type, 0, 7);
		AddCode(shape.box, 0, 2);
		AddCode(shape.fillRule, 1, 2);
		Add(shape.lengths);
		Add(shape.path);
	}

	template <typename T>
	void Add(const BaseArray<T>& values)
	{
		Add(std::to_string(values.GetCount()));
		for (const T& value : values)
			Add(value);
	}

	void Add(const SVGViewbox& box)
	{
		for (const SVGLength& length : {box.x, box.y, box.width, box.height})
			Add(length);
		Add(box.isDefault ? "default" : "given");
	}

	void Add(const SVGPreserveAspectRatio& ratio)
	{
		AddCode(ratio.align, 0, 9);
		AddCode(ratio.meetOrSlice, 0, 1);
	}

	template <typename Gradient>
	void AddGradient(const Gradient& gradient)
	{
		AddCode(gradient.units, 0, 1);
		AddCode(gradient.spread, 0, 2);
		Float before = 0;
		for (const SVGGradientStop& stop : gradient.stops)
		{
			Require(stop.offset >= before && stop.offset <= 1, "stops never run backwards", _text);
			before = stop.offset;
			Add(stop.offset);
			Add(stop.color);
			Add(stop.opacity);
		}
	}

	void AddPath(const BaseArray<SVGPathCommand>& path)
	{
		Require(path.IsEmpty() || path[0].type == SVGPathCommandType::move, "paths begin with a move", _text);
		for (const SVGPathCommand& command : path)
		{
			AddCode(command.type, 0, 3);
			for (const Vector2d& point : command.points)
				Add(point);
			Require(command.type == SVGPathCommandType::cubic ||
						(command.points[0] == Vector2d() && command.points[1] == Vector2d()),
					"points that are not used are zero", _text);
		}
	}

	std::string Take()
	{
		return std::move(_text);
	}

private:
	std::string _text;
};

void AddAttributes(Description& description, const DataDictionary& attributes)
{
	std::int32_t before = 0;
	for (const DataDictionary::Entry& entry : attributes)
	{
		Require(entry.key > before && entry.key < static_cast<int>(kSVGAttributeNames.size()), "keys ascend");
		before = entry.key;
		description.Add(program::GetAttributeName(entry.key));
		const bool isKnown =
			program::VisitAttribute(attributes, entry, [&](const auto& value) { description.Add(value); });
		Require(isKnown, "attributes have the types of attributes", program::GetAttributeName(entry.key));
	}
}

/// What the getters put together from the attributes.
void AddComponents(Description& description, const SVGElementRef& element)
{
	if (const auto radius = Cast<SVGRadiusInterface>(element))
	{
		for (const SVGLength& length : {radius->GetRadiusX(), radius->GetRadiusY(), radius->GetRadius()})
			description.Add(length);
	}
	if (const auto fitted = Cast<SVGFitToViewboxInterface>(element))
	{
		description.Add(fitted->GetViewbox());
		description.Add(fitted->GetPreserveAspectRatio());
	}
	if (const auto svg = Cast<SVGSVGElementInterface>(element))
	{
		const SVGViewport viewport = svg->GetViewport();
		for (const SVGLength& length : {viewport.x, viewport.y, viewport.width, viewport.height})
			description.Add(length);
	}
	if (const auto use = Cast<SVGUseElementInterface>(element))
		description.Add(use->GetLink());
	if (const auto path = Cast<SVGPathElementInterface>(element))
		description.AddPath(path->GetPath().GetValue());
	if (const auto linear = Cast<SVGLinearGradientElementInterface>(element))
		description.AddGradient(linear->GetLinearGradient().GetValue());
	if (const auto radial = Cast<SVGRadialGradientElementInterface>(element))
		description.AddGradient(radial->GetRadialGradient().GetValue());
	if (const auto stop = Cast<SVGStopElementInterface>(element))
	{
		Require(stop->GetOffset() >= 0 && stop->GetOffset() <= 1, "offsets are clamped");
		description.Add(stop->GetColor());
	}
	if (const auto text = Cast<SVGTextElementInterface>(element))
	{
		description.Add(text->GetText());
		description.Add(text->GetFontSize());
		description.Add(text->GetFont());
		description.AddCode(text->GetFontStyle(), 0, 2);
		description.AddCode(text->GetFontWeight(), 0, 1);
	}
}
} // namespace

std::string DescribeElement(const SVGElementRef& element)
{
	Description description;
	description.AddCode(element->GetElementType(), 1, 15);
	description.Add(element->GetId());
	const Matrix2d transform = element->GetLocalTransform();
	for (const Vector2d& vector : {transform.offset, transform.axis1, transform.axis2})
		description.Add(vector);
	AddAttributes(description, element->GetAttributeDictionary());
	AddComponents(description, element);
	return description.Take();
}
} // namespace orvan::fuzz
