// SPDX-License-Identifier: MIT
#include "tree_json.h"

#include "attribute_values.h"
#include "console.h"
#include "svg_complete.h"

namespace orvan::program
{
namespace
{
/// Writes the elements of one document.
class TreeWriter
{
public:
	explicit TreeWriter(JsonWriter& json) : _json(json)
	{
	}

	/// Recurses once for each level of the tree, of which a file can have only so many.
	void WriteElement(const SVGElementRef& element, int depth = 0)
	{
		_json.BeginObject();
		_json.Member("class", element->GetClassId());
		_json.Member("type", static_cast<int>(element->GetElementType()));
		if (const String id = element->GetId(); !id.IsEmpty())
			_json.Member("id", id.View());
		if (const Matrix2d transform = element->GetLocalTransform(); transform != Matrix2d())
		{
			_json.Key("transform");
			Write(transform);
		}
		WriteAttributes(element->GetAttributeDictionary());
		WriteContent(element);
		WriteChildren(element, depth);
		_json.EndObject();
	}

private:
	/// Colours and transforms are plain lists of numbers.
	template <typename... Numbers>
	void WriteNumbers(Numbers... numbers)
	{
		_json.BeginArray();
		(_json.Value(numbers), ...);
		_json.EndArray();
	}

	void Write(std::int32_t number)
	{
		_json.Value(number);
	}

	void Write(Float number)
	{
		_json.Value(number);
	}

	void Write(const String& text)
	{
		_json.Value(text.View());
	}

	void Write(const SVGLength& length)
	{
		_json.BeginObject();
		_json.Member("value", length.value);
		_json.Member("unit", static_cast<int>(length.unit));
		_json.EndObject();
	}

	void Write(const SVGLength2d& lengths)
	{
		_json.BeginArray();
		Write(lengths.x);
		Write(lengths.y);
		_json.EndArray();
	}

	template <typename T>
	void Write(const BaseArray<T>& values)
	{
		_json.BeginArray();
		for (const T& value : values)
			Write(value);
		_json.EndArray();
	}

	void Write(const Matrix2d& transform)
	{
		WriteNumbers(transform.offset.x, transform.offset.y, transform.axis1.x, transform.axis1.y, transform.axis2.x,
					 transform.axis2.y);
	}

	void Write(const Color& color)
	{
		WriteNumbers(color.red, color.green, color.blue);
	}

	/// The colour is there for every kind of paint; the rest only where it says something.
	void Write(const SVGPaint& paint)
	{
		_json.BeginObject();
		_json.Member("type", static_cast<int>(paint.type));
		_json.Key("color");
		Write(paint.color);
		if (!paint.reference.IsEmpty())
			_json.Member("reference", paint.reference.View());
		if (paint.fallback != SVGPaintFallback::absent)
			_json.Member("fallback", static_cast<int>(paint.fallback));
		if (paint.alpha != 1.0)
			_json.Member("alpha", paint.alpha);
		_json.EndObject();
	}

	void Write(const SVGOrient& orient)
	{
		_json.BeginObject();
		_json.Member("type", static_cast<int>(orient.type));
		if (orient.type == SVGOrientType::angle)
			_json.Member("angle", orient.angle);
		_json.EndObject();
	}

	void Write(const SVGBaselineShift& shift)
	{
		_json.BeginObject();
		_json.Member("type", static_cast<int>(shift.type));
		if (shift.type == SVGBaselineShiftType::length)
		{
			_json.Key("length");
			Write(shift.length);
		}
		_json.EndObject();
	}

	/// Each function has the members that it uses.
	void Write(const SVGFilterFunction& function)
	{
		const bool isShadow = function.type == SVGFilterFunctionType::dropShadow;
		_json.BeginObject();
		_json.Member("type", static_cast<int>(function.type));
		if (function.type == SVGFilterFunctionType::reference)
			_json.Member("reference", function.reference.View());
		else if (isShadow || function.type == SVGFilterFunctionType::blur)
		{
			_json.Key("deviation");
			Write(function.deviation);
		}
		else
			_json.Member("amount", function.amount);
		if (isShadow)
		{
			_json.Key("offset");
			Write(SVGLength2d{function.x, function.y});
			_json.Key("color");
			Write(function.color);
		}
		_json.EndObject();
	}

	/// Writes only the points that a command uses, its end point last.
	void Write(const SVGPathCommand& command)
	{
		const auto& [first, second, end] = command.points;
		_json.BeginArray();
		switch (command.type)
		{
		case SVGPathCommandType::move:
		case SVGPathCommandType::line:
			_json.Value(command.type == SVGPathCommandType::move ? "M" : "L");
			_json.Value(end.x);
			_json.Value(end.y);
			break;
		case SVGPathCommandType::cubic:
			_json.Value("C");
			for (const double number : {first.x, first.y, second.x, second.y, end.x, end.y})
				_json.Value(number);
			break;
		case SVGPathCommandType::close:
			_json.Value("Z");
			break;
		}
		_json.EndArray();
	}

	void Write(const SVGClipShape& shape)
	{
		_json.BeginObject();
		_json.Member("type", static_cast<int>(shape.type));
		_json.Member("box", static_cast<int>(shape.box));
		_json.Member("fillRule", static_cast<int>(shape.fillRule));
		_json.Key("lengths");
		Write(shape.lengths);
		if (!shape.path.IsEmpty())
		{
			_json.Key("path");
			Write(shape.path);
		}
		_json.EndObject();
	}

	void Write(const SVGViewbox& viewbox)
	{
		_json.BeginArray();
		for (const SVGLength& length : {viewbox.x, viewbox.y, viewbox.width, viewbox.height})
			Write(length);
		_json.EndArray();
	}

	void Write(const SVGPreserveAspectRatio& ratio)
	{
		_json.BeginObject();
		_json.Member("align", static_cast<int>(ratio.align));
		_json.Member("meetOrSlice", static_cast<int>(ratio.meetOrSlice));
		_json.EndObject();
	}

	/// Attributes stand under their names, in the order of their numbers.
	void WriteAttributes(const DataDictionary& attributes)
	{
		if (attributes.GetCount() == 0)
			return;
		_json.Key("attributes");
		_json.BeginObject();
		for (const DataDictionary::Entry& entry : attributes)
		{
			const std::string_view name = GetAttributeName(entry.key);
			// Clients may store values under keys of their own.
			_json.Key(name.empty() ? std::to_string(entry.key) : std::string(name));
			if (!VisitAttribute(attributes, entry, [this](const auto& value) { Write(value); }))
				_json.Null();
		}
		_json.EndObject();
	}

	/// What elements keep outside of their attributes.
	void WriteContent(const SVGElementRef& element)
	{
		if (const auto path = Cast<SVGPathElementInterface>(element))
			WritePath(Unwrap(path->GetPath()));
		// Present even when empty: every text element has a text.
		else if (const auto text = Cast<SVGTextElementInterface>(element))
			_json.Member("text", text->GetText().View());
		else if (const auto run = Cast<SVGTextRunInterface>(element))
			_json.Member("text", run->GetText().View());
		else if (const auto description = Cast<SVGDescriptionInterface>(element))
			_json.Member("text", description->GetText().View());
		else if (const auto use = Cast<SVGUseElementInterface>(element))
		{
			if (const String link = use->GetLink(); !link.IsEmpty())
				_json.Member("link", link.View());
		}
		else if (const auto linear = Cast<SVGLinearGradientElementInterface>(element))
		{
			const SVGLinearGradient gradient = Unwrap(linear->GetLinearGradient());
			WriteGradient("linearGradient", gradient,
						  {{"x1", gradient.x1}, {"y1", gradient.y1}, {"x2", gradient.x2}, {"y2", gradient.y2}});
		}
		else if (const auto radial = Cast<SVGRadialGradientElementInterface>(element))
		{
			const SVGRadialGradient gradient = Unwrap(radial->GetRadialGradient());
			WriteGradient("radialGradient", gradient,
						  {{"cx", gradient.cx},
						   {"cy", gradient.cy},
						   {"r", gradient.r},
						   {"fx", gradient.fx},
						   {"fy", gradient.fy}});
		}
	}

	void WritePath(const BaseArray<SVGPathCommand>& path)
	{
		if (path.IsEmpty())
			return;
		_json.Key("path");
		Write(path);
	}

	/// Gradients are shown as a renderer gets them, put together from attributes and stops.
	template <typename Gradient>
	void WriteGradient(std::string_view name, const Gradient& gradient,
					   std::initializer_list<std::pair<std::string_view, Float>> geometry)
	{
		_json.Key(name);
		_json.BeginObject();
		_json.Member("units", static_cast<int>(gradient.units));
		_json.Member("spread", static_cast<int>(gradient.spread));
		for (const auto& [member, value] : geometry)
			_json.Member(member, value);
		_json.Key("stops");
		_json.BeginArray();
		for (const SVGGradientStop& stop : gradient.stops)
		{
			_json.BeginObject();
			_json.Member("offset", stop.offset);
			_json.Key("color");
			Write(stop.color);
			_json.Member("opacity", stop.opacity);
			_json.EndObject();
		}
		_json.EndArray();
		_json.EndObject();
	}

	/// Goes from sibling to sibling: a list of all children would have to be allocated for each element.
	void WriteChildren(const SVGElementRef& element, int depth)
	{
		auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild();
		if (!child)
			return;
		_json.Key("children");
		_json.BeginArray();
		for (; child; child = child->GetNextSibling())
		{
			_json.NewLine(depth + 2);
			WriteElement(Cast<SVGElementInterface>(child), depth + 1);
		}
		_json.EndArray();
	}

	JsonWriter& _json;
};
} // namespace

void PrintTreeAsJson(JsonWriter& json, const SVGDocumentRef& document, bool isPlaceholder)
{
	json.BeginObject();
	json.NewLine(1);
	json.Member("url", document->GetUrl().GetText().View());
	json.NewLine(1);
	json.Member("placeholder", isPlaceholder);
	json.NewLine(1);
	json.Key("ids");
	json.BeginArray();
	// The empty prefix yields one element for each entry of the id table, in the table's order.
	for (const SVGElementRef& element : Unwrap(document->GetElementsByIdWithPrefix(String())))
		json.Value(element->GetId().View());
	json.EndArray();
	json.NewLine(1);
	json.Key("root");
	TreeWriter(json).WriteElement(document->GetRootElement());
	json.NewLine(0);
	json.EndObject();
	json.Finish();
}

} // namespace orvan::program
