// SPDX-License-Identifier: MIT
#include "tree_text.h"

#include "attribute_values.h"
#include "console.h"

#include <charconv>
#include <cmath>

namespace orvan::program
{
namespace
{
constexpr std::array<std::string_view, 16> kElementNames = {
	"?",    "svg",  "g",    "use",    "defs", "symbol", "linearGradient", "radialGradient",
	"stop", "path", "rect", "circle", "line", "text",   "mask",           "clipPath",
};

constexpr std::array<std::string_view, 10> kUnitNames = {"em", "ex", "px", "in", "cm", "mm", "pt", "pc", "%", ""};

/// The words for an enumeration, as SVG spells them, by value.
std::span<const std::string_view> GetKeywords(SVGImportAttribute attribute)
{
	using Words = std::string_view[];
	static constexpr Words kDisplay = {"inherit", "shown", "none"};
	static constexpr Words kVisibility = {"", "visible", "hidden", "collapse"};
	static constexpr Words kFillRule = {"", "nonzero", "evenodd"};
	static constexpr Words kLineCap = {"", "butt", "round", "square"};
	static constexpr Words kLineJoin = {"", "miter", "round", "bevel"};
	static constexpr Words kUnits = {"userSpaceOnUse", "objectBoundingBox"};
	static constexpr Words kSpread = {"pad", "reflect", "repeat"};
	static constexpr Words kFontStyle = {"normal", "italic", "oblique"};
	static constexpr Words kFontWeight = {"normal", "bold"};
	switch (attribute)
	{
	case SVGImportAttribute::display:
		return kDisplay;
	case SVGImportAttribute::visibility:
		return kVisibility;
	case SVGImportAttribute::fillRule:
		return kFillRule;
	case SVGImportAttribute::strokeLineCap:
		return kLineCap;
	case SVGImportAttribute::strokeLineJoin:
		return kLineJoin;
	case SVGImportAttribute::gradientUnits:
		return kUnits;
	case SVGImportAttribute::spreadMethod:
		return kSpread;
	case SVGImportAttribute::fontStyle:
		return kFontStyle;
	case SVGImportAttribute::fontWeight:
		return kFontWeight;
	default:
		return {};
	}
}

/// Clients may store any number; what has no name is a question mark.
template <typename Table, typename Index>
std::string_view Look(const Table& table, Index index)
{
	const auto at = static_cast<std::size_t>(index);
	return at < std::size(table) ? table[at] : std::string_view("?");
}

std::string ToText(Float number)
{
	char text[32];
	// Six digits are what a reader can take in; the JSON form has them all.
	return {text, std::to_chars(text, text + sizeof(text), number, std::chars_format::general, 6).ptr};
}

std::string ToText(const String& text)
{
	return '"' + OneLine(text.View(), 60) + '"';
}

std::string ToText(const SVGLength& length)
{
	// Percentages are kept as fractions.
	const bool isPercentage = length.unit == SVGLengthUnit::percent;
	return ToText(isPercentage ? length.value * 100 : length.value) + std::string(Look(kUnitNames, length.unit));
}

std::string ToText(const BaseArray<SVGLength>& lengths)
{
	if (lengths.IsEmpty())
		return "none";
	std::string text;
	for (const SVGLength& length : lengths)
		text += (text.empty() ? "" : " ") + ToText(length);
	return text;
}

std::string ToText(const Color& color)
{
	constexpr char kDigits[] = "0123456789abcdef";
	std::string text = "#";
	for (const Float component : {color.red, color.green, color.blue})
	{
		const Float byte = std::round(component * 255);
		// Written so that a component that is no number counts as out of range, too.
		if (!(byte >= 0 && byte <= 255))
			return "rgb(" + ToText(color.red) + ' ' + ToText(color.green) + ' ' + ToText(color.blue) + ')';
		const auto value = static_cast<unsigned>(byte);
		text += {kDigits[value / 16], kDigits[value % 16]};
	}
	return text;
}

std::string ToText(const SVGPaint& paint)
{
	if (paint.type == SVGPaintType::none)
		return "none";
	if (paint.type == SVGPaintType::reference)
		return "url(#" + OneLine(paint.reference.View(), 60) + ')';
	return ToText(paint.color);
}

std::string ToText(const SVGViewbox& viewbox)
{
	return ToText(viewbox.x) + ' ' + ToText(viewbox.y) + ' ' + ToText(viewbox.width) + ' ' + ToText(viewbox.height);
}

std::string ToText(const SVGPreserveAspectRatio& ratio)
{
	constexpr std::string_view kAligns[] = {"xMidYMid", "none",     "xMinYMin", "xMidYMin", "xMaxYMin",
											"xMinYMid", "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax"};
	return std::string(Look(kAligns, ratio.align)) + (ratio.meetOrSlice == SVGMeetOrSlice::slice ? " slice" : " meet");
}

std::string ToText(const Matrix2d& m)
{
	// In the order in which SVG writes a matrix.
	std::string text = "matrix(";
	for (const Float number : {m.axis1.x, m.axis1.y, m.axis2.x, m.axis2.y, m.offset.x, m.offset.y})
		text += (text.back() == '(' ? "" : " ") + ToText(number);
	return text + ')';
}

/// Prints elements, each as its name, its id and its properties.
class TextTree
{
public:
	TextTree(Output& output, bool withColor) : _output(output), _withColor(withColor)
	{
	}

	/// Recurses once for each level of the tree, of which a file can have only so many.
	void PrintElement(const SVGElementRef& element, int depth)
	{
		_line.assign(static_cast<std::size_t>(2 * depth), ' ');
		AddColored("1;34", Look(kElementNames, element->GetElementType()));
		if (const String id = element->GetId(); !id.IsEmpty())
			AddColored("1;32", " #" + OneLine(id.View(), 100));
		if (const Matrix2d transform = element->GetLocalTransform(); transform != Matrix2d())
			AddProperty("transform", ToText(transform));
		AddAttributes(element->GetAttributeDictionary());
		AddContent(element);
		_output.Print(_line += '\n');
		for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child;
			 child = child->GetNextSibling())
			PrintElement(Cast<SVGElementInterface>(child), depth + 1);
	}

private:
	/// Colours are the terminal's own, so that they fit the user's scheme.
	void AddColored(std::string_view color, std::string_view text)
	{
		if (_withColor)
			_line.append("\033[").append(color).append("m").append(text).append("\033[0m");
		else
			_line += text;
	}

	void AddProperty(std::string_view name, std::string_view value)
	{
		_line += "  ";
		AddColored("36", name);
		_line.append("=").append(value);
	}

	void AddAttributes(const DataDictionary& attributes)
	{
		for (const DataDictionary::Entry& entry : attributes)
		{
			const auto keywords = GetKeywords(static_cast<SVGImportAttribute>(entry.key));
			std::string text = "?";
			VisitAttribute(attributes, entry,
						   [&]<typename T>(const T& value)
						   {
							   // All whole numbers among the attributes are enumerations.
							   if constexpr (std::same_as<T, std::int32_t>)
								   text = Look(keywords, value);
							   else
								   text = ToText(value);
						   });
			const std::string_view name = GetAttributeName(entry.key);
			AddProperty(name.empty() ? std::to_string(entry.key) : std::string(name), text);
		}
	}

	/// What elements keep outside of their attributes.
	void AddContent(const SVGElementRef& element)
	{
		if (const auto path = Cast<SVGPathElementInterface>(element))
			// A path would fill the screen.
			AddProperty("commands", std::to_string(Unwrap(path->GetPath()).GetCount()));
		else if (const auto use = Cast<SVGUseElementInterface>(element))
			AddProperty("link", ToText(use->GetLink()));
		else if (const auto text = Cast<SVGTextElementInterface>(element))
			AddProperty("text", ToText(text->GetText()));
	}

	Output& _output;
	bool _withColor;
	std::string _line;
};
} // namespace

void PrintTreeAsText(Output& output, const SVGDocumentRef& document, bool withColor)
{
	TextTree(output, withColor).PrintElement(document->GetRootElement(), 0);
}

} // namespace orvan::program
