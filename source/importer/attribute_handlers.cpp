/// What each attribute does to an element: the table of attributes, and a handler for each.
#include "importer/length_scanner.h"
#include "importer/names.h"
#include "importer/parse_context.h"

#include <array>
#include <cmath>
#include <functional>

namespace orvan::svg
{
namespace
{

using grammar::Parsed;
using grammar::Source;

/// One attribute value on its way to an element.
struct Value
{
	SVGParseContext& context;
	SVGImportAttribute attribute;
	std::string_view text;
	Source source;

	const SVGElementRef& Element() const noexcept
	{
		return *context.element;
	}

	/// True when there is a value to set. Refused values do not return.
	bool Accept(Parsed parsed) const
	{
		if (parsed == Parsed::refused)
			context.Refuse(kSVGAttributeNames[static_cast<std::size_t>(attribute)].data(), text);
		return parsed == Parsed::value;
	}

	/// Stores a value in the dictionary under the attribute's own number.
	template <typename T>
	Result<void> Store(T value) const noexcept
	{
		if (context.ownElement != nullptr)
			return context.ownElement->Store(attribute, std::move(value));
		const Data data = ORVAN_TRY(Data::Create(std::move(value)));
		return Element()->SetAttribute(attribute, data);
	}
};

/// A setter's error is of no consequence for the rest of the file, unless memory has run out.
Result<void> IgnoreUnlessOutOfMemory(Result<void> result) noexcept
{
	if (!result.IsOk() && result.GetError().GetClass() == ErrorClass::outOfMemory)
		return result;
	return {};
}

constexpr SVGLength ToLength(const grammar::Length& length) noexcept
{
	return {length.value, static_cast<SVGLengthUnit>(length.unit)};
}

constexpr Color ToColor(grammar::PackedColor packed) noexcept
{
	return {(packed >> 16 & 0xff) / 255.0, (packed >> 8 & 0xff) / 255.0, (packed & 0xff) / 255.0};
}

// Identity, links and structure --------------------------------------------------------------------------------------

Result<void> ImportId(const Value& value)
{
	const String id = ORVAN_TRY(String::Create(value.text));
	ORVAN_TRY(value.Element()->SetId(id));
	if (!value.context.suppressesIds)
		ORVAN_TRY(value.context.elementsById.Insert(id, value.Element()));
	return {};
}

Result<void> ImportLink(const Value& value)
{
	grammar::Reference reference;
	if (!value.Accept(grammar::ParseIri(value.text, reference)))
		return {};
	const Borrowed<SVGUseElementInterface> use(value.Element());
	if (!use)
		return {};
	const String link = ORVAN_TRY(String::Create(reference.text));
	return IgnoreUnlessOutOfMemory(use->SetLink(link));
}

Result<void> ImportTransform(const Value& value)
{
	grammar::Matrix m;
	if (!value.Accept(grammar::ParseTransform(value.text, m)))
		return {};
	return IgnoreUnlessOutOfMemory(value.Element()->SetLocalTransform({{m.e, m.f}, {m.a, m.b}, {m.c, m.d}}));
}

/// True for attributes that say nothing outside of the element's dictionary.
constexpr bool IsKeptInDictionary(SVGImportAttribute attribute) noexcept
{
	switch (attribute)
	{
	case SVGImportAttribute::id:
	case SVGImportAttribute::href:
	case SVGImportAttribute::transform:
	case SVGImportAttribute::d:
	case SVGImportAttribute::points:
		return false;
	default:
		return true;
	}
}

/// Dispatches the declarations; the result tells whether all of them went to the dictionary.
Result<bool> ImportDeclarations(const Value& value)
{
	bool isAllInDictionary = true;
	grammar::StyleSplitter splitter(value.text);
	for (std::string_view name, text; splitter.Next(name, text);)
	{
		const SVGImportAttribute attribute = FindAttribute(name);
		isAllInDictionary &= IsKeptInDictionary(attribute);
		ORVAN_TRY(DispatchAttribute(value.context, attribute, text, Source::style));
	}
	return isAllInDictionary;
}

Result<void> ImportStyle(const Value& value)
{
	if (value.source == Source::style)
		return {};
	// On an element without other attributes so far, a style that was seen before comes to what it came to then. A
	// text that was copied to replace references is not in place long enough to be compared with.
	ElementBase* const element = value.context.ownElement;
	if (element == nullptr || element->GetAttributeDictionary().GetCount() != 0 ||
		value.text.data() != value.context.rawValue.data())
	{
		ORVAN_TRY(ImportDeclarations(value));
		return {};
	}
	StyleCache& cache = value.context.styles;
	const StyleCache::Finding finding = cache.Find(value.text, element->GetElementType());
	if (finding == StyleCache::Finding::kept)
	{
		element->ReplaceAttributes(cache.Get());
		return {};
	}
	if (ORVAN_TRY(ImportDeclarations(value)) && finding == StyleCache::Finding::noted)
		cache.Keep(element->GetAttributeDictionary());
	return {};
}

// Geometry -----------------------------------------------------------------------------------------------------------

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

// Presentation -------------------------------------------------------------------------------------------------------

/// Opacities and the miter limit are kept as written: they do not pass through the setters, which clamp.
Result<void> ImportNumber(const Value& value)
{
	double number = 0.0;
	if (!value.Accept(grammar::ParseNumber(value.text, value.source, number)))
		return {};
	return IgnoreUnlessOutOfMemory(value.Store(number));
}

/// An attribute whose value is one of some keywords: `parse` knows them, `set` is the element's setter.
template <auto parse, auto set>
Result<void> ImportKeyword(const Value& value)
{
	std::int32_t number = 0;
	if (!value.Accept(parse(value.text, number)))
		return {};
	return [&]<typename T>(Result<void> (SVGElementInterface::*setter)(T) const)
	{
		return ((*value.Element()).*setter)(static_cast<T>(number));
	}(set);
}

template <auto set>
Result<void> ImportLength(const Value& value)
{
	grammar::Length length;
	if (!value.Accept(grammar::ParseLength(value.text, value.source, length)))
		return {};
	return ((*value.Element()).*set)(ToLength(length));
}

Result<void> ImportDashArray(const Value& value)
{
	class Sink final : public grammar::LengthSink
	{
	public:
		void Append(const grammar::Length& length) override
		{
			if (Result<void> appended = dashes.Append(ToLength(length)); !appended.IsOk())
				result = std::move(appended);
		}

		BaseArray<SVGLength> dashes;
		Result<void> result;
	};

	Sink sink;
	if (!value.Accept(grammar::ParseDashArray(value.text, value.source, sink)))
		return {};
	ORVAN_TRY(std::move(sink.result));
	return value.Element()->SetStrokeDashArray(sink.dashes);
}

/// Fill and stroke. A local reference with a fallback sets nothing at all, and neither does an external one without;
/// an external reference with a fallback sets the fallback.
template <auto set>
Result<void> ImportPaint(const Value& value)
{
	grammar::Paint parsed;
	if (!value.Accept(grammar::ParsePaint(value.text, parsed)))
		return {};
	const bool isReference = parsed.kind == grammar::PaintKind::reference;
	const bool hasFallback = parsed.fallback != grammar::PaintFallback::absent;
	if (isReference && parsed.reference.isLocal == hasFallback)
		return {};

	SVGPaint paint;
	if (isReference && !hasFallback)
	{
		paint.type = SVGPaintType::reference;
		paint.reference = ORVAN_TRY(String::Create(parsed.reference.text));
	}
	else if (parsed.kind == grammar::PaintKind::none || parsed.fallback == grammar::PaintFallback::none)
		paint.type = SVGPaintType::none;
	else if (parsed.kind == grammar::PaintKind::color || parsed.fallback == grammar::PaintFallback::color)
		paint.color = ToColor(parsed.color);
	else
		return {}; // "currentColor" or "inherit", also as a fallback.
	return IgnoreUnlessOutOfMemory(((*value.Element()).*set)(paint));
}

/// Mask and clip path.
template <auto set>
Result<void> ImportReference(const Value& value)
{
	std::string_view id;
	if (!value.Accept(grammar::ParseMaskReference(value.text, id)))
		return {};
	return ((*value.Element()).*set)(ORVAN_TRY(String::Create(id)));
}

// Gradients ----------------------------------------------------------------------------------------------------------

bool IsGradient(const SVGElementRef& element) noexcept
{
	return Borrowed<SVGLinearGradientElementInterface>(element) || Borrowed<SVGRadialGradientElementInterface>(element);
}

template <auto parse>
Result<void> ImportGradientKeyword(const Value& value)
{
	std::int32_t number = 0;
	if (!value.Accept(parse(value.text, number)) || !IsGradient(value.Element()))
		return {};
	return value.Store(number);
}

Result<void> ImportOffset(const Value& value)
{
	double offset = 0.0;
	if (!value.Accept(grammar::ParseOffset(value.text, offset)) || !Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return value.Store(offset);
}

Result<void> ImportStopColor(const Value& value)
{
	grammar::PackedColor color = 0;
	if (!value.Accept(grammar::ParseColor(value.text, color)) || !Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return value.Store(ToColor(color));
}

Result<void> ImportStopOpacity(const Value& value)
{
	double opacity = 0.0;
	if (!value.Accept(grammar::ParseNumber(value.text, value.source, opacity)) ||
		!Borrowed<SVGStopElementInterface>(value.Element()))
		return {};
	return IgnoreUnlessOutOfMemory(value.Store(opacity));
}

// Fonts: to the setters of a text element; other elements keep them for texts below to inherit
// -------------------------

Result<void> SetFontStyle(const Value& value, std::int32_t style)
{
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontStyle(static_cast<SVGFontStyle>(style));
	return Value{value.context, SVGImportAttribute::fontStyle, {}, value.source}.Store(style);
}

Result<void> SetFontWeight(const Value& value, std::int32_t weight)
{
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontWeight(static_cast<SVGFontWeight>(weight));
	return Value{value.context, SVGImportAttribute::fontWeight, {}, value.source}.Store(weight);
}

Result<void> ImportFontSize(const Value& value)
{
	grammar::Length length;
	if (!value.Accept(grammar::ParseFontSize(value.text, value.source, length)))
		return {};
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		return text->SetFontSize(ToLength(length));
	return value.Store(ToLength(length));
}

/// The family also tells style and weight, for families such as "Helvetica-BoldItalic".
Result<void> ImportFontFamily(const Value& value)
{
	const String family = ORVAN_TRY(String::Create(value.text));
	if (const Borrowed<SVGTextElementInterface> text(value.Element()); text)
		ORVAN_TRY(text->SetFont(family));
	else
		ORVAN_TRY(value.Store(family));
	if (value.text.find("Italic") != value.text.npos)
		ORVAN_TRY(SetFontStyle(value, static_cast<std::int32_t>(SVGFontStyle::italic)));
	if (value.text.find("Bold") != value.text.npos)
		ORVAN_TRY(SetFontWeight(value, static_cast<std::int32_t>(SVGFontWeight::bold)));
	return {};
}

Result<void> ImportFontStyle(const Value& value)
{
	std::int32_t style = 0;
	return value.Accept(grammar::ParseFontStyle(value.text, style)) ? SetFontStyle(value, style) : Result<void>();
}

Result<void> ImportFontWeight(const Value& value)
{
	std::int32_t weight = 0;
	return value.Accept(grammar::ParseFontWeight(value.text, weight)) ? SetFontWeight(value, weight) : Result<void>();
}

// The table ----------------------------------------------------------------------------------------------------------

using Importer = Result<void> (*)(const Value& value);
using Attribute = SVGImportAttribute;
using Element = SVGElementInterface;

struct AttributeRow
{
	std::string_view name;
	Attribute attribute;
	Importer importer; ///< Null for an attribute that is known but ignored.
};

/// All attributes, in the order of their numbers.
constexpr std::array kAttributes = {
	AttributeRow{"id", Attribute::id, &ImportId},
	AttributeRow{"class", Attribute::classNames, nullptr},
	AttributeRow{"href", Attribute::href, &ImportLink},
	AttributeRow{"xlink:href", Attribute::href, &ImportLink},
	AttributeRow{"transform", Attribute::transform, &ImportTransform},
	AttributeRow{"display", Attribute::display, &ImportKeyword<&grammar::ParseDisplay, &Element::SetDisplay>},
	AttributeRow{"visibility", Attribute::visibility,
				 &ImportKeyword<&grammar::ParseVisibility, &Element::SetVisibility>},
	AttributeRow{"opacity", Attribute::opacity, &ImportNumber},
	AttributeRow{"viewBox", Attribute::viewBox, &ImportViewBox},
	AttributeRow{"preserveAspectRatio", Attribute::preserveAspectRatio, &ImportPreserveAspectRatio},
	AttributeRow{"x", Attribute::x, &ImportPlainLength},
	AttributeRow{"y", Attribute::y, &ImportPlainLength},
	AttributeRow{"width", Attribute::width, &ImportPlainLength},
	AttributeRow{"height", Attribute::height, &ImportPlainLength},
	AttributeRow{"x1", Attribute::x1, &ImportPlainLength},
	AttributeRow{"y1", Attribute::y1, &ImportPlainLength},
	AttributeRow{"x2", Attribute::x2, &ImportPlainLength},
	AttributeRow{"y2", Attribute::y2, &ImportPlainLength},
	AttributeRow{"cx", Attribute::cx, &ImportPlainLength},
	AttributeRow{"cy", Attribute::cy, &ImportPlainLength},
	AttributeRow{"fx", Attribute::fx, &ImportPlainLength},
	AttributeRow{"fy", Attribute::fy, &ImportPlainLength},
	AttributeRow{"r", Attribute::r, &ImportRadius},
	AttributeRow{"rx", Attribute::rx, &ImportPlainLength},
	AttributeRow{"ry", Attribute::ry, &ImportPlainLength},
	AttributeRow{"d", Attribute::d, &ImportPathData},
	AttributeRow{"fill", Attribute::fill, &ImportPaint<&Element::SetFill>},
	AttributeRow{"fill-rule", Attribute::fillRule, &ImportKeyword<&grammar::ParseFillRule, &Element::SetFillRule>},
	AttributeRow{"fill-opacity", Attribute::fillOpacity, &ImportNumber},
	AttributeRow{"stroke", Attribute::stroke, &ImportPaint<&Element::SetStroke>},
	AttributeRow{"stroke-width", Attribute::strokeWidth, &ImportLength<&Element::SetStrokeWidth>},
	AttributeRow{"stroke-opacity", Attribute::strokeOpacity, &ImportNumber},
	AttributeRow{"stroke-linejoin", Attribute::strokeLineJoin,
				 &ImportKeyword<&grammar::ParseLineJoin, &Element::SetStrokeLineJoin>},
	AttributeRow{"stroke-linecap", Attribute::strokeLineCap,
				 &ImportKeyword<&grammar::ParseLineCap, &Element::SetStrokeLineCap>},
	AttributeRow{"stroke-miterlimit", Attribute::strokeMiterLimit, &ImportNumber},
	AttributeRow{"stroke-dasharray", Attribute::strokeDashArray, &ImportDashArray},
	AttributeRow{"stroke-dashoffset", Attribute::strokeDashOffset, &ImportLength<&Element::SetStrokeDashOffset>},
	AttributeRow{"gradientUnits", Attribute::gradientUnits, &ImportGradientKeyword<&grammar::ParseGradientUnits>},
	AttributeRow{"spreadMethod", Attribute::spreadMethod, &ImportGradientKeyword<&grammar::ParseSpreadMethod>},
	AttributeRow{"offset", Attribute::offset, &ImportOffset},
	AttributeRow{"stop-color", Attribute::stopColor, &ImportStopColor},
	AttributeRow{"stop-opacity", Attribute::stopOpacity, &ImportStopOpacity},
	AttributeRow{"font-size", Attribute::fontSize, &ImportFontSize},
	AttributeRow{"font-family", Attribute::fontFamily, &ImportFontFamily},
	AttributeRow{"font-style", Attribute::fontStyle, &ImportFontStyle},
	AttributeRow{"font-weight", Attribute::fontWeight, &ImportFontWeight},
	AttributeRow{"mask", Attribute::mask, &ImportReference<&Element::SetMask>},
	AttributeRow{"clip-path", Attribute::clipPath, &ImportReference<&Element::SetClipPath>},
	AttributeRow{"style", Attribute::style, &ImportStyle},
	AttributeRow{"points", Attribute::points, &ImportPoints},
};

constexpr NameIndex<kAttributes.size()> kAttributeIndex(kAttributes);

/// The importers by number. The compiler checks that every number from 1 to 49 is there, with one importer and the
/// public name.
constexpr std::array<Importer, kSVGAttributeNames.size()> kImporters = []
{
	std::array<Importer, kSVGAttributeNames.size()> importers{};
	std::size_t reached = 0;
	for (const AttributeRow& row : kAttributes)
	{
		const auto number = static_cast<std::size_t>(row.attribute);
		if (number == reached ? importers[number] != row.importer : number != reached + 1)
			throw "the numbers have a gap, or one has two importers";
		if (number != reached && row.name != kSVGAttributeNames[number])
			throw "the name differs from the public one";
		importers[number] = row.importer;
		reached = number;
	}
	if (reached + 1 != importers.size())
		throw "the last numbers are missing";
	return importers;
}();

} // namespace

void SVGParseContext::Refuse(const char* attributeName, std::string_view text)
{
	// A declaration of a style has a place of its own, unless the style was copied to replace references.
	const char* end = rawValue.data() + rawValue.size();
	const bool isInside = !std::less<>()(text.data(), rawValue.data()) && !std::less<>()(end, text.data());
	refusedAt = isInside ? text.data() : rawValue.data();
	refusedElementName = elementName;
	refusedElementId = (*element)->GetId();
	grammar::RaiseInvalidValue(attributeName, text);
}

SVGImportAttribute FindAttribute(std::string_view name) noexcept
{
	const AttributeRow* row = kAttributeIndex.Find(kAttributes, name);
	return row != nullptr ? row->attribute : SVGImportAttribute::unknown;
}

Result<void> DispatchAttribute(SVGParseContext& context, SVGImportAttribute attribute, std::string_view text,
							   grammar::Source source)
{
	const Importer importer = kImporters[static_cast<std::size_t>(attribute)];
	if (importer == nullptr)
		return {};
	if (context.element == nullptr)
		return NullReferenceError("There is no element to set an attribute of.");
	return importer({context, attribute, text, source});
}

} // namespace orvan::svg
