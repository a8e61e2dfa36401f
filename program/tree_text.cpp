// SPDX-License-Identifier: MIT
#include "tree_text.h"

#include "attribute_values.h"
#include "console.h"
#include "svg_complete.h"

#include <charconv>
#include <cmath>
#include <span>

namespace orvan::program
{
namespace
{
/// The words for an enumeration, as SVG spells them, by value.
struct Keywords
{
	SVGImportAttribute attribute;
	std::span<const std::string_view> words;
	/// The element whose attribute it is, where one name stands for several things.
	SVGImportElementKind kind = SVGImportElementKind::unknown;
};

constexpr std::string_view kDisplayWords[] = {"inherit", "shown", "none"};
constexpr std::string_view kVisibilityWords[] = {"", "visible", "hidden", "collapse"};
constexpr std::string_view kFillRuleWords[] = {"", "nonzero", "evenodd"};
constexpr std::string_view kStrokeLineCapWords[] = {"", "butt", "round", "square"};
constexpr std::string_view kStrokeLineJoinWords[] = {"", "miter", "round", "bevel", "miter-clip"};
constexpr std::string_view kGradientUnitsWords[] = {"userSpaceOnUse", "objectBoundingBox"};
constexpr std::string_view kSpreadMethodWords[] = {"pad", "reflect", "repeat"};
constexpr std::string_view kFontStyleWords[] = {"normal", "italic", "oblique"};
constexpr std::string_view kFontWeightWords[] = {"normal", "bold"};
constexpr std::string_view kMaskTypeWords[] = {"luminance", "alpha"};
constexpr std::string_view kMaskModeWords[] = {"match-source", "luminance", "alpha"};
constexpr std::string_view kMaskCompositeWords[] = {"add", "subtract", "intersect", "exclude"};
constexpr std::string_view kMarkerUnitsWords[] = {"strokeWidth", "userSpaceOnUse"};
constexpr std::string_view kOverflowWords[] = {"visible", "hidden", "scroll", "auto"};
constexpr std::string_view kPaintOrderWords[] = {"normal",
												 "fill markers stroke",
												 "stroke fill markers",
												 "stroke markers fill",
												 "markers fill stroke",
												 "markers stroke fill"};
constexpr std::string_view kVectorEffectWords[] = {"none", "non-scaling-stroke"};
constexpr std::string_view kMixBlendModeWords[] = {
	"normal",      "multiply",   "screen",     "overlay",    "darken",      "lighten",
	"color-dodge", "color-burn", "hard-light", "soft-light", "difference",  "exclusion",
	"hue",         "saturation", "color",      "luminosity", "plus-lighter"};
constexpr std::string_view kIsolationWords[] = {"auto", "isolate"};
constexpr std::string_view kShapeRenderingWords[] = {"auto", "optimizeSpeed", "crispEdges", "geometricPrecision"};
constexpr std::string_view kTextRenderingWords[] = {"auto", "optimizeSpeed", "optimizeLegibility",
													"geometricPrecision"};
constexpr std::string_view kImageRenderingWords[] = {"auto", "optimizeSpeed", "optimizeQuality", "pixelated",
													 "crisp-edges"};
constexpr std::string_view kColorInterpolationWords[] = {"auto", "sRGB", "linearRGB"};
constexpr std::string_view kTransformBoxWords[] = {"view-box", "fill-box", "stroke-box", "content-box", "border-box"};
constexpr std::string_view kLengthAdjustWords[] = {"spacing", "spacingAndGlyphs"};
constexpr std::string_view kTextAnchorWords[] = {"start", "middle", "end"};
constexpr std::string_view kTextDecorationWords[] = {"none",
													 "underline",
													 "overline",
													 "underline overline",
													 "line-through",
													 "underline line-through",
													 "overline line-through",
													 "underline overline line-through"};
constexpr std::string_view kDominantBaselineWords[] = {
	"auto",         "alphabetic", "ideographic",      "middle",          "central",
	"mathematical", "hanging",    "text-before-edge", "text-after-edge", "use-script",
	"no-change",    "reset-size", "baseline",         "before-edge",     "after-edge"};
constexpr std::string_view kWritingModeWords[] = {"horizontal-tb", "vertical-rl", "vertical-lr", "sideways-rl",
												  "sideways-lr"};
constexpr std::string_view kDirectionWords[] = {"ltr", "rtl"};
constexpr std::string_view kUnicodeBidiWords[] = {"normal",           "embed",    "isolate", "bidi-override",
												  "isolate-override", "plaintext"};
constexpr std::string_view kFontVariantWords[] = {"normal",          "small-caps", "all-small-caps", "petite-caps",
												  "all-petite-caps", "unicase",    "titling-caps"};
constexpr std::string_view kTextTransformWords[] = {"none", "capitalize", "uppercase", "lowercase"};
constexpr std::string_view kTextDecorationStyleWords[] = {"solid", "double", "dotted", "dashed", "wavy"};
constexpr std::string_view kWhiteSpaceWords[] = {"normal", "pre", "nowrap", "pre-wrap", "pre-line", "break-spaces"};
constexpr std::string_view kPointerEventsWords[] = {"auto",    "visiblePainted", "visibleFill", "visibleStroke",
													"visible", "painted",        "fill",        "stroke",
													"all",     "none",           "bounding-box"};
constexpr std::string_view kTypeColorMatrixWords[] = {"matrix", "saturate", "hueRotate", "luminanceToAlpha"};
constexpr std::string_view kTypeTurbulenceWords[] = {"turbulence", "fractalNoise"};
constexpr std::string_view kTypeFuncRWords[] = {"identity", "table", "discrete", "linear", "gamma"};
constexpr std::string_view kOperationCompositeWords[] = {"over", "in", "out", "atop", "xor", "arithmetic", "lighter"};
constexpr std::string_view kOperationMorphologyWords[] = {"erode", "dilate"};
constexpr std::string_view kEdgeModeWords[] = {"duplicate", "wrap", "none"};
constexpr std::string_view kPreserveAlphaWords[] = {"false", "true"};
constexpr std::string_view kXChannelSelectorWords[] = {"A", "R", "G", "B"};
constexpr std::string_view kStitchTilesWords[] = {"noStitch", "stitch"};

constexpr Keywords kKeywords[] = {
	{SVGImportAttribute::display, kDisplayWords},
	{SVGImportAttribute::visibility, kVisibilityWords},
	{SVGImportAttribute::fillRule, kFillRuleWords},
	{SVGImportAttribute::clipRule, kFillRuleWords},
	{SVGImportAttribute::strokeLineCap, kStrokeLineCapWords},
	{SVGImportAttribute::strokeLineJoin, kStrokeLineJoinWords},
	{SVGImportAttribute::gradientUnits, kGradientUnitsWords},
	{SVGImportAttribute::patternUnits, kGradientUnitsWords},
	{SVGImportAttribute::patternContentUnits, kGradientUnitsWords},
	{SVGImportAttribute::clipPathUnits, kGradientUnitsWords},
	{SVGImportAttribute::maskUnits, kGradientUnitsWords},
	{SVGImportAttribute::maskContentUnits, kGradientUnitsWords},
	{SVGImportAttribute::filterUnits, kGradientUnitsWords},
	{SVGImportAttribute::primitiveUnits, kGradientUnitsWords},
	{SVGImportAttribute::spreadMethod, kSpreadMethodWords},
	{SVGImportAttribute::fontStyle, kFontStyleWords},
	{SVGImportAttribute::fontWeight, kFontWeightWords},
	{SVGImportAttribute::maskType, kMaskTypeWords},
	{SVGImportAttribute::maskMode, kMaskModeWords},
	{SVGImportAttribute::maskComposite, kMaskCompositeWords},
	{SVGImportAttribute::markerUnits, kMarkerUnitsWords},
	{SVGImportAttribute::overflow, kOverflowWords},
	{SVGImportAttribute::paintOrder, kPaintOrderWords},
	{SVGImportAttribute::vectorEffect, kVectorEffectWords},
	{SVGImportAttribute::mixBlendMode, kMixBlendModeWords},
	{SVGImportAttribute::mode, kMixBlendModeWords},
	{SVGImportAttribute::isolation, kIsolationWords},
	{SVGImportAttribute::shapeRendering, kShapeRenderingWords},
	{SVGImportAttribute::textRendering, kTextRenderingWords},
	{SVGImportAttribute::imageRendering, kImageRenderingWords},
	{SVGImportAttribute::colorInterpolation, kColorInterpolationWords},
	{SVGImportAttribute::colorInterpolationFilters, kColorInterpolationWords},
	{SVGImportAttribute::transformBox, kTransformBoxWords},
	{SVGImportAttribute::lengthAdjust, kLengthAdjustWords},
	{SVGImportAttribute::textAnchor, kTextAnchorWords},
	{SVGImportAttribute::textDecoration, kTextDecorationWords},
	{SVGImportAttribute::dominantBaseline, kDominantBaselineWords},
	{SVGImportAttribute::alignmentBaseline, kDominantBaselineWords},
	{SVGImportAttribute::writingMode, kWritingModeWords},
	{SVGImportAttribute::direction, kDirectionWords},
	{SVGImportAttribute::unicodeBidi, kUnicodeBidiWords},
	{SVGImportAttribute::fontVariant, kFontVariantWords},
	{SVGImportAttribute::textTransform, kTextTransformWords},
	{SVGImportAttribute::textDecorationStyle, kTextDecorationStyleWords},
	{SVGImportAttribute::whiteSpace, kWhiteSpaceWords},
	{SVGImportAttribute::pointerEvents, kPointerEventsWords},
	{SVGImportAttribute::type, kTypeColorMatrixWords, SVGImportElementKind::feColorMatrix},
	{SVGImportAttribute::type, kTypeTurbulenceWords, SVGImportElementKind::feTurbulence},
	{SVGImportAttribute::type, kTypeFuncRWords, SVGImportElementKind::feFuncR},
	{SVGImportAttribute::type, kTypeFuncRWords, SVGImportElementKind::feFuncG},
	{SVGImportAttribute::type, kTypeFuncRWords, SVGImportElementKind::feFuncB},
	{SVGImportAttribute::type, kTypeFuncRWords, SVGImportElementKind::feFuncA},
	{SVGImportAttribute::operation, kOperationCompositeWords, SVGImportElementKind::feComposite},
	{SVGImportAttribute::operation, kOperationMorphologyWords, SVGImportElementKind::feMorphology},
	{SVGImportAttribute::edgeMode, kEdgeModeWords},
	{SVGImportAttribute::preserveAlpha, kPreserveAlphaWords},
	{SVGImportAttribute::xChannelSelector, kXChannelSelectorWords},
	{SVGImportAttribute::yChannelSelector, kXChannelSelectorWords},
	{SVGImportAttribute::stitchTiles, kStitchTilesWords},
};

std::span<const std::string_view> GetKeywords(SVGImportAttribute attribute, SVGImportElementKind kind)
{
	for (const Keywords& keywords : kKeywords)
	{
		if (keywords.attribute == attribute &&
			(keywords.kind == SVGImportElementKind::unknown || keywords.kind == kind))
			return keywords.words;
	}
	return {};
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

/// A colour with how opaque it is.
std::string ToText(const Color& color, Float alpha)
{
	return ToText(color) + (alpha == 1.0 ? "" : '/' + ToText(alpha * 100) + '%');
}

std::string ToText(const SVGPaint& paint)
{
	constexpr std::string_view kTypes[] = {"?", "none", "", "", "currentColor", "context-fill", "context-stroke"};
	if (paint.type == SVGPaintType::color)
		return ToText(paint.color, paint.alpha);
	if (paint.type != SVGPaintType::reference)
		return std::string(Look(kTypes, paint.type));
	const std::string reference = "url(#" + OneLine(paint.reference.View(), 60) + ')';
	if (paint.fallback == SVGPaintFallback::color)
		return reference + ' ' + ToText(paint.color, paint.alpha);
	return reference + (paint.fallback == SVGPaintFallback::none           ? " none"
						: paint.fallback == SVGPaintFallback::currentColor ? " currentColor"
																		   : "");
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

std::string ToText(const SVGLength2d& lengths)
{
	return ToText(lengths.x) + ' ' + ToText(lengths.y);
}

std::string ToText(const SVGOrient& orient)
{
	constexpr std::string_view kTypes[] = {"", "auto", "auto-start-reverse"};
	return orient.type == SVGOrientType::angle ? ToText(orient.angle) : std::string(Look(kTypes, orient.type));
}

std::string ToText(const SVGBaselineShift& shift)
{
	constexpr std::string_view kTypes[] = {"baseline", "sub", "super", ""};
	return shift.type == SVGBaselineShiftType::length ? ToText(shift.length) : std::string(Look(kTypes, shift.type));
}

std::string ToText(const SVGFilterFunction& function)
{
	constexpr std::string_view kTypes[] = {"url(#",        "blur(",      "brightness(", "contrast(",
										   "drop-shadow(", "grayscale(", "hue-rotate(", "invert(",
										   "opacity(",     "saturate(",  "sepia("};
	const std::string name(Look(kTypes, function.type));
	if (function.type == SVGFilterFunctionType::reference)
		return name + OneLine(function.reference.View(), 60) + ')';
	if (function.type == SVGFilterFunctionType::blur)
		return name + ToText(function.deviation) + ')';
	if (function.type != SVGFilterFunctionType::dropShadow)
		return name + ToText(function.amount) + ')';
	return name + ToText(function.x) + ' ' + ToText(function.y) + ' ' + ToText(function.deviation) + ' ' +
		   ToText(function.color) + ')';
}

std::string ToText(const SVGPathCommand& command)
{
	constexpr std::string_view kTypes[] = {"M", "L", "C", "Z"};
	std::string text(Look(kTypes, command.type));
	const std::size_t used = command.type == SVGPathCommandType::cubic   ? 3
							 : command.type != SVGPathCommandType::close ? 1
																		 : 0;
	for (std::size_t i = 3 - used; i < 3; i++)
		text += ' ' + ToText(command.points[i].x) + ' ' + ToText(command.points[i].y);
	return text;
}

template <typename T>
std::string ToText(const BaseArray<T>& values)
{
	if (values.IsEmpty())
		return "none";
	std::string text;
	for (const T& value : values)
		text += (text.empty() ? "" : " ") + ToText(value);
	return text;
}

std::string ToText(const SVGClipShape& shape)
{
	constexpr std::string_view kTypes[] = {"box", "inset", "circle", "ellipse", "polygon", "path", "rect", "xywh"};
	constexpr std::string_view kBoxes[] = {"stroke-box", "fill-box", "view-box"};
	const bool isPath = shape.type == SVGClipShapeType::path;
	return std::string(Look(kTypes, shape.type)) + '(' + (isPath ? ToText(shape.path) : ToText(shape.lengths)) + ") " +
		   std::string(Look(kBoxes, shape.box));
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
		AddAttributes(element->GetAttributeDictionary(), element->GetElementType());
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

	void AddAttributes(const DataDictionary& attributes, SVGImportElementKind kind)
	{
		for (const DataDictionary::Entry& entry : attributes)
		{
			const auto keywords = GetKeywords(static_cast<SVGImportAttribute>(entry.key), kind);
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
		else if (const auto run = Cast<SVGTextRunInterface>(element))
			AddProperty("text", ToText(run->GetText()));
		else if (const auto description = Cast<SVGDescriptionInterface>(element))
			AddProperty("text", ToText(description->GetText()));
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

std::string_view GetElementName(SVGImportElementKind kind)
{
	return Look(kElementNames, kind);
}

} // namespace orvan::program
